#pragma once

#include <memory>
#include <ostream>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>

#include "cli/ctl_device.h"
#include "cli/ctl_output.h"
#include "hid/device_comm.h"
#include "hid/wire_log.h"
#include "sender/keyboard_sender.h"
#include "ops/target.h"
#include "store/device_sqlite.h"

namespace qx9::ctl {

// A refused command: one line on standard error, exit status 1. (A command line that cannot be
// read never reaches a command: CLI11 refuses it with status 2.)
struct UsageError {
    std::string message;
};

struct Options {
    std::string db;
    std::string device = "auto";
    std::string wire;
    bool json = false;
    bool header = false;
    bool verbose = false;
};

// What one qx9ctl run works on. The database and the transport are opened when a command first
// needs them, and a command opens nothing else.
class Context {
public:
    Context(Options options, std::istream& in, std::ostream& out, std::ostream& err)
        : options(std::move(options)), in(in), out(out), err(err) {}

    Options options;
    std::istream& in;
    std::ostream& out;
    std::ostream& err;
    std::shared_ptr<WireSink> wire;
    bool sends = false;  // the command writes to the keyboard

    // The keyboard --device names, opened on first use; one that cannot be used is a UsageError.
    OpenedDevice& keyboard();
    bool hasKeyboard() const { return device_.record.device != nullptr; }
    Format format() const { return {options.json, options.header}; }
    // The database, opened on first use, with the interface language it stores applied to the
    // texts the commands store; a file that cannot be opened or read is a UsageError.
    DeviceSQLite& database();
    // The database and, when a keyboard is attached, its transport; marks the command as one
    // that sends.
    ops::Target target();
    // Why the database did not take the last change, for the message (empty: no cause known).
    std::string storeCause() const;

private:
    OpenedDevice device_;
    bool deviceOpened_ = false;
    std::unique_ptr<DeviceSQLite> db_;
    std::unique_ptr<DeviceComm> comm_;
    std::unique_ptr<DirectSender> sender_;
};

// Throws the outcome's reason as a UsageError unless it is done.
void check(const ops::Outcome& outcome);

// A command's arguments as the parse read them (each already in its canonical form).
inline std::string text(const CLI::App& a, const char* name) { return a[name]->as<std::string>(); }
inline std::int64_t number(const CLI::App& a, const char* name) { return a[name]->as<std::int64_t>(); }
inline bool given(const CLI::App& a, const char* name) { return a[name]->count() > 0; }

// Existing profiles and macros by id (refused: status 1).
std::int64_t existingProfile(Context& c, std::int64_t id);
std::int64_t existingMacro(Context& c, std::int64_t id);
// What a write did: with --json, a table as printed by its `list` or `show`, or one record as an
// object; the `add` commands print their record always.
void printResult(Context& c, const Table& table);
void printRecord(Context& c, const Table& record, bool always = false);
// What `settings show` prints (connect, import and reset-all print it too).
Table settingsTable(Context& c);

}  // namespace qx9::ctl
