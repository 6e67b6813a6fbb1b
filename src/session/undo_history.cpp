#include "session/undo_history.h"

#include "i18n/extra_texts.h"
#include "i18n/step_texts.h"
#include "ops/history.h"
#include "session/session_core.h"

namespace qx9 {

namespace {

// The texts of one button.
struct MoveTexts {
    ExtraText name;     // "Undo"
    ExtraText step;     // "Undo: %1"
    ExtraText nothing;  // "Nothing to undo"
};

MoveTexts textsOf(UndoHistory::Move move) {
    if (move == UndoHistory::Move::kUndo) return {ExtraText::kUndoButton, ExtraText::kUndoStep, ExtraText::kNothingToUndo};
    return {ExtraText::kRedoButton, ExtraText::kRedoStep, ExtraText::kNothingToRedo};
}

}  // namespace

UndoHistory::Button UndoHistory::button(Move move, int language) const {
    const MoveTexts texts = textsOf(move);
    Button b{false, extraText(texts.name, language), extraText(texts.nothing, language)};
    const DeviceSQLite* db = core_.db();
    if (!db) return b;
    const std::optional<HistoryStep> step = move == Move::kUndo ? ops::nextUndo(*db) : ops::nextRedo(*db);
    if (!step) return b;
    b.enabled = true;
    b.tip = withStep(extraText(texts.step, language), stepText(step->name.kind, step->name.args, language));
    return b;
}

void UndoHistory::make(Move move) {
    const std::optional<ops::Target> target = core_.target();
    if (!target) return;
    HistoryStep step;
    const ops::Outcome outcome = move == Move::kUndo ? ops::undo(*target, step) : ops::redo(*target, step);
    const std::string title = extraText(textsOf(move).name);
    switch (outcome.reason) {
        // The button was a moment behind the history: it is told again.
        case ops::Reason::kNothingToUndo:
        case ops::Reason::kNothingToRedo: return;
        case ops::Reason::kNoHistory: return core_.warn(title, extraText(ExtraText::kNoHistory));
        case ops::Reason::kStepChanged:
            // Nothing changed; the pages show what the other program stored.
            core_.warn(title, withStep(extraText(ExtraText::kStepChanged), stepText(step.name.kind, step.name.args)));
            break;
        default:
            if (!core_.report(outcome)) return;
    }
    if (core_.reload) core_.reload();
}

}  // namespace qx9
