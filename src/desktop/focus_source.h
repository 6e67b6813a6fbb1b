#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace qx9::desktop {

// The application that has the keyboard focus, as far as the desktop tells: each field is empty
// when it is unknown, and all are empty when nothing is focused.
//   appId        Wayland's app_id; on X11 the GTK application id, the KDE desktop file, or else
//                the instance part of WM_CLASS
//   windowClass  the class part of WM_CLASS (X11); empty on Wayland
//   title        the focused window's title, UTF-8 as the application gave it (unchecked)
struct FocusedApplication {
    std::string appId;
    std::string windowClass;
    std::string title;
    bool operator==(const FocusedApplication&) const = default;
};

// What one kind of desktop tells about the focused window. Nothing runs on its own: the owner
// watches descriptors() for reading and calls dispatch() when one is readable.
//
// onFocus is called from dispatch() once for each change: another window took the focus (even a
// window of the same application), the focused window's title or application changed, or the
// focus went nowhere (all fields empty). A window activated again, or a property rewritten with
// its old value, calls nothing. Changes that come together are told once, as they end; but some
// window managers pass through "nowhere" on the way from one window to the next (openbox clears
// _NET_ACTIVE_WINDOW first), which the owner's debounce absorbs.
class FocusSource {
public:
    virtual ~FocusSource() = default;
    // The kind of desktop, for the user: "X11 (EWMH)", "wlroots (foreign toplevel)".
    virtual std::string name() const = 0;
    // The descriptors to watch for reading; fixed for the source's life.
    virtual std::vector<int> descriptors() const = 0;
    // Reads what the desktop sent and calls onFocus for each change. It waits for nothing but the
    // answers to its own questions (X11: a round trip for the active window's properties).
    virtual void dispatch() = 0;
    // What has the focus as of opening or the last dispatch().
    virtual FocusedApplication current() const = 0;
    // The connection to the desktop is gone: dispatch() does nothing more, and the owner stops
    // watching the descriptors.
    virtual bool broken() const = 0;

    std::function<void(const FocusedApplication&)> onFocus;
};

// The source for this session, chosen by the environment:
//   WAYLAND_DISPLAY set    the compositor's zwlr_foreign_toplevel_manager_v1 (wlroots compositors:
//                          sway, Hyprland, labwc, river, Wayfire); X11 is never used then, as
//                          Xwayland sees only the X clients
//   DISPLAY alone          the X server's _NET_ACTIVE_WINDOW (window managers following EWMH)
// Null when none fits, with `why` set to one English line naming the session.
std::unique_ptr<FocusSource> openFocusSource(std::string& why);

}  // namespace qx9::desktop
