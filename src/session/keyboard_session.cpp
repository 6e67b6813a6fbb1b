#include "session/keyboard_session.h"

namespace qx9 {

KeyboardSession::KeyboardSession(SessionConfig config, SessionEvents* events) {
    core.config = std::move(config);
    core.events = events;
}

}  // namespace qx9
