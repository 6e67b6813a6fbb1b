#include "layout/key_maps.h"

#include <string>

#include "common/fatal.h"

namespace qx9 {

template <typename Key, typename Entry>
KeyTable<Key, Entry>::KeyTable(std::vector<Entry> entries) : entries_(std::move(entries)) {
    index_.reserve(entries_.size());
    for (std::size_t i = 0; i < entries_.size(); ++i) {
        if constexpr (std::is_same_v<Key, int>) {
            index_.emplace(entries_[i].code, i);
        } else {
            index_.emplace(entries_[i].name, i);
        }
    }
}

template <typename Key, typename Entry>
const Entry* KeyTable<Key, Entry>::find(const Key& key) const {
    auto it = index_.find(key);
    return it == index_.end() ? nullptr : &entries_[it->second];
}

template <typename Key, typename Entry>
const Entry& KeyTable<Key, Entry>::at(const Key& key) const {
    if (const Entry* e = find(key)) return *e;
    if constexpr (std::is_same_v<Key, int>) {
        fatalError("key code " + std::to_string(key) + " is not in the key code map in force");
    } else {
        fatalError("key name \"" + key + "\" is not in the key name map in force");
    }
}

template class KeyTable<std::string, KeyNameEntry>;
template class KeyTable<int, KeyCodeEntry>;

KeyNameMap G_KB_SuperKeyNameMap;
KeyCodeMap G_KB_SuperKeyCodeMap;

namespace {

constexpr std::optional<Keyboard_EN_Type> kFlag = Keyboard_EN_Type::flag;
constexpr std::optional<Keyboard_EN_Type> kNone = std::nullopt;

struct NameRow {
    const char* name;
    int code;
    const char* shortName;
    const char* fullName;
    bool flag;
};

struct CodeRow {
    int code;
    const char* name;
    const char* shortName;
    const char* fullName;
    bool flag;
    int layoutIndex;
    int keyIndex;
    int r, g, b;
};

// The 109 names of the full-size master set, in table order. leftWin is "Option" with code
// 227 and leftAlt is "Command" with 226, as on a Mac keyboard.
constexpr NameRow kNameRows[] = {
    {"escape", 41, "Esc", "Escape", false},
    {"f1", 58, "F1", "F1", false},
    {"f2", 59, "F2", "F2", false},
    {"f3", 60, "F3", "F3", false},
    {"f4", 61, "F4", "F4", false},
    {"f5", 62, "F5", "F5", false},
    {"f6", 63, "F6", "F6", false},
    {"f7", 64, "F7", "F7", false},
    {"f8", 65, "F8", "F8", false},
    {"f9", 66, "F9", "F9", false},
    {"f10", 67, "F10", "F10", false},
    {"f11", 68, "F11", "F11", false},
    {"f12", 69, "F12", "F12", false},
    {"printScreen", 70, "PRTSC", "Print Screen", false},
    {"scrollLock", 71, "SCRLK", "Scroll Lock", false},
    {"pause", 72, "Pause", "Pause", false},
    {"calc", 209, "Cal", "Calculator", false},
    {"volumeMute", 210, "Volume Mute", "Volume Mute", false},
    {"volumeDown", 211, "Volume Down", "Volume Down", false},
    {"volumeUp", 212, "Volume Up", "Volume UP", false},
    {"backtick", 53, "`", "backtick", false},
    {"i1", 30, "1", "1", false},
    {"i2", 31, "2", "2", false},
    {"i3", 32, "3", "3", false},
    {"i4", 33, "4", "4", false},
    {"i5", 34, "5", "5", false},
    {"i6", 35, "6", "6", false},
    {"i7", 36, "7", "7", false},
    {"i8", 37, "8", "8", false},
    {"i9", 38, "9", "9", false},
    {"i0", 39, "0", "0", false},
    {"minus", 45, "-", "-", false},
    {"equal", 46, "=", "=", false},
    {"backspace", 42, "<-", "<-", false},
    {"insert", 73, "Ins", "Insert", false},
    {"home", 74, "Home", "Home", false},
    {"pageUp", 75, "Page Up", "Page Up", false},
    {"numpadLock", 83, "Numpad Lock", "Numpad Lock", false},
    {"numpadDivide", 84, "Numpad /", "Numpad /", false},
    {"numpadMultiply", 85, "Numpad *", "Numpad *", false},
    {"numpadMinus", 86, "Numpad -", "Numpad -", false},
    {"tab", 43, "Tab", "Tab", false},
    {"q", 20, "Q", "Q", false},
    {"w", 26, "W", "W", false},
    {"e", 8, "E", "E", false},
    {"r", 21, "R", "R", false},
    {"t", 23, "T", "T", false},
    {"y", 28, "Y", "Y", false},
    {"u", 24, "U", "U", false},
    {"i", 12, "I", "I", false},
    {"o", 18, "O", "O", false},
    {"p", 19, "P", "P", false},
    {"leftBracket", 47, "[", "[", false},
    {"rightBracket", 48, "]", "]", false},
    {"backslash", 49, "\\", "\\", false},
    {"delete", 76, "Del", "Delete", false},
    {"end", 77, "End", "End", false},
    {"pageDown", 78, "Page Down", "Page Down", false},
    {"numpad7", 95, "Numpad 7", "Numpad 7", false},
    {"numpad8", 96, "Numpad 8", "Numpad 8", false},
    {"numpad9", 97, "Numpad 9", "Numpad 9", false},
    {"numpadAdd", 87, "Numpad +", "Numpad +", false},
    {"capsLock", 57, "Caps", "Caps", true},
    {"a", 4, "A", "A", false},
    {"s", 22, "S", "S", false},
    {"d", 7, "D", "D", false},
    {"f", 9, "F", "F", false},
    {"g", 10, "G", "G", false},
    {"h", 11, "H", "H", false},
    {"j", 13, "J", "J", false},
    {"k", 14, "K", "K", false},
    {"l", 15, "L", "L", false},
    {"semicolon", 51, ";", ";", false},
    {"quote", 52, "'", "'", false},
    {"enter", 40, "Enter", "Enter", false},
    {"numpad4", 92, "Numpad 4", "Numpad 4", false},
    {"numpad5", 93, "Numpad 5", "Numpad 5", false},
    {"numpad6", 94, "Numpad 6", "Numpad 6", false},
    {"leftShift", 225, "Shift", "Shift", true},
    {"z", 29, "Z", "Z", false},
    {"x", 27, "X", "X", false},
    {"c", 6, "C", "C", false},
    {"v", 25, "V", "V", false},
    {"b", 5, "B", "B", false},
    {"n", 17, "N", "N", false},
    {"m", 16, "M", "M", false},
    {"comma", 54, "<", "<", false},
    {"period", 55, ">", ">", false},
    {"slash", 56, "?", "?", false},
    {"rightShift", 229, "Shift", "Shift", true},
    {"upArrow", 82, "Up", "Up", false},
    {"numpad1", 89, "Numpad 1", "Numpad 1", false},
    {"numpad2", 90, "Numpad 2", "Numpad 2", false},
    {"numpad3", 91, "Numpad 3", "Numpad 3", false},
    {"numpadEnter", 88, "Numpad Enter", "Numpad Enter", false},
    {"leftControl", 224, "Control", "Control", true},
    {"leftWin", 227, "Option", "Option", true},
    {"leftAlt", 226, "Command", "Command", true},
    {"space", 44, "Space", "Space", false},
    {"rightAlt", 230, "Option", "Option", true},
    {"rightWin", 231, "Right Cmd", "Right Cmd", true},
    {"menu", 101, "Menu", "Menu", false},
    {"fn", 175, "Fn", "Fn", false},
    {"rightControl", 228, "Right Ctrl", "Right Control", true},
    {"leftArrow", 80, "Left Arrow", "Left Arrow", false},
    {"downArrow", 81, "Down Arrow", "Down Arrow", false},
    {"rightArrow", 79, "Right Arrow", "Right Arrow", false},
    {"numpad0", 98, "Numpad 0", "Numpad 0", false},
    {"numpadPeriod", 99, "Numpad Period", "Numpad Period", false},
};

// The 80 codes of the QX9: its 66 keys plus F1–F12, backtick and right control, which share
// positions with keys of the layout (the F-keys sit on the number row of the Fn layer).
// "light_index" equals "key_index" for every key.
constexpr CodeRow kCodeRows[] = {
    {41, "escape", "Esc", "Escape", false, 0, 1, 69, 0, 255},
    {58, "f1", "F1", "F1", false, 1, 2, 255, 0, 78},
    {59, "f2", "F2", "F2", false, 2, 3, 255, 0, 0},
    {60, "f3", "F3", "F3", false, 3, 4, 255, 69, 0},
    {61, "f4", "F4", "F4", false, 4, 5, 255, 255, 0},
    {62, "f5", "F5", "F5", false, 5, 6, 0, 255, 0},
    {63, "f6", "F6", "F6", false, 6, 7, 0, 255, 69},
    {64, "f7", "F7", "F7", false, 7, 8, 0, 255, 255},
    {65, "f8", "F8", "F8", false, 8, 9, 0, 255, 255},
    {66, "f9", "F9", "F9", false, 9, 10, 0, 255, 69},
    {67, "f10", "F10", "F10", false, 10, 11, 0, 255, 0},
    {68, "f11", "F11", "F11", false, 11, 12, 78, 255, 0},
    {69, "f12", "F12", "F12", false, 12, 13, 78, 255, 0},
    {53, "backtick", "`", "backtick", false, 13, 19, 255, 0, 255},
    {30, "i1", "1", "1", false, 1, 20, 255, 0, 78},
    {31, "i2", "2", "2", false, 2, 21, 255, 0, 0},
    {32, "i3", "3", "3", false, 3, 22, 255, 69, 0},
    {33, "i4", "4", "4", false, 4, 23, 255, 255, 0},
    {34, "i5", "5", "5", false, 5, 24, 78, 255, 0},
    {35, "i6", "6", "6", false, 6, 25, 0, 255, 0},
    {36, "i7", "7", "7", false, 7, 26, 0, 255, 69},
    {37, "i8", "8", "8", false, 8, 27, 0, 255, 255},
    {38, "i9", "9", "9", false, 9, 28, 0, 78, 255},
    {39, "i0", "0", "0", false, 10, 29, 0, 78, 255},
    {45, "minus", "-", "-", false, 11, 30, 0, 255, 255},
    {46, "equal", "=", "=", false, 12, 31, 0, 255, 69},
    {42, "backspace", "Back", "Backspace", false, 13, 103, 0, 255, 0},
    {43, "tab", "Tab", "Tab", false, 14, 37, 255, 0, 78},
    {20, "q", "Q", "Q", false, 15, 38, 255, 0, 0},
    {26, "w", "W", "W", false, 16, 39, 255, 69, 0},
    {8, "e", "E", "E", false, 17, 40, 255, 255, 0},
    {21, "r", "R", "R", false, 18, 41, 78, 255, 0},
    {23, "t", "T", "T", false, 19, 42, 0, 255, 0},
    {28, "y", "Y", "Y", false, 20, 43, 0, 255, 69},
    {24, "u", "U", "U", false, 21, 44, 0, 255, 255},
    {12, "i", "I", "I", false, 22, 45, 0, 78, 255},
    {18, "o", "O", "O", false, 23, 46, 0, 0, 255},
    {19, "p", "P", "P", false, 24, 47, 0, 78, 255},
    {47, "leftBracket", "[", "[", false, 25, 48, 0, 255, 255},
    {48, "rightBracket", "]", "]", false, 26, 49, 0, 255, 69},
    {49, "backslash", "\\", "\\", false, 27, 67, 0, 255, 0},
    {76, "delete", "Del", "Delete", false, 28, 119, 78, 255, 0},
    {57, "capsLock", "CAPS", "Caps Lock", true, 29, 55, 255, 0, 78},
    {4, "a", "A", "A", false, 30, 56, 255, 0, 0},
    {22, "s", "S", "S", false, 31, 57, 255, 69, 0},
    {7, "d", "D", "D", false, 32, 58, 255, 255, 0},
    {9, "f", "F", "F", false, 33, 59, 78, 255, 0},
    {10, "g", "G", "G", false, 34, 60, 0, 255, 0},
    {11, "h", "H", "H", false, 35, 61, 0, 255, 69},
    {13, "j", "J", "J", false, 36, 62, 0, 255, 255},
    {14, "k", "K", "K", false, 37, 63, 0, 78, 255},
    {15, "l", "L", "L", false, 38, 64, 0, 78, 255},
    {51, "semicolon", ";", ";", false, 39, 65, 0, 255, 255},
    {52, "quote", "'", "'", false, 40, 66, 0, 255, 69},
    {40, "enter", "Enter", "Enter", false, 41, 85, 0, 255, 0},
    {75, "pageUp", "Page Up", "Page Up", false, 42, 118, 255, 69, 0},
    {225, "leftShift", "Shift", "Left Shift", true, 43, 73, 255, 0, 255},
    {29, "z", "Z", "Z", false, 44, 74, 255, 0, 0},
    {27, "x", "X", "X", false, 45, 75, 255, 69, 0},
    {6, "c", "C", "C", false, 46, 76, 255, 255, 0},
    {25, "v", "V", "V", false, 47, 77, 78, 255, 0},
    {5, "b", "B", "B", false, 48, 78, 0, 255, 0},
    {17, "n", "N", "N", false, 49, 79, 0, 255, 69},
    {16, "m", "M", "M", false, 50, 80, 0, 255, 255},
    {54, "comma", "<", "<", false, 51, 81, 0, 255, 255},
    {55, "period", ">", ">", false, 52, 82, 0, 255, 255},
    {56, "slash", "?", "?", false, 53, 83, 0, 255, 69},
    {229, "rightShift", "Shift", "Shift", true, 54, 84, 0, 255, 0},
    {82, "upArrow", "Up", "Up", false, 55, 101, 255, 255, 0},
    {78, "pageDown", "Page Down", "Page Down", false, 56, 121, 255, 69, 0},
    {224, "leftControl", "Left Ctrl", "Left Control", true, 57, 91, 255, 0, 255},
    {226, "leftAlt", "Option", "Option", true, 58, 93, 255, 0, 255},
    {227, "leftWin", "Left Cmd", "Left Command", true, 59, 92, 255, 0, 0},
    {44, "space", "Space", "Space", false, 60, 94, 78, 255, 0},
    {230, "rightAlt", "Option", "Option", true, 61, 95, 0, 255, 69},
    {175, "fn", "Fn", "Fn", false, 62, 96, 0, 255, 0},
    {228, "rightControl", "Right Ctrl", "Right Control", true, 63, 98, 78, 255, 0},
    {80, "leftArrow", "Left Arrow", "Left Arrow", false, 63, 99, 255, 255, 0},
    {81, "downArrow", "Down Arrow", "Down Arrow", false, 64, 100, 255, 69, 0},
    {79, "rightArrow", "Right Arrow", "Right Arrow", false, 65, 102, 255, 0, 0},
};

}  // namespace

const KeyNameMap& KB_108K_SuperKeyNameMap() {
    static const KeyNameMap map = [] {
        std::vector<KeyNameEntry> entries;
        entries.reserve(std::size(kNameRows));
        for (const NameRow& r : kNameRows) {
            entries.push_back({r.name, r.code, r.shortName, r.fullName, r.flag ? kFlag : kNone});
        }
        return KeyNameMap(std::move(entries));
    }();
    return map;
}

const KeyCodeMap& KB_108K_SuperKeyCodeMap() {
    static const KeyCodeMap map = [] {
        std::vector<KeyCodeEntry> entries;
        entries.reserve(std::size(kCodeRows));
        for (const CodeRow& r : kCodeRows) {
            entries.push_back({r.code, r.name, r.shortName, r.fullName, r.flag ? kFlag : kNone,
                               r.layoutIndex, r.keyIndex, r.keyIndex, r.r, r.g, r.b});
        }
        return KeyCodeMap(std::move(entries));
    }();
    return map;
}

void installKB108KMaps() {
    G_KB_SuperKeyNameMap = KB_108K_SuperKeyNameMap();
    G_KB_SuperKeyCodeMap = KB_108K_SuperKeyCodeMap();
}

}  // namespace qx9
