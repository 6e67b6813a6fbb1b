#include "hid/pacer.h"

#include <sys/prctl.h>
#include <time.h>

#include <cerrno>

namespace qx9 {

namespace {

void lowerTimerSlack() {
    // The default slack of 50 µs would be added to every pause; one nanosecond is the least.
    thread_local bool done = false;
    if (!done) {
        ::prctl(PR_SET_TIMERSLACK, 1UL, 0UL, 0UL, 0UL);
        done = true;
    }
}

}  // namespace

void SleepPacer::pause(std::chrono::microseconds duration) {
    if (duration.count() <= 0) return;
    lowerTimerSlack();
    timespec deadline{};
    ::clock_gettime(CLOCK_MONOTONIC, &deadline);
    const long long ns = static_cast<long long>(duration.count()) * 1000;
    deadline.tv_sec += static_cast<time_t>(ns / 1000000000);
    deadline.tv_nsec += static_cast<long>(ns % 1000000000);
    if (deadline.tv_nsec >= 1000000000) {
        deadline.tv_sec += 1;
        deadline.tv_nsec -= 1000000000;
    }
    while (::clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr) == EINTR) {
    }
}

Pacer& sleepPacer() {
    static SleepPacer pacer;
    return pacer;
}

}  // namespace qx9
