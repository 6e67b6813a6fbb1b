#pragma once

#include <cstdint>
#include <mutex>
#include <ostream>
#include <span>
#include <string>

namespace qx9 {

enum class WireDirection { Set, Get };

// Receives every platform call of the transport.
class WireSink {
public:
    virtual ~WireSink() = default;
    // `bytes` is what was sent (SET) or what was read (GET); `ok` is the platform's result.
    virtual void record(WireDirection direction, std::span<const std::uint8_t> bytes, bool ok) = 0;
};

// One line per call: "SET 04 18 00 …" or "GET 04 18 00 …" with the bytes as two-digit
// upper-case hex separated by single spaces. A call that the platform refused carries the
// suffix " FAIL" after the bytes.
std::string formatWireLine(WireDirection direction, std::span<const std::uint8_t> bytes, bool ok);

// Writes the lines to a stream, flushing each so that a log survives a crash.
class WireLogWriter final : public WireSink {
public:
    explicit WireLogWriter(std::ostream& out) : out_(out) {}
    void record(WireDirection direction, std::span<const std::uint8_t> bytes, bool ok) override;

private:
    std::ostream& out_;
    std::mutex mutex_;
};

}  // namespace qx9
