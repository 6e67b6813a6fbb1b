#include "app/app_delegate.h"

#include <QActionGroup>
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
    setFollowUser(session.follow);
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
        fillMenu();
        // Made again as it opens: the profiles, the checks and the language of the moment.
        connect(quickButton, &QMenu::aboutToShow, this, &AppDelegate::fillMenu);
    }
    // Desktops without a tray simply have no item; the window works the same.
    if (statusItem || !trayAvailable()) return;
    statusItem = new QSystemTrayIcon(QIcon(":/images/tray_icon.svg"), this);
    statusItem->setToolTip("HALVORN QX9");
    statusItem->setContextMenu(quickButton);
    connect(statusItem, &QSystemTrayIcon::activated, this, [this](QSystemTrayIcon::ActivationReason reason) {
        if (reason == QSystemTrayIcon::Trigger) statusItemActivated();
    });
    statusItem->show();
}

bool AppDelegate::trayAvailable() { return QSystemTrayIcon::isSystemTrayAvailable(); }

void AppDelegate::fillMenu() {
    quickButton->clear();
    qDeleteAll(quickButton->findChildren<QActionGroup*>(QString(), Qt::FindDirectChildrenOnly));
    const auto text = [](ExtraText id) { return QString::fromStdString(extraText(id)); };
    if (follow_) {
        auto* group = new QActionGroup(quickButton);
        for (const FollowUser::ProfileItem& item : follow_->profileItems()) {
            QAction* profile = quickButton->addAction(QString::fromStdString(item.name));
            profile->setCheckable(true);
            profile->setChecked(item.current);
            profile->setActionGroup(group);
            const std::int64_t id = item.id;
            connect(profile, &QAction::triggered, this, [this, id] { follow_->chooseProfile(id); });
        }
        quickButton->addSeparator();
        QAction* lightsOff = quickButton->addAction(text(ExtraText::kLightsOff));
        lightsOff->setCheckable(true);
        lightsOff->setChecked(follow_->lightsOff());
        connect(lightsOff, &QAction::toggled, this, [this](bool off) { follow_->setLightsOff(off); });
        quickButton->addSeparator();
    }
    if (showWindow) connect(quickButton->addAction(text(ExtraText::kShowWindow)), &QAction::triggered, this, [this] { showWindow(); });
    quickQuit = quickButton->addAction(text(ExtraText::kQuit));
    connect(quickQuit, &QAction::triggered, this, &AppDelegate::clickQuit);
}

void AppDelegate::statusItemActivated() { quickButton->popup(QCursor::pos()); }

void AppDelegate::clickQuit() { QApplication::quit(); }

}  // namespace qx9
