#pragma once

#include <sqlite3.h>

#include <string>

namespace qx9::test {

// One value of a database read with plain SQL: the first column of the first row, "" when there
// is no row or the database cannot be read.
inline std::string sqlValue(const std::string& databasePath, const std::string& query) {
    sqlite3* db = nullptr;
    std::string out;
    if (sqlite3_open_v2(databasePath.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(db, query.c_str(), -1, &st, nullptr) == SQLITE_OK &&
            sqlite3_step(st) == SQLITE_ROW) {
            const unsigned char* text = sqlite3_column_text(st, 0);
            out = text ? reinterpret_cast<const char*>(text) : "";
        }
        sqlite3_finalize(st);
    }
    sqlite3_close(db);
    return out;
}

}  // namespace qx9::test
