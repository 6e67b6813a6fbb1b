#include "session/session_fixture.h"

namespace qx9::test {
namespace {

using SettingsTest = SessionTest;

TEST_F(SettingsTest, LanguageBoxActsOnlyOnceTheKeyboardIsLoaded) {
    session_->settings.comboBoxSelectionDidChange(2);
    EXPECT_EQ(curLanguage, kLanguageSimplifiedChinese);
    connect();
    session_->settings.comboBoxSelectionDidChange(2);
    EXPECT_EQ(curLanguage, kLanguageTraditionalChinese);
    EXPECT_EQ(sql("SELECT value FROM t_configdata WHERE key = 'language'"), "1028");
}

TEST_F(SettingsTest, GameModeAndItsBlocks) {
    DeviceSQLite::atPath(dbPath_).updateConfigData(1, "disable_altf4", "1");
    connect();
    SettingsPage& s = session_->settings;
    EXPECT_FALSE(s.box(SettingsPage::kAltF4));  // game mode off: every box off
    // Game mode, Alt+Tab, Alt+F4 and Win as the keyboard holds them and as stored.
    const struct { int tag; bool on; std::array<int, 4> sent; const char* stored; } steps[] = {
        {SettingsPage::kGameMode, true, {1, 0, 1, 0}, "1,0,1,0"},
        {SettingsPage::kAltTab, true, {1, 1, 1, 0}, "1,1,1,0"},
        {SettingsPage::kGameMode, false, {0, 0, 0, 0}, "0,1,1,0"},
        {SettingsPage::kLockWin, true, {0, 0, 0, 1}, "0,1,1,1"},  // clickable while off
        {SettingsPage::kGameMode, true, {1, 1, 1, 1}, "1,1,1,1"},
    };
    for (const auto& step : steps) {
        SCOPED_TRACE(step.stored);
        clearWire();
        s.button_action_gamemode(step.tag, step.on);
        EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x17, 0x02}));
        const VirtualSystemFunctions f = decodeSystemFunctions(keyboard_->memory()).value();
        EXPECT_EQ((std::array{f.gameMode, f.blockAltTab, f.blockAltF4, f.lockWin}), step.sent);
        EXPECT_EQ(sql("SELECT group_concat(value) FROM (SELECT value FROM t_configdata WHERE profId = 1 AND key IN "
                      "('gamemode','disable_alttab','disable_altf4','disable_win') ORDER BY CASE key "
                      "WHEN 'gamemode' THEN 0 WHEN 'disable_alttab' THEN 1 WHEN 'disable_altf4' THEN 2 ELSE 3 END)"),
                  step.stored);
    }
    // A later start sends them with the first connection; the boxes show them.
    s.button_action_gamemode(SettingsPage::kAltTab, false);
    auto next = std::make_shared<VirtualQX9>();
    session_.reset();
    session_ = openSession(dbPath_, recorder_, events_);
    connect(next);
    const VirtualSystemFunctions f = decodeSystemFunctions(next->memory()).value();
    EXPECT_EQ((std::array{f.gameMode, f.blockAltTab, f.blockAltF4, f.lockWin}), (std::array{1, 0, 1, 1}));
    EXPECT_TRUE(session_->settings.box(SettingsPage::kLockWin));
    EXPECT_FALSE(session_->settings.box(SettingsPage::kAltTab));
}

TEST_F(SettingsTest, ResetKeysEmptiesTheCurrentProfileResetAllStartsAfresh) {
    curLanguage = kLanguageEnglish;
    EXPECT_EQ(SettingsPage::resetKeysTexts().informative, "Resetting the keyboard will erase all keyboard data. Continue?");
    EXPECT_EQ(SettingsPage::resetAllTexts().informative, "Resetting the mouse will erase all mouse data. Continue?");
    connect();
    session_->keys.keyboardKeyAction("a");
    session_->keys.MenuItemMouseUpAction(KeyPage::kMenuDisable);
    clearWire();
    session_->settings.configResetKeys();
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_keyprofile"), "0");
    EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x11, 0x02}));
    EXPECT_EQ(keyRecord(keyboard_->memory(), 0, 56)[0], 0);
    EXPECT_EQ(sql("SELECT mode FROM t_lightdata WHERE profId = 1 AND status = 1"), "3");
    session_->profiles.customkey_button_profile(ProfileList::kAdd);
    session_->profiles.tableSelectionChanged(1);
    session_->keys.keyboardKeyAction("a");
    session_->keys.MenuItemMouseUpAction(KeyPage::kMenuDisable);
    clearWire();
    session_->settings.configResetAllDatas();
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_profile"), "1");
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_keyprofile"), "0");
    EXPECT_EQ(session_->core.currentProfile, 1);
    EXPECT_TRUE(session_->core.initFinish);
    EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x17, 0x02, 0x18, 0x11, 0x02}));
}

}  // namespace
}  // namespace qx9::test
