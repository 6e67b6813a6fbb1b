#pragma once

#include <sqlite3.h>

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx9::sqlite {

// The rows a transaction changes in the main database, recorded as SQLite's session extension
// records them: a changeset that can be inverted and applied again. Ends before the connection.
class ChangeSession {
public:
    // Records every table of `db`'s main database from now on; without a session (SQLite could
    // not make one) nothing is recorded and changes() is empty.
    explicit ChangeSession(sqlite3* db);

    // While paused, the rows written are not recorded (values that are not the user's: what the
    // keyboard was sent last).
    void pause(bool paused);
    bool recording() const { return session_ != nullptr; }
    // The net changes so far; empty when nothing changed or the changes could not be read.
    std::vector<unsigned char> changes() const;

private:
    struct Deleter {
        void operator()(sqlite3_session* session) const { sqlite3session_delete(session); }
    };
    std::unique_ptr<sqlite3_session, Deleter> session_;
};

// How applying a changeset ended.
enum class ApplyResult {
    kApplied,
    kConflict,  // a row was not as the changeset found it: nothing was applied
    kFailed,    // the changeset could not be read or written: nothing was applied
};

// Applies `changes` (or their inverse) to `db`'s main database, all or nothing. A row that is not
// as the changeset expects it stops it (kConflict), unless `ignorable(table, text)` says the row
// is one to leave as it is; `text(column)` reads a column of the row as found, or else as the
// change has it (none when neither holds it).
using ColumnText = std::function<std::optional<std::string>(int column)>;
using IgnorableRow = std::function<bool(std::string_view table, const ColumnText& text)>;
ApplyResult applyChanges(sqlite3* db, std::span<const unsigned char> changes, bool inverse,
                         const IgnorableRow& ignorable);

}  // namespace qx9::sqlite
