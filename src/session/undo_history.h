#pragma once

#include <string>

namespace qx9 {

struct SessionCore;

// The window's undo and redo: the step each would take back or make again, as its button shows
// it, and the two moves. A move restores the database and sends what the step touched through
// the session's sender; every page then shows the database as it is now, in the stored language
// when the step changed it. The front end is told (SessionAspect::History) after every change of
// this session and after another program's.
class UndoHistory {
public:
    enum class Move { kUndo, kRedo };
    // What a button shows: whether it acts, its name ("Undo") and its tooltip ("Undo: assign
    // Caps Lock", or "Nothing to undo").
    struct Button {
        bool enabled = false;
        std::string name;
        std::string tip;
    };

    explicit UndoHistory(SessionCore& core) : core_(core) {}

    // The button of `move`, in `language` (kLanguageEnglish, …).
    Button button(Move move, int language) const;

    void undo() { make(Move::kUndo); }
    void redo() { make(Move::kRedo); }
    void make(Move move);

private:
    SessionCore& core_;
};

}  // namespace qx9
