#pragma once

#include <QtTest>
#include <QtWidgets>

#include "app/keyboard_view_controller.h"
#include "i18n/language.h"
#include "pages/settings_page_view.h"
#include "support/sql_value.h"
#include "virtual/virtual_qx9.h"

namespace qx9::test {

// What the keyboard holds once the window's sender has sent everything queued.
inline VirtualQX9Memory sentMemory(KeyboardViewController* controller) {
    controller->session().core.finishSending(std::chrono::seconds(10));
    return controller->virtualKeyboard()->memory();
}

// What the window's tests share: the window on a database of its own, its widgets found by name
// and used as a user would.
class WindowHarness {
protected:
    // The window on a virtual QX9 with a fresh database, shown as the application shows it.
    void openWindow() {
        AppOptions options;
        options.virtualKeyboard = options.noMonitor = true;
        options.database = database().toStdString();
        QFile::remove(database());
        window_ = new QMainWindow;
        window_->setCentralWidget(controller_ = new KeyboardViewController(options, window_));
        window_->show();
        QVERIFY(QTest::qWaitForWindowExposed(window_));
        QTRY_VERIFY(controller_->session().core.initFinish);
    }
    void deleteWindow() {
        delete window_;  // none when the test closed it
        window_ = nullptr;
        curLanguage = kLanguageSimplifiedChinese;
    }
    QString database() const { return dir_.path() + "/window-test.sqlite3"; }
    std::string sql(const std::string& query) const { return sqlValue(database().toStdString(), query); }
    // The language box of the settings page, which need not be the page shown.
    void chooseLanguage(int row) {
        controller_->settingsPage()->findChild<QComboBox*>("combo_language")->setCurrentIndex(row);
        QCoreApplication::processEvents();
    }
    template <typename T = QWidget>
    T* child(const char* name) {
        QCoreApplication::processEvents();  // a page is made when the change that shows it arrives
        T* w = window_->findChild<T*>(name);
        if (!w) qFatal("no widget %s", name);
        return w;
    }
    void click(const char* name) {
        auto* b = child<QAbstractButton>(name);  // a radio takes clicks on its mark and text only
        QTest::mouseClick(b, Qt::LeftButton, {}, qobject_cast<QRadioButton*>(b) ? QPoint(6, b->height() / 2) : QPoint());
        QCoreApplication::processEvents();
    }
    // From the start view to the pages.
    void enterPages() { click("keyboard_connect"); }

    QTemporaryDir dir_;
    QMainWindow* window_ = nullptr;
    KeyboardViewController* controller_ = nullptr;
};

}  // namespace qx9::test
