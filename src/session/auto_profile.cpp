#include "session/auto_profile.h"

#include "common/app_id.h"
#include "common/ascii_case.h"

namespace qx9 {

namespace {

// This application's own window: going to it (to choose a profile by hand, say) is not going to
// another application.
bool isOwnWindow(const ops::FocusedWindow& w) {
    for (const std::string_view own : {std::string_view(kApplicationId), std::string_view("halvorn-qx9")}) {
        if (sameIgnoringCase(w.appId, own) || sameIgnoringCase(w.windowClass, own)) return true;
    }
    return false;
}

// What identifies the application a rule is matched against.
std::string applicationOf(const ops::FocusedWindow& w) { return w.appId + '\n' + w.windowClass; }

}  // namespace

AutoProfile::Clock::time_point AutoProfile::focusChanged(const ops::FocusedWindow& window, Clock::time_point now) {
    if (isOwnWindow(window) || (window.appId.empty() && window.windowClass.empty())) {
        // This application's window, or nothing focused: what was in front before stays so.
        pending_.reset();
        return now;
    }
    pending_ = window;
    pendingSince_ = now;
    return now + kDebounce;
}

void AutoProfile::settle(Clock::time_point now) {
    if (!pending_ || now - pendingSince_ < kDebounce) return;
    settled_ = *pending_;
    pending_.reset();
    if (heldFor_) {
        if (*heldFor_ == applicationOf(settled_)) return;  // the hand's choice stands
        heldFor_.reset();
    }
    const std::int64_t current = actions_.currentProfile();
    const ops::AppProfileRule* rule = ops::matchAppProfile(rules_, settled_);
    if (rule && actions_.profileExists(rule->profile)) {
        if (!baseline_) baseline_ = current;
        applied_ = rule->profile;
        if (current != rule->profile) actions_.selectProfile(rule->profile);
        return;
    }
    // No rule: the profile in force before the rules took over comes back.
    if (baseline_ && current != *baseline_ && actions_.profileExists(*baseline_)) actions_.selectProfile(*baseline_);
    baseline_.reset();
    applied_.reset();
}

void AutoProfile::profileChosen(std::int64_t profile) {
    if (applied_ && *applied_ == profile) return;  // the rule's own selection
    heldFor_ = applicationOf(pending_ ? *pending_ : settled_);
    baseline_.reset();
    applied_.reset();
}

}  // namespace qx9
