#include "store_support.h"

#include <sqlite3.h>
#include <stdlib.h>

#include <fstream>
#include <iterator>

#include "common/console.h"

namespace qx9::test {

namespace {

template <typename... Fields>
std::string joined(const Fields&... fields) {
    std::ostringstream out;
    const char* separator = "";
    ((out << separator << fields, separator = "|"), ...);
    return out.str();
}

}  // namespace

std::string str(const ProfileKey& k) {
    return joined(k.keyId, k.profId, k.fnlayerId, k.keyValue, k.macroType, k.macroValue,
                  k.macro2Value, k.macro3Value, k.macroDesc);
}

std::string str(const MacroInfo& m) {
    return joined(m.macroId, m.playTimes, m.delayType, m.delayTime, m.macroName);
}

std::string str(const RecordInfo& r) {
    return joined(r.recordId, r.macroId, r.recordType, r.recordIndex, r.recordDesc, r.recordValue);
}

std::string str(const UserLightData& s) {
    return joined(s.userlight_id, s.profile_id, s.userlight_name, s.speed, s.brightness);
}

std::string str(const UserLightLEDData& l) {
    return joined(l.led_id, l.userlight_id, l.key_value, l.key_rgbvalue);
}

TempDir::TempDir() {
    std::string pattern = (std::filesystem::temp_directory_path() / "qx9-store-XXXXXX").string();
    if (!mkdtemp(pattern.data())) ADD_FAILURE() << "mkdtemp failed for " << pattern;
    path_ = pattern;
}

SqlFile::SqlFile(const std::filesystem::path& file) {
    if (sqlite3_open_v2(file.c_str(), &db_, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr) !=
        SQLITE_OK) {
        ADD_FAILURE() << "cannot open " << file << ": " << sqlite3_errmsg(db_);
    }
}

SqlFile::~SqlFile() {
    sqlite3_close_v2(db_);
}

Rows SqlFile::rows(const std::string& sql) const {
    Rows result;
    sqlite3_stmt* stmt = nullptr;
    if (sqlite3_prepare_v2(db_, sql.c_str(), -1, &stmt, nullptr) != SQLITE_OK) {
        ADD_FAILURE() << sql << ": " << sqlite3_errmsg(db_);
        return result;
    }
    while (sqlite3_step(stmt) == SQLITE_ROW) {
        std::string row;
        for (int i = 0; i < sqlite3_column_count(stmt); ++i) {
            const auto* text = sqlite3_column_text(stmt, i);
            if (i) row += '|';
            row += text ? reinterpret_cast<const char*>(text) : "NULL";
        }
        result.push_back(row);
    }
    sqlite3_finalize(stmt);
    return result;
}

void SqlFile::exec(const std::string& sql) const {
    char* error = nullptr;
    if (sqlite3_exec(db_, sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
        ADD_FAILURE() << sql << ": " << (error ? error : "");
    }
    sqlite3_free(error);
}

Rows SqlFile::dump() const {
    Rows all;
    for (const std::string& table : tables()) {
        for (const std::string& row : rows("SELECT * FROM \"" + table + "\" ORDER BY rowid")) {
            all.push_back(table + "|" + row);
        }
    }
    return all;
}

void SqlFile::refuse(const std::string& when, const char* action) {
    exec("CREATE TRIGGER refuse" + std::to_string(++triggers_) + " " + when +
         " BEGIN SELECT RAISE(" + action + ", 'refused'); END");
}

void SqlFile::allowAll() {
    for (; triggers_ > 0; --triggers_) exec("DROP TRIGGER refuse" + std::to_string(triggers_));
}

ConsoleCapture::ConsoleCapture() : previous_(setConsoleStream(&out_)) {}

ConsoleCapture::~ConsoleCapture() {
    setConsoleStream(previous_);
}

EnvOverride::EnvOverride(const char* name, const std::optional<std::string>& value) : name_(name) {
    if (const char* old = std::getenv(name)) previous_ = old;
    set(value);
}

void EnvOverride::set(const std::optional<std::string>& value) {
    value ? setenv(name_.c_str(), value->c_str(), 1) : unsetenv(name_.c_str());
}

std::string fileBytes(const std::filesystem::path& file) {
    std::ifstream in(file, std::ios::binary);
    return std::string(std::istreambuf_iterator<char>(in), {});
}

}  // namespace qx9::test
