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

struct TextOf {
    std::string operator()(const std::string& text) const { return escapedField(text); }
    std::string operator()(std::int64_t number) const { return std::to_string(number); }
    std::string operator()(bool mark) const { return mark ? "*" : ""; }
};

nlohmann::ordered_json object(const std::vector<std::string>& columns, const std::vector<Field>& row) {
    nlohmann::ordered_json object = nlohmann::ordered_json::object();
    for (std::size_t i = 0; i < columns.size() && i < row.size(); ++i) {
        std::visit([&](const auto& v) { object[columns[i]] = v; }, row[i].value());
    }
    return object;
}

void printLine(std::ostream& out, const std::vector<Field>& row) {
    for (std::size_t i = 0; i < row.size(); ++i) out << (i ? "\t" : "") << std::visit(TextOf{}, row[i].value());
    out << '\n';
}

// Names are kept byte for byte in the database; bytes that are not UTF-8 show as U+FFFD.
void printJson(std::ostream& out, const nlohmann::ordered_json& value) {
    out << value.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) << '\n';
}

void printHeader(std::ostream& out, const std::vector<std::string>& columns, Format format) {
    if (!format.header) return;
    for (std::size_t i = 0; i < columns.size(); ++i) out << (i ? "\t" : "") << columns[i];
    out << '\n';
}

}  // namespace

void Table::print(std::ostream& out, Format format) const {
    if (format.json) {
        nlohmann::ordered_json array = nlohmann::ordered_json::array();
        for (const auto& row : rows_) array.push_back(object(columns_, row));
        printJson(out, array);
        return;
    }
    printHeader(out, columns_, format);
    for (const auto& row : rows_) printLine(out, row);
}

void Table::printObject(std::ostream& out, Format format) const {
    if (rows_.empty()) return;
    if (format.json) return printJson(out, object(columns_, rows_.front()));
    printHeader(out, columns_, format);
    printLine(out, rows_.front());
}

}  // namespace qx9::ctl
