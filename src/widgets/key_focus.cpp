#include "widgets/key_focus.h"

#include <QKeyEvent>
#include <QPainter>
#include <QWidget>
#include <limits>

#include "widgets/keyboard_accessible.h"

namespace qx9 {

namespace {

// A key off to the side counts this much more than one straight ahead.
constexpr int kSidewaysWeight = 3;

}  // namespace

KeyFocus::KeyFocus(QWidget* view, const AccessibleKeyboard& keys, Act act)
    : QObject(view), view_(view), keys_(keys), act_(std::move(act)) {
    view->setFocusPolicy(Qt::StrongFocus);
    view->installEventFilter(this);
}

int KeyFocus::key() const { return view_->hasFocus() && key_ < keys_.accessibleKeyCount() ? key_ : -1; }

bool KeyFocus::eventFilter(QObject*, QEvent* event) {
    switch (event->type()) {
        case QEvent::KeyPress: return keyPress(static_cast<QKeyEvent*>(event));
        case QEvent::FocusIn:
            view_->update();
            if (key() >= 0) AccessibleKeyboard::keyChanged(view_, key_, QAccessible::Focus);
            return false;
        case QEvent::FocusOut: view_->update(); return false;
        default: return false;
    }
}

bool KeyFocus::keyPress(QKeyEvent* event) {
    const int count = keys_.accessibleKeyCount();
    if (count == 0) return false;
    if (key_ >= count) key_ = 0;
    switch (event->key()) {
        case Qt::Key_Left: moveTo(nearest(-1, 0)); return true;
        case Qt::Key_Right: moveTo(nearest(1, 0)); return true;
        case Qt::Key_Up: moveTo(nearest(0, -1)); return true;
        case Qt::Key_Down: moveTo(nearest(0, 1)); return true;
        case Qt::Key_Home: moveTo(0); return true;
        case Qt::Key_End: moveTo(count - 1); return true;
        case Qt::Key_Space:
        case Qt::Key_Return:
        case Qt::Key_Enter:
            if (event->isAutoRepeat()) return true;
            act_(key_, event->modifiers().testFlag(Qt::ShiftModifier));
            return true;
        default: return false;
    }
}

// The key whose centre lies ahead in direction (dx, dy) and closest, counting sideways distance
// more; the focused key itself when there is none.
int KeyFocus::nearest(int dx, int dy) const {
    const QPoint from = keys_.accessibleKeyRect(key_).center();
    int best = key_;
    long long bestScore = std::numeric_limits<long long>::max();
    for (int k = 0; k < keys_.accessibleKeyCount(); ++k) {
        const QPoint d = keys_.accessibleKeyRect(k).center() - from;
        const int ahead = d.x() * dx + d.y() * dy;
        if (ahead <= 0) continue;
        const int sideways = std::abs(dx != 0 ? d.y() : d.x());
        const long long score = ahead + static_cast<long long>(kSidewaysWeight) * sideways;
        if (score < bestScore) {
            bestScore = score;
            best = k;
        }
    }
    return best;
}

void KeyFocus::moveTo(int key) {
    if (key == key_) return;
    key_ = key;
    view_->update();
    AccessibleKeyboard::keyChanged(view_, key_, QAccessible::Focus);
}

void KeyFocus::paint(QPainter& painter) const {
    if (key() < 0) return;
    painter.save();
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(view_->palette().color(QPalette::Highlight), 2, Qt::DashLine));
    painter.drawRoundedRect(QRectF(keys_.accessibleKeyRect(key_)).adjusted(-1, -1, 1, 1), 5, 5);
    painter.restore();
}

}  // namespace qx9
