// How soon the X11 focus source tells of a change, on an X server of its own (Xvfb) with openbox:
// the time from the request to activate a window (the _NET_ACTIVE_WINDOW message a pager sends,
// as `xdotool windowactivate` does) to onFocus, openbox's work included; beside it the same
// change as a bare xcb client watching the root reads it (openbox's share), and a plain round
// trip to the server (xcb_get_input_focus), measured in the same run. Then the processor time of
// this process while it holds the source open, idle. Last, the whole way through the window's
// session: from the activation request to the first report of the profile's key map (the rules,
// the debounce, the profile stored, then sent to a virtual keyboard), the debounce taken off,
// beside the same profile chosen by hand in the tray (choice to first report).
//   qx9_focus_latency       prints the medians and the idle ticks; exit 77 without Xvfb or openbox

#include <poll.h>
#include <sys/resource.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <optional>
#include <span>

#include "common/console.h"
#include "desktop/focus_source.h"
#include "ops/app_profiles.h"
#include "session/keyboard_session.h"
#include "session_fixture.h"  // tests/desktop: Xvfb with openbox, the session's event loop
#include "virtual/virtual_qx9.h"

namespace {

using Clock = std::chrono::steady_clock;
constexpr int kRounds = 50;
constexpr int kProfileRounds = 20;  // each waits for the debounce
constexpr std::chrono::seconds kIdle{5};

double medianMicros(std::vector<Clock::duration> samples) {
    std::sort(samples.begin(), samples.end());
    return std::chrono::duration<double, std::micro>(samples[samples.size() / 2]).count();
}

std::chrono::microseconds processorTime() {
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    const auto micros = [](const timeval& t) { return std::chrono::seconds(t.tv_sec) + std::chrono::microseconds(t.tv_usec); };
    return micros(usage.ru_utime) + micros(usage.ru_stime);
}

// When the keyboard was sent its first report since reset().
struct FirstReport final : qx9::WireSink {
    void record(qx9::WireDirection direction, std::span<const std::uint8_t>, bool) override {
        if (direction == qx9::WireDirection::Set && !at) at = Clock::now();
    }
    std::optional<Clock::time_point> at;
};

// Focus change (or a choice by hand) to the first report of the key map, through the session.
void profileLatency(qx9::test::XSession& x, const xcb_window_t (&windows)[2]) {
    char folder[] = "/tmp/qx9-focus-XXXXXX";
    if (!mkdtemp(folder)) return;
    setenv("XDG_CONFIG_HOME", folder, 1);
    std::ostream quiet(nullptr);  // the session's diagnostic lines
    qx9::setConsoleStream(&quiet);
    qx9::test::SessionLoop loop;
    const auto first = std::make_shared<FirstReport>();
    qx9::KeyboardSession session(qx9::SessionConfig{.databaseFile = std::string(folder) + "/db.sqlite3", .wire = first}, &loop);
    session.device.deviceConnected(qx9::virtualQX9Record(std::make_shared<qx9::VirtualQX9>()));
    session.profiles.customkey_button_profile(qx9::ProfileList::kAdd);
    session.profiles.customkey_button_profile(qx9::ProfileList::kAdd);
    const std::filesystem::path rules = qx9::ops::appProfilesFile();
    if (!qx9::ops::setAppProfile(rules, *session.core.db(), {"alpha", "", 2}) ||
        !qx9::ops::setAppProfile(rules, *session.core.db(), {"beta", "", 3})) return;
    session.follow.start();
    std::vector<Clock::duration> followed, chosen;
    for (int i = 0; i < 2 * kProfileRounds; ++i) {
        first->at.reset();
        const auto start = Clock::now();
        if (i % 2 == 0) x.activate(windows[(i / 2) % 2]);
        else session.follow.chooseProfile(1);  // back to a profile no rule names, by hand
        if (!loop.runUntil([&] { return first->at.has_value(); })) return;
        (i % 2 == 0 ? followed : chosen).push_back(*first->at - start - (i % 2 == 0 ? qx9::AutoProfile::kDebounce : Clock::duration{}));
        loop.runUntil([&] { return !loop.timersPending(); });
    }
    std::printf("focus change to the first report of the profile's key map, less the %lld ms debounce, median of %d: %.0f µs\n",
                static_cast<long long>(qx9::AutoProfile::kDebounce.count()), kProfileRounds, medianMicros(followed));
    std::printf("a profile chosen by hand to its first report, median of %d: %.0f µs\n", kProfileRounds, medianMicros(chosen));
    std::filesystem::remove_all(folder);
}

}  // namespace

