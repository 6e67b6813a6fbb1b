// qx9ctl macro …: the macro page's list, event editor and delay mode.
#include <cctype>

#include "cli/ctl_context.h"
#include "cli/ctl_output.h"
#include "hid/capture_state.h"
#include "layout/key_maps.h"

namespace qx9::ctl {

namespace {

const char* const kMacroUsage =
    "usage: qx9ctl macro list | add | rename ID NAME | delete ID | events ID |\n"
    "       insert ID key:NAME|mouse:left|middle|right|delay:MS [--before N|--after N] |\n"
    "       delete-event ID N | delay-mode ID record|none|default:MS | save ID";

constexpr std::int64_t kMaxTypedDelay = 60000;  // what the page's delay fields accept

void expectArgs(const std::vector<std::string>& args, std::size_t n, const std::string& usage) {
    if (args.size() != n) throw UsageError{"usage: qx9ctl macro " + usage};
}

// The row of an existing macro, which becomes the page's selected macro.
int selectMacro(Context& c, const std::string& text) {
    const std::int64_t id = parseInteger(text, "the macro");
    MacroPage& page = c.session->macros;
    const auto& rows = page.MacroListDatas();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        if (rows[i].macroid == id) {
            page.macroTableSelectionChanged(static_cast<int>(i));
            return static_cast<int>(i);
        }
    }
    throw UsageError{"no macro " + text + " (see: qx9ctl macro list)"};
}

// An event index of the selected macro.
int parseEvent(Context& c, const std::string& text) {
    const std::int64_t n = parseInteger(text, "the event");
    const auto count = static_cast<std::int64_t>(c.session->macros.RecordListDatas().size());
    if (n < 0 || n >= count) {
        throw UsageError{"no event " + text + " in this macro (it has " + std::to_string(count) +
                         (count == 1 ? " event)" : " events)")};
    }
    return static_cast<int>(n);
}

std::int64_t parseDelay(const std::string& text) {
    const std::int64_t ms = parseInteger(text, "the delay");
    if (ms < 0 || ms > kMaxTypedDelay) throw UsageError{"the delay is 0-60000 ms, not " + text};
    return ms;
}

// A key of the QX9 by name (a, escape, leftShift …) or code, as a code with a name to show.
std::int64_t parseMacroKey(const std::string& text) {
    int code = -1;
    if (const KeyNameEntry* e = G_KB_SuperKeyNameMap.find(text)) {
        code = e->key_code;
    } else if (!text.empty() && std::isdigit(static_cast<unsigned char>(text[0]))) {
        code = static_cast<int>(parseInteger(text, "the key"));
    }
    const KeyCodeEntry* key = G_KB_SuperKeyCodeMap.find(code);
    if (!key || key->full_name.empty()) {
        throw UsageError{"no key \"" + text + "\" on the QX9 (a key name such as a, escape, leftShift, or a key code)"};
    }
    return code;
}

std::string delayModeText(const MacroInfo& m) {
    switch (m.delayType) {
        case MacroPage::kRecordingDelay: return "record";
        case MacroPage::kNoDelay: return "none";
        case MacroPage::kDefaultDelay: return "default:" + std::to_string(m.delayTime);
        default: return std::to_string(m.delayType);
    }
}

void macroList(Context& c) {
    DeviceSQLite& db = *c.session->core.db();
    std::vector<MacroInfo> macros;
    db.queryAllMacroData(macros);
    Table table({"id", "name", "events", "delay"});
    for (const MacroInfo& m : macros) {
        std::vector<RecordInfo> events;
        db.queryMacroRecord(m.macroId, events);
        table.add({std::to_string(m.macroId), m.macroName, std::to_string(events.size()), delayModeText(m)});
    }
    table.print(c.out, c.options.json);
}

void macroEvents(Context& c) {
    Table table({"index", "type", "value", "text"});
    const auto& rows = c.session->macros.RecordListDatas();
    for (std::size_t i = 0; i < rows.size(); ++i) {
        table.add({std::to_string(i), std::to_string(rows[i].type), std::to_string(rows[i].value), recordListText(rows[i])});
    }
    table.print(c.out, c.options.json);
}

// qx9ctl macro insert ID EVENT [--before N|--after N]
void macroInsert(Context& c, const std::vector<std::string>& args) {
    const std::string usage = "insert ID key:NAME|mouse:left|middle|right|delay:MS [--before N|--after N]";
    if (args.size() != 3 && args.size() != 5) throw UsageError{"usage: qx9ctl macro " + usage};
    selectMacro(c, args[1]);

    // The event, checked completely first.
    const std::string& event = args[2];
    const std::size_t colon = event.find(':');
    const std::string kind = event.substr(0, colon);
    const std::string value = colon == std::string::npos ? "" : event.substr(colon + 1);
    std::int64_t key = 0, delay = 0;
    int button = 0;
    if (kind == "key" && !value.empty()) {
        key = parseMacroKey(value);
    } else if (kind == "mouse") {
        if (value == "left") button = 0;
        else if (value == "middle") button = 1;
        else if (value == "right") button = 2;
        else throw UsageError{"mouse takes left, middle or right, not \"" + value + "\""};
    } else if (kind == "delay" && !value.empty()) {
        delay = parseDelay(value);
    } else {
        throw UsageError{"unknown event \"" + event + "\" (key:NAME, mouse:left|middle|right or delay:MS)"};
    }
    int position = 0;  // "Insert Event Before"
    int selected = -1;  // no event selected: the new events go to the end
    if (args.size() == 5) {
        if (args[3] == "--before") position = 0;
        else if (args[3] == "--after") position = 1;
        else throw UsageError{"usage: qx9ctl macro " + usage};
        selected = parseEvent(c, args[4]);
    }

    MacroPage& page = c.session->macros;
    page.insertevent_combox_select(position);
    page.recordTableSelectionChanged(selected);
    if (kind == "key") {
        // The key is pressed and released while the keyboard kind waits for it.
        page.radio_action_keyboardevent();
        const std::int64_t now = systemMacroClock()();
        for (std::int64_t pressed : {1, 0}) {
            captureKeyValue(key, pressed, now);
            page.localKeyEvent();
        }
    } else if (kind == "mouse") {
        page.radio_action_mouseevent();
        page.mousevent_combox_select(button);
    } else {
        page.radio_action_delaytime();
        page.controlTextDidChange(kInsertEventEditTag, std::to_string(delay));
    }
    const std::size_t before = page.RecordListDatas().size();
    c.sends = true;
    page.button_action_insertevent();
    if (page.RecordListDatas().size() == before) throw UsageError{"nothing was inserted"};
}

}  // namespace

