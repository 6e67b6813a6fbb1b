#include "hid/privilege_monitor.h"

#include "common/console.h"
#include "hid/keylogger.h"

namespace qx9 {

PrivilegeMonitor::PrivilegeMonitor(std::function<bool()> trusted) : trusted_(std::move(trusted)) {}

PrivilegeMonitor::PrivilegeMonitor() : PrivilegeMonitor(inputMonitoringTrusted) {}

void PrivilegeMonitor::start() {
    console() << "startPrivilegeMonitor" << '\n';
    running_ = true;
}

bool PrivilegeMonitor::tick() {
    if (!running_) return false;
    const bool trusted = trusted_ && trusted_();
    console() << "ACCESS_ENABLED" << (trusted ? "true" : "false") << '\n';
    if (trusted) {
        console() << "有权限,开启键盘事件监控" << '\n';
        running_ = false;
    }
    return running_;
}

}  // namespace qx9
