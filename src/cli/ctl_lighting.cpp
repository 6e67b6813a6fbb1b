// qx9ctl light: the backlight effects, the selected effect's parameters and the sleep time.
// A parameter the window disables or hides for the selected effect is refused here too.
#include <cstdio>

#include "cli/ctl_context.h"
#include "cli/ctl_output.h"
#include "i18n/language.h"
#include "ops/lighting.h"
#include "ops/settings.h"
#include "layout/light_colours.h"

namespace qx9::ctl {

namespace {

const char* const kLightUsage =
    "usage: qx9ctl light list | select ROW | color R G B | preset 1-14 | random on|off | brightness 0-15 | "
    "speed 0-15 | direction up|down|left|right | sleep 0-3 | show";

// The slider range of brightness and speed.
constexpr std::int64_t kSliderMaximum = 15;

// The selected effect, under the settings profile, with its record.
struct Effect {
    std::int64_t mode = 0;
    LightRecord record{};
    ops::EffectControls controls;
};

int rowOf(std::int64_t mode) {
    for (int r = 0; r < ops::kEffectRows; ++r) {
        if (ops::effectOfRow(r) == mode) return r;
    }
    return -1;
}

std::string effectName(std::int64_t mode) {
    const int row = rowOf(mode);
    if (row < 0) return "mode " + std::to_string(mode);
    return "\"" + localizedText(ops::effectTextId(row)) + "\"";
}

Effect selected(Context& c) {
    Effect e;
    e.mode = ops::selectedEffect(c.database());
    if (!ops::readLightRecord(c.database(), ops::kSettingsProfile, e.mode, e.record)) {
        throw UsageError{"cannot read the backlight record of mode " + std::to_string(e.mode)};
    }
    e.controls = ops::effectControls(e.mode, e.record);
    return e;
}

void requireColour(const Effect& e) {
    if (e.controls.colour) return;
    if (e.controls.randomShownOn) throw UsageError{"the colour is off while random colour is on (qx9ctl light random off)"};
    throw UsageError{effectName(e.mode) + " has no colour of its own"};
}

std::string hexColour(std::uint32_t rgb) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "#%06X", static_cast<unsigned>(rgb & 0xFFFFFF));
    return buf;
}

const char* directionName(int d) {
    switch (d) {
        case ops::kLeft: return "left";
        case ops::kRight: return "right";
        case ops::kUp: return "up";
        case ops::kDown: return "down";
        default: return "?";
    }
}

// The direction buttons shown, in the page's order, the one that shows selected marked.
std::string directionButtons(const Effect& e) {
    std::string text;
    const auto add = [&](const char* name, bool on) { text += (text.empty() ? "" : ", ") + std::string(name) + (on ? " (selected)" : ""); };
    const std::uint8_t d = e.record[ops::kLightDirection];
    if (e.controls.upDown) {
        add("up", d == ops::kDown);  // direction 3 shows on the up button, as in the window
        add("down", d != ops::kDown);
    }
    if (e.controls.leftRight) {
        add("right", d == ops::kRight);
        add("left", d != ops::kRight);
    }
    return text.empty() ? "none" : text;
}

std::string preview(const Effect& e) {
    if (e.controls.colourful) return "colourful";
    if (!e.controls.known || e.mode == ops::kEffectOff) return hexColour(0);
    return hexColour(rgbValue(coarseColorFromBytes(e.record[ops::kLightRed], e.record[ops::kLightGreen], e.record[ops::kLightBlue])));
}

void lightList(Context& c) {
    const std::int64_t mode = ops::selectedEffect(c.database());
    Table table({"row", "mode", "name", "selected"});
    for (int r = 0; r < ops::kEffectRows; ++r) {
        table.add({std::to_string(r), std::to_string(ops::effectOfRow(r)), localizedText(ops::effectTextId(r)),
                   ops::effectOfRow(r) == mode ? "*" : ""});
    }
    table.print(c.out, c.options.json);
}

void lightShow(Context& c) {
    const Effect e = selected(c);
    const LightRecord& r = e.record;
    const int row = rowOf(e.mode);
    auto enabled = [](bool on) { return std::string(on ? "enabled" : "disabled"); };
    Table table({"setting", "value"});
    table.add({"profile", std::to_string(ops::kSettingsProfile)});
    table.add({"mode", std::to_string(e.mode)});
    table.add({"row", row < 0 ? "none" : std::to_string(row)});
    table.add({"name", row < 0 ? "" : localizedText(ops::effectTextId(row))});
    table.add({"color", std::to_string(r[ops::kLightRed]) + " " + std::to_string(r[ops::kLightGreen]) + " " +
                            std::to_string(r[ops::kLightBlue])});
    table.add({"color_controls", enabled(e.controls.colour)});
    table.add({"random", r[ops::kLightRandom] == ops::kRandomOn ? "on" : "off"});
    table.add({"random_switch", std::string(e.controls.randomShownOn ? "on" : "off") + ", " + enabled(e.controls.randomSwitch)});
    table.add({"brightness", std::to_string(r[ops::kLightBrightness])});
    table.add({"brightness_slider", std::to_string(e.mode == ops::kEffectOff ? 0 : r[ops::kLightBrightness] & kSliderMaximum)});
    table.add({"speed", std::to_string(r[ops::kLightSpeed])});
    table.add({"speed_slider", std::to_string(e.controls.speed ? r[ops::kLightSpeed] & kSliderMaximum : 0) + ", " +
                                   enabled(e.controls.speed)});
    table.add({"direction", std::to_string(r[ops::kLightDirection]) + " " + directionName(r[ops::kLightDirection])});
    table.add({"direction_buttons", directionButtons(e)});
    table.add({"preview", preview(e)});
    table.add({"sleeplight", c.database().getConfigData(ops::kSettingsProfile, ops::kSleepLight)});
    table.print(c.out, c.options.json);
}

}  // namespace

