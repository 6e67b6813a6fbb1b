#include "i18n/language_switch.h"

namespace qx9 {

namespace {

constexpr int W = kWholeControl;

constexpr SwitchedText kSwitchedTexts[] = {
    {"window", W, 30},
    // Key page.
    {"customkey_btn_toplayer", W, 90},
    {"customkey_btn_fnlayer", W, 91},
    {"customkey_btn_defaultkey", W, 601},
    {"customkey_btn_fnkey", W, 602},
    // Macro page.
    {"macro_label_macrolist", W, 180},
    {"macro_label_recordlist", W, 181},
    {"macro_btn_newmacro", W, 182},
    {"macro_btn_deletemacro", W, 183},
    {"macro_label_insertevent", W, 188},
    {"macro_btn_save", W, 193},
    {"keyboardevent_radiobutton", W, 189},
    {"delayevent_radiobutton", W, 191},
    {"mouseevent_radiobutton", W, 190},
    {"insertevent_button", W, 192},
    {"recorddelay_radiobutton", W, 184},
    {"nodelay_radiobutton", W, 185},
    {"defaultdelay_radiobutton", W, 186},
    {"record_button", W, 201},
    // Lighting page: the mode list, rows 0–19, then the labels.
    {"light_mode_datas", 0, 500},
    {"light_mode_datas", 1, 501},
    {"light_mode_datas", 2, 502},
    {"light_mode_datas", 3, 503},
    {"light_mode_datas", 4, 504},
    {"light_mode_datas", 5, 505},
    {"light_mode_datas", 6, 506},
    {"light_mode_datas", 7, 507},
    {"light_mode_datas", 8, 508},
    {"light_mode_datas", 9, 509},
    {"light_mode_datas", 10, 510},
    {"light_mode_datas", 11, 511},
    {"light_mode_datas", 12, 512},
    {"light_mode_datas", 13, 513},
    {"light_mode_datas", 14, 514},
    {"light_mode_datas", 15, 515},
    {"light_mode_datas", 16, 516},
    {"light_mode_datas", 17, 517},
    {"light_mode_datas", 18, 518},
    {"light_mode_datas", 19, 519},
    {"light_label_randomcolor", W, 530},
    {"light_label_brightness", W, 531},
    {"light_label_speed", W, 532},
    {"light_label_lightsleeptime", W, 535},
    {"light_label_lightsleep0", W, 536},
    {"light_label_lightsleep1", W, 537},
    {"light_label_lightsleep2", W, 538},
    {"light_label_lightsleep3", W, 539},
    // Per-key lighting page.
    {"userlight_btn_resetcolor", W, 560},
    {"userlight_btn_apply", W, 561},
    // Settings page.
    {"config_label_language", W, 603},
    {"btn_resetmousedata", W, 610},
    {"btn_resetalldata", W, 611},
    {"config_label_gamemode", W, 605},
    {"config_label_lockwin", W, 606},
    {"config_btn_disable_gamemode", W, 607},
    // Macro editor pop-ups.
    {"insertevent_combox", 0, 230},
    {"insertevent_combox", 1, 231},
    {"mousevent_combox", 0, 232},
    {"mousevent_combox", 1, 233},
    {"mousevent_combox", 2, 234},
};

}  // namespace

std::span<const SwitchedText> languageSwitchTexts() {
    return kSwitchedTexts;
}

}  // namespace qx9
