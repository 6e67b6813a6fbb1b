// Macro download: directory, bodies, inserted pauses, report count, capacity.
#include <gtest/gtest.h>

#include "protocol/macro_download.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

using protocol::buildMacroBlock;
using protocol::MacroDownloadInput;
using protocol::MacroWithEvents;

RecordInfo ev(std::int64_t type, std::int64_t value) {
    return {.recordType = type, .recordValue = value, .recordDesc = {}};
}
RecordInfo down(int code) { return ev(kRecordKeyDown, code); }
RecordInfo up(int code) { return ev(kRecordKeyUp, code); }
RecordInfo delay(int ms) { return ev(kRecordDelay, ms); }

MacroWithEvents macro(std::vector<RecordInfo> events) { return {MacroInfo{}, std::move(events)}; }

MacroDownloadInput inputOf(std::vector<MacroWithEvents> macros) {
    MacroDownloadInput in;
    for (const auto& m : macros) in.storedEventCount += static_cast<std::int64_t>(m.events.size());
    in.listedMacroCount = static_cast<std::int64_t>(macros.size());
    in.macros = std::move(macros);
    return in;
}

struct BlockCase {
    const char* name;
    std::vector<MacroWithEvents> macros;
    int reports;
    std::vector<std::pair<std::size_t, const char*>> bytes;  // every non-zero byte but the trailer
};

const BlockCase kBlocks[] = {
    {"NoMacros", {}, 8, {}},
    {"OnlyEmptyMacros", {macro({}), macro({})}, 8, {{0, "FF FF FF FF FF FF FF FF"}}},
    {"KeyDownUpGetsAPause", {macro({down(4), up(4)})}, 8,
     {{0, "90 01"}, {400, "03"}, {408, "00 00 04 B0 0A 00 00 50 00 00 04 30"}}},
    {"DelayReplacesThePause", {macro({down(4), delay(100), up(4)})}, 8,
     {{0, "90 01"}, {400, "03"}, {408, "00 00 04 B0 64 00 00 50 00 00 04 30"}}},
    {"NoPauseBeforeTheFirstOrAfterTheLast", {macro({delay(1000), down(5), delay(300)})}, 8,
     {{0, "90 01"}, {400, "03"}, {408, "E8 03 00 50 00 00 05 B0 2C 01 00 50"}}},
    {"EmptyMacroBetweenTwo", {macro({down(4), up(4)}), macro({}), macro({down(5)})}, 8,
     {{0, "90 01 00 00 FF FF FF FF A4 01"}, {400, "03"}, {408, "00 00 04 B0 0A 00 00 50 00 00 04 30"},
      {420, "01"}, {428, "00 00 05 B0"}}},
    // left 1, middle 4, right 2; a button 4 and an event of type 9 take positions, zero bytes
    {"MouseButtonsAndUnknownEvents",
     {macro({ev(kRecordMouseDown, 1), ev(kRecordMouseUp, 2), ev(kRecordMouseDown, 3), ev(kRecordMouseUp, 4),
             ev(9, 4)})},
     8,
     {{0, "90 01"}, {400, "09"},
      {408, "00 00 01 90 0A 00 00 50 00 00 04 10 0A 00 00 50 00 00 02 90 0A 00 00 50 00 00 00 00 "
            "0A 00 00 50 00 00 00 00"}}},
};

TEST(MacroBlock, Layout) {
    for (const BlockCase& c : kBlocks) {
        const auto block = buildMacroBlock(c.macros);
        const int end = 64 * c.reports;
        Bytes expected = sparse({{end - 2, 0xAA}, {end - 1, 0x55}}, protocol::kMacroBlockSize);
        for (const auto& [offset, hex] : c.bytes) put(expected, offset, hex);
        EXPECT_EQ(block.reports, c.reports) << c.name;
        EXPECT_EQ(block.bytes, expected) << c.name;
    }
}

TEST(MacroBlockReportCount, UsedLengthOnAReportBoundaryAddsAWholeReport) {
    struct Case {
        int pairs;  // (down, delay) pairs: 2 entries each
        std::size_t length;
        int reports;
    };
    // L = 408 + 8 × pairs.
    for (const Case c : {Case{13, 512, 9}, Case{12, 504, 9}, Case{14, 520, 10}, Case{5, 448, 8}}) {
        std::vector<RecordInfo> events;
        for (int i = 0; i < c.pairs; ++i) events.insert(events.end(), {down(4), delay(5)});
        const auto block = buildMacroBlock({macro(events)});
        EXPECT_EQ(block.usedLength, c.length) << c.pairs;
        EXPECT_EQ(block.reports, c.reports) << c.pairs;
        EXPECT_EQ(Bytes(block.bytes.begin() + 64 * c.reports - 2, block.bytes.begin() + 64 * c.reports),
                  (Bytes{0xAA, 0x55})) << c.pairs;
    }
}

TEST_F(WireFixture, MacroTransactionOpensWith19AndSendsTheBlock) {
    const auto input = inputOf({macro({down(4), up(4)})});
    send(protocol::macroTransaction(input));
    Bytes block = sparse({{510, 0xAA}, {511, 0x55}}, 512);
    put(block, 0, "90 01");
    put(block, 400, "03 00 00 00 00 00 00 00 00 00 04 B0 0A 00 00 50 00 00 04 30");
    EXPECT_TRUE(wireMatches(recorder_->events,
                            {Step::command("04 19"), Step::command("04 15 00 00 00 00 00 00 08"), Step::pause(),
                             Step::block(block), Step::pause(), Step::command("04 02")}));
}

TEST_F(WireFixture, CapacityIsCheckedBeforeAnythingIsSent) {
    struct Case {
        std::int64_t events, macros;
        bool sent;
    };
    // 4 bytes an event and 8 a macro, 2500 in all: exactly 2500 still fits.
    for (const Case c : {Case{600, 13, false}, Case{600, 12, true}, Case{623, 1, true}, Case{624, 1, false},
                         Case{0, 313, false}, Case{0, 312, true}}) {
        clearWire();
        MacroDownloadInput in;
        in.storedEventCount = c.events;
        in.listedMacroCount = c.macros;
        send(protocol::macroTransaction(in));
        EXPECT_EQ(!sets().empty(), c.sent) << c.events << " events, " << c.macros << " macros";
    }
    // 400 key events without delays need 799 entries with their pauses: more than the block
    // holds although the capacity check passes.
    clearWire();
    std::vector<RecordInfo> events;
    for (int i = 0; i < 200; ++i) events.insert(events.end(), {down(4), up(4)});
    const auto input = inputOf({macro(events)});
    ASSERT_TRUE(protocol::macrosFitKeyboard(input.storedEventCount, input.listedMacroCount));
    send(protocol::macroTransaction(input));
    EXPECT_TRUE(recorder_->events.empty());
}

}  // namespace
}  // namespace qx9::test
