#include "hid/report_descriptor.h"

#include <algorithm>
#include <array>
#include <vector>

namespace qx9 {

namespace {

enum ItemType { kMain = 0, kGlobal = 1, kLocal = 2, kReserved = 3 };
enum MainTag { kInput = 8, kOutput = 9, kCollection = 10, kFeature = 11, kEndCollection = 12 };
enum GlobalTag { kUsagePage = 0, kReportSize = 7, kReportId = 8, kReportCount = 9, kPush = 10, kPop = 11 };
enum LocalTag { kUsage = 0 };

// Usage pages whose input reports carry keystrokes.
constexpr std::uint32_t kKeyboardPage = 0x07;
constexpr std::uint32_t kConsumerPage = 0x0C;
bool keystrokePage(std::uint32_t page) { return page == kKeyboardPage || page == kConsumerPage; }

constexpr std::size_t kMaxPushDepth = 32;
constexpr std::size_t kMaxCollectionDepth = 256;
// More bits than any report can carry (the kernel's reports are far below 2^24 bits).
constexpr std::uint64_t kMaxReportBits = std::uint64_t{1} << 24;

struct GlobalState {
    std::uint32_t usagePage = 0;
    std::uint32_t reportSize = 0;
    std::uint32_t reportCount = 0;
    std::uint32_t reportId = 0;
};

struct Totals {
    // bits[kind][reportId], kind 0 input, 1 output, 2 feature
    std::array<std::array<std::uint64_t, 256>, 3> bits{};
    bool numbered = false;
    bool keystrokeInputs = false;
};

// Walks the items; false when the descriptor is malformed.
bool walk(std::span<const std::uint8_t> d, Totals& totals) {
    GlobalState global;
    std::vector<GlobalState> stack;
    std::size_t collectionDepth = 0;
    bool localKeystrokeUsage = false;  // a local usage since the last main item names a key page
    std::size_t i = 0;
    while (i < d.size()) {
        const std::uint8_t prefix = d[i];
        if (prefix == 0xFE) {  // long item: size, tag, data; carries nothing we need
            if (d.size() - i < 3) return false;
            const std::size_t dataSize = d[i + 1];
            if (d.size() - i - 3 < dataSize) return false;
            i += 3 + dataSize;
            continue;
        }
        static constexpr std::size_t kSizes[4] = {0, 1, 2, 4};
        const std::size_t size = kSizes[prefix & 0x03];
        const int type = (prefix >> 2) & 0x03;
        const int tag = prefix >> 4;
        if (d.size() - i - 1 < size) return false;
        std::uint32_t value = 0;
        for (std::size_t b = 0; b < size; ++b) value |= static_cast<std::uint32_t>(d[i + 1 + b]) << (8 * b);
        i += 1 + size;

        if (type == kGlobal) {
            switch (tag) {
                case kUsagePage: global.usagePage = value; break;
                case kReportSize: global.reportSize = value; break;
                case kReportCount: global.reportCount = value; break;
                case kReportId:
                    if (value == 0 || value > 255) return false;
                    global.reportId = value;
                    totals.numbered = true;
                    break;
                case kPush:
                    if (stack.size() >= kMaxPushDepth) return false;
                    stack.push_back(global);
                    break;
                case kPop:
                    if (stack.empty()) return false;
                    global = stack.back();
                    stack.pop_back();
                    break;
                default: break;
            }
        } else if (type == kMain) {
            int kind = -1;
            switch (tag) {
                case kInput: kind = 0; break;
                case kOutput: kind = 1; break;
                case kFeature: kind = 2; break;
                case kCollection:
                    if (++collectionDepth > kMaxCollectionDepth) return false;
                    break;
                case kEndCollection:
                    if (collectionDepth == 0) return false;
                    --collectionDepth;
                    break;
                default: break;
            }
            if (kind == 0 && (keystrokePage(global.usagePage) || localKeystrokeUsage)) totals.keystrokeInputs = true;
            localKeystrokeUsage = false;  // local items last until the next main item
            if (kind >= 0) {
                auto& bits = totals.bits[static_cast<std::size_t>(kind)][global.reportId];
                bits += static_cast<std::uint64_t>(global.reportSize) * global.reportCount;
                if (bits > kMaxReportBits) return false;
            }
        } else if (type == kLocal && tag == kUsage && size == 4 && keystrokePage(value >> 16)) {
            localKeystrokeUsage = true;  // an extended usage: page in the high half
        }
        // Other local items and reserved types carry nothing the sizes depend on.
    }
    return collectionDepth == 0;
}

std::int64_t bytesOf(std::uint64_t bits, bool numbered) {
    if (bits == 0) return 0;
    return static_cast<std::int64_t>((bits + 7) / 8) + (numbered ? 1 : 0);
}

}  // namespace

ReportSizes parseReportDescriptor(std::span<const std::uint8_t> descriptor) {
    Totals totals;
    if (!walk(descriptor, totals)) return {};
    ReportSizes sizes;
    sizes.valid = true;
    sizes.keystrokeInputs = totals.keystrokeInputs;
    std::int64_t* out[3] = {&sizes.input, &sizes.output, &sizes.feature};
    for (std::size_t kind = 0; kind < 3; ++kind) {
        for (std::uint64_t bits : totals.bits[kind]) {
            *out[kind] = std::max(*out[kind], bytesOf(bits, totals.numbered));
        }
    }
    return sizes;
}

std::int64_t featureReportSize(std::span<const std::uint8_t> descriptor, std::uint8_t reportId) {
    Totals totals;
    if (!walk(descriptor, totals)) return 0;
    return bytesOf(totals.bits[2][reportId], totals.numbered);
}

}  // namespace qx9
