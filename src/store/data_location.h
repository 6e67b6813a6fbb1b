#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace qx9 {

// The user's data directory: $XDG_DATA_HOME when it holds an absolute path, otherwise
// ~/.local/share. A user without a home directory is a broken invariant and stops the program.
std::filesystem::path userDataDirectory();

// Where the application keeps its database files: <data directory>/<application id>/db/.
// No directory when the application id is empty.
std::optional<std::filesystem::path> databaseDirectory(std::string_view applicationId);

}  // namespace qx9
