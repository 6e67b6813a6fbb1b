// The two lighting pages on a virtual QX9, used as a user would: rows chosen, fields typed,
// swatches and keys clicked, keys dragged over; then the database (plain SQL), the keyboard's
// decoded memory and the widgets checked.
#include "layout/key_maps.h"
#include "pages/color_panel.h"
#include "pages/lighting_page_view.h"
#include "pages/user_light_page_view.h"
#include "virtual_window.h"
#include "widgets/color_button.h"
#include "widgets/keyboard_light_view.h"

using namespace qx9;

namespace {
constexpr int kW = 16, kA = 30, kS = 31, kD = 32, kLeftShift = 43, kZ = 44, kM = 50;
}

class LightingPagesTest : public QObject, test::WindowHarness {
    Q_OBJECT

    std::string lightByte(const char* column, int mode) {
        return sql(std::string("SELECT ") + column + " FROM t_lightdata WHERE profId = 1 AND mode = " + std::to_string(mode));
    }
    void type(const char* field, const char* text) {
        child<QLineEdit>(field)->selectAll();
        QTest::keyClicks(child<QLineEdit>(field), text);
        QCoreApplication::processEvents();
    }
    VirtualLightMode sentLight() { return decodeLightMode(test::sentMemory(controller_)).value(); }
    std::uint32_t sentColour(int keyCode) {
        return keyColour(test::sentMemory(controller_), G_KB_SuperKeyCodeMap.at(keyCode).light_index).value();
    }
    void openPage(const char* button) {
        enterPages();
        click(button);
    }
    void chooseEffect(int row) {
        QListWidget* list = child<QListWidget>("light_mode_table");
        list->scrollToItem(list->item(row));
        QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::NoModifier, list->visualItemRect(list->item(row)).center());
        QCoreApplication::processEvents();
    }
    KeyboardLightView* keys() { return child<KeyboardLightView>("userlight_keyboardctrl"); }
    void clickKey(int key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(keys(), Qt::LeftButton, modifiers, keys()->keyRect(key).center());
        QCoreApplication::processEvents();
    }

