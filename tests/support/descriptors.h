#pragma once

// The report descriptors of the three interfaces the QX9 shows under one vendor and product,
// written out item by item. Only the configuration interface has the 64-byte feature report 4.
namespace qx9::test {

// A boot keyboard: 8 modifier bits, a reserved byte, six key bytes in; five LEDs and padding out.
inline constexpr const char* kKeyboardInterface =
    "05 01 09 06 A1 01 05 07 19 E0 29 E7 15 00 25 01 75 01 95 08 81 02 95 01 75 08 81 01"
    " 95 05 75 01 05 08 19 01 29 05 91 02 95 01 75 03 91 01 95 06 75 08 15 00 25 65"
    " 05 07 19 00 29 65 81 00 C0";
// Consumer control, report 3: one 16-bit usage in.
inline constexpr const char* kConsumerInterface =
    "05 0C 09 01 A1 01 85 03 15 00 26 FF 03 19 00 2A FF 03 75 10 95 01 81 00 C0";
// Vendor page FF0A, feature report 4 of 63 bytes plus its ID.
inline constexpr const char* kConfigurationInterface =
    "06 0A FF 09 01 A1 01 85 04 15 00 26 FF 00 75 08 95 3F 09 01 B1 02 C0";

}  // namespace qx9::test
