// The window on a virtual QX9, walked as a user would: synthesized clicks and keys, then the
// database, the keyboard's memory and the widgets checked.
#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMainWindow>
#include <QPushButton>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include "app/keyboard_view_controller.h"
#include "app/keystroke_capture.h"
#include "app/start_view.h"
#include "hid/virtual_qx9.h"
#include "i18n/language.h"
#include "pages/custom_key_dialog_view.h"
#include "pages/key_menu.h"
#include "pages/key_page_view.h"
#include "support/sql_value.h"
#include "virtual_window.h"
#include "widgets/custom_key_func_view.h"
#include "widgets/keyboard_view.h"

using namespace qx9;

class AppTest : public QObject {
    Q_OBJECT

    QString database() const { return dir_.path() + "/app-test.sqlite3"; }
    std::string sql(const std::string& query) { return test::sqlValue(database().toStdString(), query); }
    template <typename T>
    T* child(const char* name) {
        T* w = window_->findChild<T*>(name);
        if (!w) qFatal("no widget %s", name);
        return w;
    }
    void enterPages() {
        QTest::mouseClick(child<QPushButton>("keyboard_connect"), Qt::LeftButton);
        QVERIFY(!controller_->session().device.showingHomePage());
    }
    void clickKey(int layoutIndex) {
        KeyboardView* kb = controller_->keyPage()->keyboard();
        const QPoint p = kb->keyRect(layoutIndex).center();
        QTest::mouseMove(kb, p);
        QTest::mousePress(kb, Qt::LeftButton, Qt::NoModifier, p);
        QTest::mouseRelease(kb, Qt::LeftButton, Qt::NoModifier, p);
    }

    QTemporaryDir dir_;
    QMainWindow* window_ = nullptr;
    KeyboardViewController* controller_ = nullptr;
    std::unique_ptr<KeystrokeCapture> capture_;

private slots:
    void init() {
        window_ = new QMainWindow;
        controller_ = test::showWindowOnVirtualQX9(window_, database());
        capture_ = std::make_unique<KeystrokeCapture>();
        capture_->start(controller_->session().core.capture);
        QVERIFY(QTest::qWaitForWindowExposed(window_));
        QTRY_VERIFY(controller_->session().device.keyboardConnected());
        QTRY_VERIFY(controller_->session().core.initFinish);
    }

    void cleanup() {
        capture_.reset();
        delete window_;
        window_ = nullptr;
        curLanguage = kLanguageSimplifiedChinese;
    }

    void startViewPagesAndLanguage() {
        QVERIFY(controller_->session().device.showingHomePage());
        QVERIFY(controller_->startView()->isVisible());
        enterPages();
        QVERIFY(controller_->keyPage()->isVisible());
        QPushButton* top = child<QPushButton>("customkey_btn_toplayer");
        QCOMPARE(top->text(), QString("Top Layer"));
        QTest::mouseClick(child<QToolButton>("config_btn"), Qt::LeftButton);
        QCOMPARE(controller_->session().device.viewType(), int(kPageSettings));
        child<QComboBox>("combo_language")->setCurrentIndex(1);
        QCOMPARE(top->text(), QString::fromStdString(CHSLanguage::getLan(90)));
        child<QComboBox>("combo_language")->setCurrentIndex(0);
        QCOMPARE(top->text(), QString("Top Layer"));
        QTest::mouseClick(child<QToolButton>("home_btn"), Qt::LeftButton);
        QVERIFY(controller_->startView()->isVisible());
    }

    void disableKeyFromTheMenu() {
        enterPages();
        clickKey(30);  // "a"
        KeyMenuViewController* menu = controller_->keyMenu();
        QTRY_VERIFY(menu->isVisible());
        QTest::mouseClick(menu->findChild<QPushButton*>("menuitem_diablekey"), Qt::LeftButton);
        QVERIFY(!menu->isVisible());
        QCOMPARE(controller_->keyPage()->keyboard()->keyMacro(30), QString::fromStdString(localizedText(102)));
    }

