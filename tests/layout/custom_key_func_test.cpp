#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "layout/custom_key_func.h"

namespace qx9 {
namespace {

struct PaletteRect {
    int index;
    const char* label;
    int code;
    Rect rect;
};

// The rectangles the palette is drawn for.
const PaletteRect kRects[] = {
    {0, "Esc", 41, {12, 176, 30, 30}},           {1, "F1", 58, {82, 176, 30, 30}},
    {16, "\xEF\xBD\x9E", 53, {12, 143, 30, 30}}, {30, "Back", 42, {474, 143, 40, 30}},
    {38, "Tab", 43, {12, 110, 54, 30}},          {75, "+", 87, {739, 77, 30, 64}},
    {98, "Space", 44, {176, 11, 92, 30}},        {108, "0", 98, {640, 11, 63, 30}},
};

TEST(Palette, KeyRectangles) {
    const std::vector<keyFunc> keys = buildCustomKeyFuncLayout();
    ASSERT_EQ(keys.size(), 111u);
    for (const PaletteRect& c : kRects) {
        SCOPED_TRACE(c.label);
        EXPECT_EQ(keys[c.index].keyname, c.label);
        EXPECT_EQ(keys[c.index].key_code, c.code);
        EXPECT_EQ(keys[c.index].rect, c.rect);
    }
    EXPECT_EQ(buildCustomKeyFuncLayout(), keys) << "a second build differs";
}

struct PaletteRow {
    int first, last;
    const char* firstLabel;
    const char* lastLabel;
    double y;
};

const PaletteRow kRows[] = {
    {0, 15, "Esc", "Pause", 176}, {16, 37, "\xEF\xBD\x9E", "-", 143},
    {38, 57, "Tab", "9", 110},    {58, 75, "Caps", "+", 77},
    {76, 93, "Shift", "3", 44},   {94, 110, "Ctrl", "Enter", 11},
};

bool disabledInSpec(int i) {
    return i <= 15 || (i >= 34 && i <= 37) || (i >= 55 && i <= 57) || (i >= 72 && i <= 75) ||
           (i >= 91 && i <= 93) || i >= 108 || i == 101;
}

TEST(Palette, RowsFlagsAndRecordDefaults) {
    const std::vector<keyFunc> keys = buildCustomKeyFuncLayout();
    const auto& table = CustomKeyFuncLayout_Keys();
    for (const PaletteRow& row : kRows) {
        SCOPED_TRACE(row.firstLabel);
        EXPECT_EQ(keys[row.first].keyname, row.firstLabel);
        EXPECT_EQ(keys[row.last].keyname, row.lastLabel);
        EXPECT_EQ(keys[row.first].rect.x, 12);
        for (int i = row.first; i <= row.last; ++i) {
            SCOPED_TRACE(i);
            EXPECT_EQ(keys[i].index, i);
            EXPECT_EQ(keys[i].rect.y, row.y);
            EXPECT_EQ(table[i].first_key, i == row.first);
            EXPECT_EQ(table[i].has_seperator, 1);
            EXPECT_EQ(table[i].disabled, disabledInSpec(i));
            EXPECT_TRUE(keys[i].key_icon.empty()) << "every key shows its label";
            EXPECT_TRUE(keys[i].standard_name.empty());
            EXPECT_EQ(keys[i].type, 0);
            EXPECT_EQ(keys[i].key_color, (RgbColor{0, 0, 255}));
        }
    }
}

// Keypad + and keypad Enter are two rows high and reach into the row above; no other key is.
TEST(Palette, TallKeypadKeys) {
    const std::vector<keyFunc> keys = buildCustomKeyFuncLayout();
    for (const keyFunc& k : keys) {
        const bool tall = k.index == 75 || k.index == 110;
        EXPECT_EQ(k.rect.height, tall ? 64 : 30) << k.index;
    }
    EXPECT_EQ(keys[110].key_code, 88);
    EXPECT_EQ(keys[110].rect, (Rect{739, 11, 30, 64}));
    EXPECT_GT(keys[75].rect.y + keys[75].rect.height, 110) << "keypad + ends in row 4";
}

// The computed gaps line the keypad and the arrow keys up in columns across the rows.
TEST(Palette, ColumnsLineUp) {
    const std::vector<keyFunc> keys = buildCustomKeyFuncLayout();
    const std::vector<std::pair<std::vector<int>, double>> columns = {
        {{13, 31, 52, 105}, 529},      // Print, Ins, Del, Left
        {{34, 55, 72, 91, 108}, 640},  // Num, keypad 7, 4, 1, 0
        {{90, 106}, 562},              // Up over Down
        {{37, 75, 110}, 739},          // keypad -, +, Enter
    };
    for (const auto& [indexes, x] : columns) {
        for (int i : indexes) EXPECT_EQ(keys[i].rect.x, x) << keys[i].keyname;
    }
}

TEST(Palette, SameLabelsAreToldApartByCode) {
    const std::vector<keyFunc> keys = buildCustomKeyFuncLayout();
    const std::vector<std::pair<std::string, std::set<int64_t>>> pairs = {
        {"Shift", {225, 229}}, {"Ctrl", {224, 228}}, {"Option", {226, 230}},
        {"Cmd", {227, 231}},   {"Enter", {40, 88}},
    };
    for (const auto& [label, codes] : pairs) {
        std::set<int64_t> seen;
        for (const keyFunc& k : keys) {
            if (k.keyname == label) seen.insert(k.key_code);
        }
        EXPECT_EQ(seen, codes) << label;
    }
}

// Every palette code has its description, and the map holds nothing else but the consumer
// functions 500–517, which come first.
TEST(CustomKeyFuncCodeMap, HoldsThePaletteCodesAfterTheConsumerCodes) {
    const FuncCodeMap& map = CustomKeyFuncCodeMap();
    ASSERT_EQ(map.size(), 129u);
    std::set<int> expected;
    for (int code = 500; code <= 517; ++code) expected.insert(code);
    for (const keyFunc& k : buildCustomKeyFuncLayout())
        expected.insert(static_cast<int>(k.key_code));
    std::set<int> held;
    for (std::size_t i = 0; i < map.size(); ++i) {
        const CustomKeyFuncCodeEntry& e = map.entries()[i];
        held.insert(e.code);
        EXPECT_EQ(e.layout_index, static_cast<int>(i));
        EXPECT_EQ(e.code >= 500, i < 18) << e.code;
    }
    EXPECT_EQ(held, expected);
}

struct CodeCase {
    int code;
    const char* keyName;
    const char* shortName;
    const char* fullName;
    int layoutIndex;
};

const CodeCase kCodes[] = {
    {500, "PC", "PC", "PC", 0},
    {509, "Vol Down", "Vol Down", "Vol Down", 8},
    {508, "Vol Up", "Vol Up", "Vol Up", 9},
    {515, "Web Foreward", "Web Foreward", "Web Foreward", 15},
    {53, "backtick", "`", "backtick", 34},
    {137, "K14", "K14", "K14", 47},
    {49, "backslash", "\\", "\\", 69},
    {95, "NumPad 7", "7", "NumPad 7", 73},
    {94, "NumPad 4=6", "NumPad 6", "NumPad 6", 92},
    {227, "leftWin", "Command", "Command", 114},
    {231, "rightWin", "Command", "Command", 119},
    {88, "Enter", "Enter", "Enter", 128},
};

TEST(CustomKeyFuncCodeMap, Rows) {
    for (const CodeCase& c : kCodes) {
        SCOPED_TRACE(c.code);
        const CustomKeyFuncCodeEntry& e = CustomKeyFuncCodeMap().at(c.code);
        EXPECT_EQ(e.key_name, c.keyName);
        EXPECT_EQ(e.short_name, c.shortName);
        EXPECT_EQ(e.full_name, c.fullName);
        EXPECT_EQ(e.layout_index, c.layoutIndex);
    }
    EXPECT_EQ(CustomKeyFuncCodeMap().find(518), nullptr);
}

}  // namespace
}  // namespace qx9
