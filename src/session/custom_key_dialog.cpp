#include "session/custom_key_dialog.h"

#include "common/fatal.h"
#include "common/text_number.h"
#include "ops/key_assignment.h"
#include "i18n/language.h"
#include "layout/key_maps.h"
#include "session/keyboard_session.h"

namespace qx9 {

namespace {

using Choice = CustomKeyDialog::Choice;

std::vector<Choice> choices(const std::vector<ops::FunctionChoice>& list) {
    std::vector<Choice> out;
    for (const ops::FunctionChoice& c : list) out.push_back({localizedText(c.textId), c.value});
    return out;
}

}  // namespace

CustomKeyDialog::CustomKeyDialog(SessionCore& core, const KeyPage& keys)
    : core_(core),
      customKeyValue_(keys.customKeyValue),
      customKeyDesc_(keys.customKeyDesc),
      currentProfile_(keys.customKeyProfile) {
    if (!core.db()) fatalError("the custom key dialog needs the database");
    types_ = choices(ops::functionTypeChoices());
    mouse_ = choices(ops::functionChoices(kMacroTypeMouse));
    macroTypes_ = choices(ops::playModeChoices());
    multimedia_ = choices(ops::functionChoices(kMacroTypeMultimedia));
    macShortcuts_ = choices(ops::functionChoices(kMacroTypeMacShortcut));
}

const std::vector<Choice>& CustomKeyDialog::functionList() const {
    switch (key_functiontypevalue_) {
        case kMacroTypeMacro: return macros_;
        case kMacroTypeMouse: return mouse_;
        case kMacroTypeMultimedia: return multimedia_;
        case kMacroTypeMacShortcut: return macShortcuts_;
        default: return types_;
    }
}

void CustomKeyDialog::viewDidAppear() {
    typeIndex_ = 0;
    key_functiontypevalue_ = kMacroTypeDefault;
    std::vector<MacroInfo> stored;
    core_.db()->queryAllMacroData(stored);
    for (const MacroInfo& m : stored) macros_.push_back({m.macroName, m.macroId});
    macroPlayTypeIndex_ = 0;
    showMacroPlayType_ = false;
    showPlayCount_ = false;
    playCountText_ = "1";
}

void CustomKeyDialog::selectFunctionType(int index) {
    showMacroPlayType_ = false;
    showPlayCount_ = false;
    if (index < 0 || index >= static_cast<int>(types_.size())) return;
    typeIndex_ = index;
    key_functiontypevalue_ = types_[static_cast<std::size_t>(index)].mode;
    switch (key_functiontypevalue_) {
        case kMacroTypeDefault:
        case kMacroTypeDisabled:
            showFunctionList_ = false;
            showCombination_ = false;
            break;
        case kMacroTypeKey:
            showFunctionList_ = false;
            showCombination_ = true;
            break;
        case kMacroTypeMacro:
            showFunctionList_ = true;
            selectFunction(0);  // selecting the first item reports it like a click
            macroPlayTypeIndex_ = 0;
            showMacroPlayType_ = true;
            showPlayCount_ = false;
            playCountText_ = "1";
            break;
        default:  // 6, 7, 8
            showFunctionList_ = true;
            showCombination_ = false;
            selectFunction(0);
            break;
    }
}

void CustomKeyDialog::selectFunction(int index) {
    if (index < 0) return;
    functionIndex_ = index;
    key_functionvalue_ = 0;
    switch (key_functiontypevalue_) {
        case kMacroTypeMacro: case kMacroTypeMouse: case kMacroTypeMultimedia: case kMacroTypeMacShortcut: {
            const auto& list = functionList();
            if (index < static_cast<int>(list.size())) key_functionvalue_ = list[static_cast<std::size_t>(index)].mode;
            break;
        }
        default: break;
    }
}

void CustomKeyDialog::selectMacroPlayType(int index) {
    macroPlayTypeIndex_ = index;
    showPlayCount_ = index == 1;
    if (showPlayCount_) playCountText_ = "1";
}

void CustomKeyDialog::keyEvent() {
    const CaptureState& capture = core_.capture;
    if (capture.lastKeyOperate == "down") return fillBindInput();
    if (capture.pressedFlags.empty() && capture.pressedNormalKey.empty() && !currentModifyKeys_.empty()) capturing_ = false;
}

void CustomKeyDialog::fillBindInput() {
    const CaptureState& capture = core_.capture;
    std::vector<std::int64_t> keys = capture.pressedFlags;
    if (!capture.pressedNormalKey.empty()) keys.push_back(capture.pressedNormalKey.front());
    fillBindInput(keys);
}

void CustomKeyDialog::fillBindInput(const std::vector<std::int64_t>& keys) {
    keyfuncEdit_.clear();
    currentModifyKeysStr_.clear();
    for (std::size_t i = 0; i < keys.size(); ++i) {
        keyfuncEdit_ += (i ? " + " : "") + G_KB_SuperKeyCodeMap.at(static_cast<int>(keys[i])).full_name;
        currentModifyKeysStr_ += (i ? "," : "") + std::to_string(keys[i]);
    }
    currentModifyKeys_ = keys;
}

void CustomKeyDialog::keyAssignment() {
    const auto& list = functionList();
    const bool listed = functionIndex_ >= 0 && functionIndex_ < static_cast<int>(list.size());
    std::optional<ProfileKey> record;
    switch (key_functiontypevalue_) {
        case kMacroTypeDefault: record = ops::defaultFunction(); break;
        case kMacroTypeKey:
            if (currentModifyKeysStr_.empty()) return;
            record = ops::capturedKeysFunction(currentModifyKeys_);
            break;
        case kMacroTypeMacro: {
            MacroInfo macro;
            macro.macroId = key_functionvalue_;
            macro.macroName = listed ? list[static_cast<std::size_t>(functionIndex_)].text : "";
            record = ops::macroFunction(macro, macroPlayTypeIndex_ >= 0 ? macroPlayTypeIndex_ : 0,
                                        leadingInteger(playCountText_));
            break;
        }
        case kMacroTypeMouse: case kMacroTypeMultimedia: case kMacroTypeMacShortcut:
            record = ops::listFunction(key_functiontypevalue_, static_cast<std::size_t>(std::max(functionIndex_, 0)));
            break;
        default: return;
    }
    if (!record) return;
    // Always the base layer, whatever layer the page shows.
    if (const std::optional<ops::Target> target = core_.target()) {
        core_.report(ops::assignKey(*target, currentProfile_, 0, customKeyValue_, *record));
    }
}

}  // namespace qx9
