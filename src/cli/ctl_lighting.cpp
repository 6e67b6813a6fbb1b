// qx9ctl light: the backlight effects, the selected effect's parameters and the sleep time.
// A parameter the window disables or hides for the selected effect is refused here too.
// `light show` prints the parameters the selected effect has, each as the words that set it.
#include <algorithm>
#include <cctype>

#include "cli/ctl_context.h"
#include "cli/ctl_grammar.h"
#include "i18n/language.h"
#include "layout/light_colours.h"
#include "ops/lighting.h"
#include "ops/settings.h"

namespace qx9::ctl {

namespace {

// The slider range of brightness and speed.
constexpr std::int64_t kSliderMaximum = 15;
constexpr std::int64_t kChannelMaximum = 255;
// Directions by their number in the light record (ops::Direction).
const std::vector<std::string> kDirections = {"left", "right", "up", "down"};

// An effect's word: its English name in lower case, its words joined by "-" ("single-on").
std::string effectWord(int row) {
    const std::string name = ENGLanguage::getLan(ops::effectTextId(row));
    std::string word;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const auto c = static_cast<unsigned char>(name[i]);
        if (i > 0 && (c == ' ' || (std::isupper(c) && std::islower(static_cast<unsigned char>(name[i - 1]))))) word += '-';
        if (c != ' ') word += static_cast<char>(std::tolower(c));
    }
    return word;
}

std::vector<std::string> effectWords() {
    std::vector<std::string> words;
    for (int r = 0; r < ops::kEffectRows; ++r) words.push_back(effectWord(r));
    return words;
}

// ROW read as the effect's row: the row, or the effect's word in any case, with or without "-".
std::string readEffect(std::string& word) {
    const auto bare = [](const std::string& w) {
        std::string b;
        for (char c : asciiLower(w)) if (std::isalnum(static_cast<unsigned char>(c))) b += c;
        return b;
    };
    for (int r = 0; r < ops::kEffectRows; ++r) {
        if (bare(effectWord(r)) == bare(word)) {
            word = std::to_string(r);
            return "";
        }
    }
    if (!word.empty() && std::isdigit(static_cast<unsigned char>(word[0]))) return numberIn(0, ops::kEffectRows - 1)(word);
    return "\"" + word + "\" is not an effect (see: qx9ctl light list)";
}

// COLOR: RRGGBB, or R G B.
RgbColor readColor(std::vector<std::string> values) {
    const auto fail = [](const std::string& error) { return CLI::ValidationError("COLOR", error); };
    if (values.size() == 1) {
        if (const std::string error = colorReader()(values[0]); !error.empty()) throw fail(error);
        const std::int64_t rgb = *parseNumber("0x" + values[0]);
        return {static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8), static_cast<std::uint8_t>(rgb)};
    }
    if (values.size() != 3) throw fail("is RRGGBB, or R G B");
    for (std::string& v : values) {
        if (const std::string error = numberIn(0, kChannelMaximum)(v); !error.empty()) throw fail(error);
    }
    const auto channel = [&](std::size_t i) { return static_cast<std::uint8_t>(*parseNumber(values[i])); };
    return {channel(0), channel(1), channel(2)};
}

// The selected effect, under the settings profile, with its record.
struct Effect {
    std::int64_t mode = 0;
    LightRecord record{};
    ops::EffectControls controls;
};

Effect selected(Context& c) {
    Effect e;
    e.mode = ops::selectedEffect(c.database());
    if (!ops::readLightRecord(c.database(), ops::kSettingsProfile, e.mode, e.record)) {
        throw UsageError{"cannot read the backlight record of mode " + std::to_string(e.mode)};
    }
    e.controls = ops::effectControls(e.mode, e.record);
    return e;
}

int rowOf(std::int64_t mode) {
    for (int r = 0; r < ops::kEffectRows; ++r) {
        if (ops::effectOfRow(r) == mode) return r;
    }
    return -1;
}

std::string effectName(std::int64_t mode) {
    const int row = rowOf(mode);
    return row < 0 ? "mode " + std::to_string(mode) : "\"" + effectWord(row) + "\"";
}

Table lightTable(Context& c) {
    const Effect e = selected(c);
    const LightRecord& r = e.record;
    const int row = rowOf(e.mode);
    Table table({"setting", "value"});
    table.add({"select", row < 0 ? std::to_string(e.mode) : effectWord(row)});
    if (e.controls.randomSwitch) table.add({"random", e.controls.randomShownOn ? "on" : "off"});
    if (e.controls.colour) {
        char hex[8];
        std::snprintf(hex, sizeof hex, "%02X%02X%02X", r[ops::kLightRed], r[ops::kLightGreen], r[ops::kLightBlue]);
        table.add({"color", hex});
    }
    table.add({"brightness", r[ops::kLightBrightness] & kSliderMaximum});
    if (e.controls.speed) table.add({"speed", r[ops::kLightSpeed] & kSliderMaximum});
    const std::uint8_t d = r[ops::kLightDirection];
    const bool upDown = d == ops::kUp || d == ops::kDown;
    if (d < kDirections.size() && (upDown ? e.controls.upDown : e.controls.leftRight)) table.add({"direction", kDirections[d]});
    table.add({"sleep", std::max(ops::storedSleepTime(c.database()), 0)});
    return table;
}

void lightList(Context& c) {
    const std::int64_t mode = ops::selectedEffect(c.database());
    Table table({"row", "mode", "name", "selected"});
    for (int r = 0; r < ops::kEffectRows; ++r) {
        table.add({r, ops::effectOfRow(r), effectWord(r), Field::mark(ops::effectOfRow(r) == mode)});
    }
    table.print(c.out, c.format());
}

