#include "app/undo_buttons.h"

#include <QHBoxLayout>
#include <QShortcut>
#include <QToolButton>

#include "session/keyboard_session.h"

namespace qx9 {

namespace {

constexpr QSize kIconSize{22, 22};

struct MoveButton {
    UndoHistory::Move move;
    const char* name;
    const char* icon;
    const char* iconOff;  // with nothing to undo or redo: darker than the style would make it
};
constexpr MoveButton kMoveButtons[] = {
    {UndoHistory::Move::kUndo, "undo_btn", ":/images/icon_undo.svg", ":/images/icon_undo_off.svg"},
    {UndoHistory::Move::kRedo, "redo_btn", ":/images/icon_redo.svg", ":/images/icon_redo_off.svg"},
};

QList<QKeySequence> keysOf(UndoHistory::Move move) {
    if (move == UndoHistory::Move::kUndo) return {QKeySequence(Qt::CTRL | Qt::Key_Z)};
    return {QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Z), QKeySequence(Qt::CTRL | Qt::Key_Y)};
}

}  // namespace

UndoButtons::UndoButtons(KeyboardSession& session, QWidget* window, QWidget* parent)
    : QWidget(parent), session_(session) {
    setObjectName("undo_buttons");
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    for (std::size_t i = 0; i < controls_.size(); ++i) {
        const MoveButton& m = kMoveButtons[i];
        Control& c = controls_[i];
        c.move = m.move;
        c.button = new QToolButton(this);
        c.button->setObjectName(m.name);
        QIcon icon(m.icon);
        icon.addFile(m.iconOff, {}, QIcon::Disabled);
        c.button->setIcon(icon);
        c.button->setIconSize(kIconSize);
        c.button->setCursor(Qt::PointingHandCursor);
        c.button->setAutoRaise(true);
        c.button->setEnabled(false);
        layout->addWidget(c.button);
        c.shortcut = new QShortcut(window);
        c.shortcut->setKeys(keysOf(m.move));
        c.shortcut->setContext(Qt::WindowShortcut);
        c.shortcut->setEnabled(false);
        const UndoHistory::Move move = m.move;
        const auto act = [this, move] { session_.history.make(move); };
        connect(c.button, &QToolButton::clicked, this, act);
        connect(c.shortcut, &QShortcut::activated, this, act);
    }
}

void UndoButtons::retranslate(int language) {
    language_ = language;
    sync();
}

void UndoButtons::sync() {
    const bool pagesShown = !session_.device.showingHomePage();
    for (Control& c : controls_) {
        const UndoHistory::Button b = session_.history.button(c.move, language_);
        c.enabled = pagesShown && b.enabled;
        c.button->setEnabled(c.enabled);
        c.button->setToolTip(QString::fromStdString(b.tip));
        c.button->setAccessibleName(QString::fromStdString(b.name));
    }
    syncShortcuts();
}

void UndoButtons::syncShortcuts() {
    const bool keysFree = !session_.keysCaptured();
    for (Control& c : controls_) c.shortcut->setEnabled(c.enabled && keysFree);
}

}  // namespace qx9
