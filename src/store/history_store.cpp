#include <fcntl.h>
#include <unistd.h>

#include <ctime>

#include "common/console.h"
#include "store/config_keys.h"
#include "store/device_sqlite.h"
#include "store/schema.h"

namespace qx9 {

namespace {

// The history's schema: a step and the changeset SQLite's session extension recorded for it.
constexpr const char* kCreateSteps = R"(CREATE TABLE IF NOT EXISTS history.step (
    id INTEGER PRIMARY KEY NOT NULL,
    done INTEGER NOT NULL,
    kind TEXT NOT NULL,
    args TEXT NOT NULL,
    blocks TEXT NOT NULL,
    time INTEGER NOT NULL,
    changes BLOB NOT NULL))";
constexpr const char* kStepColumns = "SELECT id, done, kind, args, blocks, time FROM history.step";
// Separates the arguments of a step in one column.
constexpr char kArgSeparator = '\x1f';
// Column of the configuration's key in t_configdata.
constexpr int kConfigKeyColumn = 1;

std::string joinArgs(const std::vector<std::string>& args) {
    std::string text;
    for (std::size_t i = 0; i < args.size(); ++i) {
        if (i) text += kArgSeparator;
        text += args[i];
    }
    return text;
}

std::vector<std::string> splitArgs(const std::string& text) {
    std::vector<std::string> args;
    if (text.empty()) return args;
    std::size_t start = 0;
    for (std::size_t at; (at = text.find(kArgSeparator, start)) != std::string::npos; start = at + 1) {
        args.push_back(text.substr(start, at - start));
    }
    args.push_back(text.substr(start));
    return args;
}

HistoryStep readStep(const sqlite::Statement& row) {
    HistoryStep step;
    step.id = row.integer(0);
    step.done = row.integer(1) != 0;
    step.name = {row.text(2), splitArgs(row.text(3))};
    step.blocks = row.text(4);
    step.time = row.integer(5);
    return step;
}

constexpr const char* kBookkeepingRows = "FROM t_configdata WHERE key IN (?1, ?2)";

bool bookkeeping(std::string_view table, const sqlite::ColumnText& row) {
    if (table != "t_configdata") return false;
    const std::optional<std::string> key = row(kConfigKeyColumn);
    return key && (*key == kKeyboardProfile || *key == kMacroDeletions);
}

// The rows that say what the keyboard was sent last are not the user's choice: a connection or a
// macro download writes them outside steps. An undo or redo goes over them, and leaves a row of
// the user's that took their place as it is; another row changed since stops it.
sqlite::ConflictChoice conflictChoice(std::string_view table, const sqlite::ColumnText& found,
                                      const sqlite::ColumnText& change) {
    if (bookkeeping(table, found)) return sqlite::ConflictChoice::kReplace;
    if (bookkeeping(table, change)) return sqlite::ConflictChoice::kSkip;
    return sqlite::ConflictChoice::kStop;
}

}  // namespace

DeviceSQLite::Transaction DeviceSQLite::beginStep() {
    if (!db_) return Transaction();
    const bool outermost = db_->transactionDepth() == 0;
    Transaction transaction(db_->begin());
    if (outermost && historyOpen_ && transaction.active()) {
        transaction.session_ = std::make_unique<sqlite::ChangeSession>(db_->handle());
        transaction.connection_ = &*db_;
    }
    return transaction;
}

bool DeviceSQLite::Transaction::commitStep(const HistoryStep& step) {
    if (session_ && connection_ && active()) {
        const std::vector<unsigned char> changes = session_->changes();
        if (!changes.empty()) {
            try {
                const sqlite::Connection& db = *connection_;
                db.run("DELETE FROM history.step WHERE done = 0");
                db.run("INSERT INTO history.step (done, kind, args, blocks, time, changes) VALUES (1, ?1, ?2, ?3, ?4, ?5)",
                       step.name.kind, joinArgs(step.name.args), step.blocks, static_cast<std::int64_t>(std::time(nullptr)),
                       sqlite::Blob{changes});
                db.run("DELETE FROM history.step WHERE id <= (SELECT max(id) FROM history.step) - ?1", kHistorySteps);
            } catch (const sqlite::Error& e) {
                console() << "history: step not recorded " << e.what() << '\n';
                return false;
            }
        }
    }
    return commit();
}

