// Recording a macro from the keyboard: the local key monitor hands every key event to the page,
// which turns the capture's last key into events of the selected macro.
#include <algorithm>
#include <chrono>

#include "common/console.h"
#include "common/text_number.h"
#include "layout/key_maps.h"
#include "session/keyboard_session.h"
#include "session/macro_page.h"
#include "store/records.h"

namespace qx9 {

MacroClock systemMacroClock() {
    return [] {
        using namespace std::chrono;
        return static_cast<std::int64_t>(duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count());
    };
}

void MacroPage::setClock(MacroClock clock) { clock_ = clock ? std::move(clock) : systemMacroClock(); }

void MacroPage::installMonitor() { eventHandler_ = true; }

void MacroPage::removeMonitor() { eventHandler_ = false; }

void MacroPage::button_action_recordmacro() {
    if (macroSelectIndex_ == -1) return;
    if (macroRecordType_ == kIdle) {
        macroRecordType_ = kRecording;
        startMacroRecord();
        controls_.record_button_title = textid::kStopRecord;
        records_.clear();  // the recording replaces the macro's events
        recordSelectIndex_ = -1;
        eventsChanged();
    } else if (macroRecordType_ == kRecording) {
        macroRecordType_ = kIdle;
        stopMacroRecord();
        controls_.record_button_title = textid::kRecord;
        changed();
    }
}

void MacroPage::stopRecordingFromKeyboard() {
    if (macroRecordType_ != kRecording) return;
    const std::int64_t stopKey = core_.capture.GLOBAL_LAST_PRESS_KEY_SCANCODE;
    if (!records_.empty() && records_.back().type == kRecordKeyDown && records_.back().value == stopKey) {
        records_.pop_back();
        if (!records_.empty() && records_.back().type == kRecordDelay) records_.pop_back();
    }
    button_action_recordmacro();
}

void MacroPage::resetAfterRecording() {
    insertKindRadios(false, false, true);
    controls_.eventRadiosEnabled = true;
}

void MacroPage::startMacroRecord() {
    resetAfterRecording();
    core_.capture.GLOBAL_LAST_PRESS_KEY_SCANCODE = 0;
    skippedKeys_ = 0;
    installMonitor();
    // lastRecordTime stays: the first key has no delay anyway, since the list is empty.
    changed();
}

void MacroPage::localKeyEvent() {
    if (eventHandler_) fillMacroRecord();
}

void MacroPage::fillMacroRecord() {
    const CaptureState& capture = core_.capture;
    const std::int64_t code = capture.GLOBAL_LAST_PRESS_KEY_SCANCODE;
    if (code == 0 || macroSelectIndex_ < 0) return;
    console() << "fillMacroRecord \n";
    // Keys of other keyboards that the QX9 lacks (the keypad, say) are passed over.
    const KeyCodeEntry* key = G_KB_SuperKeyCodeMap.find(static_cast<int>(code));
    const bool known = key && !key->full_name.empty();
    const bool waiting = controls_.keyboardevent_radiobutton || macroRecordType_ == kRecording;
    if (!known && waiting && capture.lastKeyOperate == "down") {  // counted once a press
        ++skippedKeys_;
        lastSkippedKey_ = code;
        changed();
    }

    if (controls_.keyboardevent_radiobutton) {  // the Insert function waits for a key
        if (known) {
            controls_.insertevent_edit_text = key->full_name;
            changed();
        }
        return;
    }
    if (macroRecordType_ == kIdle || !known) return;

    // The capture stamps every key event; the clock stands in only if it never did.
    const std::int64_t time = capture.lastMovedTime != 0 ? capture.lastMovedTime : clock_();
    if (!records_.empty()) {
        bool withDelay = true;
        std::int64_t delay = 0;
        if (controls_.recorddelay_radiobutton) delay = std::min(time - lastRecordTime_, kMaxRecordedDelay);
        else if (controls_.nodelay_radiobutton) withDelay = false;
        else if (controls_.defaultdelay_radiobutton) delay = leadingInteger(controls_.delaytime_edit_text);
        else withDelay = false;
        if (withDelay) records_.push_back({kRecordDelay, std::to_string(delay), delay});
    }
    lastRecordTime_ = time;
    records_.push_back({capture.lastKeyOperate == "down" ? kRecordKeyDown : kRecordKeyUp, key->full_name, code});
    eventsChanged();
}

void MacroPage::stopMacroRecord() {
    removeMonitor();
    core_.capture.GLOBAL_LAST_PRESS_KEY_SCANCODE = 0;
    // The recorded list replaces the stored events; then every macro is sent.
    if (const std::optional<ops::Target> t = target(); t && selectedMacroId() != 0) {
        // A recording replaces the events, whatever they were.
        if (core_.report(ops::storeAndSendEvents(*t, selectedMacroId(), records_))) loaded_ = records_;
    } else {
        sendMacros();
    }
    resetAfterRecording();
    eventsChanged();
}

}  // namespace qx9
