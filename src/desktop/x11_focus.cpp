// The focused application on X11: the window manager names the active window in the root
// window's _NET_ACTIVE_WINDOW (EWMH); its WM_CLASS, application id and title are read from it.
// Both the root and the active window are watched for property changes; every value read is the
// X server's (or another client's) and is checked, and a window that is gone by the time it is
// read is simply no application.

#include <xcb/xcb.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string_view>

#include "desktop/focus_backends.h"

namespace qx9::desktop {
namespace {

// Longest property read, in 32-bit units: longer titles are cut.
constexpr std::uint32_t kMaxPropertyWords = 1024;

struct Disconnect {
    void operator()(xcb_connection_t* c) const { xcb_disconnect(c); }
};
using Connection = std::unique_ptr<xcb_connection_t, Disconnect>;

// Replies and events are malloc'ed by xcb.
struct Free {
    void operator()(void* p) const { std::free(p); }
};
template <typename T>
using Reply = std::unique_ptr<T, Free>;

enum AtomId { ActiveWindow, NetWmName, Utf8String, GtkApplicationId, KdeDesktopFile, AtomCount };
constexpr std::array<const char*, AtomCount> kAtomNames = {
    "_NET_ACTIVE_WINDOW", "_NET_WM_NAME", "UTF8_STRING", "_GTK_APPLICATION_ID", "_KDE_NET_WM_DESKTOP_FILE"};
using Atoms = std::array<xcb_atom_t, AtomCount>;

// The bytes of a STRING (ISO Latin-1) or UTF8_STRING property; other types, which only old
// toolkits use for names (COMPOUND_TEXT), count as absent.
struct Text {
    std::string_view bytes;
    bool latin1 = false;
    bool cut = false;  // the read limit cut the value
};

Text propertyBytes(const xcb_get_property_reply_t* reply, xcb_atom_t utf8) {
    if (!reply || reply->format != 8 || (reply->type != XCB_ATOM_STRING && reply->type != utf8)) return {};
    const auto* bytes = static_cast<const char*>(xcb_get_property_value(reply));
    return {std::string_view(bytes, static_cast<std::size_t>(xcb_get_property_value_length(reply))),
            reply->type == XCB_ATOM_STRING, reply->bytes_after > 0};
}

// The first NUL-terminated field of `text` from `offset`, in UTF-8. A value cut by the read limit
// loses its last incomplete UTF-8 sequence.
std::string field(const Text& text, std::size_t offset = 0) {
    if (offset >= text.bytes.size()) return {};
    std::string_view raw = text.bytes.substr(offset);
    const bool whole = raw.find('\0') != std::string_view::npos || !text.cut;
    raw = raw.substr(0, raw.find('\0'));
    std::string out;
    if (text.latin1) {
        for (const unsigned char c : raw) {
            if (c >= 0x80) out += static_cast<char>(0xC0 | (c >> 6));
            out += static_cast<char>(c < 0x80 ? c : 0x80 | (c & 0x3F));
        }
        return out;
    }
    out = raw;
    if (!whole) {
        std::size_t start = out.size();
        while (start > 0 && (static_cast<unsigned char>(out[start - 1]) & 0xC0) == 0x80) --start;
        if (start > 0 && static_cast<unsigned char>(out[start - 1]) >= 0xC0) out.resize(start - 1);
    }
    return out;
}

class X11Focus final : public FocusSource {
public:
    X11Focus(Connection connection, xcb_window_t root, const Atoms& atoms)
        : c_(std::move(connection)), root_(root), atoms_(atoms) {
        stale_ = true;
        dispatch();  // reads the focus, and takes what xcb queued meanwhile, as the descriptor will not show it
    }
    ~X11Focus() override = default;

    std::string name() const override { return "X11 (EWMH)"; }
    std::vector<int> descriptors() const override { return {xcb_get_file_descriptor(c_.get())}; }
    FocusedApplication current() const override { return current_; }
    bool broken() const override { return xcb_connection_has_error(c_.get()) != 0; }

    void dispatch() override {
        // Reading the properties waits for replies, and xcb queues the events that come in the
        // meantime; they are taken in the next round, as the descriptor will not show them.
        while (!broken()) {
            while (Reply<xcb_generic_event_t> event{xcb_poll_for_event(c_.get())}) take(*event);
            if (!stale_ || broken()) return;
            refresh();
        }
    }

private:
    // Errors (for requests on windows that are gone) arrive here too and are dropped.
    void take(const xcb_generic_event_t& event) {
        if ((event.response_type & ~0x80) != XCB_PROPERTY_NOTIFY) return;
        const auto& notify = reinterpret_cast<const xcb_property_notify_event_t&>(event);
        if (notify.window == root_) {
            stale_ = stale_ || notify.atom == atoms_[ActiveWindow];
        } else if (notify.window == window_) {
            for (const xcb_atom_t a : {atoms_[NetWmName], xcb_atom_t{XCB_ATOM_WM_NAME}, xcb_atom_t{XCB_ATOM_WM_CLASS},
                                       atoms_[GtkApplicationId], atoms_[KdeDesktopFile]}) {
                stale_ = stale_ || notify.atom == a;
            }
        }
    }

    xcb_get_property_cookie_t ask(xcb_window_t window, xcb_atom_t property) {
        return xcb_get_property(c_.get(), 0, window, property, XCB_GET_PROPERTY_TYPE_ANY, 0, kMaxPropertyWords);
    }

    Reply<xcb_get_property_reply_t> answer(xcb_get_property_cookie_t cookie, bool* gone = nullptr) {
        xcb_generic_error_t* error = nullptr;
        Reply<xcb_get_property_reply_t> reply{xcb_get_property_reply(c_.get(), cookie, &error)};
        if (gone) *gone = error != nullptr || !reply;
        std::free(error);
        return reply;
    }

