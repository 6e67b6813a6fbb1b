#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

#include "ops/target.h"
#include "protocol/macro_download.h"
#include "store/records.h"

namespace qx9::ops {

// The keyboard's macro directory has one slot per macro; a key bound to a macro names its slot.
inline constexpr std::int64_t kMaxMacros = protocol::kMacroDirectorySlots;

// Delay modes of a macro (MacroInfo::delayType).
enum DelayMode : std::int64_t { kRecordingDelay = 0, kNoDelay = 1, kDefaultDelay = 2 };
// saveMacro: the delay mode as stored.
inline constexpr std::int64_t kKeepDelayMode = -1;
// Longest delay the page's fields take, in ms; recorded delays stop at kMaxRecordedDelay.
inline constexpr std::int64_t kMaxTypedDelay = 60000;
inline constexpr std::int64_t kMaxRecordedDelay = 100000;

// One event of a macro as the editor holds it: type, the text the list shows, value.
struct RecordRow {
    std::int64_t type = 0;  // RecordType
    std::string text;
    std::int64_t value = 0;
    bool operator==(const RecordRow&) const = default;
};

// The text the event table shows for a row: "[Delay:ms] 250", "[KEY DOWN] A", "[KEY UP] A";
// mouse rows show their description alone.
std::string recordListText(const RecordRow& row);

// The events of a key press (down, up) of a key the QX9 has; none for another key.
std::optional<std::vector<RecordRow>> keyPressEvents(std::int64_t keyCode);
// The events of a mouse click: button 0 left, 1 middle, 2 right.
std::vector<RecordRow> mouseClickEvents(int button);
std::vector<RecordRow> delayEvents(std::int64_t ms);
// Inserts `added` before (or after) the selected event, at the end when none is selected.
void insertEvents(std::vector<RecordRow>& events, std::optional<std::size_t> selected, bool after,
                  const std::vector<RecordRow>& added);
// Deletes one event and its partner: the nearest key up after a key down (key down before a key
// up, and the same for mouse buttons), whatever key or button it has; a delay goes alone.
void deleteEventWithPartner(std::vector<RecordRow>& events, std::size_t index);

// The name of a new macro: "Macro" and the number of macros listed plus one.
std::string newMacroName(std::size_t listedMacros);

std::vector<RecordRow> storedEvents(const DeviceSQLite& db, std::int64_t macro);
bool macroExists(const DeviceSQLite& db, std::int64_t macro);

// Adds a macro named after the number of macros there are (newMacroName); refused once the
// keyboard's directory is full. Its id and name in `id` and `name`.
Outcome addMacro(const Target& target, std::string& name, std::int64_t& id);
Outcome renameMacro(const Target& target, std::int64_t macro, const std::string& name);
// Nothing is sent: key bindings keep their macro positions until the next download, which then
// sends the keyboard's key map after the macros.
Outcome deleteMacro(const Target& target, std::int64_t macro);

// `loaded`, in the three below: the events the page read from the store before it edited its
// copy. When given, the change is refused (kChanged) if the stored events are no longer those:
// another program changed the macro meanwhile, and storing the copy would undo that.

// Replaces the macro's events in one transaction; nothing is sent.
Outcome storeEvents(const Target& target, std::int64_t macro, const std::vector<RecordRow>& events,
                    const std::vector<RecordRow>* loaded = nullptr);
// Replaces the macro's events (`events`, or the stored ones when null) and its delay mode in one
// transaction (the repeat count is reset to 0), then sends every macro.
Outcome saveMacro(const Target& target, std::int64_t macro, const std::vector<RecordRow>* events,
                  std::int64_t delayMode, std::int64_t delayTime, const std::vector<RecordRow>* loaded = nullptr);
// Stores the events and sends every macro.
Outcome storeAndSendEvents(const Target& target, std::int64_t macro, const std::vector<RecordRow>& events,
                           const std::vector<RecordRow>* loaded = nullptr);
// Reads the macro's events, lets `change` change them and stores them, in one transaction; then
// sends every macro.
Outcome changeEvents(const Target& target, std::int64_t macro,
                     const std::function<Outcome(std::vector<RecordRow>&)>& change);

// The blocks of a macro download, inside the change's transaction: the macros, and after
// deletions moved them, the keyboard profile's key map (the deletions are then counted as sent).
std::vector<BlockRequest> macroDownload(DeviceSQLite& db);

// How much of the keyboard's macro memory the macros take (4 bytes an event, 8 a macro) and
// whether they reach the keyboard: `fits` is false over the capacity, and also when the pauses
// put between events would overflow the macro block.
struct MacroMemory {
    std::int64_t used = 0;
    std::int64_t capacity = protocol::kMacroCapacity;
    bool fits = true;
};
// The stored macros, `listedMacroCount` counted as for sendMacros; with `edited`, its events
// stand for the stored events of `macro` (a list being edited and not stored yet).
MacroMemory macroMemory(const DeviceSQLite& db, std::int64_t listedMacroCount, std::int64_t macro = 0,
                        const std::vector<RecordRow>* edited = nullptr);

// Sends every stored macro (and the key map after deletions). Macros too large for the
// keyboard's memory are not sent at all (kTooLarge, saying how large they are).
Outcome sendMacros(const Target& target);

}  // namespace qx9::ops
