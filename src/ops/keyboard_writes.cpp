#include "ops/keyboard_writes.h"

#include "ops/settings.h"
#include "protocol/key_mapping.h"
#include "protocol/light_mode.h"
#include "protocol/macro_download.h"
#include "protocol/user_light.h"

namespace qx9::ops {

void sendKeyMap(const Target& target, std::int64_t profile, std::int64_t layer) {
    protocol::KeyMappingInput input;
    target.db.queryKeysProfile(profile, layer, input.keys);
    target.db.queryAllMacroData(input.macros);
    protocol::SendKeyMacroData(target.keyboard, layer, input);
}

void sendMacros(const Target& target, std::int64_t listedMacroCount) {
    protocol::MacroDownloadInput input;
    input.storedEventCount = target.db.getRecordCount();
    input.listedMacroCount = listedMacroCount;
    std::vector<MacroInfo> macros;
    target.db.queryAllMacroData(macros);
    for (const MacroInfo& m : macros) {
        protocol::MacroWithEvents entry{m, {}};
        target.db.queryMacroRecord(m.macroId, entry.events);
        input.macros.push_back(std::move(entry));
    }
    protocol::SaveMacroToKeyboard(target.keyboard, &input);
}

void sendMacros(const Target& target) { sendMacros(target, target.db.countMacros()); }

void sendLightMode(const Target& target, std::int64_t profile, std::int64_t mode) {
    std::optional<LightRecord> record;
    lightData data;
    if (target.db.queryLightInfo(profile, mode, data)) record = data.data;
    protocol::SendLightModeData(target.keyboard, mode, record);
}

void sendUserLightMode(const Target& target) { protocol::SendUserLightModeData(target.keyboard); }

void sendUserLightColours(const Target& target, std::int64_t setId) {
    std::vector<UserLightLEDData> colours;
    target.db.getUserLightLEDData(setId, colours);
    protocol::SendUserLightLedData(target.keyboard, colours);
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

void sendWholeConfiguration(const Target& target) {
    std::vector<UserLightData> sets;
    target.db.getUserLightData(kSettingsProfile, sets);
    if (!sets.empty()) sendUserLightColours(target, sets.front().userlight_id);
    sendSystemFunctions(target, storedSwitches(target.db));
    sendKeyMap(target, kSettingsProfile, 0);
}

}  // namespace qx9::ops