int main() {
    using namespace qx9::test;
    XSession x;
    if (!x.problem.empty()) {
        std::fprintf(stderr, "%s: the benchmark needs Xvfb and openbox\n", x.problem.c_str());
        return 77;
    }
    setenv("DISPLAY", x.display().c_str(), 1);
    unsetenv("WAYLAND_DISPLAY");
    std::string why;
    const auto source = qx9::desktop::openFocusSource(why);
    if (!source) {
        std::fprintf(stderr, "%s\n", why.c_str());
        return 1;
    }
    std::string focused;
    source->onFocus = [&](const qx9::desktop::FocusedApplication& app) { focused = app.appId; };
    const auto focusOn = [&](const std::string& appId) { return serveUntil(*source, [&] { return focused == appId; }); };
    const xcb_window_t windows[2] = {x.window("alpha", "Alpha", "Alpha"), x.window("beta", "Beta", "Beta")};
    if (!focusOn("beta")) return 1;

    // The pager's request, from a connection of the benchmark's, which also measures the round trip.
    xcb_connection_t* reference = xcb_connect(x.display().c_str(), nullptr);
    const xcb_window_t root = xcb_setup_roots_iterator(xcb_get_setup(reference)).data->root;
    xcb_intern_atom_reply_t* atom = xcb_intern_atom_reply(reference, xcb_intern_atom(reference, 0, 18, "_NET_ACTIVE_WINDOW"), nullptr);
    xcb_client_message_event_t message{};
    message.response_type = XCB_CLIENT_MESSAGE;
    message.format = 32;
    message.type = atom ? atom->atom : xcb_atom_t{XCB_ATOM_NONE};
    message.data.data32[0] = 2;  // from a pager
    std::free(atom);

    const auto request = [&](xcb_window_t window) {
        message.window = window;
        xcb_send_event(reference, 0, root, XCB_EVENT_MASK_SUBSTRUCTURE_REDIRECT | XCB_EVENT_MASK_SUBSTRUCTURE_NOTIFY,
                       reinterpret_cast<const char*>(&message));
        xcb_flush(reference);
    };
    std::vector<Clock::duration> changes, roundTrips;
    for (int i = 0; i < kRounds; ++i) {
        const auto start = Clock::now();
        request(windows[i % 2]);
        if (!focusOn(i % 2 ? "beta" : "alpha")) return 1;
        changes.push_back(Clock::now() - start);

        const auto asked = Clock::now();
        std::free(xcb_get_input_focus_reply(reference, xcb_get_input_focus(reference), nullptr));
        roundTrips.push_back(Clock::now() - asked);
    }

    // openbox's share: the same request, until a bare client watching the root reads the new value.
    std::vector<Clock::duration> bare;
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    xcb_change_window_attributes(reference, root, XCB_CW_EVENT_MASK, &mask);
    for (int i = 0; i < kRounds; ++i) {
        const auto start = Clock::now();
        request(windows[i % 2]);
        for (bool active = false; !active;) {
            xcb_generic_event_t* event = xcb_wait_for_event(reference);
            if (!event) return 1;
            if ((event->response_type & ~0x80) == XCB_PROPERTY_NOTIFY &&
                reinterpret_cast<xcb_property_notify_event_t*>(event)->atom == message.type) {
                xcb_get_property_reply_t* value = xcb_get_property_reply(
                    reference, xcb_get_property(reference, 0, root, message.type, XCB_ATOM_WINDOW, 0, 1), nullptr);
                active = value && xcb_get_property_value_length(value) == 4 &&
                         *static_cast<xcb_window_t*>(xcb_get_property_value(value)) == message.window;
                std::free(value);
            }
            std::free(event);
        }
        bare.push_back(Clock::now() - start);
        if (!focusOn(i % 2 ? "beta" : "alpha")) return 1;
    }
    xcb_disconnect(reference);
    std::printf("focus change to onFocus, median of %d: %.0f µs\n", kRounds, medianMicros(changes));
    std::printf("the same change to a bare xcb client reading _NET_ACTIVE_WINDOW, median of %d: %.0f µs\n", kRounds,
                medianMicros(bare));
    std::printf("xcb_get_input_focus round trip, median of %d: %.0f µs\n", kRounds, medianMicros(roundTrips));

    const auto before = processorTime();
    const int fd = source->descriptors().front();
    for (auto end = Clock::now() + kIdle, now = Clock::now(); now < end; now = Clock::now()) {
        pollfd readable{fd, POLLIN, 0};
        if (poll(&readable, 1, static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(end - now).count())) > 0)
            source->dispatch();
    }
    const auto used = processorTime() - before;
    const long tick = 1000000 / sysconf(_SC_CLK_TCK);
    std::printf("idle %lld s with the X11 source open: %lld clock ticks (%lld µs of processor time)\n",
                static_cast<long long>(kIdle.count()), static_cast<long long>(used.count() / tick),
                static_cast<long long>(used.count()));
    profileLatency(x, windows);
    return 0;
}
