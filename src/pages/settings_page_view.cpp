#include "pages/settings_page_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QCoreApplication>
#include <QSystemTrayIcon>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "i18n/extra_texts.h"
#include "i18n/language.h"
#include "layout/light_colours.h"
#include "pages/app_profiles_dialog.h"
#include "pages/message_box.h"
#include "pages/page_controls.h"
#include "session/keyboard_session.h"
#include "widgets/keyboard_light_view.h"

namespace qx9 {

namespace {

// Widest the language box grows.
constexpr int kControlWidth = 260;
// Widest the desktop column grows (its texts wrap).
constexpr int kDesktopWidth = 300;

// The captions of the form's rows.
constexpr int kLanguageCaption = 603;
constexpr int kGameModeCaption = 605;
constexpr int kBlockedKeysCaption = 606;

}  // namespace

SettingsPageView::SettingsPageView(KeyboardSession& session, QWidget* parent) : QWidget(parent), session_(session) {
    setObjectName("config_view");
    config_label_language = texts_.add(new QLabel(this), kLanguageCaption);
    config_label_language->setObjectName("config_label_language");
    combo_language = new QComboBox(this);
    combo_language->setObjectName("combo_language");
    config_label_language->setBuddy(combo_language);  // screen readers name the box after it
    for (const LanguageRow& row : session_.settings.LanguageListDatas()) combo_language->addItem(QString::fromStdString(row.text));
    config_label_gamemode = texts_.add(new QLabel(this), kGameModeCaption);
    config_label_gamemode->setObjectName("config_label_gamemode");
    config_label_lockwin = texts_.add(new QLabel(this), kBlockedKeysCaption);
    config_label_lockwin->setObjectName("config_label_lockwin");
    const char* names[4] = {"config_btn_disable_gamemode", "config_btn_disable_alttab", "config_btn_disable_altf4",
                            "config_btn_disable_lockwin"};
    const char* fixed[4] = {nullptr, "Alt + Tab", "Alt + F4", "Win"};
    for (int tag = 0; tag < 4; ++tag) {
        boxes_[tag] = new QCheckBox(this);
        boxes_[tag]->setObjectName(names[tag]);
        if (fixed[tag]) boxes_[tag]->setText(fixed[tag]);
        else texts_.add(boxes_[tag], 607);
        connect(boxes_[tag], &QCheckBox::toggled, this, [this, tag](bool on) {
            if (!syncing_) session_.settings.button_action_gamemode(tag, on);
        });
    }
    btn_resetmousedata = texts_.add(new QPushButton(this), 610);
    btn_resetmousedata->setObjectName("btn_resetmousedata");
    btn_resetalldata = texts_.add(new QPushButton(this), 611);
    btn_resetalldata->setObjectName("btn_resetalldata");
    connect(btn_resetmousedata, &QPushButton::clicked, this, [this] { confirmThen(false); });
    connect(btn_resetalldata, &QPushButton::clicked, this, [this] { confirmThen(true); });
    connect(combo_language, &QComboBox::currentIndexChanged, this, [this](int row) {
        if (!syncing_) session_.settings.comboBoxSelectionDidChange(row);
    });

    config_keyboardctrl = new KeyboardLightView(this);
    config_keyboardctrl->setObjectName("config_keyboardctrl");
    config_keyboardctrl->initKeyboard(":/images/img_keyboard_layout.svg", session_.keys.keys());
    config_keyboardctrl->setKeyColours(colorfulLightColours(session_.keys.keys()));
    combo_language->setMaximumWidth(kControlWidth);

    auto* grid = new QGridLayout;
    grid->setVerticalSpacing(14);
    grid->setHorizontalSpacing(24);
    grid->addWidget(config_label_language, 0, 0);
    grid->addWidget(combo_language, 0, 1);
    grid->addWidget(config_label_gamemode, 1, 0);
    grid->addWidget(boxes_[0], 1, 1);
    grid->addWidget(config_label_lockwin, 2, 0);
    auto* blocks = new QHBoxLayout;
    blocks->setSpacing(28);  // each box clear of the text before it
    for (int tag = 1; tag < 4; ++tag) blocks->addWidget(boxes_[tag]);
    blocks->addStretch();
    grid->addLayout(blocks, 2, 1);
    grid->addWidget(btn_resetmousedata, 3, 1, Qt::AlignLeft);
    grid->addWidget(btn_resetalldata, 4, 1, Qt::AlignLeft);
    grid->setColumnStretch(1, 1);
    grid->addLayout(desktopColumn(), 0, 2, 5, 1, Qt::AlignTop);
    // The controls keep their place whatever the language: the caption column is as wide as
    // the widest caption in any of the three.
    int captionWidth = 0;
    for (int id : {kLanguageCaption, kGameModeCaption, kBlockedKeysCaption}) {
        for (int language : {kLanguageEnglish, kLanguageSimplifiedChinese, kLanguageTraditionalChinese}) {
            const QString caption = QString::fromStdString(languageTable(language).getLan(id));
            captionWidth = std::max(captionWidth, config_label_language->fontMetrics().horizontalAdvance(caption));
        }
    }
    grid->setColumnMinimumWidth(0, captionWidth + 8);

    // The form and the keyboard under it, centred in the page.
    auto* column = new QVBoxLayout;
    column->addLayout(grid);
    column->addSpacing(20);
    column->addWidget(config_keyboardctrl, 0, Qt::AlignHCenter);
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(40, 30, 40, 30);
    page->addStretch();
    page->addLayout(centredRow(column));
    page->addStretch();
    sync();
}

QLayout* SettingsPageView::desktopColumn() {
    desktopHeading_ = new QLabel(this);
    desktopHeading_->setObjectName("config_label_desktop");
    startAtLogin_ = new QCheckBox(this);
    startAtLogin_->setObjectName("config_btn_start_at_login");
    noTray_ = new QLabel(this);
    noTray_->setObjectName("config_label_no_tray");
    noTray_->setWordWrap(true);
    darkWhenLocked_ = new QCheckBox(this);
    darkWhenLocked_->setObjectName("config_btn_dark_when_locked");
    automaticProfiles_ = new QCheckBox(this);
    automaticProfiles_->setObjectName("config_btn_automatic_profiles");
    focusSource_ = new QLabel(this);
    focusSource_->setObjectName("config_label_focus_source");
    focusSource_->setWordWrap(true);
    editRules_ = new QPushButton(this);
    editRules_->setObjectName("config_btn_rules");
    // Without a tray a hidden start could not be reached: the switch stays off, and says why.
    const bool tray = QSystemTrayIcon::isSystemTrayAvailable();
    startAtLogin_->setEnabled(tray || session_.follow.startAtLogin());
    noTray_->setVisible(!tray);
    connect(startAtLogin_, &QCheckBox::toggled, this, [this](bool on) {
        if (syncing_) return;
        session_.follow.setStartAtLogin(on, QCoreApplication::applicationFilePath().toStdString());
        sync();
    });
    connect(darkWhenLocked_, &QCheckBox::toggled, this, &SettingsPageView::setDesktopOptions);
    connect(automaticProfiles_, &QCheckBox::toggled, this, &SettingsPageView::setDesktopOptions);
    connect(editRules_, &QPushButton::clicked, this, [this] {
        if (!rulesDialog_) rulesDialog_ = new AppProfilesDialog(session_, this);
        rulesDialog_->sync();
        rulesDialog_->open();
    });
    auto* column = new QVBoxLayout;
    column->setSpacing(6);
    for (QWidget* w : std::initializer_list<QWidget*>{desktopHeading_, startAtLogin_, noTray_, darkWhenLocked_,
                                                      automaticProfiles_, focusSource_}) {
        w->setMaximumWidth(kDesktopWidth);
        column->addWidget(w);
    }
    // Wrapped texts as tall as their lines at the column's width, in every language.
    for (QLabel* label : {noTray_, focusSource_}) label->setFixedWidth(kDesktopWidth);
    column->addWidget(editRules_, 0, Qt::AlignLeft);
    return column;
}

void SettingsPageView::setDesktopOptions() {
    if (!syncing_) session_.follow.setOptions({automaticProfiles_->isChecked(), darkWhenLocked_->isChecked()});
    sync();
}

void SettingsPageView::retranslate() {
    texts_.apply();
    desktopHeading_->setText(text(ExtraText::kFollowUser));
    startAtLogin_->setText(text(ExtraText::kStartAtLogin));
    noTray_->setText(text(ExtraText::kNoTray));
    darkWhenLocked_->setText(text(ExtraText::kDarkWhenLocked));
    automaticProfiles_->setText(text(ExtraText::kAutomaticProfiles));
    editRules_->setText(text(ExtraText::kEditRules));
    if (rulesDialog_) rulesDialog_->retranslate();
    // The game-mode box reads "Disabled"; it is named after its caption.
    boxes_[0]->setAccessibleName(config_label_gamemode->text());
    config_keyboardctrl->setAccessibleName(text(ExtraText::kLightKeyboard));
}

void SettingsPageView::sync() {
    syncing_ = true;
    combo_language->setCurrentIndex(session_.settings.languageRow());
    for (int tag = 0; tag < 4; ++tag) boxes_[tag]->setChecked(session_.settings.box(tag));
    startAtLogin_->setChecked(session_.follow.startAtLogin());
    darkWhenLocked_->setChecked(session_.follow.options().darkWhenLocked);
    automaticProfiles_->setChecked(session_.follow.options().automaticProfiles);
    const std::string& source = session_.follow.focusSource();
    focusSource_->setText(source.empty() ? text(ExtraText::kAutomaticUnavailable)
                                         : text(ExtraText::kAutomaticSource).arg(QString::fromStdString(source)));
    focusSource_->setToolTip(QString::fromStdString(session_.follow.focusUnavailable()));
    editRules_->setEnabled(automaticProfiles_->isChecked());
    if (rulesDialog_) rulesDialog_->sync();
    syncing_ = false;
}

void SettingsPageView::confirmThen(bool all) {
    if (!confirmed(this, all ? SettingsPage::resetAllTexts() : SettingsPage::resetKeysTexts())) return;
    if (all) session_.settings.configResetAllDatas();
    else session_.settings.configResetKeys();
}

}  // namespace qx9
