#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "hid/device_comm.h"

namespace qx9::protocol {

// Command codes of the write transaction.
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

inline constexpr std::uint8_t kTrailer0 = 0xAA;
inline constexpr std::uint8_t kTrailer1 = 0x55;

// The command buffer of one transaction: 65 bytes, of which 0–63 are sent. One buffer serves
// every command report of the transaction, and bytes that a step does not set keep the value
// an earlier step gave them (the end report of the system-function transaction thus still
// carries byte 2 = 1). Without a transport (no keyboard since start) nothing is sent.
class CommandFrame {
public:
    explicit CommandFrame(DeviceComm* comm) : comm_(comm) {}

    // Byte 0 = 0x04, byte 1 = `code`, and send with acknowledgement.
    void send(std::uint8_t code);
    // Byte 0 = 0x04, byte 1 = `code`, byte 8 = `dataReports`, and send with acknowledgement.
    void send(std::uint8_t code, std::uint8_t dataReports);
    void setParameter(std::uint8_t value) { buffer_[2] = value; }

    const std::array<std::uint8_t, 65>& buffer() const { return buffer_; }

private:
    void transmit();
    DeviceComm* comm_;
    std::array<std::uint8_t, 65> buffer_{};
};

// A one-report payload, written raw: when the keyboard is present, a pause and one set of the
// first 64 bytes, without acknowledgement; the result is ignored.
void sendRawDataReport(DeviceComm* comm, std::span<const std::uint8_t> report);

// A multi-report payload: the block write of `reports` reports (length (reports + 1) × 64).
void sendDataBlock(DeviceComm* comm, std::span<const std::uint8_t> block, int reports);

}  // namespace qx9::protocol
