#pragma once

#include <QObject>
#include <functional>
#include <memory>

class QSystemTrayIcon;
class QTimer;
class QAction;
class QMenu;

namespace qx9 {

class FollowUser;
class KeyboardSession;
class KeystrokeCapture;

// The process-level work at launch: the permission check, keystroke capture and the tray
// item. Its menu lists the profiles (the one in force checked; a click chooses it as the window
// would), "Lights off", the window and the quit command.

class AppDelegate : public QObject {
    Q_OBJECT
public:
    explicit AppDelegate(QObject* parent = nullptr);
    ~AppDelegate() override;

    // Keystroke capture feeds the window's session, which outlives the delegate.
    void applicationDidFinishLaunching(KeyboardSession& session);
    // The session the menu's profiles and "Lights off" act on (set at launch).
    void setFollowUser(FollowUser& follow) { follow_ = &follow; }
    // What the menu's window command does (show and raise the window).
    std::function<void()> showWindow;
    // Whether the desktop shows a tray item at all.
    static bool trayAvailable();
    void createButtonStatusBar();
    void clickQuit();
    // The tray item was clicked: with a menu attached, any click opens it.
    void statusItemActivated();
    QMenu* statusMenu() const { return quickButton; }

private:
    // The menu as it opens: profiles, lights off, the window, quit, in the language of the moment.
    void fillMenu();

    FollowUser* follow_ = nullptr;
    QSystemTrayIcon* statusItem = nullptr;
    QMenu* quickButton = nullptr;
    QAction* quickQuit = nullptr;
    QTimer* privilegeTimer_ = nullptr;
    std::unique_ptr<KeystrokeCapture> keystrokeCapture_;
};

}  // namespace qx9
