#include "pages/settings_page_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>

#include "i18n/extra_texts.h"
#include "i18n/language.h"
#include "layout/light_colours.h"
#include "pages/message_box.h"
#include "pages/page_controls.h"
#include "session/keyboard_session.h"
#include "widgets/keyboard_light_view.h"

namespace qx9 {

namespace {

// Widest the language box grows.
constexpr int kControlWidth = 260;

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
    column->addSpacing(28);
    column->addWidget(config_keyboardctrl, 0, Qt::AlignHCenter);
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(40, 30, 40, 30);
    page->addStretch();
    page->addLayout(centredRow(column));
    page->addStretch();
    sync();
}

void SettingsPageView::retranslate() {
    texts_.apply();
    // The game-mode box reads "Disabled"; it is named after its caption.
    boxes_[0]->setAccessibleName(config_label_gamemode->text());
    config_keyboardctrl->setAccessibleName(text(ExtraText::kLightKeyboard));
}

void SettingsPageView::sync() {
    syncing_ = true;
    combo_language->setCurrentIndex(session_.settings.languageRow());
    for (int tag = 0; tag < 4; ++tag) boxes_[tag]->setChecked(session_.settings.box(tag));
    syncing_ = false;
}

void SettingsPageView::confirmThen(bool all) {
    if (!confirmed(this, all ? SettingsPage::resetAllTexts() : SettingsPage::resetKeysTexts())) return;
    if (all) session_.settings.configResetAllDatas();
    else session_.settings.configResetKeys();
}

}  // namespace qx9
