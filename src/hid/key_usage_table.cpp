#include "hid/key_usage_table.h"

#include <linux/input-event-codes.h>

#include <array>

namespace qx9 {

namespace {

struct KeyUsage {
    int key;    // Linux KEY_* code
    int usage;  // Keyboard/Keypad page usage
};

// In the order of the Keyboard/Keypad page.
constexpr KeyUsage kKeyUsages[] = {
    // Letters
    {KEY_A, 0x04}, {KEY_B, 0x05}, {KEY_C, 0x06}, {KEY_D, 0x07}, {KEY_E, 0x08}, {KEY_F, 0x09},
    {KEY_G, 0x0A}, {KEY_H, 0x0B}, {KEY_I, 0x0C}, {KEY_J, 0x0D}, {KEY_K, 0x0E}, {KEY_L, 0x0F},
    {KEY_M, 0x10}, {KEY_N, 0x11}, {KEY_O, 0x12}, {KEY_P, 0x13}, {KEY_Q, 0x14}, {KEY_R, 0x15},
    {KEY_S, 0x16}, {KEY_T, 0x17}, {KEY_U, 0x18}, {KEY_V, 0x19}, {KEY_W, 0x1A}, {KEY_X, 0x1B},
    {KEY_Y, 0x1C}, {KEY_Z, 0x1D},
    // Digits 1 … 9, 0
    {KEY_1, 0x1E}, {KEY_2, 0x1F}, {KEY_3, 0x20}, {KEY_4, 0x21}, {KEY_5, 0x22}, {KEY_6, 0x23},
    {KEY_7, 0x24}, {KEY_8, 0x25}, {KEY_9, 0x26}, {KEY_0, 0x27},
    {KEY_ENTER, 0x28},       // Return (Enter)
    {KEY_ESC, 0x29},         // Escape
    {KEY_BACKSPACE, 0x2A},   // Delete (Backspace)
    {KEY_TAB, 0x2B},
    {KEY_SPACE, 0x2C},
    {KEY_MINUS, 0x2D},       // - and _
    {KEY_EQUAL, 0x2E},       // = and +
    {KEY_LEFTBRACE, 0x2F},   // [ and {
    {KEY_RIGHTBRACE, 0x30},  // ] and }
    {KEY_BACKSLASH, 0x31},   // \ and |  (the non-US # and ~, 0x32, arrives as this key too)
    {KEY_SEMICOLON, 0x33},
    {KEY_APOSTROPHE, 0x34},
    {KEY_GRAVE, 0x35},       // ` and ~
    {KEY_COMMA, 0x36},
    {KEY_DOT, 0x37},
    {KEY_SLASH, 0x38},
    {KEY_CAPSLOCK, 0x39},
    {KEY_F1, 0x3A}, {KEY_F2, 0x3B}, {KEY_F3, 0x3C}, {KEY_F4, 0x3D}, {KEY_F5, 0x3E},
    {KEY_F6, 0x3F}, {KEY_F7, 0x40}, {KEY_F8, 0x41}, {KEY_F9, 0x42}, {KEY_F10, 0x43},
    {KEY_F11, 0x44}, {KEY_F12, 0x45},
    {KEY_SYSRQ, 0x46},       // Print Screen
    {KEY_SCROLLLOCK, 0x47},
    {KEY_PAUSE, 0x48},
    {KEY_INSERT, 0x49},
    {KEY_HOME, 0x4A},
    {KEY_PAGEUP, 0x4B},
    {KEY_DELETE, 0x4C},      // Delete Forward
    {KEY_END, 0x4D},
    {KEY_PAGEDOWN, 0x4E},
    {KEY_RIGHT, 0x4F},
    {KEY_LEFT, 0x50},
    {KEY_DOWN, 0x51},
    {KEY_UP, 0x52},
    // Keypad
    {KEY_NUMLOCK, 0x53},     // Num Lock and Clear
    {KEY_KPSLASH, 0x54},
    {KEY_KPASTERISK, 0x55},
    {KEY_KPMINUS, 0x56},
    {KEY_KPPLUS, 0x57},
    {KEY_KPENTER, 0x58},
    {KEY_KP1, 0x59}, {KEY_KP2, 0x5A}, {KEY_KP3, 0x5B}, {KEY_KP4, 0x5C}, {KEY_KP5, 0x5D},
    {KEY_KP6, 0x5E}, {KEY_KP7, 0x5F}, {KEY_KP8, 0x60}, {KEY_KP9, 0x61}, {KEY_KP0, 0x62},
    {KEY_KPDOT, 0x63},
    {KEY_102ND, 0x64},       // Non-US \ and |
    {KEY_COMPOSE, 0x65},     // Application (the menu key of PC keyboards)
    {KEY_POWER, 0x66},
    {KEY_KPEQUAL, 0x67},
    {KEY_F13, 0x68}, {KEY_F14, 0x69}, {KEY_F15, 0x6A}, {KEY_F16, 0x6B}, {KEY_F17, 0x6C},
    {KEY_F18, 0x6D}, {KEY_F19, 0x6E}, {KEY_F20, 0x6F}, {KEY_F21, 0x70}, {KEY_F22, 0x71},
    {KEY_F23, 0x72}, {KEY_F24, 0x73},
    {KEY_OPEN, 0x74},        // Execute
    {KEY_HELP, 0x75},
    {KEY_PROPS, 0x76},       // Menu
    {KEY_FRONT, 0x77},       // Select
    {KEY_STOP, 0x78},
    {KEY_AGAIN, 0x79},
    {KEY_UNDO, 0x7A},
    {KEY_CUT, 0x7B},
    {KEY_COPY, 0x7C},
    {KEY_PASTE, 0x7D},
    {KEY_FIND, 0x7E},
    {KEY_MUTE, 0x7F},
    {KEY_VOLUMEUP, 0x80},
    {KEY_VOLUMEDOWN, 0x81},
    {KEY_KPCOMMA, 0x85},
    // International and language keys
    {KEY_RO, 0x87},                 // International1
    {KEY_KATAKANAHIRAGANA, 0x88},   // International2
    {KEY_YEN, 0x89},                // International3
    {KEY_HENKAN, 0x8A},             // International4
    {KEY_MUHENKAN, 0x8B},           // International5
    {KEY_KPJPCOMMA, 0x8C},          // International6
    {KEY_HANGEUL, 0x90},            // LANG1
    {KEY_HANJA, 0x91},              // LANG2
    {KEY_KATAKANA, 0x92},           // LANG3
    {KEY_HIRAGANA, 0x93},           // LANG4
    {KEY_ZENKAKUHANKAKU, 0x94},     // LANG5
    {KEY_KPLEFTPAREN, 0xB6},
    {KEY_KPRIGHTPAREN, 0xB7},
    // Modifiers
    {KEY_LEFTCTRL, 0xE0},
    {KEY_LEFTSHIFT, 0xE1},
    {KEY_LEFTALT, 0xE2},
    {KEY_LEFTMETA, 0xE3},
    {KEY_RIGHTCTRL, 0xE4},
    {KEY_RIGHTSHIFT, 0xE5},
    {KEY_RIGHTALT, 0xE6},
    {KEY_RIGHTMETA, 0xE7},
};

constexpr std::array<std::uint8_t, KEY_CNT> buildTable() {
    std::array<std::uint8_t, KEY_CNT> table{};
    for (const KeyUsage& k : kKeyUsages) {
        auto& slot = table[static_cast<std::size_t>(k.key)];
        if (slot != 0) throw "a key code is listed twice";  // stops the build
        slot = static_cast<std::uint8_t>(k.usage);
    }
    return table;
}

constexpr std::array<std::uint8_t, KEY_CNT> kTable = buildTable();

// Window-system key codes start 8 above the kernel's.
constexpr std::uint32_t kNativeScanCodeOffset = 8;

}  // namespace

int hidUsageFromLinuxKey(int code) {
    if (code < 0 || code >= KEY_CNT) return 0;
    return kTable[static_cast<std::size_t>(code)];
}

int hidUsageFromNativeScanCode(std::uint32_t scan) {
    if (scan < kNativeScanCodeOffset || scan - kNativeScanCodeOffset >= KEY_CNT) return 0;
    return hidUsageFromLinuxKey(static_cast<int>(scan - kNativeScanCodeOffset));
}

}  // namespace qx9
