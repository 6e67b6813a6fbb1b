#pragma once

#include <cstdint>
#include <string_view>

namespace qx9 {

// A stored configuration value: decimal text. An empty text counts as 0. A text that is not a
// plain decimal integer (a letter, a fraction, surrounding blanks), or one outside
// [minimum, maximum], is a damaged value: it counts as 0, with a console line.
std::int64_t parseConfigInteger(std::string_view text, std::string_view key, std::int64_t minimum,
                                std::int64_t maximum);

}  // namespace qx9
