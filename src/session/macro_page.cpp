#include "session/macro_page.h"

#include <cctype>

#include "common/text_number.h"
#include "i18n/extra_texts.h"
#include "i18n/language.h"
#include "layout/key_maps.h"
#include "session/keyboard_session.h"
#include "store/records.h"

namespace qx9 {

namespace {

// The most a play-count field holds.
constexpr std::int64_t kMaxPlayCountField = 10;
// Longest name, in characters.
constexpr std::size_t kNameFieldLength = 30;

// Whether `text` is a whole integer (optional sign, at least one digit, nothing else).
bool wholeInteger(const std::string& text) {
    std::size_t i = 0;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) ++i;
    if (i == text.size()) return false;
    for (; i < text.size(); ++i) {
        if (!std::isdigit(static_cast<unsigned char>(text[i]))) return false;
    }
    return true;
}

// A whole integer capped at `limit` when it is above it; anything else becomes "10".
std::string capInteger(const std::string& text, std::int64_t limit) {
    if (!wholeInteger(text)) return "10";
    if (text[0] == '-') return text;  // negative numbers are taken as typed
    if (leadingInteger(text) > limit) return std::to_string(limit);
    return text;
}

// The first `count` characters of UTF-8 text.
std::string firstCharacters(const std::string& text, std::size_t count) {
    std::size_t chars = 0;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if ((byte & 0xC0) != 0x80) {  // the first byte of a character
            if (chars == count) return text.substr(0, i);
            ++chars;
        }
    }
    return text;
}

}  // namespace

std::string limitFieldText(MacroField field, const std::string& text) {
    switch (field) {
        case MacroField::kInsertEvent:
        case MacroField::kDelayTime: return capInteger(text, ops::kMaxTypedDelay);
        case MacroField::kPlayCount: return capInteger(text, kMaxPlayCountField);
        case MacroField::kName: return firstCharacters(text, kNameFieldLength);
    }
    return text;
}

MacroPage::MacroPage(SessionCore& core) : core_(core), clock_(systemMacroClock()) {}

int MacroPage::delayMode() const {
    if (controls_.recorddelay_radiobutton) return kRecordingDelay;
    if (controls_.nodelay_radiobutton) return kNoDelay;
    if (controls_.defaultdelay_radiobutton) return kDefaultDelay;
    return -1;
}

void MacroPage::changed() { core_.notify(SessionAspect::Macros); }

void MacroPage::eventsChanged() {
    memory_ = {};
    if (DeviceSQLite* db = core_.db()) {
        const auto listed = static_cast<std::int64_t>(macros_.size());
        const std::int64_t id = selectedMacroId();
        memory_ = ops::macroMemory(*db, listed, id, id != 0 ? &records_ : nullptr);
    }
    changed();
}

std::int64_t MacroPage::selectedMacroId() const {
    if (macroSelectIndex_ < 0 || macroSelectIndex_ >= static_cast<int>(macros_.size())) return 0;
    return macros_[static_cast<std::size_t>(macroSelectIndex_)].macroid;
}

std::optional<ops::Target> MacroPage::target() const { return core_.target(); }

void MacroPage::sendMacros() {
    if (const std::optional<ops::Target> t = target()) {
        core_.report(ops::sendMacros(*t));
    }
}

void MacroPage::insertKindRadios(bool keyboard, bool mouse, bool delay) {
    controls_.keyboardevent_radiobutton = keyboard;
    controls_.mouseevent_radiobutton = mouse;
    controls_.delayevent_radiobutton = delay;
}

void MacroPage::delayModeRadios(bool record, bool none, bool byDefault) {
    controls_.recorddelay_radiobutton = record;
    controls_.nodelay_radiobutton = none;
    controls_.defaultdelay_radiobutton = byDefault;
}

// ---- The macro list ----

