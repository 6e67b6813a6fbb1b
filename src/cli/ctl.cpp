#include "cli/ctl.h"

#include <cctype>
#include <charconv>
#include <fstream>
#include <map>
#include <sstream>

#include <CLI/CLI.hpp>

#include "cli/ctl_context.h"
#include "common/printable.h"
#include "common/private_file.h"
#include "cli/ctl_output.h"
#include "common/console.h"
#include "hid/wire_log.h"
#include "i18n/language.h"
#include "layout/key_maps.h"
#include "ops/profiles.h"
#include "ops/settings.h"

namespace qx9::ctl {

namespace {

const char* const kSynopsis =
    "[--db FILE] [--device auto|virtual|virtual:STATE.json|/dev/hidrawN]\n"
    "              [--wire FILE|-] [--json] [--verbose] COMMAND ...";

// Every command and subcommand: its words, what follows them, and what it does.
struct CommandHelp {
    const char* path;
    const char* synopsis;
    const char* about;
};
const CommandHelp kCommands[] = {
    {"devices", "", "The QX9's interfaces on this machine and whether this user can open them"},
    {"connect", "", "Send the stored configuration, as the window does when the keyboard appears"},
    {"profile", "list | add | rename ID NAME | delete ID | select ID", "Configuration profiles"},
    {"profile list", "", "The profiles"},
    {"profile add", "", "Add a profile with the next free name"},
    {"profile rename", "ID NAME", "Rename a profile"},
    {"profile delete", "ID", "Delete a profile (not the last one)"},
    {"profile select", "ID", "Make a profile the keyboard's and send its key map and lighting"},
    {"key", "list PROFILE LAYER | set PROFILE LAYER KEY FUNCTION", "Key assignments (LAYER 0 is the base, 1 Fn)"},
    {"key list", "PROFILE LAYER", "The assignments of a profile's layer"},
    {"key set",
     "PROFILE LAYER KEY FUNCTION\n"
     "  KEY: a key name (a, escape, leftWin, i1 …) or a key code\n"
     "  FUNCTION: default | disable | key:CODE | combo:CODE[+CODE…] |\n"
     "            macro:ID[:once|:repeat:N|:toggle] | mouse:1-8 | media:1-7 | mac:1-6\n"
     "  (combo, macro, mouse, media and mac go to the base layer, as in the window)",
     "Assign a function to a key"},
    {"fn-mode", "default|fn", "What the top row sends without Fn"},
    {"settings", "show | language en|zh-CN|zh-TW | gamemode on|off | block alttab|altf4|win on|off |\n"
                 "       reset-keys | reset-all", "The keyboard's and the application's settings"},
    {"settings show", "", "The stored settings"},
    {"settings language", "en|zh-CN|zh-TW", "The interface language"},
    {"settings gamemode", "on|off", "Game mode"},
    {"settings block", "alttab|altf4|win on|off", "Block Alt+Tab, Alt+F4 or the Windows key"},
    {"settings reset-keys", "", "Every key of every profile back to its default"},
    {"settings reset-all", "", "Everything back to the factory state"},
    {"keyboard-state", "", "What a virtual keyboard holds, as JSON (--device virtual:FILE)"},
    {"macro", "list | add | rename ID NAME | delete ID | events ID | delete-event ID N | save ID |\n"
              "       insert ID EVENT [--before N|--after N] | delay-mode ID record|none|default:MS", "Macros"},
    {"macro list", "", "The macros"},
    {"macro add", "", "Add an empty macro"},
    {"macro rename", "ID NAME", "Rename a macro"},
    {"macro delete", "ID", "Delete a macro and its events (keys bound to it keep their binding)"},
    {"macro events", "ID", "A macro's events"},
    {"macro delete-event", "ID N", "Delete event N of a macro"},
    {"macro save", "ID", "Store a macro again and send all macros to the keyboard"},
    {"macro insert", "ID key:NAME|mouse:left|middle|right|delay:MS [--before N|--after N]",
     "Insert an event (at the end unless --before or --after)"},
    {"macro delay-mode", "ID record|none|default:MS", "The delays a macro keeps"},
    {"light", "list | select ROW | color R G B | preset 1-14 | random on|off | brightness V |\n"
              "       speed V | direction up|down|left|right | sleep 0-3 | show", "The backlight effect"},
    {"light list", "", "The effects"},
    {"light select", "ROW", "Choose an effect"},
    {"light color", "R G B", "The effect's colour"},
    {"light preset", "1-14", "One of the preset colours"},
    {"light random", "on|off", "Random colours"},
    {"light brightness", "0-15", "The brightness"},
    {"light speed", "0-15", "The speed"},
    {"light direction", "up|down|left|right", "The direction"},
    {"light sleep", "0-3", "When the backlight goes out"},
    {"light show", "", "The effect and its parameters"},
    {"userlight", "list | add | rename ID NAME | delete ID | paint ID KEY... --color RRGGBB | apply ID |\n"
                  "       reset ID | show ID", "Per-key colour sets"},
    {"userlight list", "", "The sets"},
    {"userlight add", "", "Add a set"},
    {"userlight rename", "ID NAME", "Rename a set"},
    {"userlight delete", "ID", "Delete a set"},
    {"userlight paint", "ID KEY... --color RRGGBB", "Colour keys of a set"},
    {"userlight apply", "ID", "Send a set to the keyboard"},
    {"userlight reset", "ID", "Every key of a set back to its default colour"},
    {"userlight show", "ID", "The colours of a set"},
    {"export", "FILE|-", "Write the whole configuration as JSON (- for standard output)"},
    {"import", "FILE", "Replace the configuration with an exported one and send it"},
};

// Help as the usage line first, then what the command does; the synopses come from kCommands.
class HelpFormatter : public CLI::Formatter {
public:
    std::map<const CLI::App*, std::string> synopsis;

