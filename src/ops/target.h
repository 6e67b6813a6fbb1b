#pragma once

#include <string>
#include <utility>

#include "hid/device_comm.h"
#include "store/device_sqlite.h"

namespace qx9::ops {

// What an operation changes: the database, and the keyboard when one is attached. Without a
// keyboard (`keyboard` null) a change is stored and nothing is sent; it reaches the keyboard
// with the next connection.
struct Target {
    DeviceSQLite& db;
    DeviceComm* keyboard = nullptr;
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
    static Outcome tooLarge(std::string why) { return {kTooLarge, "stored, but nothing was sent: " + std::move(why), {}, {}}; }
};

// Runs `send` (one or more transactions) and tells whether every report reached the keyboard;
// true when there is no keyboard to send to.
template <typename Send>
bool transfer(const Target& target, Send&& send) {
    const std::uint64_t before = target.keyboard ? target.keyboard->failures() : 0;
    send();
    return !target.keyboard || target.keyboard->failures() == before;
}
// The outcome of a stored change after its transaction: done, or not sent.
inline Outcome sentOrNot(bool sent, const char* what) { return sent ? Outcome::done() : Outcome::notSent(what); }

}  // namespace qx9::ops
