#include "hid/report_descriptor.h"

#include <algorithm>
#include <array>
#include <vector>

namespace qx9 {

namespace {

enum ItemType { kMain = 0, kGlobal = 1, kLocal = 2, kReserved = 3 };
enum MainTag { kInput = 8, kOutput = 9, kCollection = 10, kFeature = 11, kEndCollection = 12 };
enum GlobalTag { kUsagePage = 0, kReportSize = 7, kReportId = 8, kReportCount = 9, kPush = 10, kPop = 11 };
enum LocalTag { kUsage = 0, kUsageMinimum = 1, kUsageMaximum = 2 };

// Usages whose input reports carry keystrokes: every usage of the Keyboard/Keypad and Consumer
// pages, and the System Control keys (power, sleep, wake, …) of the Generic Desktop page.
constexpr std::uint32_t kGenericDesktopPage = 0x01;
constexpr std::uint32_t kKeyboardPage = 0x07;
constexpr std::uint32_t kConsumerPage = 0x0C;
constexpr std::uint32_t kFirstSystemControl = 0x80;
constexpr std::uint32_t kLastSystemControl = 0xB7;
constexpr std::uint32_t kLastUsageId = 0xFFFF;
bool keystrokePage(std::uint32_t page) { return page == kKeyboardPage || page == kConsumerPage; }
bool keystrokeUsages(std::uint32_t page, std::uint32_t first, std::uint32_t last) {
    if (keystrokePage(page)) return true;
    return page == kGenericDesktopPage && first <= kLastSystemControl && last >= kFirstSystemControl;
}

// A usage or a range of them given by local items since the last main item. A short usage takes
// the usage page in force; that page may be given before the usages or after them (before the
// main item), so both are looked at. An extended (4-byte) usage carries its page in the high half.
struct LocalUsage {
    bool extended = false;
    std::uint32_t page = 0;  // the usage's own page, or the usage page in force when it was given
    std::uint32_t first = 0, last = 0;
    bool openRange = false;  // a Usage Minimum still waiting for its Maximum
};
constexpr std::size_t kMaxLocalUsages = 4096;

// Records a Usage, Usage Minimum or Usage Maximum. A minimum opens a range up to the last usage ID
// until its maximum closes it; a maximum without a minimum is a range from 0.
bool addLocalUsage(std::vector<LocalUsage>& usages, int tag, std::size_t size, std::uint32_t value, std::uint32_t pageInForce) {
    if (usages.size() >= kMaxLocalUsages) return false;
    LocalUsage usage;
    usage.extended = size == 4;
    usage.page = usage.extended ? value >> 16 : pageInForce;
    const std::uint32_t id = usage.extended ? value & kLastUsageId : value;
    usage.first = usage.last = id;
    if (tag == kUsageMinimum) {
        usage.last = kLastUsageId;
        usage.openRange = true;
    } else if (tag == kUsageMaximum) {
        if (!usages.empty() && usages.back().openRange) {
            LocalUsage& range = usages.back();
            range.openRange = false;
            range.last = std::max(range.first, id);
            range.first = std::min(range.first, id);
            if (range.page == usage.page && range.extended == usage.extended) return true;
        }
        usage.first = 0;  // on another page than its minimum, or alone
    }
    usages.push_back(usage);
    return true;
}

bool carriesKeystrokes(std::uint32_t pageInForce, const std::vector<LocalUsage>& usages) {
    if (keystrokePage(pageInForce)) return true;
    return std::any_of(usages.begin(), usages.end(), [&](const LocalUsage& u) {
        return keystrokeUsages(u.page, u.first, u.last) || (!u.extended && keystrokeUsages(pageInForce, u.first, u.last));
    });
}

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
    std::vector<LocalUsage> usages;  // local items last until the next main item
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
            if (kind == 0 && carriesKeystrokes(global.usagePage, usages)) totals.keystrokeInputs = true;
            usages.clear();
            if (kind >= 0) {
                auto& bits = totals.bits[static_cast<std::size_t>(kind)][global.reportId];
                bits += static_cast<std::uint64_t>(global.reportSize) * global.reportCount;
                if (bits > kMaxReportBits) return false;
            }
        } else if (type == kLocal && (tag == kUsage || tag == kUsageMinimum || tag == kUsageMaximum)) {
            if (!addLocalUsage(usages, tag, size, value, global.usagePage)) return false;
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
