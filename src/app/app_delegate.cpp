#include "app/app_delegate.h"

#include <QApplication>
#include <QCursor>
#include <QMenu>
#include <QSystemTrayIcon>
#include <QTimer>

#include "app/keystroke_capture.h"
#include "i18n/extra_texts.h"
#include "session/keyboard_session.h"

namespace qx9 {

AppDelegate::AppDelegate(QObject* parent) : QObject(parent) {}

AppDelegate::~AppDelegate() { delete quickButton; }

void AppDelegate::applicationDidFinishLaunching(KeyboardSession& session) {
    keystrokeCapture_ = std::make_unique<KeystrokeCapture>(session.input);
    keystrokeCapture_->start();
    // The permission check asks again every few seconds until keystrokes can be captured.
    privilegeTimer_ = new QTimer(this);
    privilegeTimer_->setInterval(InputCapture::privilegeIntervalMilliseconds());
    connect(privilegeTimer_, &QTimer::timeout, this, [this, &session] {
        if (!session.input.privilegeTick()) privilegeTimer_->stop();
    });
    privilegeTimer_->start();
    createButtonStatusBar();
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
    statusItem = new QSystemTrayIcon(QIcon(":/images/tray_icon.svg"), this);
    statusItem->setToolTip("HALVORN QX9");
    statusItem->setContextMenu(quickButton);
    connect(statusItem, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) statusItemActivated();
    });
    statusItem->show();
}

void AppDelegate::statusItemActivated() { quickButton->popup(QCursor::pos()); }

void AppDelegate::clickQuit() { QApplication::quit(); }

}  // namespace qx9
