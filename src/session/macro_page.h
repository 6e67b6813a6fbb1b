#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qx9 {

class KeyboardSession;

struct MacroRow {
    std::string icon = "icon";
    std::string text;
    std::int64_t macroid = 0;
};

struct RecordRow {
    std::int64_t type = 0;
    std::string text;
    std::int64_t value = 0;
};

// The macro page: the macro list and the events of the selected macro.
class MacroPage {
public:
    // Kinds of event the Insert button makes.
    enum InsertKind : int { kInsertKeyboard = 0, kInsertMouse = 1, kInsertDelay = 2 };
    // Delay modes of the selected macro's radios.
    enum DelayMode : int { kRecordingDelay = 0, kNoDelay = 1, kDefaultDelay = 2 };

    explicit MacroPage(KeyboardSession& session) : s_(session) {}

    const std::vector<MacroRow>& MacroListDatas() const { return macros_; }
    const std::vector<RecordRow>& RecordListDatas() const { return records_; }
    int macroSelectIndex() const { return macroSelectIndex_; }
    int recordSelectIndex() const { return recordSelectIndex_; }
    int insertEventType() const { return insertEventType_; }
    int macroRecordType() const { return macroRecordType_; }
    bool controlsEnabled() const { return controlsEnabled_; }
    int delayMode() const { return delayMode_; }
    const std::string& delayTimeText() const { return delayTimeText_; }

    void initMacroList();
    void setMacroTableSelect(int selectIndex);
    void loadMacroRecordData(int selectIndex);
    void EnabledControl(bool enabled);
    void radio_action_keyboardevent();

    // Leaving the page: the insert kind goes back to delay and a recording stops.
    void leavePage();
    void stopMacroRecord();

private:
    KeyboardSession& s_;
    std::vector<MacroRow> macros_;
    std::vector<RecordRow> records_;
    int macroSelectIndex_ = -1;
    int recordSelectIndex_ = -1;
    int insertEventType_ = kInsertKeyboard;
    int macroRecordType_ = 1;
    bool controlsEnabled_ = false;
    int delayMode_ = -1;
    std::string delayTimeText_;
};

}  // namespace qx9
