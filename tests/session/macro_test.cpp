#include "session/session_fixture.h"

namespace qx9::test {
namespace {

struct Ev { std::int64_t type, value; const char* desc; };
const Ev kDownA{kRecordKeyDown, 4, "A"}, kUpA{kRecordKeyUp, 4, "A"};
const Ev kDownB{kRecordKeyDown, 5, "B"}, kUpB{kRecordKeyUp, 5, "B"};
const Ev kMouseDown{kRecordMouseDown, 1, "[MOUSE DOWN] Left Button"}, kMouseUp{kRecordMouseUp, 1, "[MOUSE UP] Left Button"};
const Ev kWait{kRecordDelay, 100, "100"};

const std::vector<int> kDownload = {0x19, 0x15, 0x02};  // open, header, end

class MacroTest : public ConnectedSessionTest {
protected:
    MacroPage& page() { return session_->macros; }
    std::int64_t newMacro() {
        page().button_action_addmacro();
        return page().MacroListDatas().back().macroid;
    }
    // A new macro holding `events` in the store, selected and loaded.
    std::int64_t macroWith(const std::vector<Ev>& events) {
        const std::int64_t id = newMacro();
        for (std::size_t i = 0; i < events.size(); ++i)
            session_->core.db()->addMacroRecord({0, id, events[i].type, std::int64_t(i), events[i].value, events[i].desc});
        page().macroTableSelectionChanged(static_cast<int>(page().MacroListDatas().size()) - 1);
        return id;
    }

    void key(int usage, int pressed, std::int64_t ms) {
        session_->core.capture.captureKeyValue(usage, pressed, ms);
        page().localKeyEvent();
    }

