#pragma once

#include <string>

#include "protocol/macro_download.h"
#include "protocol/transaction.h"
#include "sender/block_request.h"
#include "store/device_sqlite.h"

namespace qx9 {

// A requested block as the database holds it now.
struct BuiltBlock {
    protocol::Transaction transaction;  // no steps: nothing to send
    // The macros were not sent: they do not fit the keyboard's macro memory (why, in English).
    std::string tooLarge;
};

// Reads what the block carries and lays out its transaction. Values that the keyboard could
// not take (a key code outside a byte, a colour that is not 0xRRGGBB, a key the QX9 lacks) are
// left out with a console line; nothing read stops the program.
BuiltBlock buildBlock(const DeviceSQLite& db, const BlockRequest& request);

// Every stored macro with its events, in the store's order, as a download carries them: a
// damaged event (a key code outside a byte) is left out, with a console line.
std::vector<protocol::MacroWithEvents> storedMacros(const DeviceSQLite& db);
void dropDamagedEvents(std::vector<RecordInfo>& events);

// The profile whose key map the keyboard was last sent (profile 1 when none is stored).
std::int64_t keyboardProfile(const DeviceSQLite& db);
// The four switches as stored: all off unless game mode is on.
protocol::SystemSwitches storedSwitches(const DeviceSQLite& db);
// Game mode on with the three blocks as stored.
protocol::SystemSwitches gameModeSwitches(const DeviceSQLite& db);

}  // namespace qx9
