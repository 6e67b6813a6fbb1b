#include "ops/history.h"

#include <charconv>

#include "i18n/language.h"
#include "i18n/step_texts.h"
#include "sender/blocks.h"

namespace qx9::ops {

namespace {

constexpr char kBlockSeparator = ';';
constexpr char kFieldSeparator = ':';  // between a block's numbers
// kind, profile, layer, selection, set, dark, and the switches shown (a bit each; -1: as stored)
constexpr std::size_t kBlockFields = 7;
constexpr std::int64_t kStoredSwitches = -1;

std::int64_t switchBits(const std::optional<protocol::SystemSwitches>& s) {
    if (!s) return kStoredSwitches;
    return std::int64_t{s->gameMode} | std::int64_t{s->blockAltTab} << 1 | std::int64_t{s->blockAltF4} << 2 |
           std::int64_t{s->lockWin} << 3;
}

std::optional<protocol::SystemSwitches> switchesOf(std::int64_t bits) {
    if (bits < 0) return std::nullopt;
    return protocol::SystemSwitches{(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0, (bits & 8) != 0};
}

std::vector<std::int64_t> numbers(std::string_view text) {
    std::vector<std::int64_t> values;
    while (true) {
        const std::size_t end = std::min(text.find(kFieldSeparator), text.size());
        std::int64_t value = 0;
        const auto [ptr, ec] = std::from_chars(text.data(), text.data() + end, value);
        if (ec != std::errc() || ptr != text.data() + end) return {};
        values.push_back(value);
        if (end == text.size()) return values;
        text.remove_prefix(end + 1);
    }
}

std::optional<BlockRequest> blockFrom(std::string_view text) {
    const std::vector<std::int64_t> v = numbers(text);
    if (v.size() != kBlockFields || v[0] < BlockRequest::kKeyMap || v[0] > BlockRequest::kSystemFunctions) return std::nullopt;
    BlockRequest block;
    block.kind = static_cast<BlockRequest::Kind>(v[0]);
    block.profile = v[1];
    block.layer = v[2];
    block.selection = v[3];
    block.set = v[4];
    block.dark = v[5] != 0;
    block.switches = switchesOf(v[6]);
    return block;
}

// The blocks to send after an undo or redo. The keyboard holds the key map of the profile it was
// last sent, which the step may have changed: that profile's map is sent for a key map. Macros
// move keys' references by position, so the key map goes with them. A redo sends the switches as
// the change showed them, an undo as they are stored.
std::vector<BlockRequest> blocksAfter(const DeviceSQLite& db, const std::string& text, bool undo) {
    const std::int64_t held = keyboardProfile(db);
    std::vector<BlockRequest> blocks;
    bool keyMap = false;
    const auto add = [&](const BlockRequest& b) {
        for (const BlockRequest& other : blocks) {
            if (other.sameBlock(b)) return;
        }
        blocks.push_back(b);
    };
    for (BlockRequest b : blocksFromText(text)) {
        if (undo) b.switches.reset();
        if (b.kind == BlockRequest::kKeyMap) {
            keyMap = true;
            continue;
        }
        add(b);
        keyMap = keyMap || b.kind == BlockRequest::kMacros;
    }
    if (keyMap) add(SendKeyMacroData(held, 0));
    return blocks;
}

Outcome move(const Target& target, bool undo, HistoryStep& step) {
    if (!target.db.hasHistory()) return Outcome::refused(Reason::kNoHistory);
    const std::string notTaken = std::string("the database did not take the ") + (undo ? "undo" : "redo");
    {
        DeviceSQLite::Transaction transaction = target.db.beginTransaction();
        switch (undo ? target.db.undoStep(step) : target.db.redoStep(step)) {
            case StepResult::kDone: break;
            case StepResult::kNone: return Outcome::refused(undo ? Reason::kNothingToUndo : Reason::kNothingToRedo);
            case StepResult::kNoHistory: return Outcome::refused(Reason::kNoHistory);
            case StepResult::kConflict: return Outcome::refused(Reason::kStepChanged, {describe(step.name)});
            case StepResult::kFailed: return Outcome::notStored(notTaken);
        }
        if (!transaction.commit()) return Outcome::notStored(notTaken);
    }
    return send(target, blocksAfter(target.db, step.blocks, undo));
}

}  // namespace

bool commitStep(DeviceSQLite::Transaction& transaction, const StepName& name, const std::vector<BlockRequest>& blocks) {
    HistoryStep step;
    step.name = name;
    step.blocks = blocksText(blocks);
    return transaction.commitStep(step);
}

std::vector<HistoryStep> history(const DeviceSQLite& db) { return db.readHistory(); }
std::optional<HistoryStep> nextUndo(const DeviceSQLite& db) { return db.stepToUndo(); }
std::optional<HistoryStep> nextRedo(const DeviceSQLite& db) { return db.stepToRedo(); }

Outcome undo(const Target& target, HistoryStep& step) { return move(target, true, step); }
Outcome redo(const Target& target, HistoryStep& step) { return move(target, false, step); }

std::string describe(const StepName& name) { return stepText(name.kind, name.args, kLanguageEnglish); }

std::string colourName(std::uint32_t rgb) {
    constexpr const char* kDigits = "0123456789ABCDEF";
    std::string text = "#";
    for (int shift = 20; shift >= 0; shift -= 4) text += kDigits[(rgb >> shift) & 0xF];
    return text;
}

std::string blocksText(const std::vector<BlockRequest>& blocks) {
    std::string text;
    for (const BlockRequest& b : blocks) {
        if (!text.empty()) text += kBlockSeparator;
        bool first = true;
        for (const std::int64_t v : {std::int64_t{b.kind}, b.profile, b.layer, b.selection, b.set, std::int64_t{b.dark},
                                     switchBits(b.switches)}) {
            if (!first) text += kFieldSeparator;
            text += std::to_string(v);
            first = false;
        }
    }
    return text;
}

std::vector<BlockRequest> blocksFromText(const std::string& text) {
    std::vector<BlockRequest> blocks;
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(kBlockSeparator), rest.size());
        if (std::optional<BlockRequest> b = blockFrom(rest.substr(0, end))) blocks.push_back(*b);
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return blocks;
}

}  // namespace qx9::ops
