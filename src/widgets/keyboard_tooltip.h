#pragma once

#include <string>

namespace qx9 {

// What the keyboard view's ShowKeyboardToolTipWnd signal carries: show or hide the key tooltip. The point is the middle of
// the key's bottom edge in the coordinates of the keyboard view's parent (Qt coordinates, y
// downwards).
struct KeyboardToolTip {
    int show = 0;                   // 1 show, 0 hide
    std::string keyDesc = "null";   // the key's name; "null" when hiding
    std::string keyMacro = "null";  // the key's assignment text; "null" when hiding
    double x = 0;
    double y = 0;

    static KeyboardToolTip hidden() { return {}; }

    friend bool operator==(const KeyboardToolTip&, const KeyboardToolTip&) = default;
};

}  // namespace qx9
