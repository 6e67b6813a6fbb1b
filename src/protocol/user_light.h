#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "protocol/command_frame.h"
#include "protocol/light_mode.h"
#include "store/records.h"

namespace qx9::protocol {

// The key-colour table: a 4-byte slot [light index, red, green, blue] per light index. Nine
// reports of it are sent; the buffer is longer.
inline constexpr std::size_t kKeyColourSlotSize = 4;
inline constexpr int kKeyColourReports = 9;
inline constexpr std::size_t kKeyColourSentSize = kKeyColourReports * kReportLength;
inline constexpr std::size_t kKeyColourBlockSize = 780;
inline constexpr std::size_t kKeyColourTrailerOffset = trailerOffset(kKeyColourReports);
inline constexpr int kPrefilledLightSlots = 123;
static_assert(kKeyColourSentSize == 576 && kKeyColourSentSize <= kKeyColourBlockSize);
static_assert(kKeyColourBlockSize % kKeyColourSlotSize == 0);
static_assert(kPrefilledLightSlots * kKeyColourSlotSize <= kKeyColourTrailerOffset);

using KeyColourBlock = std::array<std::uint8_t, kKeyColourBlockSize>;

// The light mode of the per-key colours, and the record that switches the keyboard to it: red,
// random colour on, brightness, speed and direction all 0x0F.
inline constexpr std::uint8_t kPerKeyLightMode = 0x80;
inline constexpr LightRecord kPerKeyLightRecord = [] {
    LightRecord r{};
    r[kLightModeByte] = kPerKeyLightMode;
    r[kLightRedByte] = 0xFF;
    r[kLightRandomByte] = 0x01;
    r[kLightBrightnessByte] = 0x0F;
    r[kLightSpeedByte] = 0x0F;
    r[kLightDirectionByte] = 0x0F;
    return r;
}();

// Slots [i, r, g, b] at 4 × light index: slots 0–122 prefilled dark, then each key colour at
// its key's "light_index" (a later colour for the same light wins), trailer at 574–575 (after
// the colours, so it wins over a colour in slot 143). A key missing from the code map, a light
// index outside a byte or the buffer, or a colour outside 0–0xFFFFFF stops the program.
KeyColourBlock buildKeyColourBlock(const std::vector<UserLightLEDData>& colours);

// The light-mode transaction of the per-key mode: open, header 0x13 with one data report, the
// per-key mode record, end, close.
Transaction userLightModeTransaction();

// Open, header 0x23 with nine reports, the colour block, end, close, and then a complete
// user-light mode transaction.
Transaction userLightLedTransaction(const std::vector<UserLightLEDData>& colours);

}  // namespace qx9::protocol
