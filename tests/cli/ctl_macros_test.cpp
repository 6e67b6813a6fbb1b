// qx9ctl macro …: the list, the event editor and the delay mode, checked in the output, the
// database and the macro block of the virtual keyboard.
#include <gtest/gtest.h>

#include <filesystem>
#include <sstream>
#include <unistd.h>

#include "cli/ctl.h"
#include "cli/ctl_fixture.h"
#include "common/bytes.h"
#include "hid/virtual_qx9.h"

namespace qx9::test {
namespace {

class Qx9ctlMacro : public CtlTest {
protected:
    std::string output(std::vector<std::string> args) {
        EXPECT_EQ(run(std::move(args)), 0) << err_.str();
        return out_.str();
    }
    // The macro block the keyboard holds, as hex from `offset` ("none" before the first).
    std::string block(std::size_t offset, std::size_t length) {
        VirtualQX9 kb;
        std::string error;
        kb.loadState((dir_ / "kb.json").string(), error);
        const auto& b = kb.memory().macroBlock;
        if (!b) return "none";
        return hexString(std::span(*b).subspan(offset, length));
    }
};

TEST_F(Qx9ctlMacro, AddRenameDeleteLikeTheWindow) {
    EXPECT_EQ(output({"macro", "add"}), "1\tMacro1\n");
    EXPECT_EQ(output({"macro", "add"}), "2\tMacro2\n");
    output({"macro", "rename", "1", "Copy"});
    EXPECT_EQ(output({"macro", "add"}), "3\tMacro3\n");  // named after the count, not the names
    output({"macro", "delete", "2"});
    EXPECT_EQ(output({"macro", "list"}), "1\tCopy\t0\trecord\n3\tMacro3\t0\trecord\n");
    EXPECT_NE(output({"--json", "macro", "list"}).find("\"name\": \"Copy\""), std::string::npos);
    EXPECT_EQ(block(0, 4), "none");  // nothing of this goes to the keyboard
}

TEST_F(Qx9ctlMacro, InsertPlacesEventsAndWritesTheKeyboard) {
    output({"macro", "add"});
    output({"macro", "add"});  // without events: FF FF FF FF
    output({"macro", "insert", "1", "key:a"});
    EXPECT_EQ(block(0, 8), "90 01 00 00 FF FF FF FF");
    EXPECT_EQ(block(400, 20), "03 00 00 00 00 00 00 00 00 00 04 B0 0A 00 00 50 00 00 04 30");
    output({"macro", "insert", "1", "mouse:right", "--before", "0"});
    output({"macro", "insert", "1", "delay:250", "--after", "1"});
    EXPECT_EQ(output({"macro", "events", "1"}),
              "0\t4\t3\t[MOUSE DOWN] Right Button\n"
              "1\t5\t3\t[MOUSE UP] Right Button\n"
              "2\t1\t250\t[Delay:ms] 250\n"
              "3\t2\t4\t[KEY DOWN] A\n"
              "4\t3\t4\t[KEY UP] A\n");
    EXPECT_EQ(block(400, 8 + 28),
              "07 00 00 00 00 00 00 00 00 00 02 90 0A 00 00 50 00 00 02 10 FA 00 00 50 00 00 04 B0 0A 00 00 50 "
              "00 00 04 30");
    EXPECT_EQ(block(510, 2), "AA 55");
}

TEST_F(Qx9ctlMacro, InsertOnTheWire) {
    output({"macro", "add"});
    std::istringstream in(output({"--wire", "-", "macro", "insert", "1", "key:leftShift"}));
    std::vector<std::string> sets;
    for (std::string line; std::getline(in, line);) {
        if (line.rfind("SET ", 0) == 0) sets.push_back(line.substr(4, 26));
    }
    ASSERT_EQ(sets.size(), 1u + 1 + 8 + 1);  // open, header, eight data reports, end
    EXPECT_EQ(sets[0], "04 19 00 00 00 00 00 00 00");
    EXPECT_EQ(sets[1], "04 15 00 00 00 00 00 00 08");
    EXPECT_EQ(sets[2], "90 01 00 00 00 00 00 00 00");
    EXPECT_EQ(sets[10], "04 02 00 00 00 00 00 00 00");
}

TEST_F(Qx9ctlMacro, DeletedEventLeavesWithItsPartnerAndReachesTheKeyboard) {
    output({"macro", "add"});
    output({"macro", "insert", "1", "key:b"});
    output({"macro", "insert", "1", "delay:100", "--after", "0"});  // down B, 100, up B
    EXPECT_EQ(block(400, 20), "03 00 00 00 00 00 00 00 00 00 05 B0 64 00 00 50 00 00 05 30");
    ASSERT_EQ(run({"macro", "delete-event", "1", "0"}), 0) << err_.str();
    EXPECT_EQ(output({"macro", "events", "1"}), "0\t1\t100\t[Delay:ms] 100\n");  // key up B went with it
    EXPECT_EQ(block(400, 12), "01 00 00 00 00 00 00 00 64 00 00 50");
}

TEST_F(Qx9ctlMacro, DelayModeIsSaved) {
    output({"macro", "add"});
    output({"macro", "delay-mode", "1", "default:30"});
    EXPECT_EQ(output({"macro", "list"}), "1\tMacro1\t0\tdefault:30\n");
    EXPECT_NE(block(0, 4), "none");  // saving writes the keyboard
    output({"macro", "save", "1"});  // sends what is stored, changing nothing
    EXPECT_EQ(output({"macro", "list"}), "1\tMacro1\t0\tdefault:30\n");
    output({"macro", "delay-mode", "1", "none"});
    EXPECT_EQ(output({"macro", "list"}), "1\tMacro1\t0\tnone\n");
    output({"macro", "delay-mode", "1", "record"});
    EXPECT_EQ(output({"macro", "list"}), "1\tMacro1\t0\trecord\n");
}

TEST_F(Qx9ctlMacro, BadArgumentsChangeNothing) {
    output({"macro", "add"});
    output({"macro", "insert", "1", "delay:5"});
    const std::string before = block(0, 512);
    const struct {
        std::vector<std::string> args;
        const char* error;
    } cases[] = {
        {{"macro", "rename", "9", "X"}, "qx9ctl: no macro 9 (see: qx9ctl macro list)\n"},
        {{"macro", "rename", "1", ""}, "qx9ctl: a macro name cannot be empty\n"},
        {{"macro", "delete", "x"}, "qx9ctl: the macro must be a number: \"x\"\n"},
        {{"macro", "insert", "1", "key:keypad1"},
         "qx9ctl: no key \"keypad1\" on the QX9 (a key name such as a, escape, leftShift, or a key code)\n"},
        {{"macro", "insert", "1", "key:89"},
         "qx9ctl: no key \"89\" on the QX9 (a key name such as a, escape, leftShift, or a key code)\n"},
        {{"macro", "insert", "1", "mouse:side"}, "qx9ctl: mouse takes left, middle or right, not \"side\"\n"},
        {{"macro", "insert", "1", "delay:70000"}, "qx9ctl: the delay is 0-60000 ms, not 70000\n"},
        {{"macro", "insert", "1", "wait:5"},
         "qx9ctl: unknown event \"wait:5\" (key:NAME, mouse:left|middle|right or delay:MS)\n"},
        {{"macro", "insert", "1", "delay:5", "--after", "1"}, "qx9ctl: no event 1 in this macro (it has 1 event)\n"},
        {{"macro", "insert", "1", "delay:5", "--at", "0"},
         "qx9ctl: usage: qx9ctl macro insert ID key:NAME|mouse:left|middle|right|delay:MS [--before N|--after N]\n"},
        {{"macro", "delete-event", "1", "-1"}, "qx9ctl: no event -1 in this macro (it has 1 event)\n"},
        {{"macro", "delay-mode", "1", "slow"}, "qx9ctl: delay-mode takes record, none or default:MS, not \"slow\"\n"},
        {{"macro", "delay-mode", "1", "default:-1"}, "qx9ctl: the delay is 0-60000 ms, not -1\n"},
        {{"macro", "save"}, "qx9ctl: usage: qx9ctl macro save ID\n"},
        {{"macro", "frob"}, "qx9ctl: unknown macro command frob\n"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(run(c.args), 1) << c.args[1];
        EXPECT_EQ(err_.str(), c.error);
    }
    EXPECT_EQ(output({"macro", "list"}), "1\tMacro1\t1\trecord\n");
    EXPECT_EQ(block(0, 512), before);
}

}  // namespace
}  // namespace qx9::test
