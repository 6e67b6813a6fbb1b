#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "protocol/command_frame.h"

namespace qx9::protocol {

// The system-function data report: the four switches, the Fn function and the backlight sleep
// time, one byte each, and the trailer in the report's last two bytes.
inline constexpr std::size_t kGameModeByte = 1;
inline constexpr std::size_t kBlockAltTabByte = 2;
inline constexpr std::size_t kBlockAltF4Byte = 3;
inline constexpr std::size_t kLockWinByte = 4;
inline constexpr std::size_t kFnFunctionByte = 5;
inline constexpr std::size_t kSleepTimeByte = 6;
inline constexpr int kSystemFunctionReports = 1;
inline constexpr std::size_t kSystemFunctionTrailerOffset = trailerOffset(kSystemFunctionReports);
static_assert(kSleepTimeByte < kSystemFunctionTrailerOffset);

// The parameter (byte 2) of the system-function header.
inline constexpr std::uint8_t kSystemFunctionParameter = 1;

// The four switches of the settings page at the moment of sending.
struct SystemSwitches {
    bool gameMode = false;
    bool blockAltTab = false;
    bool blockAltF4 = false;
    bool lockWin = false;
};

// The two stored texts of profile 1 that the record carries.
struct SystemStoredValues {
    std::string fnfunction;  // "0" default key, "1" Fn key
    std::string sleeplight;  // index 0–3 of the backlight sleep time
};

// The system-function data report: switches at 1–4, Fn function at 5, sleep time at 6,
// trailer at 62–63. Empty texts count as 0; a text that is not a decimal integer or a value
// outside a byte stops the program.
ReportBuffer buildSystemFunctionReport(const SystemSwitches& switches,
                                       const SystemStoredValues& stored);

// Open, header 0x17 (byte 2 = 1), the raw data report, end (still carrying byte 2 = 1); no
// close.
Transaction systemFunctionTransaction(const SystemSwitches& switches, const SystemStoredValues& stored);

}  // namespace qx9::protocol
