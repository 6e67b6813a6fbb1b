// The window beside another program (a script running qx9ctl) on the same database: the pages
// show the other program's changes once told the file changed, and what the window stores
// next builds on them. Keys bound to macros keep playing their macro after a deletion.
#include "session/session_fixture.h"

#include "i18n/extra_texts.h"
#include "layout/key_maps.h"
#include "ops/key_assignment.h"
#include "ops/lighting.h"
#include "ops/macros.h"
#include "ops/profiles.h"
#include "ops/user_lights.h"

namespace qx9::test {
namespace {

constexpr std::int64_t kKeyA = 4, kKeyC = 6, kKeyF = 9, kKeyZ = 29;

class FollowTest : public ConnectedSessionTest {
protected:
    // Another program's connection to the same file, without a keyboard of its own.
    ops::Target other() { return {other_}; }
    // The window's file watcher noticed the other program's commit.
    void noticed() { session_->databaseChanged(); }
    // The page inserts a press of `usage` into the selected macro, as after that key was pressed.
    void insertKey(std::int64_t usage) {
        session_->macros.radio_action_keyboardevent();
        session_->core.capture.GLOBAL_LAST_PRESS_KEY_SCANCODE = usage;
        session_->macros.insertNewEvent();
    }
    std::string macroValues(std::int64_t macro) {
        return sql("SELECT group_concat(record_value, ' ') FROM (SELECT record_value FROM t_macrorecord WHERE macro_id = " +
                   std::to_string(macro) + " ORDER BY record_index)");
    }
    std::size_t layoutIndex(std::int64_t code) { return static_cast<std::size_t>(G_KB_SuperKeyCodeMap.at(static_cast<int>(code)).layout_index); }

    DeviceSQLite other_ = DeviceSQLite::atPath(dbPath_);
};

TEST_F(FollowTest, PagesShowAnotherProgramsChangesAndBuildOnThem) {
    std::int64_t macro = 0, set = 0;
    std::string name;
    ASSERT_TRUE(ops::renameProfile(other(), 1, "Work"));
    ASSERT_TRUE(ops::assignKey(other(), 1, 0, kKeyA, ops::disabledFunction()));
    LightRecord record;
    ASSERT_TRUE(ops::selectEffect(other(), 1, ops::kEffectScrolling, record));
    ASSERT_TRUE(ops::addMacro(other(), name, macro));
    ASSERT_TRUE(ops::storeEvents(other(), macro, *ops::keyPressEvents(kKeyC)));
    ASSERT_TRUE(ops::addUserLight(other(), name, set));
    ASSERT_TRUE(ops::paintKeys(other(), set, {kKeyA}, 0xFF0000));
    noticed();

    EXPECT_EQ(session_->profiles.rows().at(0).name, "Work");
    EXPECT_TRUE(session_->keys.isMacro(layoutIndex(kKeyA)));
    EXPECT_EQ(session_->keys.keys().at(layoutIndex(kKeyA)).keyMacro, localizedText(textid::kDisableKeys));
    EXPECT_EQ(session_->core.currentLightMode, ops::kEffectScrolling);
    ASSERT_EQ(session_->macros.MacroListDatas().size(), 1u);
    ASSERT_EQ(session_->userLights.userlight_datas().size(), 1u);

    // The window's next changes keep the other program's.
    clearWire();
    session_->lighting.backlightSpeedChange(5);
    EXPECT_EQ(decodeLightMode(keyboard_->memory())->mode, ops::kEffectScrolling);
    EXPECT_EQ(decodeLightMode(keyboard_->memory())->speed, 5);

    session_->macros.macroTableSelectionChanged(0);
    insertKey(kKeyZ);
    EXPECT_EQ(macroValues(macro), "6 6 29 29");

    session_->userLights.userLightTableSelectionChanged(0);
    session_->userLights.keyClicked(static_cast<int>(layoutIndex(kKeyC)), false);
    session_->userLights.setCheckItemColor(LightColor{0, 0, 1});
    session_->userLights.applyUserLightKeyColor();
    EXPECT_EQ(sql("SELECT group_concat(keyvalue || ':' || rgbvalue) FROM (SELECT * FROM t_userlight_leddata ORDER BY keyvalue)"),
              "4:16711680,6:255");
}

// A change made from a copy the other program has changed since (the window not told yet) is
// refused rather than stored over it; the page then shows the stored state.
TEST_F(FollowTest, AChangeFromAStaleCopyIsRefusedAndThePageReloads) {
    session_->macros.button_action_addmacro();
    const std::int64_t macro = session_->macros.MacroListDatas().at(0).macroid;
    insertKey(kKeyA);
    ASSERT_TRUE(ops::changeEvents(other(), macro, [](std::vector<RecordRow>& events) {
        ops::insertEvents(events, std::nullopt, false, *ops::keyPressEvents(kKeyC));
        return ops::Outcome::done();
    }));
    insertKey(kKeyZ);
    EXPECT_EQ(macroValues(macro), "4 4 6 6");
    ASSERT_EQ(events_.notices.size(), 1u);
    EXPECT_EQ(events_.notices[0], extraText(ExtraText::kChangedElsewhere));
    EXPECT_EQ(session_->macros.RecordListDatas().size(), 4u);
    insertKey(kKeyZ);  // from the reloaded list
    EXPECT_EQ(macroValues(macro), "4 4 6 6 29 29");
}

// Keys name macros by position: after a deletion the download of the macros takes the key map
// along, so that f still plays c, in the window as in qx9ctl.
TEST_F(FollowTest, KeysKeepTheirMacroAfterADeletion) {
    for (std::int64_t usage : {kKeyA, std::int64_t{5}, kKeyC, std::int64_t{7}}) {
        session_->macros.button_action_addmacro();
        insertKey(usage);
    }
    const std::int64_t third = session_->macros.MacroListDatas().at(2).macroid;
    MacroInfo info;
    ASSERT_TRUE(session_->core.db()->queryMacroInfo(third, info));
    ASSERT_TRUE(ops::assignKey(*session_->core.target(), 1, 0, kKeyF, ops::macroFunction(info, ops::kPlayOnce, 1)));
    session_->macros.macroTableSelectionChanged(1);
    session_->macros.button_action_delmacro();
    clearWire();
    session_->macros.macroTableSelectionChanged(0);
    insertKey(kKeyZ);
    EXPECT_EQ(commandCodes(), (std::vector<int>{0x19, 0x15, 0x02, 0x18, 0x11, 0x02}));  // the macros, then the key map
    const auto slot = keyRecord(keyboard_->memory(), 0, G_KB_SuperKeyCodeMap.at(static_cast<int>(kKeyF)).key_index);
    const auto macros = decodeMacros(keyboard_->memory());
    ASSERT_LT(slot[1], macros.size());
    EXPECT_EQ(macros[slot[1]].events.at(0).value, kKeyC);
    // The key map went along once: the next download is the macros alone.
    clearWire();
    insertKey(kKeyZ);
    EXPECT_EQ(commandCodes(), (std::vector<int>{0x19, 0x15, 0x02}));
}

}  // namespace
}  // namespace qx9::test
