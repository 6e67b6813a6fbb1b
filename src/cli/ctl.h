#pragma once

#include <ostream>
#include <string>
#include <vector>

namespace qx9::ctl {

// qx9ctl with its arguments (without the program name); returns the exit status.
int run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err);

}  // namespace qx9::ctl
