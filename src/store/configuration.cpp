// The whole configuration at once: export reads it, import replaces it.
#include "store/configuration.h"

#include "store/config_keys.h"
#include "store/device_sqlite.h"

namespace qx9 {

namespace {

// The tables the configuration replaces, children before their owners.
constexpr const char* kClearedTables[] = {
    "t_macrorecord", "t_macro_data", "t_userlight_leddata", "t_userlight_data",
    "t_keyprofile",  "t_lightdata",  "t_configdata",        "t_profile",
};

constexpr const char* kNoDatabase = "no database is open";

}  // namespace

std::optional<Configuration> DeviceSQLite::readConfiguration(std::string& error) const {
    if (!db_) {
        error = kNoDatabase;
        return std::nullopt;
    }
    try {
        // One snapshot of all tables, even while another process writes.
        sqlite::Connection::Transaction snapshot = db_->begin(sqlite::Connection::Mode::Read);
        Configuration c;
        for (auto s = db_->prepare(R"(SELECT "profId", "name" FROM "t_profile" ORDER BY "profId")");
             s.step();) {
            c.profiles.push_back({s.integer(0), s.text(1)});
        }
        // What the keyboard was last sent describes the keyboard, not the configuration: it stays
        // out of the document, and an import sets it anew.
        for (auto s = db_->query(R"(SELECT "keyId", "profId", "key", "value" FROM "t_configdata"
                                    WHERE NOT ("profId" = ? AND "key" IN (?, ?)) ORDER BY "keyId")",
                                 kSettingsProfile, std::string_view(kKeyboardProfile), std::string_view(kMacroDeletions));
             s.step();) {
            c.configurationValues.push_back({s.integer(0), s.integer(1), s.text(2), s.text(3)});
        }
        for (auto s =
                 db_->prepare(R"(SELECT "keyId", "profId", "fnlayerId", "keyvalue", "macroType",
                                             "macroValue", "macro2Value", "macro3Value", "macroDesc"
                                      FROM "t_keyprofile" ORDER BY "keyId")");
             s.step();) {
            c.keyAssignments.push_back({s.integer(0), s.integer(2), s.integer(1), s.integer(3),
                                        s.integer(4), s.integer(5), s.integer(6), s.integer(7),
                                        s.text(8)});
        }
        for (auto s = db_->prepare(R"(SELECT "lightId", "profId", "name", "mode", "byte1", "byte2",
                                             "byte3", "byte4", "byte5", "byte6", "byte7", "byte8",
                                             "byte9", "byte10", "byte11", "status"
                                      FROM "t_lightdata" ORDER BY "lightId")");
             s.step();) {
            LightRow l{
                s.integer(0), s.integer(1), s.isNull(2) ? std::nullopt : std::optional(s.text(2)),
                s.integer(3), {},           s.integer(15)};
            for (int i = 0; i < 11; ++i) l.bytes[static_cast<std::size_t>(i)] = s.integer(4 + i);
            c.lighting.push_back(std::move(l));
        }
        for (auto s = db_->prepare(R"(SELECT "light_id", "profile", "name", "speed", "brightness"
                                      FROM "t_userlight_data" ORDER BY "light_id")");
             s.step();) {
            c.userLights.push_back(
                {s.integer(0), s.integer(1), s.text(2), s.integer(3), s.integer(4)});
        }
        for (auto s = db_->prepare(R"(SELECT "ledId", "light_id", "keyvalue", "rgbvalue"
                                      FROM "t_userlight_leddata" ORDER BY "ledId")");
             s.step();) {
            c.userLightColours.push_back({s.integer(0), s.integer(1), s.integer(2), s.integer(3)});
        }
        for (auto s = db_->prepare(R"(SELECT "macro_id", "play_times", "delay_type", "delay_time",
                                             "macro_name"
                                      FROM "t_macro_data" ORDER BY "macro_id")");
             s.step();) {
            c.macros.push_back({s.integer(0), s.integer(1), s.integer(2), s.integer(3), s.text(4)});
        }
        for (auto s = db_->prepare(R"(SELECT "record_id", "macro_id", "record_type", "record_index",
                                             "record_value", "record_desc"
                                      FROM "t_macrorecord" ORDER BY "record_id")");
             s.step();) {
            c.macroEvents.push_back(
                {s.integer(0), s.integer(1), s.integer(2), s.integer(3), s.integer(4), s.text(5)});
        }
        snapshot.commit();  // nothing was written: ending the read cannot lose anything
        return c;
    } catch (const sqlite::Error& e) {
        error = std::string("cannot read the database: ") + e.what();
        return std::nullopt;
    }
}

