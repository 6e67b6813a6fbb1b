#include "layout/keyboard_layout.h"

#include <iterator>

#include "layout/key_maps.h"
#include "layout/key_placement.h"

namespace qx9 {

const NamedSizes& KB_108K_Key_Width() {
    static const NamedSizes table("KB_108K_Key_Width", {{"normal", 35},
                                                        {"backspace", 78},
                                                        {"tab", 56},
                                                        {"backslash", 56},
                                                        {"capsLock", 65},
                                                        {"enter", 85},
                                                        {"leftShift", 83},
                                                        {"rightShift", 66},
                                                        {"bottomNormal", 46},
                                                        {"space", 238}});
    return table;
}

const NamedSizes& KB_108K_Key_Height() {
    static const NamedSizes table("KB_108K_Key_Height", {{"normal", 38}});
    return table;
}

// Row → y of the row's bottom edge. Rows 6 to 8 belong to no key; they are kept with the table.
const RowPositions& KB_108K_Y_Pos() {
    static const RowPositions table(
        "KB_108K_Y_Pos",
        {{1, 186}, {2, 147}, {3, 106}, {4, 63}, {5, 22}, {6, 14}, {7, 41}, {8, 5}});
    return table;
}

// The builder reads only "container_margin_left" and "key_separator".
const NamedSizes& KB_108K_Size_Conf() {
    static const NamedSizes table("KB_108K_Size_Conf", {{"key_height", 30},
                                                        {"container_margin_top", 10},
                                                        {"container_margin_right", 21},
                                                        {"container_margin_bottom", 17},
                                                        {"container_margin_left", 21},
                                                        {"key_separator", 4},
                                                        {"keypad_margin_left", 12}});
    return table;
}

namespace {

struct KeySpec {
    int row;
    const char* name;
    const char* widthClass = "normal";
    int leftExtraWidth = 0;
    bool disabled = false;
};

// Row 1 ends after backspace, 38 points short of the other rows: the keyboard picture covers
// that place, so the table has no key there.
constexpr KeySpec kKeys[] = {
    {1, "escape"},
    {1, "i1"},
    {1, "i2"},
    {1, "i3"},
    {1, "i4"},
    {1, "i5"},
    {1, "i6"},
    {1, "i7"},
    {1, "i8"},
    {1, "i9"},
    {1, "i0"},
    {1, "minus"},
    {1, "equal"},
    {1, "backspace", "backspace"},

    {2, "tab", "tab"},
    {2, "q"},
    {2, "w"},
    {2, "e"},
    {2, "r"},
    {2, "t"},
    {2, "y"},
    {2, "u"},
    {2, "i"},
    {2, "o"},
    {2, "p"},
    {2, "leftBracket"},
    {2, "rightBracket"},
    {2, "backslash", "backslash"},
    {2, "delete"},

    {3, "capsLock", "capsLock"},
    {3, "a"},
    {3, "s"},
    {3, "d"},
    {3, "f"},
    {3, "g"},
    {3, "h"},
    {3, "j"},
    {3, "k"},
    {3, "l"},
    {3, "semicolon"},
    {3, "quote"},
    {3, "enter", "enter"},
    {3, "pageUp"},

    {4, "leftShift", "leftShift"},
    {4, "z"},
    {4, "x"},
    {4, "c"},
    {4, "v"},
    {4, "b"},
    {4, "n"},
    {4, "m"},
    {4, "comma"},
    {4, "period"},
    {4, "slash"},
    {4, "rightShift", "rightShift"},
    {4, "upArrow"},
    {4, "pageDown"},

    {5, "leftControl", "bottomNormal"},
    {5, "leftWin", "bottomNormal"},
    {5, "leftAlt", "bottomNormal"},
    {5, "space", "space"},
    {5, "rightAlt", "bottomNormal"},
    {5, "fn", "bottomNormal", 0, true},
    {5, "leftArrow", "normal", 16},
    {5, "downArrow"},
    {5, "rightArrow"},
};

}  // namespace

// The first key of each row has "first_key" set and no separator; every other key has one
// separator before it.
const std::vector<LayoutKey>& KB_108KLayout_Keys() {
    static const std::vector<LayoutKey> keys = [] {
        const NamedSizes& widths = KB_108K_Key_Width();
        const int height = KB_108K_Key_Height().at("normal");
        std::vector<LayoutKey> out;
        out.reserve(std::size(kKeys));
        int row = 0;
        for (const KeySpec& spec : kKeys) {
            const bool first = spec.row != row;
            row = spec.row;
            out.push_back(LayoutKey{widths.at(spec.widthClass), height, spec.name, spec.row,
                                    spec.leftExtraWidth, first ? 0 : 1, first, spec.disabled});
        }
        return out;
    }();
    return keys;
}

std::vector<KeyData> buildKeyboardLayout() {
    installKB108KMaps();
    const std::vector<LayoutKey>& keys = KB_108KLayout_Keys();
    const NamedSizes& conf = KB_108K_Size_Conf();
    const std::vector<Rect> rects = placeKeys(keys, conf.at("container_margin_left"),
                                              conf.at("key_separator"), KB_108K_Y_Pos());
    std::vector<KeyData> out;
    out.reserve(keys.size());
    for (std::size_t i = 0; i < keys.size(); ++i) {
        const LayoutKey& key = keys[i];
        const int code = G_KB_SuperKeyNameMap.at(key.key_standard_name).key_code;
        out.push_back(
            KeyData{static_cast<std::int64_t>(i), rects[i], code, key.key_standard_name, ""});
    }
    return out;
}

}  // namespace qx9
