#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "protocol/system_function.h"

namespace qx9 {

// A block of the keyboard's memory that a stored change asks to be sent. The request names the
// block, not its contents: the sender builds it from the database when it sends it, so what
// the keyboard ends with is what the database holds then. Each is named after the transaction
// that carries it.
struct BlockRequest {
    enum Kind : std::uint8_t {
        kKeyMap,            // the key map of (profile, layer)
        kMacros,            // every macro
        kLightMode,         // the light record of (profile, the effect selected under `selection`)
        kUserLightMode,     // the per-key light mode
        kUserLightColours,  // the colours of one per-key set, then the per-key light mode
        kSystemFunctions,   // the switches, Fn mode and sleep time
    };
    Kind kind = kKeyMap;
    std::int64_t profile = 0;
    std::int64_t layer = 0;
    std::int64_t selection = 0;
    std::int64_t set = 0;
    // The four switches as the settings page shows them; none: as stored.
    std::optional<protocol::SystemSwitches> switches;
    // kLightMode: "Close Backlight" (mode 0 with its stored record) whatever effect is selected;
    // the keys go dark and nothing is stored.
    bool dark = false;

    // Whether `other` asks for the same block (whatever the switches): one send serves both.
    bool sameBlock(const BlockRequest& other) const;
    // "the key map", "the macros", …: what a message names when the block did not arrive.
    std::string what() const;
};

BlockRequest SendKeyMacroData(std::int64_t profile, std::int64_t fnlayer);
BlockRequest SaveMacroToKeyboard();
BlockRequest SendLightModeData(std::int64_t profile, std::int64_t selection);
// The backlight out without storing it: the light record of mode 0 of `profile`.
BlockRequest SendBacklightOff(std::int64_t profile);
BlockRequest SendUserLightModeData();
BlockRequest SendUserLightLedData(std::int64_t set);
BlockRequest SendSystemFunctionData(std::optional<protocol::SystemSwitches> switches = std::nullopt);

}  // namespace qx9
