#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "hid/hid_device.h"

struct udev_device;

namespace qx9 {

// The udev side of device discovery: hidraw nodes and what their parents say about them.

// "bus:vendor:product" in hex, as the hid device's HID_ID carries it.
bool parseHidId(const std::string& text, std::int64_t& bus, std::int64_t& vendor,
                std::int64_t& product);

// The location of a USB device: bus number in the top byte, then each port of its devpath
// ("2.3") as one nibble from bit 20 downwards. 0 when the path cannot be read.
std::int64_t locationIdFromUsb(std::int64_t busnum, const std::string& devpath);

// A record for one hidraw device (its device reference is a hidraw backend for the node), or
// nothing when it is not a HID device udev can tell us about.
std::optional<HIDDevice> hidDeviceFromUdev(udev_device* hidraw);

// The report descriptor of a hidraw node's hid device, read from sysfs.
std::vector<std::uint8_t> readReportDescriptor(const std::string& hidrawSyspath);

// Every hidraw node present now, with the errno of opening it (0 when it opens).
struct AttachedInterface {
    HIDDevice record;
    std::string syspath;
    std::string devnode;
    int openErrno = 0;
};
std::vector<AttachedInterface> enumerateHidInterfaces(bool tryOpen);

}  // namespace qx9