    // The active window as the root names it; none when the property is absent or malformed.
    xcb_window_t activeWindow() {
        auto reply = answer(ask(root_, atoms_[ActiveWindow]));
        if (!reply || reply->type != XCB_ATOM_WINDOW || reply->format != 32 || xcb_get_property_value_length(reply.get()) < 4)
            return XCB_WINDOW_NONE;
        return *static_cast<const xcb_window_t*>(xcb_get_property_value(reply.get()));
    }

    // Sets what this connection hears of a window (the root's stays, whatever the manager names).
    void watch(xcb_window_t window, std::uint32_t mask) {
        if (window != XCB_WINDOW_NONE && window != root_) xcb_change_window_attributes(c_.get(), window, XCB_CW_EVENT_MASK, &mask);
    }

    // Reads the application of `window`; false when the window is gone.
    bool read(xcb_window_t window, FocusedApplication& app) {
        enum { WmClass, NetName, WmName, GtkId, KdeFile, Count };
        const std::array<xcb_atom_t, Count> asked = {XCB_ATOM_WM_CLASS, atoms_[NetWmName], XCB_ATOM_WM_NAME,
                                                     atoms_[GtkApplicationId], atoms_[KdeDesktopFile]};
        std::array<xcb_get_property_cookie_t, Count> cookies{};
        for (std::size_t i = 0; i < Count; ++i) cookies[i] = ask(window, asked[i]);
        std::array<Reply<xcb_get_property_reply_t>, Count> replies;
        bool gone = false;
        for (std::size_t i = 0; i < Count; ++i) replies[i] = answer(cookies[i], i == WmClass ? &gone : nullptr);
        if (gone) return false;
        std::array<Text, Count> texts{};
        for (std::size_t i = 0; i < Count; ++i) texts[i] = propertyBytes(replies[i].get(), atoms_[Utf8String]);
        app.title = field(!texts[NetName].bytes.empty() ? texts[NetName] : texts[WmName]);
        // WM_CLASS is "instance\0class\0".
        const std::string instance = field(texts[WmClass]);
        const std::size_t classStart = texts[WmClass].bytes.find('\0');
        if (classStart != std::string_view::npos) app.windowClass = field(texts[WmClass], classStart + 1);
        const std::string gtk = field(texts[GtkId]), kde = field(texts[KdeFile]);
        app.appId = !gtk.empty() ? gtk : !kde.empty() ? kde : instance;
        return true;
    }

    void refresh() {
        stale_ = false;
        const xcb_window_t active = activeWindow();
        if (active != window_) {
            // Watch the new window before reading it, so that no change falls in between.
            watch(window_, XCB_EVENT_MASK_NO_EVENT);
            watch(active, XCB_EVENT_MASK_PROPERTY_CHANGE);
            window_ = active;
        }
        FocusedApplication app;
        const bool known = active != XCB_WINDOW_NONE && read(active, app);
        const xcb_window_t shown = known ? active : xcb_window_t{XCB_WINDOW_NONE};
        xcb_flush(c_.get());
        if (shown == shownWindow_ && app == current_) return;
        shownWindow_ = shown;
        current_ = std::move(app);
        if (onFocus) onFocus(current_);
    }

    Connection c_;
    const xcb_window_t root_;
    const Atoms atoms_;
    xcb_window_t window_ = XCB_WINDOW_NONE;       // the active window, watched
    xcb_window_t shownWindow_ = XCB_WINDOW_NONE;  // the window current_ describes (none if gone)
    FocusedApplication current_;
    bool stale_ = false;  // an event asks for refresh()
};

}  // namespace

std::unique_ptr<FocusSource> openX11Focus(const std::string& display, std::string& why) {
    int screenNumber = 0;
    Connection c{xcb_connect(display.c_str(), &screenNumber)};
    if (xcb_connection_has_error(c.get())) {
        why = "cannot connect to the X display " + display;
        return nullptr;
    }
    xcb_screen_iterator_t screen = xcb_setup_roots_iterator(xcb_get_setup(c.get()));
    for (int i = 0; i < screenNumber && screen.rem > 0; ++i) xcb_screen_next(&screen);
    if (screen.rem == 0) {
        why = "the X display " + display + " has no screen " + std::to_string(screenNumber);
        return nullptr;
    }
    const xcb_window_t root = screen.data->root;

    std::array<xcb_intern_atom_cookie_t, AtomCount> cookies{};
    for (std::size_t i = 0; i < AtomCount; ++i) {
        cookies[i] = xcb_intern_atom(c.get(), 0, static_cast<std::uint16_t>(std::strlen(kAtomNames[i])), kAtomNames[i]);
    }
    const std::uint32_t mask = XCB_EVENT_MASK_PROPERTY_CHANGE;
    const auto selected = xcb_change_window_attributes_checked(c.get(), root, XCB_CW_EVENT_MASK, &mask);
    Atoms atoms{};
    bool complete = true;
    for (std::size_t i = 0; i < AtomCount; ++i) {
        Reply<xcb_intern_atom_reply_t> reply{xcb_intern_atom_reply(c.get(), cookies[i], nullptr)};
        complete = complete && reply;
        if (reply) atoms[i] = reply->atom;
    }
    Reply<xcb_generic_error_t> refused{xcb_request_check(c.get(), selected)};
    if (!complete || refused) {
        why = "the X display " + display + " refused the questions about the active window";
        return nullptr;
    }
    return std::make_unique<X11Focus>(std::move(c), root, atoms);
}

}  // namespace qx9::desktop
