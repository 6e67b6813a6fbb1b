#include <QSignalSpy>
#include <QTemporaryDir>
#include <QtTest>

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include "view_harness.h"
#include "widgets/keyboard_view.h"

namespace qx9 {
namespace {

const QPoint kViewOrigin(30, 40);  // the keyboard's place in its parent
const QPoint kOutsideView(5, 5);   // in the window, off the keyboard
const QPoint kViewCorner(3, 3);    // on the keyboard, over no key
const QColor kHighlight(202, 81, 0);

}  // namespace

class KeyboardViewTest : public QObject, ViewHarness<KeyboardView> {
    Q_OBJECT

    static bool isDark(const QColor& c) { return c.lightness() < 100; }
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
    std::vector<KeyboardToolTip> tips() const {
        return rec_->objects<KeyboardToolTip>(kShowKeyboardToolTipWnd);
    }
    // "show NAME" for a key's tooltip, "hide" for the hidden one.
    QStringList tipLog() const {
        QStringList out;
        for (const KeyboardToolTip& t : tips())
            out << (t == KeyboardToolTip::hidden() ? "hide"
                                                   : (t.show ? "show " : "odd ") + QString::fromStdString(t.keyDesc));
        return out;
    }
    std::vector<std::string> actions() const { return rec_->objects<std::string>(kKeyboardKeyAction); }

private slots:
    void init() {
        createView({760, 320}, kViewOrigin);
        view_->initKeyboard(QString(), buildKeyboardLayout());
        view_->resetKeyMacro();
        QVERIFY(expose({kShowKeyboardToolTipWnd, kKeyboardKeyAction}));
        QTest::mouseMove(window_.get(), kOutsideView);
        move(kViewCorner);
        rec_->clear();
    }
    void cleanup() { closeView(); }

    void sizeAndKeyRects() {
        // Layout rectangles have their origin at the bottom left of the 234-point-high keyboard.
        QCOMPARE(view_->sizeHint(), QSize(644 + 1 + 21, 223 + 1 + 10));  // key cells + margins
        QCOMPARE(view_->keyRect(key("escape")), QRect(23, 234 - 223, 33, 36));  // (23, 187, 33, 36)
    }

    // Moves over the keyboard and the tooltips they post: one show when the pointer comes onto a
    // key, one hide when it leaves it for a gap, another key or the window.
    void movesPostTooltips_data() {
        QTest::addColumn<QStringList>("path");
        QTest::addColumn<QStringList>("tips");
        QTest::newRow("within a key, then its first pixel off")
            << QStringList{"escape", "escape@0,0", "escape@1,1", "escape@0,1", "escape+1"}
            << QStringList{"show escape", "hide"};
        QTest::newRow("key to key") << QStringList{"escape", "backspace"}
                                    << QStringList{"show escape", "hide", "show backspace"};
        QTest::newRow("over gaps, then onto a key") << QStringList{"escape", "gap0", "gap1", "gap2", "i3"}
                                                     << QStringList{"show escape", "hide", "show i3"};
    }
    void movesPostTooltips() {
        QFETCH(QStringList, path);
        QFETCH(QStringList, tips);
        for (const QString& step : path) {
            int hovered = -1;
            if (step.startsWith("gap")) {
                move(gapAfter(step.mid(3).toInt()));
            } else if (step.endsWith("+1")) {  // the first pixel right of the key
                const int k = key(qPrintable(step.chopped(2)));
                move(QPoint(view_->keyRect(k).right() + 1, at(k).y()));
            } else {
                const QStringList parts = step.split(QRegularExpression("[@,]"));
                hovered = key(qPrintable(parts[0]));
                move(parts.size() == 3 ? at(hovered, parts[1].toDouble(), parts[2].toDouble()) : at(hovered));
            }
            QCOMPARE(view_->hoverKeyItem(), hovered);
            for (int i = 0; i < view_->keyCount(); ++i) QCOMPARE(view_->isKeyHighlighted(i), i == hovered);
        }
        QCOMPARE(tipLog(), tips);
    }

    void leavingUnchecksOnlyTheHoveredKeyOutsideCustomMode() {
        const int escape = key("escape"), tab = key("tab");
        for (bool customMode : {false, true}) {
            view_->setCustomMode(customMode);
            view_->setKeyCheck(escape, true);
            view_->setKeyCheck(tab, true);
            move(at(escape));
            QTest::mouseMove(window_.get(), kOutsideView);
            QCOMPARE(view_->hoverKeyItem(), -1);
            QVERIFY(!view_->isKeyHighlighted(escape));
            QCOMPARE(view_->keyCheck(escape), customMode);
            QVERIFY(view_->keyCheck(tab));
        }
        // Entering the view again hides, then the key shows.
        QCOMPARE(tipLog(), (QStringList{"show escape", "hide", "hide", "show escape", "hide"}));
    }

    // Only the left button clicks; a click posts the key's name once and selects the key.
    void clickPostsKeyActionOnce() {
        QSignalSpy spy(view_, &KeyboardView::keyActivated);
        std::vector<std::string> names;
        int previous = -1;
        for (const char* name : {"escape", "leftShift", "rightArrow"}) {
            const int k = key(name);
            move(at(k, 0.8, 0.2));
            click(at(k, 0.8, 0.2), Qt::RightButton);
            QCOMPARE(view_->selectKeyItem(), previous);
            click(at(k, 0.8, 0.2));
            names.push_back(name);
            QCOMPARE(actions(), names);
            QCOMPARE(spy.count(), int(names.size()));
            QCOMPARE(spy.last().at(0).toString(), QString(name));
            QCOMPARE(view_->selectKeyItem(), k);
            QVERIFY(view_->isKeyHighlighted(k) && (previous < 0 || !view_->isKeyHighlighted(previous)));
            previous = k;
        }
    }

