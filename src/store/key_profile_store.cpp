// Key assignments (t_keyprofile): one row per reassigned key, profile and Fn layer.
#include "store/device_sqlite.h"

namespace qx9 {

namespace {

constexpr const char* kColumns =
    R"("keyId", "profId", "fnlayerId", "keyvalue", "macroType", "macroValue", "macro2Value",
       "macro3Value", "macroDesc")";

ProfileKey readProfileKey(const sqlite::Statement& row) {
    ProfileKey key;
    key.keyId = row.integer(0);
    key.profId = row.integer(1);
    key.fnlayerId = row.integer(2);
    key.keyValue = row.integer(3);
    key.macroType = row.integer(4);
    key.macroValue = row.integer(5);
    key.macro2Value = row.integer(6);
    key.macro3Value = row.integer(7);
    key.macroDesc = row.text(8);
    return key;
}

}  // namespace

std::int64_t DeviceSQLite::addKeyProfile(const ProfileKey& data) {
    if (data.keyValue == 0) return 0;  // 0 is no key: leave every row alone
    if (!db_) return 0;
    try {
        db_->run(R"(DELETE FROM "t_keyprofile"
                    WHERE "profId" = ? AND "fnlayerId" = ? AND "keyvalue" = ?)",
                 data.profId, data.fnlayerId, data.keyValue);
    } catch (const sqlite::Error&) {
        return 0;
    }
    // Value 0 is the key's default function, which is kept as the absence of a row.
    if (data.macroValue == 0) return 0;
    try {
        // A new row rather than an update: a reassigned key always gets a larger row id.
        return db_->insert(
            R"(INSERT INTO "t_keyprofile" ("profId", "fnlayerId", "keyvalue", "macroType",
               "macroValue", "macro2Value", "macro3Value", "macroDesc")
               VALUES (?, ?, ?, ?, ?, ?, ?, ?))",
            data.profId, data.fnlayerId, data.keyValue, data.macroType, data.macroValue,
            data.macro2Value, data.macro3Value, data.macroDesc);
    } catch (const sqlite::Error&) {
        return 0;  // the key is left without a row, that is with its default function
    }
}

bool DeviceSQLite::queryKeysProfile(std::int64_t profile, std::int64_t fnlayer,
                                    std::vector<ProfileKey>& dataArray) const {
    if (!db_) return false;
    try {
        db_->query(std::string("SELECT ") + kColumns +
                       R"( FROM "t_keyprofile" WHERE "profId" = ? AND "fnlayerId" = ?)",
                   profile, fnlayer)
            .appendRowsTo(dataArray, readProfileKey);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

bool DeviceSQLite::queryKeyProfile(std::int64_t profile, std::int64_t fnlayer,
                                   std::int64_t keyValue, ProfileKey& data) const {
    if (!db_) return false;
    try {
        auto row = db_->query(std::string("SELECT ") + kColumns +
                                  R"( FROM "t_keyprofile"
                                      WHERE "profId" = ? AND "fnlayerId" = ? AND "keyvalue" = ?
                                      LIMIT 1)",
                              profile, fnlayer, keyValue);
        if (!row.step()) return false;
        data = readProfileKey(row);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

}  // namespace qx9
