#pragma once

#include <string_view>

namespace qx9 {

// A broken invariant (a value outside a byte, a key missing from a fixed table, a required
// store that is absent). Prints the message on standard error and aborts the process.
[[noreturn]] void fatalError(std::string_view message);

}  // namespace qx9
