// The backlight page's parameter controls: colour, random colour, brightness, speed, direction
// and sleep time, and the colour helpers both lighting pages share.
#include "session/backlight_parameters.h"

#include <cctype>
#include <cmath>
#include <limits>

#include "common/fatal.h"
#include "layout/key_maps.h"
#include "session/keyboard_session.h"
#include "session/lighting_page.h"

namespace qx9 {

namespace {

int roundedByte(double component) {
    const double v = std::round(component * 255.0);
    if (!(v >= 0.0)) return 0;
    return v > 255.0 ? 255 : static_cast<int>(v);
}

// The integer at the start of a text: leading blanks, an optional sign, digits; saturated at the
// limits of a 64-bit integer; 0 when there are no digits.
std::int64_t leadingInteger(const std::string& text) {
    std::size_t i = 0;
    while (i < text.size() && std::isspace(static_cast<unsigned char>(text[i]))) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '+' || text[i] == '-')) negative = text[i++] == '-';
    constexpr std::int64_t kMax = std::numeric_limits<std::int64_t>::max();
    std::int64_t value = 0;
    for (; i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])); ++i) {
        const int d = text[i] - '0';
        if (value > (kMax - d) / 10)
            return negative ? std::numeric_limits<std::int64_t>::min() : kMax;
        value = value * 10 + d;
    }
    return negative ? -value : value;
}

}  // namespace

LightColor coarseColorFromBytes(std::int64_t red, std::int64_t green, std::int64_t blue) {
    return {static_cast<double>(red / 255), static_cast<double>(green / 255),
            static_cast<double>(blue / 255)};
}

int componentByte(double component) {
    const double v = component * 255.0;
    if (!std::isfinite(v) || v <= -1.0 || v >= 256.0)
        fatalError("a colour component outside a byte");
    return static_cast<int>(v);
}

std::uint32_t rgbValue(const LightColor& c) {
    return static_cast<std::uint32_t>(roundedByte(c.red)) << 16 |
           static_cast<std::uint32_t>(roundedByte(c.green)) << 8 |
           static_cast<std::uint32_t>(roundedByte(c.blue));
}

LightColor getColorValue(std::int64_t index) {
    const RgbColor c =
        presetLightColor(index >= 1 && index <= kPresetColorCount ? static_cast<int>(index) : 1);
    return lightColorOf(c.r, c.g, c.b);
}

std::vector<std::uint32_t> colorfulLightColours(const std::vector<KeyData>& keys) {
    std::vector<std::uint32_t> colours;
    colours.reserve(keys.size());
    for (const KeyData& k : keys) {
        const KeyCodeEntry& e = G_KB_SuperKeyCodeMap.at(static_cast<int>(k.keycode));
        colours.push_back(rgbValue(coarseColorFromBytes(e.rgb_r, e.rgb_g, e.rgb_b)));
    }
    return colours;
}

std::int64_t colorFieldValue(const std::string& text) {
    return leadingInteger(text);
}

// ---- The page's parameter controls ----

void LightingPage::colorButtonAction(int tag) {
    if (tag == kTagColorSwatch) {
        colorPanel_ = ColorPanelAction::LightColor;
        changed();
    } else if (tag >= kTagFirstPreset && tag <= kTagLastPreset) {
        const LightColor c = getColorValue(tag - 100);
        swatch_ = rgbValue(c);
        // The preset goes into the per-key page's number fields, not into this page's own.
        s_.userLights.setUserLightColorFields(componentByte(c.red), componentByte(c.green),
                                              componentByte(c.blue));
        setLightKeyboardCheckColor(c);
    } else if (tag == kTagUserLightSwatch) {
        colorPanel_ = ColorPanelAction::UserLightColor;
        changed();
    } else if (tag >= kTagUserLightFirstPreset && tag <= kTagUserLightLastPreset) {
        s_.userLights.userLightPresetColor(tag);
    }
}

void LightingPage::lightColorPanel(const LightColor& color) {
    editColor_[0] = std::to_string(componentByte(color.red));
    editColor_[1] = std::to_string(componentByte(color.green));
    editColor_[2] = std::to_string(componentByte(color.blue));
    setLightKeyboardCheckColor(color);
}

void LightingPage::controlTextDidChange(int tag, const std::string& text) {
    if (tag < kTagEditRed || tag > kTagEditBlue) return;
    const auto field = static_cast<std::size_t>(tag - kTagEditRed);
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
    LightRecord record{};
    if (!readRecord(s_.core.currentLightMode, record)) return;
    record[1] = static_cast<std::uint8_t>(componentByte(color.red));
    record[2] = static_cast<std::uint8_t>(componentByte(color.green));
    record[3] = static_cast<std::uint8_t>(componentByte(color.blue));
    if (writeRecord(record, "the colour")) sendLightMode();
}

