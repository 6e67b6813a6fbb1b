// The keystroke capture against the real kernel: a keyboard made through /dev/uhid appears as an
// event node, which the capture finds by udev, reads and loses again. Runs inside a throw-away
// virtual machine (tests/uhid/run_in_vm.sh).
#include <gmock/gmock.h>
#include <poll.h>

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
            if (q.revents && q.fd == k.monitorFd()) k.hotplugReadable();
            else if (q.revents) k.readAvailable(q.fd);
        }
    }
    return true;
}

TEST_F(CaptureTest, AKeyboardPluggedInIsReadUntilItGoes) {
    Keylogger k(cs);
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
    console_.clear();
    EXPECT_EQ(Keylogger(cs).fds().size(), before.size() + 1);  // found among the nodes already there
    EXPECT_EQ(console_.text().find("Can't open HID!"), std::string::npos);

    // Shift+A, stamped with the kernel's clock
    ASSERT_TRUE(report(0x02, 0x04, [&] { return cs.GLOBAL_LAST_PRESS_KEY_SCANCODE == 4; }));
    EXPECT_THAT(cs.pressedFlags, ElementsAre(225));
    EXPECT_THAT(cs.pressedNormalKey, ElementsAre(4));
    const auto now = std::chrono::duration_cast<std::chrono::milliseconds>(
                         std::chrono::system_clock::now().time_since_epoch()).count();
    EXPECT_NEAR(static_cast<double>(cs.lastMovedTime), static_cast<double>(now), 60'000.0);

    // Shift and A let go of and B pressed in one report.
    ASSERT_TRUE(report(0x00, 0x05, [&] { return cs.pressedNormalKey == std::vector<std::int64_t>{5}; }));
    EXPECT_THAT(cs.pressedFlags, IsEmpty());

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
