#include "cli/ctl_output.h"

#include <nlohmann/json.hpp>

namespace qx9::ctl {

namespace {

// A field of a tab-separated record: a tab, a line break or a backslash in it is written as
// \t, \n, \r or \\, so that a name can never split or forge a record.
std::string escapedField(const std::string& field) {
    std::string out;
    out.reserve(field.size());
    for (char c : field) {
        switch (c) {
            case '\t': out += "\\t"; break;
            case '\n': out += "\\n"; break;
            case '\r': out += "\\r"; break;
            case '\\': out += "\\\\"; break;
            default: out += c;
        }
    }
    return out;
}

}  // namespace

void Table::print(std::ostream& out, bool json) const {
    if (json) {
        nlohmann::json array = nlohmann::json::array();
        for (const auto& row : rows_) {
            nlohmann::json object = nlohmann::json::object();
            for (std::size_t i = 0; i < columns_.size() && i < row.size(); ++i) object[columns_[i]] = row[i];
            array.push_back(std::move(object));
        }
        // Names are kept byte for byte in the database; bytes that are not UTF-8 show as U+FFFD.
        out << array.dump(2, ' ', false, nlohmann::json::error_handler_t::replace) << '\n';
        return;
    }
    for (const auto& row : rows_) {
        for (std::size_t i = 0; i < row.size(); ++i) out << (i ? "\t" : "") << escapedField(row[i]);
        out << '\n';
    }
}

}  // namespace qx9::ctl
