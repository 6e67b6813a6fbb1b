#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "ops/lighting.h"
#include "layout/light_colours.h"
#include "store/records.h"

namespace qx9 {

class KeyPage;
struct SessionCore;
class SettingsPage;
class UserLightPage;

// A row of the backlight mode list.
struct LightModeRow {
    int textId = 0;
    std::string text;
    std::int64_t mode = 0;
};

// A switch or button of the page: enabled, hidden, on (checked).
struct LightToggle {
    bool enabled = true;
    bool hidden = false;
    bool on = false;
};

struct LightSlider {
    bool enabled = true;
    int value = 0;
};

// A press of one of the colour buttons the two lighting pages share: a page's swatch (which opens
// the colour panel) or one of its fourteen presets.
struct ColorButtonPress {
    enum Kind { kLightSwatch, kLightPreset, kUserLightSwatch, kUserLightPreset } kind = kLightSwatch;
    int preset = 0;  // 1–14 for a preset
};

// What the shared colour panel is open for.
enum class ColorPanelAction { Closed, LightColor, UserLightColor };

// The backlight page: the mode catalogue and its highlight, the parameter controls of the
// selected effect and the on-screen lighting keyboard's preview. The page's widgets mirror this
// state; the truth is the light record of (currentProfile, currentLightMode) and "sleeplight".
class LightingPage {
public:
    static constexpr int kModeRows = 20;

    // The sliders' range in the page layout; the sliders show stored values masked to 4 bits.
    static constexpr int kSliderMinimum = 0;
    static constexpr int kSliderMaximum = 15;

    LightingPage(SessionCore& core, const KeyPage& keys, const SettingsPage& settings, UserLightPage& userLights);

    // Mode list.
    const std::vector<LightModeRow>& light_mode_datas() const { return rows_; }
    int selectedRow() const { return selectedRow_; }
    // The first build, before any language is applied: modes 1–20 with placeholder texts.
    void initLightTableData();
    // The catalogue in the current language (rows 0–18 modes 1–19, row 19 mode 0), then the
    // highlight from the store.
    void rebuildModeList();
    void loadLightModeData();
    // Another program changed the database: the selected effect (of the profile it is kept
    // under), its highlight and controls, and the sleep time; nothing is sent.
    void reloadFromDatabase();
    void setLightModeTableSelect(int selectIndex);
    // The table "lightmode" reports a selection: highlight the row, then select its effect.
    void lightModeSelectionChanged(int row);
    // Stores the row's effect as the selection (under profile 1), shows its record of the current
    // profile in the controls and the preview, and sends it.
    void setBacklightMode(std::int64_t index);

    // Controls, under their field names.
    const std::string& light_edit_color_r() const { return editColor_[0]; }
    const std::string& light_edit_color_g() const { return editColor_[1]; }
    const std::string& light_edit_color_b() const { return editColor_[2]; }
    // The three fields, the swatch and the fourteen presets (`isDiasble` = not enabled).
    bool colorButtonsEnabled() const { return colorEnabled_; }
    std::uint32_t light_btn_color() const { return swatch_; }  // 0xRRGGBB
    const LightToggle& light_btn_randomcolor() const { return random_; }
    const LightSlider& light_slider_brightness() const { return brightness_; }
    const LightSlider& light_slider_speed() const { return speed_; }
    // The direction buttons (on: the direction the record holds).
    const LightToggle& directionButton(ops::Direction direction) const;
    const LightToggle& light_direction_top() const { return directionButton(ops::kUp); }
    const LightToggle& light_direction_right() const { return directionButton(ops::kRight); }
    const LightToggle& light_direction_left() const { return directionButton(ops::kLeft); }
    const LightToggle& light_direction_bottom() const { return directionButton(ops::kDown); }
    // The sleep-time choice shown (0–3), −1 when none.
    int sleepTimeChoice() const { return sleepChoice_; }
    ColorPanelAction colorPanel() const { return colorPanel_; }
    // The on-screen lighting keyboard: colour of each key in layout order as 0xRRGGBB.
    const std::vector<std::uint32_t>& keyColours() const { return keyColours_; }

    // Actions of the controls.
    // A colour button of either lighting page; a preset of this page also fills the per-key
    // page's number fields.
    void colorButtonAction(ColorButtonPress press);
    void lightColorPanel(const LightColor& color);
    // The user closed the colour panel.
    void colorPanelClosed();
    // A colour number field's text changed to `text`.
    void controlTextDidChange(ColorChannel channel, const std::string& text);
    void setLightRGBValue(std::int64_t r_value, std::int64_t g_value, std::int64_t b_value);
    void setLightKeyboardCheckColor(const LightColor& color);
    void lightRondomColorSwitch();  // light_btn_randomcolor clicked
    void backlightColorModeStatus(bool status);
    void enableColorButton(bool enable);
    void loadColorfulLight();
    void backlightBrightnessChange(std::int64_t value);  // light_slider_brightness moved
    void backlightSpeedChange(std::int64_t value);       // light_slider_speed moved
    void light_button_direction(ops::Direction direction);
    void backlightDirection(std::int64_t type);
    // A sleep-time choice (0–3); the system functions are sent with the stored value.
    void light_button_lightsleeptime(int value);
    void backlightSleepTime(std::int64_t type);

private:
    // Reads the record of (currentProfile, mode) into `record` (left zero without a store).
    // False when a store is present and the read fails.
    bool readRecord(std::int64_t mode, LightRecord& record) const;
    // Stores and sends a change of the current effect's record.
    void changeRecord(const std::function<ops::Outcome(const ops::Target&)>& change);
    void showModeControls(std::int64_t mode, const LightRecord& record);
    void paintAllKeys(std::uint32_t colour);
    void showDirection(std::int64_t direction);
    void changed();

    SessionCore& core_;
    const KeyPage& keys_;
    const SettingsPage& settings_;
    UserLightPage& userLights_;
    std::vector<LightModeRow> rows_;
    int selectedRow_ = -1;

    std::array<std::string, 3> editColor_{"0", "0", "0"};
    bool colorEnabled_ = true;
    std::uint32_t swatch_ = 0;
    LightToggle random_;
    LightSlider brightness_;
    LightSlider speed_;
    // By direction: left, right, up, down.
    std::array<LightToggle, 4> direction_{{{true, true, false}, {true, true, false}, {true, true, false}, {true, true, false}}};
    int sleepChoice_ = -1;
    ColorPanelAction colorPanel_ = ColorPanelAction::Closed;
    std::vector<std::uint32_t> keyColours_;
};

}  // namespace qx9
