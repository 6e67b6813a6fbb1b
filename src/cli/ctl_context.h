#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include "cli/ctl_device.h"
#include "hid/device_comm.h"
#include "hid/wire_log.h"
#include "sender/keyboard_sender.h"
#include "ops/target.h"
#include "store/device_sqlite.h"

namespace qx9::ctl {

// A refused command: one line on standard error, exit status 1; a command line that cannot be
// read: status 2; status 0 when the run ends early with nothing wrong (--help, --version).
struct UsageError {
    std::string message;
    int status = 1;
};
// A command line of the wrong shape (a missing argument, an unknown subcommand): status 2.
inline UsageError usageError(std::string message) { return {std::move(message), 2}; }

struct Options {
    std::string db;
    std::string device = "auto";
    std::string wire;
    bool json = false;
    bool verbose = false;
    std::vector<std::string> command;
};

// What one qx9ctl run works on. The database and the transport are opened when a command first
// needs them, and a command opens nothing else.
class Context {
public:
    Context(Options options, std::ostream& out, std::ostream& err) : options(std::move(options)), out(out), err(err) {}

    Options options;
    std::ostream& out;
    std::ostream& err;
    OpenedDevice device;
    std::shared_ptr<WireSink> wire;
    bool sends = false;  // the command writes to the keyboard

    bool hasKeyboard() const { return device.record.device != nullptr; }
    // The database, opened on first use, with the interface language it stores applied to the
    // texts the commands store; a file that cannot be opened or read is a UsageError.
    DeviceSQLite& database();
    // The database and, when a keyboard is attached, its transport; marks the command as one
    // that sends.
    ops::Target target();
    // Why the database did not take the last change, for the message (empty: no cause known).
    std::string storeCause() const;

private:
    std::unique_ptr<DeviceSQLite> db_;
    std::unique_ptr<DeviceComm> comm_;
    std::unique_ptr<DirectSender> sender_;
};

// Throws the outcome's reason as a UsageError unless it is done.
void check(const ops::Outcome& outcome);

// Commands (args without the command's own name).
void cmdDevices(Context& c, const std::vector<std::string>& args);
void cmdConnect(Context& c, const std::vector<std::string>& args);
void cmdProfile(Context& c, const std::vector<std::string>& args);
void cmdKey(Context& c, const std::vector<std::string>& args);       // ctl_keys.cpp
void cmdFnMode(Context& c, const std::vector<std::string>& args);
void cmdSettings(Context& c, const std::vector<std::string>& args);
void cmdKeyboardState(Context& c, const std::vector<std::string>& args);
void cmdMacro(Context& c, const std::vector<std::string>& args);      // ctl_macros.cpp
void cmdLight(Context& c, const std::vector<std::string>& args);      // ctl_lighting.cpp
void cmdUserLight(Context& c, const std::vector<std::string>& args);  // ctl_userlight.cpp
void cmdExport(Context& c, const std::vector<std::string>& args);     // ctl_export.cpp
void cmdImport(Context& c, const std::vector<std::string>& args);     // ctl_export.cpp

// Parsing helpers; each throws UsageError with a clear message.
std::int64_t parseInteger(const std::string& text, const std::string& what);
std::int64_t parseInRange(const std::string& text, const std::string& what, std::int64_t lo, std::int64_t hi);
std::int64_t parseProfile(Context& c, const std::string& text);  // an existing profile id
// A key by name (a, escape, leftWin, i1 …) or code: its code, when the code map has it.
// `example` is the key name the error message gives as an example.
std::int64_t parseKeyCode(const std::string& text, const char* example = "leftWin");
bool parseOnOff(const std::string& text, const std::string& what);
void expectArgs(const std::vector<std::string>& args, std::size_t n, const std::string& usage);
void printRecord(Context& c, std::int64_t id, const std::string& name);

}  // namespace qx9::ctl
