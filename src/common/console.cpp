#include "common/console.h"

#include <iostream>
#include <mutex>

namespace qx9 {

namespace {
std::mutex g_mutex;  // one line at a time, to whichever stream
std::ostream* g_console = nullptr;
}  // namespace

ConsoleLine::~ConsoleLine() {
    std::lock_guard lock(g_mutex);
    (g_console ? *g_console : std::cout) << text_.str();
}

std::ostream* setConsoleStream(std::ostream* stream) {
    std::lock_guard lock(g_mutex);
    std::ostream* previous = g_console;
    g_console = stream;
    return previous;
}

}  // namespace qx9
