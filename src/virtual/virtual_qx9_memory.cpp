#include "virtual/virtual_qx9_memory.h"

#include <cstdio>

#include "protocol/light_mode.h"
#include "protocol/macro_download.h"
#include "protocol/system_function.h"

namespace qx9 {

using namespace protocol;

namespace {

std::array<std::uint8_t, 4> quad(const std::vector<std::uint8_t>& block, std::size_t offset) {
    std::array<std::uint8_t, 4> out{};
    for (std::size_t i = 0; i < 4 && offset + i < block.size(); ++i) out[i] = block[offset + i];
    return out;
}

int le16(const std::vector<std::uint8_t>& block, std::size_t offset) {
    if (offset + 1 >= block.size()) return 0;
    return block[offset] | (block[offset + 1] << 8);
}

VirtualMacroEvent decodeEntry(const std::array<std::uint8_t, 4>& e) {
    using Kind = VirtualMacroEventKind;
    VirtualMacroEvent ev;
    ev.raw = e;
    const std::uint8_t value = e[kMacroEntryValueByte];
    switch (e[kMacroEntryKindByte]) {
        case kEntryDelay: ev.kind = Kind::Delay, ev.value = e[0] | (e[1] << 8); break;
        case kEntryKeyDown: ev.kind = Kind::KeyDown, ev.value = value; break;
        case kEntryKeyUp: ev.kind = Kind::KeyUp, ev.value = value; break;
        case kEntryMouseDown: ev.kind = Kind::MouseDown, ev.value = value; break;
        case kEntryMouseUp: ev.kind = Kind::MouseUp, ev.value = value; break;
        case 0x00: ev.kind = (e[0] | e[1] | e[2]) ? Kind::Unknown : Kind::Empty; break;
        default: ev.kind = Kind::Unknown; break;
    }
    return ev;
}

}  // namespace

std::array<std::uint8_t, 4> keyRecord(const VirtualQX9Memory& memory, int layer, int slot) {
    if (layer < 0 || layer > 1 || slot < 0) return {};
    const auto& table = memory.keyTables[static_cast<std::size_t>(layer)];
    if (!table) return {};
    return quad(*table, static_cast<std::size_t>(slot) * kKeyRecordSize);
}

std::vector<VirtualKeyRecord> keyRecords(const VirtualQX9Memory& memory, int layer) {
    std::vector<VirtualKeyRecord> out;
    // The last slot holds the block trailer, not a key.
    for (int slot = 0; slot + 1 < static_cast<int>(VirtualQX9Memory::kSlots); ++slot) {
        auto rec = keyRecord(memory, layer, slot);
        if (rec[0] | rec[1] | rec[2] | rec[3]) out.push_back({slot, rec});
    }
    return out;
}

std::vector<VirtualMacro> decodeMacros(const VirtualQX9Memory& memory) {
    std::vector<VirtualMacro> out;
    if (!memory.macroBlock) return out;
    const auto& block = *memory.macroBlock;
    // The directory comes first, one slot per macro.
    for (std::size_t k = 0; k < kMacroSlots && (k + 1) * kMacroSlotSize <= block.size(); ++k) {
        const auto slot = quad(block, k * kMacroSlotSize);
        if ((slot[0] | slot[1] | slot[2] | slot[3]) == 0) break;
        VirtualMacro m;
        m.position = static_cast<int>(k);
        if (slot == std::array<std::uint8_t, 4>{kEmptyMacroSlotByte, kEmptyMacroSlotByte,
                                                kEmptyMacroSlotByte, kEmptyMacroSlotByte}) {
            m.empty = true;
            out.push_back(std::move(m));
            continue;
        }
        m.offset = slot[0] | (slot[1] << 8);
        const int count = le16(block, static_cast<std::size_t>(m.offset));
        for (int e = 0; e < count; ++e) {
            const std::size_t at = static_cast<std::size_t>(m.offset) + kMacroBodyHeaderSize +
                                   kMacroEntrySize * static_cast<std::size_t>(e);
            if (at + kMacroEntrySize > block.size()) break;  // a body past the block is cut off
            m.events.push_back(decodeEntry(quad(block, at)));
        }
        out.push_back(std::move(m));
    }
    return out;
}

std::string macroEventText(const VirtualMacroEvent& event) {
    char buf[32];
    switch (event.kind) {
        case VirtualMacroEventKind::Delay: std::snprintf(buf, sizeof buf, "delay %d", event.value); break;
        case VirtualMacroEventKind::KeyDown: std::snprintf(buf, sizeof buf, "down %02X", event.value); break;
        case VirtualMacroEventKind::KeyUp: std::snprintf(buf, sizeof buf, "up %02X", event.value); break;
        case VirtualMacroEventKind::MouseDown: std::snprintf(buf, sizeof buf, "mouse-down %d", event.value); break;
        case VirtualMacroEventKind::MouseUp: std::snprintf(buf, sizeof buf, "mouse-up %d", event.value); break;
        case VirtualMacroEventKind::Empty: std::snprintf(buf, sizeof buf, "empty"); break;
        case VirtualMacroEventKind::Unknown:
            std::snprintf(buf, sizeof buf, "raw %02X %02X %02X %02X", event.raw[0], event.raw[1],
                          event.raw[2], event.raw[3]);
            break;
    }
    return buf;
}

std::optional<VirtualLightMode> decodeLightMode(const VirtualQX9Memory& memory) {
    if (!memory.lightMode) return std::nullopt;
    const auto& r = *memory.lightMode;
    VirtualLightMode m;
    m.mode = r[kLightModeByte];
    m.red = r[kLightRedByte];
    m.green = r[kLightGreenByte];
    m.blue = r[kLightBlueByte];
    m.random = r[kLightRandomByte];
    m.brightness = r[kLightBrightnessByte];
    m.speed = r[kLightSpeedByte];
    m.direction = r[kLightDirectionByte];
    return m;
}

std::optional<std::uint32_t> keyColour(const VirtualQX9Memory& memory, int lightIndex) {
    if (!memory.keyColours || lightIndex < 0) return std::nullopt;
    const auto slot =
        quad(*memory.keyColours, static_cast<std::size_t>(lightIndex) * kKeyColourSlotSize);
    return static_cast<std::uint32_t>((slot[1] << 16) | (slot[2] << 8) | slot[3]);
}

std::optional<VirtualSystemFunctions> decodeSystemFunctions(const VirtualQX9Memory& memory) {
    if (!memory.systemFunctions) return std::nullopt;
    const auto& r = *memory.systemFunctions;
    return VirtualSystemFunctions{r[kGameModeByte], r[kBlockAltTabByte], r[kBlockAltF4Byte],
                                  r[kLockWinByte],  r[kFnFunctionByte],  r[kSleepTimeByte]};
}

}  // namespace qx9
