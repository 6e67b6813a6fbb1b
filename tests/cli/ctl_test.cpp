// qx9ctl as a user types it: its arguments and messages, output formats, exit statuses, the
// virtual keyboard's state file, and one run of each command family that reaches the database
// and the keyboard. What the operations store and send is checked in the session tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

#include <nlohmann/json.hpp>

#include "cli/ctl.h"
#include "virtual/virtual_qx9.h"
#include "virtual/virtual_qx9_memory.h"
#include "ops/macros.h"
#include "support/scratch.h"
#include "support/sql_value.h"

namespace qx9::test {
namespace {

using Args = std::vector<std::string>;

// qx9ctl run in-process on databases and virtual keyboard files in a directory of its own.
class Qx9ctl : public ::testing::Test {
protected:
    std::string path(const std::string& name) const { return (dir_ / name).string(); }
    // qx9ctl --db DIR/DB --device virtual:DIR/DB.kb.json ARGS…, or without the keyboard with `raw`;
    // `input` is its standard input.
    int run(Args args, const std::string& db = "db.sqlite3", bool raw = false, const std::string& input = "") {
        args.insert(args.begin(), {"--db", path(db), "--device", "virtual:" + path(db + ".kb.json")});
        if (raw) args.erase(args.begin() + 2, args.begin() + 4);
        out_.str("");
        err_.str("");
        std::istringstream in(input);
        return ctl::run(args, out_, err_, in);
    }
    // A run that must succeed and print nothing on standard error; its standard output.
    std::string ok(const Args& args, const std::string& db = "db.sqlite3", const std::string& input = "") {
        EXPECT_EQ(run(args, db, false, input), 0) << err_.str();
        EXPECT_EQ(err_.str(), "");
        return out_.str();
    }
    // What the virtual keyboard of a database holds, read from its state file.
    VirtualQX9Memory keyboard(const std::string& db = "db.sqlite3") {
        VirtualQX9 kb;
        std::string error;
        kb.loadState(path(db + ".kb.json"), error);
        return kb.memory();
    }
    std::string sql(const std::string& query, const std::string& db = "db.sqlite3") { return sqlValue(path(db), query); }
    // Each line of `shown` (SETTING<TAB>VALUE) run as `qx9ctl COMMAND SETTING… VALUE` on `db`.
    void feedBack(const std::string& command, const std::string& shown, const std::string& db) {
        std::istringstream lines(shown);
        for (std::string line; std::getline(lines, line);) {
            Args args = {command};
            std::istringstream words(line.substr(0, line.find('\t')));
            for (std::string w; words >> w;) args.push_back(w);
            args.push_back(line.substr(line.find('\t') + 1));
            ok(args, db);
        }
    }

