#include "store/data_location.h"

#include <pwd.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <system_error>
#include <vector>

#include "common/app_id.h"
#include "common/console.h"

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

// The data folder of the builds before the first release, moved to the current one when there is
// none yet; where it cannot be moved, it stays as it is and the current folder is used.
void moveFormerDataFolder(const std::filesystem::path& base) {
    std::error_code ec;
    const std::filesystem::path current = base / kApplicationId, former = base / kFormerApplicationId;
    if (std::filesystem::symlink_status(current, ec).type() != std::filesystem::file_type::not_found) return;
    if (!std::filesystem::is_directory(std::filesystem::symlink_status(former, ec))) return;
    std::filesystem::rename(former, current, ec);
    console() << "init: " << (ec ? "could not move " : "moved ") << former.string() << " to " << current.string()
              << (ec ? ": " + ec.message() : std::string()) << '\n';
}

}  // namespace

std::optional<std::filesystem::path> userDataDirectory() {
    const char* xdg = std::getenv("XDG_DATA_HOME");
    if (isAbsolute(xdg)) return xdg;
    const std::optional<std::filesystem::path> home = homeDirectory();
    if (!home) return std::nullopt;
    return *home / ".local" / "share";
}

std::optional<std::filesystem::path> userConfigDirectory() {
    const char* xdg = std::getenv("XDG_CONFIG_HOME");
    if (isAbsolute(xdg)) return xdg;
    const std::optional<std::filesystem::path> home = homeDirectory();
    if (!home) return std::nullopt;
    return *home / ".config";
}

std::optional<std::filesystem::path> databaseDirectory(std::string_view applicationId) {
    const std::optional<std::filesystem::path> base = userDataDirectory();
    if (!base || applicationId.empty()) return std::nullopt;
    if (applicationId == kApplicationId) moveFormerDataFolder(*base);
    return *base / std::string(applicationId) / "db";
}

}  // namespace qx9
