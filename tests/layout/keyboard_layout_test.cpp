#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "layout/key_maps.h"
#include "layout/keyboard_layout.h"

namespace qx9 {
namespace {

const KeyData& keyNamed(const std::vector<KeyData>& keys, const std::string& name) {
    for (const KeyData& k : keys) {
        if (k.keyname == name) return k;
    }
    ADD_FAILURE() << name << " is not in the layout";
    return keys.front();
}

TEST(KeyboardLayout, BuilderInstallsTheMapsInForce) {
    G_KB_SuperKeyNameMap = {};
    G_KB_SuperKeyCodeMap = {};
    const std::vector<KeyData> keys = buildKeyboardLayout();
    EXPECT_EQ(G_KB_SuperKeyNameMap.size(), 109u);
    EXPECT_EQ(G_KB_SuperKeyCodeMap.size(), 80u);
    ASSERT_EQ(keys.size(), 66u);
    EXPECT_EQ(buildKeyboardLayout(), keys) << "a second build differs";
}

struct RectCase {
    const char* name;
    Rect rect;
};

// The rectangles the keyboard picture is drawn for; backslash worked out from its row.
const RectCase kRects[] = {
    {"escape", {23, 187, 33, 36}},     {"i1", {62, 187, 33, 36}},
    {"backspace", {530, 187, 76, 36}}, {"tab", {23, 148, 54, 36}},
    {"backslash", {551, 148, 54, 36}}, {"delete", {611, 148, 33, 36}},
    {"capsLock", {23, 107, 63, 36}},   {"enter", {521, 107, 83, 36}},
    {"leftShift", {23, 64, 81, 36}},   {"rightShift", {500, 64, 64, 36}},
    {"upArrow", {570, 64, 33, 36}},    {"leftControl", {23, 23, 44, 36}},
    {"space", {173, 23, 236, 36}},     {"fn", {465, 23, 44, 36}},
    {"leftArrow", {531, 23, 33, 36}},  {"rightArrow", {609, 23, 33, 36}},
};

TEST(KeyboardLayout, KeyRectangles) {
    const std::vector<KeyData> keys = buildKeyboardLayout();
    for (const RectCase& c : kRects) {
        SCOPED_TRACE(c.name);
        EXPECT_EQ(keyNamed(keys, c.name).rect, c.rect);
    }
}

struct RowCase {
    int first, last;
    const char* firstName;
    const char* lastName;
    double y;
};

const RowCase kRows[] = {
    {0, 13, "escape", "backspace", 187},       {14, 28, "tab", "delete", 148},
    {29, 42, "capsLock", "pageUp", 107},       {43, 56, "leftShift", "pageDown", 64},
    {57, 65, "leftControl", "rightArrow", 23},
};

TEST(KeyboardLayout, RowsIndexesAndHeights) {
    const std::vector<KeyData> keys = buildKeyboardLayout();
    const auto& table = KB_108KLayout_Keys();
    for (const RowCase& row : kRows) {
        SCOPED_TRACE(row.firstName);
        EXPECT_EQ(keys[row.first].keyname, row.firstName);
        EXPECT_EQ(keys[row.last].keyname, row.lastName);
        EXPECT_EQ(keys[row.first].rect.x, 23) << "a row starts again at the margin";
        for (int i = row.first; i <= row.last; ++i) {
            EXPECT_EQ(keys[i].index, i);
            EXPECT_EQ(keys[i].rect.y, row.y) << keys[i].keyname;
            EXPECT_EQ(keys[i].rect.height, 36) << keys[i].keyname;
            EXPECT_TRUE(keys[i].keyMacro.empty());
            EXPECT_EQ(table[i].first_key, i == row.first);
            EXPECT_EQ(table[i].has_seperator, i == row.first ? 0 : 1);
            EXPECT_EQ(table[i].disabled, keys[i].keyname == "fn");
            if (i > row.first) {
                const Rect& prev = keys[i - 1].rect;
                const double gap = keys[i].keyname == "leftArrow" ? 4 + 16 : 4;
                EXPECT_EQ(keys[i].rect.x, prev.x + prev.width + 2 + gap) << keys[i].keyname;
            }
        }
    }
}

// Every key's name is in the name map and its code in the code map, whose "layout_index" leads
// back to the key, except that leftWin and leftAlt point at each other, as on a Mac keyboard.
TEST(KeyboardLayout, CodesLeadBackToTheirKeysExceptTheSwappedAltAndCommand) {
    const std::vector<KeyData> keys = buildKeyboardLayout();
    for (const KeyData& k : keys) {
        SCOPED_TRACE(k.keyname);
        const KeyNameEntry* name = KB_108K_SuperKeyNameMap().find(k.keyname);
        ASSERT_NE(name, nullptr);
        EXPECT_EQ(k.keycode, name->key_code);
        const KeyCodeEntry* code = KB_108K_SuperKeyCodeMap().find(name->key_code);
        ASSERT_NE(code, nullptr);
        EXPECT_EQ(code->light_index, code->key_index);
        EXPECT_EQ(code->key_name, k.keyname);
        const int expected = k.index == 58 ? 59 : k.index == 59 ? 58 : static_cast<int>(k.index);
        EXPECT_EQ(code->layout_index, expected);
    }
    EXPECT_EQ(keys[58].keyname, "leftWin");
    EXPECT_EQ(keys[58].keycode, 227);
    EXPECT_EQ(keys[59].keyname, "leftAlt");
    EXPECT_EQ(keys[59].keycode, 226);
}

TEST(KeyboardLayoutDeath, MissingSizeEntryStops) {
    EXPECT_DEATH(KB_108K_Y_Pos().at(9), "KB_108K_Y_Pos");
    EXPECT_DEATH(KB_108K_Key_Width().at("numpadEnter"), "numpadEnter");
}

}  // namespace
}  // namespace qx9