    static std::vector<std::string> texts(const std::vector<RecordRow>& rows) {
        std::vector<std::string> out;
        for (const RecordRow& r : rows) out.push_back(recordListText(r));
        return out;
    }
    std::vector<std::string> shown() { return texts(page().RecordListDatas()); }
    // "index=type:value:desc" in stored order.
    std::string stored(std::int64_t id) {
        return sql("SELECT group_concat(e, ', ') FROM (SELECT record_index || '=' || record_type || ':' || "
                   "record_value || ':' || record_desc AS e FROM t_macrorecord WHERE macro_id = " +
                   std::to_string(id) + " ORDER BY record_id)");
    }
    std::string onKeyboard(std::size_t position = 0) {
        const auto macros = decodeMacros(keyboard_->memory());
        if (macros.size() <= position) return "no macro";
        std::string out;
        for (const auto& e : macros[position].events) out += (out.empty() ? "" : ", ") + macroEventText(e);
        return out;
    }
    void chooseDelayMode(int mode, const std::string& field) {
        if (mode == MacroPage::kRecordingDelay) page().radio_action_autodelaytime();
        if (mode == MacroPage::kNoDelay) page().radio_action_nodelaytime();
        if (mode == MacroPage::kDefaultDelay) page().radio_action_defaultdelaytime();
        page().controlTextDidChange(MacroField::kDelayTime, field);
    }
};

TEST_F(MacroTest, NewMacrosAreNamedAfterTheRowCountAndListEditsSendNothing) {
    newMacro();
    newMacro();
    newMacro();
    page().macroTableSetObjectValue(0, "Mine");
    page().macroTableSetObjectValue(1, "");  // ignored
    newMacro();
    std::vector<std::string> names;
    for (const MacroRow& r : page().MacroListDatas()) names.push_back(r.text);
    EXPECT_EQ(names, (std::vector<std::string>{"Mine", "Macro2", "Macro3", "Macro4"}));
    EXPECT_EQ(sql("SELECT group_concat(macro_name) FROM t_macro_data"), "Mine,Macro2,Macro3,Macro4");
    EXPECT_EQ(page().macroSelectIndex(), 3);
    EXPECT_TRUE(page().controlsEnabled());

    page().macroTableSelectionChanged(-1);  // deleting needs a selection
    EXPECT_FALSE(page().controlsEnabled());
    page().button_action_delmacro();
    EXPECT_EQ(events_.warnings, (std::vector<std::string>{"Delete macro data item | Please select macro list data"}));
    page().macroTableSelectionChanged(1);
    page().button_action_delmacro();
    EXPECT_EQ(sql("SELECT group_concat(macro_name) FROM t_macro_data"), "Mine,Macro3,Macro4");
    EXPECT_EQ(page().macroSelectIndex(), -1);
    EXPECT_FALSE(page().controlsEnabled());
    EXPECT_TRUE(sets().empty());
}

TEST_F(MacroTest, InsertPlacesTheNewEventsAndStoresAndSendsTheList) {
    // position: 0 before, 1 after; input: the typed delay, or the mouse pop-up item.
    const struct { const char* name; int selected, position, kind; std::string input;
                   std::vector<std::string> rows; } cases[] = {
        {"key appended without selection", -1, 0, MacroPage::kInsertKeyboard, "",
         {"[Delay:ms] 100", "[Delay:ms] 200", "[KEY DOWN] B", "[KEY UP] B"}},
        {"key before the second", 1, 0, MacroPage::kInsertKeyboard, "",
         {"[Delay:ms] 100", "[KEY DOWN] B", "[KEY UP] B", "[Delay:ms] 200"}},
        {"right button after the first", 0, 1, MacroPage::kInsertMouse, "2",
         {"[Delay:ms] 100", "[MOUSE DOWN] Right Button", "[MOUSE UP] Right Button", "[Delay:ms] 200"}},
        {"middle button before the first", 0, 0, MacroPage::kInsertMouse, "1",
         {"[MOUSE DOWN] Middle button", "[MOUSE UP] Middle button", "[Delay:ms] 100", "[Delay:ms] 200"}},
        {"left button after the last", 1, 1, MacroPage::kInsertMouse, "0",
         {"[Delay:ms] 100", "[Delay:ms] 200", "[MOUSE DOWN] Left Button", "[MOUSE UP] Left Button"}},
        {"delay typed too large is capped", 1, 1, MacroPage::kInsertDelay, "70000",
         {"[Delay:ms] 100", "[Delay:ms] 200", "[Delay:ms] 60000"}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const std::int64_t id = macroWith({{kRecordDelay, 100, "100"}, {kRecordDelay, 200, "200"}});
        clearWire();
        page().recordTableSelectionChanged(c.selected);
        page().insertevent_combox_select(c.position);
        if (c.kind == MacroPage::kInsertKeyboard) {
            page().radio_action_keyboardevent();
            key(5, 1, 10);  // B
        } else if (c.kind == MacroPage::kInsertMouse) {
            page().radio_action_mouseevent();
            EXPECT_TRUE(!page().controls().mousevent_combox_hidden && page().controls().insertevent_edit_hidden);
            page().mousevent_combox_select(std::stoi(c.input));
        } else {
            page().radio_action_delaytime();
            EXPECT_TRUE(page().controls().insertevent_edit);
            page().controlTextDidChange(MacroField::kInsertEvent, c.input);
        }
        page().button_action_insertevent();
        EXPECT_EQ(shown(), c.rows);
        EXPECT_EQ(texts(ops::storedEvents(*session_->core.db(), id)), c.rows);  // stored as shown
        EXPECT_EQ(commandCodes(), kDownload);
    }
}

TEST_F(MacroTest, DeletingAnEventTakesThePartnerFoundByType) {
    const struct { const char* name; std::vector<Ev> events; int selected; std::vector<std::int64_t> leftTypes; } cases[] = {
        {"key down takes the next key up of any key", {kDownA, kDownB, kUpB, kUpA}, 0, {2, 3}},
        {"key up takes the nearest key down before", {kDownA, kDownB, kUpB, kUpA}, 3, {2, 3}},
        {"key down across a delay", {kDownA, kWait, kUpA}, 0, {1}},
        {"a delay goes alone", {kDownA, kWait, kUpA}, 1, {2, 3}},
        {"mouse down takes the next mouse up", {kMouseDown, kWait, kMouseUp, kDownA}, 0, {1, 2}},
        {"mouse up takes the nearest mouse down", {kMouseDown, kMouseUp, kMouseDown, kMouseUp}, 3, {4, 5}},
        {"mouse up ignores keys", {kMouseDown, kDownA, kMouseUp}, 2, {2}},
        {"without partner alone", {kWait, kUpA}, 1, {1}},
        {"no selection deletes nothing", {kDownA, kUpA}, -1, {2, 3}},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        macroWith(c.events);
        page().recordTableSelectionChanged(c.selected);
        page().deleteRecordItem();
        std::vector<std::int64_t> types;
        for (const RecordRow& r : page().RecordListDatas()) types.push_back(r.type);
        EXPECT_EQ(types, c.leftTypes);
    }
}

TEST_F(MacroTest, TheKeyboardKeepsADeletedEventUntilTheNextSave) {
    const std::int64_t id = macroWith({kDownA, kWait, kUpA});
    page().recordTableSelectionChanged(1);
    page().button_action_delrecord();
    EXPECT_EQ(shown(), (std::vector<std::string>{"[KEY DOWN] A", "[KEY UP] A"}));
    EXPECT_EQ(commandCodes(), kDownload);  // from the store, which still has the delay
    EXPECT_EQ(onKeyboard(), "down 04, delay 100, up 04");
    EXPECT_EQ(stored(id), "0=2:4:A, 1=1:100:100, 2=3:4:A");

    clearWire();
    page().button_action_saverecord();
    EXPECT_EQ(commandCodes(), kDownload);
    EXPECT_EQ(stored(id), "0=2:4:A, 1=3:4:A");
    EXPECT_EQ(onKeyboard(), "down 04, delay 10, up 04");
}

TEST_F(MacroTest, SaveStoresTheDelayModeAndRewritesTheKeyboard) {
    const struct { int mode; const char* typed; const char* header; } cases[] = {{MacroPage::kRecordingDelay, "30", "0,0,0"}, {MacroPage::kNoDelay, "30", "0,1,0"},
                 {MacroPage::kDefaultDelay, "30", "0,2,30"}, {MacroPage::kDefaultDelay, "99999", "0,2,60000"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.header);
        const std::int64_t id = macroWith({kDownA, kUpA});
        const int row = static_cast<int>(page().MacroListDatas().size()) - 1;
        chooseDelayMode(c.mode, c.typed);
        // The delay field is editable under "Default" only, and follows the page's enabled state.
        EXPECT_EQ(page().controls().delaytime_edit, c.mode == MacroPage::kDefaultDelay);
        page().EnabledControl(false);
        EXPECT_FALSE(page().controls().delaytime_edit || page().controls().record_button);
        page().EnabledControl(true);
        EXPECT_EQ(page().controls().delaytime_edit, c.mode == MacroPage::kDefaultDelay);
        clearWire();
        page().button_action_saverecord();
        EXPECT_EQ(sql("SELECT play_times || ',' || delay_type || ',' || delay_time FROM t_macro_data "
                      "WHERE macro_id = " + std::to_string(id)),
                  c.header);
        EXPECT_EQ(commandCodes(), kDownload);
        // Loaded again: the radio of the stored mode; "Default" shows the repeat count (0).
        page().macroTableSelectionChanged(-1);
        page().radio_action_nodelaytime();
        page().macroTableSelectionChanged(row);
        EXPECT_EQ(page().delayMode(), c.mode);
        EXPECT_TRUE(c.mode != MacroPage::kDefaultDelay || page().delayTimeText() == "0");
    }
}

TEST(MacroFieldLimits, ByField) {
    constexpr MacroField I = MacroField::kInsertEvent, D = MacroField::kDelayTime, P = MacroField::kPlayCount,
                         N = MacroField::kName;
    const std::string thirtyOne = "abcdefghijklmnopqrstuvwxyz01234";
    std::string hanzi31;
    for (int i = 0; i < 31; ++i) hanzi31 += "宏";
    const struct { MacroField field; std::string typed, kept; } cases[] = {
        {I, "70000", "60000"}, {I, "60000", "60000"}, {I, "abc", "10"}, {I, "", "10"}, {I, "12a", "10"},
        {I, "-70000", "-70000"}, {D, "60001", "60000"}, {D, "250", "250"}, {P, "11", "10"}, {P, "7", "7"},
        {P, "x", "10"}, {N, thirtyOne, thirtyOne.substr(0, 30)}, {N, hanzi31, hanzi31.substr(0, 30 * 3)},
        {N, "short", "short"}, {I, "99999999999999999999999", "60000"},
    };
    for (const auto& c : cases) EXPECT_EQ(limitFieldText(c.field, c.typed), c.kept) << c.typed;
}

TEST_F(MacroTest, RecordsWithTheDelayMode) {
    // A is pressed at 1000; `sent` is the macro as the keyboard holds it.
    const struct { int mode; const char* field; std::int64_t releaseAt; std::vector<std::string> rows;
                   const char* sent; } cases[] = {
        {MacroPage::kRecordingDelay, "", 1250, {"[KEY DOWN] A", "[Delay:ms] 250", "[KEY UP] A"},
         "down 04, delay 250, up 04"},
        // 100000 ms: only the low 16 bits fit the keyboard's entry (0x186A0 → 0x86A0).
        {MacroPage::kRecordingDelay, "", 1000 + 200000, {"[KEY DOWN] A", "[Delay:ms] 100000", "[KEY UP] A"},
         "down 04, delay 34464, up 04"},
        {MacroPage::kNoDelay, "", 1250, {"[KEY DOWN] A", "[KEY UP] A"}, "down 04, delay 10, up 04"},
        {MacroPage::kDefaultDelay, "30", 1250, {"[KEY DOWN] A", "[Delay:ms] 30", "[KEY UP] A"},
         "down 04, delay 30, up 04"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.sent);
        const std::int64_t id = macroWith({kWait});  // replaced by the recording
        chooseDelayMode(c.mode, c.field);
        clearWire();
        page().button_action_recordmacro();
        EXPECT_EQ(page().macroRecordType(), MacroPage::kRecording);
        EXPECT_EQ(page().controls().record_button_title, 200);
        EXPECT_TRUE(page().controls().delayevent_radiobutton);
        EXPECT_TRUE(page().RecordListDatas().empty());
        key(4, 1, 1000);
        key(4, 0, c.releaseAt);
        EXPECT_EQ(shown(), c.rows);
        EXPECT_EQ(stored(id), "0=1:100:100");  // stored only at the end
        EXPECT_TRUE(sets().empty());

        page().button_action_recordmacro();
        EXPECT_EQ(page().macroRecordType(), MacroPage::kIdle);
        EXPECT_FALSE(page().eventHandler());
        EXPECT_EQ(session_->core.capture.GLOBAL_LAST_PRESS_KEY_SCANCODE, 0);
        EXPECT_EQ(texts(ops::storedEvents(*session_->core.db(), id)), c.rows);
        EXPECT_EQ(commandCodes(), kDownload);
        EXPECT_EQ(onKeyboard(page().MacroListDatas().size() - 1), c.sent);
    }
}

TEST_F(MacroTest, RecordingMeasuresFromThePreviousKeyAndSkipsKeysTheQX9Lacks) {
    const std::int64_t id = newMacro();
    page().button_action_recordmacro();
    key(225, 1, 5000);   // left Shift
    key(89, 1, 5100);    // keypad 1, another keyboard's key: passed over
    key(89, 0, 5150);
    key(4, 1, 5400);
    key(4, 0, 5500);
    key(225, 0, 5600);
    EXPECT_EQ(shown(), (std::vector<std::string>{"[KEY DOWN] Left Shift", "[Delay:ms] 400", "[KEY DOWN] A",
                                                 "[Delay:ms] 100", "[KEY UP] A", "[Delay:ms] 100", "[KEY UP] Left Shift"}));
    page().button_action_saverecord();  // Save also ends the recording
    EXPECT_EQ(page().macroRecordType(), MacroPage::kIdle);
    EXPECT_EQ(stored(id), "0=2:225:Left Shift, 1=1:400:400, 2=2:4:A, 3=1:100:100, 4=3:4:A, 5=1:100:100, 6=3:225:Left Shift");
    EXPECT_EQ(commandCodes(), (std::vector<int>{0x19, 0x15, 0x02, 0x19, 0x15, 0x02}));  // stop, then save
}

TEST_F(MacroTest, LeavingThePageOrUnpluggingStopsARecordingTheMouseKindOnlyTheCapture) {
    session_->device.showPage(kPageMacros);
    const std::int64_t id = newMacro();
    page().macroTableSelectionChanged(-1);
    page().button_action_recordmacro();
    EXPECT_EQ(page().macroRecordType(), MacroPage::kIdle);
    page().macroTableSelectionChanged(0);
    page().button_action_recordmacro();
    key(4, 1, 1000);
    page().radio_action_mouseevent();
    key(4, 0, 1100);
    EXPECT_EQ(page().macroRecordType(), MacroPage::kRecording);
    EXPECT_EQ(shown(), (std::vector<std::string>{"[KEY DOWN] A"}));
    session_->device.showPage(kPageBacklight);
    EXPECT_EQ(page().macroRecordType(), MacroPage::kIdle);
    EXPECT_TRUE(page().controls().delayevent_radiobutton && !page().controls().mouseevent_radiobutton);
    EXPECT_EQ(stored(id), "0=2:4:A");

    page().button_action_recordmacro();
    key(5, 1, 2000);
    disconnect(keyboard_);
    EXPECT_EQ(page().macroRecordType(), MacroPage::kIdle);
    EXPECT_EQ(stored(id), "0=2:5:B");

    // Without a recording the departure leaves the page's unsaved edits alone.
    connect();
    page().recordTableSelectionChanged(0);
    page().deleteRecordItem();
    disconnect(keyboard_);
    EXPECT_EQ(stored(id), "0=2:5:B");
}

}  // namespace
}  // namespace qx9::test
