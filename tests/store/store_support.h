#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "store/device_sqlite.h"

struct sqlite3;

namespace qx9::test {

using Rows = std::vector<std::string>;

// Records as their table rows read with plain SQL ("SELECT *"): columns in table order, '|'.
std::string str(const ProfileKey& k);
std::string str(const MacroInfo& m);
std::string str(const RecordInfo& r);
std::string str(const UserLightData& s);
std::string str(const UserLightLEDData& l);
template <typename T>
Rows strs(const std::vector<T>& records) {
    Rows rows;
    for (const T& r : records) rows.push_back(str(r));
    return rows;
}
inline RecordInfo event(std::int64_t macro, std::int64_t type, std::int64_t index,
                        std::int64_t value) {
    return {0, macro, type, index, value, "e" + std::to_string(index)};
}

// A fresh directory under the temporary directory, removed with its contents.
class TempDir {
public:
    TempDir();
    ~TempDir() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }
    const std::filesystem::path& path() const { return path_; }
    std::filesystem::path operator/(const std::string& name) const { return path_ / name; }

private:
    std::filesystem::path path_;
};

// The tests' own view of a database file: plain SQL through the C API, not through the store.
class SqlFile {
public:
    explicit SqlFile(const std::filesystem::path& file);
    ~SqlFile();
    SqlFile(const SqlFile&) = delete;
    SqlFile& operator=(const SqlFile&) = delete;

    // Every row of a query, its columns as text joined by '|' (NULL reads "NULL").
    Rows rows(const std::string& sql) const;
    // The first row, or "" when there is none.
    std::string value(const std::string& sql) const {
        const Rows all = rows(sql);
        return all.empty() ? std::string() : all.front();
    }
    // Runs statements that must succeed (set-up of a test).
    void exec(const std::string& sql) const;
    // Names of the tables in their order of creation.
    Rows tables() const {
        return rows("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY rowid");
    }
    // Every row of every table, each as "table|columns…".
    Rows dump() const;
    // A trigger that refuses the statements `when` describes ("BEFORE INSERT ON t WHEN …"),
    // with RAISE(ABORT) or RAISE(ROLLBACK); allowAll() drops every one.
    void refuse(const std::string& when, const char* action = "ABORT");
    void allowAll();

private:
    sqlite3* db_ = nullptr;
    int triggers_ = 0;
};

// Collects the console lines for the life of the object.
class ConsoleCapture {
public:
    ConsoleCapture();
    ~ConsoleCapture();
    std::string text() const { return out_.str(); }
    void clear() { out_.str({}); }

private:
    std::ostringstream out_;
    std::ostream* previous_;
};

// Sets (or with nullopt unsets) an environment variable for the life of the object.
class EnvOverride {
public:
    EnvOverride(const char* name, const std::optional<std::string>& value);
    ~EnvOverride() { set(previous_); }

private:
    void set(const std::optional<std::string>& value);
    std::string name_;
    std::optional<std::string> previous_;
};

std::string fileBytes(const std::filesystem::path& file);

// A database file in a temporary directory, opened the way the application opens it, with the
// console captured from the start.
class StoreTest : public ::testing::Test {
protected:
    TempDir dir_;
    std::filesystem::path file_ = dir_ / "device.sqlite3";
    ConsoleCapture console_;
    DeviceSQLite db_ = DeviceSQLite::atPath(file_);
    SqlFile sql_{file_};
};

}  // namespace qx9::test
