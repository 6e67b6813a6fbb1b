#pragma once

#include <QObject>

#include <functional>

class QKeyEvent;
class QPainter;
class QWidget;

namespace qx9 {

class AccessibleKeyboard;

// A drawn keyboard used from the keyboard: one key has the focus; the arrow keys move it to the
// nearest key in their direction, Home and End to the first and the last key; Space and Return
// act on it as a click does (with Shift: `extend`). While the view has the focus a ring shows the
// focused key, and screen readers are told which key it is. It takes the view's key and focus
// events itself; the view calls paint() last in its paintEvent.
class KeyFocus : public QObject {
public:
    using Act = std::function<void(int key, bool extend)>;
    KeyFocus(QWidget* view, const AccessibleKeyboard& keys, Act act);

    // The focused key while the view has the focus, else −1.
    int key() const;
    void paint(QPainter& painter) const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool keyPress(QKeyEvent* event);
    int nearest(int dx, int dy) const;
    void moveTo(int key);

    QWidget* view_;
    const AccessibleKeyboard& keys_;
    Act act_;
    int key_ = 0;
};

}  // namespace qx9
