// Macros: headers in t_macro_data, events in t_macrorecord. Macros belong to no profile.
#include "common/console.h"
#include "store/device_sqlite.h"

namespace qx9 {

namespace {

MacroInfo readMacroInfo(const sqlite::Statement& row) {
    // A damaged row: the macro shows without a name rather than stopping every command.
    if (row.isNull(4)) console() << "macro " << row.integer(0) << " has no name\n";
    MacroInfo info;
    info.macroId = row.integer(0);
    info.playTimes = row.integer(1);
    info.delayType = row.integer(2);
    info.delayTime = row.integer(3);
    info.macroName = row.text(4);
    return info;
}

RecordInfo readRecordInfo(const sqlite::Statement& row) {
    RecordInfo record;
    record.recordId = row.integer(0);
    record.macroId = row.integer(1);
    record.recordType = row.integer(2);
    record.recordIndex = row.integer(3);
    record.recordDesc = row.text(4);
    record.recordValue = row.integer(5);
    return record;
}

constexpr const char* kSelectMacros =
    R"(SELECT "macro_id", "play_times", "delay_type", "delay_time", "macro_name"
       FROM "t_macro_data")";

constexpr const char* kSelectMacro =
    R"(SELECT "macro_id", "play_times", "delay_type", "delay_time", "macro_name"
       FROM "t_macro_data" WHERE "macro_id" = ? LIMIT 1)";

// No ORDER BY: events come back in the order they were inserted, whatever their index says.
constexpr const char* kSelectRecords =
    R"(SELECT "record_id", "macro_id", "record_type", "record_index", "record_desc",
              "record_value"
       FROM "t_macrorecord" WHERE "macro_id" = ?)";

constexpr const char* kInsertRecord =
    R"(INSERT INTO "t_macrorecord"
       ("macro_id", "record_type", "record_index", "record_desc", "record_value")
       VALUES (?, ?, ?, ?, ?))";

std::int64_t countOf(const auto& list) {
    return static_cast<std::int64_t>(list.size());
}

}  // namespace

std::int64_t DeviceSQLite::addMacroProfile(const std::string& macro_name) {
    if (!db_) return 0;
    try {
        return db_->insert(R"(INSERT INTO "t_macro_data"
                              ("play_times", "delay_type", "delay_time", "macro_name")
                              VALUES (?, ?, ?, ?))",
                           1, 0, 0, macro_name);
    } catch (const sqlite::Error&) {
        return 0;
    }
}

bool DeviceSQLite::updateMacroProfileName(std::int64_t macorId, const std::string& macro_name) {
    if (!db_) return false;
    try {
        db_->run(R"(UPDATE "t_macro_data" SET "macro_name" = ? WHERE "macro_id" = ?)", macro_name,
                 macorId);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

bool DeviceSQLite::modifyMacroInfo(const MacroInfo& info) {
    if (!db_) return false;
    try {
        // The name is renamed only through updateMacroProfileName.
        db_->run(R"(UPDATE "t_macro_data" SET "play_times" = ?, "delay_type" = ?, "delay_time" = ?
                    WHERE "macro_id" = ?)",
                 info.playTimes, info.delayType, info.delayTime, info.macroId);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

bool DeviceSQLite::queryMacroInfo(std::int64_t macorId, MacroInfo& info) const {
    if (!db_) return false;
    try {
        auto row = db_->query(kSelectMacro, macorId);
        if (!row.step()) return false;
        info = readMacroInfo(row);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

std::int64_t DeviceSQLite::queryAllMacroData(std::vector<MacroInfo>& dataArray) const {
    if (!db_) return countOf(dataArray);
    try {
        db_->query(kSelectMacros).appendRowsTo(dataArray, readMacroInfo);
    } catch (const sqlite::Error&) {
    }
    return countOf(dataArray);
}

bool DeviceSQLite::deleteMacroProfile(std::int64_t macorId) {
    if (!db_) return false;
    try {
        // The header and its events go together or both stay.
        sqlite::Connection::Transaction transaction = db_->begin();
        db_->run(R"(DELETE FROM "t_macro_data" WHERE "macro_id" = ?)", macorId);
        db_->run(R"(DELETE FROM "t_macrorecord" WHERE "macro_id" = ?)", macorId);
        return transaction.commit();
    } catch (const sqlite::Error&) {
        return false;
    }
}

std::int64_t DeviceSQLite::addMacroRecord(const RecordInfo& info) {
    if (!db_) return 0;
    try {
        return db_->insert(kInsertRecord, info.macroId, info.recordType, info.recordIndex,
                           info.recordDesc, info.recordValue);
    } catch (const sqlite::Error&) {
        return 0;
    }
}

bool DeviceSQLite::replaceMacroRecords(std::int64_t macroId,
                                       const std::vector<RecordInfo>& events) {
    if (!db_) return false;
    try {
        sqlite::Connection::Transaction transaction = db_->begin();
        db_->run(R"(DELETE FROM "t_macrorecord" WHERE "macro_id" = ?)", macroId);
        {
            sqlite::Statement insert = db_->prepare(kInsertRecord);
            for (std::size_t i = 0; i < events.size(); ++i) {
                const RecordInfo& e = events[i];
                insert.runAgain(macroId, e.recordType, static_cast<std::int64_t>(i), e.recordDesc,
                                e.recordValue);
            }
        }
        return transaction.commit();
    } catch (const sqlite::Error&) {
        return false;
    }
}

bool DeviceSQLite::saveMacro(const MacroInfo& info, const std::vector<RecordInfo>& events) {
    if (!db_) return false;
    try {
        sqlite::Connection::Transaction transaction = db_->begin();
        if (!db_->hasRow(R"(SELECT 1 FROM "t_macro_data" WHERE "macro_id" = ?)", info.macroId)) {
            return false;  // events of no macro would stay in the file for a later one
        }
        return replaceMacroRecords(info.macroId, events) && modifyMacroInfo(info) &&
               transaction.commit();
    } catch (const sqlite::Error&) {
        return false;
    }
}

std::int64_t DeviceSQLite::countMacros() const {
    if (!db_) return 0;
    try {
        auto row = db_->query(R"(SELECT count(*) FROM "t_macro_data")");
        return row.step() ? row.integer(0) : 0;
    } catch (const sqlite::Error&) {
        return 0;
    }
}

bool DeviceSQLite::deleteMacroRecord(std::int64_t macorId) {
    if (!db_) return false;
    try {
        db_->run(R"(DELETE FROM "t_macrorecord" WHERE "macro_id" = ?)", macorId);
        return true;
    } catch (const sqlite::Error&) {
        return false;
    }
}

std::int64_t DeviceSQLite::queryMacroRecord(std::int64_t macorId,
                                            std::vector<RecordInfo>& dataArray) const {
    if (!db_) return countOf(dataArray);
    try {
        db_->query(kSelectRecords, macorId).appendRowsTo(dataArray, readRecordInfo);
    } catch (const sqlite::Error&) {
    }
    return countOf(dataArray);
}

std::int64_t DeviceSQLite::getRecordCount() const {
    if (!db_) return 0;
    try {
        auto row = db_->query(R"(SELECT count(*) FROM "t_macrorecord")");
        return row.step() ? row.integer(0) : 0;
    } catch (const sqlite::Error&) {
        return 0;
    }
}

}  // namespace qx9
