#include "store/change_session.h"

#include <climits>

namespace qx9::sqlite {

namespace {

struct Freer {
    void operator()(void* p) const { sqlite3_free(p); }
};

std::optional<std::string> textOf(sqlite3_value* value) {
    if (!value || sqlite3_value_type(value) == SQLITE_NULL) return std::nullopt;
    const auto* chars = sqlite3_value_text(value);
    if (!chars) return std::nullopt;
    return std::string(reinterpret_cast<const char*>(chars), static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

struct ApplyContext {
    const ConflictRule* rule;
    bool conflict = false;
};

int onConflict(void* context, int kind, sqlite3_changeset_iter* row) {
    auto& c = *static_cast<ApplyContext*>(context);
    const char* table = nullptr;
    int columns = 0, op = 0, indirect = 0;
    if (sqlite3changeset_op(row, &table, &columns, &op, &indirect) != SQLITE_OK || !table) return SQLITE_CHANGESET_ABORT;
    const bool foundRow = kind == SQLITE_CHANGESET_DATA || kind == SQLITE_CHANGESET_CONFLICT;
    const ColumnText found = [&](int column) -> std::optional<std::string> {
        sqlite3_value* value = nullptr;
        if (!foundRow || column < 0 || column >= columns || sqlite3changeset_conflict(row, column, &value) != SQLITE_OK) {
            return std::nullopt;
        }
        return textOf(value);
    };
    const ColumnText change = [&](int column) -> std::optional<std::string> {
        if (column < 0 || column >= columns) return std::nullopt;
        sqlite3_value* value = nullptr;
        if (op != SQLITE_INSERT && sqlite3changeset_old(row, column, &value) == SQLITE_OK && value) return textOf(value);
        if (op != SQLITE_DELETE && sqlite3changeset_new(row, column, &value) == SQLITE_OK && value) return textOf(value);
        return std::nullopt;
    };
    const bool rowConflict = foundRow || kind == SQLITE_CHANGESET_NOTFOUND;
    const ConflictChoice choice = rowConflict && *c.rule ? (*c.rule)(table, found, change) : ConflictChoice::kStop;
    if (choice == ConflictChoice::kSkip) return SQLITE_CHANGESET_OMIT;
    if (choice == ConflictChoice::kReplace && foundRow) return SQLITE_CHANGESET_REPLACE;
    c.conflict = true;
    return SQLITE_CHANGESET_ABORT;
}

}  // namespace

ChangeSession::ChangeSession(sqlite3* db) {
    sqlite3_session* raw = nullptr;
    if (sqlite3session_create(db, "main", &raw) != SQLITE_OK) return;
    session_.reset(raw);
    if (sqlite3session_attach(raw, nullptr) != SQLITE_OK) session_.reset();
}

std::vector<unsigned char> ChangeSession::changes() const {
    if (!session_) return {};
    int size = 0;
    void* raw = nullptr;
    if (sqlite3session_changeset(session_.get(), &size, &raw) != SQLITE_OK) return {};
    const std::unique_ptr<void, Freer> owned(raw);
    const auto* bytes = static_cast<const unsigned char*>(raw);
    return bytes && size > 0 ? std::vector<unsigned char>(bytes, bytes + size) : std::vector<unsigned char>{};
}

ApplyResult applyChanges(sqlite3* db, std::span<const unsigned char> changes, bool inverse, const ConflictRule& rule) {
    if (changes.size() > INT_MAX) return ApplyResult::kFailed;
    void* data = const_cast<unsigned char*>(changes.data());
    int size = static_cast<int>(changes.size());
    std::unique_ptr<void, Freer> inverted;
    if (inverse) {
        void* raw = nullptr;
        if (sqlite3changeset_invert(size, data, &size, &raw) != SQLITE_OK) return ApplyResult::kFailed;
        inverted.reset(raw);
        data = raw;
    }
    ApplyContext context{&rule};
    const int rc = sqlite3changeset_apply(db, size, data, nullptr, onConflict, &context);
    if (rc == SQLITE_OK) return ApplyResult::kApplied;
    return context.conflict ? ApplyResult::kConflict : ApplyResult::kFailed;
}

}  // namespace qx9::sqlite
