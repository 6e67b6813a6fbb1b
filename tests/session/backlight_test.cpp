#include "session/session_fixture.h"

namespace qx9::test {
namespace {

// The effect names by row; row r is mode (r + 1) % 20.
constexpr const char* kNames[20] = {"Static",  "SingleOn", "SingleOff", "Glittering", "Falling", "Colourful", "Breath",
                                    "Spectrum", "Outward", "Scrolling", "Rolling",   "Rotating", "Explode",  "Launch",
                                    "Ripples", "Flowing",  "Pulsating", "Tilt",      "Shuttle",  "Close Backlight"};

// What each effect shows, by mode: c its own colour, s a speed, u up/down or l left/right directions.
constexpr std::string_view kControls[20] = {
    "",    "c",   "cs", "cs", "cs", "cs", "s",   "cs", "s",   "cs",  // 0 Close Backlight … 9 Outward
    "csu", "csl", "cs", "cs", "cs", "cs", "csl", "cs", "csl", "cs",  // 10 Scrolling … 19 Shuttle
};

// The parameter bytes of a light record.
struct Params { int red, green, blue, random, brightness, speed, direction; };
constexpr Params kDefaults{202, 81, 0, 1, 15, 12, 0};

constexpr std::uint32_t kBlack = 0x000000;

class BacklightTest : public SessionTest {
protected:
    LightingPage& page() { return session_->lighting; }

    void connectInEnglish() {
        connect();  // the stored language, English
        clearWire();
    }

    static std::string text(const Params& p, const char* separator = " ") {
        std::string out;
        for (int v : {p.red, p.green, p.blue, p.random, p.brightness, p.speed, p.direction})
            out += (out.empty() ? "" : separator) + std::to_string(v);
        return out;
    }
    void store(std::int64_t profile, const Params& p, const std::string& where = "") {
        ASSERT_TRUE(sqlExec(dbPath_, "UPDATE t_lightdata SET (byte1, byte2, byte3, byte8, byte9, byte10, byte11) = (" +
                                         text(p, ", ") + ") WHERE profId = " + std::to_string(profile) + where));
    }
    // "r g b random brightness speed direction" as stored.
    std::string stored(std::int64_t profile, std::int64_t mode) const {
        return sql("SELECT byte1||' '||byte2||' '||byte3||' '||byte8||' '||byte9||' '||byte10||' '||byte11 FROM "
                   "t_lightdata WHERE profId = " + std::to_string(profile) + " AND mode = " + std::to_string(mode));
    }

    VirtualLightMode sentLightMode() const {
        return decodeLightMode(keyboard_->memory()).value_or(VirtualLightMode{.mode = -1});
    }
    // The one light-mode transaction, carrying the effect and the parameters.
    void expectSent(int mode, const Params& p) const {
        const VirtualLightMode m = sentLightMode();
        EXPECT_EQ(std::to_string(m.mode) + ": " +
                      text({m.red, m.green, m.blue, m.random, m.brightness, m.speed, m.direction}),
                  std::to_string(mode) + ": " + text(p));
        EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x13, 0x02, 0xF0}));
    }

    std::vector<std::uint32_t> uniform(std::uint32_t colour) const {
        return std::vector<std::uint32_t>(session_->keys.keys().size(), colour);
    }
    // Every key in its default colour, a channel showing only at 255: the first five keys, Escape
    // (45 00 FF) and 1 to 4 (FF 00 4E, FF 00 00, FF 45 00, FF FF 00).
    static std::vector<std::uint32_t> firstKeys(std::vector<std::uint32_t> colours) { colours.resize(5); return colours; }
    const std::vector<std::uint32_t> kColourful = {0x0000FF, 0xFF0000, 0xFF0000, 0xFF0000, 0xFFFF00};
    static std::uint32_t coarse(const Params& p) {
        return (p.red == 255 ? 0xFF0000u : 0) | (p.green == 255 ? 0x00FF00u : 0) |
               (p.blue == 255 ? 0x0000FFu : 0);
    }

    // The controls and preview the page must show for an effect and its record. The effects
    // without a colour of their own show random off; Close Backlight (0) disables it.
    void expectControls(int mode, const Params& p) {
        const LightingPage& l = page();
        const auto shows = [&](char control) { return kControls[mode].find(control) != std::string_view::npos; };
        const bool random = p.random == 1, colours = shows('c'), speed = shows('s');
        EXPECT_EQ(l.light_slider_brightness().value, mode == 0 ? 0 : (p.brightness & 15));
        EXPECT_TRUE(l.light_slider_brightness().enabled);
        EXPECT_EQ(l.colorButtonsEnabled(), colours && !random);
        EXPECT_EQ(l.light_btn_randomcolor().enabled, mode != 0);
        EXPECT_EQ(l.light_btn_randomcolor().on, colours && random);
        if (mode != 0 && (!colours || random)) EXPECT_EQ(firstKeys(l.keyColours()), kColourful);
        else EXPECT_EQ(l.keyColours(), uniform(mode == 0 ? kBlack : coarse(p)));
        EXPECT_EQ(l.light_slider_speed().enabled, speed);
        EXPECT_EQ(l.light_slider_speed().value, speed ? (p.speed & 15) : 0);
        // Top, bottom, left, right: which are hidden and which are on; 3 reads as up.
        const bool ud = shows('u'), lr = shows('l');
        EXPECT_EQ((std::array{l.light_direction_top().hidden, l.light_direction_bottom().hidden,
                              l.light_direction_left().hidden, l.light_direction_right().hidden}),
                  (std::array{!ud, !ud, !lr, !lr}));
        if (ud) {
            EXPECT_EQ(l.light_direction_top().on, p.direction == 3);
            EXPECT_EQ(l.light_direction_bottom().on, p.direction != 3);
        }
        if (lr) {
            EXPECT_EQ(l.light_direction_right().on, p.direction == 1);
            EXPECT_EQ(l.light_direction_left().on, p.direction != 1);
        }
    }

    void selectEveryRow(const Params& params, bool defaults = false) {
        // Out of order, so that no row relies on what the previous one left behind.
        for (int row :
             {19, 9, 0, 5, 10, 7, 1, 2, 3, 4, 6, 8, 11, 12, 13, 14, 15, 16, 17, 18, 9, 19}) {
            const int mode = (row + 1) % 20;
            SCOPED_TRACE(kNames[row]);
            Params p = params;
            if (defaults && mode == 10) p.direction = 3;  // Scrolling's default direction
            clearWire();
            page().lightModeSelectionChanged(row);
            EXPECT_EQ(sql("SELECT group_concat(mode) FROM t_lightdata WHERE profId = 1 AND status = 1"),
                      std::to_string(mode));
            expectControls(mode, p);
            expectSent(mode, p);
            EXPECT_EQ(stored(1, mode), text(p));  // a selection changes no record
        }
    }
};

