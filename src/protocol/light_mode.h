#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "protocol/command_frame.h"
#include "store/records.h"

namespace qx9::protocol {

// The bytes of the 12-byte light record, which the light-mode report carries at the same
// offsets; bytes 4–7 of the record are not sent.
inline constexpr std::size_t kLightModeByte = 0;
inline constexpr std::size_t kLightRedByte = 1;
inline constexpr std::size_t kLightGreenByte = 2;
inline constexpr std::size_t kLightBlueByte = 3;
inline constexpr std::size_t kLightRandomByte = 8;
inline constexpr std::size_t kLightBrightnessByte = 9;
inline constexpr std::size_t kLightSpeedByte = 10;
inline constexpr std::size_t kLightDirectionByte = 11;
inline constexpr std::size_t kLightModeTrailerOffset = 14;
inline constexpr int kLightModeReports = 1;
static_assert(std::tuple_size_v<LightRecord> == 12);
static_assert(kLightDirectionByte + 1 == std::tuple_size_v<LightRecord>);
static_assert(kLightModeTrailerOffset >= std::tuple_size_v<LightRecord>);

// The record bytes a light-mode report takes over (the mode byte comes from the current mode).
inline constexpr std::size_t kSentLightRecordBytes[] = {
    kLightRedByte,        kLightGreenByte, kLightBlueByte,      kLightRandomByte,
    kLightBrightnessByte, kLightSpeedByte, kLightDirectionByte,
};

// The light-mode data report of a built-in effect: mode at 0, colour 1–3, random 8, brightness
// 9, speed 10, direction 11 (bytes sent whole, not masked), trailer at 14–15. Without a record
// (no database, or the read failed) only the mode and the trailer are set. A mode outside a
// byte stops the program.
ReportBuffer buildLightModeReport(std::int64_t currentLightMode,
                                  const std::optional<LightRecord>& record);

// Open, header 0x13 with one data report, the raw report, end, close.
Transaction lightModeTransaction(std::int64_t currentLightMode, const std::optional<LightRecord>& record);

}  // namespace qx9::protocol
