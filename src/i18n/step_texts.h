#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace qx9 {

// What a step of the change history is called ("assign Caps Lock"), from its kind and what it
// names, in one of the three languages (kLanguageEnglish, …). A kind this table does not know
// (a newer program wrote it) reads "change".
std::string stepText(std::string_view kind, const std::vector<std::string>& args, int language);
// The same in the current language.
std::string stepText(std::string_view kind, const std::vector<std::string>& args);

// The window's undo and redo: "Undo: %1", "Redo: %1", with nothing to undo or redo, and why an
// undo or redo did not go through.
enum class UndoText {
    kUndo,           // "Undo: %1"
    kRedo,           // "Redo: %1"
    kNothingToUndo,  // "Nothing to undo"
    kNothingToRedo,  // "Nothing to redo"
    kUndoButton,     // "Undo"
    kRedoButton,     // "Redo"
    kStepChanged,    // "%1 cannot be undone …": another program changed what the step changed
    kNoHistory,      // the history file beside the settings cannot be used
};
// `step` fills %1; in the current language, or in `language`.
std::string undoText(UndoText id, const std::string& step = {});
std::string undoText(UndoText id, const std::string& step, int language);

}  // namespace qx9
