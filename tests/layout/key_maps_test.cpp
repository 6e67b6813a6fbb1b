#include <gtest/gtest.h>

#include <set>

#include "layout/key_maps.h"

namespace qx9 {
namespace {

TEST(KeyMaps, InForceMapsAreEmptyUntilALayoutInstallsThem) {
    G_KB_SuperKeyNameMap = {};
    G_KB_SuperKeyCodeMap = {};
    EXPECT_TRUE(G_KB_SuperKeyNameMap.empty());
    EXPECT_TRUE(G_KB_SuperKeyCodeMap.empty());
    installKB108KMaps();
    EXPECT_EQ(G_KB_SuperKeyNameMap.size(), 109u);
    EXPECT_EQ(G_KB_SuperKeyCodeMap.size(), 80u);
}

TEST(KeyMaps, EveryCodeEntryNamesAKeyOfTheNameMapAndLightIndexEqualsKeyIndex) {
    const auto& names = KB_108K_SuperKeyNameMap();
    std::set<int> keyIndexes;
    for (const auto& e : KB_108K_SuperKeyCodeMap().entries()) {
        SCOPED_TRACE(e.code);
        EXPECT_TRUE(names.contains(e.key_name));
        EXPECT_EQ(e.light_index, e.key_index);
        EXPECT_GE(e.key_index, 1);
        EXPECT_LE(e.key_index, 121);
        keyIndexes.insert(e.key_index);
    }
    EXPECT_EQ(keyIndexes.size(), 80u) << "two codes share a slot";
}

struct CodeRow {
    int code;
    const char* name;
    const char* shortName;
    const char* fullName;
    bool flag;
    int layoutIndex, keyIndex, r, g, b;
};

// Rows that carry the map's irregularities.
const CodeRow kCodeRows[] = {
    {41, "escape", "Esc", "Escape", false, 0, 1, 69, 0, 255},
    {58, "f1", "F1", "F1", false, 1, 2, 255, 0, 78},
    {30, "i1", "1", "1", false, 1, 20, 255, 0, 78},
    {53, "backtick", "`", "backtick", false, 13, 19, 255, 0, 255},
    {42, "backspace", "Back", "Backspace", false, 13, 103, 0, 255, 0},
    {49, "backslash", "\\", "\\", false, 27, 67, 0, 255, 0},
    {76, "delete", "Del", "Delete", false, 28, 119, 78, 255, 0},
    {57, "capsLock", "CAPS", "Caps Lock", true, 29, 55, 255, 0, 78},
    {75, "pageUp", "Page Up", "Page Up", false, 42, 118, 255, 69, 0},
    {229, "rightShift", "Shift", "Shift", true, 54, 84, 0, 255, 0},
    {78, "pageDown", "Page Down", "Page Down", false, 56, 121, 255, 69, 0},
    {226, "leftAlt", "Option", "Option", true, 58, 93, 255, 0, 255},
    {227, "leftWin", "Left Cmd", "Left Command", true, 59, 92, 255, 0, 0},
    {175, "fn", "Fn", "Fn", false, 62, 96, 0, 255, 0},
    {228, "rightControl", "Right Ctrl", "Right Control", true, 63, 98, 78, 255, 0},
    {80, "leftArrow", "Left Arrow", "Left Arrow", false, 63, 99, 255, 255, 0},
    {79, "rightArrow", "Right Arrow", "Right Arrow", false, 65, 102, 255, 0, 0},
};

TEST(KeyMaps, CodeMapRows) {
    for (const CodeRow& row : kCodeRows) {
        SCOPED_TRACE(row.code);
        const KeyCodeEntry& e = KB_108K_SuperKeyCodeMap().at(row.code);
        EXPECT_EQ(e.key_name, row.name);
        EXPECT_EQ(e.short_name, row.shortName);
        EXPECT_EQ(e.full_name, row.fullName);
        EXPECT_EQ(e.key_type.has_value(), row.flag);
        if (row.flag) {
            EXPECT_EQ(*e.key_type, Keyboard_EN_Type::flag);
        }
        EXPECT_EQ(e.layout_index, row.layoutIndex);
        EXPECT_EQ(e.key_index, row.keyIndex);
        EXPECT_EQ(e.light_index, row.keyIndex);
        EXPECT_EQ(std::make_tuple(e.rgb_r, e.rgb_g, e.rgb_b), std::make_tuple(row.r, row.g, row.b));
    }
}

struct NameRow {
    const char* name;
    int code;
    const char* shortName;
    const char* fullName;
    bool flag;
};

const NameRow kNameRows[] = {
    {"backspace", 42, "<-", "<-", false},
    {"capsLock", 57, "Caps", "Caps", true},
    {"volumeUp", 212, "Volume Up", "Volume UP", false},
    {"leftControl", 224, "Control", "Control", true},
    {"leftWin", 227, "Option", "Option", true},
    {"leftAlt", 226, "Command", "Command", true},
    {"rightWin", 231, "Right Cmd", "Right Cmd", true},
    {"menu", 101, "Menu", "Menu", false},
    {"numpadPeriod", 99, "Numpad Period", "Numpad Period", false},
    {"backtick", 53, "`", "backtick", false},
};

TEST(KeyMaps, NameMapRows) {
    for (const NameRow& row : kNameRows) {
        SCOPED_TRACE(row.name);
        const KeyNameEntry& e = KB_108K_SuperKeyNameMap().at(row.name);
        EXPECT_EQ(e.key_code, row.code);
        EXPECT_EQ(e.short_name, row.shortName);
        EXPECT_EQ(e.full_name, row.fullName);
        EXPECT_EQ(e.key_type.has_value(), row.flag);
    }
}

TEST(KeyMaps, FlagKeysAreCapsLockAndTheEightModifiers) {
    std::set<int> flags;
    for (const auto& e : KB_108K_SuperKeyNameMap().entries()) {
        if (e.key_type) flags.insert(e.key_code);
    }
    EXPECT_EQ(flags, (std::set<int>{57, 224, 225, 226, 227, 228, 229, 230, 231}));
}

TEST(KeyMaps, CodesTheQX9DoesNotHaveAreMissingFromTheCodeMap) {
    for (int code : {231, 101, 70, 71, 72, 73, 74, 77, 83, 98}) {
        EXPECT_FALSE(KB_108K_SuperKeyCodeMap().contains(code)) << code;
        EXPECT_EQ(KB_108K_SuperKeyCodeMap().find(code), nullptr);
    }
}

TEST(KeyMapsDeath, MissingKeyIsAProgrammingError) {
    EXPECT_DEATH(KB_108K_SuperKeyCodeMap().at(231), "key code 231");
    EXPECT_DEATH(KB_108K_SuperKeyNameMap().at("hyper"), "hyper");
}

}  // namespace
}  // namespace qx9
