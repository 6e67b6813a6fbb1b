#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "layout/geometry.h"
#include "layout/size_table.h"

namespace qx9 {

// One key of the QX9 layout table: its size, name and place in the rows.
struct LayoutKey {
    int width = 0;                  // points, from KB_108K_Key_Width by the key's width class
    int height = 0;                 // points, from KB_108K_Key_Height ("normal")
    std::string key_standard_name;  // key of the name map ("escape", "i1", "leftShift")
    int row_num = 0;                // 1 (top) to 5 (bottom), key of KB_108K_Y_Pos
    int left_extra_width = 0;       // extra gap before the key
    int has_seperator = 0;          // 1: one key separator before the key
    bool first_key = false;         // the row's first key starts again at the left margin
    bool disabled = false;          // set on the Fn key only; nothing reads it
};

// The size tables of the layout, in points.
const NamedSizes& KB_108K_Key_Width();
const NamedSizes& KB_108K_Key_Height();
const RowPositions& KB_108K_Y_Pos();
const NamedSizes& KB_108K_Size_Conf();

// The 66 keys of the QX9 in reading order (row by row, left to right), built once.
const std::vector<LayoutKey>& KB_108KLayout_Keys();

// One key of an on-screen keyboard. The key's view is not part of the record: a keyboard view
// keeps its per-key views in a parallel array indexed by `index`.
struct KeyData {
    std::int64_t index = 0;  // position in the layout table and in every array built from it
    Rect rect;               // in the keyboard view, origin at the bottom left
    std::int64_t keycode = 0;
    std::string keyname;   // the key's "key_standard_name"
    std::string keyMacro;  // text of the key's current assignment; empty when built

    friend bool operator==(const KeyData&, const KeyData&) = default;
};

// The layout builder: installs the 108-key name and code maps as the maps in force, then places
// every key of KB_108KLayout_Keys and looks its code up by name. A size class, row or key name
// missing from its table stops the program.
std::vector<KeyData> buildKeyboardLayout();

}  // namespace qx9
