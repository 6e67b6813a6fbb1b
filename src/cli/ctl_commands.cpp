// The qx9ctl commands of the devices and the profiles.
#include <cerrno>
#include <cstring>

#include "cli/ctl_context.h"
#include "cli/ctl_grammar.h"
#include "hid/device_access.h"
#include "hid/udev_hid.h"
#include "virtual/virtual_qx9_memory.h"
#include "ops/configuration.h"
#include "ops/profiles.h"
#include "ops/settings.h"

namespace qx9::ctl {

namespace {

std::string hex(std::int64_t v, int width) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "0x%0*llX", width, static_cast<unsigned long long>(v));
    return buf;
}

void devices(Context& c) {
    Table table({"node", "location", "input", "feature", "name", "role", "access"});
    for (const AttachedInterface& a : enumerateHidInterfaces(true)) {
        if (a.record.vendorId != kQX9VendorId || a.record.productId != kQX9ProductId) continue;
        const bool config = isQX9ConfigurationInterface(a.record);
        std::string access = a.openErrno == 0 ? "ok" : std::strerror(a.openErrno);
        if (config && a.openErrno == EACCES) access = "no access: " + accessFix();
        table.add({a.devnode, hex(a.record.id, 8), a.record.reportSize, a.record.featureSize, a.record.name,
                   config ? "configuration" : "other", access});
    }
    table.print(c.out, c.format());
    if (table.empty()) c.err << "qx9ctl: no QX9 attached\n";
}

void connect(Context& c) {
    // What the window's first connection stores and sends: the stored language written when it
    // is missing, profile 1's lighting rows, then the per-key colors (when a set exists), the
    // system functions and profile 1's key map.
    const ops::Target target = c.target();
    ops::LanguageChoice language;
    ops::applyStoredLanguage(target.db, language);
    check(ops::connectKeyboard(target));
    printResult(c, settingsTable(c));
}

void keyboardState(Context& c) {
    const std::shared_ptr<VirtualQX9> keyboard = c.keyboard().virtualKeyboard;
    if (!keyboard) throw UsageError{"keyboard-state reads a virtual keyboard (--device virtual:FILE)"};
    // Held like a transaction: what another program sent last is in the shared file.
    const DeviceLock lock(keyboard, kDeviceLockTimeout);
    if (!lock) throw UsageError{keyboard->lastError()};
    c.out << memoryToJson(keyboard->memory());
}

// A profile as `profile list` prints it.
Table profile(Context& c, std::int64_t id) {
    std::vector<ProfileData> profiles;
    c.database().queryProfileList(profiles);
    Table table({"id", "name"});
    for (const ProfileData& p : profiles) {
        if (id == 0 || p.profId == id) table.add({p.profId, p.name});
    }
    return table;
}

}  // namespace

void addDeviceCommands(Grammar& g) {
    g.action(g.command(&g.root(), "devices", "", "The QX9's interfaces on this machine and whether this user can open them"),
             [](Context& c, const CLI::App&) { devices(c); });
    g.action(g.command(&g.root(), "connect", "", "Send the stored configuration, as the window does when the keyboard appears"),
             [](Context& c, const CLI::App&) { connect(c); });
    g.action(g.command(&g.root(), "keyboard-state", "", "What a virtual keyboard holds, as JSON (--device virtual:FILE)"),
             [](Context& c, const CLI::App&) { keyboardState(c); });
}

void addProfileCommands(Grammar& g) {
    CLI::App* group = g.command(&g.root(), "profile", "list | add | rename ID NAME | delete ID | select ID", "Configuration profiles");
    g.action(g.command(group, "list", "", "The profiles"), [](Context& c, const CLI::App&) { profile(c, 0).print(c.out, c.format()); });
    g.action(g.command(group, "add", "", "Add a profile with the next free name"), [](Context& c, const CLI::App&) {
        std::string name;
        std::int64_t id = 0;
        check(ops::addProfile({c.database()}, name, id));
        printRecord(c, profile(c, id), true);
    });
    CLI::App* rename = g.command(group, "rename", "ID NAME", "Rename a profile");
    g.id(rename, "ID", "The profile", Source::kProfiles);
    g.argument(rename, "NAME", "The new name", {});
    g.action(rename, [](Context& c, const CLI::App& a) {
        const std::int64_t id = existingProfile(c, number(a, "ID"));
        check(ops::renameProfile({c.database()}, id, text(a, "NAME")));
        printRecord(c, profile(c, id));
    });
    CLI::App* remove = g.command(group, "delete", "ID", "Delete a profile (not the last one)");
    g.id(remove, "ID", "The profile", Source::kProfiles);
    g.action(remove, [](Context& c, const CLI::App& a) {
        const std::int64_t id = existingProfile(c, number(a, "ID"));
        const Table deleted = profile(c, id);
        check(ops::deleteProfile({c.database()}, id));
        printRecord(c, deleted);
    });
    CLI::App* select = g.command(group, "select", "ID", "Make a profile the keyboard's and send its key map and lighting");
    g.id(select, "ID", "The profile", Source::kProfiles);
    g.action(select, [](Context& c, const CLI::App& a) {
        const std::int64_t id = existingProfile(c, number(a, "ID"));
        std::int64_t lightMode = 0;
        check(ops::selectProfile(c.target(), id, lightMode));
        printRecord(c, profile(c, id));
    });
}

}  // namespace qx9::ctl
