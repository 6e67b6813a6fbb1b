// qx9ctl userlight: the per-key colour sets.
#include <charconv>
#include <cstdio>

#include "cli/ctl_context.h"
#include "cli/ctl_output.h"
#include "ops/settings.h"
#include "ops/user_lights.h"

namespace qx9::ctl {

namespace {

const char* const kUsage =
    "usage: qx9ctl userlight list | add | rename ID NAME | delete ID | paint ID KEY... --color RRGGBB | apply ID | reset ID | show ID";

std::string hexColour(std::uint32_t v) {
    char buf[8];
    std::snprintf(buf, sizeof buf, "%06X", v & 0xFFFFFFu);
    return buf;
}

std::vector<UserLightData> sets(Context& c) {
    std::vector<UserLightData> list;
    c.database().getUserLightData(ops::kSettingsProfile, list);
    return list;
}

// The row of an existing set.
std::size_t setRow(const std::vector<UserLightData>& list, const std::string& text) {
    const std::int64_t id = parseInteger(text, "the user light");
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i].userlight_id == id) return i;
    }
    throw UsageError{"no user light " + text + " (see: qx9ctl userlight list)"};
}

std::int64_t parseSet(Context& c, const std::string& text) {
    const std::vector<UserLightData> list = sets(c);
    return list[setRow(list, text)].userlight_id;
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

void paint(Context& c, const std::vector<std::string>& args) {
    // paint ID KEY… --color RRGGBB
    std::vector<std::int64_t> keys;
    std::optional<std::uint32_t> colour;
    for (std::size_t i = 2; i < args.size(); ++i) {
        if (args[i] == "--color" || args[i] == "--colour") {
            if (i + 1 >= args.size()) throw UsageError{"--color needs RRGGBB"};
            if (colour) throw UsageError{"one --color per paint"};
            colour = parseColour(args[++i]);
        } else {
            const std::int64_t code = parseKeyCode(args[i]);
            if (!ops::paintablePosition(code)) throw UsageError{"the key \"" + args[i] + "\" is not on the on-screen keyboard"};
            keys.push_back(code);
        }
    }
    if (args.size() < 2 || keys.empty() || !colour) throw usageError("usage: qx9ctl userlight paint ID KEY... --color RRGGBB");
    check(ops::paintKeys(c.target(), parseSet(c, args[1]), keys, *colour));
}

}  // namespace

void cmdUserLight(Context& c, const std::vector<std::string>& args) {
    if (args.empty()) throw usageError(kUsage);
    const std::string& verb = args[0];
    const auto expect = [&](std::size_t n) {
        if (args.size() != n) throw usageError(kUsage);
    };
    if (verb == "list") {
        expect(1);
        Table table({"id", "name"});
        for (const UserLightData& s : sets(c)) table.add({std::to_string(s.userlight_id), s.userlight_name});
        table.print(c.out, c.options.json);
    } else if (verb == "add") {
        expect(1);
        std::string name;
        std::int64_t id = 0;
        const ops::Target target = c.target();  // the new set is shown, which sends it
        check(ops::addUserLight(target, name, id));
        check(ops::showUserLight(target, id));
        printRecord(c, id, name);
    } else if (verb == "rename") {
        expect(3);
        check(ops::renameUserLight({c.database()}, parseSet(c, args[1]), args[2]));
    } else if (verb == "delete") {
        expect(2);
        const std::vector<UserLightData> before = sets(c);
        const std::size_t row = setRow(before, args[1]);
        check(ops::deleteUserLight({c.database()}, before[row].userlight_id));
        // The set that takes the deleted one's row is shown, which sends it, as in the window.
        if (row + 1 < before.size()) check(ops::showUserLight(c.target(), before[row + 1].userlight_id));
    } else if (verb == "paint") {
        paint(c, args);
    } else if (verb == "apply" || verb == "reset") {
        expect(2);
        const std::int64_t set = parseSet(c, args[1]);
        // The set stored again as it is, and sent.
        if (verb == "apply") check(ops::changeUserLight(c.target(), set, [](std::vector<std::uint32_t>&) { return ops::Outcome::done(); }));
        else check(ops::resetUserLight(c.target(), set));
    } else if (verb == "show") {
        expect(2);
        const std::vector<std::uint32_t> colours = ops::setColours(c.database(), parseSet(c, args[1]));
        Table table({"key", "code", "colour"});
        for (const KeyData& k : ops::paintableKeys()) {
            const std::uint32_t v = colours[static_cast<std::size_t>(k.index)];
            if (v != 0) table.add({k.keyname, std::to_string(k.keycode), hexColour(v)});
        }
        table.print(c.out, c.options.json);
    } else {
        throw usageError("unknown userlight command " + verb);
    }
}

}  // namespace qx9::ctl
