#pragma once

#include <cstdint>
#include <vector>

#include "common/unique_fd.h"
#include "hid/capture_state.h"

struct input_event;
struct libevdev;

namespace qx9 {

// Reads one open input event node and hands its key presses and releases to the capture state
// (captureKeyValue). An event node is read through libevdev, which also restores the key state
// after the kernel dropped events (SYN_DROPPED: the presses and releases that were lost arrive as
// ordinary events). Any other descriptor is read as a plain stream of input_event records.
//
// What reaches the capture: EV_KEY events of key codes that have a Keyboard page usage, value 0
// (release) or 1 (press), stamped with the event's own wall-clock time in ms since 1970 (when it
// happened, not when it was read). Autorepeat (value 2) is left out: a held key is one press and
// one release, as keyboards report it over USB.
class EvdevKeyReader {
public:
    EvdevKeyReader(UniqueFd fd, CaptureState& state);
    ~EvdevKeyReader();
    EvdevKeyReader(const EvdevKeyReader&) = delete;
    EvdevKeyReader& operator=(const EvdevKeyReader&) = delete;

    // Reads every event pending now. False when the source has gone (device unplugged, end of
    // the stream, a read error): nothing more will come and the caller should drop the reader.
    bool readAvailable();

private:
    bool readThroughLibevdev();
    bool readRecords();

    UniqueFd fd_;
    CaptureState& state_;
    libevdev* dev_ = nullptr;
    std::vector<unsigned char> partial_;  // an incomplete record of a plain stream
    bool skipToReport_ = false;           // a plain stream said SYN_DROPPED
};

// The capture's view of one input event: a press or release of a known key goes on to
// the state's captureKeyValue; everything else is left alone. True when it went on.
bool captureInputEvent(CaptureState& state, const input_event& ev);

// Wall-clock time in ms since 1970.
std::int64_t wallClockMs();

}  // namespace qx9
