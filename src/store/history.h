#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qx9 {

// The history of user changes kept beside the database, in a file of its own (the database's
// name with kHistorySuffix) that the database's connection attaches: a step is written in the
// transaction of the change it records, and undone or redone in one with what it changes.
inline constexpr const char* kHistorySuffix = "-history";
// Steps kept: the oldest beyond this are forgotten as new ones come.
inline constexpr std::int64_t kHistorySteps = 200;

// A user change as the history names it: a kind ("assign", the ids of i18n/step_texts.cpp) and
// what it names ("Caps Lock").
struct StepName {
    std::string kind;
    std::vector<std::string> args;
};

// One step: a user change, as recorded with its transaction.
struct HistoryStep {
    std::int64_t id = 0;
    bool done = true;        // in force; false: undone, and the next to redo is the oldest of those
    StepName name;
    std::string blocks;      // the blocks it sent, as the operations wrote them down
    std::int64_t time = 0;   // when, in seconds since 1970
};

// How undoing or redoing a step ended.
enum class StepResult {
    kDone,
    kNone,        // no step to undo (or redo)
    kConflict,    // another program changed the rows since: nothing changed
    kFailed,      // the database did not take it, or the step could not be read: nothing changed
    kNoHistory,   // there is no history to read (its file could not be opened)
};

}  // namespace qx9
