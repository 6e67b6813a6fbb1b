#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "i18n/text_ids.h"
#include "ops/macros.h"

namespace qx9 {

struct SessionCore;

struct MacroRow {
    std::string text;
    std::int64_t macroid = 0;
};

using ops::RecordRow;
using ops::recordListText;

// The macro page's text fields: the limit applied to typed text depends on the field.
enum class MacroField {
    kInsertEvent,  // insertevent_edit: the delay to insert
    kDelayTime,    // delaytime_edit: the default delay
    kPlayCount,
    kName,
};

// The text a field keeps after the user typed `text`: the two delay fields hold at most 60000 and
// the play count at most 10 ("10" for anything that is not a whole integer), a name keeps 30
// characters.
std::string limitFieldText(MacroField field, const std::string& text);

// Milliseconds since 1970.
using MacroClock = std::function<std::int64_t()>;
MacroClock systemMacroClock();

// What the page's controls show; the widgets mirror it.
struct MacroPageControls {
    // Enabled states.
    bool record_tableview = false;
    bool insertevent_combox = false;
    bool mousevent_combox = false;
    bool insertevent_edit = false;
    bool insertevent_button = false;
    bool delaytime_edit = false;
    bool record_button = false;
    bool eventRadiosEnabled = true;  // the three insert-kind radios
    // Shown or hidden.
    bool mousevent_combox_hidden = true;
    bool insertevent_edit_hidden = false;
    // Insert-kind radios.
    bool keyboardevent_radiobutton = false;
    bool mouseevent_radiobutton = false;
    bool delayevent_radiobutton = false;
    // Delay-mode radios.
    bool recorddelay_radiobutton = true;
    bool nodelay_radiobutton = false;
    bool defaultdelay_radiobutton = false;
    // Pop-up selections, field texts and the record button's title.
    int insertevent_combox_index = 0;  // 0 "Insert Event Before", 1 "Insert Event After"
    int mousevent_combox_index = 0;    // 0 left, 1 middle, 2 right button
    std::string insertevent_edit_text;
    std::string delaytime_edit_text;
    int record_button_title = textid::kRecord;  // or textid::kStopRecord
};

// The macro page: the macro list, the events of the selected macro, the insert controls, the
// delay mode and recording. Every change of the event list that is stored is followed by a
// download of all macros to the keyboard.
class MacroPage {
public:
    // Kinds of event the Insert button makes.
    enum InsertKind : int { kInsertKeyboard = 0, kInsertMouse = 1, kInsertDelay = 2 };
    // Delay modes (MacroInfo::delayType).
    enum DelayMode : int { kRecordingDelay = ops::kRecordingDelay, kNoDelay = ops::kNoDelay, kDefaultDelay = ops::kDefaultDelay };
    // Recording states (macroRecordType).
    enum RecordState : int { kIdle = 1, kRecording = 2 };
    // Recorded delays are capped at this many milliseconds.
    static constexpr std::int64_t kMaxRecordedDelay = ops::kMaxRecordedDelay;

    explicit MacroPage(SessionCore& core);

    const std::vector<MacroRow>& MacroListDatas() const { return macros_; }
    const std::vector<RecordRow>& RecordListDatas() const { return records_; }
    int macroSelectIndex() const { return macroSelectIndex_; }
    int recordSelectIndex() const { return recordSelectIndex_; }
    int insertEventType() const { return insertEventType_; }
    int macroRecordType() const { return macroRecordType_; }
    std::int64_t lastRecordTime() const { return lastRecordTime_; }
    bool eventHandler() const { return eventHandler_; }  // the local key monitor is installed
    // The keys pressed go into the macro (recording) or name the key to insert.
    bool capturesKeys() const {
        return macroRecordType_ == kRecording || (eventHandler_ && controls_.keyboardevent_radiobutton);
    }
    const MacroPageControls& controls() const { return controls_; }
    bool controlsEnabled() const { return controls_.record_tableview; }
    // The delay-mode radio that is on (DelayMode), or -1 when none is.
    int delayMode() const;
    const std::string& delayTimeText() const { return controls_.delaytime_edit_text; }
    // How much of the keyboard's macro memory the macros take, the selected one as edited.
    const ops::MacroMemory& memory() const { return memory_; }
    // Keys pressed for the macro that the keyboard cannot play (recording, or the key to insert),
    // since the recording started or the keyboard insert kind was chosen; the last one's usage.
    int skippedKeys() const { return skippedKeys_; }
    std::int64_t lastSkippedKey() const { return lastSkippedKey_; }

