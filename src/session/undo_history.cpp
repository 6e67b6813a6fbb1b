#include "session/undo_history.h"

#include "i18n/step_texts.h"
#include "ops/history.h"
#include "session/session_core.h"

namespace qx9 {

namespace {

// The texts of one button.
struct MoveTexts {
    UndoText name;     // "Undo"
    UndoText step;     // "Undo: %1"
    UndoText nothing;  // "Nothing to undo"
};

MoveTexts textsOf(UndoHistory::Move move) {
    if (move == UndoHistory::Move::kUndo) return {UndoText::kUndoButton, UndoText::kUndo, UndoText::kNothingToUndo};
    return {UndoText::kRedoButton, UndoText::kRedo, UndoText::kNothingToRedo};
}

}  // namespace

UndoHistory::Button UndoHistory::button(Move move, int language) const {
    const MoveTexts texts = textsOf(move);
    Button b{false, undoText(texts.name, {}, language), undoText(texts.nothing, {}, language)};
    const DeviceSQLite* db = core_.db();
    if (!db) return b;
    const std::optional<ops::HistoryEntry> step = move == Move::kUndo ? ops::nextUndo(*db) : ops::nextRedo(*db);
    if (!step) return b;
    b.enabled = true;
    b.tip = undoText(texts.step, stepText(step->name.kind, step->name.args, language), language);
    return b;
}

void UndoHistory::make(Move move) {
    const std::optional<ops::Target> target = core_.target();
    if (!target) return;
    ops::HistoryEntry step;
    const ops::Outcome outcome = move == Move::kUndo ? ops::undo(*target, step) : ops::redo(*target, step);
    const std::string title = undoText(textsOf(move).name);
    switch (outcome.reason) {
        // The button was a moment behind the history: it is told again.
        case ops::Reason::kNothingToUndo:
        case ops::Reason::kNothingToRedo: return;
        case ops::Reason::kNoHistory: return core_.warn(title, undoText(UndoText::kNoHistory));
        case ops::Reason::kStepChanged:
            // Nothing changed; the pages show what the other program stored.
            core_.warn(title, undoText(UndoText::kStepChanged, stepText(step.name.kind, step.name.args)));
            break;
        default:
            if (!core_.report(outcome)) return;
    }
    if (core_.reload) core_.reload();
}

}  // namespace qx9
