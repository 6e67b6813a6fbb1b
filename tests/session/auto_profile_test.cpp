// Automatic profiles: the profile that follows the application in front.
#include <gtest/gtest.h>

#include "session/auto_profile.h"

namespace qx9::test {
namespace {

// The profile through a sequence of focus changes and hand choices.
TEST(AutoProfileTest, FollowsTheApplicationInFrontButNotAFlashOrTheHand) {
    using namespace std::chrono_literals;
    std::int64_t current = 1;
    std::vector<std::int64_t> selected;
    AutoProfile autoProfile({[&] { return current; }, [](std::int64_t p) { return p >= 1 && p <= 3; },
                             [&](std::int64_t p) { selected.push_back(current = p); }});
    autoProfile.setRules({{"game", "", 2}, {"editor", "", 3}, {"gone", "", 8}});
    AutoProfile::Clock::time_point t{};
    // Each step: focus an application (or "hand:N", a profile chosen by hand), wait, and what was selected.
    const struct {
        const char* what;
        std::chrono::milliseconds wait;
        std::vector<std::int64_t> selected;
    } steps[] = {
        {"game", 500ms, {2}},            // a rule: its profile
        {"game", 500ms, {}},             // another window of it: nothing
        {"shell", 100ms, {}},            // flashes past...
        {"editor", 500ms, {3}},          // ...the next one counts
        {"shell", 500ms, {1}},           // no rule: the profile before the rules comes back
        {"gone", 500ms, {}},             // a rule whose profile is gone: nothing
        {"game", 500ms, {2}},
        {"hand:3", 0ms, {}},             // chosen by hand while the game is in front...
        {"halvorn-qx9", 500ms, {}},      // ...in this application's own window
        {"game", 500ms, {}},             // the hand's choice stands while the game stays
        {"shell", 500ms, {}},            // and is not undone when no rule matches
        {"game", 500ms, {2}},            // a new change of application: the rule again
        {"shell", 500ms, {3}},           // the hand's choice was in force before it
    };
    for (const auto& step : steps) {
        selected.clear();
        const std::string what = step.what;
        if (what.rfind("hand:", 0) == 0) {
            current = std::stoll(what.substr(5));
            autoProfile.profileChosen(current);
        } else {
            const auto due = autoProfile.focusChanged({"", what, ""}, t);
            t += step.wait;
            autoProfile.settle(std::min(t, due - 1ms));  // not before the debounce
            autoProfile.settle(t);
        }
        EXPECT_EQ(selected, step.selected) << what;
    }
}

}  // namespace
}  // namespace qx9::test
