// The change history: every kind of change taken back and made again, in the database and on the
// virtual QX9; random sequences undone to the start; refusals.
#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <random>

#include "i18n/language.h"
#include "ops/configuration.h"
#include "ops/history.h"
#include "ops/key_assignment.h"
#include "ops/lighting.h"
#include "ops/macros.h"
#include "ops/profiles.h"
#include "ops/settings.h"
#include "ops/user_lights.h"
#include "support/sql_value.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

constexpr std::int64_t kCapsLock = 57;
constexpr std::int64_t kKeyA = 4;

// Every table, row by row.
std::string contents(const std::filesystem::path& file) {
    static const char* const kTables[] = {"t_profile",   "t_configdata",        "t_lightdata",  "t_keyrgb",
                                          "t_userlight_data", "t_userlight_leddata", "t_triggerkey", "t_keyprofile",
                                          "t_macro_data", "t_macrorecord"};
    std::string all;
    for (const char* table : kTables) {
        sqlRows(file.string(), std::string("SELECT * FROM ") + table + " ORDER BY 1", [&](sqlite3_stmt* st) {
            all += table;
            for (int c = 0; c < sqlite3_column_count(st); ++c) all += '|' + columnText(st, c, "NULL");
            all += '\n';
        });
    }
    return all;
}

::testing::AssertionResult sameBlocks(const VirtualQX9Memory& a, const VirtualQX9Memory& b) {
    const std::pair<const char*, bool> blocks[] = {
        {"base key map", a.keyTables[0] == b.keyTables[0]}, {"Fn key map", a.keyTables[1] == b.keyTables[1]},
        {"macros", a.macroBlock == b.macroBlock},           {"light mode", a.lightMode == b.lightMode},
        {"key colours", a.keyColours == b.keyColours},      {"system functions", a.systemFunctions == b.systemFunctions}};
    for (const auto& [name, same] : blocks) {
        if (!same) return ::testing::AssertionFailure() << "the keyboard's " << name << " differ";
    }
    return ::testing::AssertionSuccess();
}

class HistoryTest : public WireFixture {
public:  // the cases below reach the fixture's database
    HistoryTest() : db_(DeviceSQLite::atPath(file_)) {
        curLanguage = kLanguageEnglish;
        comm_->setDevice(keyboard_);
        sender_ = std::make_unique<DirectSender>(*comm_, db_);
        // A macro with events, a per-key set, a second profile; the keyboard holds all of it.
        const ops::Target t{db_};
        std::string name;
        ops::addMacro(t, name, macro_);
        ops::storeEvents(t, macro_, *ops::keyPressEvents(kKeyA), nullptr);
        ops::addUserLight(t, name, set_);
        ops::paintKeys(t, set_, {kKeyA}, 0x00FF00);
        ops::addProfile(t, name, profile_);
        ops::assignKey(t, 1, 0, kKeyA, *ops::paletteFunction(kCapsLock));
        ops::connectKeyboard(target());
        ops::sendMacros(target());
        ops::sendUserLightColours(target(), set_);
        ops::sendLightMode(target(), 1, 1);
    }
    ops::Target target() { return {db_, sender_.get()}; }
    std::int64_t steps() const { return static_cast<std::int64_t>(ops::history(db_).size()); }

    TempDir dir_;
    std::filesystem::path file_ = dir_ / "history.sqlite3";
    DeviceSQLite db_;
    std::unique_ptr<DirectSender> sender_;
    std::int64_t macro_ = 0, set_ = 0, profile_ = 0;
};

using Change = std::function<ops::Outcome(HistoryTest&)>;

ops::Outcome importOther(HistoryTest& h) {
    DeviceSQLite other = DeviceSQLite::atPath(h.dir_ / "other.sqlite3");
    ops::assignKey({other}, 1, 0, kKeyA, ops::disabledFunction());
    ops::setSleepTime({other}, 2, {});
    std::string document;
    ops::exportConfiguration(other, document);
    return ops::importConfiguration(h.target(), document);
}

