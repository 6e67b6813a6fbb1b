#pragma once

#include <concepts>
#include <cstdint>
#include <ostream>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace qx9::ctl {

// One field of a record: a text, a number, or a mark (tab-separated "*" or nothing, in JSON
// true or false).
class Field {
public:
    using Value = std::variant<std::string, std::int64_t, bool>;
    Field(std::string text) : value_(std::move(text)) {}
    Field(const char* text) : value_(std::string(text)) {}
    template <std::integral T>
        requires(!std::same_as<T, bool> && !std::same_as<T, char>)
    Field(T number) : value_(static_cast<std::int64_t>(number)) {}
    static Field mark(bool on) {
        Field f("");
        f.value_ = on;
        return f;
    }
    const Value& value() const { return value_; }

private:
    Value value_;
};

// How records are printed: tab-separated (with `header`, the column names first) or JSON.
struct Format {
    bool json = false;
    bool header = false;
};

// Records printed as tab-separated lines (one record per line, fields in column order), or
// with --json as one JSON array of objects keyed by column name.
class Table {
public:
    explicit Table(std::vector<std::string> columns) : columns_(std::move(columns)) {}
    void add(std::vector<Field> fields) { rows_.push_back(std::move(fields)); }
    void print(std::ostream& out, Format format) const;
    // The first record alone: its line, or in JSON one object.
    void printObject(std::ostream& out, Format format) const;
    bool empty() const { return rows_.empty(); }

private:
    std::vector<std::string> columns_;
    std::vector<std::vector<Field>> rows_;
};

}  // namespace qx9::ctl
