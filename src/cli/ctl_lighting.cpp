// qx9ctl light: the backlight page — the effect list, the selected effect's parameters and the
// backlight sleep time. Each command first shows the page for the current effect as the window
// does after selecting it (nothing stored or sent), so that a control the window disables or
// hides for that effect is refused here too.
#include <cstdio>

#include "cli/ctl_context.h"
#include "cli/ctl_output.h"

namespace qx9::ctl {

namespace {

const char* const kLightUsage =
    "usage: qx9ctl light list | select ROW | color R G B | preset 1-14 | random on|off | "
    "brightness V |"
    " speed V | direction up|down|left|right | sleep 0-3 | show";

std::int64_t inRange(const std::string& text, const std::string& what, std::int64_t lo,
                     std::int64_t hi) {
    const std::int64_t v = parseInteger(text, what);
    if (v < lo || v > hi)
        throw UsageError{what + " is " + std::to_string(lo) + "-" + std::to_string(hi) + ", not " +
                         text};
    return v;
}

void expectArgs(const std::vector<std::string>& args, std::size_t n, const std::string& usage) {
    if (args.size() != n) throw UsageError{"usage: qx9ctl light " + usage};
}

int currentRow(Context& c) {
    const auto& rows = c.session->lighting.light_mode_datas();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].mode == c.session->core.currentLightMode) return static_cast<int>(i);
    }
    return -1;
}

std::string effectName(Context& c) {
    const int row = currentRow(c);
    if (row < 0) return "mode " + std::to_string(c.session->core.currentLightMode);
    return "\"" + c.session->lighting.light_mode_datas()[static_cast<std::size_t>(row)].text + "\"";
}

// Opens the session and shows the page for the current effect.
LightingPage& openPage(Context& c) {
    openSession(c);
    if (!c.session->lighting.showCurrentModeControls()) {
        throw UsageError{"cannot read the backlight record of mode " +
                         std::to_string(c.session->core.currentLightMode)};
    }
    return c.session->lighting;
}

LightRecord storedRecord(Context& c) {
    lightData data;
    c.session->core.db()->queryLightInfo(c.session->core.currentProfile,
                                         c.session->core.currentLightMode, data);
    return data.data;
}

void requireColour(Context& c, const LightingPage& page) {
    if (page.colorButtonsEnabled()) return;
    if (page.light_btn_randomcolor().tag == 1) {
        throw UsageError{"the colour is off while random colour is on (qx9ctl light random off)"};
    }
    throw UsageError{effectName(c) + " has no colour of its own"};
}

std::string hexColour(std::uint32_t rgb) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "#%06X", static_cast<unsigned>(rgb & 0xFFFFFF));
    return buf;
}

const char* directionName(int d) {
    switch (d) {
        case 0:
            return "left";
        case 1:
            return "right";
        case 2:
            return "up";
        case 3:
            return "down";
        default:
            return "?";
    }
}

std::string directionButtons(const LightingPage& page) {
    static const char* const names[4] = {"up", "right", "left", "down"};
    std::string text;
    for (int i = 0; i < 4; ++i) {
        const LightImageButton& b = page.directionButton(LightingPage::kTagDirectionTop + i);
        if (b.hidden) continue;
        if (!text.empty()) text += ", ";
        text += names[i];
        if (b.image.ends_with("_check")) text += " (selected)";
    }
    return text.empty() ? "none" : text;
}

std::string preview(Context& c, const LightingPage& page) {
    const auto& colours = page.keyColours();
    if (colours == colorfulLightColours(c.session->keys.keys())) return "colourful";
    for (std::uint32_t k : colours) {
        if (k != colours.front()) return "mixed";
    }
    return colours.empty() ? "none" : hexColour(colours.front());
}

void lightList(Context& c, const std::vector<std::string>& args) {
    expectArgs(args, 1, "list");
    openSession(c);
    const LightingPage& page = c.session->lighting;
    Table table({"row", "mode", "name", "selected"});
    const auto& rows = page.light_mode_datas();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        table.add({std::to_string(i), std::to_string(rows[i].mode), rows[i].text,
                   static_cast<int>(i) == page.selectedRow() ? "*" : ""});
    }
    table.print(c.out, c.options.json);
}

void lightShow(Context& c, const std::vector<std::string>& args) {
    expectArgs(args, 1, "show");
    const LightingPage& page = openPage(c);
    const LightRecord r = storedRecord(c);
    const int row = currentRow(c);
    const LightImageButton& random = page.light_btn_randomcolor();
    const LightSlider& speed = page.light_slider_speed();
    auto enabled = [](bool on) { return std::string(on ? "enabled" : "disabled"); };
    Table table({"setting", "value"});
    table.add({"profile", std::to_string(c.session->core.currentProfile)});
    table.add({"mode", std::to_string(c.session->core.currentLightMode)});
    table.add({"row", row < 0 ? "none" : std::to_string(row)});
    table.add({"name", row < 0 ? "" : page.light_mode_datas()[static_cast<std::size_t>(row)].text});
    table.add(
        {"color", std::to_string(r[1]) + " " + std::to_string(r[2]) + " " + std::to_string(r[3])});
    table.add({"color_controls", enabled(page.colorButtonsEnabled())});
    table.add({"random", r[8] == 1 ? "on" : "off"});
    table.add({"random_switch",
               std::string(random.tag == 1 ? "on" : "off") + ", " + enabled(random.enabled)});
    table.add({"brightness", std::to_string(r[9])});
    table.add({"brightness_slider", std::to_string(page.light_slider_brightness().value)});
    table.add({"speed", std::to_string(r[10])});
    table.add({"speed_slider", std::to_string(speed.value) + ", " + enabled(speed.enabled)});
    table.add({"direction", std::to_string(r[11]) + " " + directionName(r[11])});
    table.add({"direction_buttons", directionButtons(page)});
    table.add({"preview", preview(c, page)});
    table.add({"sleeplight", c.session->core.db()->getConfigData(1, "sleeplight")});
    table.print(c.out, c.options.json);
}

}  // namespace