void MacroPage::initMacroList() {
    EnabledControl(false);
    macros_.clear();
    records_.clear();
    std::vector<MacroInfo> stored;
    if (DeviceSQLite* db = core_.db()) db->queryAllMacroData(stored);
    for (const MacroInfo& m : stored) macros_.push_back({m.macroName, m.macroId});
    macroSelectIndex_ = -1;
    recordSelectIndex_ = -1;
    if (!macros_.empty()) {
        setMacroTableSelect(0);
        EnabledControl(true);
        loadMacroRecordData(0);
    }
    radio_action_keyboardevent();
    eventsChanged();
}

void MacroPage::macroTableSelectionChanged(int row) {
    if (row < 0 || row >= static_cast<int>(macros_.size())) row = -1;
    macroSelectIndex_ = row;
    recordSelectIndex_ = -1;  // the event table shows another list
    if (row >= 0) {
        setMacroTableSelect(row);
        loadMacroRecordData(row);
    } else {
        records_.clear();
        EnabledControl(false);
    }
    eventsChanged();
}

void MacroPage::setMacroTableSelect(int selectIndex) {
    macroSelectIndex_ = selectIndex;
    changed();
}

void MacroPage::loadMacroRecordData(int selectIndex) {
    if (selectIndex < 0 || selectIndex >= static_cast<int>(macros_.size())) return;
    const std::int64_t id = macros_[static_cast<std::size_t>(selectIndex)].macroid;
    records_.clear();
    DeviceSQLite* db = core_.db();
    std::vector<RecordInfo> events;
    if (db) db->queryMacroRecord(id, events);
    for (const RecordInfo& e : events) records_.push_back({e.recordType, e.recordDesc, e.recordValue});
    loaded_ = records_;
    MacroInfo info;
    loadedInfo_ = {};
    if (db && db->queryMacroInfo(id, info)) {
        loadedInfo_ = info;
        switch (info.delayType) {
            case kRecordingDelay: delayModeRadios(true, false, false); break;
            case kNoDelay: delayModeRadios(false, true, false); break;
            case kDefaultDelay:
                delayModeRadios(false, false, true);
                // The field shows the header's repeat count, not its delay time.
                controls_.delaytime_edit_text = std::to_string(info.playTimes);
                break;
            default: break;  // the radios stay as they are
        }
    }
    EnabledControl(true);
    eventsChanged();
}

void MacroPage::macroTableSetObjectValue(int row, const std::string& text) {
    if (row < 0 || row >= static_cast<int>(macros_.size()) || text.empty()) return;
    const std::optional<ops::Target> t = target();
    MacroRow& macro = macros_[static_cast<std::size_t>(row)];
    if (t && core_.report(ops::renameMacro(*t, macro.macroid, text))) {
        macro.text = text;
        changed();
    }
}

void MacroPage::addMacroData() {
    const std::optional<ops::Target> t = target();
    if (!t) return;
    // Named after the number of macros, whatever the other names are.
    std::string name;
    std::int64_t id = 0;
    if (!core_.report(ops::addMacro(*t, name, id))) return;
    macros_.push_back({name, id});
    macroTableSelectionChanged(static_cast<int>(macros_.size()) - 1);
}

void MacroPage::deleteMacroData() {
    if (macroSelectIndex_ < 0 || macroSelectIndex_ >= static_cast<int>(macros_.size())) {
        core_.warn(localizedText(textid::kDeleteMacro), localizedText(textid::kSelectMacro));
        return;
    }
    const std::optional<ops::Target> t = target();
    // No question asked, and nothing sent: key bindings keep their macro positions.
    if (!t || !core_.report(ops::deleteMacro(*t, selectedMacroId()))) return;
    macros_.erase(macros_.begin() + macroSelectIndex_);
    records_.clear();
    EnabledControl(false);
    macroSelectIndex_ = -1;
    recordSelectIndex_ = -1;
    eventsChanged();
}

void MacroPage::EnabledControl(bool enabled) {
    controls_.record_tableview = enabled;
    controls_.insertevent_combox = enabled;
    controls_.mousevent_combox = enabled;
    controls_.insertevent_edit = enabled;
    controls_.insertevent_button = enabled;
    if (controls_.defaultdelay_radiobutton) controls_.delaytime_edit = enabled;
    controls_.record_button = enabled;
    changed();
}