    // The macro list.
    void initMacroList();
    void macroTableSelectionChanged(int row);  // the user selected a row (−1: none)
    void setMacroTableSelect(int selectIndex);
    void loadMacroRecordData(int selectIndex);
    void macroTableSetObjectValue(int row, const std::string& text);  // a row was renamed
    void addMacroData();
    void deleteMacroData();
    void button_action_addmacro() { addMacroData(); }
    void button_action_delmacro() { deleteMacroData(); }
    void EnabledControl(bool enabled);

    // The event list and the insert controls.
    void recordTableSelectionChanged(int row);
    void setRecordTableSelect(int selectIndex);
    void radio_action_keyboardevent();
    void radio_action_mouseevent();
    void radio_action_delaytime();
    void insertevent_combox_select(int index);
    void mousevent_combox_select(int index);
    // The user typed into the field with `tag`; the field keeps the limited text.
    void controlTextDidChange(MacroField field, const std::string& text);
    void insertNewEvent();
    void button_action_insertevent() { insertNewEvent(); }
    void deleteRecordItem();
    void button_action_delrecord();  // deleteRecordItem, then the download (of the stored list)
    void SaveMacroRecordDataToDB();

    // Delay mode and saving.
    void radio_action_autodelaytime();
    void radio_action_nodelaytime();
    void radio_action_defaultdelaytime();
    void button_action_saverecord();

    // Recording (macro_recording.cpp). The front end calls localKeyEvent for every key press,
    // release and modifier change it receives, after the capture has updated its state.
    void setClock(MacroClock clock);
    void button_action_recordmacro();
    // Stop chosen from the keyboard while recording: the press of the key that chose it went into
    // the recording and is not part of the macro (nor the delay before it).
    void stopRecordingFromKeyboard();
    void startMacroRecord();
    void localKeyEvent();  // the local monitor's handler: fillMacroRecord while installed
    void fillMacroRecord();
    void stopMacroRecord();

    // Another program changed the database: the macro list, and the selected macro's events and
    // delay mode when they are no longer those the page read (unsaved edits of that macro are
    // then set aside, with a notice). A recording in progress keeps its events.
    void reloadFromDatabase();

    // Leaving the page: the delay insert radio is turned on and a recording stops.
    void leavePage();
    // The keyboard went away: a recording in progress stops.
    void stopRecordingInProgress();

private:
    std::int64_t selectedMacroId() const;
    void installMonitor();
    void removeMonitor();
    void insertKindRadios(bool keyboard, bool mouse, bool delay);
    void delayModeRadios(bool record, bool none, bool byDefault);
    void resetAfterRecording();
    void sendMacros();
    // Reports the outcome of storing the page's copy of the events; stored, it is what the
    // store holds.
    void storedCopy(const ops::Outcome& outcome);
    std::optional<ops::Target> target() const;
    void changed();
    // The event list or the macro list changed: the memory in use is counted again.
    void eventsChanged();

    SessionCore& core_;
    std::vector<MacroRow> macros_;
    std::vector<RecordRow> records_;
    // The selected macro's events as last read from or written to the store: what the edited
    // copy above started from.
    std::vector<RecordRow> loaded_;
    MacroInfo loadedInfo_;
    int macroSelectIndex_ = -1;
    int recordSelectIndex_ = -1;
    int insertEventType_ = kInsertKeyboard;
    int macroRecordType_ = kIdle;
    std::int64_t lastRecordTime_ = 0;
    bool eventHandler_ = false;
    MacroPageControls controls_;
    MacroClock clock_;
    ops::MacroMemory memory_;
    int skippedKeys_ = 0;
    std::int64_t lastSkippedKey_ = 0;
};

}  // namespace qx9
