#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qx9 {

// What the keystroke capture knows of the keys of every keyboard: the last key event and the
// keys held. Read on the main thread by the macro recorder, the key-combination capture and the
// per-key editor while they handle a key event; written only by the capture (and the recorder's
// reset of the last usage).
extern std::int64_t GLOBAL_LAST_PRESS_KEY_SCANCODE;  // HID usage of the last key event
extern std::string lastKeyOperate;                  // "down" or "up"
extern std::vector<std::int64_t> pressedNormalKey;  // ordinary keys held, in press order
extern std::vector<std::int64_t> pressedFlags;      // modifier keys held, in press order
extern std::int64_t shiftKeyStatus;                 // left Shift: 1 held, 0 released
extern std::int64_t lastMovedTime;                  // ms since 1970 of the last key event

// Which usages count as ordinary keys and which as modifiers; empty until the first keyboard
// connects, and until then presses leave the held lists alone.
extern std::vector<std::int64_t> G_KB_NormalKeys;
extern std::vector<std::int64_t> G_KB_FlagKeys;

// One key element reported by a capture source.
void recordKeyPressed(std::int64_t isPressed, std::int64_t scancode);

// The capture callback's entry point: stamps the time, keeps the left Shift state and passes
// usages 4–2310 on to recordKeyPressed. `nowMs` is the wall clock in ms since 1970.
void captureKeyValue(std::int64_t usage, std::int64_t value, std::int64_t nowMs);

// Empties the shared state (tests; the capture itself never does).
void resetCaptureState();

}  // namespace qx9
