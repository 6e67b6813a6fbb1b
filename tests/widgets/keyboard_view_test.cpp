#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <memory>

#include "layout/key_maps.h"
#include "notification_recorder.h"
#include "widgets/keyboard_view.h"

namespace qx9 {
namespace {

const QPoint kViewOrigin(30, 40);  // the keyboard's place in its parent
const QPoint kOutsideView(5, 5);   // in the window, off the keyboard
const QPoint kViewCorner(3, 3);    // on the keyboard, over no key
const QColor kHighlight(202, 81, 0);

bool isDark(const QColor& c) {
    return c.lightness() < 100;
}

}  // namespace

class KeyboardViewTest : public QObject {
    Q_OBJECT

    std::unique_ptr<QWidget> window_;
    KeyboardView* view_ = nullptr;
    std::unique_ptr<NotificationRecorder> rec_;

    int key(const char* name) const {
        for (const KeyData& k : view_->keys()) {
            if (k.keyname == name) return static_cast<int>(k.index);
        }
        qFatal("%s is not on the keyboard", name);
    }
    QPoint at(int k, double fx = 0.5, double fy = 0.5) const {
        const QRect r = view_->keyRect(k);
        return r.topLeft() + QPoint(int(fx * (r.width() - 1)), int(fy * (r.height() - 1)));
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
    void click(const QPoint& p, Qt::MouseButton b = Qt::LeftButton) {
        QTest::mousePress(view_, b, {}, p);
        QTest::mouseRelease(view_, b, {}, p);
    }
    std::vector<KeyboardToolTip> tips() const {
        return rec_->objects<KeyboardToolTip>(kShowKeyboardToolTipWnd);
    }
    std::vector<std::string> actions() const {
        return rec_->objects<std::string>(kKeyboardKeyAction);
    }

private slots:
    void init() {
        window_ = std::make_unique<QWidget>();
        window_->resize(760, 320);
        view_ = new KeyboardView(window_.get());
        view_->move(kViewOrigin);
        view_->initKeyboard(QString(), buildKeyboardLayout());
        view_->resetKeyMacro();
        view_->resize(view_->sizeHint());
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_.get()));
        rec_ = std::make_unique<NotificationRecorder>(
            std::initializer_list<std::string>{kShowKeyboardToolTipWnd, kKeyboardKeyAction});
        QTest::mouseMove(window_.get(), kOutsideView);
        move(kViewCorner);
        rec_->clear();
    }
    void cleanup() {
        rec_.reset();
        window_.reset();
    }

    void sizeAndKeyRects_data() {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QRect>("rect");
        // Layout rectangles (origin bottom left) of the 234-point-high keyboard, top-down.
        QTest::newRow("escape (23, 187, 33, 36)") << "escape" << QRect(23, 234 - 223, 33, 36);
        QTest::newRow("enter (521, 107, 83, 36)") << "enter" << QRect(521, 234 - 143, 83, 36);
        QTest::newRow("space (173, 23, 236, 36)") << "space" << QRect(173, 234 - 59, 236, 36);
    }
    void sizeAndKeyRects() {
        QFETCH(QString, name);
        QFETCH(QRect, rect);
        QCOMPARE(view_->sizeHint(), QSize(644 + 1 + 21, 223 + 1 + 10));  // key cells + margins
        QCOMPARE(view_->keyRect(key(qPrintable(name))), rect);
    }

    void moveWithinKeyPostsNoSecondTooltip_data() {
        QTest::addColumn<QString>("name");
        for (const char* name : {"escape", "space", "rightArrow"}) QTest::newRow(name) << name;
    }
    void moveWithinKeyPostsNoSecondTooltip() {
        QFETCH(QString, name);
        const int k = key(qPrintable(name));
        for (const QPoint& p : {at(k), at(k, 0, 0), at(k, 1, 1), at(k, 0, 1)}) move(p);
        QCOMPARE(tips().size(), 1u);
        QCOMPARE(tips()[0].show, 1);
        QCOMPARE(view_->hoverKeyItem(), k);
        QVERIFY(view_->isKeyHighlighted(k));
        move(QPoint(view_->keyRect(k).right() + 1, at(k).y()));  // first pixel off the key
        QCOMPARE(tips().size(), 2u);
        QCOMPARE(tips()[1].show, 0);
    }

