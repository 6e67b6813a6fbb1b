#include "ops/macros.h"

#include "i18n/extra_texts.h"
#include "i18n/language.h"
#include "i18n/text_ids.h"
#include "layout/key_maps.h"
#include "protocol/macro_download.h"
#include "ops/settings.h"
#include "ops/history.h"
#include "sender/blocks.h"
#include "store/config_value.h"

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

namespace {

std::string macroName(const DeviceSQLite& db, std::int64_t macro) {
    MacroInfo info;
    return db.queryMacroInfo(macro, info) ? info.macroName : std::to_string(macro);
}

}  // namespace

bool macroExists(const DeviceSQLite& db, std::int64_t macro) {
    MacroInfo info;
    return db.queryMacroInfo(macro, info);
}

Outcome addMacro(const Target& target, std::string& name, std::int64_t& id) {
    id = 0;
    DeviceSQLite::Transaction transaction = target.db.beginStep();
    const std::int64_t macros = target.db.countMacros();
    if (macros >= kMaxMacros) {
        return Outcome::refused(Reason::kTooManyMacros, {std::to_string(kMaxMacros)});
    }
    name = newMacroName(static_cast<std::size_t>(macros));
    id = target.db.addMacroProfile(name);
    if (id < 1 || !commitStep(transaction, {"add-macro", {name}}, {})) {
        id = 0;
        return Outcome::notStored("the database refused the new macro");
    }
    return Outcome::done();
}

Outcome renameMacro(const Target& target, std::int64_t macro, const std::string& name) {
    if (name.empty()) return Outcome::refused(Reason::kEmptyName, {"macro"});
    DeviceSQLite::Transaction transaction = target.db.beginStep();
    if (!macroExists(target.db, macro)) return Outcome::refused(Reason::kNoMacro, {std::to_string(macro)});
    if (!target.db.updateMacroProfileName(macro, name) || !commitStep(transaction, {"rename-macro", {name}}, {})) {
        return Outcome::notStored("the database did not take the new name");
    }
    return Outcome::done();
}

Outcome deleteMacro(const Target& target, std::int64_t macro) {
    DeviceSQLite::Transaction transaction = target.db.beginStep();
    if (!macroExists(target.db, macro)) return Outcome::refused(Reason::kNoMacro, {std::to_string(macro)});
    const std::string name = macroName(target.db, macro);
    // The macros after it move up a position, and keys name macros by position: the next macro
    // download takes the key map along.
    const std::int64_t deletions = parseConfigInteger(target.db.getConfigData(kSettingsProfile, kMacroDeletions),
                                                      kMacroDeletions, 0, INT64_MAX - 1);
    if (!target.db.deleteMacroProfile(macro) || !storeSetting(target.db, kMacroDeletions, std::to_string(deletions + 1)) ||
        !commitStep(transaction, {"delete-macro", {name}}, {})) {
        return Outcome::notStored("the database refused to delete the macro");
    }
    return Outcome::done();
}

namespace {

// Replaces the macro's events inside the caller's transaction; with `loaded`, only when the
// stored events are still those (another program may have changed them since they were read).
Outcome replaceEvents(const Target& target, std::int64_t macro, const std::vector<RecordRow>& events,
                      const std::vector<RecordRow>* loaded) {
    if (!macroExists(target.db, macro)) return Outcome::refused(Reason::kNoMacro, {std::to_string(macro)});
    if (loaded && storedEvents(target.db, macro) != *loaded) return Outcome::changedMeanwhile("the macro");
    if (!target.db.replaceMacroRecords(macro, records(macro, events))) {
        return Outcome::notStored("the database did not take the macro's events");
    }
    return Outcome::done();
}

}  // namespace

Outcome storeEvents(const Target& target, std::int64_t macro, const std::vector<RecordRow>& events,
                    const std::vector<RecordRow>* loaded) {
    DeviceSQLite::Transaction transaction = target.db.beginStep();
    if (Outcome o = replaceEvents(target, macro, events, loaded); !o) return o;
    if (!commitStep(transaction, {"record-macro", {macroName(target.db, macro)}}, {})) {
        return Outcome::notStored("the database did not take the macro's events");
    }
    return Outcome::done();
}

