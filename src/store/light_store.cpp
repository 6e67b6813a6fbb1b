// Built-in lighting modes (t_lightdata): 21 rows per profile, one of them selected.
#include <string>

#include "common/console.h"
#include "common/fatal.h"
#include "store/device_sqlite.h"

namespace qx9 {

namespace {

// Position 0 of a light record is the mode, positions 1 … 11 the parameter bytes.
constexpr std::size_t kRecordSize = 12;

// A damaged value is taken as the nearest byte, with a console line.
std::uint8_t storedByte(std::int64_t value, const char* column) {
    if (value < 0 || value > 255) {
        console() << "t_lightdata." << column << " holds " << value << ", which is not a byte\n";
        return static_cast<std::uint8_t>(value < 0 ? 0 : 255);
    }
    return static_cast<std::uint8_t>(value);
}

}  // namespace

bool DeviceSQLite::modifyLightData(std::int64_t profile, std::int64_t mode,
                                   std::span<const std::uint8_t> data) {
    if (!db_) return false;
    if (data.size() < kRecordSize) {
        fatalError("light record of " + std::to_string(data.size()) + " bytes, 12 needed");
    }
    try {
        // The row is the one of `mode`; position 0 of the record is never stored.
        db_->run(R"(UPDATE "t_lightdata" SET "byte1" = ?, "byte2" = ?, "byte3" = ?, "byte4" = ?,
                    "byte5" = ?, "byte6" = ?, "byte7" = ?, "byte8" = ?, "byte9" = ?,
                    "byte10" = ?, "byte11" = ?
                    WHERE "profId" = ? AND "mode" = ?)",
                 data[1], data[2], data[3], data[4], data[5], data[6], data[7], data[8], data[9],
                 data[10], data[11], profile, mode);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

bool DeviceSQLite::selectLightMode(std::int64_t profile, std::int64_t mode) {
    if (!db_) return false;
    try {
        // Two statements: if the second fails the profile has no selected mode at all.
        db_->run(R"(UPDATE "t_lightdata" SET "status" = ? WHERE "profId" = ?)", 0, profile);
        db_->run(R"(UPDATE "t_lightdata" SET "status" = ? WHERE "profId" = ? AND "mode" = ?)", 1,
                 profile, mode);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

std::int64_t DeviceSQLite::getLightModeSelectIndex(std::int64_t profile) const {
    if (!db_) return 0;
    try {
        auto row = db_->query(
            R"(SELECT "mode" FROM "t_lightdata" WHERE "profId" = ? AND "status" = ? LIMIT 1)",
            profile, 1);
        return row.step() ? row.integer(0) : 0;
    } catch (const sqlite::Error&) {
        return 0;
    }
}

bool DeviceSQLite::queryLightInfo(std::int64_t profile, std::int64_t mode, lightData& data) const {
    static constexpr const char* kRecordColumns[kRecordSize] = {
        "mode",  "byte1", "byte2", "byte3", "byte4",  "byte5",
        "byte6", "byte7", "byte8", "byte9", "byte10", "byte11"};
    if (!db_) return false;
    try {
        auto row = db_->query(
            R"(SELECT "lightId", "name", "status", "mode", "byte1", "byte2", "byte3", "byte4",
                      "byte5", "byte6", "byte7", "byte8", "byte9", "byte10", "byte11"
               FROM "t_lightdata" WHERE "profId" = ? AND "mode" = ? LIMIT 1)",
            profile, mode);
        if (!row.step()) return false;
        data.lightId = row.integer(0);
        data.name = row.text(1);
        data.status = row.integer(2);
        // `profId` and `mode` stay as the caller set them; the mode travels in position 0.
        for (std::size_t i = 0; i < kRecordSize; ++i) {
            data.data[i] = storedByte(row.integer(3 + static_cast<int>(i)), kRecordColumns[i]);
        }
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

}  // namespace qx9