void cmdLight(Context& c, const std::vector<std::string>& args) {
    if (args.empty()) throw usageError(kLightUsage);
    const std::string& verb = args[0];
    const auto expect = [&](std::size_t n, const char* usage) { expectArgs(args, n, std::string("light ") + usage); };
    const std::int64_t profile = ops::kSettingsProfile;
    if (verb == "list") {
        expect(1, "list");
        lightList(c);
    } else if (verb == "show") {
        expect(1, "show");
        lightShow(c);
    } else if (verb == "select") {
        expect(2, "select ROW");
        const std::int64_t row = parseInRange(args[1], "the row", 0, ops::kEffectRows - 1);
        LightRecord record{};
        check(ops::selectEffect(c.target(), profile, ops::effectOfRow(static_cast<int>(row)), record));
    } else if (verb == "color" || verb == "preset") {
        if (verb == "color") expect(4, "color R G B");
        else expect(2, "preset 1-14");
        RgbColor colour;
        if (verb == "color") {
            colour = {static_cast<std::uint8_t>(parseInRange(args[1], "red", 0, 255)),
                      static_cast<std::uint8_t>(parseInRange(args[2], "green", 0, 255)),
                      static_cast<std::uint8_t>(parseInRange(args[3], "blue", 0, 255))};
        } else {
            colour = presetLightColor(static_cast<int>(parseInRange(args[1], "the preset", 1, kPresetColorCount)));
        }
        const Effect e = selected(c);
        requireColour(e);
        check(ops::setLightColour(c.target(), profile, profile, static_cast<std::uint8_t>(colour.r),
                                  static_cast<std::uint8_t>(colour.g), static_cast<std::uint8_t>(colour.b)));
    } else if (verb == "random") {
        expect(2, "random on|off");
        const bool on = parseOnOff(args[1], "random");
        const Effect e = selected(c);
        if (!e.controls.randomSwitch) throw UsageError{effectName(e.mode) + " has no random colour"};
        if (e.controls.randomShownOn == on) return;  // the switch shows it already
        check(ops::setRandomColour(c.target(), profile, profile, on));
    } else if (verb == "brightness" || verb == "speed") {
        expect(2, verb == "speed" ? "speed 0-15" : "brightness 0-15");
        const std::int64_t value = parseInRange(args[1], "the " + verb, 0, kSliderMaximum);
        const Effect e = selected(c);
        if (verb == "brightness") {
            check(ops::setBrightness(c.target(), profile, profile, value));
        } else {
            if (!e.controls.speed) throw UsageError{effectName(e.mode) + " has no speed"};
            check(ops::setSpeed(c.target(), profile, profile, value));
        }
    } else if (verb == "direction") {
        expect(2, "direction up|down|left|right");
        const std::string& d = args[1];
        std::int64_t direction = -1;
        if (d == "up") direction = ops::kUp;
        else if (d == "right") direction = ops::kRight;
        else if (d == "left") direction = ops::kLeft;
        else if (d == "down") direction = ops::kDown;
        if (direction < 0) throw UsageError{"direction takes up, down, left or right, not \"" + d + "\""};
        const Effect e = selected(c);
        const bool upDown = direction == ops::kUp || direction == ops::kDown;
        if (upDown ? !e.controls.upDown : !e.controls.leftRight) {
            const char* shown = e.controls.upDown ? " takes up or down" : e.controls.leftRight ? " takes left or right" : " has no direction";
            throw UsageError{effectName(e.mode) + shown};
        }
        check(ops::setDirection(c.target(), profile, profile, direction));
    } else if (verb == "sleep") {
        expect(2, "sleep 0-3");
        const std::int64_t value = parseInRange(args[1], "the sleep time", 0, ops::kSleepTimeCount - 1);
        const ops::Target target = c.target();
        check(ops::setSleepTime(target, value, ops::storedSwitches(target.db)));
    } else {
        throw usageError("unknown light command " + verb);
    }
}

}  // namespace qx9::ctl
