#pragma once

#include <cstdint>
#include <string>

#include "common/unique_fd.h"
#include "hid/hid_backend.h"

namespace qx9 {

// One hidraw node as a transport backend.
//
// hidraw takes byte 0 of a SET buffer as the report number and drops it when it is 0, so a
// report whose first byte is 0 travels in a 65-byte buffer with a leading 0; any other report
// travels as its 64 bytes (command reports start with 0x04 and so go as report 4). A GET asks
// for report 4 and hands back the 64 bytes read.
//
// A node that vanishes mid-transaction (ENODEV, EIO, ENXIO) turns every later call into a
// failure without touching the closed descriptor again.
class HidrawDevice final : public HidBackend {
public:
    HidrawDevice(std::string syspath, std::string devnode, std::int64_t productId);

    std::string identity() const override { return syspath_; }
    std::int64_t productId() const override { return productId_; }
    bool open() override;
    void close() override { fd_.reset(); }
    bool isOpen() const override { return fd_.valid(); }
    bool setFeatureReport(std::uint8_t reportId, const std::uint8_t* data, std::size_t length) override;
    bool getFeatureReport(std::uint8_t reportId, std::uint8_t* data, std::size_t& length) override;
    // flock on the node: every program that opens it shares the one lock.
    bool lockExclusive(std::chrono::milliseconds timeout) override;
    bool unlock() override;
    std::string lastError() const override { return lastError_; }

    const std::string& devnode() const { return devnode_; }
    // errno of the last failed open (EACCES when the node exists but is not ours to open).
    int openErrno() const { return openErrno_; }

private:
    bool fail(const char* what, int err);

    std::string syspath_;
    std::string devnode_;
    std::int64_t productId_;
    UniqueFd fd_;
    bool gone_ = false;
    bool locked_ = false;
    int openErrno_ = 0;
    std::string lastError_;
};

}  // namespace qx9
