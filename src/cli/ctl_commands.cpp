// The qx9ctl commands of the devices, profiles, Fn mode and settings.
#include <cerrno>
#include <cstring>

#include "cli/ctl_context.h"
#include "cli/ctl_output.h"
#include "hid/device_access.h"
#include "hid/udev_hid.h"
#include "virtual/virtual_qx9_memory.h"
#include "i18n/language.h"
#include "ops/configuration.h"
#include "ops/lighting.h"
#include "ops/profiles.h"
#include "ops/settings.h"

namespace qx9::ctl {

namespace {

std::string hex(std::int64_t v, int width) {
    char buf[32];
    std::snprintf(buf, sizeof buf, "0x%0*llX", width, static_cast<unsigned long long>(v));
    return buf;
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
    // What the window's first connection stores and sends: the stored language written when it
    // is missing, profile 1's lighting rows, then the per-key colours (when a set exists), the
    // system functions and profile 1's key map.
    const ops::Target target = c.target();
    ops::LanguageChoice language;
    ops::applyStoredLanguage(target.db, language);
    check(ops::connectKeyboard(target));
}

void cmdProfile(Context& c, const std::vector<std::string>& args) {
    if (args.empty()) throw usageError("usage: qx9ctl profile list|add|rename ID NAME|delete ID|select ID");
    const std::string& verb = args[0];
    if (verb == "list") {
        expectArgs(args, 1, "profile list");
        std::vector<ProfileData> profiles;
        c.database().queryProfileList(profiles);
        Table table({"id", "name"});
        for (const ProfileData& p : profiles) table.add({std::to_string(p.profId), ops::displayedProfileName(p.name)});
        table.print(c.out, c.options.json);
    } else if (verb == "add") {
        expectArgs(args, 1, "profile add");
        std::string name;
        std::int64_t id = 0;
        check(ops::addProfile({c.database()}, name, id));
        printRecord(c, id, name);
    } else if (verb == "rename") {
        expectArgs(args, 3, "profile rename ID NAME");
        check(ops::renameProfile({c.database()}, parseProfile(c, args[1]), args[2]));
    } else if (verb == "delete") {
        expectArgs(args, 2, "profile delete ID");
        check(ops::deleteProfile({c.database()}, parseProfile(c, args[1])));
    } else if (verb == "select") {
        expectArgs(args, 2, "profile select ID");
        const std::int64_t id = parseProfile(c, args[1]);
        std::int64_t lightMode = 0;
        check(ops::selectProfile(c.target(), id, lightMode));
    } else {
        throw usageError("unknown profile command " + verb);
    }
}

void cmdFnMode(Context& c, const std::vector<std::string>& args) {
    expectArgs(args, 1, "fn-mode default|fn");
    if (args[0] != "default" && args[0] != "fn") throw UsageError{"fn-mode takes default or fn"};
    const ops::Target target = c.target();
    check(ops::setFnMode(target, args[0] == "fn", ops::storedSwitches(target.db)));
}

void cmdSettings(Context& c, const std::vector<std::string>& args) {
    if (args.empty()) throw usageError("usage: qx9ctl settings show|language|gamemode|block|reset-keys|reset-all");
    const std::string& verb = args[0];
    if (verb == "show") {
        expectArgs(args, 1, "settings show");
        DeviceSQLite& db = c.database();
        Table table({"setting", "value"});
        for (const char* key : {ops::kLanguage, ops::kGameMode, ops::kBlockAltTab, ops::kBlockAltF4, ops::kBlockWin,
                                ops::kFnFunction, ops::kSleepLight}) {
            table.add({key, db.getConfigData(ops::kSettingsProfile, key)});
        }
        table.print(c.out, c.options.json);
    } else if (verb == "language") {
        expectArgs(args, 2, "settings language en|zh-CN|zh-TW");
        const std::string& l = args[1];
        const int language = l == "en" ? kLanguageEnglish : l == "zh-CN" ? kLanguageSimplifiedChinese
                             : l == "zh-TW" ? kLanguageTraditionalChinese : 0;
        if (language == 0) throw UsageError{"language takes en, zh-CN or zh-TW"};
        check(ops::setLanguage({c.database()}, language));
    } else if (verb == "gamemode") {
        expectArgs(args, 2, "settings gamemode on|off");
        const bool on = parseOnOff(args[1], "gamemode");
        ops::GameModeSwitches shown;
        check(ops::setGameMode(c.target(), on, shown));
    } else if (verb == "block") {
        expectArgs(args, 3, "settings block alttab|altf4|win on|off");
        const std::string& which = args[1];
        if (which != "alttab" && which != "altf4" && which != "win") throw UsageError{"block takes alttab, altf4 or win"};
        const ops::Block block = which == "alttab" ? ops::Block::kAltTab : which == "altf4" ? ops::Block::kAltF4 : ops::Block::kWin;
        const bool on = parseOnOff(args[2], "block");
        const ops::Target target = c.target();
        ops::GameModeSwitches shown = ops::storedSwitches(target.db);
        check(ops::setBlock(target, block, on, shown));
    } else if (verb == "reset-keys") {
        expectArgs(args, 1, "settings reset-keys");
        std::int64_t lightMode = 0;
        check(ops::resetKeys(c.target(), ops::kSettingsProfile, lightMode));
    } else if (verb == "reset-all") {
        expectArgs(args, 1, "settings reset-all");
        check(ops::resetAll(c.target()));
    } else {
        throw usageError("unknown settings command " + verb);
    }
}

void cmdKeyboardState(Context& c, const std::vector<std::string>& args) {
    expectArgs(args, 0, "keyboard-state");
    if (!c.device.virtualKeyboard) throw UsageError{"keyboard-state reads a virtual keyboard (--device virtual:FILE)"};
    // Held like a transaction: what another program sent last is in the shared file.
    const DeviceLock lock(c.device.virtualKeyboard, kDeviceLockTimeout);
    if (!lock) throw UsageError{c.device.virtualKeyboard->lastError()};
    c.out << memoryToJson(c.device.virtualKeyboard->memory());
}

}  // namespace qx9::ctl
