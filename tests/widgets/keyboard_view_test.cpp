#include <QtTest>

#include "view_harness.h"
#include "widgets/keyboard_view.h"

namespace qx9 {
namespace {

const QPoint kViewOrigin(30, 40);  // the keyboard's place in its parent
const QPoint kOutsideView(5, 5);   // in the window, off the keyboard
const QPoint kViewCorner(3, 3);    // on the keyboard, over no key

}  // namespace

class KeyboardViewTest : public QObject, ViewHarness<KeyboardView> {
    Q_OBJECT

    int key(const char* name) const {
        for (const KeyData& k : view_->keys()) {
            if (k.keyname == name) return static_cast<int>(k.index);
        }
        qFatal("%s is not on the keyboard", name);
    }
    // Between key k and the next key of its row; checked to be over no key.
    QPoint gapAfter(int k) const {
        const QPoint p((view_->keyRect(k).right() + view_->keyRect(k + 1).left()) / 2,
                       view_->keyRect(k).center().y());
        for (int i = 0; i < view_->keyCount(); ++i) {
            if (view_->keyRect(i).contains(p)) qFatal("gap point over key %d", i);
        }
        return p;
    }
    void move(const QPoint& p) { QTest::mouseMove(view_, p); }
    void click(const QPoint& p, Qt::MouseButton b = Qt::LeftButton) { QTest::mouseClick(view_, b, {}, p); }
    void clearReports() {
        actions_.clear();
        reports_ = 0;
    }
    std::vector<std::string> actions_;  // keyboardKeyAction's names
    int reports_ = 0;                   // both signals

private slots:
    void init() {
        createView({760, 320}, kViewOrigin);
        view_->initKeyboard(QString(), buildKeyboardLayout());
        view_->resetKeyMacro();
        QVERIFY(expose());
        connect(view_, &KeyboardView::keyboardKeyAction, this, [this](const std::string& name) {
            actions_.push_back(name);
            ++reports_;
        });
        connect(view_, &KeyboardView::ShowKeyboardToolTipWnd, this, [this] { ++reports_; });
        QTest::mouseMove(window_.get(), kOutsideView);
        move(kViewCorner);
        clearReports();
    }
    void cleanup() { closeView(); }

    // Only the left button clicks; a click posts the key's name once and selects the key.
    void clickPostsKeyActionOnce() {
        std::vector<std::string> names;
        int previous = -1;
        for (const char* name : {"escape", "leftShift", "rightArrow"}) {
            const int k = key(name);
            move(at(k, 0.8, 0.2));
            click(at(k, 0.8, 0.2), Qt::RightButton);
            QCOMPARE(view_->selectKeyItem(), previous);
            click(at(k, 0.8, 0.2));
            names.push_back(name);
            QCOMPARE(actions_, names);
            QCOMPARE(view_->selectKeyItem(), k);
            QVERIFY(view_->isKeyHighlighted(k) && (previous < 0 || !view_->isKeyHighlighted(previous)));
            previous = k;
        }
    }

    void pressAndReleaseMustMeetOnOneKey() {
        const int a = key("enter"), b = key("pageUp");
        move(at(a));
        clearReports();
        QTest::mousePress(view_, Qt::LeftButton, {}, at(a));
        QTest::mouseMove(view_, at(b));  // a drag: hover and tooltip stay
        QTest::mouseRelease(view_, Qt::LeftButton, {}, at(b));
        QCOMPARE(reports_, 0);
        QCOMPARE(view_->selectKeyItem(), a);
        QCOMPARE(view_->hoverKeyItem(), a);
        // Pressing the selected key again keeps it selected and clicks again.
        move(at(a, 0.2, 0.3));
        QTest::mousePress(view_, Qt::LeftButton, {}, at(a, 0.2, 0.3));
        QVERIFY(view_->selectKeyItem() == a && view_->isKeyHighlighted(a));
        QTest::mouseRelease(view_, Qt::LeftButton, {}, at(a, 0.2, 0.3));
        QCOMPARE(actions_, std::vector<std::string>{"enter"});
        move(gapAfter(a - 1));  // pressing on no key changes nothing either
        click(gapAfter(a - 1));
        QVERIFY(view_->selectKeyItem() == a && view_->isKeyHighlighted(a));
    }

    // From the keyboard: the arrows go to the neighbouring key, Home and End to the ends, Space
    // clicks the focused key; the key has the focus in the accessibility tree.
    void arrowKeysMoveAndSpaceClicks() {
        view_->setFocus();
        QTRY_VERIFY(view_->hasFocus());
        QAccessibleInterface* keys = QAccessible::queryAccessibleInterface(view_);
        const std::pair<Qt::Key, const char*> steps[] = {
            {Qt::Key_Right, "i1"},   {Qt::Key_Down, "q"},       {Qt::Key_Down, "a"},     {Qt::Key_Left, "capsLock"},
            {Qt::Key_Up, "tab"},    {Qt::Key_End, "rightArrow"}, {Qt::Key_Up, "pageDown"}, {Qt::Key_Home, "escape"},
            {Qt::Key_Left, "escape"}};
        for (const auto& [press, name] : steps) {
            QTest::keyClick(view_, press);
            QCOMPARE(view_->accessibleFocusKey(), key(name));
            QVERIFY(keys->child(key(name))->state().focused);
        }
        QTest::keyClick(view_, Qt::Key_Right);
        QTest::keyClick(view_, Qt::Key_Space);
        QCOMPARE(actions_, std::vector<std::string>{"i1"});
        QCOMPARE(view_->selectKeyItem(), key("i1"));
    }
};

int runKeyboardViewTests(int argc, char** argv) {
    KeyboardViewTest test;
    return QTest::qExec(&test, argc, argv);
}

}  // namespace qx9

#include "keyboard_view_test.moc"