    void moveFromKeyToKeyHidesThenShows() {
        const int escape = key("escape"), backspace = key("backspace");
        move(at(escape));
        rec_->clear();
        QSignalSpy spy(view_, &KeyboardView::tooltipChanged);
        move(at(backspace));
        QCOMPARE(tips().size(), 2u);
        QVERIFY(tips()[0] == KeyboardToolTip::hidden());
        const KeyboardToolTip show = tips()[1];
        QCOMPARE(show.show, 1);
        QCOMPARE(show.keyDesc, std::string("backspace"));
        QCOMPARE(show.keyMacro, std::string("<-"));
        const QRect r = view_->keyRect(backspace);  // middle of its bottom edge, in the parent
        QCOMPARE(show.x, kViewOrigin.x() + r.x() + r.width() / 2.0);
        QCOMPARE(show.y, double(kViewOrigin.y() + r.y() + r.height()));
        QCOMPARE(spy.count(), 2);
        QVERIFY(spy.at(1).at(0).value<KeyboardToolTip>() == show);
        QVERIFY(!view_->isKeyHighlighted(escape));
    }

    void moveOverGapHidesOnce() {
        move(at(0));
        rec_->clear();
        for (int k : {0, 1, 2}) move(gapAfter(k));
        QCOMPARE(tips().size(), 1u);
        QVERIFY(tips()[0] == KeyboardToolTip::hidden());
        QCOMPARE(view_->hoverKeyItem(), -1);
        QVERIFY(!view_->isKeyHighlighted(0));
        move(at(3));  // from a gap onto a key: a show, no second hide
        QCOMPARE(tips().size(), 2u);
        QCOMPARE(tips()[1].keyDesc, view_->keys()[3].keyname);
    }

    void enterAndLeave_data() {
        QTest::addColumn<bool>("customMode");
        QTest::newRow("assignment page") << false;
        QTest::newRow("custom mode") << true;
    }
    void enterAndLeave() {
        QFETCH(bool, customMode);
        const int escape = key("escape"), tab = key("tab");
        view_->setCustomMode(customMode);
        view_->setKeyCheck(escape, true);
        view_->setKeyCheck(tab, true);
        move(at(escape));
        rec_->clear();
        QTest::mouseMove(window_.get(), kOutsideView);
        QCOMPARE(tips().size(), 1u);
        QVERIFY(tips()[0] == KeyboardToolTip::hidden());
        QCOMPARE(view_->hoverKeyItem(), -1);
        QVERIFY(!view_->isKeyHighlighted(escape));
        QCOMPARE(view_->keyCheck(escape), customMode);  // only the hovered key loses its mark
        QVERIFY(view_->keyCheck(tab));
        move(at(escape, 0.3, 0.6));  // entering hides, then the key shows again
        QCOMPARE(tips().size(), 3u);
        QCOMPARE(tips()[1].show, 0);
        QCOMPARE(tips()[2].keyDesc, std::string("escape"));
    }

    void pressOnOneKeyReleaseOnAnotherPostsNothing() {
        const int a = key("q"), b = key("w");
        move(at(a));
        rec_->clear();
        QSignalSpy spy(view_, &KeyboardView::keyActivated);
        QTest::mousePress(view_, Qt::LeftButton, {}, at(a));
        QTest::mouseMove(view_, at(b));  // a drag: hover and tooltip stay
        QTest::mouseRelease(view_, Qt::LeftButton, {}, at(b));
        QVERIFY(rec_->seen().empty());
        QCOMPARE(spy.count(), 0);
        QCOMPARE(view_->selectKeyItem(), a);
        QCOMPARE(view_->hoverKeyItem(), a);
    }

