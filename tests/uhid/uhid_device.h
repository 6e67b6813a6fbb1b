#pragma once

#include <atomic>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <vector>

#include "common/bytes.h"
#include "common/unique_fd.h"
#include "virtual/virtual_qx9.h"

namespace qx9::test {

// A HID device created through /dev/uhid, answering feature reports with a virtual QX9 (when it
// has one) the way the keyboard does over USB: a SET that hidraw sent with a leading 0 arrives
// as report 0 with 65 bytes, and the USB driver would drop that byte, so the device drops it.
class UhidDevice {
public:
    UhidDevice(const std::string& name, const Bytes& descriptor, bool answersWithKeyboard);
    ~UhidDevice() { destroy(); }

    bool created() const { return fd_.valid(); }
    const std::string& error() const { return error_; }

    // Every SET received, after dropping hidraw's leading 0.
    std::vector<Bytes> sets();
    VirtualQX9& keyboard() { return *keyboard_; }
    std::mutex& keyboardMutex() { return mutex_; }

    bool input(const Bytes& report);
    // Stop answering GET requests (the host's read then waits on the device).
    void stallReads(bool stall) { stall_ = stall; }
    void destroy();

private:
    void serve();

    UniqueFd fd_;
    std::string error_;
    std::unique_ptr<VirtualQX9> keyboard_;
    bool answers_;
    std::mutex mutex_;
    std::vector<Bytes> sets_;
    std::atomic<bool> stall_{false};
    std::atomic<bool> running_{true};
    std::thread thread_;
};

}  // namespace qx9::test