// ---- The event list ----

void MacroPage::recordTableSelectionChanged(int row) {
    if (row < 0 || row >= static_cast<int>(records_.size())) row = -1;
    recordSelectIndex_ = row;
    setRecordTableSelect(row);
}

void MacroPage::setRecordTableSelect(int selectIndex) {
    recordSelectIndex_ = selectIndex;
    changed();
}

void MacroPage::radio_action_keyboardevent() {
    insertEventType_ = kInsertKeyboard;
    insertKindRadios(true, false, false);
    controls_.mousevent_combox_hidden = true;
    controls_.insertevent_edit_hidden = false;
    controls_.insertevent_edit = false;  // shows the next key pressed
    controls_.insertevent_edit_text.clear();
    core_.capture.GLOBAL_LAST_PRESS_KEY_SCANCODE = 0;
    skippedKeys_ = 0;
    installMonitor();
    changed();
}

void MacroPage::radio_action_mouseevent() {
    insertEventType_ = kInsertMouse;
    insertKindRadios(false, true, false);
    controls_.mousevent_combox_hidden = false;
    controls_.insertevent_edit_hidden = true;
    removeMonitor();  // also ends the capture of a recording, which stays on
    core_.capture.GLOBAL_LAST_PRESS_KEY_SCANCODE = 0;
    changed();
}

void MacroPage::radio_action_delaytime() {
    insertEventType_ = kInsertDelay;
    insertKindRadios(false, false, true);
    controls_.mousevent_combox_hidden = true;
    controls_.insertevent_edit_hidden = false;
    controls_.insertevent_edit = true;
    controls_.insertevent_edit_text.clear();
    removeMonitor();
    core_.capture.GLOBAL_LAST_PRESS_KEY_SCANCODE = 0;
    changed();
}

void MacroPage::insertevent_combox_select(int index) {
    if (index == 0 || index == 1) controls_.insertevent_combox_index = index;
    changed();
}

void MacroPage::mousevent_combox_select(int index) {
    if (index >= 0 && index <= 2) controls_.mousevent_combox_index = index;
    changed();
}

void MacroPage::controlTextDidChange(MacroField field, const std::string& text) {
    if (field == MacroField::kInsertEvent) controls_.insertevent_edit_text = limitFieldText(field, text);
    else if (field == MacroField::kDelayTime) controls_.delaytime_edit_text = limitFieldText(field, text);
    else return;
    changed();
}

void MacroPage::insertNewEvent() {
    if (selectedMacroId() == 0) return;
    std::vector<RecordRow> added;
    switch (insertEventType_) {
        case kInsertKeyboard: {
            const std::int64_t code = core_.capture.GLOBAL_LAST_PRESS_KEY_SCANCODE;
            if (code == 0) return;
            const auto events = ops::keyPressEvents(code);
            if (!events) return;
            added = *events;
            break;
        }
        case kInsertMouse: added = ops::mouseClickEvents(controls_.mousevent_combox_index); break;
        case kInsertDelay: added = ops::delayEvents(leadingInteger(controls_.insertevent_edit_text)); break;
        default: return;
    }
    std::optional<std::size_t> selected;
    if (recordSelectIndex_ >= 0) selected = static_cast<std::size_t>(recordSelectIndex_);
    ops::insertEvents(records_, selected, controls_.insertevent_combox_index == 1, added);
    eventsChanged();
    // Stored, then every macro is sent.
    if (const std::optional<ops::Target> t = target()) {
        storedCopy(ops::storeAndSendEvents(*t, selectedMacroId(), records_, &loaded_));
    }
}

void MacroPage::deleteRecordItem() {
    if (recordSelectIndex_ < 0 || recordSelectIndex_ >= static_cast<int>(records_.size())) return;
    ops::deleteEventWithPartner(records_, static_cast<std::size_t>(recordSelectIndex_));
    if (recordSelectIndex_ >= static_cast<int>(records_.size())) recordSelectIndex_ = -1;
    eventsChanged();
}

