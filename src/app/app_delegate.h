#pragma once

#include <QObject>
#include <memory>

class QSystemTrayIcon;
class QTimer;
class QAction;
class QMenu;

namespace qx9 {

class PrivilegeMonitor;

// The process-level work at launch: the permission monitor, keystroke capture and the tray
// item whose menu quits the application.
struct CaptureState;
class KeystrokeCapture;

class AppDelegate : public QObject {
    Q_OBJECT
public:
    explicit AppDelegate(QObject* parent = nullptr);
    ~AppDelegate() override;

    // Keystroke capture feeds `capture` (the window session's), which outlives the delegate.
    void applicationDidFinishLaunching(CaptureState& capture);
    void startPrivilegeMonitor();
    void createButtonStatusBar();
    void clickQuit();
    // The tray item was clicked: with a menu attached, any click opens it.
    void statusItemActivated();
    QMenu* statusMenu() const { return quickButton; }
    bool readsEventDevices() const;

private:
    QSystemTrayIcon* statusItem = nullptr;
    QMenu* quickButton = nullptr;
    QAction* quickQuit = nullptr;
    QTimer* privilegeTimer_ = nullptr;
    std::unique_ptr<PrivilegeMonitor> privilegeMonitor_;
    std::unique_ptr<KeystrokeCapture> keystrokeCapture_;
};

}  // namespace qx9
