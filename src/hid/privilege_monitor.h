#pragma once

#include <chrono>
#include <functional>

namespace qx9 {

// Reports on the console whether keystrokes can be captured, every 3 seconds until they can.
// The owner runs the timer: start(), then tick() on every timeout until it returns false.
class PrivilegeMonitor {
public:
    static constexpr std::chrono::milliseconds kInterval{3000};

    // `trusted` answers whether the process may watch keystrokes now.
    explicit PrivilegeMonitor(std::function<bool()> trusted);
    PrivilegeMonitor();  // asks inputMonitoringTrusted()

    // Prints "startPrivilegeMonitor" and starts the ticks.
    void start();

    // Prints "ACCESS_ENABLED" with "true" or "false"; once trusted, prints that keyboard events
    // are now watched and stops. Does nothing when not running. Returns whether it still runs.
    bool tick();

private:
    std::function<bool()> trusted_;
    bool running_ = false;
};

}  // namespace qx9
