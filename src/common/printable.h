#pragma once

#include <string>
#include <string_view>

namespace qx9 {

// A message that may quote input, safe to print on one line of a terminal: control characters
// (C0, DEL and the UTF-8 encoded C1 range, which carry terminal escapes) are written as \n, \t,
// \r, \e or \xHH / \u00HH; every other byte is kept.
std::string printable(std::string_view text);

}  // namespace qx9
