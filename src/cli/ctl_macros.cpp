// qx9ctl macro …: the macro list, the event editor and the delay mode.
#include "cli/ctl_context.h"
#include "cli/ctl_output.h"
#include "ops/macros.h"

namespace qx9::ctl {

namespace {

const char* const kMacroUsage =
    "usage: qx9ctl macro list | add | rename ID NAME | delete ID | events ID | "
    "insert ID key:NAME|mouse:left|middle|right|delay:MS [--before N|--after N] | delete-event ID N | "
    "delay-mode ID record|none|default:MS | save ID";

std::int64_t parseMacro(Context& c, const std::string& text) {
    const std::int64_t id = parseInteger(text, "the macro");
    if (!ops::macroExists(c.database(), id)) throw UsageError{"no macro " + text + " (see: qx9ctl macro list)"};
    return id;
}

// Event `n` of the events as stored when the change is made; refused when there is none.
ops::Outcome eventIndex(const std::vector<ops::RecordRow>& events, std::int64_t n) {
    const auto count = static_cast<std::int64_t>(events.size());
    if (n >= 0 && n < count) return ops::Outcome::done();
    return ops::Outcome::refused(ops::Reason::kNoEvent, {std::to_string(n), std::to_string(count)});
}

std::int64_t parseDelay(const std::string& text) {
    const std::int64_t ms = parseInteger(text, "the delay");
    if (ms < 0 || ms > ops::kMaxTypedDelay) {
        throw UsageError{"the delay is 0-" + std::to_string(ops::kMaxTypedDelay) + " ms, not " + text};
    }
    return ms;
}

std::string delayModeText(const MacroInfo& m) {
    switch (m.delayType) {
        case ops::kRecordingDelay: return "record";
        case ops::kNoDelay: return "none";
        case ops::kDefaultDelay: return "default:" + std::to_string(m.delayTime);
        default: return std::to_string(m.delayType);
    }
}

// The events an EVENT argument names.
std::vector<ops::RecordRow> parseEventKind(const std::string& event) {
    const std::size_t colon = event.find(':');
    const std::string kind = event.substr(0, colon);
    const std::string value = colon == std::string::npos ? "" : event.substr(colon + 1);
    if (kind == "key" && !value.empty()) {
        const std::int64_t code = parseKeyCode(value, "leftShift");
        if (auto events = ops::keyPressEvents(code)) return *events;
        throw UsageError{"no key \"" + value + "\" on the QX9 (a key name such as a, escape, leftShift, or a key code)"};
    }
    if (kind == "mouse") {
        const int button = value == "left" ? 0 : value == "middle" ? 1 : value == "right" ? 2 : -1;
        if (button < 0) throw UsageError{"mouse takes left, middle or right, not \"" + value + "\""};
        return ops::mouseClickEvents(button);
    }
    if (kind == "delay" && !value.empty()) return ops::delayEvents(parseDelay(value));
    throw UsageError{"unknown event \"" + event + "\" (key:NAME, mouse:left|middle|right or delay:MS)"};
}

void macroList(Context& c) {
    DeviceSQLite& db = c.database();
    std::vector<MacroInfo> macros;
    db.queryAllMacroData(macros);
    Table table({"id", "name", "events", "delay"});
    for (const MacroInfo& m : macros) {
        table.add({std::to_string(m.macroId), m.macroName, std::to_string(ops::storedEvents(db, m.macroId).size()),
                   delayModeText(m)});
    }
    table.print(c.out, c.options.json);
}

void macroEvents(Context& c, std::int64_t macro) {
    Table table({"index", "type", "value", "text"});
    const std::vector<ops::RecordRow> rows = ops::storedEvents(c.database(), macro);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        table.add({std::to_string(i), std::to_string(rows[i].type), std::to_string(rows[i].value), ops::recordListText(rows[i])});
    }
    table.print(c.out, c.options.json);
}

// insert ID EVENT [--before N|--after N]
void macroInsert(Context& c, const std::vector<std::string>& args) {
    const char* const usage = "usage: qx9ctl macro insert ID key:NAME|mouse:left|middle|right|delay:MS [--before N|--after N]";
    if (args.size() != 3 && args.size() != 5) throw usageError(usage);
    const std::int64_t macro = parseMacro(c, args[1]);
    const std::vector<ops::RecordRow> added = parseEventKind(args[2]);
    std::optional<std::int64_t> selected;  // none: the new events go to the end
    bool after = false;
    if (args.size() == 5) {
        if (args[3] != "--before" && args[3] != "--after") throw usageError(usage);
        after = args[3] == "--after";
        selected = parseInteger(args[4], "the event");
    }
    // Inserted into the events as they are stored when the change is made.
    check(ops::changeEvents(c.target(), macro, [&](std::vector<ops::RecordRow>& events) {
        if (selected) {
            if (ops::Outcome o = eventIndex(events, *selected); !o) return o;
        }
        ops::insertEvents(events, selected ? std::optional<std::size_t>(static_cast<std::size_t>(*selected)) : std::nullopt,
                          after, added);
        return ops::Outcome::done();
    }));
}

}  // namespace

