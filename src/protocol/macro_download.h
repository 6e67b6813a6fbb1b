#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "hid/device_comm.h"
#include "store/records.h"

namespace qx9::protocol {

inline constexpr std::size_t kMacroBlockSize = 3200;
inline constexpr std::size_t kMacroBodiesStart = 400;  // after the directory
inline constexpr std::int64_t kMacroCapacity = 2500;   // bytes of events and macro headers
inline constexpr std::size_t kMacroDirectorySlotSize = 4;
// One directory slot per macro: the keyboard can address this many macros.
inline constexpr std::int64_t kMacroDirectorySlots = kMacroBodiesStart / kMacroDirectorySlotSize;
static_assert(kMacroDirectorySlots == 100);

// One macro as the store lists it, with its events in order.
struct MacroWithEvents {
    MacroInfo info;
    std::vector<RecordInfo> events;
};

// What a macro download reads: the number of stored events of all macros, the number of macros
// in the macro page's list, and every macro with its events in the store's order.
struct MacroDownloadInput {
    std::int64_t storedEventCount = 0;
    std::int64_t listedMacroCount = 0;
    std::vector<MacroWithEvents> macros;
};

// The macro memory the check counts: 4 bytes an event and 8 a macro.
constexpr std::int64_t macroMemoryBytes(std::int64_t events, std::int64_t macros) { return 4 * events + 8 * macros; }

// 4 × events + 8 × macros must not exceed 2500.
bool macrosFitKeyboard(std::int64_t storedEventCount, std::int64_t listedMacroCount);

struct MacroBlock {
    std::vector<std::uint8_t> bytes;  // 3200 bytes; the first 64 × reports are sent
    std::size_t usedLength = 0;       // offset after the last body
    int reports = 0;
};

// The directory (one 4-byte slot per macro: its body's offset, or FF FF FF FF without events)
// and the bodies (entry count, six zeros, 4-byte entries; a 10 ms pause between two non-delay
// events that follow each other), trailer in the last two bytes of the last report. Nothing
// when the layout would not fit the 3200-byte block or 255 reports. A key code outside a
// byte stops the program.
std::optional<MacroBlock> tryBuildMacroBlock(const std::vector<MacroWithEvents>& macros);
// The same for callers that have checked the size: a layout that does not fit stops.
MacroBlock buildMacroBlock(const std::vector<MacroWithEvents>& macros);

// The macro download: silently nothing when over capacity (or when the block would overflow); otherwise open 0x19, header 0x15
// with the report count, the block, end; no close. `input` is null when there is no store,
// which is a programming error.
void SaveMacroToKeyboard(DeviceComm* comm, const MacroDownloadInput* input);

}  // namespace qx9::protocol
