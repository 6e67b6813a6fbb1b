#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "protocol/command_frame.h"
#include "store/records.h"

namespace qx9::protocol {

// The key-mapping table: a 4-byte record per key slot, at 4 × the key's "key_index". Nine
// reports of it are sent; the buffer is longer.
inline constexpr std::size_t kKeyRecordSize = 4;
inline constexpr int kKeyMappingReports = 9;
inline constexpr std::size_t kKeyMappingSentSize = kKeyMappingReports * kReportLength;
inline constexpr std::size_t kKeyMappingBlockSize = 780;
inline constexpr std::size_t kKeyMappingTrailerOffset = trailerOffset(kKeyMappingReports);
static_assert(kKeyMappingSentSize == 576 && kKeyMappingSentSize <= kKeyMappingBlockSize);
static_assert(kKeyMappingBlockSize % kKeyRecordSize == 0);

// Key codes of the store that the records translate: the modifiers (HID usages Left Control to
// Right GUI) and the application codes 500–517 of the consumer-control functions.
inline constexpr std::int64_t kFirstModifierCode = 0xE0;
inline constexpr std::int64_t kLastModifierCode = 0xE7;
inline constexpr std::int64_t kFirstApplicationCode = 500;
inline constexpr std::int64_t kApplicationCodeCount = 18;

using KeyMappingBlock = std::array<std::uint8_t, kKeyMappingBlockSize>;

// What a key-mapping download reads: the stored assignments of one profile and layer, in the
// store's order, and the macro headers in list order (a macro binding carries the macro's
// position). With no store both are empty and every key gets its own function back.
struct KeyMappingInput {
    std::vector<ProfileKey> keys;
    std::vector<MacroInfo> macros;
};

// A modifier code 224–231 as its bit 1 << (code − 224); other codes as they are. Codes
// outside a byte stop the program.
std::uint8_t modifierConversion(std::int64_t code);

// The consumer usage of an application code 500–517 (0 for any other code).
std::uint16_t consumerUsage(std::int64_t code);

// The whole table: each record at 4 × the key's "key_index" in the code map in force (a later
// record for the same key wins), trailer at 574–575.
KeyMappingBlock buildKeyMappingBlock(const KeyMappingInput& input);

// Open, header (0x11 for the base layer, 0x27 for any other), nine data reports, end; no
// close. Both the main controller and the custom key dialog send this same transaction.
Transaction keyMappingTransaction(std::int64_t fnlayer, const KeyMappingInput& input);

}  // namespace qx9::protocol
