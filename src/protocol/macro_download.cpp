#include "protocol/macro_download.h"

#include <optional>
#include <string>

#include "common/bytes.h"
#include "common/fatal.h"
#include "protocol/command_frame.h"

namespace qx9::protocol {

namespace {

// Button bits of the stored mouse buttons 1 left, 2 middle, 3 right.
int mouseButtonBit(std::int64_t value) {
    switch (value) {
        case 1:
            return kMouseLeftButton;
        case 2:
            return kMouseMiddleButton;
        case 3:
            return kMouseRightButton;
        default: return -1;
    }
}

class BlockWriter {
public:
    explicit BlockWriter(std::vector<std::uint8_t>& bytes) : bytes_(bytes) {}
    void put(std::size_t offset, std::uint8_t b0, std::uint8_t b1, std::uint8_t b2, std::uint8_t b3) {
        if (!check(offset + kMacroEntrySize)) return;
        bytes_[offset] = b0;
        bytes_[offset + 1] = b1;
        bytes_[offset + 2] = b2;
        bytes_[offset + 3] = b3;
    }
    void put16(std::size_t offset, std::size_t value) {
        if (!check(offset + 2)) return;
        bytes_[offset] = static_cast<std::uint8_t>(value & 0xFF);
        bytes_[offset + 1] = static_cast<std::uint8_t>((value >> 8) & 0xFF);
    }

    bool overflowed() const { return overflowed_; }

private:
    bool check(std::size_t end) {
        if (end > bytes_.size()) overflowed_ = true;
        return !overflowed_;
    }
    std::vector<std::uint8_t>& bytes_;
    bool overflowed_ = false;
};

}  // namespace

bool macrosFitKeyboard(std::int64_t storedEventCount, std::int64_t listedMacroCount) {
    return macroMemoryBytes(storedEventCount, listedMacroCount) <= kMacroCapacity;
}

std::optional<MacroBlock> tryBuildMacroBlock(const std::vector<MacroWithEvents>& macros) {
    MacroBlock block;
    block.bytes.assign(kMacroBlockSize, 0);
    BlockWriter out(block.bytes);
    std::size_t o = kMacroBodiesStart;

    for (std::size_t k = 0; k < macros.size(); ++k) {
        const auto& events = macros[k].events;
        const std::size_t slot = kMacroSlotSize * k;
        if (events.empty()) {
            out.put(slot, kEmptyMacroSlotByte, kEmptyMacroSlotByte, kEmptyMacroSlotByte,
                    kEmptyMacroSlotByte);
            continue;
        }
        out.put16(slot, o);
        std::size_t e = 0;
        bool previousWasDelay = false;
        for (const RecordInfo& ev : events) {
            const auto entry = [&] { return o + kMacroBodyHeaderSize + kMacroEntrySize * e; };
            if (ev.recordType == kRecordDelay) {
                const auto ms = static_cast<std::uint64_t>(ev.recordValue);
                out.put(entry(), static_cast<std::uint8_t>(ms & 0xFF),
                        static_cast<std::uint8_t>((ms >> 8) & 0xFF), 0, kEntryDelay);
                previousWasDelay = true;
            } else {
                if (e > 0 && !previousWasDelay) {
                    out.put(entry(), kEventPauseMs, 0, 0, kEntryDelay);
                    ++e;
                }
                switch (ev.recordType) {
                    case kRecordKeyDown:
                        out.put(entry(), 0, 0, checkedByte(ev.recordValue, "macro key code"),
                                kEntryKeyDown);
                        break;
                    case kRecordKeyUp:
                        out.put(entry(), 0, 0, checkedByte(ev.recordValue, "macro key code"),
                                kEntryKeyUp);
                        break;
                    case kRecordMouseDown:
                    case kRecordMouseUp:
                        if (const int bit = mouseButtonBit(ev.recordValue); bit >= 0) {
                            out.put(entry(), 0, 0, static_cast<std::uint8_t>(bit),
                                    ev.recordType == kRecordMouseDown ? kEntryMouseDown
                                                                      : kEntryMouseUp);
                        }
                        break;
                    default:
                        break;  // takes its position, leaving four zero bytes
                }
                previousWasDelay = false;
            }
            ++e;
        }
        out.put16(o, e);
        o += kMacroBodyHeaderSize + kMacroEntrySize * e;
    }

    block.usedLength = o;
    // Whole reports up to the end of the last body and one more, which ends in the trailer.
    constexpr std::size_t kReport = kReportLength;
    const std::size_t n = o % kReport == 0 ? o / kReport + 1 : o / kReport + 2;
    if (out.overflowed() || n > kMaxDataReports || kReport * n > kMacroBlockSize)
        return std::nullopt;
    block.reports = static_cast<int>(n);
    putTrailer(block.bytes, trailerOffset(n));
    return block;
}

MacroBlock buildMacroBlock(const std::vector<MacroWithEvents>& macros) {
    auto block = tryBuildMacroBlock(macros);
    if (!block) fatalError("the macros do not fit the macro block");
    return std::move(*block);
}

std::optional<Transaction> macroTransaction(const MacroDownloadInput& input) {
    if (!macrosFitKeyboard(input.storedEventCount, input.listedMacroCount)) return std::nullopt;
    // The inserted pauses are not counted by the capacity check, so a long macro without
    // delays can pass it and still not fit the block: that is over capacity too, and the
    // block is laid out before the transaction opens so that nothing at all is sent.
    const std::optional<MacroBlock> built = tryBuildMacroBlock(input.macros);
    if (!built) return std::nullopt;
    const MacroBlock& block = *built;

    Transaction transaction;
    CommandFrame frame(transaction);
    frame.send(kOpenMacro);
    frame.send(kMacroHeader, static_cast<std::uint8_t>(block.reports));
    frame.pause();
    frame.sendDataBlock(block.bytes, block.reports);
    frame.pause();
    frame.send(kEnd, kNoDataReports);
    return transaction;
}

}  // namespace qx9::protocol
