// The capture state's rules, and its feeding from input event streams (pipes carrying struct
// input_event records as an event node delivers them) or from the application's key events.
#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/input.h>
#include <unistd.h>

#include <vector>

#include "capture_fixture.h"
#include "hid/keylogger.h"
#include "hid/privilege_monitor.h"

namespace qx9 {
namespace {

using ::testing::ElementsAre;
using ::testing::ElementsAreArray;
using ::testing::IsEmpty;
using V = std::vector<std::int64_t>;
using Capture = CaptureTest;

struct Scenario {
    const char* name;
    bool connected;
    std::vector<std::pair<std::int64_t, std::int64_t>> values;  // (usage, value) in order
    std::int64_t last;
    const char* op;
    V normal, flags;
    std::int64_t shift;
};

const Scenario kScenarios[] = {
    {"ShiftA", true, {{225, 1}, {4, 1}}, 4, "down", {4}, {225}, 1},
    {"ShiftAThenShiftUp", true, {{225, 1}, {4, 1}, {225, 0}}, 225, "up", {4}, {}, 0},
    {"RightShiftIsNoShiftState", true, {{229, 1}}, 229, "down", {}, {229}, 0},
    {"PressOrderKept", true, {{225, 1}, {224, 1}, {5, 1}, {4, 1}, {225, 0}}, 225, "up", {5, 4}, {224}, 0},
    {"DuplicatePress", true, {{4, 1}, {5, 1}, {4, 1}}, 4, "down", {4, 5, 4}, {}, 0},
    {"OneReleaseRemovesBoth", true, {{4, 1}, {5, 1}, {4, 1}, {4, 0}}, 4, "up", {5}, {}, 0},
    {"NoKeyboardConnectedYet", false, {{225, 1}, {4, 1}}, 4, "down", {}, {}, 1},
    {"UsagesOutside4To2310Ignored", true, {{3, 1}, {2311, 1}, {-1, 1}}, 0, "", {}, {}, 0},
    {"Usage2310Taken", true, {{2310, 1}}, 2310, "down", {}, {}, 0},
    {"OtherValueOnlyLastUsage", true, {{4, 1}, {5, 2}}, 5, "down", {4}, {}, 0},
};

TEST_F(Capture, StateRules) {
    for (const Scenario& s : kScenarios) {
        SCOPED_TRACE(s.name);
        cs = CaptureState{};
        if (s.connected) cs.setKeyClasses(KB_108K_SuperKeyNameMap());
        std::int64_t t = 1000;
        for (auto [usage, value] : s.values) cs.captureKeyValue(usage, value, ++t);
        EXPECT_EQ(cs.GLOBAL_LAST_PRESS_KEY_SCANCODE, s.last);
        EXPECT_EQ(cs.lastKeyOperate, s.op);
        EXPECT_THAT(cs.pressedNormalKey, ElementsAreArray(s.normal));
        EXPECT_THAT(cs.pressedFlags, ElementsAreArray(s.flags));
        EXPECT_EQ(cs.shiftKeyStatus, s.shift);
        EXPECT_EQ(cs.lastMovedTime, t);  // stamped whatever the usage
    }
}

input_event ev(int type, int code, int value, std::int64_t ms = 1'700'000'000'123) {
    input_event e{};
    e.input_event_sec = ms / 1000;
    e.input_event_usec = (ms % 1000) * 1000 + 456;  // below a millisecond: dropped
    e.type = static_cast<__u16>(type);
    e.code = static_cast<__u16>(code);
    e.value = value;
    return e;
}
input_event syn() { return ev(EV_SYN, SYN_REPORT, 0); }

// A pipe standing in for an event node; its read end is non-blocking, as nodes are opened.
struct FakeNode {
    UniqueFd read, write;
    FakeNode() {
        int p[2];
        EXPECT_EQ(::pipe2(p, O_CLOEXEC | O_NONBLOCK), 0);
        read.reset(p[0]);
        write.reset(p[1]);
    }
    void send(const std::vector<input_event>& events) {
        const auto size = static_cast<ssize_t>(events.size() * sizeof(input_event));
        ASSERT_EQ(::write(write.get(), events.data(), static_cast<std::size_t>(size)), size);
    }
};

TEST_F(Capture, EventStreamKeysBecomeUsagesAtTheirOwnTime) {
    FakeNode node;
    EvdevKeyReader reader(std::move(node.read), cs);
    // Shift+A as a USB keyboard's node reports it, among events that are no key of the page
    node.send({ev(EV_MSC, MSC_SCAN, 0x700e1), ev(EV_KEY, KEY_LEFTSHIFT, 1, 1'700'000'000'100), syn(),
               ev(EV_KEY, KEY_A, 1, 1'700'000'000'250), ev(EV_KEY, KEY_FN, 1), ev(EV_KEY, BTN_LEFT, 1),
               ev(EV_LED, LED_CAPSL, 1), syn()});
    EXPECT_TRUE(reader.readAvailable());
    EXPECT_EQ(cs.GLOBAL_LAST_PRESS_KEY_SCANCODE, 4);
    EXPECT_THAT(cs.pressedFlags, ElementsAre(225));
    EXPECT_THAT(cs.pressedNormalKey, ElementsAre(4));
    EXPECT_EQ(cs.lastMovedTime, 1'700'000'000'250);

    // Autorepeat is no report; a record split between two reads counts once it is whole.
    node.send({ev(EV_KEY, KEY_B, 1, 1000), syn(), ev(EV_KEY, KEY_B, 2, 1500), syn()});
    const input_event release = ev(EV_KEY, KEY_B, 0, 1600);
    const auto* bytes = reinterpret_cast<const char*>(&release);
    ASSERT_EQ(::write(node.write.get(), bytes, 10), 10);
    EXPECT_TRUE(reader.readAvailable());
    EXPECT_THAT(cs.pressedNormalKey, ElementsAre(4, 5));
    EXPECT_EQ(cs.lastMovedTime, 1000);
    ASSERT_EQ(::write(node.write.get(), bytes + 10, sizeof release - 10), ssize_t(sizeof release - 10));
    EXPECT_TRUE(reader.readAvailable());
    EXPECT_THAT(cs.pressedNormalKey, ElementsAre(4));
    EXPECT_EQ(cs.lastKeyOperate, "up");

    // After SYN_DROPPED the rest of that report is incomplete and left out; an event without a
    // time is stamped with the clock.
    node.send({ev(EV_SYN, SYN_DROPPED, 0), ev(EV_KEY, KEY_A, 0), syn(), ev(EV_KEY, KEY_C, 1, 0), syn()});
    EXPECT_TRUE(reader.readAvailable());
    EXPECT_THAT(cs.pressedNormalKey, ElementsAre(4, 6));
    EXPECT_GT(cs.lastMovedTime, 1'700'000'000'123);
    EXPECT_TRUE(reader.readAvailable());  // nothing pending: still there
}

TEST_F(Capture, KeyloggerDropsVanishedStreamsAfterTellingTheWatcher) {
    Keylogger k(cs, Keylogger::Discovery::None);
    // Nothing failed to open: no "Can't open HID!".
    EXPECT_EQ(console_.text(), "dll [[\"ID_INPUT_KEYBOARD\": \"1\"], [\"ID_INPUT_KEY\": \"1\"]]\n");
    EXPECT_EQ(k.source(), CaptureSource::Application);
    std::vector<std::pair<int, bool>> watched;
    bool openWhenDropped = false;
    k.setWatchCallback([&](int fd, bool added) {
        watched.emplace_back(fd, added);
        if (!added) openWhenDropped = ::fcntl(fd, F_GETFD) != -1;
    });
    FakeNode n1, n2;
    const int fd1 = k.addStream(std::move(n1.read), "event1");
    const int fd2 = k.addStream(std::move(n2.read), "event2");
    // a descriptor whose reads fail, as an unplugged node's do (ENODEV)
    const int fd3 = k.addStream(UniqueFd(::open("/", O_RDONLY | O_DIRECTORY | O_CLOEXEC)), "event3");
    EXPECT_EQ(k.source(), CaptureSource::Evdev);

    n1.send({ev(EV_KEY, KEY_A, 1), syn()});
    n2.send({ev(EV_KEY, KEY_LEFTSHIFT, 1), syn(), ev(EV_KEY, KEY_LEFTSHIFT, 0), syn()});
    n2.write.reset();  // unplugged after its last events
    k.drain();
    EXPECT_THAT(cs.pressedNormalKey, ElementsAre(4));
    EXPECT_EQ(cs.lastKeyOperate, "up");  // what came before the end still counts
    EXPECT_THAT(k.fds(), ElementsAre(fd1));
    EXPECT_THAT(watched, ElementsAre(std::pair(fd1, true), std::pair(fd2, true), std::pair(fd3, true),
                                     std::pair(fd2, false), std::pair(fd3, false)));
    EXPECT_TRUE(openWhenDropped);
    EXPECT_EQ(::fcntl(fd2, F_GETFD), -1);

    k.readAvailable(fd2);  // a late notification for a gone node
    n1.write.reset();
    k.readAvailable(fd1);
    EXPECT_THAT(k.fds(), IsEmpty());
    EXPECT_EQ(k.source(), CaptureSource::Application);
    EXPECT_THAT(cs.pressedNormalKey, ElementsAre(4));  // held keys outlive their keyboard
}

TEST_F(Capture, ApplicationKeyEventsFeedTheStateOnlyWithoutEventNodes) {
    Keylogger k(cs, Keylogger::Discovery::None);
    k.applicationKeyEvent(50 /* Shift_L */, true, false, 100);
    k.applicationKeyEvent(38 /* a */, true, false, 110);
    k.applicationKeyEvent(38, true, false, 110);  // the same event, seen again on a parent widget
    k.applicationKeyEvent(38, true, true, 140);   // autorepeat
    EXPECT_THAT(cs.pressedFlags, ElementsAre(225));
    EXPECT_THAT(cs.pressedNormalKey, ElementsAre(4));
    k.applicationKeyEvent(38, false, false, 200);
    k.applicationKeyEvent(38, true, false, 300);
    EXPECT_THAT(cs.pressedNormalKey, ElementsAre(4));
    EXPECT_EQ(cs.lastKeyOperate, "down");

    FakeNode node;
    k.addStream(std::move(node.read), "event1");
    node.send({ev(EV_KEY, KEY_B, 1), syn()});
    k.applicationKeyEvent(38, false, false, 400);  // not taken from the event; the node is drained
    EXPECT_EQ(cs.GLOBAL_LAST_PRESS_KEY_SCANCODE, 5);
    EXPECT_THAT(cs.pressedNormalKey, ElementsAre(4, 5));
}

}  // namespace
}  // namespace qx9
