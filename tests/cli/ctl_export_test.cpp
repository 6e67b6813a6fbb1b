// qx9ctl export / import: the file, the database after, and what the keyboard receives.
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>
#include <unistd.h>

#include "cli/ctl.h"
#include "cli/ctl_fixture.h"
#include "hid/virtual_qx9.h"

namespace qx9::test {
namespace {

class Qx9ctlExport : public CtlTest {
protected:
    std::string file(const std::string& name) {
        std::ifstream in(dir_ / name);
        return std::string((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
    }
    int run(const std::string& db, std::vector<std::string> args) {
        return runOn(db, db + ".kb.json", std::move(args));
    }
    VirtualQX9Memory keyboardOf(const std::string& db) { return keyboard(db + ".kb.json"); }
    void write(const std::string& name, const std::string& text) { std::ofstream(dir_ / name) << text; }
};

TEST_F(Qx9ctlExport, ExportThenImportElsewhereGivesTheSameConfiguration) {
    ASSERT_EQ(run("a.sqlite3", {"profile", "add"}), 0) << err_.str();
    ASSERT_EQ(run("a.sqlite3", {"key", "set", "1", "0", "a", "key:5"}), 0) << err_.str();
    ASSERT_EQ(run("a.sqlite3", {"settings", "gamemode", "on"}), 0) << err_.str();
    ASSERT_EQ(run("a.sqlite3", {"userlight", "add"}), 0) << err_.str();
    ASSERT_EQ(run("a.sqlite3", {"userlight", "paint", "1", "escape", "--color", "0080FF"}), 0) << err_.str();
    ASSERT_EQ(run("a.sqlite3", {"export", (dir_ / "config.json").string()}), 0) << err_.str();
    const std::string exported = file("config.json");
    EXPECT_NE(exported.find("\"format\": \"halvorn-qx9-configuration\""), std::string::npos);
    EXPECT_FALSE(std::filesystem::exists(dir_ / "config.json.part"));

    ASSERT_EQ(run("b.sqlite3", {"import", (dir_ / "config.json").string()}), 0) << err_.str();
    EXPECT_EQ(err_.str(), "");
    ASSERT_EQ(run("b.sqlite3", {"export", "-"}), 0) << err_.str();
    EXPECT_EQ(out_.str(), exported);
    ASSERT_EQ(run("b.sqlite3", {"profile", "list"}), 0);
    EXPECT_EQ(out_.str(), "1\tConfiguration File 1\n2\tConfiguration File 1\n");

    // The keyboard got what a first connection sends: colours, system functions, key map.
    const VirtualQX9Memory memory = keyboardOf("b.sqlite3");
    EXPECT_EQ(keyColour(memory, 1), 0x0080FFu);
    EXPECT_EQ(decodeSystemFunctions(memory)->gameMode, 1);
    EXPECT_EQ(keyRecord(memory, 0, 56), (std::array<std::uint8_t, 4>{2, 0, 5, 0}));
}

TEST_F(Qx9ctlExport, DamagedOrForeignFilesAreRefusedAndChangeNothing) {
    ASSERT_EQ(run("a.sqlite3", {"userlight", "add"}), 0) << err_.str();
    ASSERT_EQ(run("a.sqlite3", {"export", (dir_ / "config.json").string()}), 0) << err_.str();
    const std::string good = file("config.json");
    write("cut.json", good.substr(0, good.size() - 40));
    write("foreign.json", R"({"theme": "dark"})");
    std::string bad = good;
    bad.replace(bad.find("\"version\": 1"), 12, "\"version\": 7");
    write("newer.json", bad);
    struct Case {
        std::string file;
        const char* message;
    };
    const Case cases[] = {
        {"cut.json", "not a complete JSON document"},
        {"foreign.json", "not a QX9 configuration"},
        {"newer.json", "format version 7"},
        {"missing.json", "cannot read"},
    };
    const VirtualQX9Memory before = keyboardOf("a.sqlite3");
    for (const Case& c : cases) {
        SCOPED_TRACE(c.file);
        EXPECT_EQ(run("a.sqlite3", {"import", (dir_ / c.file).string()}), 1);
        EXPECT_NE(err_.str().find(c.message), std::string::npos) << err_.str();
        EXPECT_EQ(err_.str().find('\n'), err_.str().size() - 1) << "one line";
    }
    ASSERT_EQ(run("a.sqlite3", {"export", "-"}), 0);
    EXPECT_EQ(out_.str(), good);
    EXPECT_EQ(keyboardOf("a.sqlite3"), before);
    // A refused file does not even create a database that did not exist.
    EXPECT_EQ(run("new.sqlite3", {"import", (dir_ / "foreign.json").string()}), 1);
    EXPECT_FALSE(std::filesystem::exists(dir_ / "new.sqlite3"));
    EXPECT_EQ(run("a.sqlite3", {"export"}), 1);
    EXPECT_NE(err_.str().find("usage: qx9ctl export FILE"), std::string::npos);
}

}  // namespace
}  // namespace qx9::test
