#include "store/sqlite_handle.h"

#include <unistd.h>

#include <climits>

namespace qx9::sqlite {

namespace {

// Another process (qx9ctl beside the application) may hold the file for a moment.
constexpr int kBusyTimeoutMs = 1000;

}  // namespace

Statement::Statement(sqlite3* db, std::string_view sql) : db_(db) {
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

void Statement::bindOne(int index, std::int64_t value) {
    if (sqlite3_bind_int64(stmt_.get(), index, value) != SQLITE_OK) fail();
}

void Statement::bindOne(int index, std::string_view value) {
    if (value.size() > INT_MAX) throw Error("string or blob too big");
    if (sqlite3_bind_text(stmt_.get(), index, value.data(), static_cast<int>(value.size()),
                          SQLITE_TRANSIENT) != SQLITE_OK) {
        fail();
    }
}

void Statement::fail() const {
    throw Error(sqlite3_errmsg(db_));
}

namespace {

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
    // A file we may read but not write is opened read-only and as unchanging: SQLite can then
    // read it even in write-ahead-log mode, whose shared-memory file it could not create.
    const bool readOnly = ::access(path.c_str(), F_OK) == 0 && ::access(path.c_str(), W_OK) != 0;
    const int rc = readOnly ? sqlite3_open_v2(immutableUri(path).c_str(), &raw,
                                              SQLITE_OPEN_READONLY | SQLITE_OPEN_URI, nullptr)
                            : sqlite3_open_v2(path.c_str(), &raw,
                                              SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    Connection connection(raw);
    if (rc != SQLITE_OK) throw Error(raw ? sqlite3_errmsg(raw) : sqlite3_errstr(rc));
    sqlite3_busy_timeout(raw, kBusyTimeoutMs);
    // Every store operation is its own commit; with a write-ahead log a commit costs one sync
    // of the log instead of several of the file, and stays just as durable. A file that cannot
    // take the log (read-only, not a database) keeps its journal and fails where it would have.
    if (!readOnly) sqlite3_exec(raw, "PRAGMA journal_mode=WAL", nullptr, nullptr, nullptr);
    return connection;
}

}  // namespace qx9::sqlite
