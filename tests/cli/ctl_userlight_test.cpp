// qx9ctl userlight …: the per-key lighting sets, checked in the output, the database and the
// colour block of the virtual keyboard.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <unistd.h>

#include "cli/ctl.h"
#include "cli/ctl_fixture.h"
#include "hid/virtual_qx9.h"
#include "store/device_sqlite.h"

namespace qx9::test {
namespace {

class Qx9ctlUserLight : public CtlTest {
protected:
    std::vector<UserLightLEDData> stored(std::int64_t set) {
        std::vector<UserLightLEDData> rows;
        DeviceSQLite::atPath(dir_ / "db.sqlite3").getUserLightLEDData(set, rows);
        return rows;
    }
    // The command reports of a wire log ("SET 04 18 …" lines), by code.
    std::vector<std::string> commands() {
        std::vector<std::string> codes;
        std::istringstream in(out_.str());
        for (std::string line; std::getline(in, line);) {
            if (line.starts_with("SET 04 ")) codes.push_back(line.substr(7, 2));
        }
        return codes;
    }
};

TEST_F(Qx9ctlUserLight, AddPaintShowApplyResetDelete) {
    ASSERT_EQ(run({"userlight", "add"}), 0) << err_.str();
    EXPECT_EQ(out_.str(), "1\tUser light1\n");
    ASSERT_EQ(run({"userlight", "add"}), 0) << err_.str();
    ASSERT_EQ(run({"userlight", "list"}), 0);
    EXPECT_EQ(out_.str(), "1\tUser light1\n2\tUser light2\n");

    ASSERT_EQ(run({"userlight", "paint", "1", "a", "escape", "44", "--color", "12ABEF"}, true), 0) << err_.str();
    // One colour block and the per-key mode: the painting's own transaction, nothing else.
    EXPECT_EQ(commands(), (std::vector<std::string>{"18", "23", "02", "F0", "18", "13", "02", "F0"}));
    EXPECT_EQ(stored(1).size(), 3u);
    const auto memory = keyboard();
    EXPECT_EQ(keyColour(memory, 56), 0x12ABEFu);  // a
    EXPECT_EQ(keyColour(memory, 1), 0x12ABEFu);   // escape
    EXPECT_EQ(keyColour(memory, 94), 0x12ABEFu);  // space
    EXPECT_EQ(keyColour(memory, 57), 0u);         // s
    EXPECT_EQ(decodeLightMode(memory)->mode, 0x80);

    ASSERT_EQ(run({"userlight", "show", "1"}), 0);
    EXPECT_EQ(out_.str(), "escape\t41\t12ABEF\na\t4\t12ABEF\nspace\t44\t12ABEF\n");
    ASSERT_EQ(run({"--json", "userlight", "show", "1"}), 0);
    EXPECT_NE(out_.str().find("\"colour\": \"12ABEF\""), std::string::npos);

    // Painting black takes the key's colour away.
    ASSERT_EQ(run({"userlight", "paint", "1", "space", "--color", "000000"}), 0) << err_.str();
    EXPECT_EQ(stored(1).size(), 2u);

    // Applying the second set stores all of its keys: its black ones leave the first set too.
    ASSERT_EQ(run({"userlight", "paint", "2", "s", "--color", "#FF0000"}), 0) << err_.str();
    EXPECT_EQ(stored(1).size(), 0u);
    ASSERT_EQ(run({"userlight", "apply", "2"}), 0) << err_.str();
    EXPECT_EQ(keyColour(keyboard(), 57), 0xFF0000u);
    ASSERT_EQ(run({"userlight", "reset", "2"}), 0) << err_.str();
    EXPECT_EQ(stored(2).size(), 0u);
    EXPECT_EQ(keyColour(keyboard(), 57), 0u);

    ASSERT_EQ(run({"userlight", "delete", "1"}), 0) << err_.str();
    ASSERT_EQ(run({"userlight", "list"}), 0);
    EXPECT_EQ(out_.str(), "2\tUser light2\n");
}

TEST_F(Qx9ctlUserLight, BadInputIsRefusedAndChangesNothing) {
    ASSERT_EQ(run({"userlight", "add"}), 0) << err_.str();
    ASSERT_EQ(run({"userlight", "paint", "1", "a", "--color", "00FF00"}), 0) << err_.str();
    const VirtualQX9Memory before = keyboard();
    struct Case {
        std::vector<std::string> args;
        const char* message;
    };
    const Case cases[] = {
        {{"userlight", "paint", "7", "a", "--color", "FF0000"}, "no user light 7"},
        {{"userlight", "paint", "1", "a", "--color", "red"}, "RRGGBB"},
        {{"userlight", "paint", "1", "a", "--color", "FF00001"}, "RRGGBB"},
        {{"userlight", "paint", "1", "a", "nokey", "--color", "FF0000"}, "no key \"nokey\""},
        {{"userlight", "paint", "1", "f4", "--color", "FF0000"}, "\"f4\" is not on the on-screen keyboard"},  // with Fn only
        {{"userlight", "paint", "1", "a"}, "usage: qx9ctl userlight paint"},
        {{"userlight", "paint", "1", "--color", "FF0000"}, "usage: qx9ctl userlight paint"},
        {{"userlight", "apply", "x"}, "must be a number"},
        {{"userlight", "reset", "2"}, "no user light 2"},
        {{"userlight", "delete"}, "usage: qx9ctl userlight"},
        {{"userlight", "glow"}, "unknown userlight command"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        EXPECT_EQ(run(c.args), 1);
        EXPECT_NE(err_.str().find(c.message), std::string::npos) << err_.str();
        EXPECT_EQ(err_.str().find('\n'), err_.str().size() - 1) << "one line";
    }
    ASSERT_EQ(stored(1).size(), 1u);
    EXPECT_EQ(stored(1)[0].key_rgbvalue, 0x00FF00);
    EXPECT_EQ(keyboard(), before);
}

TEST_F(Qx9ctlUserLight, ApplyToAMissingSetIsRefused) {
    EXPECT_EQ(run({"userlight", "apply", "1"}), 1);
    EXPECT_NE(err_.str().find("no user light 1"), std::string::npos);
    ASSERT_EQ(run({"userlight", "list"}), 0);
    EXPECT_EQ(out_.str(), "");
}

}  // namespace
}  // namespace qx9::test