    void paletteWithoutAKeyWarns() {
        enterPages();
        QSignalSpy warnings(controller_, &KeyboardViewController::warningShown);
        CustomKeyFuncView* palette = controller_->keyPage()->palette();
        QTest::mouseClick(palette, Qt::LeftButton, Qt::NoModifier, palette->keyRect(20).center());
        QCOMPARE(warnings.count(), 1);
        QCOMPARE(warnings.at(0).at(1).toString(), QString::fromStdString(localizedText(112)));
    }

    void customDialogCapturesShiftAndOne() {
        enterPages();
        clickKey(0);  // escape
        QTRY_VERIFY(controller_->keyMenu()->isVisible());
        QTest::mouseClick(controller_->keyMenu()->findChild<QPushButton*>("menuitem_customkey"), Qt::LeftButton);
        CustomKeyViewController* dialog = nullptr;
        QTRY_VERIFY((dialog = window_->findChild<CustomKeyViewController*>()) != nullptr);
        QTRY_VERIFY(dialog->isVisible());
        dialog->findChild<QComboBox*>("key_functiontype")->setCurrentIndex(1);  // "Keyboard Function"
        QLineEdit* target = dialog->findChild<QLineEdit*>("keyfunc_edit");
        // Left Shift (evdev 42) and 1 (evdev 2), as the window system reports them: code + 8.
        QKeyEvent shift(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier, 50, 0, 0);
        QApplication::sendEvent(target, &shift);
        QKeyEvent one(QEvent::KeyPress, Qt::Key_Exclam, Qt::ShiftModifier, 10, 0, 0);
        QApplication::sendEvent(target, &one);
        QCOMPARE(target->text(), QString("Left Shift + 1"));
        QTest::mouseClick(dialog->findChild<QPushButton*>("key_savedatabtn"), Qt::LeftButton);
        QTRY_COMPARE(controller_->keyPage()->keyboard()->keyMacro(0), QString("Left Shift + 1"));
    }

    void profilesAddRenameDeleteSelect() {
        enterPages();
        QListWidget* table = controller_->keyPage()->profileTable();
        QTest::mouseClick(child<QToolButton>("customkey_btn_addprofile"), Qt::LeftButton);
        QCOMPARE(table->count(), 2);
        table->item(1)->setText("Games");  // what the in-place editor leaves
        QCOMPARE(sql("SELECT name FROM t_profile WHERE profId = 2"), std::string("Games"));
        // The new row is highlighted but not chosen; choosing it means clicking another row first.
        table->setCurrentRow(0);
        table->setCurrentRow(1);
        QCOMPARE(controller_->session().core.currentProfile, 2);
        QTest::mouseClick(child<QToolButton>("customkey_btn_delprofile"), Qt::LeftButton);
        QCOMPARE(table->count(), 1);
    }

    void unplugAndReplug() {
        enterPages();
        const auto setsBefore = controller_->virtualKeyboard()->setCount();
        controller_->plugVirtualKeyboard(false);
        QTRY_VERIFY(!controller_->session().device.keyboardConnected());
        QTRY_VERIFY(controller_->startView()->isVisible());
        controller_->plugVirtualKeyboard(true);
        QTRY_VERIFY(controller_->session().device.keyboardConnected() && controller_->session().core.initFinish);
        QCOMPARE(controller_->virtualKeyboard()->setCount(), setsBefore);  // nothing resent
        enterPages();
        QTest::mouseClick(child<QToolButton>("light_btn"), Qt::LeftButton);
        // Choosing "Scrolling" (row 9) in the backlight page's list sends mode 10.
        child<QListWidget>("light_mode_table")->setCurrentRow(9);
        QCOMPARE(decodeLightMode(controller_->virtualKeyboard()->memory())->mode, 10);
    }
};

QTEST_MAIN(AppTest)
#include "app_test.moc"
