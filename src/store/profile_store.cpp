// Profiles (t_profile) and configuration values (t_configdata).
#include "common/console.h"
#include "store/device_sqlite.h"

namespace qx9 {

std::int64_t DeviceSQLite::addProfile(const std::string& profile_name) {
    if (!db_) return 0;
    try {
        return db_->insert(R"(INSERT INTO "t_profile" ("name") VALUES (?))", profile_name);
    } catch (const sqlite::Error&) {
        return 0;
    }
}

bool DeviceSQLite::deleteProfile(std::int64_t profile) {
    if (!db_) return false;
    try {
        // Only the profile row goes; its keys, values and lighting stay in the file.
        db_->run(R"(DELETE FROM "t_profile" WHERE "profId" = ?)", profile);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

bool DeviceSQLite::updateProfileName(std::int64_t profile, const std::string& profile_name) {
    if (!db_) return false;
    try {
        db_->run(R"(UPDATE "t_profile" SET "name" = ? WHERE "profId" = ?)", profile_name, profile);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

bool DeviceSQLite::queryProfileList(std::vector<ProfileData>& dataArray) const {
    if (!db_) return false;
    try {
        db_->query(R"(SELECT "profId", "name" FROM "t_profile")")
            .appendRowsTo(dataArray, [](const sqlite::Statement& row) {
                // A damaged row: the profile shows without a name rather than stopping every command.
                if (row.isNull(1)) console() << "profile " << row.integer(0) << " has no name\n";
                return ProfileData{row.integer(0), row.text(1)};
            });
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

bool DeviceSQLite::writeConfigData(std::int64_t profile, const std::string& keyValue,
                                   const std::string& newvalue) {
    if (!db_) return false;
    try {
        db_->insert(R"(INSERT INTO "t_configdata" ("key", "profId", "value") VALUES (?, ?, ?))",
                    keyValue, profile, newvalue);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

bool DeviceSQLite::updateConfigData(std::int64_t profile, const std::string& keyValue,
                                    const std::string& newvalue) {
    if (!db_) return false;
    try {
        // Every matching row changes, duplicates included; a missing key is not added.
        db_->run(R"(UPDATE "t_configdata" SET "value" = ? WHERE "profId" = ? AND "key" = ?)",
                 newvalue, profile, keyValue);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

bool DeviceSQLite::hasConfigData(std::int64_t profile, const std::string& keyValue) const {
    if (!db_) return false;
    try {
        return db_->hasRow(R"(SELECT 1 FROM "t_configdata" WHERE "profId" = ? AND "key" = ? LIMIT 1)", profile, keyValue);
    } catch (const sqlite::Error&) {
        return false;
    }
}

std::string DeviceSQLite::getConfigData(std::int64_t profile, const std::string& keyValue) const {
    if (!db_) return {};
    try {
        auto row = db_->query(
            R"(SELECT "value" FROM "t_configdata" WHERE "profId" = ? AND "key" = ? LIMIT 1)",
            profile, keyValue);
        return row.step() ? row.text(0) : std::string();
    } catch (const sqlite::Error&) {
        return {};
    }
}

}  // namespace qx9
