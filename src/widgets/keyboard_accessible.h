#pragma once

#include <QAccessibleWidget>
#include <QRect>
#include <QString>

#include <string>
#include <vector>

namespace qx9 {

// What a drawn keyboard tells the accessibility tree about its keys. A keyboard widget that
// implements it shows up with one accessible child per key (role button, the key's name, its
// rectangle, checked while selected) whose press action acts as a click on the key.
class AccessibleKeyboard {
public:
    virtual ~AccessibleKeyboard() = default;
    virtual int accessibleKeyCount() const = 0;
    // In widget coordinates.
    virtual QRect accessibleKeyRect(int key) const = 0;
    virtual QString accessibleKeyName(int key) const = 0;
    // More about the key (a colour, an assignment); empty when there is nothing more.
    virtual QString accessibleKeyDescription(int /*key*/) const { return {}; }
    // Whether selecting keys is possible at all, and whether this one is selected.
    virtual bool accessibleKeysCheckable() const { return false; }
    virtual bool accessibleKeySelected(int /*key*/) const { return false; }
    virtual void accessibleKeyPress(int key) = 0;
    // Whether a press does anything (a keyboard that only shows colours offers no action).
    virtual bool accessibleKeysPressable() const { return true; }
    // The key that has the keyboard focus while the widget has it; −1 for none.
    virtual int accessibleFocusKey() const { return -1; }

    // Tells a screen reader that the key was selected or unselected (StateChanged) or that its
    // description changed (DescriptionChanged).
    static void keyChanged(QWidget* keyboard, int key, QAccessible::Event what = QAccessible::StateChanged);
};

// The name a key is read out by: the full name of its key name ("Escape" for "escape"), or the
// key name itself where the name map does not know it.
QString keyFullName(const std::string& keyName);
// A key's name as a screen reader says it: the two Shift, Control, Option and Command keys say
// left or right, the keypad's keys say keypad (`code` is the key's HID usage).
QString spokenKeyName(const std::string& fullName, int code);

// Makes every widget that implements AccessibleKeyboard reachable as described above. Called
// by such widgets when they are built; installs the factory once.
void installKeyboardAccessibility();

// The accessible keyboard: the widget and its keys.
class KeyboardAccessible : public QAccessibleWidget {
public:
    KeyboardAccessible(QWidget* widget, AccessibleKeyboard* keys);
    ~KeyboardAccessible() override;

    int childCount() const override;
    QAccessibleInterface* child(int index) const override;
    int indexOfChild(const QAccessibleInterface* child) const override;
    QAccessibleInterface* childAt(int x, int y) const override;
    QAccessibleInterface* focusChild() const override;

    AccessibleKeyboard* keys() const { return keys_; }

private:
    AccessibleKeyboard* keys_;
    mutable std::vector<QAccessible::Id> children_;  // 0 until asked for
};

}  // namespace qx9
