// Automatic profiles: the rules file as a user writes it and the rule for the window in front.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>
#include <thread>

#include "ops/app_profiles.h"
#include "ops/profiles.h"
#include "support/scratch.h"

namespace qx9::test {
namespace {

std::string slurp(const std::filesystem::path& file) {
    std::ostringstream text;
    text << std::ifstream(file).rdbuf();
    return text.str();
}

TEST(AppProfiles, TheFileReadsAsAPersonWritesIt) {
    TempDir dir;
    const auto file = dir / "app-profiles.conf";
    std::ofstream(file) << "# mine\n\n  firefox = 2\nFirefox \"You Tube\" =3\n\"my app\" = 4\r\n"
                           "steam\n= 5\nvlc = x\n\"open = 6\ncode \"a \\\"b\\\" \\\\c\" = 7\n";
    ops::AppProfileRules rules;
    ASSERT_TRUE(ops::readAppProfiles(file, rules));
    std::vector<std::string> read;
    for (const auto& r : rules.rules) read.push_back(r.application + "|" + r.title + "|" + std::to_string(r.profile));
    EXPECT_EQ(read, (std::vector<std::string>{"firefox||2", "Firefox|You Tube|3", "my app||4", "code|a \"b\" \\c|7"}));
    EXPECT_EQ(rules.skipped, (std::vector<std::string>{"line 6: no \"= PROFILE-ID\"", "line 7: no application",
                                                       "line 8: the profile is not a number", "line 9: no application"}));
    // Written back, every rule reads the same.
    std::ofstream(file) << ops::formatAppProfiles(rules.rules);
    ops::AppProfileRules again;
    ASSERT_TRUE(ops::readAppProfiles(file, again));
    EXPECT_EQ(again.rules.size(), 4u);
    EXPECT_EQ(again.rules[3].title, "a \"b\" \\c");
    EXPECT_TRUE(again.skipped.empty());
    // A missing file holds no rules; a folder is not a rules file.
    EXPECT_TRUE(ops::readAppProfiles(dir / "none", again));
    EXPECT_TRUE(again.rules.empty());
    EXPECT_EQ(ops::readAppProfiles(dir.path(), again).status, ops::Outcome::kNotRead);
}

TEST(AppProfiles, TheRuleForTheWindowInFront) {
    const std::vector<ops::AppProfileRule> rules = {
        {"firefox", "", 2}, {"org.mozilla.firefox", "youtube", 3}, {"Steam", "", 4}, {"firefox", "", 9}};
    const struct {
        ops::FocusedWindow window;
        std::int64_t profile;  // 0: none
    } cases[] = {
        {{"", "Firefox", "News"}, 2},                       // the window class, any case
        {{"org.mozilla.firefox", "", "A - YouTube"}, 3},    // the title rule before the plain one
        {{"firefox", "", "A - YouTube"}, 2},                 // the title rule names another id
        {{"steam", "", ""}, 4},
        {{"", "", "firefox"}, 0},                           // a title is not an application
        {{"code", "Code", "firefox"}, 0},
    };
    for (const auto& c : cases) {
        const ops::AppProfileRule* rule = ops::matchAppProfile(rules, c.window);
        EXPECT_EQ(rule ? rule->profile : 0, c.profile) << c.window.appId << "/" << c.window.windowClass;
    }
}

TEST(AppProfiles, SetAndRemoveKeepEveryProgramsChange) {
    TempDir dir;
    EnvOverride data("XDG_DATA_HOME", (dir / "data").string());
    ConsoleCapture console;
    DeviceSQLite db(kDeviceDatabaseFileName);
    std::string name;
    std::int64_t second = 0;
    ASSERT_TRUE(ops::addProfile({db}, name, second));
    const auto file = dir / "config/app-profiles.conf";
    EXPECT_EQ(ops::setAppProfile(file, db, {"steam", "", 7}).reason, ops::Reason::kNoProfile);
    // Two programs setting rules at the same moment: both rules are kept.
    std::vector<std::thread> writers;
    for (const char* app : {"firefox", "steam", "code", "vlc"}) {
        writers.emplace_back([&, app] { EXPECT_TRUE(ops::setAppProfile(file, db, {app, "", second})); });
    }
    for (auto& w : writers) w.join();
    EXPECT_TRUE(ops::setAppProfile(file, db, {"FIREFOX", "", 1}));  // the same rule, another profile
    EXPECT_TRUE(ops::removeAppProfile(file, "Code", ""));
    EXPECT_EQ(ops::removeAppProfile(file, "code", "").reason, ops::Reason::kNoAppProfile);
    ops::AppProfileRules rules;
    ASSERT_TRUE(ops::readAppProfiles(file, rules));
    ASSERT_EQ(rules.rules.size(), 3u);
    const std::string text = slurp(file);
    EXPECT_NE(text.find("firefox = 1\n"), std::string::npos) << text;
    EXPECT_NE(text.find("vlc = 2\n"), std::string::npos) << text;
    EXPECT_EQ(std::filesystem::status(file).permissions() & std::filesystem::perms::all, std::filesystem::perms::owner_read | std::filesystem::perms::owner_write);
}

}  // namespace
}  // namespace qx9::test
