#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "protocol/command_frame.h"
#include "store/records.h"

namespace qx9::protocol {

// The macro block: a directory of one 4-byte slot per macro, then the macro bodies. A body is
// an 8-byte header (entry count, low byte first, and six zeros) and 4-byte entries.
inline constexpr std::size_t kMacroBlockSize = 3200;
inline constexpr std::size_t kMacroSlots = 100;
inline constexpr std::size_t kMacroSlotSize = 4;
inline constexpr std::size_t kMacroBodiesStart = kMacroSlots * kMacroSlotSize;
inline constexpr std::size_t kMacroBodyHeaderSize = 8;
inline constexpr std::size_t kMacroEntrySize = 4;
inline constexpr std::int64_t kMacroCapacity = 2500;  // bytes of events and macro headers
static_assert(kMacroBlockSize % kReportLength == 0);
static_assert(kMacroBlockSize / kReportLength <= kMaxDataReports);
static_assert(kMacroBodiesStart == 400 && kMacroBodiesStart < kMacroBlockSize);

// The directory slot of a macro without events: all four bytes 0xFF.
inline constexpr std::uint8_t kEmptyMacroSlotByte = 0xFF;

// A macro entry: for a delay the milliseconds in bytes 0–1 (low byte first), for a key its
// usage and for a mouse button its bit in byte 2; byte 3 is the kind.
inline constexpr std::size_t kMacroEntryValueByte = 2;
inline constexpr std::size_t kMacroEntryKindByte = 3;
enum MacroEntryKind : std::uint8_t {
    kEntryMouseUp = 0x10,
    kEntryKeyUp = 0x30,
    kEntryDelay = 0x50,
    kEntryMouseDown = 0x90,
    kEntryKeyDown = 0xB0,
};

// The pause put between two events that follow each other without a delay, in ms.
inline constexpr std::uint8_t kEventPauseMs = 10;
// One directory slot per macro: the keyboard can address this many macros.
inline constexpr std::int64_t kMacroDirectorySlots = kMacroSlots;

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
constexpr std::int64_t macroMemoryBytes(std::int64_t events, std::int64_t macros) {
    return static_cast<std::int64_t>(kMacroEntrySize) * events + static_cast<std::int64_t>(kMacroBodyHeaderSize) * macros;
}

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

// The macro download: nothing when over capacity (or when the block would overflow);
// otherwise open 0x19, header 0x15 with the report count, a pause, the block, a pause, end; no
// close.
std::optional<Transaction> macroTransaction(const MacroDownloadInput& input);

}  // namespace qx9::protocol
