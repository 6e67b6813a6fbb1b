// User-light sets (t_userlight_data) and their key colours (t_userlight_leddata).
#include "common/console.h"
#include "store/device_sqlite.h"

namespace qx9 {

namespace {

constexpr std::int64_t kNewSetSpeed = 15;
constexpr std::int64_t kNewSetBrightness = 15;

UserLightData readUserLight(const sqlite::Statement& row) {
    // A damaged row: the set shows without a name rather than stopping every command.
    if (row.isNull(2)) console() << "user-light set " << row.integer(0) << " has no name\n";
    UserLightData set;
    set.userlight_id = row.integer(0);
    set.profile_id = row.integer(1);
    set.userlight_name = row.text(2);
    set.speed = row.integer(3);
    set.brightness = row.integer(4);
    return set;
}

UserLightLEDData readLed(const sqlite::Statement& row) {
    UserLightLEDData led;
    led.led_id = row.integer(0);
    led.userlight_id = row.integer(1);
    led.key_value = row.integer(2);
    led.key_rgbvalue = row.integer(3);
    return led;
}

std::int64_t countOf(const auto& list) {
    return static_cast<std::int64_t>(list.size());
}

}  // namespace

std::int64_t DeviceSQLite::addUserLight(std::int64_t profile_id, const std::string& name) {
    if (!db_) return 0;
    try {
        return db_->insert(R"(INSERT INTO "t_userlight_data" ("profile", "name", "speed",
                              "brightness") VALUES (?, ?, ?, ?))",
                           profile_id, name, kNewSetSpeed, kNewSetBrightness);
    } catch (const sqlite::Error&) {
        return 0;
    }
}

bool DeviceSQLite::updateUserLightName(std::int64_t userlight_id, const std::string& name) {
    if (!db_) return false;
    try {
        db_->run(R"(UPDATE "t_userlight_data" SET "name" = ? WHERE "light_id" = ?)", name, userlight_id);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

bool DeviceSQLite::deleteUserLight(std::int64_t userlight_id) {
    if (!db_) return false;
    try {
        // The set's key colours stay; a later set that gets the same id starts with them.
        db_->run(R"(DELETE FROM "t_userlight_data" WHERE "light_id" = ?)", userlight_id);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

std::int64_t DeviceSQLite::getUserLightData(std::int64_t profile_id,
                                            std::vector<UserLightData>& dataArray) const {
    if (!db_) return countOf(dataArray);
    try {
        db_->query(R"(SELECT "light_id", "profile", "name", "speed", "brightness"
                      FROM "t_userlight_data" WHERE "profile" = ?)",
                   profile_id)
            .appendRowsTo(dataArray, readUserLight);
    } catch (const sqlite::Error&) {
    }
    return countOf(dataArray);
}

std::int64_t DeviceSQLite::addUserLightLEDData(const UserLightLEDData& data) {
    if (data.key_value == 0) return -1;  // 0 is no key
    if (db_) {
        try {
            // By key alone, across every set of every profile: a key has a colour in at most
            // one set at a time.
            db_->run(R"(DELETE FROM "t_userlight_leddata" WHERE "keyvalue" = ?)", data.key_value);
        } catch (const sqlite::Error&) {
            return -1;
        }
    }
    if (data.key_rgbvalue == 0) return -1;  // colour 0 leaves the key without a colour
    if (!db_) return 0;
    try {
        return db_->insert(R"(INSERT INTO "t_userlight_leddata" ("light_id", "keyvalue",
                              "rgbvalue") VALUES (?, ?, ?))",
                           data.userlight_id, data.key_value, data.key_rgbvalue);
    } catch (const sqlite::Error&) {
        return -1;
    }
}

std::int64_t DeviceSQLite::getUserLightLEDData(std::int64_t userlight_id,
                                               std::vector<UserLightLEDData>& dataArray) const {
    if (!db_) return countOf(dataArray);
    try {
        db_->query(R"(SELECT "ledId", "light_id", "keyvalue", "rgbvalue"
                      FROM "t_userlight_leddata" WHERE "light_id" = ?)",
                   userlight_id)
            .appendRowsTo(dataArray, readLed);
    } catch (const sqlite::Error&) {
    }
    return countOf(dataArray);
}

}  // namespace qx9
