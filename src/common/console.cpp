#include "common/console.h"

#include <atomic>
#include <iostream>

namespace qx9 {

namespace {
std::atomic<std::ostream*> g_console{nullptr};
}

std::ostream& console() {
    std::ostream* s = g_console.load();
    return s ? *s : std::cout;
}

std::ostream* setConsoleStream(std::ostream* stream) { return g_console.exchange(stream); }

}  // namespace qx9
