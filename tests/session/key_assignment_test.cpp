#include "session/session_fixture.h"

#include "session/custom_key_dialog.h"

namespace qx9::test {
namespace {

const std::vector<int> kKeyMap = {0x18, 0x11, 0x02};

class KeyAssignmentTest : public ConnectedSessionTest {
protected:
    std::string row(const std::string& columns, int layer, int key) {
        return sql("SELECT " + columns + " FROM t_keyprofile WHERE profId = 1 AND fnlayerId = " +
                   std::to_string(layer) + " AND keyvalue = " + std::to_string(key));
    }
    std::array<std::uint8_t, 4> slot(int keyIndex) { return keyRecord(keyboard_->memory(), 0, keyIndex); }
    // The custom key dialog: a type and a function, Save, then the window closes.
    void dialog(int typeIndex, int functionIndex, int playType = -1, const std::string& count = "1") {
        session_->keys.MenuItemMouseUpAction(KeyPage::kMenuCustom);
        CustomKeyDialog d(session_->core, session_->keys);
        d.viewDidAppear();
        d.selectFunctionType(typeIndex);
        if (functionIndex >= 0) d.selectFunction(functionIndex);
        if (playType >= 0) {
            d.selectMacroPlayType(playType);
            d.setPlayCountText(count);
        }
        d.savekeyfunc_action();
        session_->keys.customKeywindowCloseDid();
    }
};

TEST_F(KeyAssignmentTest, PaletteChoiceStoresShowsMarksAndSends) {
    session_->keys.customKeyFuncAction(5);  // no key chosen yet
    EXPECT_EQ(events_.warnings, (std::vector<std::string>{"Custom Key | Please select a key on the keyboard"}));
    EXPECT_EQ(sql("SELECT COUNT(*) FROM t_keyprofile"), "0");
    EXPECT_TRUE(sets().empty());
    session_->keys.keyboardKeyAction("a");
    EXPECT_EQ(events_.keyMenus, 1);
    session_->keys.customKeyFuncAction(5);  // "B"
    EXPECT_EQ(row("macroType || ',' || macroValue || ',' || macroDesc", 0, 4), "3,5,B");
    EXPECT_EQ(session_->keys.keys()[30].keyMacro, "B");  // "a" is at layout position 30
    EXPECT_TRUE(session_->keys.isMacro(30));
    ASSERT_TRUE(session_->keys.selectedPaletteKey());
    EXPECT_EQ(session_->keys.palette()[*session_->keys.selectedPaletteKey()].key_code, 5);
    EXPECT_EQ(commandCodes(), kKeyMap);
    EXPECT_EQ(slot(56), (std::array<std::uint8_t, 4>{2, 0, 5, 0}));
    // Choosing the key again marks the palette key it now sends; another key clears it.
    session_->keys.keyboardKeyAction("b");
    EXPECT_FALSE(session_->keys.selectedPaletteKey());
    session_->keys.keyboardKeyAction("a");
    EXPECT_TRUE(session_->keys.selectedPaletteKey());
}

TEST_F(KeyAssignmentTest, DialogChoicesAreStoredOnTheBaseLayerAndSentOnSaveAndOnClose) {
    ASSERT_EQ(session_->core.db()->addMacroProfile("Macro1"), 1);
    ASSERT_EQ(session_->core.db()->addMacroProfile("Macro2"), 2);
    session_->keys.selectButtonAction(1);  // the Fn layer is shown: the dialog ignores it
    session_->keys.keyboardKeyAction("escape");
    // Types: 0 default, 1 keyboard, 2 mouse, 3 macro, 4 multimedia, 5 Mac shortcut.
    const struct { int type, function, playType; const char* count; const char* stored; } cases[] = {
        {2, 1, -1, "1", "6,2,0,0"},    // mouse right click
        {2, 5, -1, "1", "6,6,0,0"},    // mouse scroll down
        {4, 6, -1, "1", "7,7,0,0"},    // mute
        {5, 3, -1, "1", "8,4,0,0"},    // Mac copy
        {3, 1, 0, "1", "4,2,0,0"},     // the second macro, once
        {3, 0, 1, "7", "4,1,1,7"},     // the first, repeated 7 times
        {3, 0, 1, "0", "4,1,1,1"},     // … at least once
        {3, 0, 1, "300", "4,1,1,255"}, // … at most 255 times
        {3, 0, 1, "abc", "4,1,1,1"},
        {3, 1, 2, "9", "4,2,2,0"},     // toggled
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.stored);
        clearWire();
        dialog(c.type, c.function, c.playType, c.count);
        EXPECT_EQ(row("macroType || ',' || macroValue || ',' || macro2Value || ',' || macro3Value", 0, 41),
                  c.stored);
        EXPECT_EQ(row("COUNT(*)", 1, 41), "0");
        EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x11, 0x02, 0x18, 0x11, 0x02}));
    }
}

// A capture from the keyboard itself (Left Shift + 1, shown and saved): AppTest::customDialogCapturesShiftAndOne.
TEST_F(KeyAssignmentTest, CapturedCombinationKeepsTheFirstTwoKeys) {
    session_->keys.keyboardKeyAction("escape");
    session_->keys.MenuItemMouseUpAction(KeyPage::kMenuCustom);
    CustomKeyDialog d(session_->core, session_->keys);
    EXPECT_EQ(d.keyText(), "Escape");
    d.viewDidAppear();
    d.selectFunctionType(1);  // "Keyboard Function"
    // Three modifiers and a key: only the first two captured codes count, the second as the key.
    d.fillBindInput({224, 226, 225, 4});
    d.savekeyfunc_action();
    EXPECT_EQ(row("macroValue || ',' || macro2Value", 0, 41), "226,224");

    // Without a captured combination Save does nothing; the closing window still reloads.
    session_->keys.keyboardKeyAction("tab");
    clearWire();
    dialog(1, -1);
    EXPECT_EQ(row("COUNT(*)", 0, 43), "0");
    EXPECT_EQ(commandCodes(), kKeyMap);
}

TEST_F(KeyAssignmentTest, LayerSwitchKeepsTheMarksOfThePreviousLayer) {
    session_->keys.keyboardKeyAction("a");
    session_->keys.MenuItemMouseUpAction(KeyPage::kMenuDisable);
    clearWire();
    session_->keys.selectButtonAction(1);
    EXPECT_TRUE(session_->keys.isMacro(30));
    EXPECT_TRUE(sets().empty());
    session_->keys.keyboardKeyAction("b");
    session_->keys.MenuItemMouseUpAction(KeyPage::kMenuDisable);
    EXPECT_EQ(row("COUNT(*)", 1, 5), "1");
    EXPECT_EQ(commandCodes(), kKeyMap);
    session_->keys.loadKeyMacroData();
    EXPECT_FALSE(session_->keys.isMacro(30));
    EXPECT_TRUE(session_->keys.isMacro(48));
}

}  // namespace
}  // namespace qx9::test
