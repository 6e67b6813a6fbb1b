// qx9ctl history, undo, redo: the steps of the change history the window shares.
#include <ctime>

#include "cli/ctl_context.h"
#include "cli/ctl_grammar.h"
#include "ops/history.h"

namespace qx9::ctl {

namespace {

// Local time as ISO 8601 ("2026-11-24T10:05:00").
std::string localTime(std::int64_t seconds) {
    const std::time_t t = static_cast<std::time_t>(seconds);
    std::tm local{};
    char text[32] = "";
    if (localtime_r(&t, &local)) std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%S", &local);
    return text;
}

Table stepTable() { return Table({"id", "state", "time", "step"}); }

void addStep(Table& table, const HistoryStep& e) {
    table.add({e.id, e.done ? "done" : "undone", localTime(e.time), ops::describe(e.name)});
}

void moveCommand(Grammar& g, const char* name, const char* help, ops::Outcome (*move)(const ops::Target&, HistoryStep&)) {
    g.action(g.command(&g.root(), name, "", help), [move](Context& c, const CLI::App&) {
        HistoryStep step;
        const ops::Outcome outcome = move(c.target(), step);
        Table record = stepTable();
        if (outcome || outcome.status == ops::Outcome::kNotSent || outcome.status == ops::Outcome::kTooLarge) {
            addStep(record, step);
        }
        if (!record.empty()) printRecord(c, record, true);
        check(outcome);
    });
}

}  // namespace

void addHistoryCommands(Grammar& g) {
    g.action(g.command(&g.root(), "history", "", "The changes that can be undone and redone, newest first"),
             [](Context& c, const CLI::App&) {
                 Table table = stepTable();
                 for (const HistoryStep& e : ops::history(c.database())) addStep(table, e);
                 table.print(c.out, c.format());
             });
    moveCommand(g, "undo", "Take back the newest change (the database and the keyboard)", ops::undo);
    moveCommand(g, "redo", "Make the change undone last again", ops::redo);
}

}  // namespace qx9::ctl
