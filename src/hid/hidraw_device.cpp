#include "hid/hidraw_device.h"

#include <fcntl.h>
#include <linux/hidraw.h>
#include <sys/file.h>
#include <sys/ioctl.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

#include "hid/hid_device.h"

namespace qx9 {

namespace {

constexpr auto kReportLength = static_cast<std::size_t>(kQX9FeatureSize);
constexpr int kOpenAttempts = 3;
constexpr auto kOpenRetryDelay = std::chrono::milliseconds(100);
// How often a held lock is tried again while another program has it.
constexpr auto kLockRetryDelay = std::chrono::milliseconds(2);

bool deviceGone(int err) { return err == ENODEV || err == EIO || err == ENXIO || err == ENOENT; }

}  // namespace

HidrawDevice::HidrawDevice(std::string syspath, std::string devnode, std::int64_t productId)
    : syspath_(std::move(syspath)), devnode_(std::move(devnode)), productId_(productId) {}

bool HidrawDevice::fail(const char* what, int err) {
    lastError_ = std::string(what) + " " + devnode_ + ": " + std::strerror(err);
    if (deviceGone(err)) {
        gone_ = true;
        fd_.reset();
    }
    return false;
}

bool HidrawDevice::open() {
    if (fd_) return true;
    if (gone_) return fail("open", ENODEV);
    // Access can lag a moment behind the node's arrival while udev applies its rules.
    for (int attempt = 1;; ++attempt) {
        const int fd = ::open(devnode_.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK);
        if (fd >= 0) {
            fd_.reset(fd);
            openErrno_ = 0;
            lastError_.clear();
            return true;
        }
        openErrno_ = errno;
        if (openErrno_ != EACCES || attempt == kOpenAttempts) return fail("open", openErrno_);
        std::this_thread::sleep_for(kOpenRetryDelay);
    }
}

bool HidrawDevice::lockExclusive(std::chrono::milliseconds timeout) {
    if (!fd_ && !open()) return false;
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    for (;;) {
        if (::flock(fd_.get(), LOCK_EX | LOCK_NB) == 0) {
            locked_ = true;
            return true;
        }
        const int err = errno;
        if (err == EINTR) continue;
        if (err != EWOULDBLOCK) return fail("lock", err);
        if (std::chrono::steady_clock::now() >= deadline) {
            lastError_ = devnode_ + " is in use by another program";
            return false;
        }
        std::this_thread::sleep_for(kLockRetryDelay);
    }
}

bool HidrawDevice::unlock() {
    if (locked_ && fd_) ::flock(fd_.get(), LOCK_UN);
    locked_ = false;
    return true;
}

bool HidrawDevice::setFeatureReport(std::uint8_t reportId, const std::uint8_t* data,
                                    std::size_t length) {
    if (!fd_ && !open()) return false;
    if (reportId != kQX9ReportId || !data || length == 0 || length > kReportLength) {
        return fail("set", EINVAL);
    }
    std::uint8_t buf[kReportLength + 1] = {};
    std::size_t n = 0;
    if (data[0] != 0) {
        std::memcpy(buf, data, length);
        n = length;
    } else {
        std::memcpy(buf + 1, data, length);
        n = length + 1;
    }
    int rc;
    do {
        rc = ::ioctl(fd_.get(), HIDIOCSFEATURE(n), buf);
    } while (rc < 0 && errno == EINTR);
    if (rc < 0) return fail("set feature report on", errno);
    return true;
}

bool HidrawDevice::getFeatureReport(std::uint8_t reportId, std::uint8_t* data, std::size_t& length) {
    if (!fd_ && !open()) return false;
    if (!data || length < kReportLength) return fail("get", EINVAL);
    std::uint8_t buf[kReportLength] = {};
    buf[0] = reportId;
    int rc;
    do {
        rc = ::ioctl(fd_.get(), HIDIOCGFEATURE(kReportLength), buf);
    } while (rc < 0 && errno == EINTR);
    if (rc < 0) return fail("get feature report from", errno);
    std::memcpy(data, buf, kReportLength);
    length = std::min<std::size_t>(static_cast<std::size_t>(rc), kReportLength);
    return true;
}

}  // namespace qx9
