#include <gtest/gtest.h>
#include <linux/input-event-codes.h>

#include <cstdint>
#include <map>
#include <string>

#include "hid/key_usage_table.h"
#include "layout/key_maps.h"

namespace qx9 {
namespace {

// The kernel's name for each key of the 108-key code map, by the map's key name. The map follows a
// Mac keyboard: "leftAlt" is Option (226), "leftWin" Command (227).
const std::map<std::string, int> kLinuxKeyOfMapKey = {
    {"escape", KEY_ESC}, {"f1", KEY_F1}, {"f2", KEY_F2}, {"f3", KEY_F3}, {"f4", KEY_F4}, {"f5", KEY_F5},
    {"f6", KEY_F6}, {"f7", KEY_F7}, {"f8", KEY_F8}, {"f9", KEY_F9}, {"f10", KEY_F10}, {"f11", KEY_F11},
    {"f12", KEY_F12}, {"backtick", KEY_GRAVE}, {"i1", KEY_1}, {"i2", KEY_2}, {"i3", KEY_3}, {"i4", KEY_4},
    {"i5", KEY_5}, {"i6", KEY_6}, {"i7", KEY_7}, {"i8", KEY_8}, {"i9", KEY_9}, {"i0", KEY_0},
    {"minus", KEY_MINUS}, {"equal", KEY_EQUAL}, {"backspace", KEY_BACKSPACE}, {"tab", KEY_TAB},
    {"q", KEY_Q}, {"w", KEY_W}, {"e", KEY_E}, {"r", KEY_R}, {"t", KEY_T}, {"y", KEY_Y}, {"u", KEY_U},
    {"i", KEY_I}, {"o", KEY_O}, {"p", KEY_P}, {"leftBracket", KEY_LEFTBRACE}, {"rightBracket", KEY_RIGHTBRACE},
    {"backslash", KEY_BACKSLASH}, {"delete", KEY_DELETE}, {"capsLock", KEY_CAPSLOCK}, {"a", KEY_A},
    {"s", KEY_S}, {"d", KEY_D}, {"f", KEY_F}, {"g", KEY_G}, {"h", KEY_H}, {"j", KEY_J}, {"k", KEY_K},
    {"l", KEY_L}, {"semicolon", KEY_SEMICOLON}, {"quote", KEY_APOSTROPHE}, {"enter", KEY_ENTER},
    {"pageUp", KEY_PAGEUP}, {"leftShift", KEY_LEFTSHIFT}, {"z", KEY_Z}, {"x", KEY_X}, {"c", KEY_C},
    {"v", KEY_V}, {"b", KEY_B}, {"n", KEY_N}, {"m", KEY_M}, {"comma", KEY_COMMA}, {"period", KEY_DOT},
    {"slash", KEY_SLASH}, {"rightShift", KEY_RIGHTSHIFT}, {"upArrow", KEY_UP}, {"pageDown", KEY_PAGEDOWN},
    {"leftControl", KEY_LEFTCTRL}, {"leftAlt", KEY_LEFTALT}, {"leftWin", KEY_LEFTMETA}, {"space", KEY_SPACE},
    {"rightAlt", KEY_RIGHTALT}, {"rightControl", KEY_RIGHTCTRL}, {"leftArrow", KEY_LEFT},
    {"downArrow", KEY_DOWN}, {"rightArrow", KEY_RIGHT},
};

TEST(KeyUsageTable, EveryKeyOfTheCodeMapComesBackWithItsCode) {
    for (const KeyCodeEntry& e : KB_108K_SuperKeyCodeMap().entries()) {
        if (e.code == kFnKeyCode) continue;  // below
        auto it = kLinuxKeyOfMapKey.find(e.key_name);
        ASSERT_NE(it, kLinuxKeyOfMapKey.end()) << "no Linux key named for " << e.key_name;
        EXPECT_EQ(hidUsageFromLinuxKey(it->second), e.code) << e.key_name;
        EXPECT_EQ(hidUsageFromNativeScanCode(static_cast<std::uint32_t>(it->second) + 8), e.code) << e.key_name;
    }
}

// Keys outside the map, the same as the window system's native scan codes (the kernel's + 8).
TEST(KeyUsageTable, KeysOutsideTheMap) {
    const std::pair<int, int> cases[] = {
        {KEY_RIGHTMETA, 231}, {KEY_SYSRQ, 70}, {KEY_KPENTER, 88}, {KEY_KP0, 98}, {KEY_102ND, 100},
        {KEY_COMPOSE, 101}, {KEY_F13, 104}, {KEY_F24, 115}, {KEY_RO, 135}, {KEY_HANGEUL, 144},
        {KEY_KPLEFTPAREN, 182}, {KEY_FN, 0}, {BTN_LEFT, 0}, {KEY_PLAYPAUSE, 0}, {KEY_CNT, 0}, {-1, 0}};
    for (auto [key, usage] : cases) {
        EXPECT_EQ(hidUsageFromLinuxKey(key), usage) << key;
        EXPECT_EQ(hidUsageFromNativeScanCode(static_cast<std::uint32_t>(key) + 8), usage) << key;
    }
    for (std::uint32_t scan : {0u, 8u, 0xFFFFFFFFu}) EXPECT_EQ(hidUsageFromNativeScanCode(scan), 0) << scan;
}

// Fn has no usage on the Keyboard page: no key an event node reports may turn into its mark, 175.
TEST(KeyUsageTable, EachUsageComesFromOneKeyAndTheMainBlockIsComplete) {
    std::map<int, int> keyOfUsage;
    for (int code = 0; code <= KEY_MAX; ++code) {
        const int u = hidUsageFromLinuxKey(code);
        if (u == 0) continue;
        EXPECT_TRUE(u >= 4 && u <= 231 && u != kFnKeyCode) << code;
        EXPECT_TRUE(keyOfUsage.emplace(u, code).second) << "usage " << u << " twice";
    }
    // A (4) to Application (101) are keys of their own, except the non-US # (50), which the kernel
    // reports as the backslash key.
    for (int u = 4; u <= 101; ++u) EXPECT_EQ(keyOfUsage.count(u), u == 50 ? 0u : 1u) << u;
}

}  // namespace
}  // namespace qx9
