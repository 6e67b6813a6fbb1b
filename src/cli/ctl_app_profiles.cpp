// qx9ctl app-profile: the automatic profiles' rules (the window's settings page edits the same
// file, and the window follows a change at once).
#include "cli/ctl_context.h"
#include "cli/ctl_grammar.h"
#include "ops/app_profiles.h"

namespace qx9::ctl {

namespace {

Table rulesTable(const std::vector<ops::AppProfileRule>& rules, const std::string& application = {},
                 const std::string& title = {}) {
    Table table({"application", "title", "profile"});
    for (const ops::AppProfileRule& r : rules) {
        if (application.empty() || (sameIgnoringCase(r.application, application) && sameIgnoringCase(r.title, title))) {
            table.add({r.application, r.title, r.profile});
        }
    }
    return table;
}

std::vector<ops::AppProfileRule> readRules(Context& c) {
    ops::AppProfileRules rules;
    check(ops::readAppProfiles(ops::appProfilesFile(), rules));
    for (const std::string& skipped : rules.skipped) c.err << "qx9ctl: " << ops::appProfilesFile().string() << ", " << skipped << " (skipped)\n";
    return rules.rules;
}

std::string title(const CLI::App& a) { return given(a, "--title") ? text(a, "--title") : std::string(); }

}  // namespace

void addAppProfileCommands(Grammar& g) {
    CLI::App* group = g.command(&g.root(), "app-profile", "list | set APP PROFILE_ID [--title TEXT] | remove APP [--title TEXT]",
                                "Automatic profiles: the profile the keyboard takes while an application is in front");
    g.action(g.command(group, "list", "", "The rules, in the order they are tried"),
             [](Context& c, const CLI::App&) { rulesTable(readRules(c)).print(c.out, c.format()); });
    CLI::App* set = g.command(group, "set", "APP PROFILE_ID [--title TEXT]",
                              "While APP (an application id or window class, any case) is in front, PROFILE_ID");
    g.argument(set, "APP", "The application id or window class", {});
    g.id(set, "PROFILE_ID", "The profile", Source::kProfiles);
    g.argument(set, "--title", "Only while the window title contains TEXT (any case)", {})->required(false)->type_name("TEXT");
    g.action(set, [](Context& c, const CLI::App& a) {
        const ops::AppProfileRule rule{text(a, "APP"), title(a), number(a, "PROFILE_ID")};
        check(ops::setAppProfile(ops::appProfilesFile(), c.database(), rule));
        printRecord(c, rulesTable(readRules(c), rule.application, rule.title));
    });
    CLI::App* remove = g.command(group, "remove", "APP [--title TEXT]", "Remove the rule of APP (and that title)");
    g.argument(remove, "APP", "The application id or window class", {});
    g.argument(remove, "--title", "The rule's title", {})->required(false)->type_name("TEXT");
    g.action(remove, [](Context& c, const CLI::App& a) {
        const Table removed = rulesTable(readRules(c), text(a, "APP"), title(a));
        check(ops::removeAppProfile(ops::appProfilesFile(), text(a, "APP"), title(a)));
        printRecord(c, removed);
    });
}

}  // namespace qx9::ctl