TEST_F(HistoryTest, EveryKindOfChangeIsUndoneAndRedoneInTheDatabaseAndOnTheKeyboard) {
    LightRecord record{};
    std::int64_t mode = 0;
    // The keyboard shows either an effect or a per-key set: before each change it shows the one
    // the change concerns.
    struct Case {
        const char* name;
        Change change;
        bool showsSet = false;
    };
    const Case cases[] = {
        {"assign Caps Lock", [](HistoryTest& h) { return ops::assignKey(h.target(), 1, 0, kCapsLock, ops::disabledFunction()); }},
        {"add macro Macro2", [](HistoryTest& h) { std::string n; std::int64_t id; return ops::addMacro(h.target(), n, id); }},
        {"rename macro M", [](HistoryTest& h) { return ops::renameMacro(h.target(), h.macro_, "M"); }},
        {"delete macro Macro1", [](HistoryTest& h) { return ops::deleteMacro(h.target(), h.macro_); }},
        {"edit macro Macro1", [](HistoryTest& h) { return ops::changeEvents(h.target(), h.macro_, [](std::vector<ops::RecordRow>& e) {
             const std::vector<ops::RecordRow> pause = ops::delayEvents(250);
             e.insert(e.begin() + 1, pause.begin(), pause.end());
             return ops::Outcome::done();
         }); }},
        {"edit macro Macro1", [](HistoryTest& h) { return ops::saveMacro(h.target(), h.macro_, nullptr, ops::kDefaultDelay, 40, nullptr); }},
        {"add profile Configuration File 2", [](HistoryTest& h) { std::string n; std::int64_t id; return ops::addProfile(h.target(), n, id); }},
        {"rename profile Work", [](HistoryTest& h) { return ops::renameProfile(h.target(), h.profile_, "Work"); }},
        {"delete profile Configuration File 1", [](HistoryTest& h) { return ops::deleteProfile(h.target(), h.profile_); }},
        {"choose backlight effect 5", [&](HistoryTest& h) { return ops::selectEffect(h.target(), 1, 5, record); }},
        {"backlight colour #FF4000", [](HistoryTest& h) { return ops::setLightColour(h.target(), 1, 1, 0xFF, 0x40, 0); }},
        {"random colour off", [](HistoryTest& h) { return ops::setRandomColour(h.target(), 1, 1, false); }},
        {"brightness 1", [](HistoryTest& h) { return ops::setBrightness(h.target(), 1, 1, 1); }},
        {"speed 4", [](HistoryTest& h) { return ops::setSpeed(h.target(), 1, 1, 4); }},
        {"direction 2", [](HistoryTest& h) { return ops::setDirection(h.target(), 1, 1, 2); }},
        {"change the language", [](HistoryTest& h) { return ops::setLanguage(h.target(), kLanguageTraditionalChinese); }},
        {"Fn keys first", [](HistoryTest& h) { protocol::SystemSwitches shown{}; return ops::setFnMode(h.target(), true, shown); }},
        {"game mode on", [](HistoryTest& h) { protocol::SystemSwitches shown{}; return ops::setGameMode(h.target(), true, shown); }},
        {"block Alt+F4", [](HistoryTest& h) { protocol::SystemSwitches shown{}; return ops::setBlock(h.target(), ops::Block::kAltF4, true, shown); }},
        {"sleep time 3", [](HistoryTest& h) { protocol::SystemSwitches shown{}; return ops::setSleepTime(h.target(), 3, shown); }},
        {"reset the keys of profile 1", [&](HistoryTest& h) { return ops::resetKeys(h.target(), 1, mode); }},
        {"reset everything", [](HistoryTest& h) { return ops::resetAll(h.target()); }},
        {"add per-key set User light2", [](HistoryTest& h) { std::string n; std::int64_t id; return ops::addUserLight(h.target(), n, id); }},
        {"rename per-key set Night", [](HistoryTest& h) { return ops::renameUserLight(h.target(), h.set_, "Night"); }},
        {"delete per-key set User light1", [](HistoryTest& h) { return ops::deleteUserLight(h.target(), h.set_); }},
        {"colour 2 keys #0000FF", [](HistoryTest& h) { return ops::paintKeys(h.target(), h.set_, {kKeyA, kCapsLock}, 0x0000FF); }, true},
        {"clear per-key set User light1", [](HistoryTest& h) { return ops::resetUserLight(h.target(), h.set_); }, true},
        {"import settings", importOther},
    };
    for (const auto& [name, change, showsSet] : cases) {
        SCOPED_TRACE(name);
        if (showsSet) ops::sendUserLightColours(target(), set_);
        else ops::sendLightMode(target(), 1, 1);
        const std::string before = contents(file_);
        const VirtualQX9Memory shownBefore = keyboard_->memory();
        ASSERT_TRUE(change(*this));
        const std::string after = contents(file_);
        const VirtualQX9Memory shownAfter = keyboard_->memory();
        ASSERT_NE(before, after);

        HistoryStep step;
        ASSERT_TRUE(ops::undo(target(), step)) << ops::describe(ops::undo(target(), step));
        EXPECT_EQ(ops::describe(step.name), name);
        EXPECT_EQ(contents(file_), before);
        EXPECT_TRUE(sameBlocks(keyboard_->memory(), shownBefore));

        ASSERT_TRUE(ops::redo(target(), step));
        EXPECT_EQ(contents(file_), after);
        EXPECT_TRUE(sameBlocks(keyboard_->memory(), shownAfter));
        ASSERT_TRUE(ops::undo(target(), step));  // the next case starts from the seeded state
    }
}

