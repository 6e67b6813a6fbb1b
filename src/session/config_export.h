#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "store/records.h"

namespace qx9 {

class KeyboardSession;

// The export document: one JSON object
//   {"format": "halvorn-qx9-configuration", "version": 1,
//    "profiles", "configurationValues", "keyAssignments", "lighting",
//    "userLights", "userLightColours", "macros", "macroEvents": [rows…]}
// with every row of the application's tables, each with its own id and the id it belongs to,
// in id order. Rows whose owner is gone (the keys of a deleted profile, the colours of a
// deleted set) are kept too: a later profile or set that receives the same id finds them, so
// they are part of what the database does.
inline constexpr const char* kConfigurationFormat = "halvorn-qx9-configuration";
inline constexpr std::int64_t kConfigurationVersion = 1;

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

// Everything the application keeps in its database (t_keyrgb and t_triggerkey hold nothing of
// it and are not part of it).
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

// Reads every row of the database file (one read transaction of a connection of its own).
std::optional<Configuration> readConfiguration(const std::filesystem::path& databaseFile, std::string& error);
// Replaces the contents of the database file's tables with the configuration, in one
// transaction: afterwards the file holds either all of it or, on any error, what it held before.
bool replaceConfiguration(const std::filesystem::path& databaseFile, const Configuration& configuration,
                          std::string& error);

// The document of a configuration, and back. Parsing checks the whole document — its format
// and version, every field's presence, type and range, unique ids, profile 1 — and gives
// nothing but an error message when anything is wrong.
std::string configurationDocument(const Configuration& configuration);
std::optional<Configuration> parseConfigurationDocument(std::string_view text, std::string& error);

// The session's database as a document.
std::optional<std::string> exportConfiguration(KeyboardSession& session, std::string& error);
// Checks the document completely, then replaces the database contents with it and loads the
// session and sends to the keyboard as a first connection does. On any error nothing changes.
bool importConfiguration(KeyboardSession& session, std::string_view document, std::string& error);

}  // namespace qx9
