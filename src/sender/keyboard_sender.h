#pragma once

#include <chrono>
#include <cstddef>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "hid/device_comm.h"
#include "protocol/transaction.h"
#include "sender/block_request.h"
#include "store/device_sqlite.h"

namespace qx9 {

// How a send ended.
struct SendResult {
    enum Status {
        kSent,      // every report reached the keyboard (or there is no keyboard to send to)
        kQueued,    // the sender will send it; its result comes later
        kNotSent,   // the keyboard did not take the whole transaction, or could not be had
        kTooLarge,  // the macros do not fit the keyboard's memory: nothing was sent
    };
    Status status = kSent;
    std::string message;  // for kNotSent and kTooLarge: what and why, in English
};

// The one way a change reaches the keyboard: it asks for the blocks it touched, after storing it.
class KeyboardSender {
public:
    virtual ~KeyboardSender() = default;
    // Asks for the blocks, in the order given.
    virtual SendResult send(const std::vector<BlockRequest>& blocks) = 0;
    // The keyboard to send to from now on (another one was plugged in).
    virtual void setDevice(HidDeviceRef device) = 0;
    // Present or not: while absent every send fails at once without touching the device.
    virtual void setPresent(bool present) = 0;
};

// How long a transaction waits for another program's transaction on the same keyboard.
inline constexpr std::chrono::milliseconds kDeviceLockTimeout{10000};

// Reports sent so far of those a send has built.
using SendProgress = std::function<void(std::size_t done, std::size_t total)>;

// Runs the steps on the keyboard: each command report with acknowledgement, each raw report
// after a pause when the keyboard is present, each block without read-back. True when every
// report reached the keyboard.
bool runTransaction(DeviceComm& comm, const protocol::Transaction& transaction, const SendProgress& progress = {},
                    std::size_t reportsBefore = 0, std::size_t reportsTotal = 0);

// Holds the keyboard for the whole of it, reads the database in one snapshot and sends each
// block as the database holds it then, in order.
SendResult sendBlocks(DeviceComm& comm, const DeviceSQLite& db, std::span<const BlockRequest> blocks,
                      const SendProgress& progress = {});

// Sends at once, on the calling thread, reading the connection the change was stored through
// (qx9ctl, and the tests of the page models).
class DirectSender final : public KeyboardSender {
public:
    DirectSender(DeviceComm& comm, const DeviceSQLite& db) : comm_(comm), db_(db) {}
    // With a transport of its own to `device`.
    DirectSender(HidDeviceRef device, const DeviceSQLite& db, Pacer* pacer, std::shared_ptr<WireSink> wire)
        : owned_(std::make_unique<DeviceComm>(std::move(device), pacer, std::move(wire))), comm_(*owned_), db_(db) {}
    SendResult send(const std::vector<BlockRequest>& blocks) override { return sendBlocks(comm_, db_, blocks); }
    void setDevice(HidDeviceRef device) override { comm_.setDevice(std::move(device)); }
    void setPresent(bool present) override { comm_.setDeviceStatus(present ? 1 : 0); }

private:
    std::unique_ptr<DeviceComm> owned_;
    DeviceComm& comm_;
    const DeviceSQLite& db_;
};

}  // namespace qx9
