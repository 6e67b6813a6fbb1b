#include "session/autostart.h"

#include <fstream>
#include <sstream>
#include <system_error>

#include "common/app_id.h"
#include "common/private_file.h"
#include "store/data_location.h"

namespace qx9 {

namespace {

constexpr const char* kOptionKeys[] = {"automatic-profiles", "dark-when-locked"};

// An argument of Exec as desktops read it: bare when it has no reserved character, otherwise in
// double quotes with ", `, $ and \ escaped, and \ escaped again as in every string value of a
// desktop file: a quote is \\" in the file, a backslash four of them.
std::string execArgument(const std::string& argument) {
    const bool bare = !argument.empty() && argument.find_first_not_of(
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/._+-,:@") == std::string::npos;
    if (bare) return argument;
    std::string quoted = "\"";
    for (char c : argument) {
        if (c == '"' || c == '`' || c == '$') quoted += "\\\\";
        if (c == '\\') quoted += "\\\\\\";
        quoted += c;
    }
    return quoted + "\"";
}

std::filesystem::path inConfig(const std::filesystem::path& relative) {
    const std::optional<std::filesystem::path> config = userConfigDirectory();
    return config ? *config / relative : std::filesystem::path();
}

bool writeFile(const std::filesystem::path& file, const std::string& text, std::string& error) {
    if (file.empty()) return error = "no home folder", false;
    std::error_code ec;
    std::filesystem::create_directories(file.parent_path(), ec);
    return replacePrivateFile(file, text, error);
}

}  // namespace

std::filesystem::path autostartFile() { return inConfig(std::filesystem::path("autostart") / (std::string(kApplicationId) + ".desktop")); }

std::string autostartEntry(const std::filesystem::path& program) {
    return "[Desktop Entry]\n"
           "Type=Application\n"
           "Name=HALVORN QX9\n"
           "Comment=Keeps the HALVORN QX9 keyboard's profiles following the user, from the tray\n"
           "Exec=" + execArgument(program.string()) + " --hidden\n"
           "Icon=" + kApplicationId + "\n"
           "Terminal=false\n"
           "NoDisplay=true\n"
           "X-GNOME-Autostart-enabled=true\n";
}

bool autostartEnabled(const std::filesystem::path& entry) {
    std::ifstream in(entry);
    if (!in) return false;
    for (std::string line; std::getline(in, line);) {
        if (line == "Hidden=true" || line == "X-GNOME-Autostart-enabled=false") return false;
    }
    return true;
}

bool setAutostart(bool on, const std::filesystem::path& program, std::string& error, const std::filesystem::path& entry) {
    if (on) return writeFile(entry, autostartEntry(program), error);
    std::error_code ec;
    if (!entry.empty()) std::filesystem::remove(entry, ec);
    if (ec) error = entry.string() + ": " + ec.message();
    return !ec;
}

std::filesystem::path desktopOptionsFile() { return inConfig(std::filesystem::path(kApplicationId) / "desktop.conf"); }

DesktopOptions readDesktopOptions(const std::filesystem::path& file) {
    DesktopOptions options;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);) {
        const std::size_t equals = line.find('=');
        if (equals == std::string::npos) continue;
        std::string key, value;
        std::istringstream(line.substr(0, equals)) >> key;
        std::istringstream(line.substr(equals + 1)) >> value;
        if (value != "on" && value != "off") continue;
        if (key == kOptionKeys[0]) options.automaticProfiles = value == "on";
        if (key == kOptionKeys[1]) options.darkWhenLocked = value == "on";
    }
    return options;
}

bool writeDesktopOptions(const DesktopOptions& options, std::string& error, const std::filesystem::path& file) {
    const auto onOff = [](bool on) { return on ? "on" : "off"; };
    std::string text = "# The keyboard following the user (edited by the window's settings page).\n";
    text += std::string(kOptionKeys[0]) + " = " + onOff(options.automaticProfiles) + "\n";
    text += std::string(kOptionKeys[1]) + " = " + onOff(options.darkWhenLocked) + "\n";
    return writeFile(file, text, error);
}

}  // namespace qx9
