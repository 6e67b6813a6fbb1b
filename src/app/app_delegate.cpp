#include "app/app_delegate.h"

#include <QApplication>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>

#include "app/keystroke_capture.h"
#include "hid/privilege_monitor.h"

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
    // Desktops without a tray simply have no item; the window works the same.
    if (!QSystemTrayIcon::isSystemTrayAvailable()) return;
    quickButton = new QMenu;
    QAction* quickQuit = quickButton->addAction(QObject::tr("Quit"));
    connect(quickQuit, &QAction::triggered, this, &AppDelegate::clickQuit);
    statusItem = new QSystemTrayIcon(QIcon(":/images/tray_icon"), this);
    statusItem->setToolTip("HALVORN QX9");
    statusItem->setContextMenu(quickButton);
    statusItem->show();
}

void AppDelegate::clickQuit() { QApplication::quit(); }

}  // namespace qx9
