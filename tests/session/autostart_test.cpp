// Starting at login, hidden: the autostart entry as the desktop reads it, and the desktop options.
#include <gtest/gtest.h>

#include <cstdlib>
#include <fstream>

#include "session/autostart.h"
#include "support/scratch.h"

namespace qx9::test {
namespace {

TEST(Autostart, TheEntryRunsThisProgramHiddenWhereverItLies) {
    TempDir dir;
    EnvOverride config("XDG_CONFIG_HOME", (dir / "config").string());
    const struct {
        const char* program;
        const char* exec;
    } cases[] = {
        {"/usr/bin/halvorn-qx9", "Exec=/usr/bin/halvorn-qx9 --hidden"},
        {"/home/a b/build/bin/halvorn-qx9", R"(Exec="/home/a b/build/bin/halvorn-qx9" --hidden)"},
        {"/tmp/$x\"y`\\z", R"(Exec="/tmp/\\$x\\"y\\`\\\\z" --hidden)"},
    };
    const auto entry = dir / "config/autostart/org.qx9config.qx9.desktop";
    for (const auto& c : cases) {
        std::string error;
        ASSERT_TRUE(setAutostart(true, c.program, error)) << error;
        EXPECT_TRUE(autostartEnabled());
        std::ifstream in(entry);
        std::string text((std::istreambuf_iterator<char>(in)), {});
        EXPECT_NE(text.find(std::string("\n") + c.exec + "\n"), std::string::npos) << text;
        if (std::system("command -v desktop-file-validate >/dev/null") == 0) {
            EXPECT_EQ(std::system(("desktop-file-validate '" + entry.string() + "'").c_str()), 0) << text;
        }
    }
    std::ofstream(entry, std::ios::app) << "Hidden=true\n";  // turned off by the desktop's own settings
    EXPECT_FALSE(autostartEnabled());
    std::string error;
    ASSERT_TRUE(setAutostart(false, "/usr/bin/halvorn-qx9", error));
    EXPECT_FALSE(std::filesystem::exists(entry));
    EXPECT_TRUE(setAutostart(false, "/usr/bin/halvorn-qx9", error));  // already off
}

TEST(Autostart, DesktopOptionsKeepWhatWasSetAndSkipWhatCannotBeRead) {
    TempDir dir;
    const auto file = dir / "desktop.conf";
    EXPECT_TRUE(readDesktopOptions(file).automaticProfiles);  // no file: the defaults
    EXPECT_FALSE(readDesktopOptions(file).darkWhenLocked);
    std::string error;
    ASSERT_TRUE(writeDesktopOptions({false, true}, error, file));
    EXPECT_FALSE(readDesktopOptions(file).automaticProfiles);
    EXPECT_TRUE(readDesktopOptions(file).darkWhenLocked);
    std::ofstream(file) << "automatic-profiles = maybe\ndark-when-locked=on\ngarbage\n";
    EXPECT_TRUE(readDesktopOptions(file).automaticProfiles);
    EXPECT_TRUE(readDesktopOptions(file).darkWhenLocked);
}

}  // namespace
}  // namespace qx9::test
