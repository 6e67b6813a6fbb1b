#pragma once

#include <filesystem>
#include <string>
#include <string_view>

#include "common/unique_fd.h"

namespace qx9 {

// Files this application writes that hold keystrokes (exports, wire logs, a virtual keyboard's
// state) are the user's alone (0600). A symbolic link is written through to its target; anything
// there that is not a regular file (a directory, a device node, a pipe) is refused.

// Where a write to `path` lands: the target of a link, or `path` itself. Empty, and `error` set,
// when that is something other than a regular file or a place for a new one.
std::filesystem::path regularFileTarget(const std::filesystem::path& path, std::string& error);

// Replaces the file at `path` (through a link, its target) with `bytes`: written beside it under
// another name, then renamed over it, so that a failed write leaves the old file whole.
bool replacePrivateFile(const std::filesystem::path& path, std::string_view bytes, std::string& error);

// Opens the file at `path` for appending, creating it 0600 when missing; invalid, and `error` set,
// when it cannot or when it is not a regular file.
UniqueFd openPrivateFileForAppend(const std::filesystem::path& path, std::string& error);

}  // namespace qx9
