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

// Interfaces that beside the configuration interface's feature report 4 carry keystrokes in an
// input report 5, each declared a way that only a full reading of the usages finds.
// Keys A–Z as an extended Usage Minimum/Maximum (page 7 in the high half) under a vendor page.
inline constexpr const char* kExtendedKeyRange =
    "06 0A FF 09 01 A1 01 85 04 75 08 95 3F 09 01 B1 02"
    " 85 05 95 06 15 00 25 65 1B 04 00 07 00 2B 1D 00 07 00 81 00 C0";
// Consumer keys the same way (page 0x0C).
inline constexpr const char* kExtendedConsumerRange =
    "06 0A FF 09 01 A1 01 85 04 75 08 95 3F 09 01 B1 02"
    " 85 05 75 10 95 01 15 00 26 FF 03 1B 00 00 0C 00 2B FF 03 0C 00 81 00 C0";
// System Control power, sleep and wake (Generic Desktop 0x81–0x83) as short Usage Min/Max.
inline constexpr const char* kSystemControlKeys =
    "06 0A FF 09 01 A1 01 85 04 75 08 95 3F 09 01 B1 02"
    " 85 05 05 01 75 01 95 03 15 00 25 01 19 81 29 83 81 02 95 05 81 01 C0";
// Short key usages given under page 7 between a Push and a Pop: the vendor page is back in force
// at the Input item.
inline constexpr const char* kKeyPagePopped =
    "06 0A FF 09 01 A1 01 85 04 75 08 95 3F 09 01 B1 02"
    " 85 05 95 06 15 00 25 65 A4 05 07 19 00 29 65 B4 81 00 C0";

}  // namespace qx9::test
