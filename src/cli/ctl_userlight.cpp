// qx9ctl userlight: the per-key lighting sets of the user-light page.
#include <cctype>
#include <charconv>
#include <cstdio>

#include "cli/ctl_context.h"
#include "cli/ctl_output.h"
#include "hid/capture_state.h"
#include "layout/key_maps.h"

namespace qx9::ctl {

namespace {

const char* const kUsage =
    "usage: qx9ctl userlight list | add | delete ID | paint ID KEY... --color RRGGBB | apply ID | reset ID | show ID";

std::string hexColour(std::uint32_t v) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%06X", v & 0xFFFFFFu);
    return buf;
}

// The row of an existing set.
int setRow(Context& c, const std::string& text) {
    const std::int64_t id = parseInteger(text, "the user light");
    const auto& rows = c.session->userLights.userlight_datas();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].light == id) return static_cast<int>(i);
    }
    throw UsageError{"no user light " + text + " (see: qx9ctl userlight list)"};
}

// A key of the on-screen keyboard, by name or code: its layout position.
std::size_t parseKey(Context& c, const std::string& text) {
    std::int64_t code = -1;
    if (const KeyNameEntry* e = G_KB_SuperKeyNameMap.find(text)) {
        code = e->key_code;
    } else if (!text.empty() && std::isdigit(static_cast<unsigned char>(text[0]))) {
        code = parseInteger(text, "the key");
    }
    for (const KeyData& k : c.session->keys.keys()) {
        if (k.keycode == code) return static_cast<std::size_t>(k.index);
    }
    throw UsageError{"no key \"" + text + "\" on the QX9 (a key name such as a, escape, leftWin, or a key code)"};
}

std::uint32_t parseColour(const std::string& text) {
    std::string_view hex = text;
    if (!hex.empty() && hex.front() == '#') hex.remove_prefix(1);
    std::uint32_t v = 0;
    const auto [ptr, ec] = std::from_chars(hex.data(), hex.data() + hex.size(), v, 16);
    if (hex.size() != 6 || ec != std::errc() || ptr != hex.data() + hex.size()) {
        throw UsageError{"the colour is RRGGBB in hex (FF8000), not \"" + text + "\""};
    }
    return v;
}

// Loads a set as choosing its row does, without sending it: the command's own transaction
// follows.
void loadQuietly(Context& c, int row) {
    SessionCore& core = c.session->core;
    const bool wasMuted = core.muted;
    core.muted = true;
    c.session->userLights.userLightTableSelectionChanged(row);
    core.muted = wasMuted;
}

void expectArgs(const std::vector<std::string>& args, std::size_t n) {
    if (args.size() != n) throw UsageError{kUsage};
}

void printSet(Context& c, std::int64_t id, const std::string& name) {
    Table table({"id", "name"});
    table.add({std::to_string(id), name});
    table.print(c.out, c.options.json);
}

}  // namespace

void cmdUserLight(Context& c, const std::vector<std::string>& args) {
    if (args.empty()) throw UsageError{kUsage};
    const std::string& verb = args[0];
    UserLightPage* page = nullptr;
    auto open = [&] {
        openSession(c);
        page = &c.session->userLights;
    };
    if (verb == "list") {
        expectArgs(args, 1);
        open();
        Table table({"id", "name"});
        for (const UserLightRow& r : page->userlight_datas()) table.add({std::to_string(r.light), r.name});
        table.print(c.out, c.options.json);
    } else if (verb == "add") {
        expectArgs(args, 1);
        open();
        const std::size_t before = page->userlight_datas().size();
        c.sends = true;  // the new set is loaded, which sends it
        page->addUserLight();
        if (page->userlight_datas().size() == before) throw UsageError{"the database refused the new user light"};
        printSet(c, page->userlight_datas().back().light, page->userlight_datas().back().name);
    } else if (verb == "delete") {
        expectArgs(args, 2);
        open();
        const int row = setRow(c, args[1]);
        page->setUserLightTableSelect(row);
        // The set in the deleted one's row is loaded and sent, as in the window.
        c.sends = row + 1 < static_cast<int>(page->userlight_datas().size());
        page->delUserLight();
    } else if (verb == "paint") {
        // paint ID KEY… --color RRGGBB: the keys take the colour, then Apply.
        std::vector<std::string> keys;
        std::optional<std::string> colour;
        for (std::size_t i = 2; i < args.size(); ++i) {
            if (args[i] == "--color" || args[i] == "--colour") {
                if (i + 1 >= args.size()) throw UsageError{"--color needs RRGGBB"};
                if (colour) throw UsageError{"one --color per paint"};
                colour = args[++i];
            } else {
                keys.push_back(args[i]);
            }
        }
        if (args.size() < 2 || keys.empty() || !colour) throw UsageError{"usage: qx9ctl userlight paint ID KEY... --color RRGGBB"};
        const std::uint32_t rgb = parseColour(*colour);
        open();
        const int row = setRow(c, args[1]);
        std::vector<std::size_t> positions;
        for (const std::string& k : keys) positions.push_back(parseKey(c, k));
        loadQuietly(c, row);
        // Click the first key, Shift-click the others, choose the colour in the colour panel.
        const auto centre = [&](std::size_t p) {
            const Rect& r = c.session->keys.keys()[p].rect;
            return ViewPoint{r.x + r.width / 2, r.y + r.height / 2};
        };
        const std::int64_t shift = shiftKeyStatus;
        for (std::size_t i = 0; i < positions.size(); ++i) {
            shiftKeyStatus = i == 0 ? 0 : 1;
            page->mouseDown(centre(positions[i]));
            page->mouseUp();
        }
        shiftKeyStatus = shift;
        page->userLightColorPanel(lightColorOf(static_cast<std::uint8_t>(rgb >> 16), static_cast<std::uint8_t>(rgb >> 8),
                                               static_cast<std::uint8_t>(rgb)));
        c.sends = true;
        page->applyUserLightKeyColor();
    } else if (verb == "apply" || verb == "reset") {
        expectArgs(args, 2);
        open();
        const int row = setRow(c, args[1]);
        loadQuietly(c, row);
        c.sends = true;
        if (verb == "apply") page->applyUserLightKeyColor();
        else page->resetUserLightKeyColor();
    } else if (verb == "show") {
        expectArgs(args, 2);
        open();
        loadQuietly(c, setRow(c, args[1]));
        Table table({"key", "code", "colour"});
        for (const KeyData& k : c.session->keys.keys()) {
            const std::uint32_t v = page->keyColours()[static_cast<std::size_t>(k.index)];
            if (v != 0) table.add({k.keyname, std::to_string(k.keycode), hexColour(v)});
        }
        table.print(c.out, c.options.json);
    } else {
        throw UsageError{"unknown userlight command " + verb};
    }
}

}  // namespace qx9::ctl
