#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace qx9::sqlite {

// A failed SQLite call. what() is SQLite's own description ("no such table: t_profile",
// "file is not a database", …), which is what the console lines print after their prefix.
class Error : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

// One prepared statement. Values are always bound, never spliced into the SQL text.
class Statement {
public:
    Statement(sqlite3* db, std::string_view sql);

    // Binds the arguments to ?1, ?2, … in order: integers as INTEGER, everything else as TEXT.
    template <typename... Args>
    Statement& bindAll(const Args&... args) {
        int index = 0;
        (bindOne(++index, args), ...);
        return *this;
    }

    // Advances to the next row: true when a row is ready, false at the end.
    bool step();
    // Runs the statement to its end, ignoring rows.
    void run();

    bool isNull(int column) const;
    std::int64_t integer(int column) const;
    std::string text(int column) const;  // NULL reads as the empty string

    // Reads every remaining row with `read(statement)` and appends the records to `out`. The
    // list changes only when every row was read: an error part-way leaves it as it was.
    template <typename T, typename Read>
    void appendRowsTo(std::vector<T>& out, Read read) {
        std::vector<T> rows;
        while (step()) rows.push_back(read(*this));
        out.insert(out.end(), std::make_move_iterator(rows.begin()),
                   std::make_move_iterator(rows.end()));
    }

private:
    struct Finalizer {
        void operator()(sqlite3_stmt* stmt) const { sqlite3_finalize(stmt); }
    };

    void bindOne(int index, std::int64_t value);
    void bindOne(int index, std::string_view value);
    [[noreturn]] void fail() const;

    sqlite3* db_;
    std::unique_ptr<sqlite3_stmt, Finalizer> stmt_;
};

// One open connection; closed when the object goes.
class Connection {
public:
    // Opens the file for reading and writing, creating it when missing. SQLite falls back to
    // read-only on its own when the file cannot be written.
    static Connection open(const std::string& path);

    Statement prepare(std::string_view sql) const { return Statement(db_.get(), sql); }

    // The file of the main database ("" for a database in memory).
    std::string fileName() const {
        const char* name = sqlite3_db_filename(db_.get(), "main");
        return name ? name : "";
    }

    template <typename... Args>
    Statement query(std::string_view sql, const Args&... args) const {
        Statement statement = prepare(sql);
        statement.bindAll(args...);
        return statement;
    }

    template <typename... Args>
    void run(std::string_view sql, const Args&... args) const {
        query(sql, args...).run();
    }

    // Runs an INSERT and returns the row id the database gave the new row.
    template <typename... Args>
    std::int64_t insert(std::string_view sql, const Args&... args) const {
        run(sql, args...);
        return sqlite3_last_insert_rowid(db_.get());
    }

    template <typename... Args>
    bool hasRow(std::string_view sql, const Args&... args) const {
        return query(sql, args...).step();
    }

private:
    struct Closer {
        void operator()(sqlite3* db) const { sqlite3_close_v2(db); }
    };

    explicit Connection(sqlite3* db) : db_(db) {}

    std::unique_ptr<sqlite3, Closer> db_;
};

}  // namespace qx9::sqlite
