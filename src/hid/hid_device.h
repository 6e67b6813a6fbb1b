#pragma once

#include <cstdint>
#include <string>

#include "hid/hid_backend.h"

namespace qx9 {

// One attached HID interface, as the device monitor reports it.
struct HIDDevice {
    std::int64_t id = 0;           // location: USB bus and port path, 0 without a USB ancestor
    std::int64_t vendorId = 0;
    std::int64_t productId = 0;
    std::int64_t reportSize = 0;   // largest input report
    std::int64_t featureSize = 0;  // largest feature report
    HidDeviceRef device;           // never null in a reported record
    std::string name;
};

// The keyboard's configuration interface, by design not taken from the monitor's match list:
// its USB vendor and product, and the one feature report it declares (report ID 4, 64 bytes
// with the ID byte).
inline constexpr std::int64_t kQX9VendorId = 0x05AC;
inline constexpr std::int64_t kQX9ProductId = 0x024F;
inline constexpr std::uint8_t kQX9ReportId = 4;
inline constexpr std::int64_t kQX9FeatureSize = 64;

inline bool isQX9ConfigurationInterface(const HIDDevice& d) {
    return d.vendorId == kQX9VendorId && d.productId == kQX9ProductId &&
           d.featureSize == kQX9FeatureSize;
}

}  // namespace qx9
