#include "session/input_capture.h"

#include "hid/keylogger.h"
#include "hid/privilege_monitor.h"
#include "session/session_core.h"

namespace qx9 {

InputCapture::InputCapture(SessionCore& core) : core_(core) {}

InputCapture::~InputCapture() {
    if (keylogger_) {
        for (int fd : keylogger_->fds()) watch(fd, false);
        if (keylogger_->monitorFd() >= 0) watch(keylogger_->monitorFd(), false);
    }
}

void InputCapture::start() {
    if (keylogger_) return;
    privilege_ = std::make_unique<PrivilegeMonitor>();
    privilege_->start();
    keylogger_ = std::make_unique<Keylogger>(core_.capture);
    keylogger_->setWatchCallback([this](int fd, bool added) { watch(fd, added); });
    for (int fd : keylogger_->fds()) watch(fd, true);
    if (const int fd = keylogger_->monitorFd(); fd >= 0 && core_.events) {
        core_.events->watchDescriptor(fd, [this] { keylogger_->hotplugReadable(); });
    }
}

void InputCapture::watch(int fd, bool added) {
    if (!core_.events) return;
    if (added) core_.events->watchDescriptor(fd, [this, fd] { keylogger_->readAvailable(fd); });
    else core_.events->unwatchDescriptor(fd);
}

bool InputCapture::readsEventDevices() const { return keylogger_ && keylogger_->eventDeviceReadable(); }

void InputCapture::applicationKeyEvent(std::uint32_t nativeScanCode, bool pressed, bool autoRepeat, std::uint64_t eventTime) {
    if (keylogger_) keylogger_->applicationKeyEvent(nativeScanCode, pressed, autoRepeat, eventTime);
    if (keyMonitor_) keyMonitor_(nativeScanCode, pressed, autoRepeat, eventTime);
}

int InputCapture::privilegeIntervalMilliseconds() { return static_cast<int>(PrivilegeMonitor::kInterval.count()); }

bool InputCapture::privilegeTick() { return privilege_ && privilege_->tick(); }

}  // namespace qx9
