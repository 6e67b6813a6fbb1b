// The backlight page's parameter controls: colour, random colour, brightness, speed, direction
// and sleep time.
#include "common/fatal.h"
#include "session/keyboard_session.h"
#include "session/lighting_page.h"
#include "ops/settings.h"

namespace qx9 {

// ---- The page's parameter controls ----

void LightingPage::colorButtonAction(ColorButtonPress press) {
    const bool preset = press.preset >= 1 && press.preset <= kPresetColorCount;
    switch (press.kind) {
        case ColorButtonPress::kLightSwatch:
            colorPanel_ = ColorPanelAction::LightColor;
            changed();
            break;
        case ColorButtonPress::kLightPreset: {
            if (!preset) return;
            const LightColor c = getColorValue(press.preset);
            swatch_ = rgbValue(c);
            // The preset goes into the per-key page's number fields, not into this page's own.
            userLights_.setUserLightColorFields(colorComponentByte(c.red), colorComponentByte(c.green), colorComponentByte(c.blue));
            setLightKeyboardCheckColor(c);
            break;
        }
        case ColorButtonPress::kUserLightSwatch:
            colorPanel_ = ColorPanelAction::UserLightColor;
            changed();
            break;
        case ColorButtonPress::kUserLightPreset:
            if (preset) userLights_.userLightPresetColor(press.preset);
            break;
    }
}

void LightingPage::lightColorPanel(const LightColor& color) {
    editColor_[0] = std::to_string(colorComponentByte(color.red));
    editColor_[1] = std::to_string(colorComponentByte(color.green));
    editColor_[2] = std::to_string(colorComponentByte(color.blue));
    setLightKeyboardCheckColor(color);
}

void LightingPage::colorPanelClosed() {
    colorPanel_ = ColorPanelAction::Closed;
    changed();
}

void LightingPage::controlTextDidChange(ColorChannel channel, const std::string& text) {
    const auto field = static_cast<std::size_t>(channel);
    editColor_[field] = validatedColorField(text);
    const std::int64_t value = colorFieldValue(editColor_[field]);
    changed();
    setLightRGBValue(field == 0 ? value : 0, field == 1 ? value : 0, field == 2 ? value : 0);
}

void LightingPage::setLightRGBValue(std::int64_t r_value, std::int64_t g_value,
                                    std::int64_t b_value) {
    // A zero argument takes the field: a real zero and no change are the same request.
    const std::int64_t r = r_value != 0 ? r_value : colorFieldValue(editColor_[0]);
    const std::int64_t g = g_value != 0 ? g_value : colorFieldValue(editColor_[1]);
    const std::int64_t b = b_value != 0 ? b_value : colorFieldValue(editColor_[2]);
    // Whole-number division: every colour typed into the fields is 0 or 255 per channel.
    setLightKeyboardCheckColor(coarseColorFromBytes(r, g, b));
}

void LightingPage::setLightKeyboardCheckColor(const LightColor& color) {
    paintAllKeys(rgbValue(color));
    changed();
    changeRecord([&](const ops::Target& t) {
        return ops::setLightColour(t, core_.currentProfile, core_.currentLightSelection,
                                   static_cast<std::uint8_t>(colorComponentByte(color.red)),
                                   static_cast<std::uint8_t>(colorComponentByte(color.green)),
                                   static_cast<std::uint8_t>(colorComponentByte(color.blue)));
    });
}

void LightingPage::lightRondomColorSwitch() {
    random_.on = !random_.on;
    changed();
    backlightColorModeStatus(random_.on);
}

void LightingPage::backlightColorModeStatus(bool status) {
    LightRecord record{};
    readRecord(core_.currentLightMode, record);  // none yet: zeros; the change below writes the profile's rows
    enableColorButton(!status);
    if (status) {
        loadColorfulLight();
    } else {
        // The exact stored colour, unlike the coarse preview of a mode selection.
        const std::uint32_t exact =
            rgbValue(lightColorOf(record[ops::kLightRed], record[ops::kLightGreen], record[ops::kLightBlue]));
        paintAllKeys(exact);
        swatch_ = exact;
    }
    changed();
    changeRecord([&](const ops::Target& t) {
        return ops::setRandomColour(t, core_.currentProfile, core_.currentLightSelection, status);
    });
}

void LightingPage::enableColorButton(bool enable) {
    colorEnabled_ = enable;
    changed();
}

void LightingPage::loadColorfulLight() {
    keyColours_ = colorfulLightColours(keys_.keys());
    changed();
}

void LightingPage::backlightBrightnessChange(std::int64_t value) {
    if (value < 0 || value > 255) fatalError("brightness " + std::to_string(value) + " outside a byte");
    brightness_.value = static_cast<int>(value & kSliderMaximum);
    changed();
    changeRecord([&](const ops::Target& t) {
        return ops::setBrightness(t, core_.currentProfile, core_.currentLightSelection, value);
    });
}

void LightingPage::backlightSpeedChange(std::int64_t value) {
    if (value < 0 || value > 255) fatalError("speed " + std::to_string(value) + " outside a byte");
    speed_.value = static_cast<int>(value & kSliderMaximum);
    changed();
    changeRecord([&](const ops::Target& t) {
        return ops::setSpeed(t, core_.currentProfile, core_.currentLightSelection, value);
    });
}

void LightingPage::light_button_direction(ops::Direction direction) { backlightDirection(direction); }

void LightingPage::showDirection(std::int64_t direction) {
    if (direction == ops::kLeft || direction == ops::kRight) {
        direction_[ops::kRight].on = direction == ops::kRight;
        direction_[ops::kLeft].on = direction == ops::kLeft;
    } else if (direction == ops::kUp || direction == ops::kDown) {
        direction_[ops::kUp].on = direction == ops::kUp;
        direction_[ops::kDown].on = direction == ops::kDown;
    }
}

void LightingPage::backlightDirection(std::int64_t type) {
    if (type < 0 || type > 255) fatalError("direction " + std::to_string(type) + " outside a byte");
    showDirection(type);
    changed();
    changeRecord([&](const ops::Target& t) {
        return ops::setDirection(t, core_.currentProfile, core_.currentLightSelection, type);
    });
}

void LightingPage::light_button_lightsleeptime(int value) {
    if (value >= 0 && value < ops::kSleepTimeCount) return backlightSleepTime(value);
    // Not a choice: nothing changes, and the stored value is sent all the same.
    if (const std::optional<ops::Target> target = core_.target()) {
        core_.report(ops::sendSystemFunctions(*target, settings_.switches()));
    }
}

void LightingPage::backlightSleepTime(std::int64_t type) {
    sleepChoice_ = type >= 0 && type < ops::kSleepTimeCount ? static_cast<int>(type) : -1;
    changed();
    // One sleep time for the keyboard: kept under profile 1 whatever profile is current.
    const std::optional<ops::Target> target = core_.target();
    if (sleepChoice_ >= 0 && target) core_.report(ops::setSleepTime(*target, type, settings_.switches()));
}

}  // namespace qx9