void setColor(Context& c, const RgbColor& color) {
    const Effect e = selected(c);
    if (!e.controls.colour) {
        if (e.controls.randomShownOn) throw UsageError{"the color is off while random color is on (qx9ctl light random off)"};
        throw UsageError{effectName(e.mode) + " has no color of its own"};
    }
    check(ops::setLightColour(c.target(), ops::kSettingsProfile, ops::kSettingsProfile, color.r, color.g, color.b));
}

void setParameter(Context& c, const std::string& parameter, const std::string& value) {
    if (parameter == "sleep") {  // the keyboard's, whatever the effect
        const ops::Target target = c.target();
        check(ops::setSleepTime(target, *parseNumber(value), ops::storedSwitches(target.db)));
        return;
    }
    const std::int64_t profile = ops::kSettingsProfile;
    const Effect e = selected(c);
    if (parameter == "random") {
        if (!e.controls.randomSwitch) throw UsageError{effectName(e.mode) + " has no random color"};
        if (e.controls.randomShownOn != (value == "on")) check(ops::setRandomColour(c.target(), profile, profile, value == "on"));
    } else if (parameter == "brightness") {
        check(ops::setBrightness(c.target(), profile, profile, *parseNumber(value)));
    } else if (parameter == "speed") {
        if (!e.controls.speed) throw UsageError{effectName(e.mode) + " has no speed"};
        check(ops::setSpeed(c.target(), profile, profile, *parseNumber(value)));
    } else {  // direction
        const auto direction = static_cast<std::int64_t>(std::find(kDirections.begin(), kDirections.end(), value) - kDirections.begin());
        const bool upDown = direction == ops::kUp || direction == ops::kDown;
        if (upDown ? !e.controls.upDown : !e.controls.leftRight) {
            const char* shown = e.controls.upDown ? " takes up or down" : e.controls.leftRight ? " takes left or right" : " has no direction";
            throw UsageError{effectName(e.mode) + shown};
        }
        check(ops::setDirection(c.target(), profile, profile, direction));
    }
}

}  // namespace

void addLightCommands(Grammar& g) {
    CLI::App* group = g.command(&g.root(), "light",
                                "list | select ROW|NAME | color RRGGBB|R G B | preset 1-14 | random on|off |\n"
                                "       brightness 0-15 | speed 0-15 | direction up|down|left|right | sleep 0-3 | show",
                                "The backlight effect");
    // Each light command prints what `light show` prints with --json.
    const auto then = [&g](CLI::App* app, std::function<void(Context&, const CLI::App&)> run) {
        g.action(app, [run](Context& c, const CLI::App& a) {
            run(c, a);
            printResult(c, lightTable(c));
        });
    };
    g.action(g.command(group, "list", "", "The effects"), [](Context& c, const CLI::App&) { lightList(c); });
    g.action(g.command(group, "show", "", "The selected effect's parameters, each as the words that set it"),
             [](Context& c, const CLI::App&) { lightTable(c).print(c.out, c.format()); });
    CLI::App* select = g.command(group, "select", "ROW|NAME", "Choose an effect (see: qx9ctl light list)");
    g.argument(select, "ROW", "The effect's row or name", readEffect, {Source::kWords, effectWords()});
    then(select, [](Context& c, const CLI::App& a) {
        LightRecord record{};
        check(ops::selectEffect(c.target(), ops::kSettingsProfile, ops::effectOfRow(static_cast<int>(number(a, "ROW"))), record));
    });
    CLI::App* color = g.command(group, "color", "RRGGBB|R G B", "The effect's color");
    g.argument(color, "COLOR", "RRGGBB in hex, or R G B (0-255 each)", {})->expected(1, 3)->allow_extra_args();
    const auto words = [](const CLI::App& a) { return a["COLOR"]->results(); };
    g.action(color, [words](Context& c, const CLI::App& a) {
        setColor(c, readColor(words(a)));
        printResult(c, lightTable(c));
    }, [words](const CLI::App& a) { readColor(words(a)); });
    CLI::App* preset = g.command(group, "preset", "1-14", "One of the preset colors");
    g.argument(preset, "PRESET", "1-14", numberIn(1, kPresetColorCount));
    then(preset, [](Context& c, const CLI::App& a) { setColor(c, presetLightColor(static_cast<int>(number(a, "PRESET")))); });
    const auto parameter = [&](const char* name, const char* synopsis, const char* about, Reader reader, Completion completion) {
        CLI::App* app = g.command(group, name, synopsis, about);
        g.argument(app, "VALUE", synopsis, std::move(reader), std::move(completion));
        then(app, [](Context& c, const CLI::App& a) { setParameter(c, a.get_name(), text(a, "VALUE")); });
    };
    parameter("random", "on|off", "Random colors", oneOf({"on", "off"}), {Source::kWords, {"on", "off"}});
    parameter("brightness", "0-15", "The brightness", numberIn(0, kSliderMaximum), {});
    parameter("speed", "0-15", "The speed", numberIn(0, kSliderMaximum), {});
    parameter("direction", "up|down|left|right", "The direction", oneOf(kDirections), {Source::kWords, kDirections});
    parameter("sleep", "0-3", "When the backlight goes out", numberIn(0, ops::kSleepTimeCount - 1), {Source::kWords, {"0", "1", "2", "3"}});
}

}  // namespace qx9::ctl
