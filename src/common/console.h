#pragma once

#include <ostream>
#include <sstream>

namespace qx9 {

// One line of the diagnostic console ("newArr-…", "init: connect success", …) in the making:
// what is streamed into it goes out whole when the statement ends, so that the lines of the
// keyboard's thread and of the window's never mix.
class ConsoleLine {
public:
    ConsoleLine() = default;
    ConsoleLine(const ConsoleLine&) = delete;
    ConsoleLine& operator=(const ConsoleLine&) = delete;
    ~ConsoleLine();

    template <typename T>
    ConsoleLine& operator<<(const T& value) {
        text_ << value;
        return *this;
    }

private:
    std::ostringstream text_;
};

// The diagnostic console: standard output unless a front end redirects it (qx9ctl sends it to
// standard error so that its own output stays clean).
inline ConsoleLine console() { return {}; }

// Redirects the console; nullptr restores standard output. Returns the previous stream.
std::ostream* setConsoleStream(std::ostream* stream);

}  // namespace qx9
