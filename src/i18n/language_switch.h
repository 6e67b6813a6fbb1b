#pragma once

#include <span>
#include <string_view>

namespace qx9 {

// One fixed text that the language switch sets: the control (its outlet name, or "window" for
// the main window's title), the item of a list or pop-up (kWholeControl for the control's own
// text) and the text id.
struct SwitchedText {
    std::string_view control;
    int item;
    int textId;
};

inline constexpr int kWholeControl = -1;

// Every fixed text of the pages, in the order the switch sets them. After them the switch
// rebuilds the profile list and the lighting-mode list; the mode list's texts are the items of
// "light_mode_datas" here, row r showing id 500 + r.
std::span<const SwitchedText> languageSwitchTexts();

}  // namespace qx9
