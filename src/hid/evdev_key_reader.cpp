#include "hid/evdev_key_reader.h"

#include <libevdev/libevdev.h>
#include <linux/input.h>

#include <cerrno>
#include <chrono>
#include <cstring>

#include "hid/capture_state.h"
#include "hid/key_usage_table.h"

namespace qx9 {

std::int64_t wallClockMs() {
    using namespace std::chrono;
    return duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count();
}

bool captureInputEvent(CaptureState& state, const input_event& ev) {
    if (ev.type != EV_KEY) return false;
    if (ev.value != 0 && ev.value != 1) return false;  // 2: autorepeat of a held key
    const int usage = hidUsageFromLinuxKey(ev.code);
    if (usage == 0) return false;
    // Event nodes stamp events with the wall clock unless a reader asks for another clock,
    // which this one never does.
    std::int64_t ms = static_cast<std::int64_t>(ev.input_event_sec) * 1000 +
                      static_cast<std::int64_t>(ev.input_event_usec) / 1000;
    if (ms <= 0) ms = wallClockMs();
    state.captureKeyValue(usage, ev.value, ms);
    return true;
}

EvdevKeyReader::EvdevKeyReader(UniqueFd fd, CaptureState& state) : fd_(std::move(fd)), state_(state) {
    if (fd_ && libevdev_new_from_fd(fd_.get(), &dev_) < 0) dev_ = nullptr;
}

EvdevKeyReader::~EvdevKeyReader() {
    if (dev_) libevdev_free(dev_);  // leaves the descriptor to fd_
}

bool EvdevKeyReader::readAvailable() {
    if (!fd_) return false;
    return dev_ ? readThroughLibevdev() : readRecords();
}

bool EvdevKeyReader::readThroughLibevdev() {
    input_event ev{};
    for (;;) {
        int rc = libevdev_next_event(dev_, LIBEVDEV_READ_FLAG_NORMAL, &ev);
        if (rc == LIBEVDEV_READ_STATUS_SUCCESS) {
            captureInputEvent(state_, ev);
        } else if (rc == LIBEVDEV_READ_STATUS_SYNC) {
            // Events were lost: take the differences between the state we saw and the device's.
            while ((rc = libevdev_next_event(dev_, LIBEVDEV_READ_FLAG_SYNC, &ev)) == LIBEVDEV_READ_STATUS_SYNC) {
                captureInputEvent(state_, ev);
            }
            if (rc != -EAGAIN && rc != -EINTR) return false;
        } else if (rc == -EAGAIN) {
            return true;
        } else if (rc != -EINTR) {
            return false;  // -ENODEV once the device is unplugged
        }
    }
}

bool EvdevKeyReader::readRecords() {
    constexpr std::size_t kRecord = sizeof(input_event);
    unsigned char buf[64 * sizeof(input_event)];
    for (;;) {
        const ssize_t n = ::read(fd_.get(), buf, sizeof buf);
        if (n < 0) {
            if (errno == EINTR) continue;
            return errno == EAGAIN || errno == EWOULDBLOCK;
        }
        if (n == 0) return false;  // the writer went away
        partial_.insert(partial_.end(), buf, buf + n);
        std::size_t used = 0;
        for (; partial_.size() - used >= kRecord; used += kRecord) {
            input_event ev;
            std::memcpy(&ev, partial_.data() + used, kRecord);
            if (ev.type == EV_SYN && ev.code == SYN_DROPPED) {
                skipToReport_ = true;  // what follows up to the next report is incomplete
            } else if (skipToReport_) {
                if (ev.type == EV_SYN && ev.code == SYN_REPORT) skipToReport_ = false;
            } else {
                captureInputEvent(state_, ev);
            }
        }
        partial_.erase(partial_.begin(), partial_.begin() + static_cast<std::ptrdiff_t>(used));
    }
}

}  // namespace qx9
