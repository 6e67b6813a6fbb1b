#include "protocol/key_mapping.h"

#include <optional>

#include "common/bytes.h"
#include "common/fatal.h"
#include "layout/key_maps.h"
#include "protocol/command_frame.h"

namespace qx9::protocol {

namespace {

// Record kinds (byte 0 of a slot).
enum : std::uint8_t {
    kKindMouse = 1,
    kKindKey = 2,
    kKindConsumer = 3,
    kKindDisabled = 5,
    kKindMacro = 6,
    kKindCombination = 7,
};

// Usages of the Consumer page for the application codes 500–517 (PC, Cal, Email, Multimedia,
// Play/Pause, Stop, Pre, Next, Vol Up, Vol Down, Vol Mute, Web Home, Web Refresh, Web Stop,
// Web Backward, Web Foreward, Favorites, Web Search).
constexpr std::uint16_t kConsumerUsages[18] = {
    0x0194, 0x0192, 0x018A, 0x0183, 0x00CD, 0x00B7, 0x00B6, 0x00B5, 0x00E9,
    0x00EA, 0x00E2, 0x0223, 0x0227, 0x0226, 0x0224, 0x0225, 0x022A, 0x0221,
};

struct Pair {
    std::uint8_t first, second;
};

// Mouse functions 1–8: (buttons or wheel, mask or step). A double click goes as mask 3.
std::optional<Pair> mouseRecord(std::int64_t value) {
    switch (value) {
        case 1: return Pair{1, 0x01};  // left click
        case 2: return Pair{1, 0x02};  // right click
        case 3: return Pair{1, 0x04};  // middle click
        case 4: return Pair{1, 0x03};  // double click
        case 5: return Pair{3, 0x01};  // scroll up
        case 6: return Pair{3, 0xFF};  // scroll down
        case 7: return Pair{1, 0x08};  // button 4
        case 8: return Pair{1, 0x10};  // button 5
        default: return std::nullopt;
    }
}

// Multimedia functions 1–7 as consumer usages (low byte).
std::uint8_t multimediaUsage(std::int64_t value) {
    switch (value) {
        case 1: return 0xCD;  // play/pause
        case 2: return 0xB7;  // stop
        case 3: return 0xB6;  // previous
        case 4: return 0xB5;  // next
        case 5: return 0xE9;  // volume up
        case 6: return 0xEA;  // volume down
        case 7: return 0xE2;  // mute
        default: return 0;
    }
}

// macOS shortcuts 1–6 as (modifier bits, key usage).
std::optional<Pair> macShortcut(std::int64_t value) {
    switch (value) {
        case 1: return Pair{0x00, 0x48};  // backlight brighter
        case 2: return Pair{0x00, 0x47};  // backlight dimmer
        case 3: return Pair{0x10, 0x52};  // Mission Control: right control + up arrow
        case 4: return Pair{0x08, 0x06};  // copy: command + C
        case 5: return Pair{0x08, 0x19};  // paste: command + V
        case 6: return Pair{0x08, 0x1B};  // cut: command + X
        default: return std::nullopt;
    }
}

bool isModifier(std::int64_t code) { return code >= 224 && code <= 231; }

}  // namespace

std::uint8_t modifierConversion(std::int64_t code) {
    if (isModifier(code)) return static_cast<std::uint8_t>(1u << (code - 224));
    return checkedByte(code, "key code");
}

std::uint16_t consumerUsage(std::int64_t code) {
    if (code < 500 || code - 500 >= 18) return 0;
    return kConsumerUsages[code - 500];
}

namespace {

void writeKeyRecord(std::uint8_t* slot, const ProfileKey& key,
                    const std::vector<MacroInfo>& macros) {
    // Each kind writes only the bytes it names; a later record for the same key therefore
    // overwrites those bytes of an earlier one and keeps the others.
    switch (key.macroType) {
        case kMacroTypeDisabled:
            slot[0] = kKindDisabled;
            slot[1] = 3;
            break;
        case kMacroTypeKey: {
            const std::int64_t v = key.macroValue;
            const std::int64_t m = key.macro2Value;
            slot[0] = kKindKey;
            if (v >= 500) {
                const std::uint16_t usage = consumerUsage(v);
                slot[0] = kKindConsumer;
                slot[1] = static_cast<std::uint8_t>(usage & 0xFF);
                slot[2] = static_cast<std::uint8_t>(usage >> 8);
            } else {
                slot[1] = m == 0 ? 0 : modifierConversion(m);
                slot[2] = v == 0 ? 0 : modifierConversion(v);
                if (m == 0 && isModifier(v)) {
                    // A lone modifier goes as its bit, without a key.
                    slot[1] = static_cast<std::uint8_t>(1u << (v - 224));
                    slot[2] = 0;
                }
            }
            break;
        }
        case kMacroTypeMacro:
            // A binding to a macro that no longer exists leaves the record as it is.
            for (std::size_t pos = 0; pos < macros.size(); ++pos) {
                if (macros[pos].macroId != key.macroValue) continue;
                slot[0] = kKindMacro;
                slot[1] = checkedByte(static_cast<std::int64_t>(pos), "macro position");
                slot[2] = checkedByte(key.macro2Value, "macro play mode");
                slot[3] = checkedByte(key.macro3Value, "macro play count");
                break;
            }
            break;
        case kMacroTypeMouse:
            slot[0] = kKindMouse;
            if (const auto p = mouseRecord(key.macroValue)) {
                slot[1] = p->first;
                slot[2] = p->second;
            }
            break;
        case kMacroTypeMultimedia:
            slot[0] = kKindConsumer;
            if (const std::uint8_t usage = multimediaUsage(key.macroValue)) slot[1] = usage;
            slot[2] = 0;
            break;
        case kMacroTypeMacShortcut:
            slot[0] = kKindKey;
            if (const auto p = macShortcut(key.macroValue)) {
                slot[1] = p->first;
                slot[2] = p->second;
            }
            break;
        case kMacroTypeCombination:
            slot[0] = kKindCombination;
            slot[1] = modifierConversion(key.macroValue);
            slot[2] = modifierConversion(key.macro2Value);
            slot[3] = modifierConversion(key.macro3Value);
            break;
        default:
            break;  // default function and unknown types: the key keeps its own function
    }
}

}  // namespace

std::array<std::uint8_t, 4> encodeKeyRecord(const ProfileKey& key,
                                            const std::vector<MacroInfo>& macros) {
    std::array<std::uint8_t, 4> record{};
    writeKeyRecord(record.data(), key, macros);
    return record;
}

KeyMappingBlock buildKeyMappingBlock(const KeyMappingInput& input) {
    KeyMappingBlock block{};
    for (const ProfileKey& key : input.keys) {
        const KeyCodeEntry& entry = G_KB_SuperKeyCodeMap.at(static_cast<int>(key.keyValue));
        const std::size_t o = 4 * static_cast<std::size_t>(entry.key_index);
        if (o + 4 > block.size()) fatalError("key index outside the key-mapping block");
        writeKeyRecord(block.data() + o, key, input.macros);
    }
    block[574] = kTrailer0;
    block[575] = kTrailer1;
    return block;
}

void SendKeyMacroData(DeviceComm* comm, std::int64_t fnlayer, const KeyMappingInput& input) {
    CommandFrame frame(comm);
    frame.send(kOpen);
    frame.send(fnlayer == 0 ? kKeyMappingHeader : kFnKeyMappingHeader, kKeyMappingReports);
    const KeyMappingBlock block = buildKeyMappingBlock(input);
    sendDataBlock(comm, block, kKeyMappingReports);
    frame.send(kEnd, 0);
}

void setKeyMacroData(DeviceComm* comm, std::int64_t fnlayerId, const KeyMappingInput& input) {
    SendKeyMacroData(comm, fnlayerId, input);
}

}  // namespace qx9::protocol
