#include "sender/blocks.h"

#include <algorithm>

#include "common/console.h"
#include "layout/key_maps.h"
#include "protocol/key_mapping.h"
#include "protocol/light_mode.h"
#include "protocol/macro_download.h"
#include "protocol/user_light.h"
#include "store/config_keys.h"
#include "store/config_value.h"

namespace qx9 {

namespace {

constexpr std::int64_t kMaxColour = 0xFFFFFF;
// "Close Backlight".
constexpr std::int64_t kBacklightOffMode = 0;

bool isByte(std::int64_t v) { return v >= 0 && v <= 255; }

bool knownKey(std::int64_t code) {
    return code == static_cast<int>(code) && G_KB_SuperKeyCodeMap.contains(static_cast<int>(code));
}

// Whether a stored assignment can be written into the key-mapping block.
bool encodable(const ProfileKey& k, const std::vector<MacroInfo>& macros) {
    if (!knownKey(k.keyValue)) return false;
    switch (k.macroType) {
        case kMacroTypeKey: return (k.macroValue >= protocol::kFirstApplicationCode || isByte(k.macroValue)) && isByte(k.macro2Value);
        case kMacroTypeCombination: return isByte(k.macroValue) && isByte(k.macro2Value) && isByte(k.macro3Value);
        case kMacroTypeMacro:
            for (std::size_t pos = 0; pos < macros.size(); ++pos) {
                if (macros[pos].macroId == k.macroValue) return pos <= 255 && isByte(k.macro2Value) && isByte(k.macro3Value);
            }
            return true;  // a macro that is gone leaves the record as it is
        default: return true;
    }
}

protocol::Transaction keyMap(const DeviceSQLite& db, std::int64_t profile, std::int64_t layer) {
    protocol::KeyMappingInput input;
    db.queryKeysProfile(profile, layer, input.keys);
    db.queryAllMacroData(input.macros);
    std::erase_if(input.keys, [&](const ProfileKey& k) {
        if (encodable(k, input.macros)) return false;
        console() << "key assignment " << k.keyId << " is damaged and is not sent\n";
        return true;
    });
    return protocol::keyMappingTransaction(layer, input);
}

BuiltBlock macros(const DeviceSQLite& db) {
    protocol::MacroDownloadInput input;
    input.storedEventCount = db.getRecordCount();
    input.listedMacroCount = db.countMacros();
    if (const auto used = protocol::macroMemoryBytes(input.storedEventCount, input.listedMacroCount);
        used > protocol::kMacroCapacity) {
        return {{}, "the macros need " + std::to_string(used) + " bytes of the keyboard's " +
                        std::to_string(protocol::kMacroCapacity) + "-byte macro memory"};
    }
    input.macros = storedMacros(db);
    std::optional<protocol::Transaction> transaction = protocol::macroTransaction(input);
    if (!transaction) {
        return {{}, "the macros with the pauses the keyboard puts between their events overflow its " +
                        std::to_string(protocol::kMacroBlockSize) + "-byte macro block"};
    }
    return {std::move(*transaction), {}};
}

protocol::Transaction lightMode(const DeviceSQLite& db, std::int64_t profile, std::int64_t selection, bool dark) {
    const std::int64_t mode = dark ? kBacklightOffMode : db.getLightModeSelectIndex(selection);
    if (!isByte(mode)) {  // a damaged selection: nothing the keyboard could take
        console() << "backlight mode " << mode << " is damaged and is not sent\n";
        return {};
    }
    std::optional<LightRecord> record;
    lightData data;
    if (db.queryLightInfo(profile, mode, data)) record = data.data;
    return protocol::lightModeTransaction(mode, record);
}

protocol::Transaction userLightColours(const DeviceSQLite& db, std::int64_t set) {
    std::vector<UserLightLEDData> colours;
    db.getUserLightLEDData(set, colours);
    std::erase_if(colours, [](const UserLightLEDData& c) {
        if (knownKey(c.key_value) && c.key_rgbvalue >= 0 && c.key_rgbvalue <= kMaxColour) return false;
        console() << "key colour " << c.led_id << " is damaged and is not sent\n";
        return true;
    });
    return protocol::userLightLedTransaction(colours);
}

protocol::Transaction systemFunctions(const DeviceSQLite& db, const std::optional<protocol::SystemSwitches>& shown) {
    // One set of system functions for the keyboard: Fn mode and sleep time live under profile 1.
    const protocol::SystemStoredValues stored{db.getConfigData(kSettingsProfile, kFnFunction),
                                              db.getConfigData(kSettingsProfile, kSleepLight)};
    return protocol::systemFunctionTransaction(shown ? *shown : storedSwitches(db), stored);
}

}  // namespace

std::vector<protocol::MacroWithEvents> storedMacros(const DeviceSQLite& db) {
    std::vector<protocol::MacroWithEvents> macros;
    std::vector<MacroInfo> stored;
    db.queryAllMacroData(stored);
    for (const MacroInfo& m : stored) {
        protocol::MacroWithEvents entry{m, {}};
        db.queryMacroRecord(m.macroId, entry.events);
        dropDamagedEvents(entry.events);
        macros.push_back(std::move(entry));
    }
    return macros;
}

void dropDamagedEvents(std::vector<RecordInfo>& events) {
    std::erase_if(events, [](const RecordInfo& e) {
        const bool key = e.recordType == kRecordKeyDown || e.recordType == kRecordKeyUp;
        if (!key || isByte(e.recordValue)) return false;
        console() << "macro event " << e.recordId << " is damaged and is not sent\n";
        return true;
    });
}

std::int64_t keyboardProfile(const DeviceSQLite& db) {
    const std::string stored = db.getConfigData(kSettingsProfile, kKeyboardProfile);
    const std::int64_t profile = parseConfigInteger(stored, kKeyboardProfile, 1, INT64_MAX);
    return profile >= 1 ? profile : kSettingsProfile;
}

protocol::SystemSwitches storedSwitches(const DeviceSQLite& db) {
    if (db.getConfigData(kSettingsProfile, kGameMode) != "1") return {};
    return gameModeSwitches(db);
}

protocol::SystemSwitches gameModeSwitches(const DeviceSQLite& db) {
    return {true, db.getConfigData(kSettingsProfile, kBlockAltTab) == "1",
            db.getConfigData(kSettingsProfile, kBlockAltF4) == "1", db.getConfigData(kSettingsProfile, kBlockWin) == "1"};
}

BuiltBlock buildBlock(const DeviceSQLite& db, const BlockRequest& request) {
    switch (request.kind) {
        case BlockRequest::kKeyMap: return {keyMap(db, request.profile, request.layer), {}};
        case BlockRequest::kMacros: return macros(db);
        case BlockRequest::kLightMode: return {lightMode(db, request.profile, request.selection, request.dark), {}};
        case BlockRequest::kUserLightMode: return {protocol::userLightModeTransaction(), {}};
        case BlockRequest::kUserLightColours: return {userLightColours(db, request.set), {}};
        case BlockRequest::kSystemFunctions: return {systemFunctions(db, request.switches), {}};
    }
    return {};
}

}  // namespace qx9
