#include "session/transactions.h"

#include "protocol/key_mapping.h"
#include "protocol/light_mode.h"
#include "protocol/macro_download.h"
#include "protocol/user_light.h"

namespace qx9 {

void Transactions::SendKeyMacroData(std::int64_t profile, std::int64_t fnlayer) {
    protocol::KeyMappingInput input;
    if (DeviceSQLite* db = core_.db()) {
        db->queryKeysProfile(profile, fnlayer, input.keys);
        db->queryAllMacroData(input.macros);
    }
    protocol::SendKeyMacroData(core_.comm(), fnlayer, input);
}

void Transactions::SaveMacroToKeyboard(std::int64_t listedMacroCount) {
    DeviceSQLite* db = core_.db();
    if (!db) {
        protocol::SaveMacroToKeyboard(core_.comm(), nullptr);  // a programming error: stops
        return;
    }
    protocol::MacroDownloadInput input;
    input.storedEventCount = db->getRecordCount();
    input.listedMacroCount = listedMacroCount;
    std::vector<MacroInfo> macros;
    db->queryAllMacroData(macros);
    for (const MacroInfo& m : macros) {
        protocol::MacroWithEvents entry{m, {}};
        db->queryMacroRecord(m.macroId, entry.events);
        input.macros.push_back(std::move(entry));
    }
    protocol::SaveMacroToKeyboard(core_.comm(), &input);
}

void Transactions::SendLightModeData(std::int64_t /*profile*/) {
    // The effect and its record are those of the controller's current profile and mode.
    std::optional<LightRecord> record;
    if (DeviceSQLite* db = core_.db()) {
        lightData data;
        if (db->queryLightInfo(core_.currentProfile, core_.currentLightMode, data)) record = data.data;
    }
    protocol::SendLightModeData(core_.comm(), core_.currentLightMode, record);
}

void Transactions::SendUserLightModeData(std::int64_t /*profile*/) {
    protocol::SendUserLightModeData(core_.comm());
}

void Transactions::SendUserLightLedData(std::int64_t lightId) {
    std::vector<UserLightLEDData> colours;
    if (DeviceSQLite* db = core_.db()) db->getUserLightLEDData(lightId, colours);
    protocol::SendUserLightLedData(core_.comm(), colours);
}

void Transactions::SendSystemFunctionData(std::int64_t /*profile*/,
                                          const protocol::SystemSwitches& switches) {
    // Fn mode and sleep time are read from profile 1: the keyboard has one set of system
    // functions, whatever profile is current.
    std::optional<protocol::SystemStoredValues> stored;
    if (DeviceSQLite* db = core_.db()) {
        stored = protocol::SystemStoredValues{db->getConfigData(1, "fnfunction"),
                                              db->getConfigData(1, "sleeplight")};
    }
    protocol::SendSystemFunctionData(core_.comm(), switches, stored ? &*stored : nullptr);
}

}  // namespace qx9
