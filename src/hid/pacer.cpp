#include "hid/pacer.h"

#include <sys/prctl.h>
#include <time.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdint>

namespace qx9 {

namespace {

using Nanos = std::int64_t;

Nanos now() {
    timespec t{};
    ::clock_gettime(CLOCK_MONOTONIC, &t);
    return static_cast<Nanos>(t.tv_sec) * 1000000000 + t.tv_nsec;
}

timespec toTimespec(Nanos ns) {
    return timespec{static_cast<time_t>(ns / 1000000000), static_cast<long>(ns % 1000000000)};
}

void lowerTimerSlack() {
    // The default slack of 50 µs would be added to every pause; one nanosecond is the least.
    thread_local bool done = false;
    if (!done) {
        ::prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
        done = true;
    }
}

// How late the kernel wakes us, learnt from recent pauses: the sleep ends that much before the
// deadline and the rest is waited out on the clock, so a pause is neither short nor long.
std::atomic<Nanos> g_wakeupMargin{100000};
constexpr Nanos kMinMargin = 20000;
constexpr Nanos kMaxMargin = 1000000;

}  // namespace

void SleepPacer::pause(std::chrono::microseconds duration) {
    if (duration.count() <= 0) return;
    lowerTimerSlack();
    const Nanos deadline = now() + static_cast<Nanos>(duration.count()) * 1000;
    const Nanos margin = g_wakeupMargin.load(std::memory_order_relaxed);
    const Nanos wakeAt = deadline - margin;
    if (wakeAt > now()) {
        const timespec ts = toTimespec(wakeAt);
        while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &ts, nullptr) == EINTR) {
        }
        // Learn: aim the margin at twice the observed lateness, smoothed.
        const Nanos late = std::max<Nanos>(0, now() - wakeAt);
        const Nanos target = std::clamp<Nanos>(2 * late, kMinMargin, kMaxMargin);
        g_wakeupMargin.store((3 * margin + target) / 4, std::memory_order_relaxed);
    }
    while (now() < deadline) {
    }
}

Pacer& sleepPacer() {
    static SleepPacer pacer;
    return pacer;
}

}  // namespace qx9
