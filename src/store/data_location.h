#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace qx9 {

// The user's data directory: $XDG_DATA_HOME when it holds an absolute path, otherwise
// ~/.local/share; none for a user without a home directory.
std::optional<std::filesystem::path> userDataDirectory();

// The user's configuration directory: $XDG_CONFIG_HOME when it holds an absolute path, otherwise
// ~/.config; none for a user without a home directory.
std::optional<std::filesystem::path> userConfigDirectory();

// Where the application keeps its database files: <data directory>/<application id>/db/.
// No directory when the application id is empty or the user has no data directory.
std::optional<std::filesystem::path> databaseDirectory(std::string_view applicationId);

}  // namespace qx9
