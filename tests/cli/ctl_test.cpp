// qx9ctl as a user types it: output, exit status, the database and the virtual keyboard after.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

#include "cli/ctl.h"
#include "cli/ctl_fixture.h"
#include "common/bytes.h"
#include "hid/virtual_qx9.h"
#include "i18n/language.h"

namespace qx9::test {
namespace {

class Qx9ctl : public CtlTest {
protected:
    // Runs qx9ctl on the test's database and virtual keyboard file.
};

TEST_F(Qx9ctl, ConnectWithTheWireLogPrintsTheFirstConnection) {
    std::ostringstream out, err;
    const std::string db = (dir_ / "fresh.sqlite3").string();
    ASSERT_EQ(ctl::run({"--db", db, "--device", "virtual", "--wire", "-", "connect"}, out, err), 0) << err.str();
    std::vector<std::string> lines;
    std::istringstream in(out.str());
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    ASSERT_EQ(lines.size(), 4u * 2 - 1 + 2 * 3 + 9);  // system functions, then the key map
    EXPECT_EQ(lines[0].substr(0, 9), "SET 04 18");
    EXPECT_EQ(lines[2].substr(0, 27), "SET 04 17 01 00 00 00 00 00");
    EXPECT_EQ(lines[4].substr(lines[4].size() - 5), "AA 55");
    EXPECT_EQ(lines[5].substr(0, 12), "SET 04 02 01");
    EXPECT_EQ(lines[9].substr(0, 33), "SET 04 11 00 00 00 00 00 00 09 00");
    for (const std::string& l : lines) EXPECT_EQ(l.size(), 3 + 64 * 3u) << l;
}

TEST_F(Qx9ctl, ProfilesAndKeysLikeTheWindow) {
    ASSERT_EQ(run({"profile", "add"}), 0) << err_.str();
    EXPECT_EQ(out_.str(), "2\tConfiguration File 1\n");
    ASSERT_EQ(run({"profile", "rename", "2", "Games"}), 0) << err_.str();
    ASSERT_EQ(run({"profile", "list"}), 0);
    EXPECT_EQ(out_.str(), "1\tConfiguration File 1\n2\tGames\n");
    ASSERT_EQ(run({"--json", "profile", "list"}), 0);
    EXPECT_NE(out_.str().find("\"name\": \"Games\""), std::string::npos);

    ASSERT_EQ(run({"key", "set", "1", "0", "a", "key:5"}), 0) << err_.str();
    ASSERT_EQ(run({"key", "set", "1", "0", "escape", "combo:225+30"}), 0) << err_.str();
    ASSERT_EQ(run({"key", "set", "1", "0", "f4", "mouse:6"}), 0) << err_.str();
    ASSERT_EQ(run({"key", "set", "1", "1", "57", "disable"}), 0) << err_.str();
    ASSERT_EQ(run({"key", "list", "1", "0"}), 0);
    EXPECT_EQ(out_.str(), "a\t4\t3\t5\t0\t0\tB\nescape\t41\t3\t30\t225\t0\tLeft Shift + 1\nf4\t61\t6\t6\t0\t0\tScroll Down\n");
    const auto memory = keyboard();
    EXPECT_EQ(keyRecord(memory, 0, 56), (std::array<std::uint8_t, 4>{2, 0, 5, 0}));
    EXPECT_EQ(keyRecord(memory, 0, 1), (std::array<std::uint8_t, 4>{2, 2, 0x1E, 0}));
    EXPECT_EQ(keyRecord(memory, 0, 5), (std::array<std::uint8_t, 4>{1, 3, 0xFF, 0}));
}

TEST_F(Qx9ctl, SettingsReachTheKeyboard) {
    ASSERT_EQ(run({"settings", "gamemode", "on"}), 0) << err_.str();
    ASSERT_EQ(run({"settings", "block", "win", "on"}), 0) << err_.str();
    ASSERT_EQ(run({"fn-mode", "fn"}), 0) << err_.str();
    ASSERT_EQ(run({"settings", "language", "zh-TW"}), 0) << err_.str();
    ASSERT_EQ(run({"settings", "show"}), 0);
    EXPECT_NE(out_.str().find("language\t1028\n"), std::string::npos);
    EXPECT_NE(out_.str().find("gamemode\t1\n"), std::string::npos);
    EXPECT_NE(out_.str().find("disable_win\t1\n"), std::string::npos);
    const auto system = decodeSystemFunctions(keyboard());
    ASSERT_TRUE(system);
    EXPECT_EQ(system->gameMode, 1);
    EXPECT_EQ(system->lockWin, 1);
    EXPECT_EQ(system->fnFunction, 1);
    ASSERT_EQ(run({"settings", "reset-all"}), 0) << err_.str();
    ASSERT_EQ(run({"settings", "show"}), 0);
    EXPECT_NE(out_.str().find("gamemode\t0\n"), std::string::npos);
}

TEST_F(Qx9ctl, BadInputIsRefusedAndChangesNothing) {
    struct Case {
        std::vector<std::string> args;
        const char* message;
    };
    const Case cases[] = {
        {{"key", "set", "1", "0", "printScreen", "disable"}, "no key \"printScreen\""},
        {{"key", "set", "7", "0", "a", "disable"}, "no profile 7"},
        {{"key", "set", "1", "2", "a", "disable"}, "the layer is 0 (base) or 1 (Fn)"},
        {{"key", "set", "1", "0", "a", "mouse:9"}, "mouse is 1-8"},
        {{"key", "set", "1", "0", "a", "macro:3"}, "no macro 3"},
        {{"key", "set", "1", "0", "a", "key:9999"}, "no function 9999"},
        {{"key", "set", "1", "0", "a", "combo:4+x"}, "must be a number"},
        {{"key", "set", "1", "0", "a", "teleport"}, "unknown function"},
        {{"profile", "delete", "1"}, "The last configuration scheme cannot be deleted"},
        {{"profile", "rename", "1", ""}, "cannot be empty"},
        {{"settings", "gamemode", "maybe"}, "on or off"},
        {{"frobnicate"}, "unknown command"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.message);
        curLanguage = kLanguageEnglish;
        EXPECT_EQ(run(c.args), 1);
        EXPECT_NE(err_.str().find(c.message), std::string::npos) << err_.str();
        EXPECT_EQ(err_.str().find('\n'), err_.str().size() - 1) << "one line";
    }
    ASSERT_EQ(run({"key", "list", "1", "0"}), 0);
    EXPECT_EQ(out_.str(), "");
    EXPECT_FALSE(keyboard().keyTables[0]);  // nothing was sent by the refused commands
}

TEST_F(Qx9ctl, WithoutAKeyboardItStoresAndSaysSo) {
    std::ostringstream out, err;
    const std::string db = (dir_ / "db.sqlite3").string();
    // "auto" finds no QX9 on this machine.
    ASSERT_EQ(ctl::run({"--db", db, "key", "set", "1", "0", "a", "disable"}, out, err), 0) << err.str();
    EXPECT_NE(err.str().find("nothing was sent"), std::string::npos);
    out.str("");
    ASSERT_EQ(ctl::run({"--db", db, "key", "list", "1", "0"}, out, err), 0);
    EXPECT_EQ(out.str(), "a\t4\t2\t1\t0\t0\tDisable Keys\n");
}

TEST_F(Qx9ctl, UnreadableDatabaseIsAnError) {
    std::ostringstream out, err;
    const auto notADatabase = dir_ / "text.sqlite3";
    { std::ofstream(notADatabase) << "this is not a database, and must stay as it is\n"; }
    EXPECT_EQ(ctl::run({"--db", notADatabase.string(), "--device", "virtual", "profile", "list"}, out, err), 1);
    EXPECT_NE(err.str().find("cannot open the database"), std::string::npos);
    std::ifstream in(notADatabase);
    std::string text((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    EXPECT_EQ(text, "this is not a database, and must stay as it is\n");
}

}  // namespace
}  // namespace qx9::test
