#include "ops/app_profiles.h"

#include <fcntl.h>
#include <sys/file.h>

#include <algorithm>
#include <cctype>
#include <charconv>
#include <cerrno>
#include <cstring>
#include <fstream>
#include <sstream>

#include "common/app_id.h"
#include "common/ascii_case.h"
#include "common/private_file.h"
#include "common/unique_fd.h"
#include "ops/profiles.h"
#include "store/data_location.h"

namespace qx9::ops {

namespace {

constexpr const char* kFileName = "app-profiles.conf";
constexpr const char* kHeader =
    "# Automatic profiles: while an application is in front, the keyboard takes its profile.\n"
    "#   APPLICATION = PROFILE-ID          the application id or window class (any case)\n"
    "#   APPLICATION \"TITLE\" = PROFILE-ID  while the window title contains TITLE\n"
    "# Edited by the window (settings page) and by `qx9ctl app-profile`.\n";
// A rule file larger than this is not a rules file.
constexpr std::uintmax_t kMostBytes = 1 << 20;

// One word of a rule: bare up to a blank or '=', or in double quotes with \" and \\ inside.
bool readWord(std::string_view& line, std::string& word) {
    while (!line.empty() && std::isspace(static_cast<unsigned char>(line.front()))) line.remove_prefix(1);
    word.clear();
    if (line.empty() || line.front() == '=') return false;
    if (line.front() != '"') {
        while (!line.empty() && !std::isspace(static_cast<unsigned char>(line.front())) && line.front() != '=' &&
               line.front() != '"') {
            word += line.front();
            line.remove_prefix(1);
        }
        return true;
    }
    line.remove_prefix(1);
    while (!line.empty() && line.front() != '"') {
        if (line.front() == '\\' && line.size() > 1) line.remove_prefix(1);
        word += line.front();
        line.remove_prefix(1);
    }
    if (line.empty()) return false;  // no closing quote
    line.remove_prefix(1);
    return true;
}

std::string quoted(const std::string& word) {
    const bool bare = !word.empty() && std::none_of(word.begin(), word.end(), [](unsigned char c) {
        return std::isspace(c) || c == '"' || c == '=' || c == '\\' || c == '#' || c < 0x20;
    });
    if (bare) return word;
    std::string out = "\"";
    for (char c : word) {
        if (c == '"' || c == '\\') out += '\\';
        out += c;
    }
    return out + '"';
}

// "APPLICATION [TITLE] = PROFILE": false, with why, when the line is not a rule.
bool parseRule(std::string_view line, AppProfileRule& rule, std::string& why) {
    if (!readWord(line, rule.application) || rule.application.empty()) return why = "no application", false;
    std::string word;
    if (readWord(line, word)) rule.title = word;
    while (!line.empty() && std::isspace(static_cast<unsigned char>(line.front()))) line.remove_prefix(1);
    if (line.empty() || line.front() != '=') return why = "no \"= PROFILE-ID\"", false;
    line.remove_prefix(1);
    std::string number(line);
    number.erase(0, number.find_first_not_of(" \t"));
    number.erase(number.find_last_not_of(" \t\r") + 1);
    const auto [end, error] = std::from_chars(number.data(), number.data() + number.size(), rule.profile);
    if (number.empty() || error != std::errc() || end != number.data() + number.size() || rule.profile < 1) {
        return why = "the profile is not a number", false;
    }
    return true;
}

// Held while a program reads and writes the rules, on a file beside them.
class RulesLock {
public:
    explicit RulesLock(const std::filesystem::path& file) {
        const std::string path = file.string() + ".lock";
        fd_.reset(::open(path.c_str(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600));
        if (fd_ && ::flock(fd_.get(), LOCK_EX) != 0) fd_.reset();
    }
    explicit operator bool() const { return fd_.valid(); }

private:
    UniqueFd fd_;
};

template <typename Change>
Outcome changeRules(const std::filesystem::path& file, Change change) {
    if (file.empty()) return Outcome::notStored("no home folder for the automatic profiles");
    std::error_code ec;
    std::filesystem::create_directories(file.parent_path(), ec);
    const RulesLock lock(file);
    if (!lock) return Outcome::notStored("cannot lock " + file.string() + ": " + std::strerror(errno));
    AppProfileRules rules;
    if (Outcome read = readAppProfiles(file, rules); !read) return read;
    if (Outcome changed = change(rules.rules); !changed) return changed;
    std::string error;
    if (!replacePrivateFile(file, formatAppProfiles(rules.rules), error)) return Outcome::notStored(error);
    return Outcome::done();
}

}  // namespace

std::filesystem::path appProfilesFile() {
    const std::optional<std::filesystem::path> config = userConfigDirectory();
    return config ? *config / kApplicationId / kFileName : std::filesystem::path();
}

Outcome readAppProfiles(const std::filesystem::path& file, AppProfileRules& rules) {
    rules = {};
    std::error_code ec;
    const auto status = std::filesystem::status(file, ec);
    if (status.type() == std::filesystem::file_type::not_found) return Outcome::done();
    if (status.type() != std::filesystem::file_type::regular || std::filesystem::file_size(file, ec) > kMostBytes) {
        return Outcome::notRead(file.string() + " is not a rules file");
    }
    std::ifstream in(file, std::ios::binary);
    if (!in) return Outcome::notRead("cannot read " + file.string());
    std::string line;
    for (int number = 1; std::getline(in, line); ++number) {
        const std::size_t start = line.find_first_not_of(" \t\r");
        if (start == std::string::npos || line[start] == '#') continue;
        AppProfileRule rule;
        std::string why;
        if (parseRule(line, rule, why)) rules.rules.push_back(std::move(rule));
        else rules.skipped.push_back("line " + std::to_string(number) + ": " + why);
    }
    return Outcome::done();
}

std::string formatAppProfiles(const std::vector<AppProfileRule>& rules) {
    std::ostringstream out;
    out << kHeader;
    for (const AppProfileRule& r : rules) {
        out << quoted(r.application) << (r.title.empty() ? "" : " " + quoted(r.title)) << " = " << r.profile << '\n';
    }
    return out.str();
}

Outcome setAppProfile(const std::filesystem::path& file, DeviceSQLite& db, const AppProfileRule& rule) {
    if (rule.application.empty()) return Outcome::refused(Reason::kEmptyName, {"application"});
    if (!profileExists(db, rule.profile)) return Outcome::refused(Reason::kNoProfile, {std::to_string(rule.profile)});
    return changeRules(file, [&](std::vector<AppProfileRule>& rules) {
        for (AppProfileRule& r : rules) {
            if (sameIgnoringCase(r.application, rule.application) && sameIgnoringCase(r.title, rule.title)) {
                r.profile = rule.profile;
                return Outcome::done();
            }
        }
        rules.push_back(rule);
        return Outcome::done();
    });
}

Outcome removeAppProfile(const std::filesystem::path& file, const std::string& application, const std::string& title) {
    return changeRules(file, [&](std::vector<AppProfileRule>& rules) {
        const auto gone = std::remove_if(rules.begin(), rules.end(), [&](const AppProfileRule& r) {
            return sameIgnoringCase(r.application, application) && sameIgnoringCase(r.title, title);
        });
        if (gone == rules.end()) {
            return Outcome::refused(Reason::kNoAppProfile, {application + (title.empty() ? "" : " \"" + title + "\"")});
        }
        rules.erase(gone, rules.end());
        return Outcome::done();
    });
}

const AppProfileRule* matchAppProfile(const std::vector<AppProfileRule>& rules, const FocusedWindow& window) {
    const std::string title = asciiLower(window.title);
    const AppProfileRule* any = nullptr;
    for (const AppProfileRule& r : rules) {
        if (!sameIgnoringCase(r.application, window.appId) && !sameIgnoringCase(r.application, window.windowClass)) continue;
        if (r.title.empty()) {
            if (!any) any = &r;
        } else if (title.find(asciiLower(r.title)) != std::string::npos) {
            return &r;
        }
    }
    return any;
}

}  // namespace qx9::ops
