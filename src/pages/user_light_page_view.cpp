#include "pages/user_light_page_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QToolButton>
#include <QVBoxLayout>

#include "i18n/extra_texts.h"
#include "i18n/language.h"
#include "i18n/text_ids.h"
#include "pages/page_controls.h"
#include "session/keyboard_session.h"
#include "widgets/color_controls.h"
#include "widgets/keyboard_light_view.h"

namespace qx9 {

UserLightPageView::UserLightPageView(KeyboardSession& session, QWidget* parent) : QWidget(parent), session_(session) {
    setObjectName("userlight_view");
    UserLightPage& page = session_.userLights;

    userlight_table = new QListWidget(this);
    userlight_table->setObjectName("userlight_table");
    userlight_table->setSelectionMode(QAbstractItemView::SingleSelection);
    userlight_table->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    userlight_table->setFixedWidth(184);
    connect(userlight_table, &QListWidget::currentRowChanged, this, [this](int row) {
        if (!syncing_ && row >= 0) session_.userLights.userLightTableSelectionChanged(row);
    });
    connect(userlight_table, &QListWidget::itemChanged, this, &UserLightPageView::setEdited);

    userlight_btn_add = smallButton("userlight_btn_add", "+", this);
    userlight_btn_del = smallButton("userlight_btn_del", "−", this);
    renameButton_ = smallButton("userlight_btn_rename", "✎", this);
    connect(userlight_btn_add, &QToolButton::clicked, this, [&page] { page.addUserLight(); });
    connect(userlight_btn_del, &QToolButton::clicked, this, [&page] { page.delUserLight(); });
    connect(renameButton_, &QToolButton::clicked, this, &UserLightPageView::beginRename);

    userlight_keyboardctrl = new KeyboardLightView(this);
    userlight_keyboardctrl->setObjectName("userlight_keyboardctrl");
    userlight_keyboardctrl->initKeyboard(":/images/img_keyboard_layout.svg", session_.keys.keys());
    userlight_keyboardctrl->setEvent(true);
    connect(userlight_keyboardctrl, &KeyboardLightView::keyClicked, this, [this, &page](int key, bool shift) {
        // Shift as the keyboard's own state knows it (left Shift), or as the pointer event carries it.
        page.keyClicked(key, shift || session_.core.capture.shiftKeyStatus == 1);
    });
    connect(userlight_keyboardctrl, &KeyboardLightView::keysInBand, this, [&page](const std::vector<int>& keys) { page.keysInBand(keys); });
    connect(userlight_keyboardctrl, &KeyboardLightView::keyHovered, this, [&page](int key) { page.keyHovered(key); });

    colors_ = new ColorControls("userlight", this);
    connect(colors_, &ColorControls::colorButtonAction, this, [this](int preset) {
        session_.lighting.colorButtonAction(
            {preset == 0 ? ColorButtonPress::kUserLightSwatch : ColorButtonPress::kUserLightPreset, preset});
    });
    connect(colors_, &ColorControls::fieldEdited, this, [&page](int channel, const QString& text) {
        page.controlTextDidChange(static_cast<ColorChannel>(channel), text.toStdString());
    });

    userlight_btn_resetcolor = texts_.add(new QPushButton(this), 560);
    userlight_btn_resetcolor->setObjectName("userlight_btn_resetcolor");
    userlight_btn_apply = texts_.add(new QPushButton(this), 561);
    userlight_btn_apply->setObjectName("userlight_btn_apply");
    userlight_btn_apply->setDefault(true);
    connect(userlight_btn_resetcolor, &QPushButton::clicked, this, [&page] { page.resetUserLightKeyColor(); });
    connect(userlight_btn_apply, &QPushButton::clicked, this, [&page] { page.applyUserLightKeyColor(); });

    note_ = new QLabel(this);
    note_->setObjectName("userlight_label_unpaintable");
    note_->setWordWrap(true);
    note_->setProperty("role", "note");

    auto* actions = new QVBoxLayout;
    actions->setAlignment(Qt::AlignBottom);  // beside the last row of presets
    actions->addWidget(userlight_btn_resetcolor);
    actions->addWidget(userlight_btn_apply);
    auto* panel = new QHBoxLayout;
    panel->addWidget(colors_, 0, Qt::AlignTop);
    panel->addStretch();
    panel->addLayout(actions);

    // The keyboard and its controls keep together, centred in a wide window.
    auto* column = new QWidget(this);
    auto* right = new QVBoxLayout(column);
    right->setContentsMargins(0, 0, 0, 0);
    right->setSpacing(14);
    right->addWidget(userlight_keyboardctrl, 0, Qt::AlignHCenter);
    right->addWidget(note_);
    right->addLayout(panel);
    right->addStretch();

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setSpacing(16);
    layout->addLayout(listWithButtons(userlight_table, {userlight_btn_add, userlight_btn_del, renameButton_}));
    layout->addWidget(column, 1, Qt::AlignHCenter);

    retranslate();
    sync();
}

void UserLightPageView::retranslate() {
    texts_.apply();
    nameListButtons(userlight_btn_add, userlight_btn_del, renameButton_);
    userlight_keyboardctrl->setAccessibleName(text(ExtraText::kLightKeyboard));
    userlight_table->setAccessibleName(text(textid::kUserLight));
    note_->setText(text(ExtraText::kKeysNotPainted));
    colors_->retranslate();
}

void UserLightPageView::sync() {
    syncing_ = true;
    const UserLightPage& page = session_.userLights;
    const auto& rows = page.userlight_datas();
    if (userlight_table->count() != static_cast<int>(rows.size())) {
        userlight_table->clear();
        for (std::size_t i = 0; i < rows.size(); ++i) {
            auto* item = new QListWidgetItem(userlight_table);
            item->setFlags(item->flags() | Qt::ItemIsEditable);
        }
    }
    for (int r = 0; r < userlight_table->count(); ++r) {
        const QString name = QString::fromStdString(rows[static_cast<std::size_t>(r)].name);
        if (userlight_table->item(r)->text() != name) userlight_table->item(r)->setText(name);
    }
    userlight_table->setCurrentRow(page.selectedRow());
    userlight_btn_del->setEnabled(page.selectedRow() >= 0);
    renameButton_->setEnabled(page.selectedRow() >= 0);

    colors_->setFields(page.userlight_edit_color_r(), page.userlight_edit_color_g(), page.userlight_edit_color_b());
    const LightColor& swatch = page.userlight_btn_color();
    colors_->setSwatch(QColor::fromRgbF(float(swatch.red), float(swatch.green), float(swatch.blue)));
    for (int i = 0; i < userlight_keyboardctrl->keyCount(); ++i) {
        const LightColor& c = page.keyColor(static_cast<std::size_t>(i));
        userlight_keyboardctrl->setKeyColor(i, QColor::fromRgbF(float(c.red), float(c.green), float(c.blue)));
        userlight_keyboardctrl->setKeyHighlighted(i, page.keyHighlighted(static_cast<std::size_t>(i)));
    }
    syncing_ = false;
}

void UserLightPageView::beginRename() {
    editCurrentRow(userlight_table);
}

void UserLightPageView::setEdited(QListWidgetItem* item) {
    if (syncing_) return;
    session_.userLights.renameUserLight(userlight_table->row(item), item->text().toStdString());
}

}  // namespace qx9
