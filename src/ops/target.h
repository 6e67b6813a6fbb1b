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
    enum Status { kDone, kRefused, kNotStored };
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
};

}  // namespace qx9::ops
