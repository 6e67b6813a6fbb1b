#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ops/app_profiles.h"

namespace qx9 {

// Automatic profiles: the profile follows the application in front, by the rules of
// ops/app_profiles.h. A focus change counts once it has stood for the debounce (a window that
// flashes past, as when cycling with Alt+Tab, switches nothing). The profile in force before a
// rule first matched comes back when no rule matches any more. A profile chosen by hand (in the
// window, from the tray or by another program) is left alone while the same application stays
// in front: a rule never fights it.
//
// Time is given by the caller (a steady clock), so that the order of events decides, not the
// time a test takes: focusChanged() says when settle() is due, and the owner calls it then.
class AutoProfile {
public:
    using Clock = std::chrono::steady_clock;
    static constexpr std::chrono::milliseconds kDebounce{400};

    struct Actions {
        std::function<std::int64_t()> currentProfile;          // the profile in force
        std::function<bool(std::int64_t)> profileExists;
        std::function<void(std::int64_t)> selectProfile;       // as choosing it in the window
    };
    explicit AutoProfile(Actions actions) : actions_(std::move(actions)) {}

    void setRules(std::vector<ops::AppProfileRule> rules) { rules_ = std::move(rules); }
    const std::vector<ops::AppProfileRule>& rules() const { return rules_; }

    // The focused application changed; settle() is due at the time returned (`now` for this
    // application's own window, or no application: they change nothing).
    Clock::time_point focusChanged(const ops::FocusedWindow& window, Clock::time_point now);
    // Applies the focus change that has stood for the debounce; nothing before that.
    void settle(Clock::time_point now);
    // The profile in force changed, and not by a rule.
    void profileChosen(std::int64_t profile);
    // The profile a rule selected last (none when no rule is in force).
    std::optional<std::int64_t> ruleProfile() const { return applied_; }

private:
    Actions actions_;
    std::vector<ops::AppProfileRule> rules_;
    std::optional<ops::FocusedWindow> pending_;
    Clock::time_point pendingSince_{};
    ops::FocusedWindow settled_;                 // the application in front, once it stood
    std::optional<std::int64_t> baseline_;       // in force before a rule matched
    std::optional<std::int64_t> applied_;        // what the rule in force selected
    std::optional<std::string> heldFor_;         // chosen by hand while this application was in front
};

}  // namespace qx9
