// qx9ctl key list / key set: key assignments.
#include <sstream>

#include "cli/ctl_context.h"
#include "cli/ctl_output.h"
#include "layout/key_maps.h"
#include "ops/key_assignment.h"

namespace qx9::ctl {

namespace {

const char* const kFunctionUsage =
    "FUNCTION is default | disable | key:CODE | combo:CODE[+CODE…] | macro:ID[:once|:repeat:N|:toggle] | "
    "mouse:1-8 | media:1-7 | mac:1-6";

std::int64_t parseLayer(const std::string& text) {
    const std::int64_t layer = parseInteger(text, "the layer");
    if (layer != 0 && layer != 1) throw UsageError{"the layer is 0 (base) or 1 (Fn), not " + text};
    return layer;
}

std::vector<std::string> split(const std::string& text, char sep) {
    std::vector<std::string> parts;
    std::string part;
    std::istringstream in(text);
    while (std::getline(in, part, sep)) parts.push_back(part);
    if (!text.empty() && text.back() == sep) parts.push_back("");
    return parts;
}

ProfileKey macroChoice(Context& c, const std::vector<std::string>& parts) {
    if (parts.size() < 2 || parts.size() > 4) throw UsageError{"macro takes ID[:once|:repeat:N|:toggle]"};
    MacroInfo macro;
    if (!c.database().queryMacroInfo(parseInteger(parts[1], "the macro"), macro)) throw UsageError{"no macro " + parts[1]};
    const std::string mode = parts.size() > 2 ? parts[2] : "once";
    if (mode == "once" && parts.size() <= 3) return ops::macroFunction(macro, ops::kPlayOnce, 1);
    if (mode == "toggle" && parts.size() == 3) return ops::macroFunction(macro, ops::kPlayUntilPressedAgain, 1);
    if (mode == "repeat" && parts.size() == 4) {
        return ops::macroFunction(macro, ops::kPlayRepeat, parseInRange(parts[3], "the play count", 1, ops::kMaxPlayCount));
    }
    throw UsageError{"macro takes ID[:once|:repeat:N|:toggle]"};
}

// The function a FUNCTION argument names, and whether it goes to the base layer whatever layer
// was given (the custom key dialog's functions do).
ProfileKey parseFunction(Context& c, const std::string& text, bool& baseLayer) {
    const std::vector<std::string> parts = split(text, ':');
    const std::string kind = parts.empty() ? "" : parts[0];
    baseLayer = kind != "default" && kind != "disable" && kind != "key";
    if (kind == "default" && parts.size() == 1) return ops::defaultFunction();
    if (kind == "disable" && parts.size() == 1) return ops::disabledFunction();
    if (kind == "key" && parts.size() == 2) {
        if (auto f = ops::paletteFunction(parseInteger(parts[1], "the key code"))) return *f;
        throw UsageError{"no function " + parts[1] + " in the key palette"};
    }
    if (kind == "combo") {
        if (parts.size() != 2) throw UsageError{"combo takes CODE[+CODE…]"};
        std::vector<std::int64_t> keys;
        for (const std::string& code : split(parts[1], '+')) {
            const std::int64_t v = parseInteger(code, "a combination key");
            if (v != static_cast<int>(v) || !G_KB_SuperKeyCodeMap.contains(static_cast<int>(v))) {
                throw UsageError{"no key code " + code + " on the QX9"};
            }
            keys.push_back(v);
        }
        if (auto f = ops::capturedKeysFunction(keys)) return *f;
        throw UsageError{"combo needs at least one key code"};
    }
    if (kind == "macro") return macroChoice(c, parts);
    std::int64_t type = 0;
    if (kind == "mouse") type = kMacroTypeMouse;
    else if (kind == "media") type = kMacroTypeMultimedia;
    else if (kind == "mac") type = kMacroTypeMacShortcut;
    if (type == 0) throw UsageError{"unknown function \"" + text + "\"; " + kFunctionUsage};
    const auto count = static_cast<std::int64_t>(ops::functionChoices(type).size());
    if (parts.size() != 2) throw UsageError{kind + " takes one number, 1-" + std::to_string(count)};
    return *ops::listFunction(type, static_cast<std::size_t>(parseInRange(parts[1], kind, 1, count) - 1));
}

void keySet(Context& c, const std::vector<std::string>& args) {
    expectArgs(args, 5, "key set PROFILE LAYER KEY FUNCTION");
    const std::int64_t profile = parseProfile(c, args[1]);
    const std::int64_t layer = parseLayer(args[2]);
    const std::int64_t key = parseKeyCode(args[3]);
    bool baseLayer = false;
    const ProfileKey function = parseFunction(c, args[4], baseLayer);
    check(ops::assignKey(c.target(), profile, baseLayer ? 0 : layer, key, function));
}

void keyList(Context& c, const std::vector<std::string>& args) {
    expectArgs(args, 3, "key list PROFILE LAYER");
    const std::int64_t profile = parseProfile(c, args[1]);
    const std::int64_t layer = parseLayer(args[2]);
    std::vector<ProfileKey> records;
    c.database().queryKeysProfile(profile, layer, records);
    Table table({"key", "code", "type", "value", "value2", "value3", "text"});
    for (const ProfileKey& r : records) {
        const KeyCodeEntry* e = G_KB_SuperKeyCodeMap.find(static_cast<int>(r.keyValue));
        table.add({e ? e->key_name : "?", std::to_string(r.keyValue), std::to_string(r.macroType),
                   std::to_string(r.macroValue), std::to_string(r.macro2Value),
                   std::to_string(r.macro3Value), r.macroDesc});
    }
    table.print(c.out, c.options.json);
}

}  // namespace

void cmdKey(Context& c, const std::vector<std::string>& args) {
    if (args.empty()) throw usageError("usage: qx9ctl key list PROFILE LAYER | key set PROFILE LAYER KEY FUNCTION");
    if (args[0] == "list") return keyList(c, args);
    if (args[0] == "set") return keySet(c, args);
    throw usageError("unknown key command " + args[0]);
}

}  // namespace qx9::ctl
