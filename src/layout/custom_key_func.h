#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <vector>

#include "layout/geometry.h"
#include "layout/size_table.h"

namespace qx9 {

// One key of the function palette: a full-size keyboard whose keys are the functions a QX9 key
// can be given. Placed like the keyboard's keys, with the palette's own size tables.
struct CustomKeyFuncKey {
    int width = 0;
    int height = 0;
    std::string key_standard_name;  // the label drawn on the key ("Esc", "-_", "PgUp", "K14")
    int key_code = 0;               // the function: a HID keyboard usage, or 175 for Fn
    std::string key_icon;           // image drawn instead of the label; empty on every key
    int row_num = 0;                // 2 (top) to 7 (bottom), key of CustomKeyFunc_Y_Pos
    int left_extra_width = 0;
    int has_seperator = 1;  // 1 on every key, the first of a row included
    bool first_key = false;
    bool disabled = false;  // function row, numeric keypad and right command; nothing reads it
};

// The palette's size tables, in points.
const NamedSizes& CustomKeyFunc_Width();
const NamedSizes& CustomKeyFunc_Height();
const RowPositions& CustomKeyFunc_Y_Pos();
const NamedSizes& CustomKeyFunc_Size_Conf();

// The 111 palette keys in reading order, built once; computed widths, heights and gaps are
// worked out from the size tables.
const std::vector<CustomKeyFuncKey>& CustomKeyFuncLayout_Keys();

// One palette key as the palette view receives it. The key's view is kept by the palette view,
// in a parallel array indexed by `index`.
struct keyFunc {
    std::int64_t index = 0;     // position in the palette table
    std::int64_t key_code = 0;  // the function's code
    std::int64_t type = 0;      // 0 for every palette key
    Rect rect;                  // in the palette view, origin at the bottom left
    std::string keyname;        // the label
    std::string standard_name;  // empty
    std::string key_icon;
    RgbColor key_color{0, 0, 255};  // pure blue; not used for drawing

    friend bool operator==(const keyFunc&, const keyFunc&) = default;
};

// The palette builder: the keyboard's placement with the palette's margin (9) and separator (1).
std::vector<keyFunc> buildCustomKeyFuncLayout();

// One entry of CustomKeyFuncCodeMap: the texts of a function code. Only "short_name" is read;
// it becomes the description of an assignment made from the palette.
struct CustomKeyFuncCodeEntry {
    int code = 0;
    std::string key_name;
    std::string short_name;
    std::string full_name;
    int layout_index = 0;  // position in the list of 129 functions, codes 500–517 first
};

// The function codes of the palette plus the application codes 500–517 of the consumer-control
// functions, which no palette key carries. Kept in table order; `at` treats a missing code as a
// programming error and stops.
class FuncCodeMap {
public:
    explicit FuncCodeMap(std::vector<CustomKeyFuncCodeEntry> entries);

    const CustomKeyFuncCodeEntry* find(int code) const;
    const CustomKeyFuncCodeEntry& at(int code) const;
    bool contains(int code) const { return find(code) != nullptr; }
    const std::vector<CustomKeyFuncCodeEntry>& entries() const { return entries_; }
    std::size_t size() const { return entries_.size(); }

private:
    std::vector<CustomKeyFuncCodeEntry> entries_;
    std::unordered_map<int, std::size_t> index_;
};

// The 129 function codes, built once.
const FuncCodeMap& CustomKeyFuncCodeMap();

}  // namespace qx9
