#include <QSignalSpy>
#include <QtTest>

#include <map>

#include "view_harness.h"
#include "widgets/custom_key_func_view.h"
#include "widgets/keyboard_tooltip.h"

namespace qx9 {

class CustomKeyFuncViewTest : public QObject, ViewHarness<CustomKeyFuncView> {
    Q_OBJECT

    std::vector<std::int64_t> codes() const {
        std::vector<std::int64_t> out;
        for (const auto& m : rec_->objects<std::map<std::string, std::int64_t>>(kCustomKeyFuncAction))
            out.push_back(m.size() == 1 && m.contains("key_code") ? m.at("key_code") : -1);
        return out;
    }
    static bool near(const QColor& a, const QColor& b) {
        return qAbs(a.red() - b.red()) <= 8 && qAbs(a.green() - b.green()) <= 8 && qAbs(a.blue() - b.blue()) <= 8;
    }
    // Fill (above the label) and left outline of a key.
    QColor fill(const QImage& i, int k) const { return i.pixelColor(at(k, 0.5, 0.12)); }
    QColor outline(const QImage& i, int k) const {
        return i.pixelColor(view_->keyRect(k).left(), view_->keyRect(k).center().y());
    }

private slots:
    void init() {
        createView({840, 260}, {20, 30});
        view_->initKeyFuncs(buildCustomKeyFuncLayout());
        QVERIFY(expose({kCustomKeyFuncAction}));
        QTest::mouseMove(window_.get(), QPoint(4, 4));
    }
    void cleanup() { closeView(); }

    void sizeAndKeyRects() {
        // Layout rectangles have their origin at the bottom left of the 219-point-high palette.
        QCOMPARE(view_->sizeHint(), QSize(769 + 1 + 21, 206 + 1 + 12));  // key cells + margins
        QCOMPARE(view_->keyRect(0), QRect(12, 219 - 206, 30, 30));     // Esc (12, 176, 30, 30)
        QCOMPARE(view_->keyRect(75), QRect(739, 219 - 141, 30, 64));   // keypad + (739, 77, 30, 64)
    }

    // Keypad Enter and keypad + are two rows high: their upper half lies in the row above.
    void clickPostsCode() {
        QSignalSpy spy(view_, &CustomKeyFuncView::keyFuncClicked);
        std::vector<std::int64_t> posted;
        for (auto [index, code, fy] :
             {std::tuple{0, 41, 0.5}, {110, 88, 0.1}, {89, 229, 0.5}, {102, 175, 0.5}, {75, 87, 0.1}}) {
            QTest::mouseClick(view_, Qt::LeftButton, {}, at(index, 0.5, fy));
            posted.push_back(code);
            QCOMPARE(codes(), posted);
            QCOMPARE(spy.count(), int(posted.size()));
            QCOMPARE(spy.last().at(0).value<qint64>(), qint64(code));
            QVERIFY(!view_->isSelected(index));  // marks belong to the page
        }
    }

    void clickNeedsBothEndsOnOneKey() {
        const QPoint gap((view_->keyRect(0).right() + view_->keyRect(1).left()) / 2, at(0).y());
        QTest::mouseClick(view_, Qt::LeftButton, {}, gap);
        QTest::mousePress(view_, Qt::LeftButton, {}, at(0));
        QTest::mouseMove(view_, at(1));
        QTest::mouseRelease(view_, Qt::LeftButton, {}, at(1));
        QTest::mousePress(view_, Qt::LeftButton, {}, gap);
        QTest::mouseRelease(view_, Qt::LeftButton, {}, at(0));
        QTest::mouseClick(view_, Qt::RightButton, {}, at(1));
        QVERIFY(codes().empty());
        QTest::mouseClick(view_, Qt::LeftButton, {}, at(1, 0.2, 0.8));
        QCOMPARE(codes(), std::vector<std::int64_t>{58});
    }

    void hoverAndSelectionPaint() {
        const int q = 39, w = 40, enter = 71;
        QTest::mouseMove(view_, at(q));
        QTest::mouseMove(view_, at(w));
        QCOMPARE(view_->hoverKeyItem(), w);
        view_->setSelected(enter, true);
        view_->setSelected(110, true);
        QImage image = view_->grab().toImage();
        QVERIFY(near(outline(image, w), QColor(180, 81, 0)));
        QVERIFY(near(outline(image, q), QColor(180, 180, 180)));
        QCOMPARE(fill(image, w), QColor(80, 80, 80));
        QCOMPARE(fill(image, enter), QColor(202, 81, 0));

        view_->setSelected(enter, false);
        QVERIFY(!view_->isSelected(enter) && view_->isSelected(110));
        view_->clearSelection();
        QTest::mouseMove(window_.get(), QPoint(5, 4));
        QCOMPARE(view_->hoverKeyItem(), -1);
        image = view_->grab().toImage();
        for (int k : {w, enter, 110}) {
            QVERIFY(!view_->isSelected(k));
            QCOMPARE(fill(image, k), QColor(80, 80, 80));
            QVERIFY(near(outline(image, k), QColor(180, 180, 180)));
        }
    }
};

int runCustomKeyFuncViewTests(int argc, char** argv) {
    CustomKeyFuncViewTest test;
    return QTest::qExec(&test, argc, argv);
}

}  // namespace qx9

#include "custom_key_func_view_test.moc"
