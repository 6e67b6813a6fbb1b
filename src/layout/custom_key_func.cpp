#include "layout/custom_key_func.h"

#include <iterator>
#include <string>

#include "common/fatal.h"
#include "layout/key_placement.h"

namespace qx9 {

const NamedSizes& CustomKeyFunc_Width() {
    static const NamedSizes table("CustomKeyFunc_Width", {{"normal", 32},
                                                          {"icon", 39},
                                                          {"backspace", 42},
                                                          {"tab", 56},
                                                          {"backslash", 51},
                                                          {"capsLock", 60},
                                                          {"enter", 47},
                                                          {"leftShift", 37},
                                                          {"rightShift", 70},
                                                          {"bottomNormal", 40},
                                                          {"space", 94}});
    return table;
}

const NamedSizes& CustomKeyFunc_Height() {
    static const NamedSizes table("CustomKeyFunc_Height", {{"normal", 32}});
    return table;
}

// Row → y of the row's bottom edge. Row 1 belongs to no key.
const RowPositions& CustomKeyFunc_Y_Pos() {
    static const RowPositions table(
        "CustomKeyFunc_Y_Pos", {{1, 208}, {2, 175}, {3, 142}, {4, 109}, {5, 76}, {6, 43}, {7, 10}});
    return table;
}

// The builder reads only "container_margin_left" and "key_separator"; the table itself uses
// "keypad_margin_left" for the gaps before the navigation cluster and the keypad.
const NamedSizes& CustomKeyFunc_Size_Conf() {
    static const NamedSizes table("CustomKeyFunc_Size_Conf", {{"key_height", 32},
                                                              {"container_margin_top", 12},
                                                              {"container_margin_right", 21},
                                                              {"container_margin_bottom", 17},
                                                              {"container_margin_left", 9},
                                                              {"key_separator", 1},
                                                              {"keypad_margin_left", 12}});
    return table;
}

namespace {

// A palette key as written in the table below; a width or height of 0 means the "normal" one.
struct PaletteSpec {
    int row = 0;
    const char* label = "";
    int code = 0;
    int width = 0;
    int height = 0;
    int gap = 0;
    bool disabled = false;
};

std::vector<CustomKeyFuncKey> buildPaletteKeys() {
    const NamedSizes& widths = CustomKeyFunc_Width();
    const int normal = widths.at("normal");
    const int bottom = widths.at("bottomNormal");
    const int height = CustomKeyFunc_Height().at("normal");
    const int keypad = CustomKeyFunc_Size_Conf().at("keypad_margin_left");
    const int tall = height + height + 2;  // keypad + and keypad Enter reach into the row above
    const int wide = normal + normal + 1;  // keypad 0

    // clang-format off
    const PaletteSpec specs[] = {
        // Row 2, 0–15: the function row.
        {.row = 2, .label = "Esc", .code = 41, .disabled = true},
        {.row = 2, .label = "F1", .code = 58, .gap = 37, .disabled = true},
        {.row = 2, .label = "F2", .code = 59, .disabled = true},
        {.row = 2, .label = "F3", .code = 60, .disabled = true},
        {.row = 2, .label = "F4", .code = 61, .disabled = true},
        {.row = 2, .label = "F5", .code = 62, .gap = 20, .disabled = true},
        {.row = 2, .label = "F6", .code = 63, .disabled = true},
        {.row = 2, .label = "F7", .code = 64, .disabled = true},
        {.row = 2, .label = "F8", .code = 65, .disabled = true},
        {.row = 2, .label = "F9", .code = 66, .gap = 19, .disabled = true},
        {.row = 2, .label = "F10", .code = 67, .disabled = true},
        {.row = 2, .label = "F11", .code = 68, .disabled = true},
        {.row = 2, .label = "F12", .code = 69, .disabled = true},
        {.row = 2, .label = "Print", .code = 70, .gap = keypad, .disabled = true},
        {.row = 2, .label = "Scroll", .code = 71, .disabled = true},
        {.row = 2, .label = "Pause", .code = 72, .disabled = true},
        // Row 3, 16–37. The first label is the full-width tilde U+FF5E.
        {.row = 3, .label = "\xEF\xBD\x9E", .code = 53},
        {.row = 3, .label = "1", .code = 30},
        {.row = 3, .label = "2", .code = 31},
        {.row = 3, .label = "3", .code = 32},
        {.row = 3, .label = "4", .code = 33},
        {.row = 3, .label = "5", .code = 34},
        {.row = 3, .label = "6", .code = 35},
        {.row = 3, .label = "7", .code = 36},
        {.row = 3, .label = "8", .code = 37},
        {.row = 3, .label = "9", .code = 38},
        {.row = 3, .label = "0", .code = 39},
        {.row = 3, .label = "-_", .code = 45},
        {.row = 3, .label = "=+", .code = 46},
        {.row = 3, .label = "K14", .code = 137},
        {.row = 3, .label = "Back", .code = 42, .width = widths.at("backspace")},
        {.row = 3, .label = "Ins", .code = 73, .gap = keypad},
        {.row = 3, .label = "Home", .code = 74},
        {.row = 3, .label = "PgUp", .code = 75},
        {.row = 3, .label = "Num", .code = 83, .gap = keypad, .disabled = true},
        {.row = 3, .label = "/", .code = 84, .disabled = true},
        {.row = 3, .label = "*", .code = 85, .disabled = true},
        {.row = 3, .label = "-", .code = 86, .disabled = true},
        // Row 4, 38–57.
        {.row = 4, .label = "Tab", .code = 43, .width = widths.at("tab")},
        {.row = 4, .label = "Q", .code = 20},
        {.row = 4, .label = "W", .code = 26},
        {.row = 4, .label = "E", .code = 8},
        {.row = 4, .label = "R", .code = 21},
        {.row = 4, .label = "T", .code = 23},
        {.row = 4, .label = "Y", .code = 28},
        {.row = 4, .label = "U", .code = 24},
        {.row = 4, .label = "I", .code = 12},
        {.row = 4, .label = "O", .code = 18},
        {.row = 4, .label = "P", .code = 19},
        {.row = 4, .label = "[", .code = 47},
        {.row = 4, .label = "]", .code = 48},
        {.row = 4, .label = "\\|", .code = 49, .width = widths.at("backslash")},
        {.row = 4, .label = "Del", .code = 76, .gap = keypad},
        {.row = 4, .label = "End", .code = 77},
        {.row = 4, .label = "PgDn", .code = 78},
        {.row = 4, .label = "7", .code = 95, .gap = keypad, .disabled = true},
        {.row = 4, .label = "8", .code = 96, .disabled = true},
        {.row = 4, .label = "9", .code = 97, .disabled = true},
        // Row 5, 58–75: keypad 4 lines up under Num, past the navigation cluster's place.
        {.row = 5, .label = "Caps", .code = 57, .width = widths.at("capsLock")},
        {.row = 5, .label = "A", .code = 4},
        {.row = 5, .label = "S", .code = 22},
        {.row = 5, .label = "D", .code = 7},
        {.row = 5, .label = "F", .code = 9},
        {.row = 5, .label = "G", .code = 10},
        {.row = 5, .label = "H", .code = 11},
        {.row = 5, .label = "J", .code = 13},
        {.row = 5, .label = "K", .code = 14},
        {.row = 5, .label = "L", .code = 15},
        {.row = 5, .label = ";:", .code = 51},
        {.row = 5, .label = "'", .code = 52},
        {.row = 5, .label = "k42", .code = 50},
        {.row = 5, .label = "Enter", .code = 40, .width = widths.at("enter")},
        {.row = 5, .label = "4", .code = 92, .gap = 2 * keypad + 3 * normal + 3, .disabled = true},
        {.row = 5, .label = "5", .code = 93, .disabled = true},
        {.row = 5, .label = "6", .code = 94, .disabled = true},
        {.row = 5, .label = "+", .code = 87, .height = tall, .disabled = true},
        // Row 6, 76–93.
        {.row = 6, .label = "Shift", .code = 225, .width = widths.at("leftShift")},
        {.row = 6, .label = "K45", .code = 100},
        {.row = 6, .label = "Z", .code = 29},
        {.row = 6, .label = "X", .code = 27},
        {.row = 6, .label = "C", .code = 6},
        {.row = 6, .label = "V", .code = 25},
        {.row = 6, .label = "B", .code = 5},
        {.row = 6, .label = "N", .code = 17},
        {.row = 6, .label = "M", .code = 16},
        {.row = 6, .label = ",<", .code = 54},
        {.row = 6, .label = ".>", .code = 55},
        {.row = 6, .label = "/?", .code = 56},
        {.row = 6, .label = "K56", .code = 135},
        {.row = 6, .label = "Shift", .code = 229, .width = widths.at("rightShift")},
        {.row = 6, .label = "Up", .code = 82, .gap = normal + keypad + 1},
        {.row = 6, .label = "1", .code = 89, .gap = normal + keypad + 1, .disabled = true},
        {.row = 6, .label = "2", .code = 90, .disabled = true},
        {.row = 6, .label = "3", .code = 91, .disabled = true},
        // Row 7, 94–110.
        {.row = 7, .label = "Ctrl", .code = 224, .width = bottom},
        {.row = 7, .label = "Cmd", .code = 227, .width = bottom},
        {.row = 7, .label = "Option", .code = 226, .width = bottom},
        {.row = 7, .label = "K150", .code = 145, .width = bottom},
        {.row = 7, .label = "Space", .code = 44, .width = widths.at("space")},
        {.row = 7, .label = "K151", .code = 144, .width = bottom},
        {.row = 7, .label = "Option", .code = 230, .width = bottom},
        {.row = 7, .label = "Cmd", .code = 231, .width = bottom, .disabled = true},
        {.row = 7, .label = "Fn", .code = 175, .width = bottom},
        {.row = 7, .label = "App", .code = 101, .width = bottom},
        {.row = 7, .label = "Ctrl", .code = 228, .width = bottom},
        {.row = 7, .label = "Left", .code = 80, .gap = keypad},
        {.row = 7, .label = "Down", .code = 81},
        {.row = 7, .label = "Right", .code = 79},
        {.row = 7, .label = "0", .code = 98, .width = wide, .gap = keypad, .disabled = true},
        {.row = 7, .label = ".", .code = 99, .disabled = true},
        {.row = 7, .label = "Enter", .code = 88, .height = tall, .disabled = true},
    };
    // clang-format on

    std::vector<CustomKeyFuncKey> keys;
    keys.reserve(std::size(specs));
    int row = 0;
    for (const PaletteSpec& s : specs) {
        const bool first = s.row != row;
        row = s.row;
        keys.push_back(CustomKeyFuncKey{s.width != 0 ? s.width : normal,
                                        s.height != 0 ? s.height : height, s.label, s.code, "",
                                        s.row, s.gap, 1, first, s.disabled});
    }
    return keys;
}

}  // namespace

const std::vector<CustomKeyFuncKey>& CustomKeyFuncLayout_Keys() {
    static const std::vector<CustomKeyFuncKey> keys = buildPaletteKeys();
    return keys;
}

std::vector<keyFunc> buildCustomKeyFuncLayout() {
    const std::vector<CustomKeyFuncKey>& keys = CustomKeyFuncLayout_Keys();
    const NamedSizes& conf = CustomKeyFunc_Size_Conf();
    const std::vector<Rect> rects = placeKeys(keys, conf.at("container_margin_left"),
                                              conf.at("key_separator"), CustomKeyFunc_Y_Pos());
    std::vector<keyFunc> out;
    out.reserve(keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const CustomKeyFuncKey& key = keys[i];
        keyFunc f;
        f.index = static_cast<std::int64_t>(i);
        f.key_code = key.key_code;
        f.rect = rects[i];
        f.keyname = key.key_standard_name;
        f.key_icon = key.key_icon;
        out.push_back(std::move(f));
    }
    return out;
}

FuncCodeMap::FuncCodeMap(std::vector<CustomKeyFuncCodeEntry> entries)
    : entries_(std::move(entries)) {
    index_.reserve(entries_.size());
    for (std::size_t i = 0; i < entries_.size(); ++i) index_.emplace(entries_[i].code, i);
}

const CustomKeyFuncCodeEntry* FuncCodeMap::find(int code) const {
    auto it = index_.find(code);
    return it == index_.end() ? nullptr : &entries_[it->second];
}

const CustomKeyFuncCodeEntry& FuncCodeMap::at(int code) const {
    if (const CustomKeyFuncCodeEntry* e = find(code)) return *e;
    fatalError("function code " + std::to_string(code) + " is not in CustomKeyFuncCodeMap");
}

}  // namespace qx9
