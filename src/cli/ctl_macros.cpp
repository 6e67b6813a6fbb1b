// qx9ctl macro …: the macro list, the event editor and the delay mode.
#include <algorithm>

#include "cli/ctl_context.h"
#include "cli/ctl_grammar.h"
#include "ops/macros.h"

namespace qx9::ctl {

namespace {

const std::vector<std::string> kButtons = {"left", "middle", "right"};  // in the order of their numbers

// Event `n` of the events as stored when the change is made; refused when there is none.
ops::Outcome eventIndex(const std::vector<ops::RecordRow>& events, std::int64_t n) {
    const auto count = static_cast<std::int64_t>(events.size());
    if (n >= 0 && n < count) return ops::Outcome::done();
    return ops::Outcome::refused(ops::Reason::kNoEvent, {std::to_string(n), std::to_string(count)});
}

// A delay in ms as the macro page takes it.
std::string readDelay(const std::string& kind, std::string ms) {
    const std::string error = numberIn(0, ops::kMaxTypedDelay)(ms);
    if (!error.empty()) throw CLI::ValidationError(kind + ": " + error + " (ms)");
    return ms;
}

// EVENT read as key:CODE, mouse:BUTTON or delay:MS.
std::string readEvent(std::string& event) {
    const std::size_t colon = event.find(':');
    const std::string kind = asciiLower(event.substr(0, colon));
    std::string value = colon == std::string::npos ? "" : event.substr(colon + 1);
    if (kind == "key" && colon != std::string::npos) {
        const std::optional<std::int64_t> code = keyCode(value);
        if (!code) return "no key \"" + value + "\" on the QX9 (see: qx9ctl key names)";
        if (!ops::keyPressEvents(*code)) return "the key \"" + value + "\" cannot be part of a macro";
        event = "key:" + std::to_string(*code);
    } else if (kind == "mouse" && colon != std::string::npos) {
        const std::string error = oneOf(kButtons)(value);
        if (!error.empty()) return "mouse: " + error;
        event = "mouse:" + value;
    } else if (kind == "delay" && colon != std::string::npos) {
        event = "delay:" + readDelay(kind, value);
    } else {
        return "\"" + event + "\" is not an event: key:NAME, mouse:left|middle|right or delay:MS";
    }
    return "";
}

std::vector<ops::RecordRow> events(const std::string& event) {
    const std::string value = event.substr(event.find(':') + 1);
    if (event.starts_with("key:")) return *ops::keyPressEvents(*parseNumber(value));
    if (event.starts_with("mouse:")) {
        return ops::mouseClickEvents(static_cast<int>(std::find(kButtons.begin(), kButtons.end(), value) - kButtons.begin()));
    }
    return ops::delayEvents(*parseNumber(value));
}

// MODE read as record, none or default:MS.
std::string readDelayMode(std::string& mode) {
    const std::string kind = asciiLower(mode.substr(0, mode.find(':')));
    if ((kind == "record" || kind == "none") && kind.size() == mode.size()) mode = kind;
    else if (kind == "default" && mode.size() > kind.size()) mode = "default:" + readDelay(kind, mode.substr(kind.size() + 1));
    else return "\"" + mode + "\" is not record, none or default:MS";
    return "";
}

std::string delayModeText(const MacroInfo& m) {
    switch (m.delayType) {
        case ops::kRecordingDelay: return "record";
        case ops::kNoDelay: return "none";
        case ops::kDefaultDelay: return "default:" + std::to_string(m.delayTime);
        default: return std::to_string(m.delayType);
    }
}

// The macros (or one, by id) as `macro list` prints them.
Table macros(Context& c, std::int64_t id = 0) {
    DeviceSQLite& db = c.database();
    std::vector<MacroInfo> stored;
    db.queryAllMacroData(stored);
    Table table({"id", "name", "events", "delay"});
    for (const MacroInfo& m : stored) {
        if (id == 0 || m.macroId == id) table.add({m.macroId, m.macroName, ops::storedEvents(db, m.macroId).size(), delayModeText(m)});
    }
    return table;
}

Table eventTable(Context& c, std::int64_t macro) {
    Table table({"index", "type", "value", "text"});
    const std::vector<ops::RecordRow> rows = ops::storedEvents(c.database(), macro);
    for (std::size_t i = 0; i < rows.size(); ++i) table.add({i, rows[i].type, rows[i].value, ops::recordListText(rows[i])});
    return table;
}

void insert(Context& c, const CLI::App& a) {
    const std::int64_t macro = existingMacro(c, number(a, "ID"));
    const std::vector<ops::RecordRow> added = events(text(a, "EVENT"));
    const bool after = given(a, "--after");
    std::optional<std::int64_t> selected;  // none: the new events go to the end
    if (after || given(a, "--before")) selected = number(a, after ? "--after" : "--before");
    // Inserted into the events as they are stored when the change is made.
    check(ops::changeEvents(c.target(), macro, [&](std::vector<ops::RecordRow>& events) {
        if (selected) {
            if (ops::Outcome o = eventIndex(events, *selected); !o) return o;
        }
        ops::insertEvents(events, selected ? std::optional<std::size_t>(static_cast<std::size_t>(*selected)) : std::nullopt,
                          after, added);
        return ops::Outcome::done();
    }));
    printResult(c, eventTable(c, macro));
}

void deleteEvent(Context& c, const CLI::App& a) {
    const std::int64_t macro = existingMacro(c, number(a, "ID"));
    const std::int64_t n = number(a, "N");
    check(ops::changeEvents(c.target(), macro, [&](std::vector<ops::RecordRow>& events) {
        if (ops::Outcome o = eventIndex(events, n); !o) return o;
        ops::deleteEventWithPartner(events, static_cast<std::size_t>(n));
        return ops::Outcome::done();
    }));
    printResult(c, eventTable(c, macro));
}

// delay-mode ID MODE, save ID: the stored events stored again with the delay mode, every macro sent.
void save(Context& c, const CLI::App& a) {
    const std::int64_t macro = existingMacro(c, number(a, "ID"));
    std::int64_t delayType = ops::kKeepDelayMode, delayTime = 0;  // save: the mode as stored
    if (a.get_name() == "delay-mode") {
        const std::string mode = text(a, "MODE");
        delayType = mode == "record" ? ops::kRecordingDelay : mode == "none" ? ops::kNoDelay : ops::kDefaultDelay;
        if (delayType == ops::kDefaultDelay) delayTime = *parseNumber(mode.substr(8));
    }
    check(ops::saveMacro(c.target(), macro, nullptr, delayType, delayTime));
    printRecord(c, macros(c, macro));
}

}  // namespace

void addMacroCommands(Grammar& g) {
    CLI::App* group = g.command(&g.root(), "macro",
                                "list | add | rename ID NAME | delete ID | events ID | delete-event ID N | save ID |\n"
                                "       insert ID EVENT [--before N|--after N] | delay-mode ID record|none|default:MS",
                                "Macros");
    const auto withId = [&g, group](const char* name, const char* synopsis, const char* about) {
        return g.commandWithId(group, name, synopsis, about, "The macro", Source::kMacros);
    };
    g.action(g.command(group, "list", "", "The macros"), [](Context& c, const CLI::App&) { macros(c).print(c.out, c.format()); });
    g.action(g.command(group, "add", "", "Add an empty macro"), [](Context& c, const CLI::App&) {
        std::string name;
        std::int64_t id = 0;
        check(ops::addMacro({c.database()}, name, id));
        Table added({"id", "name"});
        added.add({id, name});
        printRecord(c, added, true);
    });
    CLI::App* rename = withId("rename", "ID NAME", "Rename a macro");
    g.argument(rename, "NAME", "The new name", {});
    g.action(rename, [](Context& c, const CLI::App& a) {
        const std::int64_t id = existingMacro(c, number(a, "ID"));
        check(ops::renameMacro({c.database()}, id, text(a, "NAME")));
        printRecord(c, macros(c, id));
    });
    g.action(withId("delete", "ID", "Delete a macro and its events (keys bound to it keep their binding)"),
             [](Context& c, const CLI::App& a) {
                 const std::int64_t id = existingMacro(c, number(a, "ID"));
                 const Table deleted = macros(c, id);
                 check(ops::deleteMacro({c.database()}, id));  // nothing is sent, as in the window
                 printRecord(c, deleted);
             });
    g.action(withId("events", "ID", "A macro's events"),
             [](Context& c, const CLI::App& a) { eventTable(c, existingMacro(c, number(a, "ID"))).print(c.out, c.format()); });
    CLI::App* insertEvent = withId("insert", "ID key:NAME|mouse:left|middle|right|delay:MS [--before N|--after N]",
                                   "Insert an event (at the end unless --before or --after)");
    g.argument(insertEvent, "EVENT", "key:NAME, mouse:left|middle|right or delay:MS", readEvent, {Source::kEvent, {}});
    CLI::Option* before = g.argument(insertEvent, "--before", "Before event N", numberIn(0, INT64_MAX))->required(false)->type_name("N");
    g.argument(insertEvent, "--after", "After event N", numberIn(0, INT64_MAX))->required(false)->type_name("N")->excludes(before);
    g.action(insertEvent, insert);
    CLI::App* remove = withId("delete-event", "ID N", "Delete event N of a macro (and its key up or key down)");
    g.argument(remove, "N", "The event (see: qx9ctl macro events ID)", numberIn(0, INT64_MAX));
    g.action(remove, deleteEvent);
    g.action(withId("save", "ID", "Store a macro again and send all macros to the keyboard"), save);
    CLI::App* delayMode = withId("delay-mode", "ID record|none|default:MS", "The delays a macro keeps");
    g.argument(delayMode, "MODE", "record, none or default:MS", readDelayMode, {Source::kWords, {"record", "none", "default:"}});
    g.action(delayMode, save);
}

}  // namespace qx9::ctl
