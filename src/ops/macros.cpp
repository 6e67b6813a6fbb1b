#include "ops/macros.h"

#include "common/console.h"
#include "i18n/extra_texts.h"
#include "i18n/language.h"
#include "i18n/text_ids.h"
#include "layout/key_maps.h"
#include "protocol/macro_download.h"

namespace qx9::ops {

namespace {

std::vector<RecordInfo> records(std::int64_t macro, const std::vector<RecordRow>& events) {
    std::vector<RecordInfo> out;
    out.reserve(events.size());
    for (std::size_t i = 0; i < events.size(); ++i) {
        out.push_back({0, macro, events[i].type, static_cast<std::int64_t>(i), events[i].value, events[i].text});
    }
    return out;
}

}  // namespace

std::string recordListText(const RecordRow& row) {
    switch (row.type) {
        case kRecordDelay: return "[Delay:ms] " + row.text;
        case kRecordKeyDown: return "[KEY DOWN] " + row.text;
        case kRecordKeyUp: return "[KEY UP] " + row.text;
        default: return row.text;
    }
}

std::optional<std::vector<RecordRow>> keyPressEvents(std::int64_t keyCode) {
    // A key of another keyboard that the QX9 lacks (a keypad key, say) cannot be part of a macro.
    const KeyCodeEntry* key =
        keyCode == static_cast<int>(keyCode) ? G_KB_SuperKeyCodeMap.find(static_cast<int>(keyCode)) : nullptr;
    if (!key || key->full_name.empty()) return std::nullopt;
    return std::vector<RecordRow>{{kRecordKeyDown, key->full_name, keyCode}, {kRecordKeyUp, key->full_name, keyCode}};
}

std::vector<RecordRow> mouseClickEvents(int button) {
    return {{kRecordMouseDown, localizedText(textid::kMouseLeftDown + 2 * button), button + 1},
            {kRecordMouseUp, localizedText(textid::kMouseLeftDown + 2 * button + 1), button + 1}};
}

std::vector<RecordRow> delayEvents(std::int64_t ms) { return {{kRecordDelay, std::to_string(ms), ms}}; }

void insertEvents(std::vector<RecordRow>& events, std::optional<std::size_t> selected, bool after,
                  const std::vector<RecordRow>& added) {
    std::size_t at = events.size();
    if (selected && *selected < events.size()) at = *selected + (after ? 1 : 0);
    events.insert(events.begin() + static_cast<std::ptrdiff_t>(at), added.begin(), added.end());
}

void deleteEventWithPartner(std::vector<RecordRow>& events, std::size_t at) {
    if (at >= events.size()) return;
    const std::int64_t type = events[at].type;
    events.erase(events.begin() + static_cast<std::ptrdiff_t>(at));
    const auto erase = [&](std::int64_t partner, bool forward) {
        if (forward) {
            for (std::size_t j = at; j < events.size(); ++j) {
                if (events[j].type == partner) return void(events.erase(events.begin() + static_cast<std::ptrdiff_t>(j)));
            }
        } else {
            for (std::size_t j = at; j-- > 0;) {
                if (events[j].type == partner) return void(events.erase(events.begin() + static_cast<std::ptrdiff_t>(j)));
            }
        }
    };
    switch (type) {
        case kRecordKeyDown: erase(kRecordKeyUp, true); break;
        case kRecordKeyUp: erase(kRecordKeyDown, false); break;
        case kRecordMouseDown: erase(kRecordMouseUp, true); break;
        case kRecordMouseUp: erase(kRecordMouseDown, false); break;
        default: break;
    }
}

std::string newMacroName(std::size_t listedMacros) {
    return localizedText(textid::kMacro) + std::to_string(listedMacros + 1);
}

std::vector<RecordRow> storedEvents(const DeviceSQLite& db, std::int64_t macro) {
    std::vector<RecordInfo> stored;
    db.queryMacroRecord(macro, stored);
    std::vector<RecordRow> events;
    events.reserve(stored.size());
    for (const RecordInfo& e : stored) events.push_back({e.recordType, e.recordDesc, e.recordValue});
    return events;
}

bool macroExists(const DeviceSQLite& db, std::int64_t macro) {
    MacroInfo info;
    return db.queryMacroInfo(macro, info);
}

Outcome addMacro(const Target& target, const std::string& name, std::int64_t& id) {
    id = 0;
    if (target.db.countMacros() >= kMaxMacros) {
        return Outcome::refused("the keyboard holds at most " + std::to_string(kMaxMacros) + " macros",
                                extraText(ExtraText::kMacroLimitTitle), extraText(ExtraText::kMacroLimitMessage));
    }
    id = target.db.addMacroProfile(name);
    if (id < 1) return Outcome::notStored("the database refused the new macro");
    return Outcome::done();
}

Outcome renameMacro(const Target& target, std::int64_t macro, const std::string& name) {
    if (name.empty()) return Outcome::refused("a macro name cannot be empty");
    if (!macroExists(target.db, macro)) return Outcome::refused("no macro " + std::to_string(macro));
    if (!target.db.updateMacroProfileName(macro, name)) return Outcome::notStored("the database refused the new name");
    return Outcome::done();
}

Outcome deleteMacro(const Target& target, std::int64_t macro) {
    if (!macroExists(target.db, macro)) return Outcome::refused("no macro " + std::to_string(macro));
    if (!target.db.deleteMacroProfile(macro)) return Outcome::notStored("the database refused to delete the macro");
    return Outcome::done();
}

Outcome storeEvents(const Target& target, std::int64_t macro, const std::vector<RecordRow>& events) {
    if (!target.db.replaceMacroRecords(macro, records(macro, events))) {
        return Outcome::notStored("the database did not take the macro's events");
    }
    return Outcome::done();
}

Outcome saveMacro(const Target& target, std::int64_t macro, const std::vector<RecordRow>& events,
                  std::int64_t delayMode, std::int64_t delayTime, std::int64_t listedMacroCount) {
    MacroInfo info;
    info.macroId = macro;
    info.playTimes = 0;
    if (delayMode == kNoDelay || delayMode == kDefaultDelay) info.delayType = delayMode;
    if (delayMode == kDefaultDelay) info.delayTime = delayTime;
    if (!target.db.saveMacro(info, records(macro, events))) return Outcome::notStored("the database did not take the macro");
    return sendMacros(target, listedMacroCount);
}

Outcome storeAndSendEvents(const Target& target, std::int64_t macro, const std::vector<RecordRow>& events,
                           std::int64_t listedMacroCount) {
    Outcome stored = storeEvents(target, macro, events);
    if (!stored) return stored;
    return sendMacros(target, listedMacroCount);
}

namespace {

// What a download of the stored macros reads; with `edited`, its events stand for the stored
// events of `macro`.
protocol::MacroDownloadInput downloadInput(const DeviceSQLite& db, std::int64_t listedMacroCount, std::int64_t macro,
                                           const std::vector<RecordRow>* edited) {
    protocol::MacroDownloadInput input;
    input.listedMacroCount = listedMacroCount;
    std::vector<MacroInfo> macros;
    db.queryAllMacroData(macros);
    for (const MacroInfo& m : macros) {
        protocol::MacroWithEvents entry{m, {}};
        if (edited && m.macroId == macro) entry.events = records(macro, *edited);
        else db.queryMacroRecord(m.macroId, entry.events);
        // A damaged event (a key code outside a byte) is left out, with a console line.
        std::erase_if(entry.events, [](const RecordInfo& e) {
            const bool key = e.recordType == kRecordKeyDown || e.recordType == kRecordKeyUp;
            if (!key || (e.recordValue >= 0 && e.recordValue <= 255)) return false;
            console() << "macro event " << e.recordId << " is damaged and is not sent\n";
            return true;
        });
        input.macros.push_back(std::move(entry));
    }
    return input;
}

// The events the capacity check counts: every stored one, `edited` standing for `macro`'s.
std::int64_t countedEvents(const DeviceSQLite& db, std::int64_t macro, const std::vector<RecordRow>* edited) {
    std::int64_t count = db.getRecordCount();
    if (edited) {
        std::vector<RecordInfo> stored;
        db.queryMacroRecord(macro, stored);
        count += static_cast<std::int64_t>(edited->size()) - static_cast<std::int64_t>(stored.size());
    }
    return count;
}

}  // namespace

MacroMemory macroMemory(const DeviceSQLite& db, std::int64_t listedMacroCount, std::int64_t macro,
                        const std::vector<RecordRow>* edited) {
    const std::int64_t events = countedEvents(db, macro, edited);
    MacroMemory memory;
    memory.used = protocol::macroMemoryBytes(events, listedMacroCount);
    // Only a set that passes the count is laid out: the pauses can still overflow the block.
    memory.fits = protocol::macrosFitKeyboard(events, listedMacroCount) &&
                  protocol::tryBuildMacroBlock(downloadInput(db, listedMacroCount, macro, edited).macros).has_value();
    return memory;
}

Outcome sendMacros(const Target& target, std::int64_t listedMacroCount) {
    protocol::MacroDownloadInput input;
    input.storedEventCount = countedEvents(target.db, 0, nullptr);
    input.listedMacroCount = listedMacroCount;
    if (const auto used = protocol::macroMemoryBytes(input.storedEventCount, listedMacroCount); used > protocol::kMacroCapacity) {
        return Outcome::tooLarge("the macros need " + std::to_string(used) + " bytes of the keyboard's " +
                                 std::to_string(protocol::kMacroCapacity) + "-byte macro memory");
    }
    input.macros = downloadInput(target.db, listedMacroCount, 0, nullptr).macros;
    if (!protocol::tryBuildMacroBlock(input.macros)) {
        return Outcome::tooLarge("the macros with the pauses the keyboard puts between their events overflow its " +
                                 std::to_string(protocol::kMacroBlockSize) + "-byte macro block");
    }
    return sentOrNot(transfer(target, [&] { protocol::SaveMacroToKeyboard(target.keyboard, &input); }), "the macros");
}
Outcome sendMacros(const Target& target) { return sendMacros(target, target.db.countMacros()); }

}  // namespace qx9::ops
