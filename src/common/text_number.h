#pragma once

#include <cstdint>
#include <string_view>

namespace qx9 {

// The integer at the start of a text as a number field reads it: leading blanks, an optional
// sign, then digits; "12abc" is 12, "abc" is 0. Saturates at the limits of a 64-bit integer.
std::int64_t leadingInteger(std::string_view text);

}  // namespace qx9
