#include "session/settings_page.h"

#include "common/fatal.h"
#include "i18n/language.h"
#include "session/keyboard_session.h"

namespace qx9 {

namespace {

// Block boxes and their stored keys, in tag order 1–3.
constexpr const char* kBlockKeys[4] = {"gamemode", "disable_alttab", "disable_altf4", "disable_win"};

ConfirmationTexts confirmation(int message, int informative) {
    // The button titles are fixed per language (their own lookup never matches).
    const bool chinese = curLanguage == kLanguageSimplifiedChinese || curLanguage == kLanguageTraditionalChinese;
    return {localizedText(message), localizedText(informative), chinese ? "否" : "NO", chinese ? "是" : "YES"};
}

}  // namespace

protocol::SystemSwitches SettingsPage::switches() const {
    return {boxes_[kGameMode], boxes_[kAltTab], boxes_[kAltF4], boxes_[kLockWin]};
}

void SettingsPage::applyStoredLanguage() {
    DeviceSQLite* db = s_.core.db();
    const std::string stored = db ? db->getConfigData(1, "language") : std::string();
    if (stored == "2052") {
        languageRow_ = 1;
        curLanguage = kLanguageSimplifiedChinese;
    } else if (stored == "1033") {
        languageRow_ = 0;
        curLanguage = kLanguageEnglish;
    } else if (stored == "1028") {
        languageRow_ = 2;
        curLanguage = kLanguageTraditionalChinese;
    } else if (stored.empty()) {
        // A fresh value: the English row shows while the texts are Simplified Chinese.
        languageRow_ = 0;
        curLanguage = kLanguageSimplifiedChinese;
        if (db) db->updateConfigData(1, "language", "2052");
    }
    LanguageSwicth();
}

void SettingsPage::comboBoxSelectionDidChange(int row) {
    if (!s_.core.initFinish) return;
    if (row < 0 || row >= static_cast<int>(languages_.size())) return;
    languageRow_ = row;
    curLanguage = languages_[static_cast<std::size_t>(row)].mode;
    if (DeviceSQLite* db = s_.core.db()) db->updateConfigData(1, "language", std::to_string(curLanguage));
    LanguageSwicth();
}

void SettingsPage::LanguageSwicth() {
    s_.core.notify(SessionAspect::Language);
    s_.profiles.loadKeyProfile();
    s_.lighting.rebuildModeList();
}

void SettingsPage::setBlocksFromStore() {
    DeviceSQLite* db = s_.core.db();
    for (int tag = kAltTab; tag <= kLockWin; ++tag) boxes_[tag] = db && db->getConfigData(1, kBlockKeys[tag]) == "1";
}

void SettingsPage::send() {
    s_.transactions.SendSystemFunctionData(s_.core.currentProfile, switches());
}

void SettingsPage::loadGameModeData() {
    DeviceSQLite* db = s_.core.db();
    if (!db || db->getConfigData(1, "gamemode") != "1") {
        // Game mode off: every box shows off; the stored block values stay as they are.
        for (bool& b : boxes_) b = false;
    } else {
        boxes_[kGameMode] = true;
        setBlocksFromStore();
    }
    s_.core.notify(SessionAspect::Settings);
    send();
}

void SettingsPage::button_action_gamemode(int tag, bool on) {
    if (tag >= 0 && tag < 4) boxes_[tag] = on;
    configGameMode(tag);
}

void SettingsPage::configGameMode(int type) {
    DeviceSQLite* db = s_.core.db();
    switch (type) {
        case kGameMode:
            if (boxes_[kGameMode]) {
                if (db) {
                    setBlocksFromStore();
                    db->updateConfigData(1, "gamemode", "1");
                }
            } else {
                for (int tag = kAltTab; tag <= kLockWin; ++tag) boxes_[tag] = false;
                if (db) db->updateConfigData(1, "gamemode", "0");
            }
            break;
        case kAltTab:
        case kAltF4:
        case kLockWin:
            if (db) db->updateConfigData(1, kBlockKeys[type], boxes_[type] ? "1" : "0");
            break;
        default: break;
    }
    s_.core.notify(SessionAspect::Settings);
    send();
}

ConfirmationTexts SettingsPage::resetKeysTexts() { return confirmation(610, 620); }
ConfirmationTexts SettingsPage::resetAllTexts() { return confirmation(611, 621); }

void SettingsPage::configResetKeys() {
    if (DeviceSQLite* db = s_.core.db()) db->resetProfile(s_.core.currentProfile);
    s_.profiles.selectProfile(s_.core.currentProfile);
}

void SettingsPage::configResetAllDatas() {
    SessionCore& core = s_.core;
    core.initFinish = false;
    core.sendToKeyboard = false;
    if (DeviceSQLite* db = core.db()) db->dropTable();
    if (core.device()) {
        s_.device.initSQLite();
    } else if (!core.worksWithoutKeyboard) {
        fatalError("reset of all data without a keyboard");
    } else {
        // qx9ctl without a keyboard: the database alone is opened again.
        core.deviceDB.reset();
        core.deviceDB = core.config.openDatabase ? core.config.openDatabase(core.deviceDBfile)
                                                 : std::make_unique<DeviceSQLite>(core.deviceDBfile);
    }
    s_.device.getAllProfile();
    core.currentKBProfile = core.currentProfile = 1;
    s_.userLights.resetKeyColor();
    s_.profiles.selectProfile(1);
    s_.macros.initMacroList();
    core.initFinish = true;
    core.sendToKeyboard = true;
}

}  // namespace qx9
