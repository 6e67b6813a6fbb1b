#pragma once

#include <cstdint>

namespace qx9 {

// Linux input key codes (KEY_*) as HID usages of the Keyboard/Keypad page: the reverse of the
// kernel's translation of that page, so that a key read from an event device is reported with
// the usage the keyboard itself sent (KEY_A → 4, KEY_ESC → 41, KEY_LEFTCTRL → 224 …).
//
// Where the kernel gives several usages one key code, the key keeps its usual usage: KEY_BACKSLASH
// is 49 (not the non-US 50), KEY_DELETE is 76 (not Clear, 156). Key codes that no usage of the page
// produces give 0; among them KEY_FN, whose key has no usage on the Keyboard page.
int hidUsageFromLinuxKey(int code);

// The same for a native scan code of the window system (X11 and Wayland key codes are the
// evdev code + 8). 0 when unknown.
int hidUsageFromNativeScanCode(std::uint32_t scan);

}  // namespace qx9
