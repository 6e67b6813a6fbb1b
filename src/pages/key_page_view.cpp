#include "pages/key_page_view.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTimer>
#include <QToolButton>
#include <QVBoxLayout>

#include "i18n/extra_texts.h"
#include "i18n/language.h"
#include "pages/page_controls.h"
#include "session/keyboard_session.h"
#include "widgets/custom_key_func_view.h"
#include "widgets/keyboard_view.h"

namespace qx9 {

namespace {

// Layer buttons show the chosen layer by their colour (grey 51 or the orange 202, 81, 0);
// the Fn-mode buttons by their text colour (white or the orange).
QPushButton* toggleButton(const char* name, const char* role, QWidget* parent) {
    auto* b = new QPushButton(parent);
    b->setObjectName(name);
    b->setCursor(Qt::PointingHandCursor);
    b->setProperty("role", role);
    return b;
}

// Marks the chosen button of a pair ("active", which the style sheet colours) and restyles both.
void showActivePair(QWidget* first, QWidget* second, bool secondChosen) {
    showActive(first, !secondChosen);
    showActive(second, secondChosen);
}

}  // namespace

KeyPageView::KeyPageView(KeyboardSession& session, QWidget* parent) : QWidget(parent), session_(session) {
    setObjectName("customkey_view");

    customkey_keyboardctrl = new KeyboardView(this);
    customkey_keyboardctrl->setObjectName("customkey_keyboardctrl");
    customkey_keyboardctrl->initKeyboard(":/images/img_keyboard_layout.svg", session_.keys.keys());

    customkey_funcctrl = new CustomKeyFuncView(this);
    customkey_funcctrl->setObjectName("customkey_funcctrl");
    customkey_funcctrl->initKeyFuncs(session_.keys.palette());

    customkey_btn_toplayer = texts_.add(toggleButton("customkey_btn_toplayer", "segment", this), 90);
    customkey_btn_fnlayer = texts_.add(toggleButton("customkey_btn_fnlayer", "segment", this), 91);
    customkey_btn_defaultkey = texts_.add(toggleButton("customkey_btn_defaultkey", "textswitch", this), 601);
    customkey_btn_fnkey = texts_.add(toggleButton("customkey_btn_fnkey", "textswitch", this), 602);
    connect(customkey_keyboardctrl, &KeyboardView::keyboardKeyAction, this,
            [this](const std::string& name) { session_.keys.keyboardKeyAction(name); });
    connect(customkey_funcctrl, &CustomKeyFuncView::customKeyFuncAction, this,
            [this](std::int64_t code) { session_.keys.customKeyFuncAction(code); });
    // Each pair reports 0 from its first button and 1 from its second.
    connect(customkey_btn_toplayer, &QPushButton::clicked, this, [this] { session_.keys.selectButtonAction(0); });
    connect(customkey_btn_fnlayer, &QPushButton::clicked, this, [this] { session_.keys.selectButtonAction(1); });
    connect(customkey_btn_defaultkey, &QPushButton::clicked, this, [this] { session_.keys.textButtonAction(0); });
    connect(customkey_btn_fnkey, &QPushButton::clicked, this, [this] { session_.keys.textButtonAction(1); });

    customkey_keyprofile = new QListWidget(this);
    customkey_keyprofile->setObjectName("keyprofilelist");
    customkey_keyprofile->setEditTriggers(QAbstractItemView::NoEditTriggers);
    customkey_keyprofile->setMinimumWidth(190);
    connect(customkey_keyprofile, &QListWidget::currentRowChanged, this, [this](int row) {
        if (!syncing_ && row >= 0) session_.profiles.tableSelectionChanged(row);
    });
    connect(customkey_keyprofile, &QListWidget::itemChanged, this, &KeyPageView::profileEdited);

    addButton_ = smallButton("customkey_btn_addprofile", "+", this);
    deleteButton_ = smallButton("customkey_btn_delprofile", "−", this);
    renameButton_ = smallButton("customkey_btn_renameprofile", "✎", this);
    connect(addButton_, &QToolButton::clicked, this, [this] { session_.profiles.customkey_button_profile(ProfileList::kAdd); });
    connect(deleteButton_, &QToolButton::clicked, this, [this] { session_.profiles.customkey_button_profile(ProfileList::kDelete); });
    connect(renameButton_, &QToolButton::clicked, this, [this] {
        session_.profiles.customkey_button_profile(ProfileList::kRename);
        beginRename();
    });

    auto* layers = new QHBoxLayout;
    layers->setSpacing(0);
    layers->addWidget(customkey_btn_toplayer);
    layers->addWidget(customkey_btn_fnlayer);
    layers->addSpacing(24);
    layers->addWidget(customkey_btn_defaultkey);
    layers->addWidget(customkey_btn_fnkey);
    layers->addStretch();

    auto* top = new QHBoxLayout;
    top->addLayout(listWithButtons(customkey_keyprofile, {addButton_, deleteButton_, renameButton_}));
    top->addSpacing(16);
    auto* keyboardColumn = new QVBoxLayout;
    keyboardColumn->addLayout(layers);
    keyboardColumn->addWidget(customkey_keyboardctrl, 0, Qt::AlignLeft);
    top->addLayout(keyboardColumn);

    // The keyboard and the palette are pictures of a fixed size: in a larger window they stay
    // together in the middle.
    auto* page = new QVBoxLayout(this);
    page->setContentsMargins(20, 16, 20, 16);
    page->addStretch();
    page->addLayout(centredRow(top));
    page->addSpacing(12);
    page->addWidget(customkey_funcctrl, 0, Qt::AlignHCenter);
    page->addStretch();

    syncKeys();
    syncLayerButtons();
    syncFnModeButtons();
}

void KeyPageView::syncKeys() {
    const auto& keys = session_.keys.keys();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        customkey_keyboardctrl->setKeyMacro(static_cast<int>(i), QString::fromStdString(keys[i].keyMacro),
                                            session_.keys.isMacro(i));
    }
}

