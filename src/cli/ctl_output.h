#pragma once

#include <ostream>
#include <string>
#include <utility>
#include <vector>

namespace qx9::ctl {

// Records printed as tab-separated lines (one record per line, fields in column order), or
// with --json as one JSON array of objects keyed by column name.
class Table {
public:
    explicit Table(std::vector<std::string> columns) : columns_(std::move(columns)) {}
    void add(std::vector<std::string> fields) { rows_.push_back(std::move(fields)); }
    void print(std::ostream& out, bool json) const;

private:
    std::vector<std::string> columns_;
    std::vector<std::vector<std::string>> rows_;
};

}  // namespace qx9::ctl
