#include "session/keyboard_session.h"

namespace qx9 {

KeyboardSession::KeyboardSession(SessionConfig config, SessionEvents* events) {
    core.config = std::move(config);
    core.events = events;
    core.reload = [this] { databaseChanged(); };
    core.profileChosenByHand = [this](std::int64_t profile) { follow.profileChosenByHand(profile); };
}

void KeyboardSession::databaseChanged() {
    if (!core.db() || !device.loaded()) return;
    settings.reloadFromDatabase();
    keys.loadFnKeyMode();
    profiles.reloadFromDatabase();
    keys.showKeyMarks();
    lighting.reloadFromDatabase();
    userLights.reloadFromDatabase();
    macros.reloadFromDatabase();
    core.notify(SessionAspect::History);
}

bool KeyboardSession::keysCaptured() const {
    return !device.showingHomePage() && device.viewType() == kPageMacros && macros.capturesKeys();
}

}  // namespace qx9
