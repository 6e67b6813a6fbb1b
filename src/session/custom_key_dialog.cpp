#include "session/custom_key_dialog.h"

#include <algorithm>
#include <cctype>

#include "common/fatal.h"
#include "hid/capture_state.h"
#include "i18n/language.h"
#include "layout/key_maps.h"
#include "session/keyboard_session.h"

namespace qx9 {

namespace {

using Choice = CustomKeyDialog::Choice;

std::vector<Choice> choices(std::initializer_list<std::pair<int, std::int64_t>> items) {
    std::vector<Choice> out;
    for (auto [textId, mode] : items) out.push_back({localizedText(textId), mode});
    return out;
}

// The integer at the start of a text, as a text field reads it: "12abc" is 12, "abc" is 0.
std::int64_t leadingInteger(const std::string& text) {
    std::size_t i = 0;
    while (i < text.size() && std::isspace(static_cast<unsigned char>(text[i]))) ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == '-' || text[i] == '+')) negative = text[i++] == '-';
    std::int64_t v = 0;
    while (i < text.size() && std::isdigit(static_cast<unsigned char>(text[i])) && v < 1000000000) {
        v = v * 10 + (text[i++] - '0');
    }
    return negative ? -v : v;
}

}  // namespace

CustomKeyDialog::CustomKeyDialog(KeyboardSession& session)
    : s_(session),
      customKeyValue_(session.keys.customKeyValue),
      customKeyDesc_(session.keys.customKeyDesc),
      currentProfile_(session.keys.customKeyProfile) {
    SessionCore& core = s_.core;
    if (!core.db() || (!core.deviceComm && !core.worksWithoutKeyboard)) {
        fatalError("the custom key dialog needs the database and the keyboard");
    }
    types_ = choices({{120, 1}, {121, 3}, {122, 6}, {123, 4}, {124, 7}, {125, 8}});
    mouse_ = choices({{131, 1}, {132, 2}, {133, 3}, {134, 4}, {135, 5}, {136, 6}, {137, 7}, {138, 8}});
    macroTypes_ = choices({{168, 0}, {169, 1}, {170, 2}});
    multimedia_ = choices({{145, 1}, {146, 2}, {147, 3}, {148, 4}, {149, 5}, {150, 6}, {151, 7}});
    macShortcuts_ = choices({{156, 1}, {157, 2}, {158, 3}, {159, 4}, {160, 5}, {161, 6}});
}

const std::vector<Choice>& CustomKeyDialog::functionList() const {
    switch (key_functiontypevalue_) {
        case 4: return macros_;
        case 6: return mouse_;
        case 7: return multimedia_;
        case 8: return macShortcuts_;
        default: return types_;
    }
}

void CustomKeyDialog::viewDidAppear() {
    typeIndex_ = 0;
    key_functiontypevalue_ = 1;
    std::vector<MacroInfo> stored;
    s_.core.db()->queryAllMacroData(stored);
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
        case 1:
        case 2:
            showFunctionList_ = false;
            showCombination_ = false;
            break;
        case 3:
            showFunctionList_ = false;
            showCombination_ = true;
            break;
        case 4:
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
        case 4: case 6: case 7: case 8: {
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
    if (lastKeyOperate == "down") fillBindInput();
}

void CustomKeyDialog::fillBindInput() {
    std::vector<std::int64_t> keys = pressedFlags;
    if (!pressedNormalKey.empty()) keys.push_back(pressedNormalKey.front());
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
    ProfileKey record;  // keyId 0 and layer 0, whatever layer the page shows
    record.profId = currentProfile_;
    record.keyValue = customKeyValue_;
    const auto& list = functionList();
    const std::string listText =
        functionIndex_ >= 0 && functionIndex_ < static_cast<int>(list.size()) ? list[static_cast<std::size_t>(functionIndex_)].text : "";
    switch (key_functiontypevalue_) {
        case 1:
            record.macroType = kMacroTypeDefault;
            break;
        case 3:
            if (currentModifyKeysStr_.empty()) return;
            record.macroType = kMacroTypeKey;
            // Only the first two captured keys count: the second is the key, the first its
            // modifier.
            if (currentModifyKeys_.size() == 1) {
                record.macroValue = currentModifyKeys_[0];
            } else {
                record.macroValue = currentModifyKeys_[1];
                record.macro2Value = currentModifyKeys_[0];
            }
            record.macroDesc = keyfuncEdit_;
            break;
        case 4:
            record.macroType = kMacroTypeMacro;
            record.macroValue = key_functionvalue_;
            record.macroDesc = listText;
            if (macroPlayTypeIndex_ >= 0) {
                record.macro2Value = macroPlayTypeIndex_;
                if (macroPlayTypeIndex_ == 1) record.macro3Value = std::clamp<std::int64_t>(leadingInteger(playCountText_), 1, 255);
            }
            break;
        case 6: case 7: case 8:
            record.macroType = key_functiontypevalue_;
            record.macroValue = key_functionvalue_;
            record.macroDesc = listText;
            break;
        default:
            return;
    }
    s_.core.db()->addKeyProfile(record);
    s_.transactions.SendKeyMacroData(currentProfile_, 0);
}

}  // namespace qx9
