#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "ops/target.h"

namespace qx9::ops {

// Commits a transaction begun with DeviceSQLite::beginStep: what it changed becomes one step,
// named `name`, whose undo and redo send `blocks` again. False when the commit failed.
bool commitStep(DeviceSQLite::Transaction& transaction, const StepName& name, const std::vector<BlockRequest>& blocks);

// The steps, newest first.
std::vector<HistoryStep> history(const DeviceSQLite& db);
// The step undo would take back, and the one redo would make again.
std::optional<HistoryStep> nextUndo(const DeviceSQLite& db);
std::optional<HistoryStep> nextRedo(const DeviceSQLite& db);

// Restores the database as it was before the newest step in force, then sends the blocks that
// step touched (`step` tells which it was). Refused when there is none, when there is no history,
// or when another program has changed those rows since (nothing changes then).
Outcome undo(const Target& target, HistoryStep& step);
// Makes the oldest undone step again, as undo does.
Outcome redo(const Target& target, HistoryStep& step);

// A colour as a step names it ("#FF4000").
std::string colourName(std::uint32_t rgb);

// The step in English ("assign Caps Lock").
std::string describe(const StepName& name);

// The blocks as a step keeps them, and back; a damaged entry is left out.
std::string blocksText(const std::vector<BlockRequest>& blocks);
std::vector<BlockRequest> blocksFromText(const std::string& text);

}  // namespace qx9::ops
