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

// Waits for the duration against a deadline on the monotonic clock: sleeps until shortly before
// it (the thread's timer slack lowered, the wake-up lateness learnt) and waits out the rest on
// the clock, so that a 5 ms pause is never shorter and barely longer than 5 ms.
class SleepPacer final : public Pacer {
public:
    void pause(std::chrono::microseconds duration) override;
};

// The process-wide sleeping pacer.
Pacer& sleepPacer();

inline constexpr std::chrono::microseconds kReportPause{5000};

}  // namespace qx9
