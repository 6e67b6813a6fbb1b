// The profile follows the application in front on an X server: the keyboard receives each
// application's key map once per switch, and nothing while the focus stays with one application.
#include <gtest/gtest.h>

#include <map>

#include "session/keyboard_session.h"
#include "session_fixture.h"
#include "support/scratch.h"
#include "support/sql_value.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

TEST(FollowOnX11, EachApplicationsKeyMapOncePerSwitch) {
    XSession x;
    if (!x.problem.empty()) GTEST_SKIP() << x.problem << ": the X11 tests need Xvfb and openbox";
    TempDir dir;
    EnvOverride wayland("WAYLAND_DISPLAY", std::nullopt), display("DISPLAY", x.display()),
        config("XDG_CONFIG_HOME", (dir / "config").string());
    ConsoleCapture console;
    SessionLoop loop;
    const auto recorder = std::make_shared<WireRecorder>();
    const auto db = dir / "device.sqlite3";
    KeyboardSession session(SessionConfig{.databaseFile = db, .pacer = recorder.get(), .wire = recorder}, &loop);
    session.device.deviceConnected(virtualQX9Record(std::make_shared<VirtualQX9>()));
    session.profiles.customkey_button_profile(ProfileList::kAdd);
    session.profiles.customkey_button_profile(ProfileList::kAdd);
    ASSERT_TRUE(ops::setAppProfile(ops::appProfilesFile(), *session.core.db(), {"Alpha", "", 2}));
    ASSERT_TRUE(ops::setAppProfile(ops::appProfilesFile(), *session.core.db(), {"beta", "", 3}));
    session.follow.start();
    ASSERT_EQ(session.follow.focusSource(), "X11 (EWMH)");

    const auto keyMaps = [&] {  // key-map command reports (read back: a SET followed by a GET)
        long count = 0;
        const auto& ev = recorder->events;
        for (std::size_t i = 0; i + 1 < ev.size(); ++i) {
            std::size_t j = i + 1;
            while (j < ev.size() && ev[j].kind == WireEvent::Pause) ++j;
            count += ev[i].kind == WireEvent::Set && ev[i].bytes[1] == 0x11 && j < ev.size() && ev[j].kind == WireEvent::Get;
        }
        return count;
    };
    const auto profile = [&] { return sqlValue(db, "SELECT value FROM t_configdata WHERE key = 'keyboard_profile'"); };
    // Each step: what goes in front (a window of the title), then the profile and the key maps sent.
    const xcb_window_t alpha = x.window("alpha", "Alpha", "alpha one"), beta = x.window("beta", "Beta", "beta one");
    const struct {
        std::function<void()> act;
        const char* inFront;
        const char* profile;
        long keyMaps;
    } steps[] = {
        {[&] { x.activate(alpha); }, "alpha one", "2", 1},
        {[&] { x.window("alpha", "Alpha", "alpha two"); }, "alpha two", "2", 0},  // the same application
        {[&] { x.activate(beta); }, "beta one", "3", 1},
        {[&] { x.activate(alpha); }, "alpha one", "2", 1},
    };
    for (const auto& step : steps) {
        recorder->events.clear();
        step.act();
        ASSERT_TRUE(loop.runUntil([&] { return session.follow.inFront().title == step.inFront; })) << step.inFront;
        ASSERT_TRUE(loop.runUntil([&] { return !loop.timersPending(); }));  // the debounce has passed
        EXPECT_EQ(profile(), step.profile) << step.inFront;
        EXPECT_EQ(keyMaps(), step.keyMaps) << step.inFront;
    }
}

}  // namespace
}  // namespace qx9::test
