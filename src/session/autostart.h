#pragma once

#include <filesystem>
#include <string>

namespace qx9 {

// Starting at login, hidden in the tray: an XDG autostart entry that runs this program with
// --hidden. The switch is the entry itself: present (and not hidden) is on.
std::filesystem::path autostartFile();  // $XDG_CONFIG_HOME/autostart/<application id>.desktop
bool autostartEnabled(const std::filesystem::path& entry = autostartFile());
// Writes the entry for `program` (an absolute path), or removes it; false, with why, when it
// cannot.
bool setAutostart(bool on, const std::filesystem::path& program, std::string& error,
                  const std::filesystem::path& entry = autostartFile());
// The entry's text.
std::string autostartEntry(const std::filesystem::path& program);

// Settings of the desktop integration, kept beside the automatic profiles' rules in
// $XDG_CONFIG_HOME/<application id>/desktop.conf ("key = on|off" lines), not in the database.
struct DesktopOptions {
    bool automaticProfiles = true;   // the profile follows the application in front
    bool darkWhenLocked = false;     // the keys go dark while the screen is locked
};
std::filesystem::path desktopOptionsFile();
DesktopOptions readDesktopOptions(const std::filesystem::path& file = desktopOptionsFile());
bool writeDesktopOptions(const DesktopOptions& options, std::string& error,
                         const std::filesystem::path& file = desktopOptionsFile());

}  // namespace qx9