void cmdMacro(Context& c, const std::vector<std::string>& args) {
    if (args.empty()) throw usageError(kMacroUsage);
    const std::string& verb = args[0];
    const auto expect = [&](std::size_t n, const char* usage) { expectArgs(args, n, std::string("macro ") + usage); };
    if (verb == "list") {
        expect(1, "list");
        macroList(c);
    } else if (verb == "add") {
        expect(1, "add");
        std::string name;
        std::int64_t id = 0;
        check(ops::addMacro({c.database()}, name, id));
        printRecord(c, id, name);
    } else if (verb == "rename") {
        expect(3, "rename ID NAME");
        check(ops::renameMacro({c.database()}, parseMacro(c, args[1]), args[2]));
    } else if (verb == "delete") {
        expect(2, "delete ID");
        check(ops::deleteMacro({c.database()}, parseMacro(c, args[1])));  // nothing is sent, as in the window
    } else if (verb == "events") {
        expect(2, "events ID");
        macroEvents(c, parseMacro(c, args[1]));
    } else if (verb == "insert") {
        macroInsert(c, args);
    } else if (verb == "delete-event") {
        expect(3, "delete-event ID N");
        const std::int64_t macro = parseMacro(c, args[1]);
        const std::int64_t n = parseInteger(args[2], "the event");
        check(ops::changeEvents(c.target(), macro, [&](std::vector<ops::RecordRow>& events) {
            if (ops::Outcome o = eventIndex(events, n); !o) return o;
            ops::deleteEventWithPartner(events, static_cast<std::size_t>(n));
            return ops::Outcome::done();
        }));
    } else if (verb == "delay-mode" || verb == "save") {
        if (verb == "save") expect(2, "save ID");
        else expect(3, "delay-mode ID record|none|default:MS");
        const std::int64_t macro = parseMacro(c, args[1]);
        std::int64_t delayType = ops::kKeepDelayMode, delayTime = 0;  // save: the mode as stored
        if (verb == "delay-mode") {
            const std::string& mode = args[2];
            if (mode == "record") delayType = ops::kRecordingDelay;
            else if (mode == "none") delayType = ops::kNoDelay;
            else if (mode.rfind("default:", 0) == 0) {
                delayType = ops::kDefaultDelay;
                delayTime = parseDelay(mode.substr(8));
            } else {
                throw UsageError{"delay-mode takes record, none or default:MS, not \"" + mode + "\""};
            }
        }
        // The stored events, stored again with the delay mode, and every macro sent.
        check(ops::saveMacro(c.target(), macro, nullptr, delayType, delayTime));
    } else {
        throw usageError("unknown macro command " + verb);
    }
}

}  // namespace qx9::ctl
