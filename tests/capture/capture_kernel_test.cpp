// The keystroke capture against the real kernel: a keyboard made through /dev/uhid appears as an
// event node, which the capture finds by udev, reads and loses again. Runs inside a throw-away
// virtual machine (tests/uhid/run_in_vm.sh).
#include <fcntl.h>
#include <gmock/gmock.h>
#include <linux/input.h>
#include <poll.h>
#include <unistd.h>

#include <chrono>
#include <string>
#include <thread>

#include "capture_fixture.h"
#include "hid/keylogger.h"
#include "support/descriptors.h"
#include "support/wire_fixture.h"
#include "uhid/uhid_device.h"

namespace qx9 {
namespace {

using namespace std::chrono_literals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

// Runs the capture's part of the main loop until `done` or the time is up.
template <typename Done>
bool runUntil(Keylogger& k, Done done, std::chrono::milliseconds limit = 10s) {
    const auto end = std::chrono::steady_clock::now() + limit;
    while (!done()) {
        if (std::chrono::steady_clock::now() > end) return false;
        std::vector<pollfd> p;
        if (k.monitorFd() >= 0) p.push_back({k.monitorFd(), POLLIN, 0});
        for (int fd : k.fds()) p.push_back({fd, POLLIN, 0});
        if (::poll(p.data(), p.size(), 50) <= 0) continue;
        for (const pollfd& q : p) {
            if (!q.revents) continue;
            if (q.fd == k.monitorFd()) k.hotplugReadable();
            else k.readAvailable(q.fd);
        }
    }
    return true;
}

class KernelCapture : public CaptureTest {
protected:
    void SetUp() override {
        if (::access("/dev/uhid", W_OK) != 0) GTEST_SKIP() << "no /dev/uhid here";
        CaptureTest::SetUp();
    }
};

TEST_F(KernelCapture, AKeyboardPluggedInIsReadUntilItGoes) {
    Keylogger k(cs);
    EXPECT_EQ(console_.str().rfind("dll [[\"ID_INPUT_KEYBOARD\": \"1\"], [\"ID_INPUT_KEY\": \"1\"]]\n", 0), 0u);
    ASSERT_GE(k.monitorFd(), 0);
    const std::vector<int> before = k.fds();
    std::vector<std::pair<int, bool>> watched;
    k.setWatchCallback([&](int fd, bool added) { watched.emplace_back(fd, added); });

    test::UhidDevice kb("capture test keyboard", test::hexBytes(test::kKeyboardInterface), false);
    ASSERT_TRUE(kb.created()) << kb.error();
    // Sends one input report (modifier bits, a reserved byte, a key) and reads until `until`.
    const auto report = [&](std::uint8_t modifiers, std::uint8_t key, auto until) {
        return kb.input({modifiers, 0, key, 0, 0, 0, 0, 0}) && runUntil(k, until);
    };
    ASSERT_TRUE(runUntil(k, [&] { return k.fds().size() == before.size() + 1; })) << "the node never came";
    ASSERT_EQ(watched.size(), 1u);
    const int fd = watched[0].first;
    EXPECT_TRUE(watched[0].second);
    EXPECT_TRUE(inputMonitoringTrusted());
    EXPECT_EQ(k.source(), CaptureSource::Evdev);
    {
        console_.str("");
        Keylogger present(cs);  // finds the keyboard among the nodes already there
        EXPECT_EQ(present.fds().size(), before.size() + 1);
        EXPECT_EQ(console_.str().find("Can't open HID!"), std::string::npos);
    }

    // Shift+A, then A alone, then nothing
    ASSERT_TRUE(report(0x02, 0x04, [&] { return cs.GLOBAL_LAST_PRESS_KEY_SCANCODE == 4; }));
    EXPECT_EQ(cs.lastKeyOperate, "down");
    EXPECT_THAT(cs.pressedFlags, ElementsAre(225));
    EXPECT_THAT(cs.pressedNormalKey, ElementsAre(4));
    EXPECT_EQ(cs.shiftKeyStatus, 1);
    const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(
                         std::chrono::system_clock::now().time_since_epoch()).count();
    EXPECT_NEAR(static_cast<double>(cs.lastMovedTime), static_cast<double>(now), 60'000.0);

    ASSERT_TRUE(report(0x00, 0x04, [&] { return cs.shiftKeyStatus == 0; }));
    EXPECT_THAT(cs.pressedFlags, IsEmpty());
    EXPECT_THAT(cs.pressedNormalKey, ElementsAre(4));

    ASSERT_TRUE(report(0x00, 0, [&] { return cs.pressedNormalKey.empty(); }));
    EXPECT_EQ(cs.lastKeyOperate, "up");
    EXPECT_EQ(cs.GLOBAL_LAST_PRESS_KEY_SCANCODE, 4);

    // Held well past the kernel's repeat delay, a key stays one press. A second reader of the
    // node shows that the kernel did repeat it meanwhile.
    char path[64] = {};
    ASSERT_GT(::readlink(("/proc/self/fd/" + std::to_string(fd)).c_str(), path, sizeof path - 1), 0);
    UniqueFd witness(::open(path, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    ASSERT_TRUE(witness) << path;
    ASSERT_TRUE(report(0x00, 0x05, [&] { return !cs.pressedNormalKey.empty(); }));
    const std::int64_t pressedAt = cs.lastMovedTime;
    std::this_thread::sleep_for(800ms);
    k.drain();
    EXPECT_THAT(cs.pressedNormalKey, ElementsAre(5));
    EXPECT_EQ(cs.lastMovedTime, pressedAt);
    int repeats = 0;
    input_event ev;
    while (::read(witness.get(), &ev, sizeof ev) == static_cast<ssize_t>(sizeof ev)) {
        if (ev.type == EV_KEY && ev.code == KEY_B && ev.value == 2) ++repeats;
    }
    EXPECT_GT(repeats, 0);
    ASSERT_TRUE(report(0x00, 0, [&] { return cs.pressedNormalKey.empty(); }));
    EXPECT_EQ(cs.lastKeyOperate, "up");
    EXPECT_EQ(cs.GLOBAL_LAST_PRESS_KEY_SCANCODE, 5);
    witness.reset();

    // Unplugged: the read fails and the node is dropped, whichever comes first, the read or udev.
    kb.destroy();
    std::this_thread::sleep_for(300ms);
    k.drain();
    ASSERT_TRUE(runUntil(k, [&] { return k.fds() == before; }));
    EXPECT_EQ(watched.back(), std::pair(fd, false));
    k.drain();
    k.hotplugReadable();
    EXPECT_EQ(k.fds(), before);
}

}  // namespace
}  // namespace qx9
