#include "hid/capture_state.h"

#include <algorithm>

#include "layout/key_maps.h"

namespace qx9 {

namespace {

constexpr std::int64_t kFirstUsage = 4;
constexpr std::int64_t kLastUsage = 2310;
constexpr std::int64_t kLeftShiftUsage = 225;

bool contains(const std::vector<std::int64_t>& list, std::int64_t v) {
    return std::find(list.begin(), list.end(), v) != list.end();
}

}  // namespace

void CaptureState::setKeyClasses(const KeyNameMap& names) {
    G_KB_FlagKeys.clear();
    G_KB_NormalKeys.clear();
    for (const KeyNameEntry& e : names.entries()) (e.key_type ? G_KB_FlagKeys : G_KB_NormalKeys).push_back(e.key_code);
}

void CaptureState::recordKeyPressed(std::int64_t isPressed, std::int64_t scancode) {
    GLOBAL_LAST_PRESS_KEY_SCANCODE = scancode;
    if (isPressed == 0) {
        lastKeyOperate = "up";
        std::erase(pressedNormalKey, scancode);
        std::erase(pressedFlags, scancode);
    } else if (isPressed == 1) {
        lastKeyOperate = "down";
        // A repeated press report adds the key again; its release removes every copy.
        if (contains(G_KB_NormalKeys, scancode)) {
            pressedNormalKey.push_back(scancode);
        } else if (contains(G_KB_FlagKeys, scancode)) {
            pressedFlags.push_back(scancode);
        }
    }
}

void CaptureState::captureKeyValue(std::int64_t usage, std::int64_t value, std::int64_t nowMs) {
    lastMovedTime = nowMs;
    if (usage < kFirstUsage || usage > kLastUsage) return;
    if (usage == kLeftShiftUsage) shiftKeyStatus = value;
    recordKeyPressed(value, usage);
}

void CaptureState::reset() {
    GLOBAL_LAST_PRESS_KEY_SCANCODE = 0;
    lastKeyOperate.clear();
    pressedNormalKey.clear();
    pressedFlags.clear();
    shiftKeyStatus = 0;
    lastMovedTime = 0;
}

}  // namespace qx9