TEST_F(HistoryTest, RandomSequencesUndoneToTheEndGiveBackTheStartingDatabase) {
    const std::vector<std::function<ops::Outcome(const ops::Target&, std::mt19937&)>> changes = {
        [](const ops::Target& t, std::mt19937& r) { return ops::assignKey(t, 1, r() % 2, 4 + r() % 20, ops::disabledFunction()); },
        [](const ops::Target& t, std::mt19937& r) { return ops::setBrightness(t, 1, 1, r() % 5); },
        [](const ops::Target& t, std::mt19937&) { std::string n; std::int64_t id; return ops::addMacro(t, n, id); },
        [](const ops::Target& t, std::mt19937& r) { return ops::deleteMacro(t, 1 + r() % 4); },
        [](const ops::Target& t, std::mt19937&) { std::string n; std::int64_t id; return ops::addProfile(t, n, id); },
        [](const ops::Target& t, std::mt19937& r) { return ops::deleteProfile(t, 1 + r() % 4); },
        [](const ops::Target& t, std::mt19937& r) { return ops::paintKeys(t, 2, {static_cast<std::int64_t>(4 + r() % 20)}, r() & 0xFFFFFF); },
        [](const ops::Target& t, std::mt19937& r) { return ops::setSleepTime(t, r() % 4, {}); },
        [](const ops::Target& t, std::mt19937&) { return ops::resetAll(t); },
    };
    for (unsigned seed = 1; seed <= 3; ++seed) {
        SCOPED_TRACE(seed);
        const ops::Target t{db_};
        const std::string start = contents(file_);
        const std::int64_t seeded = ops::nextUndo(db_)->id;
        std::mt19937 random(seed);
        for (int i = 0; i < 25; ++i) changes[random() % changes.size()](t, random);
        const std::string end = contents(file_);
        HistoryStep step;
        while (ops::nextUndo(db_)->id != seeded) ASSERT_TRUE(ops::undo(t, step)) << ops::describe(step.name);
        EXPECT_EQ(contents(file_), start);
        while (ops::redo(t, step)) {
        }
        EXPECT_EQ(contents(file_), end);
        while (ops::nextUndo(db_)->id != seeded) ASSERT_TRUE(ops::undo(t, step));
    }
}

TEST_F(HistoryTest, AStepAnotherProgramChangedSinceIsRefusedAndNothingChanges) {
    ASSERT_TRUE(ops::renameMacro(target(), macro_, "Mine"));
    DeviceSQLite other = DeviceSQLite::atPath(file_);  // qx9ctl, say
    ASSERT_TRUE(other.updateMacroProfileName(macro_, "Theirs"));
    const std::string before = contents(file_);
    clearWire();
    HistoryStep step;
    const ops::Outcome o = ops::undo(target(), step);
    EXPECT_EQ(o.reason, ops::Reason::kStepChanged);
    EXPECT_EQ(ops::describe(o), "\"rename macro Mine\" was not undone or redone: another program has changed the same "
                                "settings since");
    EXPECT_EQ(contents(file_), before);
    EXPECT_TRUE(sets().empty());
    // The other program's undo is shared: the step is there for it too, and the history survives.
    EXPECT_EQ(ops::nextUndo(other)->name.kind, "rename-macro");
}

TEST_F(HistoryTest, OnlyStoredChangesTakeStepsAndTheOldestGoBeyondTheLimit) {
    const std::int64_t seeded = steps();
    EXPECT_EQ(ops::assignKey(target(), 9, 0, kKeyA, ops::disabledFunction()).status, ops::Outcome::kRefused);
    EXPECT_TRUE(ops::setBrightness(target(), 1, 1, 4));
    EXPECT_TRUE(ops::setBrightness(target(), 1, 1, 4));  // the same value again changes nothing
    EXPECT_EQ(steps(), seeded + 1);
    for (std::int64_t i = 0; i < kHistorySteps + 5; ++i) ops::setSpeed({db_}, 1, 1, i % 5);
    EXPECT_EQ(steps(), kHistorySteps);
    // A new change forgets what was undone.
    HistoryStep step;
    ASSERT_TRUE(ops::undo({db_}, step));
    ASSERT_TRUE(ops::nextRedo(db_));
    ASSERT_TRUE(ops::setSleepTime({db_}, 1, {}));
    EXPECT_FALSE(ops::nextRedo(db_));
}

TEST(HistoryFile, ADamagedHistoryCostsTheUndoNotTheChange) {
    TempDir dir;
    const std::filesystem::path file = dir / "db.sqlite3";
    { DeviceSQLite created = DeviceSQLite::atPath(file); }
    std::ofstream(file.string() + kHistorySuffix, std::ios::trunc) << std::string(4096, 'x');
    DeviceSQLite db = DeviceSQLite::atPath(file);
    ASSERT_TRUE(ops::setSleepTime({db}, 2, {}));
    EXPECT_EQ(sqlValue(file.string(), "SELECT value FROM t_configdata WHERE key = 'sleeplight'"), "2");
    HistoryStep step;
    EXPECT_EQ(ops::undo({db}, step).reason, ops::Reason::kNoHistory);
}

}  // namespace
}  // namespace qx9::test
