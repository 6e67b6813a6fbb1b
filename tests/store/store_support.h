#pragma once

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <stdlib.h>

#include <filesystem>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "store/device_sqlite.h"
#include "support/scratch.h"
#include "support/sql_value.h"

namespace qx9::test {

using Rows = std::vector<std::string>;

// Records as their table rows read with plain SQL ("SELECT *"): columns in table order, '|'.
template <typename... Fields>
std::string joined(const Fields&... fields) {
    std::ostringstream out;
    const char* separator = "";
    ((out << separator << fields, separator = "|"), ...);
    return out.str();
}

inline std::string str(const ProfileKey& k) {
    return joined(k.keyId, k.profId, k.fnlayerId, k.keyValue, k.macroType, k.macroValue, k.macro2Value,
                  k.macro3Value, k.macroDesc);
}

inline std::string str(const UserLightData& s) {
    return joined(s.userlight_id, s.profile_id, s.userlight_name, s.speed, s.brightness);
}

inline std::string str(const UserLightLEDData& l) {
    return joined(l.led_id, l.userlight_id, l.key_value, l.key_rgbvalue);
}
template <typename T>
Rows strs(const std::vector<T>& records) {
    Rows rows;
    for (const T& r : records) rows.push_back(str(r));
    return rows;
}

inline RecordInfo event(std::int64_t macro, std::int64_t type, std::int64_t index, std::int64_t value) {
    return {0, macro, type, index, value, "e" + std::to_string(index)};
}

// The tests' own view of a database file: plain SQL through the C API, not through the store.
class SqlFile {
public:
    explicit SqlFile(const std::filesystem::path& file) : file_(file) {
        if (sqlite3_open(file.c_str(), &db_) != SQLITE_OK) ADD_FAILURE() << file << ": " << sqlite3_errmsg(db_);
    }
    ~SqlFile() { sqlite3_close_v2(db_); }
    SqlFile(const SqlFile&) = delete;
    SqlFile& operator=(const SqlFile&) = delete;

    // Every row of a query (on a connection of its own), its columns as text joined by '|' (NULL
    // reads "NULL").
    Rows rows(const std::string& sql) const {
        Rows result;
        const bool read = sqlRows(file_.string(), sql, [&](sqlite3_stmt* st) {
            std::string row;
            for (int i = 0; i < sqlite3_column_count(st); ++i) row += (i ? "|" : "") + columnText(st, i, "NULL");
            result.push_back(row);
        });
        if (!read) ADD_FAILURE() << sql;
        return result;
    }
    std::string value(const std::string& sql) const { return rows(sql).empty() ? "" : rows(sql).front(); }
    void exec(const std::string& sql) const {
        char* error = nullptr;
        if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
            ADD_FAILURE() << sql << ": " << (error ? error : "");
        }
        sqlite3_free(error);
    }
    Rows tables() const { return rows("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY rowid"); }
    // A trigger that refuses the statements `when` describes ("BEFORE INSERT ON t WHEN …"),
    // with RAISE(ABORT) or RAISE(ROLLBACK); allowAll() drops every one.
    void refuse(const std::string& when, const char* action = "ABORT") {
        exec("CREATE TRIGGER refuse" + std::to_string(++triggers_) + " " + when + " BEGIN SELECT RAISE(" + action +
             ", 'refused'); END");
    }
    void allowAll() {
        for (; triggers_ > 0; --triggers_) exec("DROP TRIGGER refuse" + std::to_string(triggers_));
    }

private:
    std::filesystem::path file_;
    sqlite3* db_ = nullptr;
    int triggers_ = 0;
};

// A database file opened the way the application opens it, the console captured from the start.
class StoreTest : public ::testing::Test {
protected:
    TempDir dir_;
    std::filesystem::path file_ = dir_ / "device.sqlite3";
    ConsoleCapture console_;
    DeviceSQLite db_ = DeviceSQLite::atPath(file_);
    SqlFile sql_{file_};
};

}  // namespace qx9::test
