// The keyboard following the user: the tray's profiles and "Lights off", dark keys while locked,
// and the profile of the application in front.
#include "session/session_fixture.h"

#include "virtual/virtual_qx9_memory.h"

namespace qx9::test {
namespace {

class FollowUserTest : public SessionTest {
protected:
    FollowUserTest() : config_("XDG_CONFIG_HOME", (dir_ / "config").string()) {}
    FollowUser& follow() { return session_->follow; }
    int shownMode() {
        const auto light = decodeLightMode(keyboard_->memory());
        return light ? light->mode : -1;
    }
    std::string keyboardProfile() { return sql("SELECT value FROM t_configdata WHERE profId = 1 AND key = 'keyboard_profile'"); }

    EnvOverride config_;
};

TEST_F(FollowUserTest, TheTrayChoosesProfilesAndTurnsTheLightsOffWithoutStoring) {
    connect();
    session_->profiles.customkey_button_profile(ProfileList::kAdd);
    const std::int64_t second = session_->profiles.rows()[1].profileId;
    ASSERT_EQ(follow().profileItems().size(), 2u);
    EXPECT_TRUE(follow().profileItems()[0].current);
    clearWire();
    follow().chooseProfile(second);  // stored, then its key map sent
    EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x11, 0x02}));
    EXPECT_EQ(keyboardProfile(), std::to_string(second));
    EXPECT_TRUE(follow().profileItems()[1].current);

    const std::string lighting = sql("SELECT group_concat(status || byte1 || byte9) FROM t_lightdata");
    const int stored = std::stoi(sql("SELECT mode FROM t_lightdata WHERE profId = 1 AND status = 1"));
    follow().setLightsOff(true);
    EXPECT_EQ(shownMode(), 0);
    follow().screenLocked(true);
    follow().screenLocked(false);  // still off: the tray's choice holds
    EXPECT_EQ(shownMode(), 0);
    follow().setLightsOff(false);
    EXPECT_EQ(shownMode(), stored);
    EXPECT_EQ(sql("SELECT group_concat(status || byte1 || byte9) FROM t_lightdata"), lighting);
}

TEST_F(FollowUserTest, DarkWhileLockedOnlyWhenTheUserAskedForIt) {
    connect();
    const int stored = std::stoi(sql("SELECT mode FROM t_lightdata WHERE profId = 1 AND status = 1"));
    clearWire();
    follow().screenLocked(true);
    EXPECT_TRUE(sets().empty());  // the option is off by default
    follow().screenLocked(false);
    ASSERT_TRUE(follow().setOptions({true, true}));
    EXPECT_TRUE(readDesktopOptions().darkWhenLocked);
    clearWire();
    follow().screenLocked(true);
    EXPECT_EQ(shownMode(), 0);
    const std::size_t sent = sets().size();
    follow().screenLocked(true);  // told twice: nothing more sent
    EXPECT_EQ(sets().size(), sent);
    follow().screenLocked(false);
    EXPECT_EQ(shownMode(), stored);
}

TEST_F(FollowUserTest, TheProfileFollowsTheApplicationInFront) {
    using namespace std::chrono_literals;
    connect();
    session_->profiles.customkey_button_profile(ProfileList::kAdd);
    const std::int64_t second = session_->profiles.rows()[1].profileId;
    ASSERT_TRUE(ops::setAppProfile(ops::appProfilesFile(), *session_->core.db(), {"Game", "", second}));
    follow().reloadRules();
    AutoProfile::Clock::time_point t{};
    const auto focus = [&](const char* windowClass) {
        follow().settle(follow().focusChanged({"", windowClass, ""}, t += 1s));
    };
    clearWire();
    focus("game");
    EXPECT_EQ(commandCodes(), (std::vector<int>{0x18, 0x11, 0x02}));
    EXPECT_EQ(keyboardProfile(), std::to_string(second));
    clearWire();
    focus("game");  // another window of it
    EXPECT_TRUE(commandCodes().empty());
    focus("terminal");
    EXPECT_EQ(keyboardProfile(), "1");
    // Chosen by hand in the window while the game is in front: the rule leaves it alone.
    focus("game");
    session_->profiles.tableSelectionChanged(0);
    clearWire();
    focus("game");
    EXPECT_TRUE(commandCodes().empty());
    EXPECT_EQ(keyboardProfile(), "1");
}

}  // namespace
}  // namespace qx9::test
