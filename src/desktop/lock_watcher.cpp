#include "desktop/lock_watcher.h"

#include <sys/epoll.h>
#include <systemd/sd-bus.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

#include "common/unique_fd.h"

namespace qx9::desktop {
namespace {

constexpr const char* kLogind = "org.freedesktop.login1";
constexpr const char* kLogindPath = "/org/freedesktop/login1";
constexpr const char* kManager = "org.freedesktop.login1.Manager";
constexpr const char* kSession = "org.freedesktop.login1.Session";
constexpr const char* kProperties = "org.freedesktop.DBus.Properties";
constexpr const char* kLockedHint = "LockedHint";

// A screen saver's service and object; its interface is named as the service.
struct Saver {
    const char* service;
    const char* path;
};
constexpr std::array<Saver, 2> kSavers = {{{"org.freedesktop.ScreenSaver", "/org/freedesktop/ScreenSaver"},
                                           {"org.gnome.ScreenSaver", "/org/gnome/ScreenSaver"}}};

// What tells: logind, then the screen savers in kSavers' order.
enum Teller : std::size_t { Logind, FirstSaver, TellerCount = FirstSaver + kSavers.size() };

struct CloseBus {
    void operator()(sd_bus* bus) const { sd_bus_flush_close_unref(bus); }
};
using Bus = std::unique_ptr<sd_bus, CloseBus>;

}  // namespace

// The two connections, joined in one epoll descriptor for the owner, so that one that closes can
// leave while the other stays.
struct LockWatcher::Buses {
    // The data of a callback: the watcher and the teller it listens to.
    struct Tap {
        Buses* buses;
        std::size_t teller;
    };

    explicit Buses(LockWatcher& watcher) : owner(watcher), poller(::epoll_create1(EPOLL_CLOEXEC)) {
        for (std::size_t i = 0; i < TellerCount; ++i) taps[i] = {this, i};
        sd_bus* bus = nullptr;
        if (sd_bus_open_system(&bus) >= 0 && join(system, bus)) {
            const char* id = std::getenv("XDG_SESSION_ID");
            if (id && *id) {
                sd_bus_call_method_async(bus, nullptr, kLogind, kLogindPath, kManager, "GetSession", sessionFound, this, "s", id);
            } else {
                sd_bus_call_method_async(bus, nullptr, kLogind, kLogindPath, kManager, "GetSessionByPID", sessionFound, this,
                                         "u", static_cast<std::uint32_t>(::getpid()));
            }
        }
        bus = nullptr;
        if (sd_bus_open_user(&bus) >= 0 && join(session, bus)) {
            for (std::size_t i = 0; i < kSavers.size(); ++i) {
                const Saver& saver = kSavers[i];
                Tap* tap = &taps[FirstSaver + i];
                sd_bus_match_signal_async(bus, nullptr, saver.service, nullptr, saver.service, "ActiveChanged", saverActive,
                                          nullptr, tap);
                sd_bus_call_method_async(bus, nullptr, saver.service, saver.path, saver.service, "GetActive", saverActive,
                                         tap, "");
            }
        }
    }

    // Takes `bus` into `slot` and the poller; false (and `bus` closed) when that fails.
    bool join(Bus& slot, sd_bus* bus) {
        slot.reset(bus);
        epoll_event event{};
        event.events = EPOLLIN;
        if (poller && ::epoll_ctl(poller.get(), EPOLL_CTL_ADD, sd_bus_get_fd(bus), &event) == 0) return true;
        slot.reset();
        return false;
    }

    // Serves one connection; a closed one leaves the poller.
    void serve(Bus& bus) {
        if (!bus) return;
        int r = 0;
        while ((r = sd_bus_process(bus.get(), nullptr)) > 0) {}
        if (r >= 0 && sd_bus_is_open(bus.get()) > 0) return;
        ::epoll_ctl(poller.get(), EPOLL_CTL_DEL, sd_bus_get_fd(bus.get()), nullptr);
        bus.reset();
        lost = true;
    }

    void tell(std::size_t teller, bool value) {
        answered[teller] = true;
        on[teller] = value;
        const bool now = std::any_of(on.begin(), on.end(), [](bool b) { return b; });
        if (now == locked) return;
        locked = now;
        if (owner.onLockChanged) owner.onLockChanged(now);
    }

