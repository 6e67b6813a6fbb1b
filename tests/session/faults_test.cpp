// The window's pages when the database or the keyboard fails: nothing lost without a word.
#include <unistd.h>

#include <functional>

#include "session/custom_key_dialog.h"
#include "session/session_fixture.h"
#include "layout/key_maps.h"

namespace qx9::test {
namespace {

using FaultsTest = SessionTest;

enum class Fault {
    kUnreadable,  // the file is not a database: the pages open with nothing to change
    kUnplugged,   // the keyboard goes while a page is open (a confirmation, the colour dialog)
    kReadOnly,    // the file cannot be written (run as an ordinary user)
};

// Every change a page of the window makes, on a database that holds a second profile, a macro
// with an event and a set of key colours, shown with its first rows selected.
struct PageAction {
    const char* name;
    std::function<void(KeyboardSession&)> run;
    // Does nothing at all there: its row is not shown without a database, or its control not
    // without a keyboard.
    std::optional<Fault> doesNothing = std::nullopt;
};
const PageAction kPageActions[] = {
    {"assign a function", [](KeyboardSession& s) { s.keys.customKeyFuncAction(5); }},
    {"disable the key", [](KeyboardSession& s) { s.keys.MenuItemMouseUpAction(KeyPage::kMenuDisable); }},
    {"custom key dialog", [](KeyboardSession& s) {
         s.keys.MenuItemMouseUpAction(KeyPage::kMenuCustom);  // without a database: said, nothing opens
         if (!s.core.db()) return;
         CustomKeyDialog dialog(s.core, s.keys);
         dialog.selectFunctionType(4);  // multimedia
         dialog.selectFunction(0);
         dialog.keyAssignment();
     }},
    {"Fn-key mode", [](KeyboardSession& s) { s.keys.textButtonAction(1); }},
    {"add profile", [](KeyboardSession& s) { s.profiles.customkey_button_profile(ProfileList::kAdd); }},
    {"rename profile", [](KeyboardSession& s) { s.profiles.keyTableItemViewEdit(1, "Renamed"); }, Fault::kUnreadable},
    {"delete profile", [](KeyboardSession& s) { s.profiles.customkey_button_profile(ProfileList::kDelete); }},
    {"choose profile", [](KeyboardSession& s) { s.profiles.tableSelectionChanged(0); }, Fault::kUnreadable},
    {"add macro", [](KeyboardSession& s) { s.macros.addMacroData(); }},
    {"rename macro", [](KeyboardSession& s) { s.macros.macroTableSetObjectValue(0, "Renamed"); }, Fault::kUnreadable},
    {"delete macro", [](KeyboardSession& s) { s.macros.deleteMacroData(); }},
    {"insert event", [](KeyboardSession& s) {
         s.macros.radio_action_delaytime();
         s.macros.controlTextDidChange(MacroField::kInsertEvent, "40");
         s.macros.insertNewEvent();
     }, Fault::kUnreadable},
    {"save events", [](KeyboardSession& s) {
         s.macros.radio_action_nodelaytime();
         s.macros.button_action_saverecord();
     }, Fault::kUnreadable},
    {"backlight effect", [](KeyboardSession& s) { s.lighting.lightModeSelectionChanged(2); }},
    {"brightness", [](KeyboardSession& s) { s.lighting.backlightBrightnessChange(1); }},
    {"speed", [](KeyboardSession& s) { s.lighting.backlightSpeedChange(1); }},
    {"colour dialog", [](KeyboardSession& s) { s.lighting.lightColorPanel({0.5, 0.25, 1.0}); }},
    {"random colour", [](KeyboardSession& s) { s.lighting.lightRondomColorSwitch(); }},
    {"sleep time", [](KeyboardSession& s) { s.lighting.light_button_lightsleeptime(2); }},
    {"add key colour set", [](KeyboardSession& s) { s.userLights.addUserLight(); }},
    {"rename key colour set", [](KeyboardSession& s) { s.userLights.renameUserLight(0, "Renamed"); }},
    {"delete key colour set", [](KeyboardSession& s) { s.userLights.delUserLight(); }, Fault::kUnreadable},
    {"paint and apply", [](KeyboardSession& s) {
         s.userLights.keyClicked(30, false);
         s.userLights.userLightColorPanel({1.0, 0.0, 0.0});
         s.userLights.applyUserLightKeyColor();
     }},
    {"language", [](KeyboardSession& s) { s.settings.comboBoxSelectionDidChange(1); }, Fault::kUnplugged},
    {"game mode", [](KeyboardSession& s) { s.settings.button_action_gamemode(SettingsPage::kGameMode, true); }},
    {"block Alt+Tab", [](KeyboardSession& s) { s.settings.button_action_gamemode(SettingsPage::kAltTab, true); }},
    {"reset keys", [](KeyboardSession& s) { s.settings.configResetKeys(); }},
    {"reset all", [](KeyboardSession& s) { s.settings.configResetAllDatas(); }},
};

std::string fileState(const std::filesystem::path& db) { return fileBytes(db) + '|' + fileBytes(db.string() + "-wal"); }

// Runs every page action on a copy of `prepared` with `fault`: none may abort, and one that leaves
// the file as it was must have said so. Returns what went wrong, one line each.
std::string runUnderFault(const std::filesystem::path& prepared, Fault fault) {
    std::string wrong;
    for (const PageAction& action : kPageActions) {
        TempDir dir;
        const std::filesystem::path db = dir / "device.sqlite3";
        std::filesystem::copy_file(prepared, db);
        if (fault == Fault::kReadOnly) std::filesystem::permissions(db, std::filesystem::perms(0444));
        if (fault == Fault::kUnreadable) std::ofstream(db, std::ios::binary) << std::string(8192, 'x');
        auto keyboard = std::make_shared<VirtualQX9>();
        auto recorder = std::make_shared<WireRecorder>();
        RecordingEvents events;
        ConsoleCapture quiet;
        auto session = openSession(db, recorder, events);
        connectKeyboard(*session, keyboard);
        session->keys.keyboardKeyAction("a");
        if (session->core.db()) {  // the lists show nothing without one
            session->profiles.tableSelectionChanged(1);
            session->macros.macroTableSelectionChanged(0);
            session->macros.recordTableSelectionChanged(0);
            session->userLights.userLightTableSelectionChanged(0);
        }
        if (fault == Fault::kUnplugged) disconnectKeyboard(*session, keyboard);
        events.warnings.clear();
        events.notices.clear();
        const std::string before = fileState(db);
        recorder->events.clear();
        action.run(*session);
        const bool said = !events.warnings.empty() || !events.notices.empty();
        if (fileState(db) == before && !said && action.doesNothing != fault) wrong += std::string(action.name) + ": nothing stored, nothing said\n";
        if (fault != Fault::kUnplugged && fileState(db) != before) wrong += std::string(action.name) + ": written\n";
        if (fault == Fault::kUnreadable && !setsOf(recorder->events).empty()) wrong += std::string(action.name) + ": sent\n";
    }
    return wrong;
}

TEST(PageActionsUnderFaults, NoneAbortsAndWhatIsNotStoredIsSaid) {
    TempDir dir;
    const std::filesystem::path prepared = dir / "prepared.sqlite3";
    {
        auto recorder = std::make_shared<WireRecorder>();
        RecordingEvents events;
        ConsoleCapture quiet;
        auto session = openSession(prepared, recorder, events);
        connectKeyboard(*session, std::make_shared<VirtualQX9>());
        session->profiles.customkey_button_profile(ProfileList::kAdd);
        session->macros.addMacroData();
        session->macros.insertNewEvent();
        session->userLights.addUserLight();
        ASSERT_TRUE(events.warnings.empty());
    }
    EXPECT_EQ(runUnderFault(prepared, Fault::kUnreadable), "");
    EXPECT_EQ(runUnderFault(prepared, Fault::kUnplugged), "");
    std::filesystem::permissions(dir.path(), std::filesystem::perms(0755));
    std::filesystem::permissions(prepared, std::filesystem::perms(0644));
    const auto asUser = [&] {  // root writes any file
        if (::geteuid() == 0 && (::setgid(65534) || ::setuid(65534))) return 9;
        const std::string wrong = runUnderFault(prepared, Fault::kReadOnly);
        std::fputs(wrong.c_str(), stderr);
        return wrong.empty() ? 0 : 1;
    };
    EXPECT_EXIT(std::exit(asUser()), ::testing::ExitedWithCode(0), "");
}

// A file the first connection cannot use sends nothing (an all-zero or default key map would wipe
// what the keyboard holds), stays as it was, and the warning names the cause; only a damaged or
// foreign file is to be moved aside.
TEST_F(FaultsTest, AFileThatCannotBeUsedSendsNothingAndTheCauseIsNamed) {
    const EnvOverride wait = shortLockWait();
    std::string noise;
    for (int i = 0; i < 8192; ++i) noise += static_cast<char>((i * 7919 + 13) % 256);
    curLanguage = kLanguageEnglish;
    const struct {
        std::function<void()> prepare;
        const char* cause;
        bool moveAside;
        const char* held = nullptr;  // SQL another program runs and holds meanwhile
    } cases[] = {
        {[&] { std::ofstream(dbPath_, std::ios::binary) << noise; }, "is damaged or is not a settings file", true},
        {[&] {
             ASSERT_TRUE(sqlExec(dbPath_.string(), "CREATE TABLE t_profile (x); PRAGMA journal_mode=DELETE"));
             ASSERT_TRUE(sqlExec(dbPath_.string(), "DROP TABLE t_profile"));
         }, "is damaged or is not a settings file", true},
        {[&] {
             ConsoleCapture quiet;
             DeviceSQLite::atPath(dbPath_).writeLightProfile(1);
             ASSERT_TRUE(sqlExec(dbPath_.string(), "PRAGMA journal_mode=DELETE"));
         }, "is in use by another program", false, "BEGIN EXCLUSIVE; DELETE FROM t_profile"},
    };
    for (const auto& c : cases) {
        std::filesystem::remove(dbPath_);
        c.prepare();
        const std::string before = fileBytes(dbPath_);
        events_.warnings.clear();
        session_ = openSession(dbPath_, recorder_, events_);
        sqlite3* other = nullptr;
        if (c.held) {
            sqlite3_open(dbPath_.c_str(), &other);
            sqlite3_exec(other, c.held, nullptr, nullptr, nullptr);
        }
        connect();
        sqlite3_close(other);
        EXPECT_TRUE(sets().empty()) << c.cause;
        ASSERT_EQ(events_.warnings.size(), 1u);
        EXPECT_NE(events_.warnings[0].find(dbPath_.string() + " " + c.cause), std::string::npos) << events_.warnings[0];
        EXPECT_EQ(events_.warnings[0].find("qx9ctl import") != std::string::npos, c.moveAside);
        EXPECT_TRUE(fileBytes(dbPath_) == before) << c.cause;
    }
}

TEST_F(FaultsTest, AChangeTheKeyboardDoesNotTakeIsKeptAndTheUserIsTold) {
    connect();
    session_->keys.keyboardKeyAction("a");
    keyboard_->failSetAt(2);  // the key map's header
    session_->keys.customKeyFuncAction(5);
    EXPECT_TRUE(events_.warnings.empty());
    ASSERT_EQ(events_.notices.size(), 1u);
    EXPECT_NE(events_.notices[0].find("did not take"), std::string::npos);
    EXPECT_EQ(sql("SELECT macroValue FROM t_keyprofile WHERE keyvalue = 4"), "5");
}

// Damaged key and colour rows (damaged settings and light bytes: StoreDeathTest, SystemFunctionTransaction).
TEST_F(FaultsTest, DamagedStoredValuesAreLeftOutAndStopNothing) {
    connect();
    session_->userLights.addUserLight();
    for (const char* damage : {
             "UPDATE t_profile SET name = NULL",
             "INSERT INTO t_userlight_leddata (light_id, keyvalue, rgbvalue) VALUES (1, 4, -5), (1, 9999, 255)",
             "INSERT INTO t_keyprofile (profId, fnlayerId, keyvalue, macroType, macroValue, macro2Value, macro3Value,"
             " macroDesc) VALUES (1, 0, 9999, 3, 5, 0, 0, 'x'), (1, 0, 5, 3, -3, 0, 0, 'x'), (1, 0, 6, 3, 7, 0, 0, 'c')"}) {
        ASSERT_TRUE(sqlExec(dbPath_.string(), damage)) << damage;
    }
    // A fresh start on the damaged file: the first connection loads and sends what is sound.
    auto other = std::make_shared<VirtualQX9>();
    session_.reset();
    session_ = openSession(dbPath_, recorder_, events_);
    connect(other);
    EXPECT_EQ(keyRecord(other->memory(), 0, G_KB_SuperKeyCodeMap.at(6).key_index)[2], 7);  // c → 7 still goes
    EXPECT_EQ(keyRecord(other->memory(), 0, G_KB_SuperKeyCodeMap.at(5).key_index)[0], 0);  // b → −3 does not
}

}  // namespace
}  // namespace qx9::test
