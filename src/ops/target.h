#pragma once

#include <string>
#include <utility>
#include <vector>

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

// How an operation ended. `message` says why it did not (English, for qx9ctl); `title` and
// `text` say the same in the interface language for the window, when the window shows it.
struct Outcome {
    enum Status {
        kDone,
        kRefused,    // the input was not valid: nothing changed
        kNotStored,  // the database did not take the change: nothing was sent
        kNotSent,    // stored, but the keyboard did not take the whole transaction
        kTooLarge,   // stored, but too large for the keyboard's memory: nothing was sent
        kChanged,    // another program changed what the change was based on: nothing changed
    };
    Status status = kDone;
    std::string message;
    std::string title;
    std::string text;

    explicit operator bool() const { return status == kDone; }
    static Outcome done() { return {}; }
    static Outcome refused(std::string why, std::string title = {}, std::string text = {}) {
        return {kRefused, std::move(why), std::move(title), std::move(text)};
    }
    static Outcome notStored(std::string why) { return {kNotStored, std::move(why), {}, {}}; }
    static Outcome notSent(std::string what) {
        return {kNotSent, "stored, but the keyboard did not take " + std::move(what), {}, {}};
    }
    // The change was not stored because another program changed what it was based on.
    static Outcome changedMeanwhile(std::string what) {
        return {kChanged, std::move(what) + " was changed by another program meanwhile; nothing was stored", {}, {}};
    }
    static Outcome tooLarge(std::string why) { return {kTooLarge, "stored, but nothing was sent: " + std::move(why), {}, {}}; }
};

// Asks for the blocks after a stored change: done when they were sent or queued (or there is
// no keyboard), otherwise why not (`what` names the change for the message).
Outcome send(const Target& target, const std::vector<BlockRequest>& blocks);

}  // namespace qx9::ops
