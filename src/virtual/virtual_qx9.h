#pragma once

#include <cstdint>
#include <memory>
#include <condition_variable>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "hid/hid_backend.h"
#include "hid/hid_device.h"
#include "virtual/virtual_qx9_memory.h"

namespace qx9 {

// A QX9 configuration interface that lives in the process. It takes the same feature reports
// as the keyboard, answers each acknowledgement read with the last command report it took
// (byte 3 = 0x00, or 0xFF while told to be busy), and keeps what the transactions carried in
// its memory. Faults can be injected for tests: busy reads, a failing set, vanishing.
//
// The keyboard follows the transaction: a header (0x11, 0x27, 0x13, 0x15, 0x17, 0x23) announces
// byte 8 data reports; the reports that follow are data until that many have arrived. A block
// that is cut short (a report lost, then the next command report) is dropped. A command report
// is taken when the next read acknowledges it; a busy answer drops it, as the keyboard does.
//
// Its calls may come from any thread. With a state file shared (shareState), it is one keyboard
// for every process that shares the file: each hold (lockExclusive) takes a lock file beside
// the state file, reads the memory from it, and unlock() writes the memory back.
class VirtualQX9 final : public HidBackend {
public:
    explicit VirtualQX9(std::string identity = {});

    // HidBackend
    std::string identity() const override { return identity_; }
    std::int64_t productId() const override { return kQX9ProductId; }
    bool open() override;
    void close() override;
    bool isOpen() const override;
    bool setFeatureReport(std::uint8_t reportId, const std::uint8_t* data, std::size_t length) override;
    bool getFeatureReport(std::uint8_t reportId, std::uint8_t* data, std::size_t& length) override;
    bool lockExclusive(std::chrono::milliseconds timeout) override;
    bool unlock() override;
    std::string lastError() const override;

    // Faults.
    enum class SetFault {
        kFail,       // that set fails
        kVanish,     // that set and every call after it fail (the keyboard unplugged)
        kBusyOnce,   // the reads after it answer busy once (the resend cures it)
        kBusyTwice,  // … twice (the resend does not)
    };
    void setBusyReads(int count);  // the next `count` reads answer busy
    void failSetAt(int k, SetFault fault = SetFault::kFail);  // at the k-th set from now
    void vanish();                 // every call fails from now on
    void reappear();

    // Memory (any command report still waiting for its acknowledgement is taken first).
    VirtualQX9Memory memory();
    void setMemory(VirtualQX9Memory memory);
    bool saveState(const std::string& path, std::string& error);
    bool loadState(const std::string& path, std::string& error);
    // Makes `path` the keyboard's memory for every process that shares it: it is read now (when
    // it exists) and at every hold, and written at the end of every hold. False when it exists
    // and cannot be read.
    bool shareState(const std::string& path, std::string& error);

    std::uint64_t setCount() const;
    std::uint64_t getCount() const;

private:
    using Report = std::vector<std::uint8_t>;
    void takePendingCommand();
    void takeCommand(const Report& report);
    void takeData(const Report& report);
    void applyBlock();
    static bool looksLikeFrameCommand(const Report& report);
    bool loadStateLocked(const std::string& path, std::string& error);
    void releaseHold();
    bool saveStateLocked(const std::string& path, std::string& error);

    mutable std::mutex mutex_;      // every field below
    std::mutex holdMutex_;          // the exclusive hold within this process:
    std::condition_variable holdFree_;
    bool held_ = false;
    std::string sharedState_;       // the shared state file, empty when none
    int sharedLockFd_ = -1;         // its lock file while held

    std::string identity_;
    bool open_ = false;
    bool vanished_ = false;
    int busyReads_ = 0;
    int failSetAt_ = 0;
    SetFault setFault_ = SetFault::kFail;
    int setsSinceArmed_ = 0;
    std::string lastError_;
    std::uint64_t setCount_ = 0;
    std::uint64_t getCount_ = 0;

    std::optional<Report> pendingCommand_;
    Report lastCommand_ = Report(static_cast<std::size_t>(kQX9FeatureSize), 0);
    std::uint8_t blockCode_ = 0;
    int expectedReports_ = 0;
    Report blockData_;

    VirtualQX9Memory memory_;
};

// The device record of a virtual QX9, as the monitor would report a real one.
HIDDevice virtualQX9Record(std::shared_ptr<VirtualQX9> keyboard);

}  // namespace qx9
