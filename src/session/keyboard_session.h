#pragma once

#include "session/device_session.h"
#include "session/follow_user.h"
#include "session/input_capture.h"
#include "session/key_page.h"
#include "session/lighting_page.h"
#include "session/macro_page.h"
#include "session/profile_list.h"
#include "session/session_core.h"
#include "session/settings_page.h"
#include "session/undo_history.h"
#include "session/user_light_page.h"

namespace qx9 {

// The session of the main window without its widgets: the device session and the page models,
// which turn the pages' actions into operations (ops/) and keep what the pages show. The
// window's KeyboardViewController drives it; widgets only mirror its state.
class KeyboardSession {
public:
    explicit KeyboardSession(SessionConfig config, SessionEvents* events = nullptr);
    KeyboardSession(const KeyboardSession&) = delete;
    KeyboardSession& operator=(const KeyboardSession&) = delete;

    // Another program changed the database: every page shows what it holds now. Nothing is sent;
    // what the window stores next builds on it.
    void databaseChanged();
    // The keys pressed are taken as a page's own (a macro being recorded, the key to insert on
    // the macro page shown): the window's shortcuts leave them alone. The custom key dialog takes
    // its combination in a modal dialog, where the window's shortcuts do not act.
    bool keysCaptured() const;

    SessionCore core;
    InputCapture input{core};
    DeviceSession device{*this};
    ProfileList profiles{core, keys};
    KeyPage keys{core, settings};
    SettingsPage settings{core, keys, profiles, lighting};
    LightingPage lighting{core, keys, settings, userLights};
    UserLightPage userLights{core, keys};
    MacroPage macros{core};
    FollowUser follow{core, profiles};
    UndoHistory history{core};
};

}  // namespace qx9
