#include "hid/wire_log.h"

#include "common/bytes.h"

namespace qx9 {

std::string formatWireLine(WireDirection direction, std::span<const std::uint8_t> bytes, bool ok) {
    std::string line = direction == WireDirection::Set ? "SET" : "GET";
    if (!bytes.empty()) {
        line += ' ';
        line += hexString(bytes);
    }
    if (!ok) line += " FAIL";
    return line;
}

void WireLogWriter::record(WireDirection direction, std::span<const std::uint8_t> bytes, bool ok) {
    const std::string line = formatWireLine(direction, bytes, ok);
    std::lock_guard lock(mutex_);
    out_ << line << '\n';
    out_.flush();
}

}  // namespace qx9
