#pragma once

namespace qx9 {

// Ids of the string tables that the logic itself looks up (the pages give their buttons and
// labels their ids where they create them).
namespace textid {
inline constexpr int kConfigurationFile1 = 67;  // 68, 69: the second and third default names
inline constexpr int kConfigurationFile = 70;   // prefix of new profile names
inline constexpr int kDeleteProfile = 71;
inline constexpr int kLastProfile = 72;
inline constexpr int kKeyMenuDefault = 101;
inline constexpr int kDisableKeys = 102;
inline constexpr int kKeyMenuCustom = 103;
inline constexpr int kCustomKey = 111;
inline constexpr int kSelectKeyFirst = 112;
inline constexpr int kFunctionTypeDefault = 120;  // …125: the function-type list
inline constexpr int kMouseFirst = 131;           // …138: the mouse functions
inline constexpr int kMultimediaFirst = 145;      // …151
inline constexpr int kMacShortcutFirst = 156;     // …161
inline constexpr int kPlayOnce = 168;             // 169 repeat, 170 until pressed again
inline constexpr int kMacroList = 180;
inline constexpr int kMacroRecordList = 181;  // "Macro Recod"
inline constexpr int kDefaultDelayRadio = 186;
inline constexpr int kInsertEvent = 188;
inline constexpr int kKeyboardEventRadio = 189;
inline constexpr int kMouseEventRadio = 190;
inline constexpr int kDelayEventRadio = 191;
inline constexpr int kStopRecord = 200;
inline constexpr int kRecord = 201;
inline constexpr int kMacro = 210;
inline constexpr int kDeleteMacro = 211;
inline constexpr int kSelectMacro = 212;
inline constexpr int kMouseLeftDown = 220;  // then up; middle 222/223, right 224/225
inline constexpr int kInsertBefore = 230;   // 231: after
inline constexpr int kMouseLeft = 232;      // 233 middle, 234 right
inline constexpr int kEffectFirst = 500;    // …519: the backlight effects in list order
inline constexpr int kUserLight = 566;
inline constexpr int kPleaseAddUserLights = 567;
inline constexpr int kResetKeys = 610;
inline constexpr int kResetAll = 611;
inline constexpr int kResetKeysQuestion = 620;
inline constexpr int kResetAllQuestion = 621;
}  // namespace textid

}  // namespace qx9