    std::string make_description(const CLI::App*) const override { return ""; }
    std::string make_usage(const CLI::App* app, std::string name) const override {
        const auto s = synopsis.find(app);
        std::string usage = "usage: " + name + (s == synopsis.end() || s->second.empty() ? "" : " " + s->second);
        return usage + "\n" + app->get_description() + "\n";
    }
};

// A stream that swallows what it is given (the diagnostic console unless --verbose).
struct NullBuffer : std::streambuf {
    int overflow(int c) override { return c; }
};

// The command line as CLI11 reads it: the options before the command, the command and its
// subcommand; what follows them is the handler's, which refuses what it cannot take. The options
// are still taken after the command, as they always were.
Options parseOptions(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    Options o;
    CLI::App app{"Configures the HALVORN QX9 keyboard: profiles, keys, macros, lighting.", "qx9ctl"};
    const auto help = std::make_shared<HelpFormatter>();
    app.formatter(help);
    help->synopsis[&app] = kSynopsis;
    app.prefix_command();
    app.require_subcommand(0, 1);  // so that a command's argument is never taken for another command
    app.set_version_flag("--version", "qx9ctl " QX9_VERSION);
    app.add_option("--db", o.db, "The database (default: the window's)")->type_name("FILE");
    app.add_option("--device", o.device, "The keyboard: auto (default), virtual[:STATE.json] or /dev/hidrawN")
        ->type_name("DEVICE");
    app.add_option("--wire", o.wire, "Log every report to FILE (- for standard output)")->type_name("FILE");
    app.add_flag("--json", o.json, "Tables as JSON");
    app.add_flag("--verbose", o.verbose, "Diagnostics on standard error");
    for (const CommandHelp& command : kCommands) {
        const std::string path = command.path;
        const std::size_t space = path.find(' ');
        CLI::App* parent = space == std::string::npos ? &app : app.get_subcommand(path.substr(0, space));
        CLI::App* sub = parent->add_subcommand(path.substr(space + 1), command.about)->require_subcommand(0, 1);
        help->synopsis[sub] = command.synopsis;
    }
    std::vector<std::string> reversed(args.rbegin(), args.rend());
    try {
        app.parse(reversed);
    } catch (const CLI::CallForHelp&) {
        out << app.help();
        throw UsageError{"", 0};
    } catch (const CLI::CallForVersion& e) {
        out << e.what() << '\n';
        throw UsageError{"", 0};
    } catch (const CLI::ParseError& e) {
        throw UsageError{e.what(), 2};
    }
    const std::vector<CLI::App*> chosen = app.get_subcommands();
    if (!app.remaining().empty()) {
        const std::string a = app.remaining()[0];
        throw UsageError{(a[0] == '-' ? "unknown option " : "unknown command ") + a, 2};
    }
    if (chosen.empty()) {
        err << app.help();
        throw UsageError{"", 2};
    }
    CLI::App* command = chosen[0];
    o.command = {command->get_name()};
    if (!command->get_subcommands().empty()) command = command->get_subcommands()[0], o.command.push_back(command->get_name());
    const std::vector<std::string> tail = command->remaining();
    for (std::size_t i = 0; i < tail.size(); ++i) {
        const std::string& a = tail[i];
        if (a == "--json") o.json = true;
        else if (a == "--verbose") o.verbose = true;
        else if (a == "--help" || a == "-h") {
            out << app.help();
            throw UsageError{"", 0};
        } else if ((a == "--db" || a == "--device" || a == "--wire") && i + 1 < tail.size()) {
            (a == "--db" ? o.db : a == "--device" ? o.device : o.wire) = tail[++i];
        } else o.command.push_back(a);
    }
    return o;
}

using Handler = void (*)(Context&, const std::vector<std::string>&);

const std::map<std::string, Handler>& commands() {
    static const std::map<std::string, Handler> table = {
        {"devices", cmdDevices},   {"connect", cmdConnect},   {"profile", cmdProfile},
        {"key", cmdKey},           {"fn-mode", cmdFnMode},    {"settings", cmdSettings},
        {"keyboard-state", cmdKeyboardState}, {"macro", cmdMacro},  {"light", cmdLight},
        {"userlight", cmdUserLight},  {"export", cmdExport},  {"import", cmdImport},
    };
    return table;
}

}  // namespace

std::int64_t parseInteger(const std::string& text, const std::string& what) {
    std::int64_t v = 0;
    int base = 10;
    std::string_view digits = text;
    if (digits.size() > 2 && (digits.substr(0, 2) == "0x" || digits.substr(0, 2) == "0X")) {
        digits.remove_prefix(2);
        base = 16;
    }
    auto [ptr, ec] = std::from_chars(digits.data(), digits.data() + digits.size(), v, base);
    if (digits.empty() || ec != std::errc() || ptr != digits.data() + digits.size()) {
        throw UsageError{what + " must be a number: \"" + text + "\""};
    }
    return v;
}

std::int64_t parseInRange(const std::string& text, const std::string& what, std::int64_t lo, std::int64_t hi) {
    const std::int64_t v = parseInteger(text, what);
    if (v < lo || v > hi) throw UsageError{what + " is " + std::to_string(lo) + "-" + std::to_string(hi) + ", not " + text};
    return v;
}

std::int64_t parseProfile(Context& c, const std::string& text) {
    const std::int64_t id = parseInteger(text, "the profile");
    if (!ops::profileExists(c.database(), id)) throw UsageError{"no profile " + text + " (see: qx9ctl profile list)"};
    return id;
}

std::int64_t parseKeyCode(const std::string& text, const char* example) {
    if (const KeyNameEntry* e = G_KB_SuperKeyNameMap.find(text)) {
        if (G_KB_SuperKeyCodeMap.contains(e->key_code)) return e->key_code;
    } else if (!text.empty() && std::isdigit(static_cast<unsigned char>(text[0]))) {
        const std::int64_t code = parseInteger(text, "the key");
        if (code == static_cast<int>(code) && G_KB_SuperKeyCodeMap.contains(static_cast<int>(code))) return code;
    }
    throw UsageError{"no key \"" + text + "\" on the QX9 (a key name such as a, escape, " + example + ", or a key code)"};
}

bool parseOnOff(const std::string& text, const std::string& what) {
    if (text == "on") return true;
    if (text == "off") return false;
    throw UsageError{what + " takes on or off, not \"" + text + "\""};
}

void expectArgs(const std::vector<std::string>& args, std::size_t n, const std::string& usage) {
    if (args.size() != n) throw usageError("usage: qx9ctl " + usage);
}

void printRecord(Context& c, std::int64_t id, const std::string& name) {
    Table table({"id", "name"});
    table.add({std::to_string(id), name});
    table.print(c.out, c.options.json);
}

void check(const ops::Outcome& outcome) {
    if (outcome) return;
    throw UsageError{ops::describe(outcome)};
}

std::string Context::storeCause() const {
    const StoreProblem problem = db_ ? db_->problem() : StoreProblem::kOther;
    return namesACause(problem) ? describe(problem) : "";
}

DeviceSQLite& Context::database() {
    if (db_) return *db_;
    db_ = DeviceSQLite::openFile(options.db);
    if (!db_->readable()) {
        const StoreProblem problem = db_->problem();
        throw UsageError{"cannot read the database " + db_->filePath().string() + ": " + describe(problem) +
                         (moveAsideHelps(problem) ? " (left as it is; move it aside to start afresh, or import a backup)"
                                                  : " (left as it is)")};
    }
    curLanguage = ops::languageInUse(*db_);
    return *db_;
}

ops::Target Context::target() {
    DeviceSQLite& db = database();
    sends = true;
    if (hasKeyboard() && !comm_) {
        comm_ = std::make_unique<DeviceComm>(device.record.device, nullptr, wire);
        sender_ = std::make_unique<DirectSender>(*comm_, db);
    }
    return ops::Target{db, sender_.get()};
}

int run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    NullBuffer nullBuffer;
    std::ostream quiet(&nullBuffer);
    std::ostream* previousConsole = nullptr;
    bool redirected = false;  // the previous console may be nullptr (standard output)
    std::unique_ptr<std::ofstream> wireFile;
    try {
        Options options = parseOptions(args, out, err);
        const auto handler = commands().find(options.command[0]);
        previousConsole = setConsoleStream(options.verbose ? &err : &quiet);
        redirected = true;
        installKB108KMaps();  // the QX9's key maps, as the window's layout builder installs them

        Context c(options, out, err);
        std::string error;
        if (options.command[0] != "devices" && !openDevice(options.device, c.device, error)) {
            throw UsageError{error};
        }
        if (options.wire == "-") {
            c.wire = std::make_shared<WireLogWriter>(out);
        } else if (!options.wire.empty()) {
            // Created the user's alone, and only ever a regular file (through a link, its target).
            std::string error;
            if (!openPrivateFileForAppend(options.wire, error)) throw UsageError{"the wire log: " + error};
            wireFile = std::make_unique<std::ofstream>(options.wire, std::ios::app);
            if (!*wireFile) throw UsageError{"cannot write the wire log " + options.wire};
            c.wire = std::make_shared<WireLogWriter>(*wireFile);
        }

        try {
            handler->second(c, std::vector<std::string>(options.command.begin() + 1, options.command.end()));
        } catch (UsageError& e) {
            // A change refused because the file could not be read or written says why.
            const std::string cause = c.storeCause();
            if (e.status == 1 && !cause.empty() && e.message.find(cause) == std::string::npos) {
                e.message += ": " + cause;
            }
            throw;
        }

        if (c.sends && !c.hasKeyboard()) err << "qx9ctl: no keyboard attached: stored only, nothing was sent\n";
        setConsoleStream(previousConsole);
        return 0;
    } catch (const UsageError& e) {
        if (redirected) setConsoleStream(previousConsole);
        // Messages quote what they were given (names, files, fields): printed on one safe line.
        if (!e.message.empty()) err << "qx9ctl: " << printable(e.message) << '\n';
        return e.status;
    }
}

}  // namespace qx9::ctl
