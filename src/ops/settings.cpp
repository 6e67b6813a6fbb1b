#include "ops/settings.h"

#include <optional>

#include "i18n/language.h"
#include "ops/configuration.h"
#include "ops/history.h"
#include "ops/key_assignment.h"
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

namespace {

// The keys a block switch keeps from the computer, as the settings page names them.
const char* blockName(Block block) {
    switch (block) {
        case Block::kAltTab: return "Alt+Tab";
        case Block::kAltF4: return "Alt+F4";
        case Block::kWin: return "Win";
    }
    return "Win";
}

}  // namespace

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
        return Outcome::refused(Reason::kNoLanguage, {std::to_string(language)});
    }
    DeviceSQLite::Transaction transaction = target.db.beginStep();
    if (!storeSetting(target.db, kLanguage, std::to_string(language)) || !commitStep(transaction, {"language", {}}, {})) {
        return Outcome::notStored("the database did not take the language");
    }
    return Outcome::done();
}

namespace {

// Stores one setting of profile 1, then sends the system functions with `switches`.
Outcome storeAndSend(const Target& target, const char* key, const std::string& value,
                     const protocol::SystemSwitches& switches, const StepName& step) {
    {
        DeviceSQLite::Transaction transaction = target.db.beginStep();
        if (!target.db.updateConfigData(kSettingsProfile, key, value) ||
            !commitStep(transaction, step, {SendSystemFunctionData(switches)})) {
            return Outcome::notStored(std::string("the database did not take ") + key);
        }
    }
    return sendSystemFunctions(target, switches);
}

}  // namespace

Outcome setFnMode(const Target& target, bool fnKey, const protocol::SystemSwitches& shown) {
    return storeAndSend(target, kFnFunction, fnKey ? "1" : "0", shown, {fnKey ? "fn-mode-fn" : "fn-mode-default", {}});
}

Outcome setGameMode(const Target& target, bool on, protocol::SystemSwitches& shown) {
    {
        DeviceSQLite::Transaction transaction = target.db.beginStep();
        shown = on ? gameModeSwitches(target.db) : protocol::SystemSwitches{};  // off: the blocks stay stored
        if (!target.db.updateConfigData(kSettingsProfile, kGameMode, on ? "1" : "0") ||
            !commitStep(transaction, {on ? "game-mode-on" : "game-mode-off", {}}, {SendSystemFunctionData(shown)})) {
            return Outcome::notStored(std::string("the database did not take ") + kGameMode);
        }
    }
    return sendSystemFunctions(target, shown);
}

Outcome setBlock(const Target& target, Block block, bool on, protocol::SystemSwitches& shown) {
    switch (block) {
        case Block::kAltTab: shown.blockAltTab = on; break;
        case Block::kAltF4: shown.blockAltF4 = on; break;
        case Block::kWin: shown.lockWin = on; break;
    }
    return storeAndSend(target, blockKey(block), on ? "1" : "0", shown, {on ? "block-on" : "block-off", {blockName(block)}});
}

Outcome setSleepTime(const Target& target, std::int64_t value, const protocol::SystemSwitches& shown) {
    if (value < 0 || value >= kSleepTimeCount) {
        return Outcome::refused(Reason::kSleepTimeRange, {std::to_string(kSleepTimeCount - 1)});
    }
    return storeAndSend(target, kSleepLight, std::to_string(value), shown, {"sleep-time", {std::to_string(value)}});
}

Outcome resetKeys(const Target& target, std::int64_t profile, std::int64_t& lightMode) {
    {
        DeviceSQLite::Transaction transaction = target.db.beginStep();
        target.db.resetProfile(profile);
        target.db.writeLightProfile(profile);
        if (!storeKeyboardProfile(target.db, profile) ||
            !commitStep(transaction, {"reset-keys", {std::to_string(profile)}}, {SendKeyMacroData(profile, 0)})) {
            return Outcome::notStored("the database did not take the reset");
        }
        lightMode = target.db.getLightModeSelectIndex(profile);
    }
    // The profile is selected again: its key map goes to the keyboard.
    return send(target, {SendKeyMacroData(profile, 0)});
}

Outcome resetAll(const Target& target) {
    std::vector<BlockRequest> blocks;
    {
        DeviceSQLite::Transaction transaction = target.db.beginStep();
        target.db.clearTables();  // row by row first, so that the step holds what was there
        target.db.dropTable();
        target.db.createTable();
        target.db.writeLightProfile(kSettingsProfile);
        blocks = wholeConfiguration(target.db);
        if (!commitStep(transaction, {"reset-all", {}}, blocks)) return Outcome::notStored("the database did not take the reset");
    }
    return send(target, blocks);
}

Outcome sendSystemFunctions(const Target& target, const protocol::SystemSwitches& switches) {
    return send(target, {SendSystemFunctionData(switches)});
}

int storedSleepTime(const DeviceSQLite& db) {
    const std::string stored = db.getConfigData(kSettingsProfile, kSleepLight);
    for (int choice = 0; choice < kSleepTimeCount; ++choice) {
        if (stored == std::to_string(choice)) return choice;
    }
    return -1;
}


}  // namespace qx9::ops
