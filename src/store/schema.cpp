#include "store/schema.h"

#include <array>

namespace qx9::schema {

namespace {

constexpr const char* kKey = "INTEGER PRIMARY KEY NOT NULL";
constexpr const char* kInt = "INTEGER NOT NULL";
constexpr const char* kText = "TEXT NOT NULL";
constexpr const char* kName = "TEXT";  // the three `name` columns may hold NULL

constexpr Column kProfile[] = {{"profId", kKey}, {"name", kName}};

constexpr Column kConfigData[] = {
    {"keyId", kKey}, {"key", kText}, {"profId", kInt}, {"value", kText}};

constexpr Column kLightData[] = {
    {"lightId", kKey}, {"profId", kInt}, {"name", kName},  {"mode", kInt},
    {"byte1", kInt},   {"byte2", kInt},  {"byte3", kInt},  {"byte4", kInt},
    {"byte5", kInt},   {"byte6", kInt},  {"byte7", kInt},  {"byte8", kInt},
    {"byte9", kInt},   {"byte10", kInt}, {"byte11", kInt}, {"status", kInt}};

constexpr Column kKeyRgb[] = {
    {"rgbId", kKey}, {"lightId", kInt}, {"profId", kInt}, {"keyvalue", kInt}, {"rgbvalue", kInt}};

constexpr Column kUserLightData[] = {
    {"light_id", kKey}, {"profile", kInt}, {"name", kName}, {"speed", kInt}, {"brightness", kInt}};

constexpr Column kUserLightLedData[] = {
    {"ledId", kKey}, {"light_id", kInt}, {"keyvalue", kInt}, {"rgbvalue", kInt}};

constexpr Column kTriggerKey[] = {
    {"triggerId", kKey}, {"profId", kInt}, {"layer", kInt}, {"keyvalue", kInt}, {"keydesc", kText}};

constexpr Column kKeyProfile[] = {
    {"keyId", kKey},       {"profId", kInt},      {"fnlayerId", kInt},
    {"keyvalue", kInt},    {"macroType", kInt},   {"macroValue", kInt},
    {"macro2Value", kInt}, {"macro3Value", kInt}, {"macroDesc", kText}};

constexpr Column kMacroData[] = {{"macro_id", kKey},
                                 {"play_times", kInt},
                                 {"delay_type", kInt},
                                 {"delay_time", kInt},
                                 {"macro_name", kText}};

constexpr Column kMacroRecord[] = {{"record_id", kKey},    {"macro_id", kInt},
                                   {"record_type", kInt},  {"record_index", kInt},
                                   {"record_desc", kText}, {"record_value", kInt}};

constexpr std::array<Table, 10> kTables = {{
    {"t_profile", kProfile},
    {"t_configdata", kConfigData},
    {"t_lightdata", kLightData},
    {"t_keyrgb", kKeyRgb},
    {"t_userlight_data", kUserLightData},
    {"t_userlight_leddata", kUserLightLedData},
    {"t_triggerkey", kTriggerKey},
    {"t_keyprofile", kKeyProfile},
    {"t_macro_data", kMacroData},
    {"t_macrorecord", kMacroRecord},
}};

constexpr std::array<const char*, 9> kDropOrder = {
    "t_configdata",        "t_profile",    "t_lightdata",  "t_keyrgb",      "t_userlight_data",
    "t_userlight_leddata", "t_keyprofile", "t_macro_data", "t_macrorecord",
};

}  // namespace

std::span<const Table> tables() {
    return kTables;
}

std::string createStatement(const Table& table) {
    std::string sql = "CREATE TABLE IF NOT EXISTS \"";
    sql += table.name;
    sql += "\" (";
    const char* separator = "";
    for (const Column& column : table.columns) {
        sql += separator;
        sql += '"';
        sql += column.name;
        sql += "\" ";
        sql += column.type;
        separator = ", ";
    }
    sql += ')';
    return sql;
}

std::span<const char* const> dropOrder() {
    return kDropOrder;
}

}  // namespace qx9::schema