    void clickPostsKeyActionOnce_data() {
        QTest::addColumn<QString>("name");
        for (const char* name : {"escape", "leftShift", "fn", "rightArrow"}) {
            QTest::newRow(name) << name;
        }
    }
    void clickPostsKeyActionOnce() {
        QFETCH(QString, name);
        const int k = key(qPrintable(name));
        move(at(k, 0.8, 0.2));
        QSignalSpy spy(view_, &KeyboardView::keyActivated);
        click(at(k, 0.8, 0.2), Qt::RightButton);  // only the left button clicks
        QCOMPARE(view_->selectKeyItem(), -1);
        click(at(k, 0.8, 0.2));
        QCOMPARE(actions(), std::vector<std::string>{name.toStdString()});
        QCOMPARE(spy.count(), 1);
        QCOMPARE(spy.at(0).at(0).toString(), name);
        QCOMPARE(view_->selectKeyItem(), k);
        QVERIFY(view_->isKeyHighlighted(k));
    }

    void pressingSelectedKeyAgainKeepsIt() {
        const int a = key("enter"), b = key("pageUp");
        move(at(a));
        click(at(a));
        move(at(a, 0.2, 0.3));
        QTest::mousePress(view_, Qt::LeftButton, {}, at(a, 0.2, 0.3));
        QCOMPARE(view_->selectKeyItem(), a);
        QVERIFY(view_->isKeyHighlighted(a));
        QTest::mouseRelease(view_, Qt::LeftButton, {}, at(a, 0.2, 0.3));
        QCOMPARE(actions(), (std::vector<std::string>{"enter", "enter"}));
        move(gapAfter(a - 1));  // pressing on no key changes nothing either
        click(gapAfter(a - 1));
        QCOMPARE(view_->selectKeyItem(), a);
        QVERIFY(view_->isKeyHighlighted(a));
        move(at(b));
        click(at(b));
        QCOMPARE(view_->selectKeyItem(), b);
        QVERIFY(!view_->isKeyHighlighted(a));
    }

    void homePageIgnoresMotion() {
        bool homePage = true;
        view_->showingHomePage = [&homePage] { return homePage; };
        const int a = key("z"), b = key("x");
        move(at(a));
        move(at(b));
        click(at(b));
        QVERIFY(rec_->seen().empty());
        QCOMPARE(view_->hoverKeyItem(), -1);
        QCOMPARE(view_->selectKeyItem(), -1);
        QVERIFY(!view_->isKeyHighlighted(a) && !view_->isKeyHighlighted(b));
        homePage = false;
        move(at(b, 0.3, 0.3));
        QCOMPARE(tips().size(), 1u);
        QCOMPARE(tips()[0].keyDesc, std::string("x"));
    }

    void resetKeyMacroRestoresDefaultTexts() {
        const int selected = key("i1"), hovered = key("q");
        view_->setKeyMacro(key("backspace"), "Ctrl+C", true);
        view_->setKeyMacro(key("escape"), "Macro 1", true);
        move(at(selected));
        click(at(selected));
        move(at(hovered));
        view_->resetKeyMacro();
        QCOMPARE(view_->keyMacro(key("backspace")), QString("<-"));
        for (const KeyData& k : view_->keys()) {
            const int i = int(k.index);
            QCOMPARE(view_->keyMacro(i).toStdString(),
                     G_KB_SuperKeyNameMap.at(k.keyname).full_name);
            QVERIFY(!view_->isMacro(i));
            QCOMPARE(view_->isKeyHighlighted(i), i == selected || i == hovered);
        }
    }

    void setKeyMacroWithoutMarkKeepsText() {
        const int k = key("capsLock");
        view_->setKeyMacro(k, "Vol Up", true);
        QVERIFY(view_->isMacro(k) && view_->isKeyHighlighted(k));
        view_->setKeyMacro(k, "Ctrl+C", false);
        QCOMPARE(view_->keyMacro(k), QString("Ctrl+C"));
        QVERIFY(!view_->isMacro(k) && !view_->isKeyHighlighted(k));
        move(at(k));
        QCOMPARE(tips().at(0).keyMacro, std::string("Ctrl+C"));
    }

