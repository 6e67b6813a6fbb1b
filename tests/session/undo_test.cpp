#include "session/session_fixture.h"

namespace qx9::test {
namespace {

using Move = UndoHistory::Move;

class UndoTest : public ConnectedSessionTest {
protected:
    std::string tip(Move move) { return session_->history.button(move, kLanguageEnglish).tip; }
};

// A change through a page, then undo and redo: the database (read with plain SQL), what the
// page shows, what the buttons say, and that the keyboard is sent what the step touched.
TEST_F(UndoTest, UndoAndRedoRestoreTheDatabaseThePagesAndTheKeyboard) {
    const struct {
        const char* step;
        void (*change)(KeyboardSession&);
        const char* stored;
        std::string (*shown)(KeyboardSession&);
        bool sends;
    } cases[] = {
        {"assign A", [](KeyboardSession& s) { s.keys.keyboardKeyAction("a"); s.keys.customKeyFuncAction(5); },
         "SELECT group_concat(macroDesc) FROM t_keyprofile", [](KeyboardSession& s) { return s.keys.keys()[30].keyMacro; }, true},
        {"add profile Configuration File 1", [](KeyboardSession& s) { s.profiles.customkey_button_profile(ProfileList::kAdd); },
         "SELECT group_concat(name) FROM t_profile", [](KeyboardSession& s) { return std::to_string(s.profiles.rows().size()); }, false},
        {"add macro Macro1", [](KeyboardSession& s) { s.macros.addMacroData(); },
         "SELECT count(*) FROM t_macro_data", [](KeyboardSession& s) { return std::to_string(s.macros.MacroListDatas().size()); }, false},
        {"choose backlight effect 5", [](KeyboardSession& s) { s.lighting.lightModeSelectionChanged(4); },
         "SELECT mode FROM t_lightdata WHERE profId = 1 AND status = 1", [](KeyboardSession& s) { return std::to_string(s.lighting.selectedRow()); }, true},
        {"game mode on", [](KeyboardSession& s) { s.settings.button_action_gamemode(SettingsPage::kGameMode, true); },
         "SELECT value FROM t_configdata WHERE key = 'gamemode'", [](KeyboardSession& s) { return std::to_string(s.settings.box(SettingsPage::kGameMode)); }, true},
        // The interface language follows the stored one.
        {"change the language", [](KeyboardSession& s) { s.settings.comboBoxSelectionDidChange(1); },
         "SELECT value FROM t_configdata WHERE key = 'language'", [](KeyboardSession&) { return std::to_string(curLanguage); }, false},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.step);
        const std::string before = sql(c.stored), shownBefore = c.shown(*session_);
        c.change(*session_);
        const std::string after = sql(c.stored), shownAfter = c.shown(*session_);
        ASSERT_NE(before, after);
        ASSERT_NE(shownBefore, shownAfter);
        EXPECT_EQ(tip(Move::kUndo), std::string("Undo: ") + c.step);
        EXPECT_EQ(tip(Move::kRedo), "Nothing to redo");
        for (const auto& [move, stored, shown] : {std::tuple{Move::kUndo, before, shownBefore}, {Move::kRedo, after, shownAfter}}) {
            clearWire();
            session_->history.make(move);
            EXPECT_EQ(sql(c.stored), stored);
            EXPECT_EQ(c.shown(*session_), shown);
            EXPECT_EQ(!commandCodes().empty(), c.sends);
        }
        EXPECT_EQ(tip(Move::kRedo), "Nothing to redo");
        EXPECT_TRUE(session_->history.button(Move::kUndo, kLanguageEnglish).enabled);
    }
    EXPECT_EQ(session_->history.button(Move::kUndo, kLanguageSimplifiedChinese).tip, "撤销：更改语言");
    EXPECT_TRUE(events_.warnings.empty());
}

// Another program changed what the step changed: nothing is undone, and the user is told which
// step in the interface language. Its own steps are the next to undo.
TEST_F(UndoTest, AStepAnotherProgramChangedSinceIsNotUndone) {
    session_->profiles.customkey_button_profile(ProfileList::kAdd);
    ASSERT_TRUE(sqlExec(dbPath_.string(), "UPDATE t_profile SET name = 'Elsewhere' WHERE profId = 2"));
    session_->databaseChanged();
    session_->history.undo();
    EXPECT_EQ(sql("SELECT group_concat(name) FROM t_profile"), "Configuration File 1,Elsewhere");
    EXPECT_EQ(session_->profiles.rows().at(1).name, "Elsewhere");
    ASSERT_EQ(events_.warnings.size(), 1u);
    EXPECT_NE(events_.warnings[0].find("“add profile Configuration File 1” was not undone"), std::string::npos) << events_.warnings[0];
}

}  // namespace
}  // namespace qx9::test
