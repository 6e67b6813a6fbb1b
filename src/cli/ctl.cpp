#include "cli/ctl.h"

#include <cctype>
#include <charconv>
#include <fstream>
#include <map>
#include <sstream>

#include "cli/ctl_context.h"
#include "cli/ctl_output.h"
#include "common/console.h"
#include "hid/wire_log.h"
#include "i18n/language.h"
#include "layout/key_maps.h"
#include "ops/profiles.h"
#include "ops/settings.h"

namespace qx9::ctl {

namespace {

const char* const kUsage =
    "usage: qx9ctl [--db FILE] [--device auto|virtual|virtual:STATE.json|/dev/hidrawN]\n"
    "              [--wire FILE|-] [--json] [--verbose] COMMAND ...\n"
    "commands:\n"
    "  devices\n"
    "  connect\n"
    "  profile list | add | rename ID NAME | delete ID | select ID\n"
    "  key list PROFILE LAYER\n"
    "  key set PROFILE LAYER KEY FUNCTION\n"
    "      KEY: a key name (a, escape, leftWin, i1 …) or a key code\n"
    "      FUNCTION: default | disable | key:CODE | combo:CODE[+CODE…] |\n"
    "                macro:ID[:once|:repeat:N|:toggle] | mouse:1-8 | media:1-7 | mac:1-6\n"
    "      (combo, macro, mouse, media and mac go to the base layer, as in the window)\n"
    "  fn-mode default|fn\n"
    "  settings show | language en|zh-CN|zh-TW | gamemode on|off |\n"
    "           block alttab|altf4|win on|off | reset-keys | reset-all\n"
    "  keyboard-state\n"
    "  macro list | add | rename ID NAME | delete ID | events ID | delete-event ID N | save ID |\n"
    "        insert ID key:NAME|mouse:left|middle|right|delay:MS [--before N|--after N] |\n"
    "        delay-mode ID record|none|default:MS\n"
    "  light list | select ROW | color R G B | preset 1-14 | random on|off | brightness V |\n"
    "        speed V | direction up|down|left|right | sleep 0-3 | show\n"
    "  userlight list | add | rename ID NAME | delete ID | paint ID KEY... --color RRGGBB | apply ID | reset ID |\n"
    "            show ID\n"
    "  export FILE|-\n"
    "  import FILE\n";

// A stream that swallows what it is given (the diagnostic console unless --verbose).
struct NullBuffer : std::streambuf {
    int overflow(int c) override { return c; }
};

Options parseOptions(const std::vector<std::string>& args) {
    Options o;
    std::size_t i = 0;
    auto value = [&](const std::string& name) -> std::string {
        if (i + 1 >= args.size()) throw UsageError{name + " needs a value"};
        return args[++i];
    };
    for (; i < args.size(); ++i) {
        const std::string& a = args[i];
        if (a == "--db") o.db = value(a);
        else if (a == "--device") o.device = value(a);
        else if (a == "--wire") o.wire = value(a);
        else if (a == "--json") o.json = true;
        else if (a == "--verbose") o.verbose = true;
        else if (a == "--help" || a == "-h") throw UsageError{""};
        else if (!a.empty() && a[0] == '-' && o.command.empty()) throw UsageError{"unknown option " + a};
        else if (a == "--json" && !o.command.empty()) o.json = true;
        else o.command.push_back(a);
    }
    if (o.command.empty()) throw UsageError{""};
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
    if (args.size() != n) throw UsageError{"usage: qx9ctl " + usage};
}

void printRecord(Context& c, std::int64_t id, const std::string& name) {
    Table table({"id", "name"});
    table.add({std::to_string(id), name});
    table.print(c.out, c.options.json);
}

void check(const ops::Outcome& outcome) {
    if (outcome) return;
    throw UsageError{outcome.title.empty() ? outcome.message : outcome.title + ": " + outcome.text};
}

DeviceSQLite& Context::database() {
    if (db_) return *db_;
    db_ = DeviceSQLite::openFile(options.db);
    if (!db_->readable()) {
        throw UsageError{"cannot read the database " + db_->filePath().string() +
                         " (left as it is; move it aside to start afresh, or import a backup)"};
    }
    curLanguage = ops::languageInUse(*db_);
    return *db_;
}

ops::Target Context::target() {
    DeviceSQLite& db = database();
    sends = true;
    if (hasKeyboard() && !comm_) comm_ = std::make_unique<DeviceComm>(device.record.device, nullptr, wire);
    return ops::Target{db, comm_.get()};
}

int run(const std::vector<std::string>& args, std::ostream& out, std::ostream& err) {
    NullBuffer nullBuffer;
    std::ostream quiet(&nullBuffer);
    std::ostream* previousConsole = nullptr;
    bool redirected = false;  // the previous console may be nullptr (standard output)
    std::unique_ptr<std::ofstream> wireFile;
    try {
        Options options = parseOptions(args);
        const auto handler = commands().find(options.command[0]);
        if (handler == commands().end()) throw UsageError{"unknown command " + options.command[0]};
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
            wireFile = std::make_unique<std::ofstream>(options.wire, std::ios::app);
            if (!*wireFile) throw UsageError{"cannot write the wire log " + options.wire};
            c.wire = std::make_shared<WireLogWriter>(*wireFile);
        }

        handler->second(c, std::vector<std::string>(options.command.begin() + 1, options.command.end()));

        if (c.sends && !c.hasKeyboard()) err << "qx9ctl: no keyboard attached: stored only, nothing was sent\n";
        if (!saveVirtualState(c.device, error)) throw UsageError{error};
        setConsoleStream(previousConsole);
        return 0;
    } catch (const UsageError& e) {
        if (redirected) setConsoleStream(previousConsole);
        if (e.message.empty()) {
            err << kUsage;
            return 2;
        }
        err << "qx9ctl: " << e.message << '\n';
        return 1;
    }
}

}  // namespace qx9::ctl
