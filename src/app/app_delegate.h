#pragma once

#include <QObject>
#include <memory>

class QSystemTrayIcon;
class QTimer;
class QAction;
class QMenu;

namespace qx9 {

class KeyboardSession;
class KeystrokeCapture;

// The process-level work at launch: the permission check, keystroke capture and the tray
// item whose menu quits the application.

class AppDelegate : public QObject {
    Q_OBJECT
public:
    explicit AppDelegate(QObject* parent = nullptr);
    ~AppDelegate() override;

    // Keystroke capture feeds the window's session, which outlives the delegate.
    void applicationDidFinishLaunching(KeyboardSession& session);
    void createButtonStatusBar();
    void clickQuit();
    // The tray item was clicked: with a menu attached, any click opens it.
    void statusItemActivated();
    QMenu* statusMenu() const { return quickButton; }

private:
    QSystemTrayIcon* statusItem = nullptr;
    QMenu* quickButton = nullptr;
    QAction* quickQuit = nullptr;
    QTimer* privilegeTimer_ = nullptr;
    std::unique_ptr<KeystrokeCapture> keystrokeCapture_;
};

}  // namespace qx9
