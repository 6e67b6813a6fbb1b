#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "layout/key_maps.h"

namespace qx9 {

// What the keystroke capture knows of the keys of every keyboard: the last key event and the
// keys held. One object, owned by the session and handed to the capture sources that write it
// and to the macro recorder, the key-combination capture and the per-key editor that read it
// while they handle a key event. Main thread only.
struct CaptureState {
    std::int64_t GLOBAL_LAST_PRESS_KEY_SCANCODE = 0;  // HID usage of the last key event
    std::string lastKeyOperate;                       // "down" or "up"
    std::vector<std::int64_t> pressedNormalKey;       // ordinary keys held, in press order
    std::vector<std::int64_t> pressedFlags;           // modifier keys held, in press order
    std::int64_t shiftKeyStatus = 0;                  // left Shift: 1 held, 0 released
    std::int64_t lastMovedTime = 0;                   // ms since 1970 of the last key event

    // Which usages count as ordinary keys and which as modifiers; empty until the first keyboard
    // connects, and until then presses leave the held lists alone.
    std::vector<std::int64_t> G_KB_NormalKeys;
    std::vector<std::int64_t> G_KB_FlagKeys;

    // The key classes from a name map: keys with a key type are modifiers.
    void setKeyClasses(const KeyNameMap& names);

    // One key element reported by a capture source.
    void recordKeyPressed(std::int64_t isPressed, std::int64_t scancode);

    // The capture callback's entry point: stamps the time, keeps the left Shift state and passes
    // usages 4–2310 on to recordKeyPressed. `nowMs` is the wall clock in ms since 1970.
    void captureKeyValue(std::int64_t usage, std::int64_t value, std::int64_t nowMs);

    // Forgets the last key event and the held keys (the key classes stay).
    void reset();
};

}  // namespace qx9
