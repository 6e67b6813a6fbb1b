#include "desktop/lock_watcher.h"

#include <gtest/gtest.h>
#include <systemd/sd-bus.h>

#include <cstring>
#include <memory>

#include "session_fixture.h"
#include "support/scratch.h"

namespace qx9::test {
namespace {

using desktop::LockWatcher;

constexpr const char* kAll = "logind LockedHint, org.freedesktop.ScreenSaver, org.gnome.ScreenSaver";
// logind's sessions: c7 (by its id), and the one of this process (by its pid).
constexpr const char* kSessions[] = {"/org/freedesktop/login1/session/c7", "/org/freedesktop/login1/session/self"};
constexpr const char* kSessionInterface = "org.freedesktop.login1.Session";
constexpr const char* kSavers[] = {"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver"};
constexpr const char* kSaverPaths[] = {"/org/freedesktop/ScreenSaver", "/org/gnome/ScreenSaver"};

struct CloseBus {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
};
using Bus = std::unique_ptr<sd_bus, CloseBus>;

// A new connection to the bus of DBUS_SYSTEM_BUS_ADDRESS or DBUS_SESSION_BUS_ADDRESS.
Bus connect(int (*open)(sd_bus**)) {
    sd_bus* bus = nullptr;
    return Bus(open(&bus) >= 0 ? bus : nullptr);
}

int getSession(sd_bus_message* m, void*, sd_bus_error* error) {
    const char* id = "";
    std::uint32_t pid = 0;
    const bool byId = std::strcmp(sd_bus_message_get_member(m), "GetSession") == 0;
    if (byId ? sd_bus_message_read(m, "s", &id) < 0 || std::strcmp(id, "c7") != 0
             : sd_bus_message_read(m, "u", &pid) < 0 || pid != static_cast<std::uint32_t>(::getpid()))
        return sd_bus_error_set(error, "org.freedesktop.login1.NoSuchSession", "no such session");
    return sd_bus_reply_method_return(m, "o", kSessions[byId ? 0 : 1]);
}
int getActive(sd_bus_message* m, void* active, sd_bus_error*) { return sd_bus_reply_method_return(m, "b", *static_cast<int*>(active)); }

const sd_bus_vtable kManager[] = {SD_BUS_VTABLE_START(0), SD_BUS_METHOD("GetSession", "s", "o", getSession, 0),
                                  SD_BUS_METHOD("GetSessionByPID", "u", "o", getSession, 0), SD_BUS_VTABLE_END};
const sd_bus_vtable kSession[] = {SD_BUS_VTABLE_START(0),
                                  SD_BUS_PROPERTY("LockedHint", "b", nullptr, 0, SD_BUS_VTABLE_PROPERTY_EMITS_CHANGE), SD_BUS_VTABLE_END};
const sd_bus_vtable kSaver[] = {SD_BUS_VTABLE_START(0), SD_BUS_METHOD("GetActive", "", "b", getActive, 0), SD_BUS_VTABLE_END};

// Two private buses, one standing for the system bus, where this test plays logind and both
// screen savers, and a stranger speaks on the session bus.
class LockWatcherTest : public testing::Test {
protected:
    void SetUp() override {
        const std::string system = systemDaemon.readyLine(), session = sessionDaemon.readyLine();
        if (session.empty() || system.empty()) GTEST_SKIP() << "dbus-daemon cannot start";
        systemBus.emplace("DBUS_SYSTEM_BUS_ADDRESS", system);
        sessionBus.emplace("DBUS_SESSION_BUS_ADDRESS", session);
        logind = connect(sd_bus_open_system), savers = connect(sd_bus_open_user), stranger = connect(sd_bus_open_user);
        ASSERT_TRUE(logind && savers && stranger);
        ASSERT_GE(sd_bus_request_name(logind.get(), "org.freedesktop.login1", 0), 0);
        sd_bus_add_object_vtable(logind.get(), nullptr, "/org/freedesktop/login1", "org.freedesktop.login1.Manager", kManager, nullptr);
        for (int i = 0; i < 2; ++i) {
            sd_bus_add_object_vtable(logind.get(), nullptr, kSessions[i], kSessionInterface, kSession, &hints[i]);
            ASSERT_GE(sd_bus_request_name(savers.get(), kSavers[i], 0), 0);
            sd_bus_add_object_vtable(savers.get(), nullptr, kSaverPaths[i], kSavers[i], kSaver, &active[i]);
        }
    }