    void pressAndReleaseMustMeetOnOneKey() {
        const int a = key("enter"), b = key("pageUp");
        move(at(a));
        rec_->clear();
        QTest::mousePress(view_, Qt::LeftButton, {}, at(a));
        QTest::mouseMove(view_, at(b));  // a drag: hover and tooltip stay
        QTest::mouseRelease(view_, Qt::LeftButton, {}, at(b));
        QVERIFY(rec_->seen().empty());
        QCOMPARE(view_->selectKeyItem(), a);
        QCOMPARE(view_->hoverKeyItem(), a);
        // Pressing the selected key again keeps it selected and clicks again.
        move(at(a, 0.2, 0.3));
        QTest::mousePress(view_, Qt::LeftButton, {}, at(a, 0.2, 0.3));
        QVERIFY(view_->selectKeyItem() == a && view_->isKeyHighlighted(a));
        QTest::mouseRelease(view_, Qt::LeftButton, {}, at(a, 0.2, 0.3));
        QCOMPARE(actions(), std::vector<std::string>{"enter"});
        move(gapAfter(a - 1));  // pressing on no key changes nothing either
        click(gapAfter(a - 1));
        QVERIFY(view_->selectKeyItem() == a && view_->isKeyHighlighted(a));
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
        QCOMPARE(tipLog(), QStringList{"show x"});
    }

    void setAndResetKeyMacro() {
        const int caps = key("capsLock"), selected = key("i1"), hovered = key("q");
        view_->setKeyMacro(caps, "Vol Up", true);
        QVERIFY(view_->isMacro(caps) && view_->isKeyHighlighted(caps));
        view_->setKeyMacro(caps, "Ctrl+C", false);  // a text without the mark
        QCOMPARE(view_->keyMacro(caps), QString("Ctrl+C"));
        QVERIFY(!view_->isMacro(caps) && !view_->isKeyHighlighted(caps));
        // The tooltip shows that text and hangs from the middle of the key's bottom edge, in the parent.
        QSignalSpy spy(view_, &KeyboardView::tooltipChanged);
        move(at(caps));
        const KeyboardToolTip tip = tips().at(0);
        const QRect r = view_->keyRect(caps).translated(kViewOrigin);
        QCOMPARE(tip.keyMacro, std::string("Ctrl+C"));
        QCOMPARE(QPointF(tip.x, tip.y), QPointF(r.x() + r.width() / 2.0, r.y() + r.height()));
        QVERIFY(spy.count() == 1 && spy.at(0).at(0).value<KeyboardToolTip>() == tip);

        // Reset restores the default texts and marks, and keeps selection and hover.
        view_->setKeyMacro(key("escape"), "Macro 1", true);
        move(at(selected));
        click(at(selected));
        move(at(hovered));
        view_->resetKeyMacro();
        QCOMPARE(view_->keyMacro(key("escape")) + view_->keyMacro(caps), QString("EscapeCaps"));
        for (int i = 0; i < view_->keyCount(); ++i) {
            QVERIFY(!view_->isMacro(i));
            QCOMPARE(view_->isKeyHighlighted(i), i == selected || i == hovered);
        }
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
        for (auto [k, fill] : {std::pair{rest, QColor(Qt::white)}, {marked, kHighlight}, {selected, kHighlight},
                               {checked, QColor(Qt::white)}})
            QCOMPARE(image.pixelColor(at(k, 0.5, 0.12)), fill);  // above the label
        QVERIFY(isDark(image.pixelColor(gapAfter(rest))));  // the body between the keys

        int label = 0;  // dark text across the middle of the resting key
        const QRect r = view_->keyRect(rest);
        for (int x = r.left() + 2; x < r.right() - 1; ++x)
            label += isDark(image.pixelColor(x, r.center().y()));
        QVERIFY2(label > 2, "no label");

        int frame = 0, edge = 0;  // a dashed frame along the checked key's edge
        const QRect t = view_->keyRect(checked);
        for (int x = t.left() + 5; x < t.right() - 4; ++x, ++edge)
            frame += image.pixelColor(x, t.top() + 1) == kHighlight;
        QVERIFY2(frame > edge / 2 && frame < edge, qPrintable(QString("%1 of %2").arg(frame).arg(edge)));
    }

    void drawsGivenPicture() {
        QTemporaryDir dir;
        const QString svg = dir.filePath("keyboard.svg");
        QFile file(svg);
        QVERIFY(file.open(QIODevice::WriteOnly) &&
                file.write("<svg xmlns='http://www.w3.org/2000/svg' width='666' height='234'>"
                           "<rect width='666' height='234' fill='#00ff00'/></svg>") > 0);
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

    void badIndexIsFatal() {
        for (const auto& [check, index] : {std::pair{false, -1}, {false, 66}, {true, 66}}) {
            std::fflush(nullptr);
            const pid_t child = fork();
            QVERIFY(child >= 0);
            if (child == 0) {
                if (!std::freopen("/dev/null", "w", stderr)) _exit(3);
                check ? view_->setKeyCheck(index, true) : view_->setKeyMacro(index, "x", true);
                _exit(0);
            }
            int status = 0;
            QCOMPARE(waitpid(child, &status, 0), child);
            QVERIFY2(WIFSIGNALED(status) && WTERMSIG(status) == SIGABRT, qPrintable(QString::number(index)));
        }
    }
};

int runKeyboardViewTests(int argc, char** argv) {
    KeyboardViewTest test;
    return QTest::qExec(&test, argc, argv);
}

}  // namespace qx9

#include "keyboard_view_test.moc"