TEST_F(BacklightTest, CatalogueFromPlaceholdersToEnglishWithTheDefaultHighlight) {
    const auto& rows = page().light_mode_datas();
    ASSERT_EQ(rows.size(), 20u);  // the first build, before any keyboard: modes 1–20, placeholders
    EXPECT_EQ(std::to_string(rows[19].mode) + " " + rows[19].text, "20 CHS");
    connectInEnglish();
    ASSERT_EQ(rows.size(), 20u);
    for (int i = 0; i < 20; ++i) {
        EXPECT_EQ(std::to_string(rows[i].mode) + " " + rows[i].text,
                  std::to_string((i + 1) % 20) + " " + kNames[i]);
    }
    EXPECT_EQ(page().selectedRow(), 10);  // mode 11
    EXPECT_TRUE(sets().empty());          // the highlight sends nothing
    // A stored selection without a row highlights nothing.
    ASSERT_TRUE(sqlExec(dbPath_, "UPDATE t_lightdata SET status = (mode = 20) WHERE profId = 1"));
    page().loadLightModeData();
    EXPECT_EQ(session_->core.currentLightMode, 20);
    EXPECT_EQ(page().selectedRow(), 20);
}

TEST_F(BacklightTest, EveryEffectWithTheDefaultAndWithStoredRecords) {
    connectInEnglish();
    selectEveryRow(kDefaults, true);  // Scrolling shows its default direction 3 as up
    const Params records[] = {
        {255, 128, 255, 0, 0x3A, 0x3B, 1},  // previews magenta; sliders show the low four bits
        {254, 254, 254, 0, 0, 0, 3},        // previews black
        {255, 0, 255, 2, 7, 9, 2},          // a flag other than 1 is off
        {0, 255, 0, 1, 255, 255, 0},
    };
    for (const Params& p : records) {
        SCOPED_TRACE(text(p));
        store(1, p);
        selectEveryRow(p);
    }
}

TEST_F(BacklightTest, SelectionAndSleepTimeUnderProfileOneRecordOfTheCurrentProfile) {
    connectInEnglish();
    session_->profiles.customkey_button_profile(ProfileList::kAdd);
    session_->profiles.tableSelectionChanged(1);
    const std::int64_t second = session_->core.currentProfile;
    ASSERT_NE(second, 1);
    const Params p2{255, 0, 0, 0, 3, 4, 1};
    store(second, p2, " AND mode = 16");
    clearWire();
    page().lightModeSelectionChanged(15);  // Flowing
    EXPECT_EQ(sql("SELECT group_concat(profId || ':' || mode) FROM t_lightdata WHERE status = 1 ORDER BY profId"),
              "1:16," + std::to_string(second) + ":11");
    expectControls(16, p2);
    expectSent(16, p2);
    // Brightness and speed are stored and sent whole; the sliders show the low four bits.
    page().backlightBrightnessChange(0x39);
    page().backlightSpeedChange(0x25);
    EXPECT_EQ(stored(second, 16), "255 0 0 0 57 37 1");
    EXPECT_EQ(stored(1, 16), text(kDefaults));
    EXPECT_EQ(std::pair(sentLightMode().brightness, sentLightMode().speed), std::pair(0x39, 0x25));
    EXPECT_EQ(std::pair(page().light_slider_brightness().value, page().light_slider_speed().value), std::pair(9, 5));

    // The sleep time is stored under profile 1 and sent with the system functions; a value
    // outside 0–3 changes nothing but still sends the stored one.
    for (const auto& [pressed, kept] : {std::pair{2, 2}, {0, 0}, {3, 3}, {1, 1}, {4, 1}}) {
        clearWire();
        page().light_button_lightsleeptime(pressed);
        EXPECT_EQ(sql("SELECT group_concat(profId || ':' || value) FROM t_configdata WHERE key = 'sleeplight'"),
                  "1:" + std::to_string(kept));
        EXPECT_EQ(page().sleepTimeChoice(), kept);
        EXPECT_EQ(decodeSystemFunctions(keyboard_->memory()).value().sleepTime, kept);
        EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x17, 0x02}));
    }
}

