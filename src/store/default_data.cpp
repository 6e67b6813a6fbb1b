// What the database holds before the user changes anything, and what a profile reset puts back.
#include <utility>

#include "common/console.h"
#include "store/device_sqlite.h"

namespace qx9 {

namespace {

using Setting = std::pair<const char*, const char*>;

// Application-wide settings, written once when the tables are created; all live under
// profile 1 whatever profile is current.
constexpr Setting kGlobalSettings[] = {
    {"keyboardLayout", "0"},  {"language", "1033"},     {"gamemode", "0"},
    {"disable_alttab", "0"},  {"disable_altf4", "0"},   {"disable_win", "0"},
    {"keyboard_layout", "0"}, {"customlight_run", "0"}, {"cur_customlightmode", "0"},
    {"fnlayer", "0"},         {"sleeplight", "0"},      {"fnfunction", "0"},
    {"tab_view", "1"},
};

// Legacy values every profile carries. Nothing reads them, but files of earlier versions have
// them, so they are kept as they always were ("1676960" included).
constexpr Setting kLegacyValues[] = {
    {"report_rate", "0"},           {"dpi_switch_config", "15"},   {"dpi_index", "1"},
    {"dpi_group0_value", "12"},     {"dpi_group1_value", "24"},    {"dpi_group2_value", "32"},
    {"dpi_group3_value", "50"},     {"dpi_group4_value", "100"},   {"dpi_group5_value", "100"},
    {"dpi_group0_rgb", "16777215"}, {"dpi_group1_rgb", "255"},     {"dpi_group2_rgb", "65280"},
    {"dpi_group3_rgb", "16711680"}, {"dpi_group4_rgb", "1676960"}, {"dpi_group5_rgb", "16711935"},
};

constexpr std::int64_t kModeCount = 21;
constexpr std::int64_t kSelectedModeOfNewProfile = 11;
constexpr std::int64_t kModeAfterReset = 3;

constexpr const char* kInsertConfig =
    R"(INSERT INTO "t_configdata" ("key", "profId", "value") VALUES (?, ?, ?))";

constexpr const char* kInsertLightRow =
    R"(INSERT INTO "t_lightdata" ("name", "profId", "mode", "byte1", "byte2", "byte3", "byte4",
       "byte5", "byte6", "byte7", "byte8", "byte9", "byte10", "byte11", "status")
       VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?))";

}  // namespace

void DeviceSQLite::initDBdata(std::int64_t profile) {
    if (!db_) return;
    try {
        if (!db_->hasRow(R"(SELECT * FROM "t_profile" LIMIT 1)")) {
            db_->insert(R"(INSERT INTO "t_profile" ("name") VALUES (?))", "Configuration File 1");
        }
        // Any configuration row at all, whatever its profile, means the settings exist.
        if (db_->hasRow(R"(SELECT * FROM "t_configdata" LIMIT 1)")) return;
        bool first = true;
        for (const auto& [key, value] : kGlobalSettings) {
            // Only the first row follows the argument; the rest go to profile 1 regardless.
            db_->insert(kInsertConfig, key, first ? profile : std::int64_t{1}, value);
            first = false;
        }
    } catch (const sqlite::Error& e) {
        console() << "insertRow  fail " << e.what() << '\n';
    }
}

bool DeviceSQLite::writeLightProfile(std::int64_t profile) {
    if (!db_) return false;
    try {
        // Any lighting row means the profile was set up before, even with fewer than 21.
        if (db_->hasRow(R"(SELECT * FROM "t_lightdata" WHERE "profId" = ? LIMIT 1)", profile)) {
            return true;
        }
    } catch (const sqlite::Error&) {
        return false;
    }
    writeConfigInfo(profile);
    try {
        for (std::int64_t mode = 0; mode < kModeCount; ++mode) {
            const std::int64_t byte11 = mode == 10 ? 3 : 0;
            const std::int64_t status = mode == kSelectedModeOfNewProfile ? 1 : 0;
            db_->insert(kInsertLightRow, "radiName", profile, mode, 202, 81, 0, 0, 0, 0, 0, 1, 15,
                        12, byte11, status);
        }
    } catch (const sqlite::Error&) {
        return false;  // the rows written so far stay
    }
    return true;
}

void DeviceSQLite::writeConfigInfo(std::int64_t profile) {
    if (!db_) return;
    try {
        // No check for existing rows: a second call leaves every key twice.
        for (const auto& [key, value] : kLegacyValues)
            db_->insert(kInsertConfig, key, profile, value);
    } catch (const sqlite::Error&) {
        // Nothing reads these values; a refused insert leaves the rows written so far.
    }
}

void DeviceSQLite::resetProfile(std::int64_t profile) {
    if (!db_) return;
    try {
        db_->run(R"(DELETE FROM "t_keyprofile" WHERE "profId" = ?)", profile);
        // For profile 1 this takes the global settings with it; they are not written again.
        db_->run(R"(DELETE FROM "t_configdata" WHERE "profId" = ?)", profile);
    } catch (const sqlite::Error& e) {
        console() << "resetProfile  fail " << e.what() << '\n';
        return;
    }
    selectLightMode(profile, kModeAfterReset);  // the mode parameters stay as the user saved them
    writeConfigInfo(profile);
}

}  // namespace qx9
