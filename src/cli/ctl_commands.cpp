// The qx9ctl commands: each does what the window's action of the same meaning does.
#include <cerrno>
#include <cstring>

#include "cli/ctl_context.h"
#include "cli/ctl_output.h"
#include "hid/hidraw_device.h"
#include "hid/udev_hid.h"
#include "hid/virtual_qx9_memory.h"
#include "i18n/language.h"
#include "layout/key_maps.h"

namespace qx9::ctl {

namespace {

void expectArgs(const std::vector<std::string>& args, std::size_t n, const std::string& usage) {
    if (args.size() != n) throw UsageError{"usage: qx9ctl " + usage};
}

std::string hex(std::int64_t v, int width) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "0x%0*llX", width, static_cast<unsigned long long>(v));
    return buf;
}

bool onOff(const std::string& text, const std::string& what) {
    if (text == "on") return true;
    if (text == "off") return false;
    throw UsageError{what + " takes on or off, not \"" + text + "\""};
}

}  // namespace

void cmdDevices(Context& c, const std::vector<std::string>& args) {
    expectArgs(args, 0, "devices");
    Table table({"node", "location", "input", "feature", "name", "role", "access"});
    for (const AttachedInterface& a : enumerateHidInterfaces(true)) {
        if (a.record.vendorId != kQX9VendorId || a.record.productId != kQX9ProductId) continue;
        const bool config = isQX9ConfigurationInterface(a.record);
        std::string access = a.openErrno == 0 ? "ok" : std::strerror(a.openErrno);
        if (config && a.openErrno == EACCES) access = "no access: " + accessFix();
        table.add({a.devnode, hex(a.record.id, 8), std::to_string(a.record.reportSize),
                   std::to_string(a.record.featureSize), a.record.name,
                   config ? "configuration" : "other", access});
    }
    table.print(c.out, c.options.json);
}

void cmdConnect(Context& c, const std::vector<std::string>& args) {
    expectArgs(args, 0, "connect");
    c.sends = true;
    if (!c.hasKeyboard()) {
        openSession(c);
        return;
    }
    // The first connection of the window: arrival, then the load that sends the per-key
    // colours (when a set exists), the system functions and profile 1's key map.
    c.session->device.deviceConnected(
        Notification{kHIDDeviceConnected, HIDDeviceDictionary{{kDeviceKey, c.device.record}}});
    DeviceSQLite* db = c.session->core.db();
    if (!db || !db->isConnected()) throw UsageError{"cannot open the database"};
}

void cmdProfile(Context& c, const std::vector<std::string>& args) {
    if (args.empty()) throw UsageError{"usage: qx9ctl profile list|add|rename ID NAME|delete ID|select ID"};
    const std::string& verb = args[0];
    if (verb == "list") {
        expectArgs(args, 1, "profile list");
        openSession(c);
        Table table({"id", "name"});
        for (const ProfileRow& r : c.session->profiles.rows()) table.add({std::to_string(r.profileId), r.name});
        table.print(c.out, c.options.json);
    } else if (verb == "add") {
        expectArgs(args, 1, "profile add");
        openSession(c);
        ProfileList& profiles = c.session->profiles;
        const std::size_t before = profiles.rows().size();
        profiles.customkey_button_profile(ProfileList::kAdd);
        if (profiles.rows().size() == before) throw UsageError{"the database refused the new profile"};
        Table table({"id", "name"});
        table.add({std::to_string(profiles.rows().back().profileId), profiles.rows().back().name});
        table.print(c.out, c.options.json);
    } else if (verb == "rename") {
        expectArgs(args, 3, "profile rename ID NAME");
        openSession(c);
        const std::int64_t id = parseProfile(c, args[1]);
        if (args[2].empty()) throw UsageError{"a profile name cannot be empty"};
        c.session->profiles.setKeyProfileTableSelect(profileRow(c, id));
        c.session->profiles.keyTableItemViewEdit(profileRow(c, id), args[2]);
    } else if (verb == "delete") {
        expectArgs(args, 2, "profile delete ID");
        openSession(c);
        const std::int64_t id = parseProfile(c, args[1]);
        c.session->profiles.setKeyProfileTableSelect(profileRow(c, id));
        c.session->profiles.customkey_button_profile(ProfileList::kDelete);
    } else if (verb == "select") {
        expectArgs(args, 2, "profile select ID");
        openSession(c);
        const std::int64_t id = parseProfile(c, args[1]);
        c.sends = true;
        c.session->profiles.tableSelectionChanged(profileRow(c, id));
    } else {
        throw UsageError{"unknown profile command " + verb};
    }
}

