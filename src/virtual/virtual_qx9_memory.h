#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "protocol/key_mapping.h"
#include "protocol/user_light.h"

namespace qx9 {

// What a QX9 holds after the reports it was sent, as the keyboard keeps it: the data blocks as
// received, with decoded views for tests and tools.
struct VirtualQX9Memory {
    static constexpr std::size_t kKeyTableBytes = protocol::kKeyMappingSentSize;
    static constexpr std::size_t kColourBytes = protocol::kKeyColourSentSize;
    static constexpr std::size_t kSlots = kKeyTableBytes / protocol::kKeyRecordSize;

    // Key tables of the base layer (0) and the Fn layer (1); absent until one was received.
    std::array<std::optional<std::vector<std::uint8_t>>, 2> keyTables;
    std::optional<std::vector<std::uint8_t>> macroBlock;       // 64·n bytes
    std::optional<std::vector<std::uint8_t>> lightMode;        // the 64-byte light-mode report
    std::optional<std::vector<std::uint8_t>> keyColours;       // 576 bytes
    std::optional<std::vector<std::uint8_t>> systemFunctions;  // the 64-byte record

    // Counts of what arrived, for tools and tests.
    std::uint64_t transactions = 0;     // blocks applied
    std::uint64_t droppedBlocks = 0;    // blocks cut short by a command report
    std::uint64_t strayReports = 0;     // data outside a transaction, or unknown commands

    bool operator==(const VirtualQX9Memory&) const = default;
};

// Decoded views.

struct VirtualKeyRecord {
    int slot = 0;
    std::array<std::uint8_t, 4> bytes{};
};

// The non-zero records of a layer's table, by slot.
std::vector<VirtualKeyRecord> keyRecords(const VirtualQX9Memory& memory, int layer);
// The record of one slot (all zero when the layer was never written).
std::array<std::uint8_t, 4> keyRecord(const VirtualQX9Memory& memory, int layer, int slot);

enum class VirtualMacroEventKind { Delay, KeyDown, KeyUp, MouseDown, MouseUp, Empty, Unknown };

struct VirtualMacroEvent {
    VirtualMacroEventKind kind = VirtualMacroEventKind::Empty;
    int value = 0;  // milliseconds, scan code or button bit
    std::array<std::uint8_t, 4> raw{};
};

struct VirtualMacro {
    int position = 0;
    bool empty = false;  // directory slot FF FF FF FF
    int offset = 0;
    std::vector<VirtualMacroEvent> events;
};

// The macros of the macro block: directory slots until the first all-zero slot.
std::vector<VirtualMacro> decodeMacros(const VirtualQX9Memory& memory);
std::string macroEventText(const VirtualMacroEvent& event);  // "down 04", "delay 10", …

struct VirtualLightMode {
    int mode = 0;
    int red = 0, green = 0, blue = 0;
    int random = 0, brightness = 0, speed = 0, direction = 0;
};
std::optional<VirtualLightMode> decodeLightMode(const VirtualQX9Memory& memory);

// Colour of one light index as 0xRRGGBB, or nothing when no colour block was received.
std::optional<std::uint32_t> keyColour(const VirtualQX9Memory& memory, int lightIndex);

struct VirtualSystemFunctions {
    int gameMode = 0, blockAltTab = 0, blockAltF4 = 0, lockWin = 0, fnFunction = 0, sleepTime = 0;
};
std::optional<VirtualSystemFunctions> decodeSystemFunctions(const VirtualQX9Memory& memory);

// The memory as JSON text (raw blocks as hex, decoded views beside them for people) and back.
// Loading checks every block's size; on error the memory is left unchanged and false returned.
std::string memoryToJson(const VirtualQX9Memory& memory);
bool memoryFromJson(const std::string& text, VirtualQX9Memory& memory, std::string& error);

}  // namespace qx9
