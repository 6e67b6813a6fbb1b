#pragma once

#include <cstdint>

namespace qx9 {

// A key rectangle in points, in the coordinates of the view that draws it: origin at the bottom
// left, y growing upwards.
struct Rect {
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;

    friend bool operator==(const Rect&, const Rect&) = default;
};

// A colour as red, green and blue bytes.
struct RgbColor {
    std::uint8_t r = 0;
    std::uint8_t g = 0;
    std::uint8_t b = 0;

    friend bool operator==(const RgbColor&, const RgbColor&) = default;
};

}  // namespace qx9
