#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "store/records.h"

namespace qx9 {

// One row of t_configdata.
struct ConfigValueRow {
    std::int64_t keyId = 0;
    std::int64_t profId = 0;
    std::string key;
    std::string value;
};

// One row of t_lightdata: the mode and its eleven parameter bytes.
struct LightRow {
    std::int64_t lightId = 0;
    std::int64_t profId = 0;
    std::optional<std::string> name;  // "radiName"; the column may be NULL
    std::int64_t mode = 0;
    std::array<std::int64_t, 11> bytes{};
    std::int64_t status = 0;
};

// Everything the application keeps in its database, every row with its id, in id order
// (t_keyrgb and t_triggerkey hold nothing of it and are not part of it). Rows whose owner is
// gone (the keys of a deleted profile, the colours of a deleted set) are part of it too.
struct Configuration {
    std::vector<ProfileData> profiles;
    std::vector<ConfigValueRow> configurationValues;
    std::vector<ProfileKey> keyAssignments;
    std::vector<LightRow> lighting;
    std::vector<UserLightData> userLights;
    std::vector<UserLightLEDData> userLightColours;
    std::vector<MacroInfo> macros;
    std::vector<RecordInfo> macroEvents;
};

}  // namespace qx9
