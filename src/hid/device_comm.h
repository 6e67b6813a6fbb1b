#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <span>

#include "hid/hid_backend.h"
#include "hid/hid_device.h"
#include "hid/pacer.h"
#include "hid/wire_log.h"

namespace qx9 {

// The only way the application writes to the keyboard: 64-byte feature reports with report
// ID 4, each preceded by a 5 ms pause. It knows nothing of what the bytes mean.
//
// `device` and `deviceStatus` are written by the device session, possibly from the monitor's
// thread, while writes run on the main thread; each write takes one snapshot of the device.
class DeviceComm {
public:
    static constexpr std::uint8_t kReportId = kQX9ReportId;
    static constexpr std::size_t kReportLength = kQX9FeatureSize;
    static constexpr std::size_t kAckByte = 3;
    static constexpr std::uint8_t kBusy = 0xFF;

    // A transport without a device is not supported: a null `device` stops the program.
    // `pacer` defaults to the sleeping pacer; `wire` (optional) sees every platform call.
    explicit DeviceComm(HidDeviceRef device, Pacer* pacer = nullptr,
                        std::shared_ptr<WireSink> wire = nullptr);

    HidDeviceRef device() const;
    void setDevice(HidDeviceRef hidDevice);  // opens the new device
    std::int64_t deviceStatus() const { return deviceStatus_.load(); }
    void setDeviceStatus(std::int64_t devStatus) { deviceStatus_.store(devStatus); }

    // How many reports did not reach the keyboard since the transport was made: refused or lost
    // platform calls, a keyboard still busy after the resend, writes skipped while it is away.
    // The transactions carry on past a failure as the keyboard expects; callers compare the
    // count before and after one to know whether it arrived whole.
    std::uint64_t failures() const { return failures_.load(); }

    // One command report with acknowledgement: pause, set, pause, get; when the keyboard
    // answers busy (0xFF at byte 3) the report is set once more with the length the read
    // returned, then read once more. True when the last platform call succeeded. `data` must
    // hold at least 64 bytes and is never changed.
    bool sendDeviceData(std::span<const std::uint8_t> data);

    // A block of `length` / 64 − 1 reports without read-back, each after a pause and a
    // "newArr-" diagnostic line. Stops at the first failed report: false then, and when the
    // keyboard is absent. `sent`, when given, hears of each report set.
    bool sendDeviceData(std::span<const std::uint8_t> data, std::int64_t length,
                        const std::function<void()>& sent = {});

    // Pause and one set without acknowledgement; false when absent or refused.
    bool sendDeviceDataNoGet(std::span<const std::uint8_t> data);

    // The platform call itself, without pause or status check: used by the one-report payloads
    // that the write transaction sends raw.
    bool setFeatureReport(std::span<const std::uint8_t> data);

    void pause(std::chrono::microseconds duration) { pacer_->pause(duration); }

private:
    bool platformSet(const HidDeviceRef& dev, const std::uint8_t* data, std::size_t length);
    bool platformGet(const HidDeviceRef& dev, std::uint8_t* data, std::size_t& length);
    std::shared_ptr<WireSink> wireSink() const;

    mutable std::mutex mutex_;  // guards device_ and wire_
    HidDeviceRef device_;
    std::shared_ptr<WireSink> wire_;
    std::atomic<std::int64_t> deviceStatus_{1};
    std::atomic<std::uint64_t> failures_{0};
    Pacer* pacer_;
};

}  // namespace qx9
