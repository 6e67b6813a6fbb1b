// Transactions: levels inside levels, failures inside them, and the operations that replace many
// rows at once.
#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <thread>

#include "store_support.h"

namespace qx9::test {
namespace {

TEST_F(StoreTest, EachLevelKeepsOrDropsItsWritesAndOnlyTheOutermostReachesTheFile) {
    // Level i adds profile "L<i>" and is committed when commits[i] says so, innermost first.
    const std::pair<std::vector<bool>, Rows> cases[] = {
        {{true, true}, {"L1", "L2"}},
        {{true, false}, {"L1"}},
        {{false, true}, {}},
        {{true, false, true}, {"L1"}},
        {{true, true, false}, {"L1", "L2"}},
    };
    for (const auto& [commits, kept] : cases) {
        sql_.exec("DELETE FROM t_profile WHERE profId > 1");
        std::vector<DeviceSQLite::Transaction> levels;
        for (std::size_t i = 0; i < commits.size(); ++i) {
            levels.push_back(db_.beginTransaction());
            db_.addProfile("L" + std::to_string(i + 1));
        }
        for (std::size_t i = commits.size(); i-- > 0;) {
            EXPECT_EQ(sql_.value("SELECT count(*) FROM t_profile"), "1");
            if (commits[i]) {
                EXPECT_TRUE(levels.back().commit());
            }
            levels.pop_back();
        }
        EXPECT_EQ(sql_.rows("SELECT name FROM t_profile WHERE profId > 1"), kept) << kept.size();
    }
}

TEST_F(StoreTest, AFailedOperationUndoesItsOwnWritesOrTheWholeTransaction) {
    // RAISE(ABORT): the operation's level is rolled back, the caller's writes around it stay.
    // RAISE(ROLLBACK): SQLite drops the whole transaction; what follows is refused, not written
    // on its own, and the commit fails.
    struct Case {
        const char* action;
        bool committed;
        Rows profiles;
    };
    const Case cases[] = {{"ABORT", true, {"Before", "After"}}, {"ROLLBACK", false, {}}};
    const std::int64_t macro = db_.addMacroProfile("M");
    ASSERT_TRUE(db_.replaceMacroRecords(macro, {event(0, kRecordDelay, 0, 10)}));
    for (const Case& c : cases) {
        sql_.exec("DELETE FROM t_profile WHERE profId > 1");
        sql_.refuse("BEFORE INSERT ON t_macrorecord WHEN NEW.record_value = 99", c.action);
        {
            DeviceSQLite::Transaction transaction = db_.beginTransaction();
            EXPECT_NE(db_.addProfile("Before"), 0);
            EXPECT_FALSE(db_.replaceMacroRecords(
                macro, {event(0, kRecordDelay, 0, 30), event(0, kRecordDelay, 1, 99)}));
            EXPECT_EQ(db_.addProfile("After") != 0, c.committed);
            EXPECT_EQ(transaction.active(), c.committed);
            EXPECT_EQ(transaction.commit(), c.committed);
        }
        EXPECT_EQ(sql_.rows("SELECT name FROM t_profile WHERE profId > 1"), c.profiles);
        EXPECT_EQ(sql_.rows("SELECT macro_id, record_index, record_value FROM t_macrorecord"),
                  Rows{"1|0|10"});
        sql_.allowAll();
    }
}

// A small configuration: ids out of step with the row order, a light row without a name.
Configuration sampleConfiguration() {
    Configuration c;
    c.profiles = {{1, "One"}, {5, "Five"}};
    c.configurationValues = {{7, 1, "language", "1033"}};
    c.keyAssignments = {{9, 1, 5, 4, kMacroTypeKey, 5, 6, 7, "B"}};
    c.lighting = {{11, 5, std::nullopt, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11}, 1}};
    c.userLights = {{3, 5, "Sunset", 14, 13}};
    c.userLightColours = {{4, 3, 41, 0x12ABEF}};
    c.macros = {{6, 2, 1, 40, "Combo"}};
    c.macroEvents = {{12, 6, kRecordKeyUp, 1, 4, "A up"}, {8, 6, kRecordKeyDown, 0, 4, "A"}};
    return c;
}

// Another program's write lock is waited for (a moment of qx9ctl beside the window); one that
// stays is named: StoreFileStates (InUse), and through qx9ctl CrashTest.LockedAndReadOnly….
TEST_F(StoreTest, AWriteWaitsForAnotherProgramsLock) {
    SqlFile other(file_);
    other.exec("BEGIN IMMEDIATE");
    std::thread commitSoon([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        other.exec("COMMIT");
    });
    EXPECT_GT(db_.addProfile("waited"), 0);
    commitSoon.join();
}

TEST_F(StoreTest, ConfigurationThatFailsPartWayLeavesTheFileAsItWas) {
    db_.writeLightProfile(1);
    db_.addKeyProfile({0, 0, 1, 4, kMacroTypeKey, 5, 0, 0, "B"});
    const std::pair<std::function<void(Configuration&)>, const char*> cases[] = {
        // The very last row written.
        {[](Configuration& c) { c.macroEvents[0].recordId = 8; },
         "cannot write the database: UNIQUE constraint failed: t_macrorecord.record_id"},
        // The last table emptied, after all the others.
        {[this](Configuration&) { sql_.exec("DROP TABLE t_profile"); },
         "cannot write the database: no such table: t_profile"},
    };
    for (const auto& [damage, message] : cases) {
        Configuration c = sampleConfiguration();
        damage(c);
        const auto before = dumpDatabase(file_.string());
        std::string error;
        EXPECT_FALSE(db_.replaceConfiguration(c, error));
        EXPECT_EQ(error, message);
        EXPECT_EQ(dumpDatabase(file_.string()), before);
    }
}

}  // namespace
}  // namespace qx9::test
