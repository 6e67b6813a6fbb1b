#pragma once

#include <array>
#include <cstdint>
#include <optional>

#include "hid/device_comm.h"
#include "store/records.h"

namespace qx9::protocol {

// The light-mode data report of a built-in effect: mode at 0, colour 1–3, random 8, brightness
// 9, speed 10, direction 11 (bytes sent whole, not masked), trailer at 14–15. Without a record
// (no database, or the read failed) only the mode and the trailer are set. A mode outside a
// byte stops the program.
std::array<std::uint8_t, 65> buildLightModeReport(std::int64_t currentLightMode,
                                                  const std::optional<LightRecord>& record);

// Open, header 0x13 with one data report, the raw report, end, close.
void SendLightModeData(DeviceComm* comm, std::int64_t currentLightMode,
                       const std::optional<LightRecord>& record);

}  // namespace qx9::protocol
