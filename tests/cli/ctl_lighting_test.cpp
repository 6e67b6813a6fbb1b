// qx9ctl light: the backlight page from the command line, checked on the database and on the
// virtual keyboard.
#include <gtest/gtest.h>

#include <unistd.h>
#include <filesystem>
#include <sstream>

#include "cli/ctl.h"
#include "cli/ctl_fixture.h"
#include "common/console.h"
#include "hid/virtual_qx9.h"
#include "store/device_sqlite.h"

namespace qx9::test {
namespace {

class Qx9ctlLight : public CtlTest {
protected:
    std::optional<VirtualLightMode> sent() { return decodeLightMode(keyboard()); }
    // One line of `light show`: the value of a setting.
    std::string shown(const std::string& setting) {
        EXPECT_EQ(run({"light", "show"}), 0) << err_.str();
        std::istringstream in(out_.str());
        for (std::string line; std::getline(in, line);) {
            if (line.starts_with(setting + "\t")) return line.substr(setting.size() + 1);
        }
        return "<missing>";
    }
    std::string stored(int mode) {
        DeviceSQLite db = DeviceSQLite::atPath(dir_ / "db.sqlite3");
        lightData d;
        db.queryLightInfo(1, mode, d);
        std::string text;
        for (int i : {1, 2, 3, 8, 9, 10, 11})
            text += (text.empty() ? "" : " ") + std::to_string(d.data[i]);
        return text;
    }
};

TEST_F(Qx9ctlLight, ListsTheCatalogueWithTheSelection) {
    ASSERT_EQ(run({"settings", "language", "en"}), 0) << err_.str();
    ASSERT_EQ(run({"light", "list"}), 0) << err_.str();
    const char* names[20] = {
        "Static",   "SingleOn", "SingleOff", "Glittering", "Falling",  "Colourful",      "Breath",
        "Spectrum", "Outward",  "Scrolling", "Rolling",    "Rotating", "Explode",        "Launch",
        "Ripples",  "Flowing",  "Pulsating", "Tilt",       "Shuttle",  "Close Backlight"};
    std::string expected;
    for (int r = 0; r < 20; ++r) {
        expected += std::to_string(r) + "\t" + std::to_string(r < 19 ? r + 1 : 0) + "\t" +
                    names[r] + "\t" + (r == 10 ? "*" : "") + "\n";
    }
    EXPECT_EQ(out_.str(), expected);
    EXPECT_FALSE(sent());  // listing sends nothing
}

TEST_F(Qx9ctlLight, SelectShowsAndSendsTheEffect) {
    ASSERT_EQ(run({"settings", "language", "en"}), 0);
    ASSERT_EQ(run({"light", "select", "9"}), 0) << err_.str();
    ASSERT_TRUE(sent());
    EXPECT_EQ(sent()->mode, 10);
    EXPECT_EQ(sent()->direction, 3);
    ASSERT_EQ(run({"light", "show"}), 0);
    EXPECT_EQ(
        out_.str(),
        "profile\t1\nmode\t10\nrow\t9\nname\tScrolling\ncolor\t202 81 0\ncolor_controls\tdisabled\n"
        "random\ton\nrandom_switch\ton, enabled\nbrightness\t15\nbrightness_slider\t15\nspeed\t12\n"
        "speed_slider\t12, enabled\ndirection\t3 down\ndirection_buttons\tup (selected), down\n"
        "preview\tcolourful\nsleeplight\t0\n");

    ASSERT_EQ(run({"light", "select", "19"}), 0) << err_.str();
    EXPECT_EQ(sent()->mode, 0);
    EXPECT_EQ(sent()->brightness, 15);
    EXPECT_EQ(shown("brightness_slider"), "0");
    EXPECT_EQ(shown("random_switch"), "off, disabled");
    EXPECT_EQ(shown("preview"), "#000000");
}

TEST_F(Qx9ctlLight, ColourPresetAndRandom) {
    ASSERT_EQ(run({"light", "select", "0"}), 0);
    // Random colour is on by default: the colour controls are off.
    EXPECT_EQ(run({"light", "color", "200", "100", "50"}), 1);
    EXPECT_NE(err_.str().find("random colour is on"), std::string::npos) << err_.str();
    ASSERT_EQ(run({"light", "random", "off"}), 0) << err_.str();
    EXPECT_EQ(stored(1), "202 81 0 0 15 12 0");
    EXPECT_EQ(shown("preview"), "#000000");  // a selection previews 0 or full per channel

    ASSERT_EQ(run({"light", "color", "200", "100", "50"}), 0) << err_.str();
    EXPECT_EQ(stored(1), "200 100 50 0 15 12 0");
    EXPECT_EQ(sent()->red, 200);
    EXPECT_EQ(sent()->blue, 50);
    ASSERT_EQ(run({"light", "preset", "5"}), 0) << err_.str();
    EXPECT_EQ(stored(1), "0 137 253 0 15 12 0");
    EXPECT_EQ(sent()->green, 137);

    ASSERT_EQ(run({"light", "random", "on"}), 0);
    EXPECT_EQ(sent()->random, 1);
    const auto transactions = keyboard().transactions;
    ASSERT_EQ(run({"light", "random", "on"}), 0);  // the switch shows it already
    EXPECT_EQ(keyboard().transactions, transactions);
}

TEST_F(Qx9ctlLight, SlidersDirectionAndSleep) {
    ASSERT_EQ(run({"light", "select", "10"}), 0);  // Rolling
    ASSERT_EQ(run({"light", "brightness", "7"}), 0) << err_.str();
    ASSERT_EQ(run({"light", "speed", "3"}), 0) << err_.str();
    ASSERT_EQ(run({"light", "direction", "right"}), 0) << err_.str();
    EXPECT_EQ(stored(11), "202 81 0 1 7 3 1");
    EXPECT_EQ(sent()->brightness, 7);
    EXPECT_EQ(sent()->speed, 3);
    EXPECT_EQ(sent()->direction, 1);
    EXPECT_EQ(shown("direction_buttons"), "right (selected), left");

    ASSERT_EQ(run({"light", "sleep", "2"}), 0) << err_.str();
    EXPECT_EQ(decodeSystemFunctions(keyboard())->sleepTime, 2);
    ASSERT_EQ(run({"settings", "show"}), 0);
    EXPECT_NE(out_.str().find("sleeplight\t2\n"), std::string::npos);
}

TEST_F(Qx9ctlLight, RefusedCommandsChangeNothing) {
    ASSERT_EQ(run({"settings", "language", "en"}), 0);
    ASSERT_EQ(run({"light", "select", "9"}), 0);  // Scrolling
    const auto before = keyboard();
    const std::string record = stored(10);
    struct Case {
        std::vector<std::string> args;
        const char* message;
    };
    const Case cases[] = {
        {{"light", "select", "20"}, "the row is 0-19"},
        {{"light", "color", "256", "0", "0"}, "red is 0-255"},
        {{"light", "color", "1", "2"}, "usage: qx9ctl light color R G B"},
        {{"light", "color", "1", "2", "x"}, "must be a number"},
        {{"light", "color", "1", "2", "3"}, "random colour is on"},
        {{"light", "preset", "15"}, "the preset is 1-14"},
        {{"light", "random", "maybe"}, "on or off"},
        {{"light", "brightness", "16"}, "the brightness is 0-15"},
        {{"light", "speed", "-1"}, "the speed is 0-15"},
        {{"light", "direction", "left"}, "\"Scrolling\" takes up or down"},
        {{"light", "direction", "north"}, "up, down, left or right"},
        {{"light", "sleep", "4"}, "the sleep time is 0-3"},
        {{"light", "dim"}, "unknown light command dim"},
        {{"light"}, "usage: qx9ctl light list"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        EXPECT_EQ(run(c.args), 1);
        EXPECT_NE(err_.str().find(c.message), std::string::npos) << err_.str();
        EXPECT_EQ(err_.str().find('\n'), err_.str().size() - 1) << "one line";
    }
    EXPECT_EQ(keyboard(), before);  // nothing was sent
    EXPECT_EQ(stored(10), record);
    // Effects without a speed or a direction, and Close Backlight without random colour.
    ASSERT_EQ(run({"light", "select", "0"}), 0);
    EXPECT_EQ(run({"light", "speed", "3"}), 1);
    EXPECT_NE(err_.str().find("\"Static\" has no speed"), std::string::npos) << err_.str();
    EXPECT_EQ(run({"light", "direction", "up"}), 1);
    EXPECT_NE(err_.str().find("\"Static\" has no direction"), std::string::npos) << err_.str();
    ASSERT_EQ(run({"light", "select", "19"}), 0);
    EXPECT_EQ(run({"light", "random", "off"}), 1);
    EXPECT_NE(err_.str().find("has no random colour"), std::string::npos) << err_.str();
    const auto transactions = keyboard().transactions;
    EXPECT_EQ(run({"light", "preset", "1"}), 1);
    EXPECT_NE(err_.str().find("has no colour of its own"), std::string::npos) << err_.str();
    EXPECT_EQ(keyboard().transactions, transactions);
    EXPECT_EQ(stored(0), "202 81 0 1 15 12 0");
}

}  // namespace
}  // namespace qx9::test
