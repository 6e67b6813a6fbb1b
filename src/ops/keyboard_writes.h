#pragma once

#include <cstdint>

#include "ops/target.h"
#include "protocol/system_function.h"

namespace qx9::ops {

// The keyboard writes: each reads from the store what its block holds and runs its transaction
// (nothing is sent without a keyboard). A change is stored first, then the whole block that
// holds it is sent.

// The key-mapping table of (profile, layer), with the macros' positions.
void sendKeyMap(const Target& target, std::int64_t profile, std::int64_t layer);
// Every stored macro. `listedMacroCount` is the number of macros the capacity check counts
// (the macro page's rows; the store's count elsewhere).
void sendMacros(const Target& target, std::int64_t listedMacroCount);
void sendMacros(const Target& target);
// The light record of (profile, mode).
void sendLightMode(const Target& target, std::int64_t profile, std::int64_t mode);
void sendUserLightMode(const Target& target);
// The key colours of one per-key set, then the per-key mode.
void sendUserLightColours(const Target& target, std::int64_t setId);
// The switches as given, and the Fn mode and sleep time stored under profile 1.
void sendSystemFunctions(const Target& target, const protocol::SystemSwitches& switches);

// The switches as the settings page shows them after loading: all off unless game mode is on.
protocol::SystemSwitches storedSwitches(const DeviceSQLite& db);
// Game mode on with the three blocks as stored.
protocol::SystemSwitches gameModeSwitches(const DeviceSQLite& db);

// What the first connection sends: the first per-key set's colours with the per-key mode (when
// a set exists), the system functions and profile 1's key map.
void sendWholeConfiguration(const Target& target);

}  // namespace qx9::ops
