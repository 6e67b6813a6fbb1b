#include "hid/device_comm.h"

#include <algorithm>
#include <string>
#include <vector>

#include "common/bytes.h"
#include "common/console.h"
#include "common/fatal.h"

namespace qx9 {

DeviceComm::DeviceComm(HidDeviceRef device, Pacer* pacer, std::shared_ptr<WireSink> wire)
    : device_(std::move(device)), wire_(std::move(wire)), pacer_(pacer ? pacer : &sleepPacer()) {
    if (!device_) fatalError("DeviceComm needs a device");
    if (!device_->isOpen()) device_->open();
}

HidDeviceRef DeviceComm::device() const {
    std::lock_guard lock(mutex_);
    return device_;
}

void DeviceComm::setDevice(HidDeviceRef hidDevice) {
    if (hidDevice && !hidDevice->isOpen()) hidDevice->open();
    std::lock_guard lock(mutex_);
    device_ = std::move(hidDevice);
}

std::shared_ptr<WireSink> DeviceComm::wireSink() const {
    std::lock_guard lock(mutex_);
    return wire_;
}

bool DeviceComm::platformSet(const HidDeviceRef& dev, const std::uint8_t* data,
                             std::size_t length) {
    const bool ok = dev && dev->setFeatureReport(kReportId, data, length);
    if (auto wire = wireSink()) wire->record(WireDirection::Set, {data, length}, ok);
    if (!ok) ++failures_;
    return ok;
}

bool DeviceComm::platformGet(const HidDeviceRef& dev, std::uint8_t* data, std::size_t& length) {
    const bool ok = dev && dev->getFeatureReport(kReportId, data, length);
    if (auto wire = wireSink()) wire->record(WireDirection::Get, {data, ok ? length : 0}, ok);
    if (!ok) ++failures_;
    return ok;
}

bool DeviceComm::setFeatureReport(std::span<const std::uint8_t> data) {
    if (data.size() < kReportLength) fatalError("a report needs 64 bytes");
    return platformSet(device(), data.data(), kReportLength);
}

bool DeviceComm::sendDeviceData(std::span<const std::uint8_t> data) {
    if (deviceStatus() == 0) {
        ++failures_;
        return false;
    }
    if (data.size() < kReportLength) fatalError("a command report needs 64 bytes");
    const HidDeviceRef dev = device();

    pause(kReportPause);
    if (!platformSet(dev, data.data(), kReportLength)) return false;

    pause(kReportPause);
    std::vector<std::uint8_t> reply(data.begin(), data.end());
    std::size_t replyLength = kReportLength;
    const bool readOk = platformGet(dev, reply.data(), replyLength);
    if (reply[kAckByte] != kBusy) return readOk;

    // The keyboard was not ready: exactly one resend, with the length the read returned.
    pause(kReportPause);
    if (replyLength > data.size()) replyLength = data.size();
    if (!platformSet(dev, data.data(), replyLength)) return false;

    pause(kReportPause);
    std::vector<std::uint8_t> second(data.begin(), data.end());
    std::size_t secondLength = kReportLength;
    const bool ok = platformGet(dev, second.data(), secondLength);
    if (ok && second[kAckByte] == kBusy) ++failures_;  // still busy: the report did not take
    return ok;
}

bool DeviceComm::sendDeviceData(std::span<const std::uint8_t> data, std::int64_t length,
                                const std::function<void()>& sent) {
    if (deviceStatus() == 0) {
        ++failures_;
        return false;
    }
    if (length < static_cast<std::int64_t>(kReportLength)) {
        fatalError("block write with a length below 64: " + std::to_string(length));
    }
    const std::int64_t reports = length / static_cast<std::int64_t>(kReportLength);
    if (reports == 1) return true;
    const HidDeviceRef dev = device();

    std::uint8_t slice[kReportLength];
    for (std::int64_t i = 0; i + 1 < reports; ++i) {
        const std::size_t offset = static_cast<std::size_t>(i) * kReportLength;
        if (data.size() < offset + kReportLength) {
            fatalError("block write past the end of its data at report " + std::to_string(i));
        }
        std::copy_n(data.begin() + static_cast<std::ptrdiff_t>(offset), kReportLength, slice);
        console() << "newArr-" << i << bracketedList(slice) << '\n';
        pause(kReportPause);
        if (!platformSet(dev, slice, kReportLength)) return false;
        if (sent) sent();
    }
    return true;
}

bool DeviceComm::sendDeviceDataNoGet(std::span<const std::uint8_t> data) {
    if (deviceStatus() == 0) {
        ++failures_;
        return false;
    }
    if (data.size() < kReportLength) fatalError("a report needs 64 bytes");
    pause(kReportPause);
    return platformSet(device(), data.data(), kReportLength);
}

}  // namespace qx9
