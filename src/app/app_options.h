#pragma once

#include <string>

namespace qx9 {

// What the command line asked of the application.
struct AppOptions {
    bool virtualKeyboard = false;  // --virtual: a virtual QX9 is attached as if plugged in
    std::string virtualState;      // --virtual=STATE.json: its memory lives in that file
    std::string database;          // --db FILE: another database file
    bool noMonitor = false;        // --no-monitor: do not watch udev (tests)
    // The keyboard is written from a thread of its own; off only to measure the difference.
    bool sendOnWorker = true;
};

// Parses the arguments after the program name; false with `error` set on a bad argument.
bool parseAppOptions(int argc, char** argv, AppOptions& options, std::string& error);

}  // namespace qx9
