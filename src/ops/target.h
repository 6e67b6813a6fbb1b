#pragma once

#include <string>
#include <utility>
#include <vector>

#include "ops/outcome.h"
#include "sender/keyboard_sender.h"
#include "store/device_sqlite.h"

namespace qx9::ops {

// What an operation changes: the database, and the keyboard when one is attached. Without a
// keyboard (`keyboard` null) a change is stored and nothing is sent; it reaches the keyboard
// with the next connection.
//
// An operation stores first, in one transaction that also reads what the change depends on;
// then it asks the keyboard's sender for the blocks the change touched, which the sender builds
// from the database when it sends them.
struct Target {
    DeviceSQLite& db;
    KeyboardSender* keyboard = nullptr;
};

// Asks for the blocks after a stored change: done when they were sent or queued (or there is
// no keyboard), otherwise why not (`what` names the change for the message).
Outcome send(const Target& target, const std::vector<BlockRequest>& blocks);

}  // namespace qx9::ops
