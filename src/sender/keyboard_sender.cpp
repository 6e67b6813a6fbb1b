#include "sender/keyboard_sender.h"

#include "sender/blocks.h"

namespace qx9 {

static_assert(protocol::kReportLength == DeviceComm::kReportLength && protocol::kReportId == DeviceComm::kReportId);

bool runTransaction(DeviceComm& comm, const protocol::Transaction& transaction, const SendProgress& progress,
                    std::size_t reportsBefore, std::size_t reportsTotal) {
    const std::uint64_t failures = comm.failures();
    std::size_t done = reportsBefore;
    if (reportsTotal == 0) reportsTotal = reportsBefore + transaction.reportCount();
    const auto tell = [&] {
        if (progress) progress(++done, reportsTotal);
    };
    for (const protocol::TransactionStep& step : transaction.steps) {
        switch (step.kind) {
            case protocol::TransactionStep::kCommand:
                comm.sendDeviceData(step.bytes);
                tell();
                break;
            case protocol::TransactionStep::kRawReport:
                // Written directly, without acknowledgement, and only while the keyboard is there.
                if (comm.deviceStatus() != 0) {
                    comm.pause(kReportPause);
                    comm.setFeatureReport(step.bytes);
                }
                tell();
                break;
            case protocol::TransactionStep::kDataBlock:
                comm.sendDeviceData(step.bytes,
                                    static_cast<std::int64_t>(step.reports + 1) * static_cast<std::int64_t>(DeviceComm::kReportLength),
                                    tell);
                break;
            case protocol::TransactionStep::kPause: comm.pause(kReportPause); break;
        }
    }
    return comm.failures() == failures;
}

SendResult sendBlocks(DeviceComm& comm, const DeviceSQLite& db, std::span<const BlockRequest> blocks,
                      const SendProgress& progress) {
    if (blocks.empty()) return {};
    if (!db.isConnected()) return {SendResult::kNotSent, blocks.front().what() + " (the database cannot be read)"};
    // Another program's transaction on this keyboard ends before this one begins, and the
    // database is read after it: the last block sent is the database's.
    DeviceLock lock(comm.device(), kDeviceLockTimeout);
    if (!lock) {
        const HidDeviceRef device = comm.device();
        return {SendResult::kNotSent, blocks.front().what() + " (" + (device ? device->lastError() : "no keyboard") + ")"};
    }
    std::vector<BuiltBlock> built;
    {
        const DeviceSQLite::Transaction snapshot = db.beginRead();
        for (const BlockRequest& request : blocks) built.push_back(buildBlock(db, request));
    }
    std::size_t total = 0;
    for (const BuiltBlock& b : built) total += b.transaction.reportCount();
    SendResult result;
    std::size_t done = 0;
    for (std::size_t i = 0; i < built.size(); ++i) {
        if (!built[i].tooLarge.empty() && result.status == SendResult::kSent) {
            result = {SendResult::kTooLarge, built[i].tooLarge};
        }
        if (!runTransaction(comm, built[i].transaction, progress, done, total) && result.status != SendResult::kNotSent) {
            result = {SendResult::kNotSent, blocks[i].what()};
        }
        done += built[i].transaction.reportCount();
    }
    if (!lock.release() && result.status != SendResult::kNotSent) {
        result = {SendResult::kNotSent, blocks.front().what() + " (" + comm.device()->lastError() + ")"};
    }
    return result;
}

}  // namespace qx9
