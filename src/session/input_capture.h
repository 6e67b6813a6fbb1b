#pragma once

#include <cstdint>
#include <functional>
#include <memory>

namespace qx9 {

class Keylogger;
class PrivilegeMonitor;
struct SessionCore;

// Keystroke capture for the macro recorder and the custom key dialog: the keyboards' event nodes
// (watched through the front end's loop) feed the session's capture state, and the application's
// own key events feed it when no node can be read. Beside it the permission check, which says on
// the console whether keystrokes can be captured until they can.
class InputCapture {
public:
    explicit InputCapture(SessionCore& core);
    ~InputCapture();
    InputCapture(const InputCapture&) = delete;
    InputCapture& operator=(const InputCapture&) = delete;

    // Starts both; the permission check then wants privilegeTick() every privilegeInterval().
    void start();
    bool started() const { return keylogger_ != nullptr; }
    // Whether keys come from the keyboards' event nodes (otherwise from the window's key events).
    bool readsEventDevices() const;
    // A key event of the application, before any page sees it. The key monitor is told of it once
    // the capture state holds it.
    void applicationKeyEvent(std::uint32_t nativeScanCode, bool pressed, bool autoRepeat, std::uint64_t eventTime);
    using KeyMonitor = std::function<void(std::uint32_t nativeScanCode, bool pressed, bool autoRepeat, std::uint64_t eventTime)>;
    void setKeyMonitor(KeyMonitor monitor) { keyMonitor_ = std::move(monitor); }

    static int privilegeIntervalMilliseconds();
    // One permission check; false once no further one is needed.
    bool privilegeTick();

private:
    void watch(int fd, bool added);

    SessionCore& core_;
    std::unique_ptr<Keylogger> keylogger_;
    std::unique_ptr<PrivilegeMonitor> privilege_;
    KeyMonitor keyMonitor_;
};

}  // namespace qx9
