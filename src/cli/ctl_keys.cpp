// qx9ctl key list / key set / key names: key assignments.
#include <sstream>

#include "cli/ctl_context.h"
#include "cli/ctl_grammar.h"
#include "layout/key_maps.h"
#include "ops/key_assignment.h"

namespace qx9::ctl {

namespace {

const char* const kFunctions =
    "default | disable | key:CODE | combo:KEY[+KEY…] | macro:ID[:once|:repeat:N|:toggle] | mouse:1-8 | media:1-7 | mac:1-6";
// The functions chosen from a list, by number.
const std::vector<std::pair<std::string, std::int64_t>> kListed = {
    {"mouse", kMacroTypeMouse}, {"media", kMacroTypeMultimedia}, {"mac", kMacroTypeMacShortcut}};

std::vector<std::string> split(const std::string& text, char sep) {
    std::vector<std::string> parts;
    std::string part;
    std::istringstream in(text);
    while (std::getline(in, part, sep)) parts.push_back(part);
    if (text.empty() || text.back() == sep) parts.push_back("");
    return parts;
}

// FUNCTION read into the form functionWord prints; whether a macro exists is the command's.
std::string readFunction(std::string& word) {
    const std::vector<std::string> parts = split(word, ':');
    const std::string kind = asciiLower(parts[0]);
    const auto number = [&](std::size_t i, std::int64_t lo, std::int64_t hi) {
        std::string value = parts[i];
        const std::string error = numberIn(lo, hi)(value);
        if (!error.empty()) throw CLI::ValidationError(kind + ": " + error);  // CLI11 takes it as the message
        return value;
    };
    if ((kind == "default" || kind == "disable") && parts.size() == 1) {
        word = kind;
        return "";
    }
    if (kind == "key" && parts.size() == 2) {
        std::optional<std::int64_t> code = keyCode(parts[1]);  // a key by name, or a palette code
        if (!code) code = parseNumber(parts[1]);
        if (!code || !ops::paletteFunction(*code)) return "no function \"" + parts[1] + "\" in the key palette";
        word = "key:" + std::to_string(*code);
        return "";
    }
    if (kind == "combo" && parts.size() == 2) {
        word = "combo:";
        for (const std::string& key : split(parts[1], '+')) {
            const std::optional<std::int64_t> code = keyCode(key);
            if (!code) return "no key \"" + key + "\" on the QX9 (see: qx9ctl key names)";
            word += (word.size() > 6 ? "+" : "") + std::to_string(*code);
        }
        return "";
    }
    if (kind == "macro" && parts.size() >= 2 && parts.size() <= 4) {
        const std::string id = number(1, 0, INT64_MAX);
        const std::string mode = parts.size() > 2 ? asciiLower(parts[2]) : "once";
        if ((mode == "once" || mode == "toggle") && parts.size() <= 3) word = "macro:" + id + ":" + mode;
        else if (mode == "repeat" && parts.size() == 4) word = "macro:" + id + ":repeat:" + number(3, 1, ops::kMaxPlayCount);
        else return "macro takes ID[:once|:repeat:N|:toggle]";
        return "";
    }
    for (const auto& [name, type] : kListed) {
        if (kind == name && parts.size() == 2) {
            word = name + ":" + number(1, 1, static_cast<std::int64_t>(ops::functionChoices(type).size()));
            return "";
        }
    }
    return "\"" + word + "\" is not a function: " + kFunctions;
}

// The function a read FUNCTION names, and whether it goes to the base layer whatever layer was
// given (the custom key dialog's functions do).
ProfileKey function(Context& c, const std::string& word, bool& baseLayer) {
    const std::vector<std::string> parts = split(word, ':');
    const std::string& kind = parts[0];
    baseLayer = kind != "default" && kind != "disable" && kind != "key";
    if (kind == "default") return ops::defaultFunction();
    if (kind == "disable") return ops::disabledFunction();
    if (kind == "key") return *ops::paletteFunction(*parseNumber(parts[1]));
    if (kind == "combo") {
        std::vector<std::int64_t> keys;
        for (const std::string& code : split(parts[1], '+')) keys.push_back(*parseNumber(code));
        return *ops::capturedKeysFunction(keys);
    }
    if (kind == "macro") {
        MacroInfo macro;
        if (!c.database().queryMacroInfo(existingMacro(c, *parseNumber(parts[1])), macro)) throw UsageError{"no macro " + parts[1]};
        if (parts[2] == "repeat") return ops::macroFunction(macro, ops::kPlayRepeat, *parseNumber(parts[3]));
        return ops::macroFunction(macro, parts[2] == "toggle" ? ops::kPlayUntilPressedAgain : ops::kPlayOnce, 1);
    }
    for (const auto& [name, type] : kListed) {
        if (kind == name) return *ops::listFunction(type, static_cast<std::size_t>(*parseNumber(parts[1]) - 1));
    }
    throw UsageError{"no function " + word};
}

// A stored assignment as the FUNCTION that gives it ("" for one of no kind key set takes).
std::string functionWord(const ProfileKey& k) {
    const std::string value = std::to_string(k.macroValue);
    switch (k.macroType) {
        case kMacroTypeDefault: return "default";
        case kMacroTypeDisabled: return "disable";
        case kMacroTypeKey:
            if (k.macro2Value != 0) return "combo:" + std::to_string(k.macro2Value) + "+" + value;
            return (ops::paletteFunction(k.macroValue) ? "key:" : "combo:") + value;
        case kMacroTypeMacro:
            if (k.macro2Value == ops::kPlayRepeat) return "macro:" + value + ":repeat:" + std::to_string(k.macro3Value);
            return "macro:" + value + (k.macro2Value == ops::kPlayUntilPressedAgain ? ":toggle" : ":once");
        default:
            for (const auto& [name, type] : kListed) {
                if (k.macroType == type) return name + ":" + value;
            }
            return "";
    }
}

// The assignments of a profile's layer (of one key, or of every key for 0), as `key list` prints them.
Table assignments(Context& c, std::int64_t profile, std::int64_t layer, std::int64_t key) {
    std::vector<ProfileKey> records;
    c.database().queryKeysProfile(profile, layer, records);
    Table table({"key", "code", "function", "text"});
    for (const ProfileKey& r : records) {
        const KeyCodeEntry* e = G_KB_SuperKeyCodeMap.find(static_cast<int>(r.keyValue));
        if (key == 0 || r.keyValue == key) table.add({e ? e->key_name : "?", r.keyValue, functionWord(r), r.macroDesc});
    }
    return table;
}

void keyNames(Context& c) {
    Table table({"name", "code"});
    for (const KeyNameEntry& e : G_KB_SuperKeyNameMap.entries()) {
        if (G_KB_SuperKeyCodeMap.contains(e.key_code)) table.add({e.name, e.key_code});
    }
    table.print(c.out, c.format());
}

}  // namespace

void addKeyCommands(Grammar& g) {
    CLI::App* group = g.command(&g.root(), "key", "list PROFILE LAYER | set PROFILE LAYER KEY FUNCTION | names",
                                "Key assignments (LAYER 0 is the base, 1 Fn)");
    const auto profileAndLayer = [&g](CLI::App* app) {
        g.id(app, "PROFILE", "The profile", Source::kProfiles);
        g.argument(app, "LAYER", "0 (base) or 1 (Fn)", numberIn(0, 1), {Source::kWords, {"0", "1"}});
    };
    CLI::App* list = g.command(group, "list", "PROFILE LAYER", "The assignments of a profile's layer");
    profileAndLayer(list);
    g.action(list, [](Context& c, const CLI::App& a) {
        assignments(c, existingProfile(c, number(a, "PROFILE")), number(a, "LAYER"), 0).print(c.out, c.format());
    });
    CLI::App* set = g.command(group, "set",
                              "PROFILE LAYER KEY FUNCTION\n"
                              "  KEY: a key name (a, escape, leftWin, i1 …, in any case) or a key code\n"
                              "  FUNCTION: " + std::string(kFunctions) + "\n"
                              "  (combo, macro, mouse, media and mac go to the base layer, as in the window)",
                              "Assign a function to a key");
    profileAndLayer(set);
    g.argument(set, "KEY", "A key name or code (see: qx9ctl key names)", keyReader(false), {Source::kKeys, {}});
    g.argument(set, "FUNCTION", kFunctions, readFunction, {Source::kFunction, {}});
    g.action(set, [](Context& c, const CLI::App& a) {
        const std::int64_t profile = existingProfile(c, number(a, "PROFILE"));
        const std::int64_t key = number(a, "KEY");
        bool baseLayer = false;
        const ProfileKey f = function(c, text(a, "FUNCTION"), baseLayer);
        const std::int64_t layer = baseLayer ? 0 : number(a, "LAYER");
        check(ops::assignKey(c.target(), profile, layer, key, f));
        Table assigned = assignments(c, profile, layer, key);  // a default function is stored as no row
        if (assigned.empty()) assigned.add({G_KB_SuperKeyCodeMap.at(static_cast<int>(key)).key_name, key, "default", ""});
        printRecord(c, assigned);
    });
    g.action(g.command(group, "names", "", "The key names KEY takes, with their codes"),
             [](Context& c, const CLI::App&) { keyNames(c); });
}

}  // namespace qx9::ctl