void KeyPageView::syncPalette() {
    customkey_funcctrl->clearSelection();
    if (auto selected = session_.keys.selectedPaletteKey()) customkey_funcctrl->setSelected(static_cast<int>(*selected), true);
}

void KeyPageView::syncLayerButtons() {
    showActivePair(customkey_btn_toplayer, customkey_btn_fnlayer, session_.core.currentFnLayer != 0);
}

void KeyPageView::syncFnModeButtons() {
    showActivePair(customkey_btn_defaultkey, customkey_btn_fnkey, session_.keys.fnKeyActive());
}

void KeyPageView::syncProfiles() {
    syncing_ = true;
    const auto& rows = session_.profiles.rows();
    customkey_keyprofile->clear();
    for (const ProfileRow& r : rows) {
        auto* item = new QListWidgetItem(QString::fromStdString(r.name), customkey_keyprofile);
        item->setFlags(item->flags() | Qt::ItemIsEditable);
    }
    const int row = session_.profiles.selectedRow();
    customkey_keyprofile->setCurrentRow(row >= 0 && row < static_cast<int>(rows.size()) ? row : -1);
    syncing_ = false;
}

void KeyPageView::retranslate() {
    texts_.apply();
    nameListButtons(addButton_, deleteButton_, renameButton_);
    customkey_keyboardctrl->setAccessibleName(text(ExtraText::kLightKeyboard));
    customkey_funcctrl->setAccessibleName(text(ExtraText::kKeyFunctions));
    customkey_keyprofile->setAccessibleName(text(ExtraText::kProfiles));
}

void KeyPageView::beginRename() {
    if (!session_.profiles.renameAllowed()) return;
    editCurrentRow(customkey_keyprofile);
}

void KeyPageView::profileEdited(QListWidgetItem* item) {
    if (syncing_) return;
    const int index = customkey_keyprofile->row(item);
    const std::string text = item->text().toStdString();
    // Once the editor has closed: the list is rebuilt then, not under the editor.
    QTimer::singleShot(0, this, [this, index, text] {
        session_.profiles.keyTableItemViewEdit(index, text);
        syncProfiles();  // an empty or refused name shows the stored one again
    });
}

}  // namespace qx9
