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

// What to do with a row that is not as the changeset expects it.
enum class ConflictChoice {
    kStop,     // nothing is applied (kConflict)
    kSkip,     // the change of that row is left out
    kReplace,  // the change is applied over the row found
};
// A column of a row as text: none when the row does not hold it (a change holds the key and the
// columns it changes).
using ColumnText = std::function<std::optional<std::string>(int column)>;
// Decides for a row of `table`: `found` reads the row in the database (none for a row not found),
// `change` the row as the change has it.
using ConflictRule = std::function<ConflictChoice(std::string_view table, const ColumnText& found, const ColumnText& change)>;

// Applies `changes` (or their inverse) to `db`'s main database, all or nothing; a row that is not
// as the changeset expects it is decided by `rule`.
ApplyResult applyChanges(sqlite3* db, std::span<const unsigned char> changes, bool inverse, const ConflictRule& rule);

}  // namespace qx9::sqlite