void cmdLight(Context& c, const std::vector<std::string>& args) {
    if (args.empty()) throw UsageError{kLightUsage};
    const std::string& verb = args[0];
    if (verb == "list") return lightList(c, args);
    if (verb == "show") return lightShow(c, args);

    if (verb == "select") {
        expectArgs(args, 2, "select ROW");
        const std::int64_t row = inRange(args[1], "the row", 0, LightingPage::kModeRows - 1);
        LightingPage& page = openPage(c);
        c.sends = true;
        page.lightModeSelectionChanged(static_cast<int>(row));
    } else if (verb == "color") {
        expectArgs(args, 4, "color R G B");
        const std::int64_t red = inRange(args[1], "red", 0, 255);
        const std::int64_t green = inRange(args[2], "green", 0, 255);
        const std::int64_t blue = inRange(args[3], "blue", 0, 255);
        LightingPage& page = openPage(c);
        requireColour(c, page);
        c.sends = true;
        // Chosen in the colour panel, which keeps every byte (the number fields would keep only
        // 0 or 255 per channel).
        page.colorButtonAction(LightingPage::kTagColorSwatch);
        page.lightColorPanel(lightColorOf(static_cast<std::uint8_t>(red),
                                          static_cast<std::uint8_t>(green),
                                          static_cast<std::uint8_t>(blue)));
    } else if (verb == "preset") {
        expectArgs(args, 2, "preset 1-14");
        const std::int64_t preset = inRange(args[1], "the preset", 1, kPresetColorCount);
        LightingPage& page = openPage(c);
        requireColour(c, page);
        c.sends = true;
        page.colorButtonAction(LightingPage::kTagFirstPreset + static_cast<int>(preset) - 1);
    } else if (verb == "random") {
        expectArgs(args, 2, "random on|off");
        if (args[1] != "on" && args[1] != "off")
            throw UsageError{"random takes on or off, not \"" + args[1] + "\""};
        LightingPage& page = openPage(c);
        if (!page.light_btn_randomcolor().enabled)
            throw UsageError{effectName(c) + " has no random colour"};
        const bool on = args[1] == "on";
        if ((page.light_btn_randomcolor().tag == 1) == on) return;  // the switch shows it already
        c.sends = true;
        page.lightRondomColorSwitch();
    } else if (verb == "brightness" || verb == "speed") {
        expectArgs(args, 2,
                   verb + " " + std::to_string(LightingPage::kSliderMinimum) + "-" +
                       std::to_string(LightingPage::kSliderMaximum));
        const std::int64_t value = inRange(args[1], "the " + verb, LightingPage::kSliderMinimum,
                                           LightingPage::kSliderMaximum);
        LightingPage& page = openPage(c);
        if (verb == "brightness") {
            c.sends = true;
            page.backlightBrightnessChange(value);
        } else {
            if (!page.light_slider_speed().enabled)
                throw UsageError{effectName(c) + " has no speed"};
            c.sends = true;
            page.backlightSpeedChange(value);
        }
    } else if (verb == "direction") {
        expectArgs(args, 2, "direction up|down|left|right");
        const std::string& d = args[1];
        const int tag = d == "up"      ? LightingPage::kTagDirectionTop
                        : d == "right" ? LightingPage::kTagDirectionRight
                        : d == "left"  ? LightingPage::kTagDirectionLeft
                        : d == "down"  ? LightingPage::kTagDirectionBottom
                                       : 0;
        if (tag == 0)
            throw UsageError{"direction takes up, down, left or right, not \"" + d + "\""};
        LightingPage& page = openPage(c);
        if (page.directionButton(tag).hidden) {
            std::string shown;
            for (const auto& [name, t] : {std::pair{"up", LightingPage::kTagDirectionTop},
                                          std::pair{"down", LightingPage::kTagDirectionBottom},
                                          std::pair{"left", LightingPage::kTagDirectionLeft},
                                          std::pair{"right", LightingPage::kTagDirectionRight}}) {
                if (!page.directionButton(t).hidden)
                    shown += (shown.empty() ? "" : " or ") + std::string(name);
            }
            throw UsageError{effectName(c) +
                             (shown.empty() ? " has no direction" : " takes " + shown)};
        }
        c.sends = true;
        page.light_button_direction(tag);
    } else if (verb == "sleep") {
        expectArgs(args, 2, "sleep 0-3");
        const std::int64_t value = inRange(args[1], "the sleep time", 0, 3);
        LightingPage& page = openPage(c);
        c.sends = true;
        page.light_button_lightsleeptime(LightingPage::kTagFirstSleep + static_cast<int>(value));
    } else {
        throw UsageError{"unknown light command " + verb};
    }
}

}  // namespace qx9::ctl
