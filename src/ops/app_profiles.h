#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

#include "ops/outcome.h"
#include "store/device_sqlite.h"

namespace qx9::ops {

// Automatic profiles: "application → profile" rules, kept in a small text file of their own
// (not in the database), one rule a line:
//
//     # comments and blank lines are kept out
//     firefox = 2                 the application id or window class, in any case
//     firefox "YouTube" = 3       ... while the window title contains "YouTube" (any case)
//
// A name or title with blanks, quotes or '=' is written in double quotes (\" and \\ inside).
struct AppProfileRule {
    std::string application;
    std::string title;  // empty: any title
    std::int64_t profile = 0;
};

struct AppProfileRules {
    std::vector<AppProfileRule> rules;  // in the file's order
    std::vector<std::string> skipped;   // "line N: why", for lines that are not a rule
};

// $XDG_CONFIG_HOME/<application id>/app-profiles.conf (~/.config when unset); empty when the
// user has no home directory.
std::filesystem::path appProfilesFile();

// The rules the file holds: a missing file holds none; a file that cannot be read is kNotRead.
Outcome readAppProfiles(const std::filesystem::path& file, AppProfileRules& rules);
std::string formatAppProfiles(const std::vector<AppProfileRule>& rules);

// Adds the rule, or gives the rule of the same application and title another profile; the
// profile must exist. The file is read and written again under a lock, so that two programs
// changing rules at once both keep their change.
Outcome setAppProfile(const std::filesystem::path& file, DeviceSQLite& db, const AppProfileRule& rule);
// Removes the rule of the application and title (refused when there is none).
Outcome removeAppProfile(const std::filesystem::path& file, const std::string& application, const std::string& title);

// The rule for the application in front: a rule with a title that the window's title contains
// comes before one without; otherwise the first in the file. Null when none matches.
struct FocusedWindow {
    std::string appId;
    std::string windowClass;
    std::string title;
};
const AppProfileRule* matchAppProfile(const std::vector<AppProfileRule>& rules, const FocusedWindow& window);

}  // namespace qx9::ops
