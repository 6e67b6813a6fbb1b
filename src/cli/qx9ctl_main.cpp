#include <iostream>

#include "cli/ctl.h"

int main(int argc, char** argv) {
    return qx9::ctl::run(std::vector<std::string>(argv + 1, argv + argc), std::cout, std::cerr);
}