bool DeviceSQLite::replaceConfiguration(const Configuration& c, std::string& error) {
    if (!db_) {
        error = kNoDatabase;
        return false;
    }
    try {
        sqlite::Connection::Transaction transaction = db_->begin();
        for (const char* table : kClearedTables)
            db_->run(std::string("DELETE FROM \"") + table + '"');
        {
            auto s = db_->prepare(R"(INSERT INTO "t_profile" ("profId", "name") VALUES (?, ?))");
            for (const ProfileData& p : c.profiles) s.runAgain(p.profId, p.name);
        }
        {
            auto s = db_->prepare(R"(INSERT INTO "t_configdata" ("keyId", "key", "profId", "value")
                                     VALUES (?, ?, ?, ?))");
            for (const ConfigValueRow& v : c.configurationValues) {
                s.runAgain(v.keyId, v.key, v.profId, v.value);
            }
        }
        {
            auto s = db_->prepare(R"(INSERT INTO "t_keyprofile" ("keyId", "profId", "fnlayerId",
                                     "keyvalue", "macroType", "macroValue", "macro2Value",
                                     "macro3Value", "macroDesc") VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?))");
            for (const ProfileKey& k : c.keyAssignments) {
                s.runAgain(k.keyId, k.profId, k.fnlayerId, k.keyValue, k.macroType, k.macroValue,
                           k.macro2Value, k.macro3Value, k.macroDesc);
            }
        }
        {
            auto s = db_->prepare(R"(INSERT INTO "t_lightdata" ("lightId", "profId", "name", "mode",
                                     "byte1", "byte2", "byte3", "byte4", "byte5", "byte6", "byte7",
                                     "byte8", "byte9", "byte10", "byte11", "status")
                                     VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?, ?))");
            for (const LightRow& l : c.lighting) {
                const auto& b = l.bytes;
                s.runAgain(l.lightId, l.profId, l.name, l.mode, b[0], b[1], b[2], b[3], b[4], b[5],
                           b[6], b[7], b[8], b[9], b[10], l.status);
            }
        }
        {
            auto s = db_->prepare(R"(INSERT INTO "t_userlight_data" ("light_id", "profile", "name",
                                     "speed", "brightness") VALUES (?, ?, ?, ?, ?))");
            for (const UserLightData& u : c.userLights) {
                s.runAgain(u.userlight_id, u.profile_id, u.userlight_name, u.speed, u.brightness);
            }
        }
        {
            auto s = db_->prepare(R"(INSERT INTO "t_userlight_leddata" ("ledId", "light_id",
                                     "keyvalue", "rgbvalue") VALUES (?, ?, ?, ?))");
            for (const UserLightLEDData& l : c.userLightColours) {
                s.runAgain(l.led_id, l.userlight_id, l.key_value, l.key_rgbvalue);
            }
        }
        {
            auto s = db_->prepare(R"(INSERT INTO "t_macro_data" ("macro_id", "play_times",
                                     "delay_type", "delay_time", "macro_name")
                                     VALUES (?, ?, ?, ?, ?))");
            for (const MacroInfo& m : c.macros) {
                s.runAgain(m.macroId, m.playTimes, m.delayType, m.delayTime, m.macroName);
            }
        }
        {
            auto s = db_->prepare(R"(INSERT INTO "t_macrorecord" ("record_id", "macro_id",
                                     "record_type", "record_index", "record_desc", "record_value")
                                     VALUES (?, ?, ?, ?, ?, ?))");
            for (const RecordInfo& e : c.macroEvents) {
                s.runAgain(e.recordId, e.macroId, e.recordType, e.recordIndex, e.recordDesc,
                           e.recordValue);
            }
        }
        if (transaction.commit()) return true;
        error = "cannot write the database: " + db_->lastError();
        return false;
    } catch (const sqlite::Error& e) {
        error = std::string("cannot write the database: ") + e.what();
        return false;
    }
}

}  // namespace qx9
