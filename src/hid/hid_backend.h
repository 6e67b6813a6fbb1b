#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace qx9 {

// One HID interface as the transport sees it: feature reports in and out, nothing else.
// Implemented by the hidraw node of a real keyboard and by the in-process virtual QX9.
// Calls come from one thread at a time (the thread that sends to the keyboard).
class HidBackend {
public:
    virtual ~HidBackend() = default;

    // Stable identity of the interface (the udev syspath for hidraw). Two references to the
    // same interface have the same identity; a replugged keyboard gets a new one.
    virtual std::string identity() const = 0;

    // The interface's product number, 0 when unknown.
    virtual std::int64_t productId() const = 0;

    // Opens the interface; set/get on an interface that is not open fail.
    virtual bool open() = 0;
    virtual void close() = 0;
    virtual bool isOpen() const = 0;

    // Sets feature report `reportId` with `length` bytes starting at `data`. `data[0]` is the
    // first byte of the report on the wire.
    virtual bool setFeatureReport(std::uint8_t reportId, const std::uint8_t* data,
                                  std::size_t length) = 0;

    // Gets feature report `reportId` into `data`; `length` is the capacity on entry and the
    // number of bytes read on return.
    virtual bool getFeatureReport(std::uint8_t reportId, std::uint8_t* data,
                                  std::size_t& length) = 0;

    // Holds the interface for one transaction against every other writer, in this program and
    // in others (another window, qx9ctl): they wait until unlock(). False, holding nothing, when
    // it could not be had within `timeout` or the interface is gone. unlock() is false when what
    // was sent during the hold could not be kept (a virtual keyboard's file not written).
    virtual bool lockExclusive(std::chrono::milliseconds timeout) = 0;
    virtual bool unlock() = 0;

    // Text of the last failure of this interface, empty when none.
    virtual std::string lastError() const = 0;
};

// The device reference carried by device records and held by the transport.
using HidDeviceRef = std::shared_ptr<HidBackend>;

// The exclusive hold of an interface for the life of the object.
class DeviceLock {
public:
    DeviceLock(HidDeviceRef device, std::chrono::milliseconds timeout)
        : device_(std::move(device)), held_(device_ && device_->lockExclusive(timeout)) {}
    ~DeviceLock() { release(); }
    DeviceLock(const DeviceLock&) = delete;
    DeviceLock& operator=(const DeviceLock&) = delete;
    explicit operator bool() const { return held_; }
    // Ends the hold now; false when the device could not keep what was sent (see unlock()).
    bool release() {
        if (!held_) return true;
        held_ = false;
        return device_->unlock();
    }

private:
    HidDeviceRef device_;
    bool held_;
};

// Equality of device references is equality of the interfaces they name.
inline bool sameDevice(const HidDeviceRef& a, const HidDeviceRef& b) {
    if (!a || !b) return a == b;
    return a == b || a->identity() == b->identity();
}

}  // namespace qx9
