#pragma once

#include <span>
#include <string>
#include <string_view>

namespace qx9::detail {

// One text of a string table.
struct TextRow {
    int id;
    const char* text;
};

// The lookup rules shared by the three tables: `lan` holds the ids of `getLan`, `lan2` those
// of `getLan2`, and `tag` is the table's stand-in for a missing text.
std::string lookupLan(std::span<const TextRow> lan, std::span<const TextRow> lan2,
                      std::string_view tag, int id);
std::string lookupLan2(std::span<const TextRow> lan2, std::string_view tag, int id);

}  // namespace qx9::detail
