#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace qx9 {

using Byte = std::uint8_t;
using Bytes = std::vector<Byte>;

// A value that must fit one byte of a report; anything outside 0–255 stops the program.
Byte checkedByte(std::int64_t value, std::string_view what);

// "04 18 00 …": two-digit upper-case hex separated by single spaces.
std::string hexString(std::span<const Byte> bytes);

// Parses whitespace-separated hex bytes ("04 18 0a"); false on anything else.
bool parseHexBytes(std::string_view text, Bytes& out);

// "[4, 24, 0, …]": the bracketed decimal list of the diagnostic lines.
std::string bracketedList(std::span<const Byte> bytes);

}  // namespace qx9