    static Tap& tap(void* data) { return *static_cast<Tap*>(data); }
    static bool failed(sd_bus_message* m) { return sd_bus_message_is_method_error(m, nullptr) != 0; }

    void askLockedHint(sd_bus* bus) {
        sd_bus_call_method_async(bus, nullptr, kLogind, sessionPath.c_str(), kProperties, "Get", lockedHint,
                                 &taps[Logind], "ss", kSession, kLockedHint);
    }

    // The answer to GetSession(ByPID): the session's object, to watch and ask.
    static int sessionFound(sd_bus_message* m, void* data, sd_bus_error*) {
        auto* self = static_cast<Buses*>(data);
        const char* path = nullptr;
        if (failed(m) || sd_bus_message_read(m, "o", &path) < 0) return 0;
        self->sessionPath = path;
        sd_bus* bus = sd_bus_message_get_bus(m);
        sd_bus_match_signal_async(bus, nullptr, kLogind, path, kProperties, "PropertiesChanged", propertiesChanged, nullptr,
                                  &self->taps[Logind]);
        self->askLockedHint(bus);
        return 0;
    }

    static int lockedHint(sd_bus_message* m, void* data, sd_bus_error*) {
        int value = 0;
        if (!failed(m) && sd_bus_message_read(m, "v", "b", &value) >= 0) tap(data).buses->tell(Logind, value != 0);
        return 0;
    }

    // PropertiesChanged(s interface, a{sv} changed, as invalidated) of the session.
    static int propertiesChanged(sd_bus_message* m, void* data, sd_bus_error*) {
        Buses& self = *tap(data).buses;
        const char* interface = nullptr;
        if (sd_bus_message_read(m, "s", &interface) < 0 || std::strcmp(interface, kSession) != 0) return 0;
        if (sd_bus_message_enter_container(m, 'a', "{sv}") <= 0) return 0;
        while (sd_bus_message_enter_container(m, 'e', "sv") > 0) {
            const char* key = nullptr;
            int value = 0;
            if (sd_bus_message_read(m, "s", &key) < 0) return 0;
            if (std::strcmp(key, kLockedHint) == 0) {
                if (sd_bus_message_read(m, "v", "b", &value) < 0) return 0;
                self.tell(Logind, value != 0);
            } else if (sd_bus_message_skip(m, "v") < 0) {
                return 0;
            }
            if (sd_bus_message_exit_container(m) < 0) return 0;
        }
        if (sd_bus_message_exit_container(m) < 0 || sd_bus_message_enter_container(m, 'a', "s") <= 0) return 0;
        const char* invalidated = nullptr;
        while (sd_bus_message_read(m, "s", &invalidated) > 0) {
            if (std::strcmp(invalidated, kLockedHint) == 0) self.askLockedHint(sd_bus_message_get_bus(m));
        }
        return 0;
    }

    // The answer to GetActive and the ActiveChanged signal: one boolean either way.
    static int saverActive(sd_bus_message* m, void* data, sd_bus_error*) {
        int value = 0;
        if (!failed(m) && sd_bus_message_read(m, "b", &value) >= 0) tap(data).buses->tell(tap(data).teller, value != 0);
        return 0;
    }

    LockWatcher& owner;
    UniqueFd poller;
    std::array<Tap, TellerCount> taps{};
    std::array<bool, TellerCount> answered{}, on{};
    bool locked = false;
    bool lost = false;  // a connection closed
    std::string sessionPath;
    Bus system, session;  // last, so that they close before what their callbacks use
};

LockWatcher::LockWatcher() : buses_(std::make_unique<Buses>(*this)) {}
LockWatcher::~LockWatcher() = default;

std::string LockWatcher::name() const {
    std::string watched;
    for (std::size_t i = 0; i < TellerCount; ++i) {
        if (!buses_->answered[i]) continue;
        if (!watched.empty()) watched += ", ";
        watched += i == Logind ? "logind LockedHint" : kSavers[i - FirstSaver].service;
    }
    return watched.empty() ? "nothing" : watched;
}

std::vector<int> LockWatcher::descriptors() const {
    if (!buses_->poller) return {};
    return {buses_->poller.get()};
}

void LockWatcher::dispatch() {
    buses_->serve(buses_->system);
    buses_->serve(buses_->session);
}

bool LockWatcher::locked() const { return buses_->locked; }

bool LockWatcher::broken() const { return buses_->lost && !buses_->system && !buses_->session; }

}  // namespace qx9::desktop
