#include "app/app_delegate.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>

#include "app/keystroke_capture.h"
#include "hid/privilege_monitor.h"
#include "i18n/extra_texts.h"

namespace qx9 {

AppDelegate::AppDelegate(QObject* parent)
    : QObject(parent), privilegeMonitor_(std::make_unique<PrivilegeMonitor>()) {}

AppDelegate::~AppDelegate() { delete quickButton; }

void AppDelegate::applicationDidFinishLaunching(CaptureState& capture) {
    startPrivilegeMonitor();
    keystrokeCapture_ = std::make_unique<KeystrokeCapture>();
    keystrokeCapture_->start(capture);
    createButtonStatusBar();
}

void AppDelegate::startPrivilegeMonitor() {
    privilegeMonitor_->start();
    privilegeTimer_ = new QTimer(this);
    privilegeTimer_->setInterval(PrivilegeMonitor::kInterval);
    connect(privilegeTimer_, &QTimer::timeout, this, [this] {
        if (!privilegeMonitor_->tick()) privilegeTimer_->stop();
    });
    privilegeTimer_->start();
}

void AppDelegate::createButtonStatusBar() {
    if (!quickButton) {
        quickButton = new QMenu;
        quickQuit = quickButton->addAction(QString());
        connect(quickQuit, &QAction::triggered, this, &AppDelegate::clickQuit);
        // In the interface language of the moment it opens.
        connect(quickButton, &QMenu::aboutToShow, this,
                [this] { quickQuit->setText(QString::fromStdString(extraText(ExtraText::kQuit))); });
    }
    // Desktops without a tray simply have no item; the window works the same.
    if (statusItem || !QSystemTrayIcon::isSystemTrayAvailable()) return;
    statusItem = new QSystemTrayIcon(QIcon(":/images/tray_icon"), this);
    statusItem->setToolTip("HALVORN QX9");
    statusItem->setContextMenu(quickButton);
    connect(statusItem, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) statusItemActivated();
    });
    statusItem->show();
}

void AppDelegate::statusItemActivated() { quickButton->popup(QCursor::pos()); }

bool AppDelegate::readsEventDevices() const { return keystrokeCapture_ && keystrokeCapture_->readsEventDevices(); }

void AppDelegate::clickQuit() { QApplication::quit(); }

}  // namespace qx9
