#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

#include "hid/device_comm.h"
#include "sender/keyboard_sender.h"

namespace qx9 {

// The keyboard's sender for the window: one thread of its own does everything that touches the
// keyboard, so that the thread of the interface never waits for it.
//
// A change is stored first, then asks for its blocks here; send() returns at once. The thread
// sends the requests in the order they were made, each built from the database when it is
// sent, through a connection of its own. A request for a block that is still waiting replaces
// it and takes its place at the end of the queue (the latest change decides which lighting the
// keyboard shows). While a control is dragged, the backlight effect is sent when the changes
// settle, at most every kMaxHold: a drag costs a few transactions, not one per step.
class QueuedSender final : public KeyboardSender {
public:
    // Called on the sender's thread.
    struct Events {
        // A request was sent (or not): its result.
        std::function<void(const BlockRequest&, const SendResult&)> finished;
        // Reports sent of the current send, and the requests still waiting behind it.
        std::function<void(std::size_t done, std::size_t total, std::size_t waiting)> progress;
    };

    static constexpr std::chrono::milliseconds kSettle{60};
    static constexpr std::chrono::milliseconds kMaxHold{200};
    static constexpr std::chrono::milliseconds kBurst{150};

    QueuedSender(std::filesystem::path databaseFile, Pacer* pacer, std::shared_ptr<WireSink> wire, Events events);
    // Finishes what is queued (finish(kCloseTimeout)), then stops.
    ~QueuedSender() override;
    QueuedSender(const QueuedSender&) = delete;
    QueuedSender& operator=(const QueuedSender&) = delete;

    SendResult send(const std::vector<BlockRequest>& blocks) override;

    // The keyboard to send to, opened on the sender's thread; null: none (nothing is sent).
    void setDevice(HidDeviceRef device) override;
    // Present or not: while absent every send fails at once without touching the device.
    void setPresent(bool present) override;

    // Requests waiting to be sent (not counting one being sent).
    std::size_t waiting();
    // Nothing queued or being sent.
    bool idle();

    // Waits until nothing is queued or being sent, at most `timeout`; false when time ran out.
    bool finish(std::chrono::milliseconds timeout);
    // Drops what is still queued (the transaction under way ends as it ends); how many requests.
    std::size_t abandon();
    static constexpr std::chrono::milliseconds kCloseTimeout{10000};

private:
    using Clock = std::chrono::steady_clock;
    struct Entry {
        BlockRequest request;
        Clock::time_point first;  // when the oldest request it stands for was made
        Clock::time_point last;   // when the newest was
        bool merged = false;
    };
    struct Job {
        std::function<void()> work;
    };

    void loop();
    // When the front request may be sent (now, unless a drag is still going on).
    Clock::time_point sendAt(const Entry& entry) const;
    void sendOne(const BlockRequest& request);

    const std::filesystem::path databaseFile_;
    Pacer* pacer_;
    std::shared_ptr<WireSink> wire_;
    Events events_;

    std::mutex mutex_;
    std::condition_variable wake_;
    std::condition_variable idle_;
    std::deque<Job> jobs_;       // device work, before any request
    std::deque<Entry> queue_;
    bool busy_ = false;
    bool flushing_ = false;      // finish() waits: no holding back
    bool stopping_ = false;
    Clock::time_point lastLightSend_{};

    // The sender's thread only.
    std::unique_ptr<DeviceComm> comm_;
    std::unique_ptr<DeviceSQLite> db_;

    std::atomic<bool> present_{true};
    std::thread thread_;
};

}  // namespace qx9
