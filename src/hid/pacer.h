#pragma once

#include <chrono>

namespace qx9 {

// The keyboard needs a pause before every report. The pause is a blocking wait of the calling
// thread; tests substitute a pacer that only records it.
class Pacer {
public:
    virtual ~Pacer() = default;
    virtual void pause(std::chrono::microseconds duration) = 0;
};

// Sleeps for the duration against an absolute deadline on the monotonic clock, with the
// thread's timer slack lowered so that a 5 ms pause is not stretched by the scheduler.
class SleepPacer final : public Pacer {
public:
    void pause(std::chrono::microseconds duration) override;
};

// The process-wide sleeping pacer.
Pacer& sleepPacer();

inline constexpr std::chrono::microseconds kReportPause{5000};

}  // namespace qx9
