#include "store/sqlite_handle.h"

#include <unistd.h>

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <filesystem>

namespace qx9::sqlite {

namespace {

// Another process (qx9ctl beside the application) may hold the write lock for a moment. In
// write-ahead-log mode readers never wait; a writer waits for the lock for at most this long,
// each time it takes it. A command that writes several rows takes it once, with the BEGIN
// IMMEDIATE of its transaction, so it waits about 2 s in all before it gives up, not once per
// row; after a BEGIN that gave up, its statements fail at once (see Connection::Transaction).
constexpr int kBusyTimeoutMs = 2000;
// The wait can be set for a run with QX9_LOCK_WAIT_MS (0–60000), for tests of a locked file.
constexpr const char* kLockWaitVariable = "QX9_LOCK_WAIT_MS";
constexpr long kMaxLockWaitMs = 60000;

int lockWaitMs() {
    const char* text = std::getenv(kLockWaitVariable);
    if (!text || !*text) return kBusyTimeoutMs;
    char* end = nullptr;
    const long value = std::strtol(text, &end, 10);
    return *end == '\0' && value >= 0 && value <= kMaxLockWaitMs ? static_cast<int>(value) : kBusyTimeoutMs;
}

constexpr const char* kTransactionLost = "the transaction was rolled back after an earlier error";

// SQL of a transaction level; a savepoint is named after its level.
struct LevelSql {
    char text[64];
    LevelSql(const char* format, int level) {
        std::snprintf(text, sizeof text, format, level, level);
    }
};

bool execute(sqlite3* db, const char* sql) noexcept {
    return sqlite3_exec(db, sql, nullptr, nullptr, nullptr) == SQLITE_OK;
}

}  // namespace

Statement::Statement(sqlite3* db, std::string_view sql, const int* depth, int* failedLevel, Failure* failure)
    : db_(db), depth_(depth), failedLevel_(failedLevel), failure_(failure) {
    sqlite3_stmt* raw = nullptr;
    const int rc = sqlite3_prepare_v2(db, sql.data(), static_cast<int>(sql.size()), &raw, nullptr);
    stmt_.reset(raw);
    if (rc != SQLITE_OK) fail();
}

bool Statement::step() {
    const int rc = sqlite3_step(stmt_.get());
    if (rc == SQLITE_ROW) return true;
    if (rc == SQLITE_DONE) return false;
    fail();
}

void Statement::run() {
    while (step()) {
    }
}

bool Statement::isNull(int column) const {
    return sqlite3_column_type(stmt_.get(), column) == SQLITE_NULL;
}

std::int64_t Statement::integer(int column) const {
    return sqlite3_column_int64(stmt_.get(), column);
}

std::string Statement::text(int column) const {
    const auto* chars = sqlite3_column_text(stmt_.get(), column);
    if (!chars) return {};
    const int size = sqlite3_column_bytes(stmt_.get(), column);
    return std::string(reinterpret_cast<const char*>(chars), static_cast<std::size_t>(size));
}

std::vector<unsigned char> Statement::blob(int column) const {
    const auto* bytes = static_cast<const unsigned char*>(sqlite3_column_blob(stmt_.get(), column));
    const int size = sqlite3_column_bytes(stmt_.get(), column);
    return bytes ? std::vector<unsigned char>(bytes, bytes + size) : std::vector<unsigned char>{};
}

void Statement::bindOne(int index, Blob value) {
    if (value.bytes.size() > INT_MAX) throw Error("string or blob too big", SQLITE_TOOBIG);
    if (sqlite3_bind_blob(stmt_.get(), index, value.bytes.data(), static_cast<int>(value.bytes.size()),
                          SQLITE_TRANSIENT) != SQLITE_OK) {
        fail();
    }
}

void Statement::bindOne(int index, std::int64_t value) {
    if (sqlite3_bind_int64(stmt_.get(), index, value) != SQLITE_OK) fail();
}

void Statement::bindNull(int index) {
    if (sqlite3_bind_null(stmt_.get(), index) != SQLITE_OK) fail();
}

void Statement::reset() {
    sqlite3_reset(stmt_.get());
    sqlite3_clear_bindings(stmt_.get());
}

void Statement::bindOne(int index, std::string_view value) {
    if (value.size() > INT_MAX) throw Error("string or blob too big", SQLITE_TOOBIG);
    if (sqlite3_bind_text(stmt_.get(), index, value.data(), static_cast<int>(value.size()),
                          SQLITE_TRANSIENT) != SQLITE_OK) {
        fail();
    }
}

void Statement::fail() const {
    if (depth_ && *depth_ > 0 && (*failedLevel_ == 0 || *failedLevel_ > *depth_)) *failedLevel_ = *depth_;
    const Failure failure{sqlite3_extended_errcode(db_), sqlite3_system_errno(db_)};
    if (failure_) *failure_ = failure;
    throw Error(sqlite3_errmsg(db_), failure.code, failure.systemErrno);
}

namespace {

// A failed open: SQLite's words and codes, from the handle when it made one.
[[noreturn]] void throwOpenError(sqlite3* raw, int rc) {
    if (!raw) throw Error(sqlite3_errstr(rc), rc);
    throw Error(sqlite3_errmsg(raw), sqlite3_extended_errcode(raw), sqlite3_system_errno(raw));
}

// "file:" URI of a path with the immutable flag; characters that mean something in a URI are
// escaped.
std::string immutableUri(const std::string& path) {
    std::string uri = "file:";
    for (char c : path) {
        if (c == '%' || c == '?' || c == '#') {
            static constexpr char kHex[] = "0123456789ABCDEF";
            uri += '%';
            uri += kHex[(static_cast<unsigned char>(c) >> 4) & 0x0F];
            uri += kHex[static_cast<unsigned char>(c) & 0x0F];
        } else {
            uri += c;
        }
    }
    return uri + "?immutable=1";
}

}  // namespace

Connection Connection::open(const std::string& path) {
    sqlite3* raw = nullptr;
    // A file we may read but not write, or one in a folder we may not write (where neither a log
    // nor a journal can be created), is opened read-only and as unchanging: SQLite can then read
    // it even in write-ahead-log mode, whose shared-memory file it could not create.
    const std::string folder = std::filesystem::path(path).parent_path().string();
    const bool readOnly = ::access(path.c_str(), F_OK) == 0 &&
                          (::access(path.c_str(), W_OK) != 0 || ::access(folder.empty() ? "." : folder.c_str(), W_OK) != 0);
    if (readOnly) return openUnchanging(path);
    const int rc = sqlite3_open_v2(path.c_str(), &raw, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    Connection connection(raw);
    if (rc != SQLITE_OK) throwOpenError(raw, rc);
    // A file in write-ahead-log mode (see useWriteAheadLog) syncs at the copy back, not at every
    // commit, on every connection. Asked before the busy timeout: a file another program holds in
    // journal mode is not waited for twice.
    try {
        Statement mode(raw, "PRAGMA journal_mode");
        if (mode.step() && mode.text(0) == "wal") execute(raw, "PRAGMA synchronous=NORMAL");
    } catch (const Error&) {
    }
    sqlite3_busy_timeout(raw, lockWaitMs());
    return connection;
}

void Connection::useWriteAheadLog() const {
    sqlite3* raw = state_->db;
    // With a write-ahead log a commit appends to the log instead of rewriting pages of the file
    // behind a journal. A file that cannot take the log (a read-only one, a database in memory)
    // keeps its journal. The switch needs the file to itself: while another program uses it, it
    // is not waited for (the next open tries again).
    bool wal = false;
    sqlite3_busy_timeout(raw, 0);
    try {
        Statement mode(raw, "PRAGMA journal_mode=WAL");
        wal = mode.step() && mode.text(0) == "wal";
    } catch (const Error&) {
    }
    sqlite3_busy_timeout(raw, lockWaitMs());
    // In that mode synchronous=NORMAL syncs the log when it is copied back into the file, not at
    // every commit. A commit that has returned still survives a crash of the application or of
    // qx9ctl, and the file is never damaged; only a power loss or a crash of the system can take
    // back the commits since the last copy. For settings the keyboard holds as well, that is
    // worth a sync less per commit (the default, FULL, syncs the log at each one).
    if (wal) execute(raw, "PRAGMA synchronous=NORMAL");
}

Connection Connection::openUnchanging(const std::string& path) {
    sqlite3* raw = nullptr;
    const int rc = sqlite3_open_v2(immutableUri(path).c_str(), &raw, SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr);
    Connection connection(raw);
    if (rc != SQLITE_OK) throwOpenError(raw, rc);
    return connection;
}

Statement Connection::prepare(std::string_view sql) const {
    State& s = *state_;
    if (s.depth > 0) {
        if (s.lostLevel != 0) throw Error(s.lostWhy, s.failure.code, s.failure.systemErrno);
        if (sqlite3_get_autocommit(s.db)) throw Error(kTransactionLost, s.failure.code, s.failure.systemErrno);
    }
    return Statement(s.db, sql, &s.depth, &s.failedLevel, &s.failure);
}

Connection::Transaction Connection::begin(Mode mode) const {
    State& s = *state_;
    const int level = ++s.depth;
    if (level == 1) s.failure = {};
    Transaction transaction(&s, level);
    // Inside a lost level there is nothing to begin: it is lost as well. Inside a transaction
    // SQLite rolled back, a SAVEPOINT would start a new one of its own.
    if (s.lostLevel != 0 || (level > 1 && sqlite3_get_autocommit(s.db))) return transaction;
    const LevelSql sql(level > 1             ? "SAVEPOINT qx9_level%d"
                       : mode == Mode::Write ? "BEGIN IMMEDIATE"
                                             : "BEGIN",
                       level);
    if (!execute(s.db, sql.text)) {
        s.lostLevel = level;
        s.lostWhy = sqlite3_errmsg(s.db);
        s.recordFailure();
    }
    return transaction;
}

Connection::Transaction::Transaction(Transaction&& other) noexcept
    : state_(other.state_), level_(other.level_) {
    other.state_ = nullptr;
}

Connection::Transaction::~Transaction() {
    rollback();
}

bool Connection::Transaction::active() const noexcept {
    if (!state_ || level_ > state_->depth) return false;
    if (state_->lostLevel != 0 && state_->lostLevel <= level_) return false;
    return !sqlite3_get_autocommit(state_->db);
}

bool Connection::Transaction::commit() noexcept {
    if (!active() || level_ != state_->depth) return false;
    // A statement of this level (or of one it is part of) failed: what it did is not committed.
    if (state_->failedLevel != 0 && state_->failedLevel <= level_) return false;
    // A COMMIT that fails (an I/O error) leaves the transaction open; the end of the object
    // rolls it back.
    if (!execute(state_->db,
                 LevelSql(level_ == 1 ? "COMMIT" : "RELEASE qx9_level%d", level_).text)) {
        state_->recordFailure();
        return false;
    }
    state_->depth = level_ - 1;
    state_ = nullptr;
    return true;
}

void Connection::Transaction::rollback() noexcept {
    if (!state_) return;
    State& s = *state_;
    state_ = nullptr;
    if (level_ > s.depth) return;  // ended with an outer level
    const bool begun = (s.lostLevel == 0 || s.lostLevel > level_) && !sqlite3_get_autocommit(s.db);
    if (begun) {
        // Errors are ignored: there is nothing left to do about them, and SQLite has rolled
        // back itself when it refuses a ROLLBACK.
        execute(s.db,
                LevelSql(level_ == 1 ? "ROLLBACK" : "ROLLBACK TO qx9_level%d; RELEASE qx9_level%d",
                         level_)
                    .text);
    }
    s.depth = level_ - 1;
    if (s.lostLevel > s.depth) {
        s.lostLevel = 0;
        s.lostWhy.clear();
    }
    if (s.failedLevel > s.depth) s.failedLevel = 0;
}

}  // namespace qx9::sqlite
