#include "widgets/keyboard_accessible.h"

#include <QAccessibleActionInterface>
#include <QWidget>

#include <mutex>

#include "layout/key_maps.h"

namespace qx9 {

namespace {

// One key of an accessible keyboard. It has no object of its own: it lives as long as the
// keyboard's interface, which deletes it.
class KeyAccessible : public QAccessibleInterface, public QAccessibleActionInterface {
public:
    KeyAccessible(KeyboardAccessible* keyboard, int key) : keyboard_(keyboard), key_(key) {}

    bool isValid() const override { return keyboard_->isValid() && key_ < keyboard_->childCount(); }
    QObject* object() const override { return nullptr; }
    QWindow* window() const override { return keyboard_->window(); }
    QAccessibleInterface* parent() const override { return keyboard_; }
    QAccessibleInterface* child(int) const override { return nullptr; }
    int childCount() const override { return 0; }
    int indexOfChild(const QAccessibleInterface*) const override { return -1; }
    QAccessibleInterface* childAt(int, int) const override { return nullptr; }
    QAccessible::Role role() const override {
        return keyboard_->keys()->accessibleKeysPressable() ? QAccessible::Button : QAccessible::StaticText;
    }

    QString text(QAccessible::Text t) const override {
        switch (t) {
            case QAccessible::Name: return keyboard_->keys()->accessibleKeyName(key_);
            case QAccessible::Description: return keyboard_->keys()->accessibleKeyDescription(key_);
            default: return {};
        }
    }
    void setText(QAccessible::Text, const QString&) override {}

    QRect rect() const override {
        auto* w = static_cast<QWidget*>(keyboard_->object());
        const QRect r = keyboard_->keys()->accessibleKeyRect(key_);
        return QRect(w->mapToGlobal(r.topLeft()), r.size());
    }

    QAccessible::State state() const override {
        QAccessible::State s;
        auto* w = static_cast<QWidget*>(keyboard_->object());
        s.disabled = !w->isEnabled();
        s.invisible = !w->isVisible();
        s.checkable = keyboard_->keys()->accessibleKeysCheckable();
        s.checked = s.checkable && keyboard_->keys()->accessibleKeySelected(key_);
        s.focusable = w->focusPolicy() != Qt::NoFocus;
        s.focused = w->hasFocus() && keyboard_->keys()->accessibleFocusKey() == key_;
        return s;
    }

    void* interface_cast(QAccessible::InterfaceType type) override {
        return type == QAccessible::ActionInterface ? static_cast<QAccessibleActionInterface*>(this) : nullptr;
    }
    QStringList actionNames() const override {
        return keyboard_->keys()->accessibleKeysPressable() ? QStringList{pressAction()} : QStringList{};
    }
    QStringList keyBindingsForAction(const QString&) const override { return {}; }
    void doAction(const QString& name) override {
        if (name == pressAction()) keyboard_->keys()->accessibleKeyPress(key_);
    }

private:
    KeyboardAccessible* keyboard_;
    int key_;
};

QAccessibleInterface* keyboardFactory(const QString&, QObject* object) {
    auto* widget = qobject_cast<QWidget*>(object);
    auto* keys = dynamic_cast<AccessibleKeyboard*>(object);
    return widget && keys ? new KeyboardAccessible(widget, keys) : nullptr;
}

}  // namespace

QString keyFullName(const std::string& keyName) {
    const KeyNameEntry* e = G_KB_SuperKeyNameMap.find(keyName);
    return e ? spokenKeyName(e->full_name, e->key_code) : QString::fromStdString(keyName);
}

QString spokenKeyName(const std::string& fullName, int code) {
    constexpr int kLeftControl = 224, kRightControl = 228, kRightCommand = 231;  // HID modifier usages
    constexpr int kNumLock = 83, kKeypadDot = 99;                                // HID keypad usages
    const QString name = QString::fromStdString(fullName);
    const auto with = [&](const char* word) { return name.startsWith(word) ? name : QString("%1 %2").arg(word, name); };
    if (code >= kLeftControl && code < kRightControl) return with("Left");
    if (code >= kRightControl && code <= kRightCommand) return with("Right");
    if (code > kNumLock && code <= kKeypadDot) return with("Keypad");
    return name;
}

void installKeyboardAccessibility() {
    static std::once_flag once;
    std::call_once(once, [] { QAccessible::installFactory(keyboardFactory); });
}

void AccessibleKeyboard::keyChanged(QWidget* keyboard, int key, QAccessible::Event what) {
    if (!QAccessible::isActive()) return;
    QAccessibleInterface* iface = QAccessible::queryAccessibleInterface(keyboard);
    QAccessibleInterface* child = iface ? iface->child(key) : nullptr;
    if (!child) return;
    if (what != QAccessible::StateChanged) {
        QAccessibleEvent event(child, what);
        QAccessible::updateAccessibility(&event);
        return;
    }
    QAccessible::State selection;  // a state change needs its own event, naming what changed
    selection.checked = true;
    QAccessibleStateChangeEvent event(child, selection);
    QAccessible::updateAccessibility(&event);
}

KeyboardAccessible::KeyboardAccessible(QWidget* widget, AccessibleKeyboard* keys)
    : QAccessibleWidget(widget, QAccessible::Grouping), keys_(keys) {}

KeyboardAccessible::~KeyboardAccessible() {
    for (QAccessible::Id id : children_) {
        if (id) QAccessible::deleteAccessibleInterface(id);
    }
}

int KeyboardAccessible::childCount() const {
    return keys_->accessibleKeyCount();
}

QAccessibleInterface* KeyboardAccessible::child(int index) const {
    if (index < 0 || index >= childCount()) return nullptr;
    if (children_.size() < static_cast<std::size_t>(childCount())) children_.resize(static_cast<std::size_t>(childCount()), 0);
    QAccessible::Id& id = children_[static_cast<std::size_t>(index)];
    if (!id) id = QAccessible::registerAccessibleInterface(new KeyAccessible(const_cast<KeyboardAccessible*>(this), index));
    return QAccessible::accessibleInterface(id);
}

int KeyboardAccessible::indexOfChild(const QAccessibleInterface* child) const {
    for (std::size_t i = 0; i < children_.size(); ++i) {
        if (children_[i] && QAccessible::accessibleInterface(children_[i]) == child) return static_cast<int>(i);
    }
    return -1;
}

QAccessibleInterface* KeyboardAccessible::focusChild() const {
    const int key = keys_->accessibleFocusKey();
    return widget()->hasFocus() && key >= 0 ? child(key) : QAccessibleWidget::focusChild();
}

QAccessibleInterface* KeyboardAccessible::childAt(int x, int y) const {
    const QPoint p = widget()->mapFromGlobal(QPoint(x, y));
    for (int i = 0; i < childCount(); ++i) {
        if (keys_->accessibleKeyRect(i).contains(p)) return child(i);
    }
    return nullptr;
}

}  // namespace qx9
