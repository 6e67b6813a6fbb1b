#pragma once

#include <sqlite3.h>

#include <map>
#include <optional>
#include <string>

namespace qx9::test {

// Runs `query` on a database opened read-only and calls row(statement) for each row; false when
// the database or the query cannot be read.
template <class Row>
bool sqlRows(const std::string& databasePath, const std::string& query, Row row) {
    sqlite3* db = nullptr;
    bool ok = false;
    if (sqlite3_open_v2(databasePath.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* st = nullptr;
        ok = sqlite3_prepare_v2(db, query.c_str(), -1, &st, nullptr) == SQLITE_OK;
        while (ok && sqlite3_step(st) == SQLITE_ROW) row(st);
        sqlite3_finalize(st);
    }
    sqlite3_close(db);
    return ok;
}

inline std::string columnText(sqlite3_stmt* st, int column, const char* null = "") {
    const unsigned char* text = sqlite3_column_text(st, column);
    return text ? reinterpret_cast<const char*>(text) : null;
}

// One value of a database read with plain SQL: the first column of the first row, "" when there
// is no row or the database cannot be read.
inline std::string sqlValue(const std::string& databasePath, const std::string& query) {
    std::optional<std::string> out;
    sqlRows(databasePath, query, [&](sqlite3_stmt* st) {
        if (!out) out = columnText(st, 0);
    });
    return out.value_or("");
}

// Runs one statement that changes the database; false when it fails.
inline bool sqlExec(const std::string& databasePath, const std::string& statement) {
    sqlite3* db = nullptr;
    const bool ok = sqlite3_open(databasePath.c_str(), &db) == SQLITE_OK &&
                    sqlite3_exec(db, statement.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
    sqlite3_close(db);
    return ok;
}

// Every row of every table of the application, every column, in row-id order, by table name.
inline std::map<std::string, std::string> dumpDatabase(const std::string& databasePath) {
    std::map<std::string, std::string> tables;
    sqlRows(databasePath, "SELECT name FROM sqlite_master WHERE type = 'table' AND name NOT LIKE 'sqlite_%'",
            [&](sqlite3_stmt* st) { tables[columnText(st, 0)]; });
    for (auto& [table, rows] : tables) {
        sqlRows(databasePath, "SELECT * FROM \"" + table + "\" ORDER BY rowid", [&](sqlite3_stmt* st) {
            for (int c = 0; c < sqlite3_column_count(st); ++c) rows += columnText(st, c, "NULL") + "|";
            rows += '\n';
        });
    }
    return tables;
}

}  // namespace qx9::test
