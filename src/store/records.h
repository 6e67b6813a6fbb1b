#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace qx9 {

// Function types of a key assignment (`ProfileKey::macroType`).
enum MacroType : std::int64_t {
    kMacroTypeDefault = 1,
    kMacroTypeDisabled = 2,
    kMacroTypeKey = 3,
    kMacroTypeMacro = 4,
    kMacroTypeMouse = 6,
    kMacroTypeMultimedia = 7,
    kMacroTypeMacShortcut = 8,
    kMacroTypeCombination = 14,
};

// One profile as the profile list hands it out (row of t_profile).
struct ProfileData {
    std::int64_t profId = 0;
    std::string name;
};

// One stored key assignment (row of t_keyprofile).
struct ProfileKey {
    std::int64_t keyId = 0;
    std::int64_t fnlayerId = 0;
    std::int64_t profId = 0;
    std::int64_t keyValue = 0;
    std::int64_t macroType = 0;
    std::int64_t macroValue = 0;
    std::int64_t macro2Value = 0;
    std::int64_t macro3Value = 0;
    std::string macroDesc;
};

// One macro header (row of t_macro_data).
struct MacroInfo {
    std::int64_t macroId = 0;
    std::int64_t playTimes = 0;
    std::int64_t delayType = 0;
    std::int64_t delayTime = 0;
    std::string macroName;
};

// Event types of a macro (`RecordInfo::recordType`).
enum RecordType : std::int64_t {
    kRecordDelay = 1,
    kRecordKeyDown = 2,
    kRecordKeyUp = 3,
    kRecordMouseDown = 4,
    kRecordMouseUp = 5,
};

// One macro event (row of t_macrorecord).
struct RecordInfo {
    std::int64_t recordId = 0;
    std::int64_t macroId = 0;
    std::int64_t recordType = 0;
    std::int64_t recordIndex = 0;
    std::int64_t recordValue = 0;
    std::string recordDesc;
};

// The 12-byte light record: 0 effect, 1–3 colour, 8 random colour, 9 brightness, 10 speed,
// 11 direction.
using LightRecord = std::array<std::uint8_t, 12>;

// One row of t_lightdata as the lighting store hands it out.
struct lightData {
    std::int64_t lightId = 0;
    std::int64_t profId = 0;
    std::string name;
    std::int64_t mode = 0;
    std::int64_t status = 0;
    LightRecord data{};
};

// One user-light set (row of t_userlight_data).
struct UserLightData {
    std::int64_t userlight_id = 0;
    std::int64_t profile_id = 0;
    std::string userlight_name;
    std::int64_t speed = 0;
    std::int64_t brightness = 0;
};

// One key colour of a user-light set (row of t_userlight_leddata); 0xRRGGBB.
struct UserLightLEDData {
    std::int64_t led_id = 0;
    std::int64_t userlight_id = 0;
    std::int64_t key_value = 0;
    std::int64_t key_rgbvalue = 0;
};

}  // namespace qx9
