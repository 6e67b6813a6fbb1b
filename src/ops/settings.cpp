#include "ops/settings.h"

#include <optional>

#include "i18n/language.h"
#include "ops/configuration.h"
#include "ops/profiles.h"

namespace qx9::ops {

const char* blockKey(Block block) {
    switch (block) {
        case Block::kAltTab: return kBlockAltTab;
        case Block::kAltF4: return kBlockAltF4;
        case Block::kWin: return kBlockWin;
    }
    return kBlockWin;
}

bool storeSetting(DeviceSQLite& db, const char* key, const std::string& value) {
    if (db.hasConfigData(kSettingsProfile, key)) return db.updateConfigData(kSettingsProfile, key, value);
    return db.writeConfigData(kSettingsProfile, key, value);
}

namespace {

// The stored language as start-up applies it; none for a value it ignores.
std::optional<LanguageChoice> storedLanguage(const DeviceSQLite& db) {
    const std::string stored = db.getConfigData(kSettingsProfile, kLanguage);
    if (stored == "2052") return LanguageChoice{kLanguageSimplifiedChinese, 1};
    if (stored == "1033") return LanguageChoice{kLanguageEnglish, 0};
    if (stored == "1028") return LanguageChoice{kLanguageTraditionalChinese, 2};
    // A fresh value: the English row shows while the texts are Simplified Chinese.
    if (stored.empty()) return LanguageChoice{kLanguageSimplifiedChinese, 0};
    return std::nullopt;
}

}  // namespace

bool applyStoredLanguage(DeviceSQLite& db, LanguageChoice& choice) {
    const std::optional<LanguageChoice> stored = storedLanguage(db);
    if (!stored) return false;
    if (db.getConfigData(kSettingsProfile, kLanguage).empty()) {
        storeSetting(db, kLanguage, std::to_string(kLanguageSimplifiedChinese));
    }
    choice = *stored;
    return true;
}

int languageInUse(const DeviceSQLite& db) {
    const std::optional<LanguageChoice> stored = storedLanguage(db);
    return stored ? stored->language : kLanguageSimplifiedChinese;
}

Outcome setLanguage(const Target& target, int language) {
    if (language != kLanguageEnglish && language != kLanguageSimplifiedChinese &&
        language != kLanguageTraditionalChinese) {
        return Outcome::refused("no language " + std::to_string(language));
    }
    storeSetting(target.db, kLanguage, std::to_string(language));
    return Outcome::done();
}

Outcome setFnMode(const Target& target, bool fnKey, const protocol::SystemSwitches& shown) {
    target.db.updateConfigData(kSettingsProfile, kFnFunction, fnKey ? "1" : "0");
    sendSystemFunctions(target, shown);
    return Outcome::done();
}

protocol::SystemSwitches setGameMode(const Target& target, bool on) {
    protocol::SystemSwitches sent;  // off: every switch off; the stored blocks stay as they are
    if (on) sent = gameModeSwitches(target.db);  // the blocks come back as stored
    target.db.updateConfigData(kSettingsProfile, kGameMode, on ? "1" : "0");
    sendSystemFunctions(target, sent);
    return sent;
}

protocol::SystemSwitches setBlock(const Target& target, Block block, bool on,
                                  protocol::SystemSwitches shown) {
    switch (block) {
        case Block::kAltTab: shown.blockAltTab = on; break;
        case Block::kAltF4: shown.blockAltF4 = on; break;
        case Block::kWin: shown.lockWin = on; break;
    }
    target.db.updateConfigData(kSettingsProfile, blockKey(block), on ? "1" : "0");
    sendSystemFunctions(target, shown);
    return shown;
}

Outcome setSleepTime(const Target& target, std::int64_t value, const protocol::SystemSwitches& shown) {
    if (value < 0 || value >= kSleepTimeCount) {
        return Outcome::refused("the sleep time is 0-" + std::to_string(kSleepTimeCount - 1));
    }
    target.db.updateConfigData(kSettingsProfile, kSleepLight, std::to_string(value));
    sendSystemFunctions(target, shown);
    return Outcome::done();
}

Outcome resetKeys(const Target& target, std::int64_t profile, std::int64_t& lightMode) {
    target.db.resetProfile(profile);
    return selectProfile(target, profile, lightMode);
}

Outcome resetAll(const Target& target) {
    target.db.dropTable();
    target.db.createTable();
    target.db.writeLightProfile(kSettingsProfile);
    sendWholeConfiguration(target);
    return Outcome::done();
}

void sendSystemFunctions(const Target& target, const protocol::SystemSwitches& switches) {
    // One set of system functions for the keyboard: Fn mode and sleep time live under profile 1.
    const protocol::SystemStoredValues stored{target.db.getConfigData(kSettingsProfile, kFnFunction),
                                              target.db.getConfigData(kSettingsProfile, kSleepLight)};
    protocol::SendSystemFunctionData(target.keyboard, switches, &stored);
}
protocol::SystemSwitches storedSwitches(const DeviceSQLite& db) {
    if (db.getConfigData(kSettingsProfile, kGameMode) != "1") return {};
    return gameModeSwitches(db);
}
protocol::SystemSwitches gameModeSwitches(const DeviceSQLite& db) {
    return {true, db.getConfigData(kSettingsProfile, kBlockAltTab) == "1",
            db.getConfigData(kSettingsProfile, kBlockAltF4) == "1",
            db.getConfigData(kSettingsProfile, kBlockWin) == "1"};
}

}  // namespace qx9::ops