    TempDir dir_;
    ConsoleCapture console_;  // the tests open the database too
    std::ostringstream out_, err_;
};

// The reports themselves: the ctest Qx9ctlConnectPrintsTheWire and the session and protocol tests.
TEST_F(Qx9ctl, TheWireLogPrintsEveryReportOfTheFirstConnection) {
    std::vector<std::string> lines;
    std::istringstream in(ok({"--wire", "-", "connect"}));
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    ASSERT_EQ(lines.size(), 4u * 2 - 1 + 2 * 3 + 9);  // system functions, then the key map
    EXPECT_EQ(lines[4].substr(0, 4) + lines[4].substr(lines[4].size() - 5), "SET AA 55");  // a data report, no answer
    for (const std::string& l : lines) EXPECT_EQ(l.size(), 3 + 64 * 3u) << l;
}

TEST_F(Qx9ctl, WithoutAKeyboardItStoresSaysSoAndExits1) {
    // "auto" finds no QX9 on this machine.
    for (const Args& args : {Args{"connect"}, Args{"key", "set", "1", "0", "a", "disable"}, Args{"settings", "gamemode", "on"}}) {
        EXPECT_EQ(run(args, "db.sqlite3", true), 1) << args[0];
        EXPECT_EQ(err_.str(), "qx9ctl: no keyboard attached: stored only, nothing was sent\n");
    }
    EXPECT_EQ(sql("SELECT macroType FROM t_keyprofile WHERE profId = 1 AND fnlayerId = 0 AND keyvalue = 4"), "2");
    EXPECT_EQ(sql("SELECT value FROM t_configdata WHERE profId = 1 AND key = 'gamemode'"), "1");
    ASSERT_EQ(run({"devices"}, "db.sqlite3", true), 0);
    EXPECT_EQ(out_.str(), "");
    EXPECT_EQ(err_.str(), "qx9ctl: no QX9 attached\n");
}

TEST_F(Qx9ctl, UnreadableDatabaseIsAnErrorSendsNothingAndStaysAsItWas) {
    std::string bytes = "this is not a database, and must stay as it is\n";
    for (int i = 0; i < 4096; ++i) bytes += static_cast<char>((i * 7919 + 13) % 256);  // and noise
    std::ofstream(path("text.sqlite3"), std::ios::binary) << bytes;
    for (const Args& args : {Args{"--wire", "-", "connect"}, Args{"profile", "list"}, Args{"key", "set", "1", "0", "a", "key:5"},
                             Args{"settings", "reset-all"}, Args{"export", "-"}}) {
        EXPECT_EQ(run(args, "text.sqlite3"), 1) << args[0];
        EXPECT_EQ(out_.str(), "");  // nothing on the wire, nothing exported
        EXPECT_EQ(err_.str(), "qx9ctl: cannot read the database " + path("text.sqlite3") +
                                  ": the file is damaged or not a database (left as it is; move it aside to start afresh, or import a backup)\n");
        EXPECT_EQ(fileBytes(path("text.sqlite3")), bytes);
    }
}

TEST_F(Qx9ctl, RefusedAndUnreadableCommandLinesPrintOneLineAndChangeNothing) {
    ok({"settings", "language", "en"});
    ok({"macro", "add"});
    ok({"macro", "insert", "1", "delay:5"});
    ok({"userlight", "add"});
    ok({"userlight", "paint", "1", "a", "--color", "00FF00"});
    ok({"export", path("good.json")});
    std::ofstream(path("foreign.json")) << R"({"theme": "dark"})";
    std::ofstream(path("hostile.json")) << R"({"a\n\u001b[31m\u009b": 1,)" << fileBytes(path("good.json")).substr(1);
    struct Case {
        Args before;  // run first: the effect the command is refused for
        Args args;
        int status;   // 1 refused, 2 unreadable
        std::string message;
    };
    const std::string functions = "default | disable | key:CODE | combo:KEY[+KEY…] | macro:ID[:once|:repeat:N|:toggle] | "
                                  "mouse:1-8 | media:1-7 | mac:1-6";
    const Case cases[] = {
        {{}, {"key", "set", "1", "0", "printScreen", "disable"}, 2, "key set KEY: no key \"printScreen\" on the QX9 (see: qx9ctl key names)"},
        {{}, {"key", "set", "7", "0", "a", "disable"}, 1, "no profile 7 (see: qx9ctl profile list)"},
        {{}, {"profile", "select", "abc"}, 2, "profile select ID: \"abc\" is not a number (see: qx9ctl profile list)"},
        {{}, {"key", "set", "1", "2", "a", "disable"}, 2, "key set LAYER: 2 is not in 0-1"},
        {{}, {"key", "set", "1", "0", "a", "mouse:9"}, 2, "key set FUNCTION: mouse: 9 is not in 1-8"},
        {{}, {"key", "set", "1", "0", "a", "macro:3"}, 1, "no macro 3 (see: qx9ctl macro list)"},
        {{}, {"key", "set", "1", "0", "a", "key:9999"}, 2, "key set FUNCTION: no function \"9999\" in the key palette"},
        {{}, {"key", "set", "1", "0", "a", "key:4294967337"}, 2, "key set FUNCTION: no function \"4294967337\" in the key palette"},
        {{}, {"key", "set", "1", "0", "a", "combo:4+nokey"}, 2, "key set FUNCTION: no key \"nokey\" on the QX9 (see: qx9ctl key names)"},
        {{}, {"key", "set", "1", "0", "a", "teleport"}, 2, "key set FUNCTION: \"teleport\" is not a function: " + functions},
        {{}, {"import", "/dev/zero"}, 1, "/dev/zero is not a file"},
        {{}, {"profile", "delete", "1"}, 1, "the last profile cannot be deleted"},
        {{}, {"profile", "rename", "1", ""}, 1, "a profile name cannot be empty"},
        {{}, {"profile", "rename", "1", "a", "b"}, 2, "unexpected argument b (usage: qx9ctl profile rename ID NAME)"},
        {{}, {"settings", "gamemode", "maybe"}, 2, "settings gamemode SWITCH: \"maybe\" is not on or off"},
        {{}, {"light", "select", "20"}, 2, "light select ROW: 20 is not in 0-19"},
        {{}, {"light", "color", "256", "0", "0"}, 2, "light color COLOR: 256 is not in 0-255"},
        {{}, {"light", "color", "1", "2"}, 2, "light color COLOR: is RRGGBB, or R G B"},
        {{}, {"light", "direction", "north"}, 2, "light direction VALUE: \"north\" is not left, right, up or down"},
        {{}, {"light", "sleep", "4"}, 2, "light sleep VALUE: 4 is not in 0-3"},
        {{}, {"light", "dim"}, 2, "unknown command light dim"},
        {{}, {"light"}, 2, "usage: qx9ctl light list | select ROW|NAME | color RRGGBB|R G B | preset 1-14 | random on|off | "
                           "brightness 0-15 | speed 0-15 | direction up|down|left|right | sleep 0-3 | show"},
        {{"light", "select", "9"}, {"light", "color", "1", "2", "3"}, 1, "the color is off while random color is on (qx9ctl light random off)"},
        {{}, {"light", "direction", "left"}, 1, "\"scrolling\" takes up or down"},
        {{"light", "select", "0"}, {"light", "speed", "3"}, 1, "\"static\" has no speed"},
        {{}, {"light", "direction", "up"}, 1, "\"static\" has no direction"},
        {{"light", "select", "Close Backlight"}, {"light", "random", "off"}, 1, "\"close-backlight\" has no random color"},
        {{}, {"light", "preset", "1"}, 1, "\"close-backlight\" has no color of its own"},
        {{}, {"macro", "rename", "9", "X"}, 1, "no macro 9 (see: qx9ctl macro list)"},
        {{}, {"macro", "rename", "1", ""}, 1, "a macro name cannot be empty"},
        {{}, {"macro", "insert", "1", "key:keypad1"}, 2, "macro insert EVENT: no key \"keypad1\" on the QX9 (see: qx9ctl key names)"},
        {{}, {"macro", "insert", "1", "mouse:side"}, 2, "macro insert EVENT: mouse: \"side\" is not left, middle or right"},
        {{}, {"macro", "insert", "1", "delay:70000"}, 2, "macro insert EVENT: delay: 70000 is not in 0-60000 (ms)"},
        {{}, {"macro", "insert", "1", "wait:5"}, 2,
         "macro insert EVENT: \"wait:5\" is not an event: key:NAME, mouse:left|middle|right or delay:MS"},
        {{}, {"macro", "insert", "1", "delay:5", "--after", "1"}, 1, "no event 1 in this macro (it has 1 event)"},
        {{}, {"macro", "insert", "1", "delay:5", "--at", "0"}, 2, "unknown option --at"},
        {{}, {"macro", "delete-event", "1", "-1"}, 2, "macro delete-event N: -1 is less than 0"},
        {{}, {"macro", "delay-mode", "1", "default:-1"}, 2, "macro delay-mode MODE: default: -1 is not in 0-60000 (ms)"},
        {{}, {"macro", "save"}, 2, "usage: qx9ctl macro save ID"},
        {{}, {"userlight", "paint", "7", "a", "--color", "FF0000"}, 1, "no user light 7 (see: qx9ctl userlight list)"},
        {{}, {"userlight", "paint", "1", "a", "--color", "red"}, 2, "--color: \"red\" is not a color (RRGGBB in hex, such as FF8000)"},
        {{}, {"userlight", "paint", "1", "f4", "--color", "FF0000"}, 2,  // f4 is the Fn layer's
         "userlight paint KEY: the key \"f4\" is not on the on-screen keyboard"},
        {{}, {"userlight", "paint", "1", "a"}, 2, "usage: qx9ctl userlight paint ID KEY... --color RRGGBB"},
        {{}, {"userlight", "reset", "2"}, 1, "no user light 2 (see: qx9ctl userlight list)"},
        {{}, {"export"}, 2, "usage: qx9ctl export FILE|-"},
        {{}, {"frobnicate"}, 2, "unknown command frobnicate"},
        {{}, {"--force", "devices"}, 2, "unknown option --force"},
        {{}, {"--wire"}, 2, "--wire: 1 required FILE missing"},
        {{}, {"--device", "bogus", "connect"}, 2, "--device: \"bogus\" is not auto, virtual, virtual:STATE.json or a hidraw node (/dev/hidrawN)"},
        {{}, {"import", path("missing.json")}, 1, "cannot read " + path("missing.json")},
        {{}, {"import", path("hostile.json")}, 1,  // the name's line break and terminal escapes as escapes: one line
         path("hostile.json") + " was not imported: not a valid QX9 configuration: it has an unknown part \"a\\n\\e[31m\\u009B\""},
    };
    for (const Case& c : cases) {
        if (!c.before.empty()) ok(c.before);
        const auto database = dumpDatabase(path("db.sqlite3"));
        const VirtualQX9Memory memory = keyboard();
        EXPECT_EQ(run(c.args), c.status) << c.message;
        EXPECT_EQ(err_.str(), "qx9ctl: " + c.message + "\n");
        EXPECT_EQ(dumpDatabase(path("db.sqlite3")), database) << c.message;
        EXPECT_EQ(keyboard(), memory) << c.message;
        if (c.status == 2) {
            EXPECT_EQ(run(c.args, "new.sqlite3"), 2) << c.message;  // read before anything opens
        }
    }
    // A refused file does not even create a database that did not exist.
    EXPECT_EQ(run({"import", path("foreign.json")}, "new.sqlite3"), 1);
    EXPECT_FALSE(std::filesystem::exists(path("new.sqlite3")));
    // No command at all: the usage, exit status 2.
    EXPECT_EQ(run({}), 2);
    EXPECT_EQ(err_.str().rfind("usage: qx9ctl [--db FILE]", 0), 0u) << err_.str();
}

TEST_F(Qx9ctl, EveryCommandHasItsHelp) {
    // Walk the command tree through the helps: each lists its subcommands, which have help too.
    std::vector<Args> pending = {{}};
    int helps = 0;
    while (!pending.empty()) {
        Args words = pending.back();
        pending.pop_back();
        std::string path = "usage: qx9ctl";
        for (const std::string& w : words) path += " " + w;
        words.push_back("--help");
        ASSERT_EQ(run(words, "db.sqlite3", true), 0) << path;
        EXPECT_EQ(out_.str().rfind(path, 0), 0u) << out_.str();  // its own help, not its parent's
        ASSERT_LT(++helps, 100);
        std::istringstream in(out_.str().substr(std::min(out_.str().find("Subcommands:\n"), out_.str().size())));
        words.pop_back();
        for (std::string line, name; std::getline(in, line);) {
            if (line.rfind("  ", 0) == 0 && std::istringstream(line) >> name) pending.push_back(words), pending.back().push_back(name);
        }
    }
    EXPECT_GT(helps, 1 + 12);  // the commands' subcommands too
    EXPECT_EQ(run({"-V"}, "db.sqlite3", true), 0);
    EXPECT_EQ(out_.str().rfind("qx9ctl 0.", 0), 0u) << out_.str();
}

// Options after their command and with =, -- before a name that starts with -, words and key
// names in any case, standard input and output, the column names with --header.
TEST_F(Qx9ctl, CommandLinesAreReadAsTheyAreWritten) {
    ok({"macro", "add"});
    ok({"macro", "insert", "1", "key:A"});
    ok({"macro", "insert", "1", "DELAY:5", "--after=1"});
    ok({"macro", "insert", "1", "Key:B", "--before", "0", "--json"});
    EXPECT_EQ(ok({"macro", "events", "1", "--header"}), "index\ttype\tvalue\ttext\n0\t2\t5\t[KEY DOWN] B\n1\t3\t5\t[KEY UP] B\n"
                                                      "2\t2\t4\t[KEY DOWN] A\n3\t3\t4\t[KEY UP] A\n4\t1\t5\t[Delay:ms] 5\n");
    ok({"key", "set", "1", "0", "CAPSLOCK", "key:ESCAPE"});
    ok({"key", "set", "1", "1", "f1", "Combo:LeftShift+i1"});  // to the base layer, as in the window
    ok({"key", "set", "1", "0", "escape", "macro:1:repeat:3"});
    EXPECT_EQ(ok({"key", "list", "1", "0"}),
              "capsLock\t57\tkey:41\tEsc\nf1\t58\tcombo:225+30\tLeft Shift + 1\nescape\t41\tmacro:1:repeat:3\tMacro1\n");
    ok({"userlight", "add"});
    ok({"userlight", "paint", "1", "W", "a", "--color=ff4000"});
    EXPECT_EQ(ok({"userlight", "show", "1"}), "w\t26\tFF4000\na\t4\tFF4000\n");
    ok({"profile", "rename", "1", "--", "-x-"});
    EXPECT_EQ(ok({"profile", "list"}), "1\t-x-\n");
    const std::string names = ok({"--header", "key", "names"});
    EXPECT_EQ(std::count(names.begin(), names.end(), '\n'), 1 + 80);
    EXPECT_EQ(names.substr(0, 19), "name\tcode\nescape\t41");
    // A backup read from standard input; one that cannot be written out is reported.
    ok({"import", "-"}, "b.sqlite3", ok({"export", "-"}));
    EXPECT_EQ(ok({"export", "-"}, "b.sqlite3"), ok({"export", "-"}));
    std::ofstream full("/dev/full");
    EXPECT_EQ(ctl::run({"--db", path("db.sqlite3"), "export", "-"}, full, err_), 1);
    EXPECT_EQ(err_.str(), "qx9ctl: the configuration was not exported: cannot write to standard output\n");
}

// Every change prints with --json what it changed, ids and numbers as numbers; without --json
// only the add commands print.
TEST_F(Qx9ctl, WritesPrintWhatTheyChangedAsTypedJson) {
    ok({"settings", "language", "en"});
    const std::pair<Args, std::string> cases[] = {
        {{"profile", "add"}, "2\tConfiguration File 1\n"},
        {{"profile", "rename", "2", "Quiet"}, ""},
        {{"--json", "profile", "rename", "2", "Work"}, R"({"id": 2, "name": "Work"})"},
        {{"--json", "key", "set", "2", "0", "a", "mouse:3"}, R"({"key": "a", "code": 4, "function": "mouse:3", "text": "Middle Click"})"},
        {{"--json", "key", "set", "2", "0", "a", "default"}, R"({"key": "a", "code": 4, "function": "default", "text": ""})"},
        {{"--json", "profile", "delete", "2"}, R"({"id": 2, "name": "Work"})"},
        {{"--json", "settings", "block", "win", "on"}, R"({"setting": "block win", "value": "on"})"},
        {{"--json", "settings", "sleep", "2"}, R"({"setting": "sleep", "value": 2})"},
        {{"--json", "macro", "add"}, R"({"id": 1, "name": "Macro1"})"},
        {{"--json", "macro", "insert", "1", "delay:250"}, R"([{"index": 0, "type": 1, "value": 250, "text": "[Delay:ms] 250"}])"},
        {{"--json", "macro", "delay-mode", "1", "none"}, R"({"id": 1, "name": "Macro1", "events": 1, "delay": "none"})"},
        {{"--json", "userlight", "add"}, R"({"id": 1, "name": "User light1"})"},
        {{"--json", "userlight", "paint", "1", "q", "--color", "#0000ff"}, R"([{"key": "q", "code": 20, "color": "0000FF"}])"},
        {{"--json", "light", "select", "Close Backlight"},
         R"([{"setting": "select", "value": "close-backlight"}, {"setting": "brightness", "value": 15}, {"setting": "sleep", "value": 2}])"},
        {{"--json", "light", "list"}, ""},  // checked below
    };
    for (const auto& [args, expected] : cases) {
        const std::string out = ok(args);
        if (args[0] != "--json") {
            EXPECT_EQ(out, expected) << args[1];
        } else if (args[2] != "list") {
            EXPECT_EQ(nlohmann::json::parse(out), nlohmann::json::parse(expected)) << out;
        }
    }
    const nlohmann::json effects = nlohmann::json::parse(out_.str());
    ASSERT_EQ(effects.size(), 20u);
    EXPECT_EQ(effects[19], nlohmann::json::parse(R"({"row": 19, "mode": 0, "name": "close-backlight", "selected": true})"));
    EXPECT_EQ(effects[1], nlohmann::json::parse(R"({"row": 1, "mode": 2, "name": "single-on", "selected": false})"));
}

// `settings show` and `light show` print the words their setters take: fed back into another
// database, they give the same settings, stored as the first.
TEST_F(Qx9ctl, ShownSettingsAndLightingFeedBackIntoTheirSetters) {
    for (const Args& change : {Args{"settings", "language", "zh-TW"}, Args{"settings", "gamemode", "on"},
                               Args{"settings", "block", "AltTab", "on"}, Args{"fn-mode", "fn"}, Args{"light", "sleep", "3"},
                               Args{"light", "select", "rolling"}, Args{"light", "random", "off"}, Args{"light", "color", "255", "100", "50"},
                               Args{"light", "brightness", "7"}, Args{"light", "speed", "3"}, Args{"light", "direction", "right"}}) {
        ok(change);
    }
    const std::string settings = ok({"settings", "show"});
    EXPECT_EQ(settings, "language\tzh-TW\ngamemode\ton\nblock alttab\ton\nblock altf4\toff\nblock win\toff\nfn-mode\tfn\nsleep\t3\n");
    const std::string light = ok({"light", "show"});
    EXPECT_EQ(light, "select\trolling\nrandom\toff\ncolor\tFF6432\nbrightness\t7\nspeed\t3\ndirection\tright\nsleep\t3\n");
    EXPECT_EQ(ok({"light", "list"}).substr(0, 15), "0\t1\tstatic\t\n1\t2");
    EXPECT_NE(out_.str().find("\n10\t11\trolling\t*\n"), std::string::npos) << out_.str();
    const VirtualLightMode sent = decodeLightMode(keyboard()).value();
    EXPECT_EQ((std::array{sent.mode, sent.red, sent.green, sent.blue, sent.random, sent.brightness, sent.speed, sent.direction}),
              (std::array{11, 255, 100, 50, 0, 7, 3, 1}));
    feedBack("settings", settings, "b.sqlite3");
    feedBack("light", light, "b.sqlite3");
    EXPECT_EQ(ok({"settings", "show"}, "b.sqlite3"), settings);
    EXPECT_EQ(ok({"light", "show"}, "b.sqlite3"), light);
    for (const char* query : {"SELECT group_concat(key||'='||value, ' ') FROM (SELECT * FROM t_configdata WHERE profId = 1 AND key "
                              "IN ('language', 'gamemode', 'disable_alttab', 'fnfunction', 'sleeplight') ORDER BY key)",
                              "SELECT byte1||' '||byte2||' '||byte3||' '||byte8||' '||byte9||' '||byte10||' '||byte11 FROM t_lightdata "
                              "WHERE profId = 1 AND mode = 11"}) {
        EXPECT_EQ(sql(query, "b.sqlite3"), sql(query));
    }
    const auto transactions = keyboard().transactions;
    ok({"light", "random", "off"});  // the switch shows it already: nothing is sent
    EXPECT_EQ(keyboard().transactions, transactions);
}

// Where exactly the limits lie: WireFixture.CapacityIsCheckedBeforeAnythingIsSent.
TEST_F(Qx9ctl, MacrosTooLargeForTheKeyboardAreStoredButNotSentAndItSaysWhy) {
    ok({"macro", "add"});
    // 600 key events pass the 2500-byte count but not with the pauses between them; 700 do not pass it.
    for (const auto& [presses, why] : {std::pair{300, "the macros with the pauses the keyboard puts between their events overflow"},
                                       std::pair{350, "the macros need 2812 bytes of the keyboard's 2500-byte"}}) {
        std::vector<ops::RecordRow> events;
        for (int i = 0; i < presses; ++i) events.insert(events.end(), {{2, "A", 4}, {3, "A", 4}});
        ASSERT_TRUE(ops::storeEvents({*DeviceSQLite::openFile(path("db.sqlite3")), nullptr}, 1, events));
        EXPECT_EQ(run({"macro", "insert", "1", "delay:5"}), 1);
        EXPECT_NE(err_.str().find(std::string("stored, but nothing was sent: ") + why), std::string::npos) << err_.str();
        EXPECT_EQ(sql("SELECT count(*) FROM t_macrorecord"), std::to_string(2 * presses + 1));
        EXPECT_TRUE(decodeMacros(keyboard()).empty());
    }
}

TEST_F(Qx9ctl, ExportThenImportElsewhereGivesTheSameConfiguration) {
    ok({"profile", "add"}, "a.sqlite3");
    ok({"settings", "gamemode", "on"}, "a.sqlite3");
    // Through a link to the backup it names; the files that hold keystrokes are the user's alone.
    std::filesystem::create_symlink("config.json", path("link.json"));
    ok({"--wire", path("wire.log"), "export", path("link.json")}, "a.sqlite3");
    EXPECT_TRUE(std::filesystem::is_symlink(path("link.json")));
    for (const char* file : {"config.json", "wire.log", "a.sqlite3.kb.json"}) {
        EXPECT_EQ(std::filesystem::status(path(file)).permissions(), std::filesystem::perms(0600)) << file;
    }
    for (const std::string& notAFile : {std::string("/dev/null"), path("")}) {
        EXPECT_EQ(run({"export", notAFile}, "a.sqlite3"), 1);
        EXPECT_EQ(err_.str(), "qx9ctl: will not write " + notAFile + ": it is not a regular file\n");
    }
    // The same configuration (both profiles), and the import sent to b's keyboard.
    ok({"import", path("config.json")}, "b.sqlite3");
    EXPECT_EQ(ok({"export", "-"}, "b.sqlite3"), ok({"export", "-"}, "a.sqlite3"));
    EXPECT_EQ(decodeSystemFunctions(keyboard("b.sqlite3"))->gameMode, 1);
}

}  // namespace
}  // namespace qx9::test
