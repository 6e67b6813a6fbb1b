// Many qx9ctl processes change one database and one virtual keyboard at the same time, as a
// script beside the window does: nothing is lost, the limits hold, and the keyboard ends as the
// database says.
#include <gtest/gtest.h>

#include "virtual/virtual_qx9_memory.h"
#include "layout/key_maps.h"
#include "ops/macros.h"
#include "support/processes.h"
#include "support/sql_value.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

constexpr int kWriters = 20;

class ParallelWriters : public ::testing::Test {
protected:
    ParallelWriters() { installKB108KMaps(); }

    std::string db() const { return (dir_ / "db.sqlite3").string(); }
    std::string state() const { return (dir_ / "kb.json").string(); }
    std::vector<std::string> command(std::vector<std::string> args) const {
        args.insert(args.begin(), {"--db", db(), "--device", "virtual:" + state()});
        return args;
    }
    int run(const std::vector<std::string>& args) const { return exitStatus(startProcess(QX9CTL, command(args))); }
    // Each command `n` times at once; how many exited 0.
    int together(const std::vector<std::vector<std::string>>& commands) const {
        std::vector<std::vector<std::string>> all;
        for (const auto& c : commands) all.push_back(command(c));
        int succeeded = 0;
        for (int status : runTogether(QX9CTL, all)) succeeded += status == 0;
        return succeeded;
    }
    VirtualQX9Memory keyboard() const {
        VirtualQX9 kb;
        std::string error;
        EXPECT_TRUE(kb.loadState(state(), error)) << error;
        return kb.memory();
    }
    std::string sql(const std::string& query) const { return sqlValue(db(), query); }

    TempDir dir_;
    ConsoleCapture quiet_;
};

TEST_F(ParallelWriters, EveryInsertedEventIsKept) {
    ASSERT_EQ(run({"macro", "add"}), 0);
    EXPECT_EQ(together(std::vector<std::vector<std::string>>(kWriters, {"macro", "insert", "1", "key:a"})), kWriters);
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_macrorecord WHERE macro_id = 1"), std::to_string(2 * kWriters));
    EXPECT_EQ(keyboard().macroBlock, keyboardOf(db(), {SaveMacroToKeyboard()}).macroBlock);
    EXPECT_EQ(keyboard().droppedBlocks, 0u);
}

TEST_F(ParallelWriters, EveryPaintedKeyIsKept) {
    ASSERT_EQ(run({"userlight", "add"}), 0);
    const char* keys[kWriters] = {"q", "w", "e", "r", "t", "y", "u", "i", "o", "p", "a", "s", "d", "f", "g", "h", "j", "k", "l", "z"};
    std::vector<std::vector<std::string>> paints;
    for (int i = 0; i < kWriters; ++i) {
        char colour[8];
        std::snprintf(colour, sizeof colour, "%06X", 0x010100 * (i + 1));
        paints.push_back({"userlight", "paint", "1", keys[i], "--color", colour});
    }
    EXPECT_EQ(together(paints), kWriters);
    EXPECT_EQ(sql("SELECT COUNT(DISTINCT rgbvalue) FROM t_userlight_leddata WHERE light_id = 1"), std::to_string(kWriters));
    EXPECT_EQ(keyboard().keyColours, keyboardOf(db(), {SendUserLightLedData(1)}).keyColours);
}

TEST_F(ParallelWriters, MacrosStopAtTheKeyboardsLimitWithNamesOfTheirOwn) {
    {
        DeviceSQLite store = DeviceSQLite::atPath(db());
        for (int i = 0; i < 95; ++i) {
            std::string name;
            std::int64_t id = 0;
            ASSERT_TRUE(ops::addMacro({store}, name, id));
        }
    }
    EXPECT_EQ(together(std::vector<std::vector<std::string>>(kWriters, {"macro", "add"})), 5);
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_macro_data"), "100");
    EXPECT_EQ(sql("SELECT COUNT(DISTINCT macro_name) FROM t_macro_data"), "100");
}

TEST_F(ParallelWriters, NewProfilesGetNamesOfTheirOwn) {
    EXPECT_EQ(together(std::vector<std::vector<std::string>>(kWriters, {"profile", "add"})), kWriters);
    // Named after the number of profiles before each: 1 to 20 (the first the same as profile 1's).
    EXPECT_EQ(sql("SELECT COUNT(DISTINCT name) FROM t_profile WHERE profId > 1"), std::to_string(kWriters));
}

// An import racing insertions is never partly undone: the macro holds the imported events, then
// whole key presses of the insertions that came after it.
TEST_F(ParallelWriters, AnImportIsWholeBeforeAndAfterInsertions) {
    ASSERT_EQ(run({"macro", "add"}), 0);
    for (const char* event : {"key:b", "delay:40", "key:c"}) ASSERT_EQ(run({"macro", "insert", "1", event}), 0);
    const std::string backup = (dir_ / "backup.json").string();
    ASSERT_EQ(run({"export", backup}), 0);
    ASSERT_EQ(run({"macro", "insert", "1", "key:z"}), 0);
    std::vector<std::vector<std::string>> commands(kWriters / 2, {"macro", "insert", "1", "key:a"});
    commands.insert(commands.begin() + kWriters / 4, {"import", backup});
    EXPECT_EQ(together(commands), kWriters / 2 + 1);
    std::string values;
    sqlRows(db(), "SELECT record_value FROM t_macrorecord WHERE macro_id = 1 ORDER BY record_index", [&](sqlite3_stmt* st) {
        values += columnText(st, 0) + " ";
    });
    ASSERT_TRUE(values.starts_with("5 5 40 6 6 ")) << values;  // b, 40 ms, c: z is gone
    for (std::size_t at = 11; at < values.size(); at += 4) EXPECT_EQ(values.substr(at, 4), "4 4 ") << values;
    EXPECT_EQ(keyboard().macroBlock, keyboardOf(db(), {SaveMacroToKeyboard()}).macroBlock);
}

}  // namespace
}  // namespace qx9::test
