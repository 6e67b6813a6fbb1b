#include "protocol/key_mapping.h"

#include <iterator>
#include <optional>

#include "common/bytes.h"
#include "common/fatal.h"
#include "layout/key_maps.h"
#include "protocol/command_frame.h"

namespace qx9::protocol {

namespace {

// Record kinds (byte 0 of a slot). The bytes after it:
//   mouse        1 buttons (1) or wheel (3), 2 button mask or wheel step
//   key          1 modifier bits, 2 key usage
//   consumer     1–2 the usage, low byte first
//   disabled     1 always 3
//   macro        1 the macro's position, 2 play mode, 3 play count
//   combination  1–3 three keys, modifiers as their bits
enum : std::uint8_t {
    kKindMouse = 1,
    kKindKey = 2,
    kKindConsumer = 3,
    kKindDisabled = 5,
    kKindMacro = 6,
    kKindCombination = 7,
};

constexpr std::uint8_t kDisabledRecordValue = 3;

constexpr std::uint8_t kMouseButtons = 1;
constexpr std::uint8_t kMouseWheel = 3;
constexpr std::uint8_t kMouseDoubleClick = 0x03;  // the mask the keyboard takes for a double click
constexpr std::uint8_t kWheelUp = 0x01;
constexpr std::uint8_t kWheelDown = 0xFF;

// Consumer page usages.
enum ConsumerUsage : std::uint16_t {
    kUsageNextTrack = 0x00B5,
    kUsagePreviousTrack = 0x00B6,
    kUsageStop = 0x00B7,
    kUsagePlayPause = 0x00CD,
    kUsageMute = 0x00E2,
    kUsageVolumeUp = 0x00E9,
    kUsageVolumeDown = 0x00EA,
    kUsageMediaPlayer = 0x0183,
    kUsageEmail = 0x018A,
    kUsageCalculator = 0x0192,
    kUsageMyComputer = 0x0194,
    kUsageWebSearch = 0x0221,
    kUsageWebHome = 0x0223,
    kUsageWebBack = 0x0224,
    kUsageWebForward = 0x0225,
    kUsageWebStop = 0x0226,
    kUsageWebRefresh = 0x0227,
    kUsageFavorites = 0x022A,
};

// Keyboard page usages of the macOS shortcuts.
enum : std::uint8_t {
    kUsageKeyC = 0x06,
    kUsageKeyV = 0x19,
    kUsageKeyX = 0x1B,
    kUsageScrollLock = 0x47,  // backlight dimmer on a Mac (F14)
    kUsagePause = 0x48,       // backlight brighter on a Mac (F15)
    kUsageUpArrow = 0x52,
};
constexpr std::int64_t kUsageLeftGui = 0xE3;
constexpr std::int64_t kUsageRightControl = 0xE4;

// Usages of the Consumer page for the application codes 500–517 (PC, Cal, Email, Multimedia,
// Play/Pause, Stop, Pre, Next, Vol Up, Vol Down, Vol Mute, Web Home, Web Refresh, Web Stop,
// Web Backward, Web Foreward, Favorites, Web Search).
constexpr std::uint16_t kConsumerUsages[] = {
    kUsageMyComputer, kUsageCalculator,    kUsageEmail,      kUsageMediaPlayer, kUsagePlayPause,
    kUsageStop,       kUsagePreviousTrack, kUsageNextTrack,  kUsageVolumeUp,    kUsageVolumeDown,
    kUsageMute,       kUsageWebHome,       kUsageWebRefresh, kUsageWebStop,     kUsageWebBack,
    kUsageWebForward, kUsageFavorites,     kUsageWebSearch,
};
static_assert(std::size(kConsumerUsages) == kApplicationCodeCount);

constexpr bool isModifier(std::int64_t code) {
    return code >= kFirstModifierCode && code <= kLastModifierCode;
}

constexpr std::uint8_t modifierBit(std::int64_t code) {
    return static_cast<std::uint8_t>(1u << (code - kFirstModifierCode));
}

struct Pair {
    std::uint8_t first, second;
};

// Mouse functions 1–8: (buttons or wheel, mask or step).
std::optional<Pair> mouseRecord(std::int64_t value) {
    switch (value) {
        case 1: return Pair{kMouseButtons, kMouseLeftButton};    // left click
        case 2: return Pair{kMouseButtons, kMouseRightButton};   // right click
        case 3: return Pair{kMouseButtons, kMouseMiddleButton};  // middle click
        case 4: return Pair{kMouseButtons, kMouseDoubleClick};   // double click
        case 5: return Pair{kMouseWheel, kWheelUp};              // scroll up
        case 6: return Pair{kMouseWheel, kWheelDown};            // scroll down
        case 7: return Pair{kMouseButtons, kMouseButton4};
        case 8: return Pair{kMouseButtons, kMouseButton5};
        default: return std::nullopt;
    }
}

// Multimedia functions 1–7 as consumer usages (their low byte: all of them are below 0x100).
std::uint8_t multimediaUsage(std::int64_t value) {
    switch (value) {
        case 1: return kUsagePlayPause;
        case 2: return kUsageStop;
        case 3: return kUsagePreviousTrack;
        case 4: return kUsageNextTrack;
        case 5: return kUsageVolumeUp;
        case 6: return kUsageVolumeDown;
        case 7: return kUsageMute;
        default: return 0;
    }
}

// macOS shortcuts 1–6 as (modifier bits, key usage).
std::optional<Pair> macShortcut(std::int64_t value) {
    constexpr std::uint8_t kCommand = modifierBit(kUsageLeftGui);
    switch (value) {
        case 1: return Pair{0, kUsagePause};       // backlight brighter
        case 2: return Pair{0, kUsageScrollLock};  // backlight dimmer
        case 3: return Pair{modifierBit(kUsageRightControl), kUsageUpArrow};  // Mission Control
        case 4: return Pair{kCommand, kUsageKeyC};  // copy
        case 5: return Pair{kCommand, kUsageKeyV};  // paste
        case 6: return Pair{kCommand, kUsageKeyX};  // cut
        default: return std::nullopt;
    }
}

}  // namespace

std::uint8_t modifierConversion(std::int64_t code) {
    if (isModifier(code)) return modifierBit(code);
    return checkedByte(code, "key code");
}

std::uint16_t consumerUsage(std::int64_t code) {
    if (code < kFirstApplicationCode || code - kFirstApplicationCode >= kApplicationCodeCount)
        return 0;
    return kConsumerUsages[code - kFirstApplicationCode];
}

namespace {

void writeKeyRecord(std::uint8_t* slot, const ProfileKey& key,
                    const std::vector<MacroInfo>& macros) {
    // Each kind writes only the bytes it names; a later record for the same key therefore
    // overwrites those bytes of an earlier one and keeps the others.
    switch (key.macroType) {
        case kMacroTypeDisabled:
            slot[0] = kKindDisabled;
            slot[1] = kDisabledRecordValue;
            break;
        case kMacroTypeKey: {
            const std::int64_t v = key.macroValue;
            const std::int64_t m = key.macro2Value;
            slot[0] = kKindKey;
            if (v >= kFirstApplicationCode) {
                const std::uint16_t usage = consumerUsage(v);
                slot[0] = kKindConsumer;
                slot[1] = static_cast<std::uint8_t>(usage & 0xFF);
                slot[2] = static_cast<std::uint8_t>(usage >> 8);
            } else {
                slot[1] = m == 0 ? 0 : modifierConversion(m);
                slot[2] = v == 0 ? 0 : modifierConversion(v);
                if (m == 0 && isModifier(v)) {
                    // A lone modifier goes as its bit, without a key.
                    slot[1] = modifierBit(v);
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

KeyMappingBlock buildKeyMappingBlock(const KeyMappingInput& input) {
    KeyMappingBlock block{};
    for (const ProfileKey& key : input.keys) {
        const KeyCodeEntry& entry = G_KB_SuperKeyCodeMap.at(static_cast<int>(key.keyValue));
        const std::size_t o = kKeyRecordSize * static_cast<std::size_t>(entry.key_index);
        if (o + kKeyRecordSize > block.size())
            fatalError("key index outside the key-mapping block");
        writeKeyRecord(block.data() + o, key, input.macros);
    }
    putTrailer(block, kKeyMappingTrailerOffset);
    return block;
}

Transaction keyMappingTransaction(std::int64_t fnlayer, const KeyMappingInput& input) {
    Transaction transaction;
    CommandFrame frame(transaction);
    frame.send(kOpen);
    frame.send(fnlayer == 0 ? kKeyMappingHeader : kFnKeyMappingHeader, kKeyMappingReports);
    const KeyMappingBlock block = buildKeyMappingBlock(input);
    frame.sendDataBlock(block, kKeyMappingReports);
    frame.send(kEnd, kNoDataReports);
    return transaction;
}

}  // namespace qx9::protocol
