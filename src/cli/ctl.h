#pragma once

#include <iostream>
#include <string>
#include <vector>

namespace qx9::ctl {

// qx9ctl with its arguments (without the program name); returns the exit status: 0 done, 1
// refused (or stored without being sent), 2 a command line that cannot be read.
int run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err, std::istream& in = std::cin);

}  // namespace qx9::ctl
