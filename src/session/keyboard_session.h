#pragma once

#include "session/device_session.h"
#include "session/key_page.h"
#include "session/lighting_page.h"
#include "session/macro_page.h"
#include "session/profile_list.h"
#include "session/session_core.h"
#include "session/settings_page.h"
#include "session/transactions.h"
#include "session/user_light_page.h"

namespace qx9 {

// The session of the main window without its widgets: the device session, the pages' state
// and every action of the pages. The window's KeyboardViewController and qx9ctl both drive it;
// widgets only mirror its state.
class KeyboardSession {
public:
    explicit KeyboardSession(SessionConfig config, SessionEvents* events = nullptr);
    KeyboardSession(const KeyboardSession&) = delete;
    KeyboardSession& operator=(const KeyboardSession&) = delete;

    SessionCore core;
    Transactions transactions{core};
    DeviceSession device{*this};
    ProfileList profiles{*this};
    KeyPage keys{*this};
    SettingsPage settings{*this};
    LightingPage lighting{*this};
    UserLightPage userLights{*this};
    MacroPage macros{*this};
};

}  // namespace qx9
