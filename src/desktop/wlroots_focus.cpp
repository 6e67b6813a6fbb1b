// The focused application on wlroots compositors: zwlr_foreign_toplevel_manager_v1 announces every
// toplevel window with its app_id, title and states; the one in the activated state has the
// focus. A toplevel's events are applied together when its `done` comes, and the focus is
// compared with what was last reported once all pending events are applied.

#include <wayland-client.h>

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <list>
#include <memory>

#include "desktop/focus_backends.h"
#include "wlr-foreign-toplevel-management-unstable-v1-client-protocol.h"

namespace qx9::desktop {
namespace {

// The newest version of the manager this source knows.
constexpr std::uint32_t kManagerVersion = 3;

template <auto destroy>
struct Destroy {
    template <typename T>
    void operator()(T* p) const { destroy(p); }
};
using Display = std::unique_ptr<wl_display, Destroy<wl_display_disconnect>>;
using Registry = std::unique_ptr<wl_registry, Destroy<wl_registry_destroy>>;
using Manager = std::unique_ptr<zwlr_foreign_toplevel_manager_v1, Destroy<zwlr_foreign_toplevel_manager_v1_destroy>>;
using Handle = std::unique_ptr<zwlr_foreign_toplevel_handle_v1, Destroy<zwlr_foreign_toplevel_handle_v1_destroy>>;

struct ToplevelState {
    std::string appId, title;
    bool activated = false;
};

class WlrootsFocus;

struct Toplevel {
    WlrootsFocus* owner = nullptr;
    Handle handle;
    std::uint64_t serial = 0;      // tells windows apart: a new window is a change of focus
    std::uint64_t activation = 0;  // when it last became activated (two seats may show two)
    ToplevelState pending, shown;  // as the events tell, and as of the last `done`
};

class WlrootsFocus final : public FocusSource {
public:
    explicit WlrootsFocus(Display display) : display_(std::move(display)) {}
    ~WlrootsFocus() override {
        toplevels_.clear();  // the handles go before the manager, and all before the display
        manager_.reset();
        registry_.reset();
    }

    // Finds the manager and reads the toplevels there are; false without the manager.
    bool open() {
        registry_.reset(wl_display_get_registry(display_.get()));
        wl_registry_add_listener(registry_.get(), &kRegistryListener, this);
        if (wl_display_roundtrip(display_.get()) < 0 || !manager_) return false;
        zwlr_foreign_toplevel_manager_v1_add_listener(manager_.get(), &kManagerListener, this);
        if (wl_display_roundtrip(display_.get()) < 0 || wl_display_dispatch_pending(display_.get()) < 0) return false;
        compare();
        return true;
    }

    std::string name() const override { return "wlroots (foreign toplevel)"; }
    std::vector<int> descriptors() const override { return {wl_display_get_fd(display_.get())}; }
    FocusedApplication current() const override { return current_; }
    bool broken() const override { return finished_ || wl_display_get_error(display_.get()) != 0; }

    void dispatch() override {
        if (broken()) return;
        wl_display* d = display_.get();
        while (wl_display_prepare_read(d) != 0) wl_display_dispatch_pending(d);
        wl_display_flush(d);
        wl_display_read_events(d);  // reads what is there without waiting; failures show in broken()
        wl_display_dispatch_pending(d);
        wl_display_flush(d);
        compare();
    }

private:
    void compare() {
        const Toplevel* active = nullptr;
        for (const Toplevel& t : toplevels_) {
            if (t.shown.activated && (!active || t.activation > active->activation)) active = &t;
        }
        const std::uint64_t serial = active ? active->serial : 0;
        FocusedApplication app;
        if (active) app = {active->shown.appId, {}, active->shown.title};
        if (serial == shownSerial_ && app == current_) return;
        shownSerial_ = serial;
        current_ = std::move(app);
        if (onFocus) onFocus(current_);
    }

    static Toplevel& of(void* data) { return *static_cast<Toplevel*>(data); }
    static std::string text(const char* s) { return s ? s : ""; }

    static const wl_registry_listener kRegistryListener;
    static const zwlr_foreign_toplevel_manager_v1_listener kManagerListener;
    static const zwlr_foreign_toplevel_handle_v1_listener kToplevelListener;

