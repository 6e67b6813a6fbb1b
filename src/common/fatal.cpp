#include "common/fatal.h"

#include <cstdio>
#include <cstdlib>

namespace qx9 {

void fatalError(std::string_view message) {
    std::fprintf(stderr, "fatal error: %.*s\n", static_cast<int>(message.size()), message.data());
    std::fflush(stderr);
    std::abort();
}

}  // namespace qx9
