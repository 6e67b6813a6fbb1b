#pragma once

#include <string>

namespace qx9 {

// What the command line asked of the application.
struct AppOptions {
    bool virtualKeyboard = false;  // --virtual: a virtual QX9 is attached as if plugged in
    std::string virtualState;      // --virtual=STATE.json: its memory lives in that file
    std::string database;          // --db FILE: another database file
    bool noMonitor = false;        // --no-monitor: do not watch udev (tests)
    bool hidden = false;           // --hidden: in the tray only, the window shown from there
    bool verbose = false;          // --verbose (or QX9_VERBOSE=1): the diagnostic lines on standard output
    // The keyboard is written from a thread of its own; off only to measure the difference.
    bool sendOnWorker = true;
};

// How reading the command line ended: run with the options, or stop at once with `text` on
// standard output (--help, --version, status 0) or standard error (a bad argument, status 2).
struct OptionsResult {
    enum Action { kRun, kPrint, kRefuse } action = kRun;
    std::string text;
};

// Reads the arguments after the program name (Qt's own -platform, -style and -display included).
OptionsResult parseAppOptions(int argc, char** argv, AppOptions& options);

}  // namespace qx9