    Display display_;
    Registry registry_;
    Manager manager_;
    std::list<Toplevel> toplevels_;  // in a list, as their listeners hold their addresses
    std::uint64_t serials_ = 0;
    std::uint64_t shownSerial_ = 0;  // the toplevel current_ describes (0: none)
    FocusedApplication current_;
    bool finished_ = false;  // the compositor ended the manager
};

const wl_registry_listener WlrootsFocus::kRegistryListener = {
    .global =
        [](void* data, wl_registry* registry, std::uint32_t id, const char* interface, std::uint32_t version) {
            auto* self = static_cast<WlrootsFocus*>(data);
            if (self->manager_ || !interface || std::strcmp(interface, zwlr_foreign_toplevel_manager_v1_interface.name) != 0)
                return;
            self->manager_.reset(static_cast<zwlr_foreign_toplevel_manager_v1*>(wl_registry_bind(
                registry, id, &zwlr_foreign_toplevel_manager_v1_interface, std::min(version, kManagerVersion))));
        },
    .global_remove = [](void*, wl_registry*, std::uint32_t) {},
};

const zwlr_foreign_toplevel_manager_v1_listener WlrootsFocus::kManagerListener = {
    .toplevel =
        [](void* data, zwlr_foreign_toplevel_manager_v1*, zwlr_foreign_toplevel_handle_v1* handle) {
            auto* self = static_cast<WlrootsFocus*>(data);
            Toplevel& t = self->toplevels_.emplace_back();
            t.owner = self;
            t.handle.reset(handle);
            t.serial = ++self->serials_;
            zwlr_foreign_toplevel_handle_v1_add_listener(handle, &kToplevelListener, &t);
        },
    .finished = [](void* data, zwlr_foreign_toplevel_manager_v1*) { static_cast<WlrootsFocus*>(data)->finished_ = true; },
};

const zwlr_foreign_toplevel_handle_v1_listener WlrootsFocus::kToplevelListener = {
    .title = [](void* data, zwlr_foreign_toplevel_handle_v1*, const char* title) { of(data).pending.title = text(title); },
    .app_id = [](void* data, zwlr_foreign_toplevel_handle_v1*, const char* id) { of(data).pending.appId = text(id); },
    .output_enter = [](void*, zwlr_foreign_toplevel_handle_v1*, wl_output*) {},
    .output_leave = [](void*, zwlr_foreign_toplevel_handle_v1*, wl_output*) {},
    .state =
        [](void* data, zwlr_foreign_toplevel_handle_v1*, wl_array* states) {
            const auto* begin = static_cast<const std::uint32_t*>(states->data);
            const auto* end = begin + states->size / sizeof(std::uint32_t);
            of(data).pending.activated =
                std::find(begin, end, ZWLR_FOREIGN_TOPLEVEL_HANDLE_V1_STATE_ACTIVATED) != end;
        },
    .done =
        [](void* data, zwlr_foreign_toplevel_handle_v1*) {
            Toplevel& t = of(data);
            if (t.pending.activated && !t.shown.activated) t.activation = ++t.owner->serials_;
            t.shown = t.pending;
        },
    .closed =
        [](void* data, zwlr_foreign_toplevel_handle_v1*) {
            Toplevel& t = of(data);
            t.owner->toplevels_.remove_if([&](const Toplevel& other) { return &other == &t; });
        },
    .parent = [](void*, zwlr_foreign_toplevel_handle_v1*, zwlr_foreign_toplevel_handle_v1*) {},
};

}  // namespace

std::unique_ptr<FocusSource> openWlrootsFocus(const std::string& display, const std::string& session, std::string& why) {
    // A relative name is looked up in XDG_RUNTIME_DIR (and libwayland complains on standard error
    // without one).
    const char* runtime = std::getenv("XDG_RUNTIME_DIR");
    Display d{display.starts_with('/') || (runtime && *runtime) ? wl_display_connect(display.c_str()) : nullptr};
    if (!d) {
        why = "cannot connect to the Wayland display " + display;
        return nullptr;
    }
    auto source = std::make_unique<WlrootsFocus>(std::move(d));
    if (!source->open()) {
        why = session + " on Wayland offers no way to see the focused application";
        return nullptr;
    }
    return source;
}

}  // namespace qx9::desktop
