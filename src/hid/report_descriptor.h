#pragma once

#include <cstdint>
#include <span>

namespace qx9 {

// Largest report of each kind that a HID report descriptor declares, in bytes: for every report
// ID the bits of its main items of that kind, rounded up to bytes, plus one byte for the ID
// when the reports are numbered. All zero when the descriptor is malformed.
struct ReportSizes {
    std::int64_t input = 0;
    std::int64_t output = 0;
    std::int64_t feature = 0;
    bool valid = false;
    // Some input report carries keys: an Input item whose usages (Usage, Usage Minimum/Maximum,
    // short or extended, under the usage page in force before or after them) fall on the
    // Keyboard/Keypad (0x07) or Consumer (0x0C) page or on Generic Desktop's System Control keys.
    bool keystrokeInputs = false;
};

// Reads a descriptor that comes from a device: never reads outside `descriptor`, always ends,
// and treats anything it cannot make sense of (an item running past the end, an unbalanced
// collection or pop, a report ID of 0 or above 255, absurd sizes) as malformed.
ReportSizes parseReportDescriptor(std::span<const std::uint8_t> descriptor);

// Size in bytes of feature report `reportId` (with its ID byte when numbered), 0 when the
// descriptor does not declare it or is malformed.
std::int64_t featureReportSize(std::span<const std::uint8_t> descriptor, std::uint8_t reportId);

}  // namespace qx9
