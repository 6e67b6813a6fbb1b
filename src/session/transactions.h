#pragma once

#include <cstdint>

#include "protocol/system_function.h"
#include "session/session_core.h"

namespace qx9 {

// The keyboard writes of the session: each reads what it needs from the database and runs
// its transaction on the session's transport (nothing is sent without one).
class Transactions {
public:
    explicit Transactions(SessionCore& core) : core_(core) {}

    // The key-mapping table of (profile, layer).
    void SendKeyMacroData(std::int64_t profile, std::int64_t fnlayer);
    // Every stored macro; `listedMacroCount` is the number of rows of the macro page's list.
    void SaveMacroToKeyboard(std::int64_t listedMacroCount);
    // The current effect of the current profile.
    void SendLightModeData(std::int64_t profile);
    void SendUserLightModeData(std::int64_t profile);
    // The key colours of one user-light set, then the per-key mode.
    void SendUserLightLedData(std::int64_t lightId);
    // The switches as the settings page shows them, and Fn mode and sleep time of profile 1.
    void SendSystemFunctionData(std::int64_t profile, const protocol::SystemSwitches& switches);

private:
    SessionCore& core_;
};

}  // namespace qx9