void cmdFnMode(Context& c, const std::vector<std::string>& args) {
    expectArgs(args, 1, "fn-mode default|fn");
    if (args[0] != "default" && args[0] != "fn") throw UsageError{"fn-mode takes default or fn"};
    openSession(c);
    c.sends = true;
    c.session->keys.textButtonAction(args[0] == "fn" ? 1 : 0);
}

void cmdSettings(Context& c, const std::vector<std::string>& args) {
    if (args.empty()) throw UsageError{"usage: qx9ctl settings show|language|gamemode|block|reset-keys|reset-all"};
    const std::string& verb = args[0];
    SettingsPage* settings = nullptr;
    auto open = [&] {
        openSession(c);
        settings = &c.session->settings;
    };
    if (verb == "show") {
        expectArgs(args, 1, "settings show");
        open();
        DeviceSQLite& db = *c.session->core.db();
        Table table({"setting", "value"});
        table.add({"language", db.getConfigData(1, "language")});
        table.add({"gamemode", db.getConfigData(1, "gamemode")});
        table.add({"disable_alttab", db.getConfigData(1, "disable_alttab")});
        table.add({"disable_altf4", db.getConfigData(1, "disable_altf4")});
        table.add({"disable_win", db.getConfigData(1, "disable_win")});
        table.add({"fnfunction", db.getConfigData(1, "fnfunction")});
        table.add({"sleeplight", db.getConfigData(1, "sleeplight")});
        table.print(c.out, c.options.json);
    } else if (verb == "language") {
        expectArgs(args, 2, "settings language en|zh-CN|zh-TW");
        const std::string& l = args[1];
        const int row = l == "en" ? 0 : l == "zh-CN" ? 1 : l == "zh-TW" ? 2 : -1;
        if (row < 0) throw UsageError{"language takes en, zh-CN or zh-TW"};
        open();
        settings->comboBoxSelectionDidChange(row);
    } else if (verb == "gamemode") {
        expectArgs(args, 2, "settings gamemode on|off");
        const bool on = onOff(args[1], "gamemode");
        open();
        c.sends = true;
        settings->button_action_gamemode(SettingsPage::kGameMode, on);
    } else if (verb == "block") {
        expectArgs(args, 3, "settings block alttab|altf4|win on|off");
        const std::string& which = args[1];
        const int tag = which == "alttab" ? SettingsPage::kAltTab
                        : which == "altf4" ? SettingsPage::kAltF4
                        : which == "win"   ? SettingsPage::kLockWin
                                           : -1;
        if (tag < 0) throw UsageError{"block takes alttab, altf4 or win"};
        const bool on = onOff(args[2], "block");
        open();
        c.sends = true;
        settings->button_action_gamemode(tag, on);
    } else if (verb == "reset-keys") {
        expectArgs(args, 1, "settings reset-keys");
        open();
        c.sends = true;
        settings->configResetKeys();
    } else if (verb == "reset-all") {
        expectArgs(args, 1, "settings reset-all");
        open();
        c.sends = true;
        settings->configResetAllDatas();
    } else {
        throw UsageError{"unknown settings command " + verb};
    }
}

void cmdKeyboardState(Context& c, const std::vector<std::string>& args) {
    expectArgs(args, 0, "keyboard-state");
    if (!c.device.virtualKeyboard) throw UsageError{"keyboard-state reads a virtual keyboard (--device virtual:FILE)"};
    c.out << memoryToJson(c.device.virtualKeyboard->memory());
}

}  // namespace qx9::ctl
