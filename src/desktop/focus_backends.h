#pragma once

#include <memory>
#include <string>

#include "desktop/focus_source.h"

namespace qx9::desktop {

// The backends openFocusSource chooses among. Each opens a connection of its own and reads the
// focus once; null, with `why` set to one English line, when it cannot serve.

// The X server `display` names (as DISPLAY does).
std::unique_ptr<FocusSource> openX11Focus(const std::string& display, std::string& why);

// The Wayland compositor `display` names (as WAYLAND_DISPLAY does); `session` names the desktop
// in the reason when the compositor lacks the foreign-toplevel manager.
std::unique_ptr<FocusSource> openWlrootsFocus(const std::string& display, const std::string& session,
                                              std::string& why);

}  // namespace qx9::desktop
