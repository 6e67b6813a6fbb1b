#pragma once

#include <cstdint>
#include <string_view>

namespace qx9 {

// A stored configuration value: decimal text. An empty text counts as 0; anything that is not
// a plain decimal integer (a letter, a fraction, surrounding blanks) is a broken invariant and
// stops the program.
std::int64_t parseConfigInteger(std::string_view text, std::string_view key);

}  // namespace qx9