    // Serves the fakes and the watcher until it has heard from all of them.
    void start(LockWatcher& watcher) {
        watcher.onLockChanged = [&](bool locked) { seen.push_back(locked); };
        const auto serve = [](sd_bus* bus) { return [bus] { while (sd_bus_process(bus, nullptr) > 0) {} }; };
        Watched watched = {{sd_bus_get_fd(logind.get()), serve(logind.get())}, {sd_bus_get_fd(savers.get()), serve(savers.get())}};
        for (const int fd : watcher.descriptors()) watched.emplace_back(fd, [&] { watcher.dispatch(); });
        EXPECT_TRUE(serveUntil(watched, [&] { return watcher.name() == kAll; })) << watcher.name();
    }
    // Has `watcher` read what `bus` sent: the bus daemon answers a call only after passing on what
    // the caller sent before.
    void deliver(sd_bus* bus, LockWatcher& watcher) {
        sd_bus_message* reply = nullptr;
        EXPECT_GE(sd_bus_call_method(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", "GetId", nullptr, &reply, ""), 0);
        sd_bus_message_unref(reply);
        watcher.dispatch();
    }
    sd_bus* setHint(int session, int value) {
        hints[session] = value;
        sd_bus_emit_properties_changed(logind.get(), kSessions[session], kSessionInterface, "LockedHint", nullptr);
        return logind.get();
    }
    sd_bus* signal(sd_bus* bus, int saver, int value) {
        sd_bus_emit_signal(bus, kSaverPaths[saver], kSavers[saver], "ActiveChanged", "b", value);
        return bus;
    }

    Child systemDaemon{{"dbus-daemon", "--session", "--nofork", "--print-address={fd}"}};
    Child sessionDaemon{{"dbus-daemon", "--session", "--nofork", "--print-address={fd}"}};
    std::optional<EnvOverride> systemBus, sessionBus;
    Bus logind, savers, stranger;
    int hints[2] = {0, 0};  // LockedHint of kSessions
    int active[2] = {0, 0};
    std::vector<bool> seen;
};

// The session is XDG_SESSION_ID's, or else this process's; a screen locked already is reported.
TEST_F(LockWatcherTest, ReportsOnlyChangesOfAnyOfTheLocks) {
    struct Step {
        const char* what;
        std::function<sd_bus*(int session)> act;
        std::vector<bool> reports;
    };
    const std::vector<Step> steps = {
        {"logind unlocks", [&](int s) { return setHint(s, 0); }, {false}},
        {"logind locks", [&](int s) { return setHint(s, 1); }, {true}},
        {"logind says so again", [&](int s) { return setHint(s, 1); }, {}},
        {"the other session unlocks", [&](int s) { return setHint(1 - s, 0); }, {}},
        {"GNOME's saver starts too", [&](int) { return signal(savers.get(), 1, 1); }, {}},
        {"logind unlocks while it runs", [&](int s) { return setHint(s, 0); }, {}},
        {"a stranger speaks for it", [&](int) { return signal(stranger.get(), 1, 0); }, {}},
        {"the other saver starts", [&](int) { return signal(savers.get(), 0, 1); }, {}},
        {"GNOME's saver ends", [&](int) { return signal(savers.get(), 1, 0); }, {}},
        {"the other saver ends", [&](int) { return signal(savers.get(), 0, 0); }, {false}},
        {"and says so again", [&](int) { return signal(savers.get(), 0, 0); }, {}},
    };
    for (const auto& [sessionId, session] : {std::pair{std::optional<std::string>("c7"), 0}, {std::nullopt, 1}}) {
        EnvOverride id("XDG_SESSION_ID", sessionId);
        hints[session] = 1, hints[1 - session] = 1;
        seen.clear();
        LockWatcher watcher;
        start(watcher);
        EXPECT_EQ(seen, std::vector<bool>{true});
        for (const Step& step : steps) {
            seen.clear();
            deliver(step.act(session), watcher);
            EXPECT_EQ(seen, step.reports) << step.what << (sessionId ? " in session c7" : " in this process's session");
        }
        EXPECT_FALSE(watcher.locked());
        if (sessionId) continue;
        // One bus going leaves the other; both going break the watcher.
        sessionDaemon.stop();
        deliver(setHint(session, 1), watcher);
        EXPECT_TRUE(watcher.locked());
        EXPECT_FALSE(watcher.broken());
        systemDaemon.stop();
        EXPECT_TRUE(serveUntil({{watcher.descriptors().front(), [&] { watcher.dispatch(); }}}, [&] { return watcher.broken(); }));
    }
}

TEST(LockWatcher, WithoutBusesWatchesNothing) {
    EnvOverride system("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/nonexistent/qx9"), session("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nonexistent/qx9");
    LockWatcher watcher;
    watcher.dispatch();
    EXPECT_EQ(watcher.name(), "nothing");
    EXPECT_FALSE(watcher.broken() || watcher.locked());
}

}  // namespace
}  // namespace qx9::test
