#include "session/key_page.h"

#include "common/fatal.h"
#include "i18n/language.h"
#include "i18n/text_ids.h"
#include "layout/key_maps.h"
#include "ops/key_assignment.h"
#include "ops/settings.h"
#include "session/keyboard_session.h"

namespace qx9 {

KeyPage::KeyPage(SessionCore& core, const SettingsPage& settings)
    : core_(core), settings_(settings),
      keys_(buildKeyboardLayout()),
      marks_(keys_.size(), false),
      palette_(buildCustomKeyFuncLayout()),
      paletteSelect_(palette_.size(), false) {
    resetKeyMacro();
}

void KeyPage::setKeyMacro(std::int64_t layoutIndex, const std::string& text, bool macroState) {
    if (layoutIndex < 0 || layoutIndex >= static_cast<std::int64_t>(keys_.size())) {
        fatalError("key position " + std::to_string(layoutIndex) + " is not on the keyboard");
    }
    keys_[static_cast<std::size_t>(layoutIndex)].keyMacro = text;
    marks_[static_cast<std::size_t>(layoutIndex)] = macroState;
    core_.notify(SessionAspect::KeyView);
}

void KeyPage::resetKeyMacro() {
    for (KeyData& k : keys_) k.keyMacro = G_KB_SuperKeyNameMap.at(k.keyname).full_name;
    marks_.assign(keys_.size(), false);
    core_.notify(SessionAspect::KeyView);
}

std::optional<std::size_t> KeyPage::selectedPaletteKey() const {
    for (std::size_t i = 0; i < paletteSelect_.size(); ++i) {
        if (paletteSelect_[i]) return i;
    }
    return std::nullopt;
}

void KeyPage::clearPaletteSelection() {
    paletteSelect_.assign(palette_.size(), false);
    core_.notify(SessionAspect::Palette);
}

void KeyPage::selectFirstPaletteKey(std::int64_t keyCode) {
    for (std::size_t i = 0; i < palette_.size(); ++i) {
        if (palette_[i].key_code == keyCode) {
            paletteSelect_[i] = true;
            break;
        }
    }
    core_.notify(SessionAspect::Palette);
}

void KeyPage::keyboardKeyAction(const std::string& keyName) {
    if (keyName.empty()) return;
    SessionCore& core = core_;
    core.currentKeyValue = 0;
    core.currentKeyValue = G_KB_SuperKeyNameMap.at(keyName).key_code;
    clearPaletteSelection();
    if (DeviceSQLite* db = core.db()) {
        // The palette shows which key this key now sends.
        ProfileKey record;
        if (db->queryKeyProfile(core.currentProfile, core.currentFnLayer, core.currentKeyValue, record) &&
            record.macroType == kMacroTypeKey && record.macroValue != 0) {
            selectFirstPaletteKey(record.macroValue);
        }
    }
    if (core.events) core.events->showKeyMenu();
}

void KeyPage::MenuItemMouseUpAction(int menuid) {
    SessionCore& core = core_;
    switch (menuid) {
        case kMenuDefault: {
            ProfileKey k = ops::defaultFunction();
            addCustomKey(k);
            break;
        }
        case kMenuDisable: {
            ProfileKey k = ops::disabledFunction();
            addCustomKey(k);
            break;
        }
        case kMenuCustom:
            if (!core.db()) {
                core.warnNotStored();
                break;
            }
            customKeyValue = core.currentKeyValue;
            customKeyProfile = core.currentProfile;
            customKeyDesc = G_KB_SuperKeyCodeMap.at(static_cast<int>(core.currentKeyValue)).full_name;
            if (core.events) core.events->showCustomKeyDialog();
            break;
        default: break;
    }
}

void KeyPage::customKeyFuncAction(std::int64_t keyCode) {
    if (core_.currentKeyValue < 1) {
        core_.warn(localizedText(textid::kCustomKey), localizedText(textid::kSelectKeyFirst));
        return;
    }
    if (std::optional<ProfileKey> k = ops::paletteFunction(keyCode)) addCustomKey(*k);
}

void KeyPage::addCustomKey(ProfileKey& keydata) {
    SessionCore& core = core_;
    const std::optional<ops::Target> target = core.target();
    if (!target) return;
    const ops::Outcome outcome =
        ops::assignKey(*target, core.currentProfile, core.currentFnLayer, core.currentKeyValue, keydata);
    const KeyCodeEntry& entry = G_KB_SuperKeyCodeMap.at(static_cast<int>(core.currentKeyValue));
    clearPaletteSelection();
    if (outcome && keydata.macroValue != 0) {
        setKeyMacro(entry.layout_index, keydata.macroDesc, true);
        selectFirstPaletteKey(keydata.macroValue);
    } else {
        // Nothing stored, or the key's own function: the key shows its own name.
        setKeyMacro(entry.layout_index, entry.full_name, false);
    }
    core.report(outcome);
}

void KeyPage::showKeyMarks() {
    SessionCore& core = core_;
    clearPaletteSelection();
    resetKeyMacro();
    DeviceSQLite* db = core.db();
    if (!db) return;
    std::vector<ProfileKey> records;
    db->queryKeysProfile(core.currentProfile, core.currentFnLayer, records);
    for (const ProfileKey& r : records) {
        if (const KeyCodeEntry* e = G_KB_SuperKeyCodeMap.find(static_cast<int>(r.keyValue))) setKeyMacro(e->layout_index, r.macroDesc, true);
    }
}

void KeyPage::loadKeyMacroData() {
    showKeyMarks();
    if (const std::optional<ops::Target> target = core_.target()) {
        core_.report(ops::sendKeyMap(*target, core_.currentProfile, 0));
    }
}

void KeyPage::selectButtonAction(std::int64_t value) {
    // Nothing is reloaded: the marks keep showing the previous layer until the profile's keys
    // are loaded again, while new assignments already go to the chosen layer.
    core_.currentFnLayer = value != 0 ? 1 : 0;
    core_.notify(SessionAspect::FnLayer);
}

void KeyPage::textButtonAction(std::int64_t value) {
    fnKeyActive_ = value != 0;
    core_.notify(SessionAspect::FnMode);
    if (const std::optional<ops::Target> target = core_.target()) {
        core_.report(ops::setFnMode(*target, fnKeyActive_, settings_.switches()));
    }
}

void KeyPage::customKeywindowCloseDid() { loadKeyMacroData(); }

void KeyPage::loadFnKeyMode() {
    DeviceSQLite* db = core_.db();
    fnKeyActive_ = db && db->getConfigData(ops::kSettingsProfile, ops::kFnFunction) == "1";
    core_.notify(SessionAspect::FnMode);
}

}  // namespace qx9
