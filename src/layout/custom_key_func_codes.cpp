#include "layout/custom_key_func.h"

#include <iterator>
#include <vector>

namespace qx9 {

namespace {

struct FuncCodeRow {
    int code;
    const char* keyName;
    const char* shortName;
    const char* fullName;
    int layoutIndex;
};

// The 18 consumer-control application codes first, then the keyboard codes of the palette.
// The texts are kept exactly as they are, "Web Foreward" and "NumPad 4=6" (the name of code 94)
// included, and so is the order of 508 "Vol Up" after 509 "Vol Down".
constexpr FuncCodeRow kFuncCodeRows[] = {
    {500, "PC", "PC", "PC", 0},
    {501, "Cal", "Cal", "Cal", 1},
    {502, "Email", "Email", "Email", 2},
    {503, "Multimedia", "Multimedia", "Multimedia", 3},
    {504, "Play/Pause", "Play/Pause", "Play/Pause", 4},
    {505, "Stop", "Stop", "Stop", 5},
    {506, "Pre", "Pre", "Pre", 6},
    {507, "Next", "Next", "Next", 7},
    {509, "Vol Down", "Vol Down", "Vol Down", 8},
    {508, "Vol Up", "Vol Up", "Vol Up", 9},
    {510, "Vol Mute", "Vol Mute", "Vol Mute", 10},
    {511, "Web Home", "Web Home", "Web Home", 11},
    {512, "Web Refresh", "Web Refresh", "Web Refresh", 12},
    {513, "Web Stop", "Web Stop", "Web Stop", 13},
    {514, "Web Backward", "Web Backward", "Web Backward", 14},
    {515, "Web Foreward", "Web Foreward", "Web Foreward", 15},
    {516, "Favorites", "Favorites", "Favorites", 16},
    {517, "Web Search", "Web Search", "Web Search", 17},
    {41, "escape", "Esc", "Escape", 18},
    {58, "f1", "F1", "F1", 19},
    {59, "f2", "F2", "F2", 20},
    {60, "f3", "F3", "F3", 21},
    {61, "f4", "F4", "F4", 22},
    {62, "f5", "F5", "F5", 23},
    {63, "f6", "F6", "F6", 24},
    {64, "f7", "F7", "F7", 25},
    {65, "f8", "F8", "F8", 26},
    {66, "f9", "F9", "F9", 27},
    {67, "f10", "F10", "F10", 28},
    {68, "f11", "F11", "F11", 29},
    {69, "f12", "F12", "F12", 30},
    {70, "printScreen", "PRTSC", "Print Screen", 31},
    {71, "scrollLock", "SCRLK", "Scroll Lock", 32},
    {72, "pause", "Pause", "Pause", 33},
    {53, "backtick", "`", "backtick", 34},
    {30, "i1", "1", "1", 35},
    {31, "i2", "2", "2", 36},
    {32, "i3", "3", "3", 37},
    {33, "i4", "4", "4", 38},
    {34, "i5", "5", "5", 39},
    {35, "i6", "6", "6", 40},
    {36, "i7", "7", "7", 41},
    {37, "i8", "8", "8", 42},
    {38, "i9", "9", "9", 43},
    {39, "i0", "0", "0", 44},
    {45, "minus", "-", "-", 45},
    {46, "equal", "=", "=", 46},
    {137, "K14", "K14", "K14", 47},
    {42, "backspace", "Back", "Backspace", 48},
    {73, "insert", "Ins", "Insert", 49},
    {74, "home", "Home", "Home", 50},
    {75, "pageUp", "Page Up", "Page Up", 51},
    {83, "Num", "Num", "Num", 52},
    {84, "/", "/", "/", 53},
    {85, "*", "*", "*", 54},
    {86, "-", "-", "-", 55},
    {43, "tab", "Tab", "Tab", 56},
    {20, "q", "Q", "Q", 57},
    {26, "w", "W", "W", 58},
    {8, "e", "E", "E", 59},
    {21, "r", "R", "R", 60},
    {23, "t", "T", "T", 61},
    {28, "y", "Y", "Y", 62},
    {24, "u", "U", "U", 63},
    {12, "i", "I", "I", 64},
    {18, "o", "O", "O", 65},
    {19, "p", "P", "P", 66},
    {47, "leftBracket", "[", "[", 67},
    {48, "rightBracket", "]", "]", 68},
    {49, "backslash", "\\", "\\", 69},
    {76, "delete", "Del", "Delete", 70},
    {77, "end", "End", "End", 71},
    {78, "pageDown", "Page Down", "Page Down", 72},
    {95, "NumPad 7", "7", "NumPad 7", 73},
    {96, "NumPad 8", "8", "NumPad 8", 74},
    {97, "NumPad 9", "9", "NumPad 9", 75},
    {57, "capsLock", "CAPS", "Caps Lock", 76},
    {4, "a", "A", "A", 77},
    {22, "s", "S", "S", 78},
    {7, "d", "D", "D", 79},
    {9, "f", "F", "F", 80},
    {10, "g", "G", "G", 81},
    {11, "h", "H", "H", 82},
    {13, "j", "J", "J", 83},
    {14, "k", "K", "K", 84},
    {15, "l", "L", "L", 85},
    {51, "semicolon", ";", ";", 86},
    {52, "quote", "'", "'", 87},
    {50, "k42", "k42", "k42", 88},
    {40, "enter", "Enter", "Enter", 89},
    {92, "NumPad 4", "NumPad 4", "NumPad 4", 90},
    {93, "NumPad 5", "NumPad 5", "NumPad 5", 91},
    {94, "NumPad 4=6", "NumPad 6", "NumPad 6", 92},
    {87, "+", "+", "+", 93},
    {225, "leftShift", "Shift", "Left Shift", 94},
    {100, "k45", "k45", "k45", 95},
    {29, "z", "Z", "Z", 96},
    {27, "x", "X", "X", 97},
    {6, "c", "C", "C", 98},
    {25, "v", "V", "V", 99},
    {5, "b", "B", "B", 100},
    {17, "n", "N", "N", 101},
    {16, "m", "M", "M", 102},
    {54, "comma", "<", "<", 103},
    {55, "period", ">", ">", 104},
    {56, "slash", "?", "?", 105},
    {135, "k56", "k56", "k56", 106},
    {229, "rightShift", "Shift", "Shift", 107},
    {82, "upArrow", "Up", "Up", 108},
    {89, "NumPad 1", "1", "NumPad 1", 109},
    {90, "NumPad 2", "2", "NumPad 2", 110},
    {91, "NumPad 3", "3", "NumPad 3", 111},
    {224, "leftControl", "Left Ctrl", "Left Control", 112},
    {226, "leftAlt", "Option", "Option", 113},
    {227, "leftWin", "Command", "Command", 114},
    {145, "k150", "k150", "k150", 115},
    {44, "space", "Space", "Space", 116},
    {144, "k151", "k151", "k151", 117},
    {230, "rightAlt", "Option", "Option", 118},
    {231, "rightWin", "Command", "Command", 119},
    {175, "fn", "Fn", "Fn", 120},
    {101, "menu", "Menu", "Menu", 121},
    {228, "rightControl", "Right Ctrl", "Right Control", 122},
    {80, "leftArrow", "Left Arrow", "Left Arrow", 123},
    {81, "downArrow", "Down Arrow", "Down Arrow", 124},
    {79, "rightArrow", "Right Arrow", "Right Arrow", 125},
    {98, "NumPad 0", "0", "NumPad 0", 126},
    {99, ".", ".", ".", 127},
    {88, "Enter", "Enter", "Enter", 128},
};

}  // namespace

const FuncCodeMap& CustomKeyFuncCodeMap() {
    static const FuncCodeMap map = [] {
        std::vector<CustomKeyFuncCodeEntry> entries;
        entries.reserve(std::size(kFuncCodeRows));
        for (const FuncCodeRow& r : kFuncCodeRows) {
            entries.push_back({r.code, r.keyName, r.shortName, r.fullName, r.layoutIndex});
        }
        return FuncCodeMap(std::move(entries));
    }();
    return map;
}

}  // namespace qx9