Outcome saveMacro(const Target& target, std::int64_t macro, const std::vector<RecordRow>* events,
                  std::int64_t delayMode, std::int64_t delayTime, const std::vector<RecordRow>* loaded) {
    std::vector<BlockRequest> blocks;
    {
        DeviceSQLite::Transaction transaction = target.db.beginStep();
        if (!macroExists(target.db, macro)) return Outcome::refused(Reason::kNoMacro, {std::to_string(macro)});
        if (loaded && storedEvents(target.db, macro) != *loaded) return Outcome::changedMeanwhile("the macro");
        if (delayMode == kKeepDelayMode) {
            MacroInfo stored;
            target.db.queryMacroInfo(macro, stored);
            delayMode = stored.delayType;
            delayTime = stored.delayTime;
        }
        MacroInfo info;
        info.macroId = macro;
        info.playTimes = 0;
        if (delayMode == kNoDelay || delayMode == kDefaultDelay) info.delayType = delayMode;
        if (delayMode == kDefaultDelay) info.delayTime = delayTime;
        const std::vector<RecordRow> list = events ? *events : storedEvents(target.db, macro);
        if (!target.db.saveMacro(info, records(macro, list))) return Outcome::notStored("the database did not take the macro");
        blocks = macroDownload(target.db);
        if (!commitStep(transaction, {"edit-macro", {macroName(target.db, macro)}}, blocks)) {
            return Outcome::notStored("the database did not take the macro");
        }
    }
    return send(target, blocks);
}

Outcome storeAndSendEvents(const Target& target, std::int64_t macro, const std::vector<RecordRow>& events,
                           const std::vector<RecordRow>* loaded) {
    return changeEvents(target, macro, [&](std::vector<RecordRow>& stored) {
        if (loaded && stored != *loaded) return Outcome::changedMeanwhile("the macro");
        stored = events;
        return Outcome::done();
    });
}

Outcome changeEvents(const Target& target, std::int64_t macro,
                     const std::function<Outcome(std::vector<RecordRow>&)>& change) {
    std::vector<BlockRequest> blocks;
    {
        DeviceSQLite::Transaction transaction = target.db.beginStep();
        if (!macroExists(target.db, macro)) return Outcome::refused(Reason::kNoMacro, {std::to_string(macro)});
        std::vector<RecordRow> events = storedEvents(target.db, macro);
        if (Outcome o = change(events); !o) return o;
        if (Outcome o = replaceEvents(target, macro, events, nullptr); !o) return o;
        blocks = macroDownload(target.db);
        if (!commitStep(transaction, {"edit-macro", {macroName(target.db, macro)}}, blocks)) {
            return Outcome::notStored("the database did not take the macro's events");
        }
    }
    return send(target, blocks);
}

std::vector<BlockRequest> macroDownload(DeviceSQLite& db) {
    std::vector<BlockRequest> blocks{SaveMacroToKeyboard()};
    const std::string deletions = db.getConfigData(kSettingsProfile, kMacroDeletions);
    if (!deletions.empty() && deletions != "0") {
        blocks.push_back(SendKeyMacroData(keyboardProfile(db), 0));
        storeSetting(db, kMacroDeletions, "0");
    }
    return blocks;
}

Outcome sendMacros(const Target& target) {
    std::vector<BlockRequest> blocks;
    {
        // A database that takes no write still gets the macros sent, and the key map again next time.
        DeviceSQLite::Transaction transaction = target.db.beginTransaction();
        blocks = macroDownload(target.db);
        transaction.commit();
    }
    return send(target, blocks);
}

namespace {

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

// The macros a download would carry, with `edited` standing for the stored events of `macro`.
std::vector<protocol::MacroWithEvents> macrosAsEdited(const DeviceSQLite& db, std::int64_t macro,
                                                      const std::vector<RecordRow>* edited) {
    std::vector<protocol::MacroWithEvents> macros = storedMacros(db);
    for (protocol::MacroWithEvents& m : macros) {
        if (!edited || m.info.macroId != macro) continue;
        m.events = records(macro, *edited);
        dropDamagedEvents(m.events);
    }
    return macros;
}

}  // namespace

MacroMemory macroMemory(const DeviceSQLite& db, std::int64_t listedMacroCount, std::int64_t macro,
                        const std::vector<RecordRow>* edited) {
    const std::int64_t events = countedEvents(db, macro, edited);
    MacroMemory memory;
    memory.used = protocol::macroMemoryBytes(events, listedMacroCount);
    // Only a set that passes the count is laid out: the pauses can still overflow the block.
    memory.fits = protocol::macrosFitKeyboard(events, listedMacroCount) &&
                  protocol::tryBuildMacroBlock(macrosAsEdited(db, macro, edited)).has_value();
    return memory;
}

}  // namespace qx9::ops