void LightingPage::lightRondomColorSwitch() {
    const bool on = random_.tag != 1;
    random_.tag = on ? 1 : 0;
    random_.image = on ? "img_switch_on" : "img_switch_off";
    changed();
    backlightColorModeStatus(on);
}

void LightingPage::backlightColorModeStatus(bool status) {
    LightRecord record{};
    if (!readRecord(s_.core.currentLightMode, record)) return;
    enableColorButton(!status);
    if (status) {
        loadColorfulLight();
    } else {
        // The exact stored colour, unlike the coarse preview of a mode selection.
        const std::uint32_t exact = rgbValue(lightColorOf(record[1], record[2], record[3]));
        paintAllKeys(exact);
        swatch_ = exact;
    }
    changed();
    record[8] = status ? 1 : 0;
    if (writeRecord(record, "the random colour")) sendLightMode();
}

void LightingPage::enableColorButton(bool enable) {
    colorEnabled_ = enable;
    changed();
}

void LightingPage::loadColorfulLight() {
    keyColours_ = colorfulLightColours(s_.keys.keys());
    changed();
}

void LightingPage::backlightBrightnessChange(std::int64_t value) {
    LightRecord record{};
    if (!readRecord(s_.core.currentLightMode, record)) return;
    if (value < 0 || value > 255)
        fatalError("brightness " + std::to_string(value) + " outside a byte");
    brightness_.value = static_cast<int>(value & 15);
    changed();
    record[9] = static_cast<std::uint8_t>(value);  // stored whole; the slider shows 4 bits
    if (writeRecord(record, "the brightness")) sendLightMode();
}

void LightingPage::backlightSpeedChange(std::int64_t value) {
    LightRecord record{};
    if (!readRecord(s_.core.currentLightMode, record)) return;
    if (value < 0 || value > 255) fatalError("speed " + std::to_string(value) + " outside a byte");
    speed_.value = static_cast<int>(value & 15);
    changed();
    record[10] = static_cast<std::uint8_t>(value);
    if (writeRecord(record, "the speed")) sendLightMode();
}

void LightingPage::light_button_direction(int tag) {
    switch (tag) {
        case kTagDirectionTop:
            backlightDirection(2);
            break;
        case kTagDirectionRight:
            backlightDirection(1);
            break;
        case kTagDirectionLeft:
            backlightDirection(0);
            break;
        case kTagDirectionBottom:
            backlightDirection(3);
            break;
        default:
            break;
    }
}

void LightingPage::backlightDirection(std::int64_t type) {
    LightRecord record{};
    if (!readRecord(s_.core.currentLightMode, record)) return;
    switch (type) {
        case 0:
            direction_[2].image = "image_left_check";
            direction_[1].image = "image_right";
            break;
        case 1:
            direction_[1].image = "image_right_check";
            direction_[2].image = "image_left";
            break;
        case 2:
            direction_[0].image = "image_up_check";
            direction_[3].image = "image_bottom";
            break;
        case 3:
            direction_[0].image = "image_up";
            direction_[3].image = "image_bottom_check";
            break;
        default:
            if (type < 0 || type > 255)
                fatalError("direction " + std::to_string(type) + " outside a byte");
            break;
    }
    changed();
    record[11] = static_cast<std::uint8_t>(type);
    if (writeRecord(record, "the direction")) sendLightMode();
}

void LightingPage::light_button_lightsleeptime(int tag) {
    if (tag >= kTagFirstSleep && tag <= kTagFirstSleep + 3)
        backlightSleepTime(tag - kTagFirstSleep);
    // Sends the stored value, whatever the tag was.
    s_.transactions.SendSystemFunctionData(s_.core.currentProfile, s_.settings.switches());
}

void LightingPage::backlightSleepTime(std::int64_t type) {
    sleepRadio_.fill(false);
    sleepLabel_.fill(kSleepLabelNormal);
    if (type < 0 || type > 3) {
        changed();
        return;
    }
    sleepRadio_[static_cast<std::size_t>(type)] = true;
    sleepLabel_[static_cast<std::size_t>(type)] = kSleepLabelChosen;
    changed();
    // One sleep time for the keyboard: kept under profile 1 whatever profile is current.
    if (DeviceSQLite* db = s_.core.db())
        db->updateConfigData(1, "sleeplight", std::to_string(type));
}

}  // namespace qx9
