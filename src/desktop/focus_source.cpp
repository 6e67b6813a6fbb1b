#include "desktop/focus_source.h"

#include <cstdlib>

#include "desktop/focus_backends.h"

namespace qx9::desktop {
namespace {

std::string environment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

// The desktop's name for the user: the last entry of XDG_CURRENT_DESKTOP ("ubuntu:GNOME" is
// GNOME), or "This compositor".
std::string sessionName() {
    const std::string desktops = environment("XDG_CURRENT_DESKTOP");
    const std::string last = desktops.substr(desktops.rfind(':') + 1);
    return last.empty() ? "This compositor" : last;
}

}  // namespace

std::unique_ptr<FocusSource> openFocusSource(std::string& why) {
    why.clear();
    if (const std::string wayland = environment("WAYLAND_DISPLAY"); !wayland.empty()) {
        return openWlrootsFocus(wayland, sessionName(), why);
    }
    if (const std::string x = environment("DISPLAY"); !x.empty()) return openX11Focus(x, why);
    why = "no graphical session: neither WAYLAND_DISPLAY nor DISPLAY is set";
    return nullptr;
}

}  // namespace qx9::desktop
