#include "sender/block_request.h"

namespace qx9 {

bool BlockRequest::sameBlock(const BlockRequest& other) const {
    if (kind != other.kind) return false;
    switch (kind) {
        case kKeyMap: return profile == other.profile && layer == other.layer;
        case kLightMode: return profile == other.profile && selection == other.selection;
        case kUserLightColours: return set == other.set;
        case kMacros:
        case kUserLightMode:
        case kSystemFunctions: return true;
    }
    return false;
}

std::string BlockRequest::what() const {
    switch (kind) {
        case kKeyMap: return "the key map";
        case kMacros: return "the macros";
        case kLightMode: return dark ? "the backlight off" : "the backlight effect";
        case kUserLightMode: return "the per-key lighting";
        case kUserLightColours: return "the per-key colours";
        case kSystemFunctions: return "the system functions";
    }
    return "a block";
}

BlockRequest SendKeyMacroData(std::int64_t profile, std::int64_t fnlayer) {
    return {.kind = BlockRequest::kKeyMap, .profile = profile, .layer = fnlayer};
}
BlockRequest SaveMacroToKeyboard() { return {.kind = BlockRequest::kMacros}; }
BlockRequest SendLightModeData(std::int64_t profile, std::int64_t selection) {
    return {.kind = BlockRequest::kLightMode, .profile = profile, .selection = selection};
}
BlockRequest SendBacklightOff(std::int64_t profile) {
    return {.kind = BlockRequest::kLightMode, .profile = profile, .selection = profile, .dark = true};
}
BlockRequest SendUserLightModeData() { return {.kind = BlockRequest::kUserLightMode}; }
BlockRequest SendUserLightLedData(std::int64_t set) { return {.kind = BlockRequest::kUserLightColours, .set = set}; }
BlockRequest SendSystemFunctionData(std::optional<protocol::SystemSwitches> switches) {
    return {.kind = BlockRequest::kSystemFunctions, .switches = switches};
}

}  // namespace qx9
