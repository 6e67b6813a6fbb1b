#pragma once

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "hid/hid_device_monitor.h"

namespace qx9 {

// Records what a device monitor reports, from any thread, by the event's name.
class DeviceRecorder {
public:
    HIDDeviceEvents events() {
        return {[this](const HIDDevice& d) { add("HIDDeviceConnected", d); },
                [this](const HIDDevice& d) { add("HIDDeviceDisconnected", d); }};
    }
    // The records reported under `name` once at least `count` have arrived, or the time is up.
    std::vector<HIDDevice> waitFor(const std::string& name, std::size_t count, std::chrono::milliseconds timeout) const {
        std::unique_lock lock(mutex_);
        std::vector<HIDDevice> out;
        changed_.wait_for(lock, timeout, [&] {
            out.clear();
            for (const auto& [n, d] : seen_)
                if (n == name) out.push_back(d);
            return out.size() >= count;
        });
        return out;
    }

private:
    void add(const char* name, const HIDDevice& d) {
        std::lock_guard lock(mutex_);
        seen_.emplace_back(name, d);
        changed_.notify_all();
    }
    mutable std::mutex mutex_;
    mutable std::condition_variable changed_;
    std::vector<std::pair<std::string, HIDDevice>> seen_;
};

}  // namespace qx9
