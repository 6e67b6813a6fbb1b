#include "session/settings_page.h"

#include "common/fatal.h"
#include "i18n/language.h"
#include "i18n/text_ids.h"
#include "ops/settings.h"
#include "session/keyboard_session.h"

namespace qx9 {

namespace {

ConfirmationTexts confirmation(int message, int informative) {
    // The button titles are fixed per language (their own lookup never matches).
    const bool chinese = curLanguage == kLanguageSimplifiedChinese || curLanguage == kLanguageTraditionalChinese;
    return {localizedText(message), localizedText(informative), chinese ? "否" : "NO", chinese ? "是" : "YES"};
}

ops::Block blockOf(int tag) {
    return tag == SettingsPage::kAltTab ? ops::Block::kAltTab : tag == SettingsPage::kAltF4 ? ops::Block::kAltF4 : ops::Block::kWin;
}

}  // namespace

ops::GameModeSwitches SettingsPage::switches() const {
    return {boxes_[kGameMode], boxes_[kAltTab], boxes_[kAltF4], boxes_[kLockWin]};
}

void SettingsPage::readStoredLanguage() {
    if (DeviceSQLite* db = core_.db()) {
        ops::LanguageChoice choice;
        if (ops::applyStoredLanguage(*db, choice)) {
            languageRow_ = choice.row;
            curLanguage = choice.language;
        }
    }
    core_.notify(SessionAspect::Language);
}

void SettingsPage::applyStoredLanguage() {
    readStoredLanguage();
    LanguageSwicth();
}

void SettingsPage::comboBoxSelectionDidChange(int row) {
    if (!core_.initFinish) return;
    if (row < 0 || row >= static_cast<int>(languages_.size())) return;
    languageRow_ = row;
    curLanguage = languages_[static_cast<std::size_t>(row)].mode;
    if (const std::optional<ops::Target> target = core_.target()) core_.report(ops::setLanguage(*target, curLanguage));
    LanguageSwicth();
}

void SettingsPage::LanguageSwicth() {
    core_.notify(SessionAspect::Language);
    profiles_.loadKeyProfile();
    lighting_.rebuildModeList();
}

std::array<std::string, 4> SettingsPage::storedValues() const {
    const DeviceSQLite* db = core_.db();
    if (!db) return {};
    return {db->getConfigData(ops::kSettingsProfile, ops::kGameMode), db->getConfigData(ops::kSettingsProfile, ops::kBlockAltTab),
            db->getConfigData(ops::kSettingsProfile, ops::kBlockAltF4), db->getConfigData(ops::kSettingsProfile, ops::kBlockWin)};
}

void SettingsPage::reloadFromDatabase() {
    DeviceSQLite* db = core_.db();
    if (!db) return;
    if (ops::languageInUse(*db) != curLanguage) applyStoredLanguage();
    if (storedValues() != shownValues_) showSwitches(ops::storedSwitches(*db));
}

void SettingsPage::showSwitches(const ops::GameModeSwitches& shown) {
    shownValues_ = storedValues();
    boxes_[kGameMode] = shown.gameMode;
    boxes_[kAltTab] = shown.blockAltTab;
    boxes_[kAltF4] = shown.blockAltF4;
    boxes_[kLockWin] = shown.lockWin;
    core_.notify(SessionAspect::Settings);
}

void SettingsPage::loadGameModeData() {
    // Game mode off: every box shows off; the stored block values stay as they are.
    if (const DeviceSQLite* db = core_.db()) showSwitches(ops::storedSwitches(*db));
}

void SettingsPage::button_action_gamemode(int tag, bool on) {
    if (tag >= 0 && tag < 4) boxes_[tag] = on;
    configGameMode(tag);
}

void SettingsPage::configGameMode(int type) {
    const std::optional<ops::Target> target = core_.target();
    if (!target) return;
    switch (type) {
        case kGameMode: {
            ops::GameModeSwitches shown;
            core_.report(ops::setGameMode(*target, boxes_[kGameMode], shown));
            showSwitches(shown);
            break;
        }
        case kAltTab:
        case kAltF4:
        case kLockWin: {
            ops::GameModeSwitches shown = switches();
            core_.report(ops::setBlock(*target, blockOf(type), boxes_[type], shown));
            showSwitches(shown);
            break;
        }
        default: core_.report(ops::sendSystemFunctions(*target, switches())); break;
    }
}

ConfirmationTexts SettingsPage::resetKeysTexts() { return confirmation(textid::kResetKeys, textid::kResetKeysQuestion); }
ConfirmationTexts SettingsPage::resetAllTexts() { return confirmation(textid::kResetAll, textid::kResetAllQuestion); }

void SettingsPage::configResetKeys() {
    SessionCore& core = core_;
    const std::optional<ops::Target> target = core.target();
    if (!target) return;
    if (core.report(ops::resetKeys(*target, core.currentProfile, core.currentLightMode))) {
        core.currentLightSelection = core.currentProfile;
    }
    keys_.showKeyMarks();
}

void SettingsPage::configResetAllDatas() {
    SessionCore& core = core_;
    const std::optional<ops::Target> target = core.target();
    // Stored in one transaction, then the whole configuration is sent (stored only without a
    // keyboard: it goes with the next connection).
    if (!target || !core.report(ops::resetAll(*target))) return;
    core.currentProfile = core.currentLightSelection = 1;
    if (core.reload) core.reload();
}

}  // namespace qx9
