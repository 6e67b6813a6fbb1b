#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "cli/ctl_device.h"
#include "session/keyboard_session.h"

namespace qx9::ctl {

// A bad command line or a refused command: one line on standard error, exit status 1.
struct UsageError {
    std::string message;
};

struct Options {
    std::string db;
    std::string device = "auto";
    std::string wire;
    bool json = false;
    bool verbose = false;
    std::vector<std::string> command;
};

// The warnings the session shows as sheets; qx9ctl reports the first as its error.
class CtlEvents final : public SessionEvents {
public:
    void warning(const std::string& message, const std::string& informative) override {
        if (warnings.empty()) warnings.push_back(message + ": " + informative);
    }
    std::vector<std::string> warnings;
};

struct Context {
    Options options;
    std::ostream& out;
    std::ostream& err;
    OpenedDevice device;
    CtlEvents events;
    std::unique_ptr<KeyboardSession> session;
    bool sends = false;  // the command writes to the keyboard

    bool hasKeyboard() const { return device.record.device != nullptr; }
};

// Commands (args without the command's own name).
void cmdDevices(Context& c, const std::vector<std::string>& args);
void cmdConnect(Context& c, const std::vector<std::string>& args);
void cmdProfile(Context& c, const std::vector<std::string>& args);
void cmdKey(Context& c, const std::vector<std::string>& args);
void cmdFnMode(Context& c, const std::vector<std::string>& args);
void cmdSettings(Context& c, const std::vector<std::string>& args);
void cmdKeyboardState(Context& c, const std::vector<std::string>& args);
void cmdMacro(Context& c, const std::vector<std::string>& args);      // ctl_macros.cpp
void cmdLight(Context& c, const std::vector<std::string>& args);      // ctl_lighting.cpp
void cmdUserLight(Context& c, const std::vector<std::string>& args);  // ctl_userlight.cpp
void cmdExport(Context& c, const std::vector<std::string>& args);     // ctl_export.cpp
void cmdImport(Context& c, const std::vector<std::string>& args);     // ctl_export.cpp

// Opens the database and the keyboard as the first connection does, sending nothing.
void openSession(Context& c);

// Parsing helpers; each throws UsageError with a clear message.
std::int64_t parseInteger(const std::string& text, const std::string& what);
std::int64_t parseProfile(Context& c, const std::string& text);  // an existing profile id
int profileRow(Context& c, std::int64_t profileId);

}  // namespace qx9::ctl
