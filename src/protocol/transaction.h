#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace qx9::protocol {

// Every report of a transaction is a 64-byte feature report with report ID 4.
inline constexpr std::size_t kReportLength = 64;
inline constexpr std::uint8_t kReportId = 4;

// One step of a write transaction, as the transport carries it out.
struct TransactionStep {
    enum Kind : std::uint8_t {
        kCommand,    // a command report, written with acknowledgement (the 65-byte buffer)
        kRawReport,  // a one-report payload: when the keyboard is present, a pause and one set
        kDataBlock,  // `reports` payload reports back to back, without read-back
        kPause,      // a pause of the builder itself (the macro download has two)
    };
    Kind kind = kCommand;
    std::vector<std::uint8_t> bytes;
    int reports = 0;
};

// The reports of one or more write transactions, built from plain inputs; nothing here talks
// to a device. The sender runs it on the keyboard.
struct Transaction {
    std::vector<TransactionStep> steps;

    void append(const Transaction& other) { steps.insert(steps.end(), other.steps.begin(), other.steps.end()); }
    // Reports the steps write: each command and raw report once, each block report once.
    std::size_t reportCount() const;
};

}  // namespace qx9::protocol
