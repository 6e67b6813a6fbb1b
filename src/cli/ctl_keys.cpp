// qx9ctl key list / key set: the key page's assignments.
#include <sstream>

#include "cli/ctl_context.h"
#include "cli/ctl_output.h"
#include "layout/custom_key_func.h"
#include "layout/key_maps.h"
#include "session/custom_key_dialog.h"

namespace qx9::ctl {

namespace {

std::int64_t parseLayer(const std::string& text) {
    const std::int64_t layer = parseInteger(text, "the layer");
    if (layer != 0 && layer != 1) throw UsageError{"the layer is 0 (base) or 1 (Fn), not " + text};
    return layer;
}

// A key of the QX9 by name or code, as the name the key page reports.
std::string parseKey(const std::string& text) {
    if (const KeyNameEntry* e = G_KB_SuperKeyNameMap.find(text)) {
        if (G_KB_SuperKeyCodeMap.contains(e->key_code)) return e->name;
    } else if (!text.empty() && std::isdigit(static_cast<unsigned char>(text[0]))) {
        const std::int64_t code = parseInteger(text, "the key");
        if (const KeyCodeEntry* k = G_KB_SuperKeyCodeMap.find(static_cast<int>(code))) return k->key_name;
    }
    throw UsageError{"no key \"" + text + "\" on the QX9 (a key name such as a, escape, leftWin, or a key code)"};
}

std::vector<std::string> split(const std::string& text, char sep) {
    std::vector<std::string> parts;
    std::string part;
    std::istringstream in(text);
    while (std::getline(in, part, sep)) parts.push_back(part);
    if (!text.empty() && text.back() == sep) parts.push_back("");
    return parts;
}

std::int64_t inRange(const std::string& text, const std::string& what, std::int64_t lo, std::int64_t hi) {
    const std::int64_t v = parseInteger(text, what);
    if (v < lo || v > hi) {
        throw UsageError{what + " is " + std::to_string(lo) + "-" + std::to_string(hi) + ", not " + text};
    }
    return v;
}

// One of the dialog's assignments, checked completely before anything is stored.
struct DialogChoice {
    std::int64_t type = 0;  // 3 combination, 4 macro, 6 mouse, 7 multimedia, 8 Mac shortcut
    int function = 0;       // index in the type's list
    std::vector<std::int64_t> keys;
    int playType = 0;
    std::string playCount = "1";
};

int typeIndex(std::int64_t type) {
    switch (type) {  // the function-type list: default, keyboard, mouse, macro, multimedia, Mac
        case 1: return 0;
        case 3: return 1;
        case 6: return 2;
        case 4: return 3;
        case 7: return 4;
        case 8: return 5;
        default: return -1;
    }
}

DialogChoice parseDialogChoice(Context& c, const std::string& kind, const std::vector<std::string>& parts) {
    DialogChoice d;
    if (kind == "combo") {
        d.type = 3;
        if (parts.size() != 2) throw UsageError{"combo takes CODE[+CODE…]"};
        for (const std::string& code : split(parts[1], '+')) {
            const std::int64_t v = parseInteger(code, "a combination key");
            if (!G_KB_SuperKeyCodeMap.contains(static_cast<int>(v))) throw UsageError{"no key code " + code + " on the QX9"};
            d.keys.push_back(v);
        }
        if (d.keys.empty()) throw UsageError{"combo needs at least one key code"};
    } else if (kind == "macro") {
        d.type = 4;
        if (parts.size() < 2 || parts.size() > 4) throw UsageError{"macro takes ID[:once|:repeat:N|:toggle]"};
        const std::int64_t id = parseInteger(parts[1], "the macro");
        std::vector<MacroInfo> macros;
        c.session->core.db()->queryAllMacroData(macros);
        d.function = -1;
        for (std::size_t i = 0; i < macros.size(); ++i) {
            if (macros[i].macroId == id) d.function = static_cast<int>(i);
        }
        if (d.function < 0) throw UsageError{"no macro " + parts[1]};
        const std::string mode = parts.size() > 2 ? parts[2] : "once";
        if (mode == "once" && parts.size() <= 3) d.playType = 0;
        else if (mode == "toggle" && parts.size() == 3) d.playType = 2;
        else if (mode == "repeat" && parts.size() == 4) {
            d.playType = 1;
            d.playCount = std::to_string(inRange(parts[3], "the play count", 1, 255));
        } else throw UsageError{"macro takes ID[:once|:repeat:N|:toggle]"};
    } else {
        const std::int64_t hi = kind == "mouse" ? 8 : kind == "media" ? 7 : 6;
        d.type = kind == "mouse" ? 6 : kind == "media" ? 7 : 8;
        if (parts.size() != 2) throw UsageError{kind + " takes one number, 1-" + std::to_string(hi)};
        d.function = static_cast<int>(inRange(parts[1], kind, 1, hi)) - 1;
    }
    return d;
}

void runDialog(Context& c, const DialogChoice& d) {
    KeyPage& keys = c.session->keys;
    keys.MenuItemMouseUpAction(KeyPage::kMenuCustom);
    {
        CustomKeyDialog dialog(*c.session);
        dialog.viewDidAppear();
        dialog.selectFunctionType(typeIndex(d.type));
        if (d.type == 3) {
            dialog.fillBindInput(d.keys);
        } else {
            dialog.selectFunction(d.function);
            if (d.type == 4) {
                dialog.selectMacroPlayType(d.playType);
                dialog.setPlayCountText(d.playCount);
            }
        }
        dialog.savekeyfunc_action();
    }
    keys.customKeywindowCloseDid();  // the window closed: the page shows and sends the keys again
}

void keySet(Context& c, const std::vector<std::string>& args) {
    if (args.size() != 5) throw UsageError{"usage: qx9ctl key set PROFILE LAYER KEY FUNCTION"};
    openSession(c);
    const std::int64_t profile = parseProfile(c, args[1]);
    const std::int64_t layer = parseLayer(args[2]);
    const std::string key = parseKey(args[3]);
    const std::vector<std::string> parts = split(args[4], ':');
    const std::string kind = parts.empty() ? "" : parts[0];

    // Check the function completely before anything changes.
    enum { Menu, Palette, Dialog } route;
    int menu = 0;
    std::int64_t paletteCode = 0;
    DialogChoice dialog;
    if ((kind == "default" || kind == "disable") && parts.size() == 1) {
        route = Menu;
        menu = kind == "default" ? KeyPage::kMenuDefault : KeyPage::kMenuDisable;
    } else if (kind == "key" && parts.size() == 2) {
        route = Palette;
        paletteCode = parseInteger(parts[1], "the key code");
        if (!CustomKeyFuncCodeMap().contains(static_cast<int>(paletteCode))) {
            throw UsageError{"no function " + parts[1] + " in the key palette"};
        }
    } else if (kind == "combo" || kind == "macro" || kind == "mouse" || kind == "media" || kind == "mac") {
        route = Dialog;
        dialog = parseDialogChoice(c, kind, parts);
    } else {
        throw UsageError{"unknown function \"" + args[4] + "\""};
    }

    // The window's state for that profile and layer (choosing them sends nothing by itself).
    SessionCore& core = c.session->core;
    core.currentProfile = core.currentKBProfile = profile;
    c.session->keys.selectButtonAction(layer);
    c.session->keys.keyboardKeyAction(key);
    c.sends = true;
    switch (route) {
        case Menu: c.session->keys.MenuItemMouseUpAction(menu); break;
        case Palette: c.session->keys.customKeyFuncAction(paletteCode); break;
        case Dialog: runDialog(c, dialog); break;
    }
}

void keyList(Context& c, const std::vector<std::string>& args) {
    if (args.size() != 3) throw UsageError{"usage: qx9ctl key list PROFILE LAYER"};
    openSession(c);
    const std::int64_t profile = parseProfile(c, args[1]);
    const std::int64_t layer = parseLayer(args[2]);
    std::vector<ProfileKey> records;
    c.session->core.db()->queryKeysProfile(profile, layer, records);
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
    if (args.empty()) throw UsageError{"usage: qx9ctl key list PROFILE LAYER | key set PROFILE LAYER KEY FUNCTION"};
    if (args[0] == "list") return keyList(c, args);
    if (args[0] == "set") return keySet(c, args);
    throw UsageError{"unknown key command " + args[0]};
}

}  // namespace qx9::ctl