void MacroPage::button_action_delrecord() {
    deleteRecordItem();
    // The download reads the store, which still holds the deleted events: the keyboard keeps
    // them until the list is stored by the next save, insertion or recording. Deliberate.
    sendMacros();
}

void MacroPage::SaveMacroRecordDataToDB() {
    const std::optional<ops::Target> t = target();
    const std::int64_t id = selectedMacroId();
    if (t && id != 0) storedCopy(ops::storeEvents(*t, id, records_, &loaded_));
}

// ---- Delay mode and saving ----

void MacroPage::radio_action_autodelaytime() {
    delayModeRadios(true, false, false);
    controls_.delaytime_edit = false;
    changed();
}

void MacroPage::radio_action_nodelaytime() {
    delayModeRadios(false, true, false);
    controls_.delaytime_edit = false;
    changed();
}

void MacroPage::radio_action_defaultdelaytime() {
    delayModeRadios(false, false, true);
    controls_.delaytime_edit = true;
    changed();
}

void MacroPage::button_action_saverecord() {
    const bool recording = macroRecordType_ == kRecording;
    if (recording) {
        macroRecordType_ = kIdle;
        stopMacroRecord();  // stores the recorded list and writes the keyboard
        controls_.record_button_title = textid::kRecord;
    }
    const std::int64_t id = selectedMacroId();
    const std::optional<ops::Target> t = target();
    if (id == 0 || !t) return;
    // The edits of the list (an event deletion among them) and the delay mode, stored together;
    // no radio on counts as the recording delay.
    const int mode = delayMode() < 0 ? kRecordingDelay : delayMode();
    storedCopy(ops::saveMacro(*t, id, &records_, mode, leadingInteger(controls_.delaytime_edit_text), &loaded_));
    changed();
}

// ---- Another program's changes ----

void MacroPage::storedCopy(const ops::Outcome& outcome) {
    // Refused because the macro changed meanwhile: the copy goes, and the page shows the store.
    if (outcome.status == ops::Outcome::kChanged) records_ = loaded_;
    if (core_.report(outcome)) loaded_ = records_;
}

void MacroPage::reloadFromDatabase() {
    DeviceSQLite* db = core_.db();
    if (!db) return;
    const std::int64_t selected = selectedMacroId();
    std::vector<MacroInfo> stored;
    db->queryAllMacroData(stored);
    macros_.clear();
    int row = -1;
    for (const MacroInfo& m : stored) {
        if (m.macroId == selected) row = static_cast<int>(macros_.size());
        macros_.push_back({m.macroName, m.macroId});
    }
    if (selected != 0 && row < 0) {
        // The macro being edited is gone: as after deleting it here.
        if (macroRecordType_ == kRecording) stopRecordingInProgress();
        records_.clear();
        loaded_.clear();
        macroSelectIndex_ = -1;
        recordSelectIndex_ = -1;
        EnabledControl(false);
    } else if (row >= 0) {
        macroSelectIndex_ = row;
        MacroInfo info;
        db->queryMacroInfo(selected, info);
        const bool sameInfo = info.delayType == loadedInfo_.delayType && info.delayTime == loadedInfo_.delayTime &&
                              info.playTimes == loadedInfo_.playTimes;
        if (macroRecordType_ != kRecording && (ops::storedEvents(*db, selected) != loaded_ || !sameInfo)) {
            const bool edited = records_ != loaded_;
            const int keep = recordSelectIndex_;
            loadMacroRecordData(row);
            recordSelectIndex_ = keep < static_cast<int>(records_.size()) ? keep : -1;
            if (edited && core_.events) core_.events->notice(extraText(ExtraText::kEditsReplaced));
        }
    }
    eventsChanged();
}

// ---- Leaving ----

void MacroPage::leavePage() {
    insertKindRadios(false, false, true);
    stopRecordingInProgress();
    changed();
}

void MacroPage::stopRecordingInProgress() {
    if (macroRecordType_ != kRecording) return;
    macroRecordType_ = kIdle;
    stopMacroRecord();
    controls_.record_button_title = textid::kRecord;
    changed();
}

}  // namespace qx9