void cmdMacro(Context& c, const std::vector<std::string>& args) {
    if (args.empty()) throw UsageError{kMacroUsage};
    const std::string& verb = args[0];
    MacroPage* page = nullptr;
    auto open = [&] {
        openSession(c);
        page = &c.session->macros;
    };
    if (verb == "list") {
        expectArgs(args, 1, "list");
        open();
        macroList(c);
    } else if (verb == "add") {
        expectArgs(args, 1, "add");
        open();
        const std::size_t before = page->MacroListDatas().size();
        page->button_action_addmacro();
        if (page->MacroListDatas().size() == before) throw UsageError{"the database refused the new macro"};
        Table table({"id", "name"});
        table.add({std::to_string(page->MacroListDatas().back().macroid), page->MacroListDatas().back().text});
        table.print(c.out, c.options.json);
    } else if (verb == "rename") {
        expectArgs(args, 3, "rename ID NAME");
        open();
        const int row = selectMacro(c, args[1]);
        if (args[2].empty()) throw UsageError{"a macro name cannot be empty"};
        page->macroTableSetObjectValue(row, args[2]);
    } else if (verb == "delete") {
        expectArgs(args, 2, "delete ID");
        open();
        selectMacro(c, args[1]);
        page->button_action_delmacro();  // nothing is sent, as in the window
    } else if (verb == "events") {
        expectArgs(args, 2, "events ID");
        open();
        selectMacro(c, args[1]);
        macroEvents(c);
    } else if (verb == "insert") {
        open();
        macroInsert(c, args);
    } else if (verb == "delete-event") {
        expectArgs(args, 3, "delete-event ID N");
        open();
        selectMacro(c, args[1]);
        page->recordTableSelectionChanged(parseEvent(c, args[2]));
        c.sends = true;
        // As in the window, the keyboard is written from the store before the deletion is
        // stored; it gets the shorter list with the next save.
        page->button_action_delrecord();
        page->SaveMacroRecordDataToDB();
        c.err << "qx9ctl: stored; the keyboard keeps the deleted events until: qx9ctl macro save " << args[1] << '\n';
    } else if (verb == "delay-mode") {
        expectArgs(args, 3, "delay-mode ID record|none|default:MS");
        const std::string& mode = args[2];
        std::int64_t ms = 0;
        if (mode.rfind("default:", 0) == 0) ms = parseDelay(mode.substr(8));
        else if (mode != "record" && mode != "none") throw UsageError{"delay-mode takes record, none or default:MS, not \"" + mode + "\""};
        open();
        selectMacro(c, args[1]);
        if (mode == "record") page->radio_action_autodelaytime();
        else if (mode == "none") page->radio_action_nodelaytime();
        else {
            page->radio_action_defaultdelaytime();
            page->controlTextDidChange(kDelayTimeEditTag, std::to_string(ms));
        }
        c.sends = true;
        page->button_action_saverecord();
    } else if (verb == "save") {
        expectArgs(args, 2, "save ID");
        open();
        selectMacro(c, args[1]);
        c.sends = true;
        page->button_action_saverecord();
    } else {
        throw UsageError{"unknown macro command " + verb};
    }
}

}  // namespace qx9::ctl
