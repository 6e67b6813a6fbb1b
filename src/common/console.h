#pragma once

#include <ostream>

namespace qx9 {

// The diagnostic console ("newArr-…", "init: connect success", …). Standard output unless
// a front end redirects it (qx9ctl sends it to standard error so that its own output stays clean).
std::ostream& console();

// Redirects the console; nullptr restores standard output. Returns the previous stream.
std::ostream* setConsoleStream(std::ostream* stream);

}  // namespace qx9
