#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "hid/device_comm.h"
#include "store/records.h"

namespace qx9::protocol {

inline constexpr std::size_t kKeyColourBlockSize = 780;  // of which 576 bytes are sent
inline constexpr int kKeyColourReports = 9;
inline constexpr int kPrefilledLightSlots = 123;

using KeyColourBlock = std::array<std::uint8_t, kKeyColourBlockSize>;

// The fixed light-mode record that switches the keyboard to its per-key mode (mode 0x80).
std::array<std::uint8_t, 65> buildUserLightModeRecord();

// Slots [i, r, g, b] at 4 × light index: slots 0–122 prefilled dark, then each key colour at
// its key's "light_index" (a later colour for the same light wins), trailer at 574–575 (after
// the colours, so it wins over a colour in slot 143). A key missing from the code map, a light
// index outside a byte or the buffer, or a colour outside 0–0xFFFFFF stops the program.
KeyColourBlock buildKeyColourBlock(const std::vector<UserLightLEDData>& colours);

// Open, header 0x13 with one data report, the per-key mode record, end, close.
void SendUserLightModeData(DeviceComm* comm);

// Open, header 0x23 with nine reports, the colour block, end, close, and then a complete
// SendUserLightModeData transaction. With no store the colour list is empty.
void SendUserLightLedData(DeviceComm* comm, const std::vector<UserLightLEDData>& colours);

}  // namespace qx9::protocol
