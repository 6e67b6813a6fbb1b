#pragma once

#include <cstdint>
#include <string>

#include "ops/target.h"
#include "protocol/system_function.h"
#include "sender/blocks.h"
#include "store/config_keys.h"

namespace qx9::ops {

// The game-mode switches as the settings page shows them (and the system-function record sends).
using GameModeSwitches = protocol::SystemSwitches;

using ::qx9::kBlockAltF4;
using ::qx9::kBlockAltTab;
using ::qx9::kBlockWin;
using ::qx9::kFnFunction;
using ::qx9::kGameMode;
using ::qx9::kLanguage;
using ::qx9::kSettingsProfile;
using ::qx9::kSleepLight;

// Backlight sleep times, the values of "sleeplight".
inline constexpr std::int64_t kSleepTimeCount = 4;

enum class Block { kAltTab, kAltF4, kWin };
const char* blockKey(Block block);

// A setting of profile 1, written even when its row is missing (a reset of profile 1 deletes
// the rows of the settings).
bool storeSetting(DeviceSQLite& db, const char* key, const std::string& value);

// The stored language applied at start-up: the language to use and the row of the language
// box. A missing value means Simplified Chinese with the English row showing, and "2052" is
// written; any other unknown value leaves both as they are (returns false).
struct LanguageChoice {
    int language = 0;
    int row = 0;
};
bool applyStoredLanguage(DeviceSQLite& db, LanguageChoice& choice);
// The language the texts are in after start-up, read without writing anything.
int languageInUse(const DeviceSQLite& db);
// The user picked a language (1033, 2052 or 1028).
Outcome setLanguage(const Target& target, int language);

// Fn key as Fn (true) or as a default key; the system functions are sent with `shown`, the
// switches as the settings page shows them.
Outcome setFnMode(const Target& target, bool fnKey, const GameModeSwitches& shown);
// Game mode on or off; `shown` becomes the switches sent (on: with the stored blocks; off: all
// off).
Outcome setGameMode(const Target& target, bool on, GameModeSwitches& shown);
// One key block; `shown` holds the switches before the change and the ones sent after it.
Outcome setBlock(const Target& target, Block block, bool on, GameModeSwitches& shown);
// The stored backlight sleep time (0–3), −1 when none is stored or the value is damaged.
int storedSleepTime(const DeviceSQLite& db);
// Backlight sleep time 0–3, stored under profile 1 and sent with the system functions.
Outcome setSleepTime(const Target& target, std::int64_t value, const GameModeSwitches& shown);

// The key assignments of `profile` back to their defaults, and the profile selected again in the
// same transaction; then its key map is sent. Its selected effect is read into `lightMode`.
Outcome resetKeys(const Target& target, std::int64_t profile, std::int64_t& lightMode);
// Every table dropped and created again with the first-start data, then sent as at a first
// connection.
Outcome resetAll(const Target& target);

// Sends the switches as given, and the Fn mode and sleep time stored under profile 1.
Outcome sendSystemFunctions(const Target& target, const GameModeSwitches& switches);
// The switches as the settings page shows them after loading: all off unless game mode is on.
using ::qx9::storedSwitches;
using ::qx9::gameModeSwitches;  // game mode on with the three blocks as stored

}  // namespace qx9::ops