class BacklightColourTest : public BacklightTest {
protected:
    void SetUp() override {  // Static with the random colour off
        connectInEnglish();
        page().lightModeSelectionChanged(0);
        page().lightRondomColorSwitch();
        clearWire();
    }
    std::string colour() const {
        return sql("SELECT byte1||' '||byte2||' '||byte3 FROM t_lightdata WHERE profId = 1 AND mode = 1");
    }
};

TEST_F(BacklightColourTest, NumberFieldsValidateAndKeepOnlyFullChannels) {
    const struct { const char* typed; const char* shown; int red; } cases[] = {
        {"200", "200", 0}, {"255", "255", 255}, {"12a", "255", 255}, {"300", "255", 255}, {"-5", "0", 0},
        {"", "255", 255},  {"0", "0", 0},       {"254", "254", 0},   {"2.5", "255", 255},
        {"99999999999999999999", "255", 255},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.typed);
        page().controlTextDidChange(ColorChannel::kRed, c.typed);
        EXPECT_EQ(page().light_edit_color_r(), c.shown);
        EXPECT_EQ(colour(), std::to_string(c.red) + " 0 0");
        EXPECT_EQ(sentLightMode().red, c.red);
        EXPECT_EQ(page().keyColours(), uniform(c.red == 255 ? 0xFF0000 : kBlack));
    }
    // A zero argument takes the other fields: red stays 255 when green is typed.
    page().controlTextDidChange(ColorChannel::kRed, "255");
    page().controlTextDidChange(ColorChannel::kGreen, "255");
    EXPECT_EQ(colour(), "255 255 0");
    page().controlTextDidChange(ColorChannel::kBlue, "255");
    EXPECT_EQ(colour(), "255 255 255");
    // A real zero is no change: the field's 255 is kept.
    page().controlTextDidChange(ColorChannel::kBlue, "0");
    EXPECT_EQ(page().light_edit_color_b(), "0");
    EXPECT_EQ(colour(), "255 255 0");
}

TEST_F(BacklightColourTest, RandomSwitchPreviewsTheExactColour) {
    // Off: the stored colour exactly, on the keys and in the swatch.
    EXPECT_FALSE(page().light_btn_randomcolor().on);
    EXPECT_TRUE(page().colorButtonsEnabled());
    EXPECT_EQ(page().keyColours(), uniform(0xCA5100));
    EXPECT_EQ(page().light_btn_color(), 0xCA5100u);
    EXPECT_EQ(stored(1, 1), "202 81 0 0 15 12 0");
    page().lightRondomColorSwitch();
    EXPECT_TRUE(page().light_btn_randomcolor().on);
    EXPECT_FALSE(page().colorButtonsEnabled());
    EXPECT_EQ(firstKeys(page().keyColours()), kColourful);
    expectSent(1, kDefaults);
    EXPECT_EQ(stored(1, 1), text(kDefaults));
}

TEST_F(BacklightTest, DirectionButtons) {
    connectInEnglish();
    // Each press changes its pair only; shown: top, right, left, bottom selected.
    const struct { ops::Direction pressed; int stored; std::array<bool, 4> shown; } cases[] = {
        {ops::kUp, 2, {true, false, true, false}},
        {ops::kRight, 1, {true, true, false, false}},
        {ops::kDown, 3, {false, true, false, true}},
        {ops::kLeft, 0, {false, false, true, true}},
    };
    page().lightModeSelectionChanged(10);  // Rolling, direction 0
    for (const auto& c : cases) {
        page().light_button_direction(c.pressed);
        EXPECT_EQ(sql("SELECT byte11 FROM t_lightdata WHERE profId = 1 AND mode = 11"), std::to_string(c.stored));
        EXPECT_EQ(sentLightMode().direction, c.stored);
        EXPECT_EQ((std::array{page().light_direction_top().on, page().light_direction_right().on,
                              page().light_direction_left().on, page().light_direction_bottom().on}),
                  c.shown);
    }
}

}  // namespace
}  // namespace qx9::test
