#include "store/data_location.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <vector>


namespace qx9 {

namespace {

bool isAbsolute(const char* value) {
    return value && value[0] == '/';
}

std::optional<std::filesystem::path> homeDirectory() {
    const char* home = std::getenv("HOME");
    if (isAbsolute(home)) return home;

    // No usable $HOME (a service started without one): ask the password database.
    long size = sysconf(_SC_GETPW_R_SIZE_MAX);
    std::vector<char> buffer(size > 0 ? static_cast<std::size_t>(size) : 16384);
    passwd entry{};
    passwd* found = nullptr;
    getpwuid_r(getuid(), &entry, buffer.data(), buffer.size(), &found);
    if (found && isAbsolute(found->pw_dir)) return found->pw_dir;
    return std::nullopt;
}

}  // namespace

std::optional<std::filesystem::path> userDataDirectory() {
    const char* xdg = std::getenv("XDG_DATA_HOME");
    if (isAbsolute(xdg)) return xdg;
    const std::optional<std::filesystem::path> home = homeDirectory();
    if (!home) return std::nullopt;
    return *home / ".local" / "share";
}

std::optional<std::filesystem::path> databaseDirectory(std::string_view applicationId) {
    const std::optional<std::filesystem::path> base = userDataDirectory();
    if (!base || applicationId.empty()) return std::nullopt;
    return *base / std::string(applicationId) / "db";
}

}  // namespace qx9
