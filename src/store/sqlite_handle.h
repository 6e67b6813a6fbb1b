#pragma once

#include <sqlite3.h>

#include <cstdint>
#include <iterator>
#include <memory>
#include <optional>
#include <span>
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
    explicit Error(const std::string& what, int code = SQLITE_ERROR, int systemErrno = 0)
        : std::runtime_error(what), code_(code), systemErrno_(systemErrno) {}
    // SQLite's extended result code, and the errno of the system call behind it (0: none).
    int code() const { return code_; }
    int systemErrno() const { return systemErrno_; }

private:
    int code_;
    int systemErrno_;
};

// The last call of a connection that failed: SQLite's extended result code and the errno behind
// it. Cleared when a transaction begins.
struct Failure {
    int code = SQLITE_OK;
    int systemErrno = 0;
};

// Bytes bound as a BLOB.
struct Blob {
    std::span<const unsigned char> bytes;
};

// One prepared statement. Values are always bound, never spliced into the SQL text.
class Statement {
public:
    // `depth` and `failedLevel`, when given, are the connection's transaction marks (see below);
    // `failure`, when given, records a failed call.
    Statement(sqlite3* db, std::string_view sql, const int* depth = nullptr, int* failedLevel = nullptr,
              Failure* failure = nullptr);

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
    // Runs it once more with new values: one INSERT prepared for many rows.
    template <typename... Args>
    void runAgain(const Args&... args) {
        reset();
        bindAll(args...);
        run();
    }

    bool isNull(int column) const;
    std::int64_t integer(int column) const;
    std::string text(int column) const;  // NULL reads as the empty string
    std::vector<unsigned char> blob(int column) const;

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
    void bindOne(int index, Blob value);
    // An empty optional is bound as NULL.
    template <typename T>
    void bindOne(int index, const std::optional<T>& value) {
        if (value) {
            bindOne(index, *value);
        } else {
            bindNull(index);
        }
    }
    void bindNull(int index);
    void reset();
    [[noreturn]] void fail() const;

    sqlite3* db_;
    std::unique_ptr<sqlite3_stmt, Finalizer> stmt_;
    // The connection's open transaction levels and its first failed level: a statement that
    // fails inside a transaction marks the innermost level, whose commit is then refused.
    const int* depth_ = nullptr;
    int* failedLevel_ = nullptr;
    Failure* failure_ = nullptr;
};

// One open connection; closed when the object goes.
class Connection {
    struct State;

public:
    // Opens the file for reading and writing, creating it when missing. SQLite falls back to
    // read-only on its own when the file cannot be written.
    static Connection open(const std::string& path);
    // Opens an existing file read-only as unchanging: no lock, log or shared memory is needed, so
    // it can be read where nothing can be written (a full disk).
    static Connection openUnchanging(const std::string& path);
    // Puts the file in write-ahead-log mode (a file of this application's only: it changes the
    // file's header).
    void useWriteAheadLog() const;

    Connection(Connection&&) noexcept = default;
    Connection& operator=(Connection&&) noexcept = default;

    enum class Mode {
        Write,  // takes the write lock at once (BEGIN IMMEDIATE)
        Read,   // one snapshot for several SELECTs (BEGIN); works on a read-only file too
    };

    // One level of a transaction, from begin() until commit() or the end of the object, which
    // rolls the level back when it was not committed. The outermost level is a transaction of
    // SQLite's, the levels inside it are savepoints: a store operation that opens a level of its
    // own can run inside its caller's transaction, and its failure rolls back its own writes
    // only. Levels end innermost first; the connection must outlive them.
    //
    // A level that could not begin (the file stayed locked past the busy timeout, a read-only
    // file asked to write), and a transaction SQLite rolled back on its own (a full disk, a
    // trigger's RAISE(ROLLBACK)), make every statement of the connection fail until the level
    // ends: the writes that follow are refused instead of being committed one by one.
    class Transaction {
    public:
        Transaction(Transaction&& other) noexcept;
        Transaction& operator=(Transaction&&) = delete;
        ~Transaction();

        // COMMIT, or RELEASE of the savepoint. False, and the level is rolled back when the object
        // ends, if it could not begin, was lost, is not the innermost open level or SQLite refused
        // the commit. Never throws.
        bool commit() noexcept;
        // Begun, not ended, and not lost.
        bool active() const noexcept;

    private:
        friend class Connection;
        Transaction(State* state, int level) : state_(state), level_(level) {}
        void rollback() noexcept;

        State* state_;  // null once the level has ended
        int level_;     // 1 for the outermost level
    };

    // Opens a level; never throws (see Transaction for a level that could not begin). The mode
    // counts for the outermost level only: a level inside a transaction shares its kind.
    Transaction begin(Mode mode = Mode::Write) const;
    // Open levels: 0 outside any transaction.
    int transactionDepth() const { return state_->depth; }

    // Throws Error while a transaction level is lost (see Transaction).
    Statement prepare(std::string_view sql) const;

    // SQLite's description of the last failed call, such as a refused commit.
    std::string lastError() const { return sqlite3_errmsg(state_->db); }
    // The last failure since the outermost transaction began.
    Failure lastFailure() const { return state_->failure; }

    // The file of the main database ("" for a database in memory).
    std::string fileName() const {
        const char* name = sqlite3_db_filename(state_->db, "main");
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
        return sqlite3_last_insert_rowid(state_->db);
    }

    // The handle itself, for SQLite's change sessions (store/change_session.h).
    sqlite3* handle() const { return state_->db; }

    template <typename... Args>
    bool hasRow(std::string_view sql, const Args&... args) const {
        return query(sql, args...).step();
    }

private:
    // On the heap, so that transaction levels keep pointing at it when the connection moves.
    struct State {
        explicit State(sqlite3* handle) : db(handle) {}
        ~State() { sqlite3_close_v2(db); }
        State(const State&) = delete;
        State& operator=(const State&) = delete;

        sqlite3* db;
        int depth = 0;        // open transaction levels
        int lostLevel = 0;    // the outermost level that could not begin; 0: none
        std::string lostWhy;  // SQLite's message for it
        int failedLevel = 0;  // the outermost level in which a statement failed; 0: none
        Failure failure;
        void recordFailure() {
            failure = {sqlite3_extended_errcode(db), sqlite3_system_errno(db)};
        }
    };

    explicit Connection(sqlite3* db) : state_(std::make_unique<State>(db)) {}

    std::unique_ptr<State> state_;
};

}  // namespace qx9::sqlite
