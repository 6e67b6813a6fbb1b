#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ops/target.h"
#include "store/records.h"

namespace qx9::ops {

// Play modes of a key bound to a macro (`macro2Value`).
enum MacroPlayMode : std::int64_t { kPlayOnce = 0, kPlayRepeat = 1, kPlayUntilPressedAgain = 2 };
inline constexpr std::int64_t kMaxPlayCount = 255;

// One entry of the custom key dialog's choice lists: the text id and the value stored.
struct FunctionChoice {
    int textId = 0;
    std::int64_t value = 0;
};
// The function types the dialog offers, in its order.
const std::vector<FunctionChoice>& functionTypeChoices();
// The functions of a mouse, multimedia or macOS-shortcut type (values 1…n), empty for others.
const std::vector<FunctionChoice>& functionChoices(std::int64_t macroType);
const std::vector<FunctionChoice>& playModeChoices();

// The functions a key can be given, as stored (type, values and the text the key shows).
ProfileKey defaultFunction();
ProfileKey disabledFunction();
// A key of the palette (a key code or a consumer function 500–517); none for another code.
std::optional<ProfileKey> paletteFunction(std::int64_t code);
// Captured keys, modifiers first: the first two count, the second being the key and the first
// its modifier; the text names them all. None without keys or for a key the QX9 lacks.
std::optional<ProfileKey> capturedKeysFunction(const std::vector<std::int64_t>& keys);
ProfileKey macroFunction(const MacroInfo& macro, std::int64_t playMode, std::int64_t playCount);
// The n-th (0-based) function of a mouse, multimedia or macOS-shortcut type; none when absent.
std::optional<ProfileKey> listFunction(std::int64_t macroType, std::size_t index);

// Gives `key` of (profile, layer) the function: stored (a key made Fn is Fn on both layers, in
// one transaction), then the profile's base-layer key map is sent.
Outcome assignKey(const Target& target, std::int64_t profile, std::int64_t layer, std::int64_t key,
                  ProfileKey function);

// Sends the key map of (profile, layer).
Outcome sendKeyMap(const Target& target, std::int64_t profile, std::int64_t layer);
// Records that the keyboard is sent the key map of `profile` (inside the change's transaction).
bool storeKeyboardProfile(DeviceSQLite& db, std::int64_t profile);

}  // namespace qx9::ops
