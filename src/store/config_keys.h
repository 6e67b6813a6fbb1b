#pragma once

#include <cstdint>

namespace qx9 {

// The application-wide settings live under profile 1 whatever profile is current: the keyboard
// has one set of system functions, the application one language.
inline constexpr std::int64_t kSettingsProfile = 1;

// Keys of the configuration values of profile 1.
inline constexpr const char* kLanguage = "language";
inline constexpr const char* kGameMode = "gamemode";
inline constexpr const char* kBlockAltTab = "disable_alttab";
inline constexpr const char* kBlockAltF4 = "disable_altf4";
inline constexpr const char* kBlockWin = "disable_win";
inline constexpr const char* kFnFunction = "fnfunction";
inline constexpr const char* kSleepLight = "sleeplight";

// What the keyboard holds beyond its blocks: the profile whose key map it was last sent (none
// stored: profile 1, as every connection sends), and how many macro deletions moved the
// macros' positions since a macro download last took the key map along. Keys name macros by
// position, so the download after a deletion sends that profile's key map after the macros.
inline constexpr const char* kKeyboardProfile = "keyboard_profile";
inline constexpr const char* kMacroDeletions = "macro_deletions";

}  // namespace qx9