void DeviceSQLite::openHistory() {
    historyOpen_ = false;
    if (!db_ || db_->fileName().empty()) return;
    const std::string file = db_->fileName() + kHistorySuffix;
    // Recorded macros are keystrokes: the history is the user's alone, as the database is.
    if (const int fd = ::open(file.c_str(), O_WRONLY | O_CREAT | O_CLOEXEC, 0600); fd >= 0) ::close(fd);
    try {
        db_->run("ATTACH DATABASE ?1 AS history", file);
    } catch (const sqlite::Error& e) {
        console() << "history: cannot open " << file << ": " << e.what() << '\n';
        return;
    }
    try {
        // As the database: a commit appends to a log. Not waited for while another program has
        // the file open; it is in that mode already once one program has switched it.
        db_->run("PRAGMA history.journal_mode=WAL");
        db_->run("PRAGMA history.synchronous=NORMAL");
    } catch (const sqlite::Error&) {
    }
    try {
        if (!db_->hasRow("SELECT 1 FROM history.sqlite_master WHERE name = 'step'")) db_->run(kCreateSteps);
        historyOpen_ = true;
    } catch (const sqlite::Error& e) {
        // A damaged history costs the undo, never the changes: it is left out.
        console() << "history: cannot use " << file << ": " << e.what() << '\n';
        try {
            db_->run("DETACH DATABASE history");
        } catch (const sqlite::Error&) {
        }
    }
}

std::vector<HistoryStep> DeviceSQLite::readHistory() const {
    std::vector<HistoryStep> steps;
    if (!db_ || !historyOpen_) return steps;
    try {
        auto row = db_->query(std::string(kStepColumns) + " ORDER BY id DESC");
        row.appendRowsTo(steps, readStep);
    } catch (const sqlite::Error& e) {
        console() << "history: cannot read " << e.what() << '\n';
    }
    return steps;
}

namespace {

std::optional<HistoryStep> oneStep(const std::optional<sqlite::Connection>& db, bool open, const std::string& where) {
    if (!db || !open) return std::nullopt;
    try {
        auto row = db->query(std::string(kStepColumns) + where);
        if (row.step()) return readStep(row);
    } catch (const sqlite::Error& e) {
        console() << "history: cannot read " << e.what() << '\n';
    }
    return std::nullopt;
}

}  // namespace

std::optional<HistoryStep> DeviceSQLite::stepToUndo() const {
    return oneStep(db_, historyOpen_, " WHERE done = 1 ORDER BY id DESC LIMIT 1");
}

std::optional<HistoryStep> DeviceSQLite::stepToRedo() const {
    return oneStep(db_, historyOpen_, " WHERE done = 0 ORDER BY id ASC LIMIT 1");
}

StepResult DeviceSQLite::undoStep(HistoryStep& step) { return moveStep(true, step); }
StepResult DeviceSQLite::redoStep(HistoryStep& step) { return moveStep(false, step); }

StepResult DeviceSQLite::moveStep(bool undo, HistoryStep& step) {
    if (!db_ || !historyOpen_) return StepResult::kNoHistory;
    try {
        std::optional<HistoryStep> found = undo ? stepToUndo() : stepToRedo();
        if (!found) return StepResult::kNone;
        step = std::move(*found);
        auto row = db_->query("SELECT changes FROM history.step WHERE id = ?1", step.id);
        if (!row.step()) return StepResult::kFailed;
        const std::vector<unsigned char> changes = row.blob(0);
        switch (sqlite::applyChanges(db_->handle(), changes, undo, conflictChoice)) {
            case sqlite::ApplyResult::kApplied: break;
            case sqlite::ApplyResult::kConflict: return StepResult::kConflict;
            case sqlite::ApplyResult::kFailed: return StepResult::kFailed;
        }
        // One row of each at most: the newest.
        db_->run(std::string("DELETE ") + kBookkeepingRows +
                     " AND keyId NOT IN (SELECT max(keyId) FROM t_configdata WHERE key IN (?1, ?2) GROUP BY key, profId)",
                 kKeyboardProfile, kMacroDeletions);
        db_->run("UPDATE history.step SET done = ?1 WHERE id = ?2", std::int64_t{undo ? 0 : 1}, step.id);
        step.done = !undo;
        return StepResult::kDone;
    } catch (const sqlite::Error& e) {
        console() << "history: " << (undo ? "undo" : "redo") << " failed " << e.what() << '\n';
        return StepResult::kFailed;
    }
}

void DeviceSQLite::clearTables() {
    for (const char* table : schema::dropOrder()) {
        if (!db_) return;
        try {
            db_->run(std::string("DELETE FROM \"") + table + '"');
        } catch (const sqlite::Error&) {
            return;  // dropTable meets the same table and says why
        }
    }
}

}  // namespace qx9
