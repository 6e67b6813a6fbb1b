#pragma once

#include <vector>

#include "layout/geometry.h"
#include "layout/size_table.h"

namespace qx9 {

// Places the keys of a layout table, row by row, left to right. Every key's cell starts right
// after the previous key's cell; the first key of a row starts again at the left margin. A
// separator and the key's own extra gap come before the cell, and the rectangle is the cell
// inset by one point on every side. All arithmetic is in whole points.
//
// `Entry` is a layout table entry with "width", "height", "row_num", "left_extra_width",
// "has_seperator" and "first_key"; a row without a y position stops the program.
template <typename Entry>
std::vector<Rect> placeKeys(const std::vector<Entry>& keys, int marginLeft, int separator,
                            const RowPositions& rowBottoms) {
    std::vector<Rect> rects;
    rects.reserve(keys.size());
    int running = 0;
    for (const Entry& key : keys) {
        const int y = rowBottoms.at(key.row_num);
        int x = key.first_key ? marginLeft + 1 : running;
        if (key.has_seperator == 1) x += separator;
        if (key.left_extra_width != 0) x += key.left_extra_width;
        rects.push_back(Rect{static_cast<double>(x + 1), static_cast<double>(y + 1),
                             static_cast<double>(key.width - 2),
                             static_cast<double>(key.height - 2)});
        running = x + key.width;
    }
    return rects;
}

}  // namespace qx9
