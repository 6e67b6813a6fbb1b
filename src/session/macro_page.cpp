#include "session/macro_page.h"

#include "hid/capture_state.h"
#include "session/keyboard_session.h"

namespace qx9 {

void MacroPage::initMacroList() {
    EnabledControl(false);
    macros_.clear();
    records_.clear();
    std::vector<MacroInfo> stored;
    if (DeviceSQLite* db = s_.core.db()) db->queryAllMacroData(stored);
    for (const MacroInfo& m : stored) macros_.push_back({"icon", m.macroName, m.macroId});
    macroSelectIndex_ = -1;
    if (!macros_.empty()) {
        setMacroTableSelect(0);
        EnabledControl(true);
        loadMacroRecordData(0);
    }
    radio_action_keyboardevent();
    s_.core.notify(SessionAspect::Macros);
}

void MacroPage::setMacroTableSelect(int selectIndex) {
    macroSelectIndex_ = selectIndex;
    s_.core.notify(SessionAspect::Macros);
}

void MacroPage::loadMacroRecordData(int selectIndex) {
    if (selectIndex < 0 || selectIndex >= static_cast<int>(macros_.size())) return;
    const std::int64_t id = macros_[static_cast<std::size_t>(selectIndex)].macroid;
    records_.clear();
    DeviceSQLite* db = s_.core.db();
    std::vector<RecordInfo> events;
    if (db) db->queryMacroRecord(id, events);
    for (const RecordInfo& e : events) records_.push_back({e.recordType, e.recordDesc, e.recordValue});
    MacroInfo info;
    if (db && db->queryMacroInfo(id, info)) {
        if (info.delayType >= kRecordingDelay && info.delayType <= kDefaultDelay) delayMode_ = static_cast<int>(info.delayType);
        // The "Default" field shows the header's second number.
        if (info.delayType == kDefaultDelay) delayTimeText_ = std::to_string(info.playTimes);
    }
    EnabledControl(true);
    s_.core.notify(SessionAspect::Macros);
}

void MacroPage::EnabledControl(bool enabled) {
    controlsEnabled_ = enabled;
    s_.core.notify(SessionAspect::Macros);
}

void MacroPage::radio_action_keyboardevent() {
    insertEventType_ = kInsertKeyboard;
    GLOBAL_LAST_PRESS_KEY_SCANCODE = 0;  // the next key pressed is the one to insert
    s_.core.notify(SessionAspect::Macros);
}

void MacroPage::leavePage() {
    insertEventType_ = kInsertDelay;
    if (macroRecordType_ == 2) {
        macroRecordType_ = 1;
        stopMacroRecord();
    }
    s_.core.notify(SessionAspect::Macros);
}

void MacroPage::stopMacroRecord() {
    // Recording itself arrives with the macro editor; until then there is nothing to stop.
    macroRecordType_ = 1;
}

}  // namespace qx9
