#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "session_fixture.h"
#include "support/scratch.h"

namespace qx9::desktop {
void PrintTo(const FocusedApplication& app, std::ostream* out) { *out << "{" << app.appId << ", " << app.windowClass << ", " << app.title << "}"; }
}  // namespace qx9::desktop

namespace qx9::test {
namespace {

using desktop::FocusedApplication;

// What the tests do on a desktop, to windows numbered in the order they open; what its source
// tells of a window of `app` with `title`; and a wait until the desktop has passed on what it was
// asked, where it offers one.
struct Desktop {
    std::function<void(const std::string& app, const std::string& title)> open;
    std::function<void(int window)> focus, close;
    std::function<void(int window, const std::string& title)> retitle;
    std::function<FocusedApplication(const std::string& app, const std::string& title)> told;
    std::function<void()> end, settle;
};

// One thing done, and the report it must bring (none: the next report must be the next step's).
struct Step {
    const char* what;
    std::function<void()> act;
    std::optional<FocusedApplication> report;
};

// Runs the steps (`extra` before the last), checking one report per step that expects one, in
// order; then the focused window and the desktop go. A passing "nothing" on the way to a window
// (a window manager clearing the active window before naming the next) is left out, unless a
// step expects nothing.
void followTheFocus(desktop::FocusSource& source, const Desktop& d, const std::vector<Step>& extra = {}) {
    const FocusedApplication alpha1 = d.told("alpha", "Alpha one"), alpha2 = d.told("alpha", "Alpha ✓ two"),
                             beta1 = d.told("beta", "Bêta one"), beta2 = d.told("beta", "Bêta two");
    std::vector<Step> steps = {
        {"alpha opens", [&] { d.open("alpha", "Alpha one"); }, alpha1},
        {"beta opens", [&] { d.open("beta", "Bêta one"); }, beta1},
        {"alpha focused", [&] { d.focus(0); }, alpha1},
        {"alpha focused again", [&] { d.focus(0); }, {}},
        {"alpha's title written unchanged", [&] { d.retitle(0, "Alpha one"); }, {}},
        {"beta retitled behind", [&] { d.retitle(1, "Bêta two"); }, {}},
        {"alpha retitled", [&] { d.retitle(0, "Alpha ✓ two"); }, alpha2},
        {"a second alpha window", [&] { d.open("alpha", "Alpha ✓ two"); }, alpha2},
    };
    steps.insert(steps.end(), extra.begin(), extra.end());
    steps.push_back({"beta focused", [&] { d.focus(1); }, beta2});

    std::vector<FocusedApplication> seen;
    bool nothingCounts = false;
    source.onFocus = [&](const FocusedApplication& app) {
        if (nothingCounts || app != FocusedApplication{}) seen.push_back(app);
    };
    std::size_t expected = 0;
    for (const Step& step : steps) {
        step.act();
        if (!step.report) {
            d.settle();
            source.dispatch();
            continue;
        }
        nothingCounts = *step.report == FocusedApplication{};
        ASSERT_TRUE(serveUntil(source, [&] { return seen.size() > expected; })) << step.what;
        nothingCounts = false;
        EXPECT_EQ(seen[expected++], *step.report) << step.what;
        EXPECT_EQ(source.current(), seen.back()) << step.what;
    }
    EXPECT_EQ(seen.size(), expected);
    d.close(1);  // the focus lands on an alpha window, perhaps by way of nothing
    EXPECT_TRUE(serveUntil(source, [&] { return seen.back() == alpha2; }));
    d.end();
    EXPECT_TRUE(serveUntil(source, [&] { return source.broken(); }));
    source.dispatch();
}

// Beta's windows are named in ISO Latin-1 (WM_NAME alone), alpha's in UTF-8; the window manager's
// _NET_ACTIVE_WINDOW is also written by hand, as managers may write it.
TEST(X11Focus, ReportsEachChangeOnceAndOutlivesItsWindowsAndServer) {
    XSession x;
    if (!x.problem.empty()) GTEST_SKIP() << x.problem << ": the X11 tests need Xvfb, openbox and xdotool";
    std::string why;
    {
        // Never under Wayland, where Xwayland sees only the X clients; nothing without a display.
        EnvOverride wayland("WAYLAND_DISPLAY", "qx9-none"), display("DISPLAY", x.display());
        EXPECT_FALSE(desktop::openFocusSource(why));
        EXPECT_EQ(why, "cannot connect to the Wayland display qx9-none");
        EnvOverride noWayland("WAYLAND_DISPLAY", std::nullopt), noDisplay("DISPLAY", std::nullopt);
        EXPECT_FALSE(desktop::openFocusSource(why));
        EXPECT_EQ(why, "no graphical session: neither WAYLAND_DISPLAY nor DISPLAY is set");
    }
    EnvOverride wayland("WAYLAND_DISPLAY", std::nullopt), display("DISPLAY", x.display());
    const auto source = desktop::openFocusSource(why);
    ASSERT_TRUE(source) << why;
    EXPECT_EQ(source->name(), "X11 (EWMH)");
    EXPECT_EQ(source->current(), FocusedApplication{});
    std::vector<xcb_window_t> windows;
    std::vector<std::string> apps;
    const auto latin1 = [](std::string text) { return text.replace(text.find("ê"), 2, "\xea"); };
    const Desktop desktop{
        .open = [&](const std::string& app, const std::string& title) {
            apps.push_back(app);
            windows.push_back(app == "beta" ? x.window(app, "Beta", latin1(title), true) : x.window(app, "Alpha", title));
        },
        .focus = [&](int w) { x.activate(windows[w]); },
        .close = [&](int w) { x.destroy(windows[w]); },
        .retitle = [&](int w, const std::string& title) { apps[w] == "beta" ? x.setTitle(windows[w], latin1(title), true) : x.setTitle(windows[w], title); },
        .told = [](const std::string& app, const std::string& title) { return FocusedApplication{app, app == "beta" ? "Beta" : "Alpha", title}; },
        .end = [&] { x.stopServer(); },
        .settle = [&] { x.sync(); }};
    const auto id = [](xcb_window_t w) { return std::string(reinterpret_cast<const char*>(&w), sizeof w); };
    const FocusedApplication alpha2 = desktop.told("alpha", "Alpha ✓ two");
    followTheFocus(*source, desktop,
                   {{"the manager names the first alpha", [&] { x.setActive(XCB_ATOM_WINDOW, 32, id(windows[0])); }, alpha2},
                    {"the manager names it again", [&] { x.setActive(XCB_ATOM_WINDOW, 32, id(windows[0])); }, {}},
                    {"the manager names none", [&] { x.setActive(XCB_ATOM_WINDOW, 32, id(XCB_WINDOW_NONE)); }, FocusedApplication{}},
                    {"the manager names a missing window", [&] { x.setActive(XCB_ATOM_WINDOW, 32, id(x.unusedId())); }, {}},
                    {"the manager names no window", [&] { x.setActive(XCB_ATOM_STRING, 8, "x"); }, {}}});
}

// A headless sway of its own with foot's windows. sway refuses to run as root: then it runs as
// nobody, in a runtime folder handed to nobody.
TEST(WlrootsFocus, ReportsEachChangeOnceAndOutlivesItsWindowsAndCompositor) {
    constexpr uid_t kNobody = 65534;
    TempDir runtime;
    const std::string dir = runtime.path().string(), config = dir + "/config";
    const bool root = ::geteuid() == 0;
    if (root && ::chown(dir.c_str(), kNobody, kNobody) != 0) GTEST_SKIP() << "cannot hand a folder to nobody";
    std::ofstream(config) << "xwayland disable\nexec sh -c 'echo $WAYLAND_DISPLAY $SWAYSOCK >&" << kReportFd << "'\n";
    std::vector<std::string> sway = {"env", "-u", "WAYLAND_DISPLAY", "-u", "DISPLAY", "XDG_RUNTIME_DIR=" + dir, "HOME=" + dir,
                                     "WLR_BACKENDS=headless", "WLR_LIBINPUT_NO_DEVICES=1", "WLR_RENDERER=pixman", "sway", "-c", config};
    if (root) sway.insert(sway.begin() + 10, {"setpriv", "--reuid=65534", "--regid=65534", "--clear-groups"});
    std::optional<Child> compositor(std::in_place, sway);
    std::string wayland, ipc;
    std::istringstream(compositor->readyLine()) >> wayland >> ipc;
    if (ipc.empty()) GTEST_SKIP() << "sway cannot start headless: the wlroots tests need sway and foot";

    // DISPLAY too, as Xwayland would set it: under Wayland the X11 source is not used.
    EnvOverride runtimeDir("XDG_RUNTIME_DIR", dir), display("WAYLAND_DISPLAY", wayland), x("DISPLAY", ":4242");
    std::string why;
    const auto source = desktop::openFocusSource(why);
    ASSERT_TRUE(source) << why;
    EXPECT_EQ(source->name(), "wlroots (foreign toplevel)");
    std::vector<std::unique_ptr<Child>> windows;
    std::vector<std::string> apps;
    const Desktop desktop{
        .open = [&](const std::string& app, const std::string& title) {
            apps.push_back(app);
            windows.push_back(std::make_unique<Child>(std::vector<std::string>{
                "foot", "--app-id", app, "--title", title, "sh", "-c", R"(while read -r t; do printf '\033]2;%s\007' "$t"; done <{in})"}));
        },
        .focus = [&](int w) { EXPECT_EQ(run({"swaymsg", "-s", ipc, "[app_id=" + apps[w] + "] focus"}), 0); },
        .close = [&](int w) { windows[w]->finish(); },
        .retitle = [&](int w, const std::string& title) { windows[w]->say(title); },
        .told = [](const std::string& app, const std::string& title) { return FocusedApplication{app, "", title}; },
        .end = [&] { compositor.reset(); },
        .settle = [] {}};  // swaymsg returns once sway has sent what its command changed
    followTheFocus(*source, desktop);
}

}  // namespace
}  // namespace qx9::test