private slots:
    void init() { openWindow(); }
    void cleanup() { deleteWindow(); }

    void backlightParametersStoredAndSent() {
        openPage("light_btn");
        chooseEffect(9);  // "Scrolling", mode 10
        click("light_btn_randomcolor");
        QVERIFY(child("light_edit_color_r")->isEnabled());

        type("light_edit_color_g", "255");  // stored, then sent: BacklightColourTest
        QCOMPARE(sentLight().green, 255);

        click("light_btn_color5");
        QCOMPARE(sentLight().red * 65536 + sentLight().green * 256 + sentLight().blue, 0x0089FD);
        QCOMPARE(child<ColorButton>("light_btn_color")->btn_color(), QColor(0, 137, 253));
        controller_->userLightPage();  // made now, it shows the shared colour too
        QCOMPARE(child<QLineEdit>("userlight_edit_color_b")->text(), "253");  // the other page's fields

        click("light_btn_color");
        QColorDialog* dialog = controller_->colorPanel()->dialog();
        QTRY_VERIFY(dialog->isVisible());
        dialog->setCurrentColor(QColor(127, 127, 127)); QCoreApplication::processEvents();
        QCOMPARE(lightByte("byte1", 10) + lightByte("byte2", 10) + lightByte("byte3", 10), "127127127");
        QCOMPARE(child<QLineEdit>("light_edit_color_r")->text(), "127");
        chooseEffect(10);  // another effect closes the dialog
        QVERIFY(!dialog->isVisible());
        chooseEffect(9);

        QTest::keyClick(child("light_slider_brightness"), Qt::Key_Left);
        QTest::keyClick(child("light_slider_speed"), Qt::Key_Home);
        QCOMPARE(lightByte("byte9", 10) + "/" + lightByte("byte10", 10), "14/0");

        click("light_direction_bottom");
        QCOMPARE(lightByte("byte11", 10), "3");

        click("light_radio_lightsleep2");
        QCOMPARE(sql("SELECT value FROM t_configdata WHERE key = 'sleeplight' AND profId = 1"), "2");
        QTest::mouseClick(child("light_label_lightsleep3"), Qt::LeftButton);  // the label is part of it
        QCOMPARE(decodeSystemFunctions(test::sentMemory(controller_))->sleepTime, 3);
        QVERIFY(child<QRadioButton>("light_radio_lightsleep3")->isChecked());
    }

    void paintSelectDragAndApply() {
        openPage("userlight_btn");
        click("userlight_btn_add");
        QCOMPARE(sql("SELECT count(*) FROM t_userlight_data WHERE profile = 1"), "1");
        clickKey(kW);
        for (int k : {kA, kS, kD}) clickKey(k, Qt::ShiftModifier);
        click("userlight_btn_color1");  // red
        // A rubber band from beside left Shift (between keys) to M.
        const QPoint from(keys()->keyRect(kLeftShift).left() - 3, keys()->keyRect(kZ).center().y());
        QTest::mousePress(keys(), Qt::LeftButton, Qt::NoModifier, from);
        const QPoint to = keys()->keyRect(kM).center() + QPoint(0, 3);
        QTest::mouseMove(keys(), to);
        QTest::mouseRelease(keys(), Qt::LeftButton, Qt::NoModifier, to);
        click("userlight_btn_color8");  // green
        QCOMPARE(keys()->keyColor(kS), QColor(Qt::red));
        click("userlight_btn_apply");

        for (int code : {26, 4, 22, 7}) QCOMPARE(sentColour(code), 0xFF0000u);  // W A S D
        for (int code : {225, 29, 6, 16}) QCOMPARE(sentColour(code), 0x00FF00u);  // left Shift, Z, C, M
        QCOMPARE(sentColour(9), 0u);                                               // F, not touched

        // The shared colour dialog paints the selection with its exact colour.
        click("userlight_btn_color");
        QColorDialog* dialog = controller_->colorPanel()->dialog();
        QTRY_VERIFY(dialog->isVisible());
        clickKey(kW);
        dialog->setCurrentColor(QColor(100, 0, 0)); QCoreApplication::processEvents();
        QCOMPARE(child<QLineEdit>("userlight_edit_color_r")->text(), "100");
        click("userlight_btn_apply");
        QCOMPARE(sentColour(26), 0x640000u);

        // Each key is reachable by name, with its colour.
        QAccessibleInterface* kb = QAccessible::queryAccessibleInterface(keys());
        QCOMPARE(kb->child(kW)->text(QAccessible::Description), "#640000");
        QVERIFY(kb->child(kW)->state().checked);
    }

    void everyControlNamedAndRelabelled() {
        openPage("config_btn");
        chooseLanguage(1);
        for (QWidget* page : {static_cast<QWidget*>(controller_->lightPage()), static_cast<QWidget*>(controller_->userLightPage())}) {
            QList<QAccessibleInterface*> todo{QAccessible::queryAccessibleInterface(page)};
            while (!todo.isEmpty()) {
                QAccessibleInterface* a = todo.takeLast();
                for (int i = 0; i < a->childCount(); ++i) todo.append(a->child(i));
                const QAccessible::Role r = a->role();
                if (r == QAccessible::Button || r == QAccessible::CheckBox || r == QAccessible::Slider || r == QAccessible::RadioButton ||
                    r == QAccessible::EditableText || r == QAccessible::List || r == QAccessible::Grouping) {
                    QVERIFY2(!a->text(QAccessible::Name).isEmpty(), qPrintable(a->object() ? a->object()->objectName() : "a key"));
                }
            }
        }
        QCOMPARE(QAccessible::queryAccessibleInterface(child("light_radio_lightsleep0"))->role(), QAccessible::RadioButton);
        QCOMPARE(child<QLabel>("light_label_brightness")->text(), QString::fromStdString(CHSLanguage::getLan(531)));
        QCOMPARE(child<QListWidget>("light_mode_table")->item(19)->text(), QString::fromStdString(CHSLanguage::getLan(519)));
        QCOMPARE(child<QPushButton>("userlight_btn_apply")->text(), QString::fromStdString(CHSLanguage::getLan(561)));
    }
};

QTEST_MAIN(LightingPagesTest)
#include "lighting_pages_test.moc"
