#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

#include "protocol/transaction.h"

namespace qx9::protocol {

// Command codes of the write transaction (byte 1 of a command report).
enum CommandCode : std::uint8_t {
    kOpen = 0x18,
    kOpenMacro = 0x19,
    kKeyMappingHeader = 0x11,
    kFnKeyMappingHeader = 0x27,
    kLightModeHeader = 0x13,
    kMacroHeader = 0x15,
    kSystemFunctionHeader = 0x17,
    kKeyColourHeader = 0x23,
    kEnd = 0x02,
    kClose = 0xF0,
};

// A command report: report ID, command code, a parameter, and the number of data reports that
// follow a header (0 on the end report).
inline constexpr std::size_t kFrameReportIdByte = 0;
inline constexpr std::size_t kFrameCodeByte = 1;
inline constexpr std::size_t kFrameParameterByte = 2;
inline constexpr std::size_t kFrameDataReportsByte = 8;
inline constexpr std::uint8_t kNoDataReports = 0;
// The most data reports one header can announce.
inline constexpr std::size_t kMaxDataReports = std::numeric_limits<std::uint8_t>::max();
static_assert(kFrameDataReportsByte < kReportLength);

// Buffers of command and one-report payloads hold one byte more than a report; the first 64
// are sent.
inline constexpr std::size_t kReportBufferLength = kReportLength + 1;
using ReportBuffer = std::array<std::uint8_t, kReportBufferLength>;

// Every payload ends in the two trailer bytes.
inline constexpr std::uint8_t kTrailer0 = 0xAA;
inline constexpr std::uint8_t kTrailer1 = 0x55;
inline constexpr std::size_t kTrailerLength = 2;

// Writes the trailer at `offset` and the byte after it.
inline void putTrailer(std::span<std::uint8_t> bytes, std::size_t offset) {
    bytes[offset] = kTrailer0;
    bytes[offset + 1] = kTrailer1;
}

// Where the trailer goes in a payload of `reports` whole reports: its last two bytes.
constexpr std::size_t trailerOffset(std::size_t reports) {
    return reports * kReportLength - kTrailerLength;
}

// Mouse button bits, as key records and macro events both carry them.
inline constexpr std::uint8_t kMouseLeftButton = 0x01;
inline constexpr std::uint8_t kMouseRightButton = 0x02;
inline constexpr std::uint8_t kMouseMiddleButton = 0x04;
inline constexpr std::uint8_t kMouseButton4 = 0x08;
inline constexpr std::uint8_t kMouseButton5 = 0x10;

// Builds one transaction around its command buffer: 65 bytes, of which 0–63 are sent. One
// buffer serves every command report of the transaction, and bytes that a step does not set
// keep the value an earlier step gave them (the end report of the system-function transaction
// thus still carries byte 2 = 1).
class CommandFrame {
public:
    explicit CommandFrame(Transaction& transaction) : transaction_(transaction) {}

    // Byte 0 = report ID 4, byte 1 = `code`: a command report with acknowledgement.
    void send(std::uint8_t code);
    // Byte 0 = report ID 4, byte 1 = `code`, byte 8 = `dataReports`.
    void send(std::uint8_t code, std::uint8_t dataReports);
    void setParameter(std::uint8_t value) { buffer_[kFrameParameterByte] = value; }

    // A one-report payload, written raw (no acknowledgement): its first 64 bytes.
    void sendRawDataReport(std::span<const std::uint8_t> report);
    // A multi-report payload: the first `reports` reports of `block`, without read-back.
    void sendDataBlock(std::span<const std::uint8_t> block, int reports);
    void pause();

    const ReportBuffer& buffer() const { return buffer_; }

private:
    Transaction& transaction_;
    ReportBuffer buffer_{};
};

}  // namespace qx9::protocol
