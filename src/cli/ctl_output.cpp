#include "cli/ctl_output.h"

#include <nlohmann/json.hpp>

namespace qx9::ctl {

void Table::print(std::ostream& out, bool json) const {
    if (json) {
        nlohmann::json array = nlohmann::json::array();
        for (const auto& row : rows_) {
            nlohmann::json object = nlohmann::json::object();
            for (std::size_t i = 0; i < columns_.size() && i < row.size(); ++i) object[columns_[i]] = row[i];
            array.push_back(std::move(object));
        }
        out << array.dump(2) << '\n';
        return;
    }
    for (const auto& row : rows_) {
        for (std::size_t i = 0; i < row.size(); ++i) out << (i ? "\t" : "") << row[i];
        out << '\n';
    }
}

}  // namespace qx9::ctl
