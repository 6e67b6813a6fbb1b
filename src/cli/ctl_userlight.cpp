// qx9ctl userlight: the per-key color sets.
#include "cli/ctl_context.h"
#include "cli/ctl_grammar.h"
#include "ops/settings.h"
#include "ops/user_lights.h"

namespace qx9::ctl {

namespace {

std::vector<UserLightData> sets(Context& c) {
    std::vector<UserLightData> list;
    c.database().getUserLightData(ops::kSettingsProfile, list);
    return list;
}

// The row of an existing set.
std::size_t setRow(const std::vector<UserLightData>& list, std::int64_t id) {
    for (std::size_t i = 0; i < list.size(); ++i) {
        if (list[i].userlight_id == id) return i;
    }
    throw UsageError{"no user light " + std::to_string(id) + " (see: qx9ctl userlight list)"};
}

std::int64_t existingSet(Context& c, const CLI::App& a) {
    const std::vector<UserLightData> list = sets(c);
    return list[setRow(list, number(a, "ID"))].userlight_id;
}

// The sets (or one, by id) as `userlight list` prints them.
Table setTable(Context& c, std::int64_t id = 0) {
    Table table({"id", "name"});
    for (const UserLightData& s : sets(c)) {
        if (id == 0 || s.userlight_id == id) table.add({s.userlight_id, s.userlight_name});
    }
    return table;
}

// The painted keys of a set, as `userlight show` prints them.
Table colorTable(Context& c, std::int64_t set) {
    const std::vector<std::uint32_t> colors = ops::setColours(c.database(), set);
    Table table({"key", "code", "color"});
    for (const KeyData& k : ops::paintableKeys()) {
        const std::uint32_t v = colors[static_cast<std::size_t>(k.index)];
        char hex[8];
        std::snprintf(hex, sizeof hex, "%06X", v & 0xFFFFFFu);
        if (v != 0) table.add({k.keyname, k.keycode, hex});
    }
    return table;
}

}  // namespace

void addUserLightCommands(Grammar& g) {
    CLI::App* group = g.command(&g.root(), "userlight",
                                "list | add | rename ID NAME | delete ID | paint ID KEY... --color RRGGBB | apply ID |\n"
                                "       reset ID | show ID",
                                "Per-key color sets");
    const auto withId = [&g, group](const char* name, const char* synopsis, const char* about) {
        return g.commandWithId(group, name, synopsis, about, "The set", Source::kSets);
    };
    g.action(g.command(group, "list", "", "The sets"), [](Context& c, const CLI::App&) { setTable(c).print(c.out, c.format()); });
    g.action(g.command(group, "add", "", "Add a set"), [](Context& c, const CLI::App&) {
        std::string name;
        std::int64_t id = 0;
        const ops::Target target = c.target();  // the new set is shown, which sends it
        check(ops::addUserLight(target, name, id));
        check(ops::showUserLight(target, id));
        printRecord(c, setTable(c, id), true);
    });
    CLI::App* rename = withId("rename", "ID NAME", "Rename a set");
    g.argument(rename, "NAME", "The new name", {});
    g.action(rename, [](Context& c, const CLI::App& a) {
        const std::int64_t set = existingSet(c, a);
        check(ops::renameUserLight({c.database()}, set, text(a, "NAME")));
        printRecord(c, setTable(c, set));
    });
    g.action(withId("delete", "ID", "Delete a set"), [](Context& c, const CLI::App& a) {
        const std::vector<UserLightData> before = sets(c);
        const std::size_t row = setRow(before, number(a, "ID"));
        const Table deleted = setTable(c, before[row].userlight_id);
        check(ops::deleteUserLight({c.database()}, before[row].userlight_id));
        // The set that takes the deleted one's row is shown, which sends it, as in the window.
        if (row + 1 < before.size()) check(ops::showUserLight(c.target(), before[row + 1].userlight_id));
        printRecord(c, deleted);
    });
    CLI::App* paint = withId("paint", "ID KEY... --color RRGGBB", "Color keys of a set");
    g.argument(paint, "KEY", "Keys of the on-screen keyboard, by name or code", keyReader(true), {Source::kPaintableKeys, {}})
        ->expected(1, INT32_MAX)->allow_extra_args();
    g.argument(paint, "--color", "RRGGBB in hex (000000 turns the keys off)", colorReader())->type_name("RRGGBB");
    g.action(paint, [](Context& c, const CLI::App& a) {
        const std::int64_t set = existingSet(c, a);
        check(ops::paintKeys(c.target(), set, a["KEY"]->as<std::vector<std::int64_t>>(),
                             static_cast<std::uint32_t>(*parseNumber("0x" + text(a, "--color")))));
        printResult(c, colorTable(c, set));
    });
    g.action(withId("apply", "ID", "Send a set to the keyboard"), [](Context& c, const CLI::App& a) {
        const std::int64_t set = existingSet(c, a);
        // The set stored again as it is, and sent.
        check(ops::changeUserLight(c.target(), set, [](std::vector<std::uint32_t>&) { return ops::Outcome::done(); },
                                   {"set-colours", {std::to_string(set)}}));
        printResult(c, colorTable(c, set));
    });
    g.action(withId("reset", "ID", "Every key of a set back to its default color"), [](Context& c, const CLI::App& a) {
        const std::int64_t set = existingSet(c, a);
        check(ops::resetUserLight(c.target(), set));
        printResult(c, colorTable(c, set));
    });
    g.action(withId("show", "ID", "The colors of a set's painted keys"),
             [](Context& c, const CLI::App& a) { colorTable(c, existingSet(c, a)).print(c.out, c.format()); });
}

}  // namespace qx9::ctl