    void paintsKeyStates() {
        const int rest = key("escape"), marked = key("q"), selected = key("space");
        const int checked = key("tab");
        view_->setKeyMacro(marked, "X", true);
        view_->setKeyCheck(checked, true);
        move(at(selected));
        click(at(selected));
        move(kViewCorner + QPoint(1, 0));
        const QImage image = view_->grab().toImage();
        auto aboveLabel = [&](int k) { return at(k, 0.5, 0.12); };
        QCOMPARE(image.pixelColor(aboveLabel(rest)), QColor(Qt::white));
        QCOMPARE(image.pixelColor(aboveLabel(marked)), kHighlight);
        QCOMPARE(image.pixelColor(aboveLabel(selected)), kHighlight);
        QCOMPARE(image.pixelColor(aboveLabel(checked)), QColor(Qt::white));
        QVERIFY(isDark(image.pixelColor(gapAfter(rest))));  // the body between the keys

        int label = 0;  // dark text across the middle of the resting key
        const QRect r = view_->keyRect(rest);
        for (int x = r.left() + 2; x < r.right() - 1; ++x)
            label += isDark(image.pixelColor(x, r.center().y()));
        QVERIFY2(label > 2, "no label");

        int frame = 0, edge = 0;  // a dashed frame along the checked key's edge
        const QRect t = view_->keyRect(checked);
        for (int x = t.left() + 5; x < t.right() - 4; ++x, ++edge) {
            frame += image.pixelColor(x, t.top() + 1) == kHighlight;
        }
        QVERIFY2(frame > edge / 2 && frame < edge,
                 qPrintable(QString("%1 of %2").arg(frame).arg(edge)));
    }

    void drawsGivenPicture() {
        QTemporaryDir dir;
        const QString svg = dir.filePath("keyboard.svg");
        QFile file(svg);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(
            "<svg xmlns='http://www.w3.org/2000/svg' width='666' height='234'>"
            "<rect width='666' height='234' fill='#00ff00'/></svg>");
        file.close();
        const QString png = dir.filePath("keyboard.png");
        QImage blue(333, 117, QImage::Format_RGB32);
        blue.fill(Qt::blue);
        QVERIFY(blue.save(png));
        for (const QString& path : {svg, png, QString(":/images/none"), QString()}) {
            view_->initKeyboard(path, buildKeyboardLayout());
            const QColor gap = view_->grab().toImage().pixelColor(gapAfter(0));
            QCOMPARE(view_->hasPicture(), path == svg || path == png);
            QVERIFY2(path == svg   ? gap == QColor(Qt::green)
                     : path == png ? gap == QColor(Qt::blue)
                                   : isDark(gap),
                     qPrintable(path + " gives " + gap.name()));
        }
    }

    void badIndexIsFatal_data() {
        QTest::addColumn<int>("operation");
        QTest::addColumn<int>("index");
        QTest::newRow("setKeyMacro past the end") << 0 << 66;
        QTest::newRow("setKeyMacro negative") << 0 << -1;
        QTest::newRow("setKeyCheck past the end") << 1 << 66;
    }
    void badIndexIsFatal() {
        QFETCH(int, operation);
        QFETCH(int, index);
        std::fflush(nullptr);
        const pid_t child = fork();
        QVERIFY(child >= 0);
        if (child == 0) {
            if (!std::freopen("/dev/null", "w", stderr)) _exit(3);
            if (operation == 0)
                view_->setKeyMacro(index, "x", true);
            else
                view_->setKeyCheck(index, true);
            _exit(0);
        }
        int status = 0;
        QCOMPARE(waitpid(child, &status, 0), child);
        QVERIFY2(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT, "the call did not stop");
    }
};

int runKeyboardViewTests(int argc, char** argv) {
    KeyboardViewTest test;
    return QTest::qExec(&test, argc, argv);
}

}  // namespace qx9

#include "keyboard_view_test.moc"
