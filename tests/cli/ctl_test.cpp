// qx9ctl as a user types it: its arguments and messages, output formats, exit statuses, the
// virtual keyboard's state file, and one run of each command family that reaches the database
// and the keyboard. What the operations store and send is checked in the session tests.
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "cli/ctl.h"
#include "common/bytes.h"
#include "virtual/virtual_qx9.h"
#include "virtual/virtual_qx9_memory.h"
#include "ops/macros.h"
#include "support/scratch.h"
#include "support/sql_value.h"

namespace qx9::test {
namespace {

// qx9ctl run in-process on databases and virtual keyboard files in a directory of its own.
class Qx9ctl : public ::testing::Test {
protected:
    std::string path(const std::string& name) const { return (dir_ / name).string(); }
    // qx9ctl --db DIR/DB --device virtual:DIR/DB.kb.json ARGS…, or without the keyboard with `raw`.
    int run(std::vector<std::string> args, const std::string& db = "db.sqlite3", bool raw = false) {
        args.insert(args.begin(), {"--db", path(db), "--device", "virtual:" + path(db + ".kb.json")});
        if (raw) args.erase(args.begin() + 2, args.begin() + 4);
        out_.str("");
        err_.str("");
        return ctl::run(args, out_, err_);
    }
    // A run that must succeed and print nothing on standard error; its standard output.
    std::string ok(const std::vector<std::string>& args, const std::string& db = "db.sqlite3") {
        EXPECT_EQ(run(args, db), 0) << err_.str();
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
    std::string sql(const std::string& query) { return sqlValue(path("db.sqlite3"), query); }

    TempDir dir_;
    ConsoleCapture console_;  // the tests open the database too
    std::ostringstream out_, err_;
};

TEST_F(Qx9ctl, TheWireLogPrintsEveryReportOfTheFirstConnection) {
    std::vector<std::string> lines;
    std::istringstream in(ok({"--wire", "-", "connect"}));
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    ASSERT_EQ(lines.size(), 4u * 2 - 1 + 2 * 3 + 9);  // system functions, then the key map
    EXPECT_EQ(lines[0].substr(0, 9), "SET 04 18");
    EXPECT_EQ(lines[2].substr(0, 27), "SET 04 17 01 00 00 00 00 00");
    EXPECT_EQ(lines[4].substr(lines[4].size() - 5), "AA 55");
    EXPECT_EQ(lines[5].substr(0, 12), "SET 04 02 01");
    EXPECT_EQ(lines[9].substr(0, 33), "SET 04 11 00 00 00 00 00 00 09 00");
    for (const std::string& l : lines) EXPECT_EQ(l.size(), 3 + 64 * 3u) << l;
}

TEST_F(Qx9ctl, WithoutAKeyboardItStoresAndSaysSo) {
    // "auto" finds no QX9 on this machine.
    ASSERT_EQ(run({"key", "set", "1", "0", "a", "disable"}, "db.sqlite3", true), 0) << err_.str();
    EXPECT_EQ(err_.str(), "qx9ctl: no keyboard attached: stored only, nothing was sent\n");
    ASSERT_EQ(run({"key", "list", "1", "0"}, "db.sqlite3", true), 0);
    EXPECT_EQ(out_.str(), "a\t4\t2\t1\t0\t0\tDisable Keys\n");
}

TEST_F(Qx9ctl, UnreadableDatabaseIsAnErrorSendsNothingAndStaysAsItWas) {
    std::string bytes = "this is not a database, and must stay as it is\n";
    for (int i = 0; i < 4096; ++i) bytes += static_cast<char>((i * 7919 + 13) % 256);  // and noise
    std::ofstream(path("text.sqlite3"), std::ios::binary) << bytes;
    for (const std::vector<std::string>& args : {std::vector<std::string>{"--wire", "-", "connect"},
                                                 {"profile", "list"}, {"key", "set", "1", "0", "a", "key:5"},
                                                 {"settings", "reset-all"}, {"export", "-"}}) {
        EXPECT_EQ(run(args, "text.sqlite3"), 1) << args[0];
        EXPECT_EQ(out_.str(), "");  // nothing on the wire, nothing exported
        EXPECT_EQ(err_.str(), "qx9ctl: cannot read the database " + path("text.sqlite3") +
                                  ": the file is damaged or not a database (left as it is; move it aside to start afresh, or import a backup)\n");
        std::ifstream in(path("text.sqlite3"), std::ios::binary);
        EXPECT_EQ(std::string(std::istreambuf_iterator<char>(in), {}), bytes);
    }
}

TEST_F(Qx9ctl, RefusedCommandsPrintOneLineAndChangeNothing) {
    ok({"settings", "language", "en"});
    ok({"macro", "add"});
    ok({"macro", "insert", "1", "delay:5"});
    ok({"userlight", "add"});
    ok({"userlight", "paint", "1", "a", "--color", "00FF00"});
    ok({"export", path("good.json")});
    std::ofstream(path("foreign.json")) << R"({"theme": "dark"})";
    std::ifstream good(path("good.json"));
    std::ofstream(path("hostile.json")) << R"({"a\n\u001b[31m\u009b": 1,)" << std::string(std::istreambuf_iterator<char>(good), {}).substr(1);
    struct Case {
        std::vector<std::string> before;  // run first: the effect the command is refused for
        std::vector<std::string> args;
        std::string message;
    };
    const Case cases[] = {
        {{}, {"key", "set", "1", "0", "printScreen", "disable"},
         "no key \"printScreen\" on the QX9 (a key name such as a, escape, leftWin, or a key code)"},
        {{}, {"key", "set", "7", "0", "a", "disable"}, "no profile 7 (see: qx9ctl profile list)"},
        {{}, {"key", "set", "1", "2", "a", "disable"}, "the layer is 0 (base) or 1 (Fn), not 2"},
        {{}, {"key", "set", "1", "0", "a", "mouse:9"}, "mouse is 1-8, not 9"},
        {{}, {"key", "set", "1", "0", "a", "macro:3"}, "no macro 3"},
        {{}, {"key", "set", "1", "0", "a", "key:9999"}, "no function 9999 in the key palette"},
        {{}, {"key", "set", "1", "0", "a", "key:4294967337"}, "no function 4294967337 in the key palette"},
        {{}, {"key", "set", "1", "0", "a", "combo:4294967337"}, "no key code 4294967337 on the QX9"},
        {{}, {"import", "/dev/zero"}, "/dev/zero is not a file"},
        {{}, {"key", "set", "1", "0", "a", "combo:4+x"}, "a combination key must be a number: \"x\""},
        {{}, {"key", "set", "1", "0", "a", "teleport"},
         "unknown function \"teleport\"; FUNCTION is default | disable | key:CODE | combo:CODE[+CODE…] | "
         "macro:ID[:once|:repeat:N|:toggle] | mouse:1-8 | media:1-7 | mac:1-6"},
        {{}, {"profile", "delete", "1"},
         "the last profile cannot be deleted"},
        {{}, {"profile", "rename", "1", ""}, "a profile name cannot be empty"},
        {{}, {"settings", "gamemode", "maybe"}, "gamemode takes on or off, not \"maybe\""},
        {{}, {"light", "select", "20"}, "the row is 0-19, not 20"},
        {{}, {"light", "color", "256", "0", "0"}, "red is 0-255, not 256"},
        {{}, {"light", "color", "1", "2"}, "usage: qx9ctl light color R G B"},
        {{}, {"light", "preset", "15"}, "the preset is 1-14, not 15"},
        {{}, {"light", "brightness", "16"}, "the brightness is 0-15, not 16"},
        {{}, {"light", "direction", "north"}, "direction takes up, down, left or right, not \"north\""},
        {{}, {"light", "sleep", "4"}, "the sleep time is 0-3, not 4"},
        {{}, {"light", "dim"}, "unknown light command dim"},
        {{}, {"light"},
         "usage: qx9ctl light list | select ROW | color R G B | preset 1-14 | random on|off | brightness 0-15 | "
         "speed 0-15 | direction up|down|left|right | sleep 0-3 | show"},
        {{"light", "select", "9"}, {"light", "color", "1", "2", "3"},
         "the colour is off while random colour is on (qx9ctl light random off)"},
        {{}, {"light", "direction", "left"}, "\"Scrolling\" takes up or down"},
        {{"light", "select", "0"}, {"light", "speed", "3"}, "\"Static\" has no speed"},
        {{}, {"light", "direction", "up"}, "\"Static\" has no direction"},
        {{"light", "select", "19"}, {"light", "random", "off"}, "\"Close Backlight\" has no random colour"},
        {{}, {"light", "preset", "1"}, "\"Close Backlight\" has no colour of its own"},
        {{}, {"macro", "rename", "9", "X"}, "no macro 9 (see: qx9ctl macro list)"},
        {{}, {"macro", "rename", "1", ""}, "a macro name cannot be empty"},
        {{}, {"macro", "insert", "1", "key:keypad1"},
         "no key \"keypad1\" on the QX9 (a key name such as a, escape, leftShift, or a key code)"},
        {{}, {"macro", "insert", "1", "key:89"},
         "no key \"89\" on the QX9 (a key name such as a, escape, leftShift, or a key code)"},
        {{}, {"macro", "insert", "1", "mouse:side"}, "mouse takes left, middle or right, not \"side\""},
        {{}, {"macro", "insert", "1", "delay:70000"}, "the delay is 0-60000 ms, not 70000"},
        {{}, {"macro", "insert", "1", "wait:5"},
         "unknown event \"wait:5\" (key:NAME, mouse:left|middle|right or delay:MS)"},
        {{}, {"macro", "insert", "1", "delay:5", "--after", "1"}, "no event 1 in this macro (it has 1 event)"},
        {{}, {"macro", "insert", "1", "delay:5", "--at", "0"},
         "usage: qx9ctl macro insert ID key:NAME|mouse:left|middle|right|delay:MS [--before N|--after N]"},
        {{}, {"macro", "delete-event", "1", "-1"}, "no event -1 in this macro (it has 1 event)"},
        {{}, {"macro", "delay-mode", "1", "slow"}, "delay-mode takes record, none or default:MS, not \"slow\""},
        {{}, {"macro", "delay-mode", "1", "default:-1"}, "the delay is 0-60000 ms, not -1"},
        {{}, {"macro", "save"}, "usage: qx9ctl macro save ID"},
        {{}, {"userlight", "paint", "7", "a", "--color", "FF0000"}, "no user light 7 (see: qx9ctl userlight list)"},
        {{}, {"userlight", "paint", "1", "a", "--color", "red"}, "the colour is RRGGBB in hex (FF8000), not \"red\""},
        {{}, {"userlight", "paint", "1", "a", "nokey", "--color", "FF0000"},
         "no key \"nokey\" on the QX9 (a key name such as a, escape, leftWin, or a key code)"},
        {{}, {"userlight", "paint", "1", "f4", "--color", "FF0000"},  // f4 is the Fn layer's
         "the key \"f4\" is not on the on-screen keyboard"},
        {{}, {"userlight", "paint", "1", "a"}, "usage: qx9ctl userlight paint ID KEY... --color RRGGBB"},
        {{}, {"userlight", "apply", "x"}, "the user light must be a number: \"x\""},
        {{}, {"userlight", "reset", "2"}, "no user light 2 (see: qx9ctl userlight list)"},
        {{}, {"userlight", "delete"},
         "usage: qx9ctl userlight list | add | rename ID NAME | delete ID | paint ID KEY... --color RRGGBB | apply ID | reset ID | show ID"},
        {{}, {"export"}, "usage: qx9ctl export FILE (- for standard output)"},
        {{}, {"import", path("missing.json")}, "cannot read " + path("missing.json")},
        {{}, {"import", path("foreign.json")}, path("foreign.json") + " was not imported: not a valid QX9 configuration: it is not a QX9 "
                    "configuration (no \"format\": \"halvorn-qx9-configuration\")"},
        {{}, {"import", path("hostile.json")},  // the name's line break and terminal escapes as escapes: one line
         path("hostile.json") + " was not imported: not a valid QX9 configuration: it has an unknown part \"a\\n\\e[31m\\u009B\""},
    };
    for (const Case& c : cases) {
        if (!c.before.empty()) ok(c.before);
        const auto database = dumpDatabase(path("db.sqlite3"));
        const VirtualQX9Memory memory = keyboard();
        // A command line of the wrong shape is a usage error (2); the rest are refusals (1).
        const bool usage = c.message.starts_with("usage: ") || c.message.starts_with("unknown light command");
        EXPECT_EQ(run(c.args), usage ? 2 : 1) << c.message;
        EXPECT_EQ(err_.str(), "qx9ctl: " + c.message + "\n");
        EXPECT_EQ(dumpDatabase(path("db.sqlite3")), database) << c.message;
        EXPECT_EQ(keyboard(), memory) << c.message;
    }
    // A refused file does not even create a database that did not exist.
    EXPECT_EQ(run({"import", path("foreign.json")}, "new.sqlite3"), 1);
    EXPECT_FALSE(std::filesystem::exists(path("new.sqlite3")));
    // No command at all: the usage, exit status 2.
    EXPECT_EQ(run({}), 2);
    EXPECT_EQ(err_.str().rfind("usage: qx9ctl [--db FILE]", 0), 0u) << err_.str();
}

TEST_F(Qx9ctl, EveryCommandHasItsHelpAndAnUnreadableCommandLineIsAUsageError) {
    // Walk the command tree through the helps: each lists its subcommands, which have help too.
    std::vector<std::vector<std::string>> pending = {{}};
    int helps = 0;
    while (!pending.empty()) {
        std::vector<std::string> words = pending.back();
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
    for (const auto& [args, message] : std::vector<std::pair<std::vector<std::string>, std::string>>{
             {{"frobnicate"}, "unknown command frobnicate"}, {{"--force", "devices"}, "unknown option --force"},
             {{"--wire"}, "--wire: 1 required FILE missing"}}) {
        EXPECT_EQ(run(args, "db.sqlite3", true), 2) << message;
        EXPECT_EQ(err_.str(), "qx9ctl: " + message + "\n");
    }
}

TEST_F(Qx9ctl, Lighting) {
    ok({"settings", "language", "en"});
    const std::string list = ok({"light", "list"});
    EXPECT_EQ(std::count(list.begin(), list.end(), '\n'), 20);
    EXPECT_EQ(list.substr(0, 14), "0\t1\tStatic\t\n1\t");
    EXPECT_NE(list.find("\n10\t11\tRolling\t*\n"), std::string::npos);
    EXPECT_NE(list.find("\n19\t0\tClose Backlight\t\n"), std::string::npos);
    EXPECT_FALSE(decodeLightMode(keyboard()));  // listing sends nothing

    ok({"light", "select", "9"});
    EXPECT_EQ(decodeLightMode(keyboard())->mode, 10);
    // Scrolling's default direction 3 shows on the up button, as in the window.
    EXPECT_EQ(ok({"light", "show"}),
              "profile\t1\nmode\t10\nrow\t9\nname\tScrolling\ncolor\t202 81 0\ncolor_controls\tdisabled\n"
              "random\ton\nrandom_switch\ton, enabled\nbrightness\t15\nbrightness_slider\t15\nspeed\t12\n"
              "speed_slider\t12, enabled\ndirection\t3 down\ndirection_buttons\tup (selected), down\n"
              "preview\tcolourful\nsleeplight\t0\n");

    ok({"light", "select", "10"});  // Rolling
    ok({"light", "random", "off"});
    ok({"light", "color", "255", "100", "50"});
    ok({"light", "brightness", "7"});
    ok({"light", "speed", "3"});
    ok({"light", "direction", "right"});
    ok({"light", "sleep", "2"});
    EXPECT_EQ(sql("SELECT byte1||' '||byte2||' '||byte3||' '||byte8||' '||byte9||' '||byte10||' '||byte11 "
                  "FROM t_lightdata WHERE profId = 1 AND mode = 11"),
              "255 100 50 0 7 3 1");
    const VirtualLightMode sent = decodeLightMode(keyboard()).value();
    EXPECT_EQ((std::array{sent.mode, sent.red, sent.green, sent.blue, sent.random, sent.brightness, sent.speed,
                          sent.direction}),
              (std::array{11, 255, 100, 50, 0, 7, 3, 1}));
    EXPECT_EQ(decodeSystemFunctions(keyboard())->sleepTime, 2);
    const std::string shown = ok({"light", "show"});
    EXPECT_NE(shown.find("\ndirection_buttons\tright (selected), left\npreview\t#FF0000\nsleeplight\t2\n"),
              std::string::npos) << shown;

    ok({"light", "random", "on"});
    const auto transactions = keyboard().transactions;
    ok({"light", "random", "on"});  // the switch shows it already: nothing is sent
    EXPECT_EQ(keyboard().transactions, transactions);

    ok({"light", "select", "19"});  // Close Backlight
    EXPECT_NE(ok({"light", "show"}).find("\nbrightness\t15\nbrightness_slider\t0\n"), std::string::npos);
    EXPECT_NE(out_.str().find("\nrandom_switch\toff, disabled\n"), std::string::npos);
    EXPECT_NE(out_.str().find("\npreview\t#000000\n"), std::string::npos);
}

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
    // 623 events (a delay after each press, so no pauses) and the macro's 8 bytes: exactly 2500 is sent.
    std::vector<ops::RecordRow> events;
    for (int i = 0; i < 311; ++i) events.insert(events.end(), {{2, "A", 4}, {kRecordDelay, "5", 5}});
    ASSERT_TRUE(ops::storeEvents({*DeviceSQLite::openFile(path("db.sqlite3")), nullptr}, 1, events));
    EXPECT_EQ(run({"macro", "insert", "1", "delay:5"}), 0) << err_.str();
    ASSERT_EQ(decodeMacros(keyboard()).size(), 1u);
    EXPECT_EQ(decodeMacros(keyboard())[0].events.size(), 623u);
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
    const std::string exported = ok({"export", "-"}, "a.sqlite3");
    EXPECT_NE(exported.find("\"format\": \"halvorn-qx9-configuration\""), std::string::npos);

    ok({"import", path("config.json")}, "b.sqlite3");
    EXPECT_EQ(ok({"export", "-"}, "b.sqlite3"), exported);
    EXPECT_EQ(ok({"profile", "list"}, "b.sqlite3"), "1\tConfiguration File 1\n2\tConfiguration File 1\n");
    EXPECT_EQ(decodeSystemFunctions(keyboard("b.sqlite3"))->gameMode, 1);
}

}  // namespace
}  // namespace qx9::test
