// The key maps, the keyboard picture's layout and the custom-function palette's layout.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "layout/custom_key_func.h"
#include "layout/key_maps.h"
#include "layout/keyboard_layout.h"

namespace qx9 {
namespace {

// Each code entry names a key of the name map and has its own slot 1–121, its light index.
TEST(KeyMaps, EveryCodeHasItsOwnSlot) {
    std::set<int> slots;
    for (const auto& e : KB_108K_SuperKeyCodeMap().entries()) {
        SCOPED_TRACE(e.code);
        EXPECT_TRUE(KB_108K_SuperKeyNameMap().contains(e.key_name));
        EXPECT_EQ(e.light_index, e.key_index);
        EXPECT_TRUE(e.key_index >= 1 && e.key_index <= 121) << e.key_index;
        slots.insert(e.key_index);
    }
    EXPECT_EQ(slots.size(), 80u) << "two codes share a slot";
    for (int code : {231, 101, 70, 71, 72, 73, 74, 77, 83, 98})
        EXPECT_EQ(KB_108K_SuperKeyCodeMap().find(code), nullptr) << code << ": the QX9 has no such key";
    std::set<int> flags;  // caps lock and the eight modifiers
    for (const auto& e : KB_108K_SuperKeyNameMap().entries())
        if (e.key_type) flags.insert(e.key_code);
    EXPECT_EQ(flags, (std::set<int>{57, 224, 225, 226, 227, 228, 229, 230, 231}));
}

// Building the layout installs the maps in force. Every key's code leads back to the key through
// "layout_index", except that leftWin and leftAlt point at each other, as on a Mac keyboard.
TEST(KeyboardLayout, BuildInstallsTheMapsAndCodesLeadBackExceptTheSwappedAltAndCommand) {
    G_KB_SuperKeyNameMap = {};
    G_KB_SuperKeyCodeMap = {};
    const std::vector<KeyData> keys = buildKeyboardLayout();
    EXPECT_EQ(G_KB_SuperKeyNameMap.size(), 109u);
    EXPECT_EQ(G_KB_SuperKeyCodeMap.size(), 80u);
    ASSERT_EQ(keys.size(), 66u);
    EXPECT_EQ(buildKeyboardLayout(), keys) << "a second build differs";
    for (const KeyData& k : keys) {
        SCOPED_TRACE(k.keyname);
        EXPECT_EQ(k.keycode, KB_108K_SuperKeyNameMap().at(k.keyname).key_code);
        const KeyCodeEntry* code = KB_108K_SuperKeyCodeMap().find(static_cast<int>(k.keycode));
        ASSERT_NE(code, nullptr);
        EXPECT_EQ(code->key_name, k.keyname);
        EXPECT_EQ(code->layout_index, k.index == 58 ? 59 : k.index == 59 ? 58 : k.index);
    }
    EXPECT_EQ(keys[58].keycode, 227);  // leftWin
    EXPECT_EQ(keys[59].keycode, 226);  // leftAlt
}

struct Row {
    int first, last;
    double y;
};

// Each key has its index, the y of its row and the given height, rows start at the left margin,
// and no two keys overlap: a point is over one key at the most.
template <typename Key>
void expectRows(const std::vector<Key>& keys, const std::vector<Row>& rows, double marginX,
                double height, const std::set<int>& tall = {}) {
    std::size_t count = 0;
    for (const Row& row : rows) {
        EXPECT_EQ(keys[row.first].rect.x, marginX) << row.first;
        for (int i = row.first; i <= row.last; ++i, ++count) {
            EXPECT_EQ(keys[i].index, i);
            EXPECT_EQ(keys[i].rect.y, row.y) << i;
            EXPECT_EQ(keys[i].rect.height, tall.contains(i) ? 2 * height + 4 : height) << i;
        }
    }
    EXPECT_EQ(count, keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        for (std::size_t j = i + 1; j < keys.size(); ++j) {
            const Rect& a = keys[i].rect;
            const Rect& b = keys[j].rect;
            const bool apart = a.x + a.width <= b.x || b.x + b.width <= a.x || a.y + a.height <= b.y ||
                               b.y + b.height <= a.y;
            EXPECT_TRUE(apart) << i << " overlaps " << j;
        }
    }
}

TEST(KeyboardLayout, Geometry) {
    const std::vector<KeyData> keys = buildKeyboardLayout();
    for (const KeyData& k : keys) EXPECT_TRUE(k.keyMacro.empty());
    expectRows(keys, {{0, 13, 187}, {14, 28, 148}, {29, 42, 107}, {43, 56, 64}, {57, 65, 23}}, 23, 36);
}

// Every palette code has its description, and the map holds nothing else but the consumer
// functions 500–517, which come first.
TEST(Palette, CodeMapHoldsThePaletteCodesAfterTheConsumerCodes) {
    const FuncCodeMap& map = CustomKeyFuncCodeMap();
    ASSERT_EQ(map.size(), 129u);
    std::set<int> expected;
    for (int code = 500; code <= 517; ++code) expected.insert(code);
    for (const keyFunc& k : buildCustomKeyFuncLayout()) expected.insert(static_cast<int>(k.key_code));
    std::set<int> held;
    for (std::size_t i = 0; i < map.size(); ++i) {
        const CustomKeyFuncCodeEntry& e = map.entries()[i];
        held.insert(e.code);
        EXPECT_EQ(e.layout_index, static_cast<int>(i));
        EXPECT_EQ(e.code >= 500, i < 18) << e.code;
    }
    EXPECT_EQ(held, expected);
    EXPECT_EQ(map.find(518), nullptr);
}

}  // namespace
}  // namespace qx9
