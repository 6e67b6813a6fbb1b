#include <QtTest>

#include <map>

#include "view_harness.h"
#include "widgets/custom_key_func_view.h"
#include "widgets/keyboard_tooltip.h"

namespace qx9 {

class CustomKeyFuncViewTest : public QObject, ViewHarness<CustomKeyFuncView> {
    Q_OBJECT

    std::vector<std::int64_t> codes_;  // customKeyFuncAction's codes

private slots:
    void init() {
        createView({840, 260}, {20, 30});
        view_->initKeyFuncs(buildCustomKeyFuncLayout());
        QVERIFY(expose());
        codes_.clear();
        connect(view_, &CustomKeyFuncView::customKeyFuncAction, this, [this](std::int64_t code) { codes_.push_back(code); });
        QTest::mouseMove(window_.get(), QPoint(4, 4));
    }
    void cleanup() { closeView(); }

    // Keypad Enter and keypad + are two rows high: their upper half lies in the row above.
    void clickPostsCode() {
        std::vector<std::int64_t> posted;
        for (auto [index, code, fy] :
             {std::tuple{0, 41, 0.5}, {110, 88, 0.1}, {89, 229, 0.5}, {102, 175, 0.5}, {75, 87, 0.1}}) {
            QTest::mouseClick(view_, Qt::LeftButton, {}, at(index, 0.5, fy));
            posted.push_back(code);
            QCOMPARE(codes_, posted);
            QVERIFY(!view_->isSelected(index));  // marks belong to the page
        }
    }

};

int runCustomKeyFuncViewTests(int argc, char** argv) {
    CustomKeyFuncViewTest test;
    return QTest::qExec(&test, argc, argv);
}

}  // namespace qx9

#include "custom_key_func_view_test.moc"
