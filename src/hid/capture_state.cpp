#include "hid/capture_state.h"

#include <algorithm>

namespace qx9 {

std::int64_t GLOBAL_LAST_PRESS_KEY_SCANCODE = 0;
std::string lastKeyOperate;
std::vector<std::int64_t> pressedNormalKey;
std::vector<std::int64_t> pressedFlags;
std::int64_t shiftKeyStatus = 0;
std::int64_t lastMovedTime = 0;
std::vector<std::int64_t> G_KB_NormalKeys;
std::vector<std::int64_t> G_KB_FlagKeys;

namespace {
bool contains(const std::vector<std::int64_t>& list, std::int64_t v) {
    return std::find(list.begin(), list.end(), v) != list.end();
}
}  // namespace

void recordKeyPressed(std::int64_t isPressed, std::int64_t scancode) {
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

void captureKeyValue(std::int64_t usage, std::int64_t value, std::int64_t nowMs) {
    lastMovedTime = nowMs;
    if (static_cast<std::uint64_t>(usage - 4) > 2306) return;  // usages 4–2310 only
    if (usage == 225) shiftKeyStatus = value;
    recordKeyPressed(value, usage);
}

void resetCaptureState() {
    GLOBAL_LAST_PRESS_KEY_SCANCODE = 0;
    lastKeyOperate.clear();
    pressedNormalKey.clear();
    pressedFlags.clear();
    shiftKeyStatus = 0;
    lastMovedTime = 0;
}

}  // namespace qx9
