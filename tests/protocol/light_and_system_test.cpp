// Light-mode and system-function transactions: the two one-report payloads.
#include <gtest/gtest.h>

#include "protocol/light_mode.h"
#include "protocol/system_function.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

using protocol::SendLightModeData;
using protocol::SendSystemFunctionData;

// The default record of a new profile: colour CA 51 00, random on, brightness 15, speed 12,
// direction 3 for mode 10 and 0 otherwise.
LightRecord defaultRecord(int mode) {
    return {0, 0xCA, 0x51, 0, 0, 0, 0, 0, 1, 0x0F, 0x0C, static_cast<std::uint8_t>(mode == 10 ? 3 : 0)};
}

struct LightCase {
    const char* name;
    std::int64_t mode;
    std::optional<LightRecord> record;
    const char* data;  // the raw data report as it must appear on the wire
};

void PrintTo(const LightCase& c, std::ostream* os) { *os << c.name; }

class LightModeTransaction : public WireFixture, public ::testing::WithParamInterface<LightCase> {};

TEST_P(LightModeTransaction, WireSequence) {
    const LightCase& c = GetParam();
    SendLightModeData(comm_.get(), c.mode, c.record);
    EXPECT_TRUE(wireMatches(recorder_->events, {
                                                   Step::command("04 18"),
                                                   Step::command("04 13 00 00 00 00 00 00 01"),
                                                   Step::raw(report(c.data)),
                                                   Step::command("04 02"),
                                                   Step::command("04 F0"),
                                               }));
    const auto stored = decodeLightMode(keyboard_->memory());
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->mode, c.mode);
}

INSTANTIATE_TEST_SUITE_P(
    Records, LightModeTransaction,
    ::testing::Values(
        LightCase{"CloseBacklightDefault", 0, defaultRecord(0), "00 CA 51 00 00 00 00 00 01 0F 0C 00 00 00 AA 55"},
        LightCase{"Mode10DefaultDirection", 10, defaultRecord(10), "0A CA 51 00 00 00 00 00 01 0F 0C 03 00 00 AA 55"},
        LightCase{"BrightnessSentWhole", 4, LightRecord{0, 1, 2, 3, 0, 0, 0, 0, 0, 0x3F, 0xFF, 1},
                  "04 01 02 03 00 00 00 00 00 3F FF 01 00 00 AA 55"},
        LightCase{"RecordBytes0And4To7NotSent", 12, LightRecord{0x99, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11},
                  "0C 01 02 03 00 00 00 00 08 09 0A 0B 00 00 AA 55"},
        LightCase{"NoRecord", 20, std::nullopt, "14 00 00 00 00 00 00 00 00 00 00 00 00 00 AA 55"},
        LightCase{"ModeOutsideCatalogueButInAByte", 255, std::nullopt, "FF 00 00 00 00 00 00 00 00 00 00 00 00 00 AA 55"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(WireFixture, LightModeWithoutTransportOrKeyboardSendsNothing) {
    SendLightModeData(nullptr, 3, defaultRecord(3));
    comm_->setDeviceStatus(0);
    SendLightModeData(comm_.get(), 3, defaultRecord(3));
    EXPECT_TRUE(recorder_->events.empty());
}

struct SystemCase {
    const char* name;
    protocol::SystemSwitches switches;
    protocol::SystemStoredValues stored;
    const char* data;  // bytes 0–6 of the record; 62–63 always AA 55
};

void PrintTo(const SystemCase& c, std::ostream* os) { *os << c.name; }

class SystemFunctionTransaction : public WireFixture,
                                  public ::testing::WithParamInterface<SystemCase> {};

TEST_P(SystemFunctionTransaction, WireSequence) {
    const SystemCase& c = GetParam();
    SendSystemFunctionData(comm_.get(), c.switches, &c.stored);
    Bytes record = report(c.data);
    record[62] = 0xAA;
    record[63] = 0x55;
    // The end report still carries byte 2 = 1 from the header; no close report follows.
    EXPECT_TRUE(wireMatches(recorder_->events, {
                                                   Step::command("04 18"),
                                                   Step::command("04 17 01 00 00 00 00 00 01"),
                                                   Step::raw(record),
                                                   Step::command("04 02 01"),
                                               }));
    const auto stored = decodeSystemFunctions(keyboard_->memory());
    ASSERT_TRUE(stored);
    EXPECT_EQ(stored->gameMode, c.switches.gameMode ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    Settings, SystemFunctionTransaction,
    ::testing::Values(
        SystemCase{"Defaults", {}, {"0", "0"}, "00 00 00 00 00 00 00"},
        SystemCase{"GameModeWithAllBlocks", {true, true, true, true}, {"1", "3"}, "00 01 01 01 01 01 03"},
        SystemCase{"GameModeAltF4Only", {true, false, true, false}, {"0", "2"}, "00 01 00 01 00 00 02"},
        SystemCase{"GameModeOffBlocksShownOff", {false, false, false, false}, {"1", "1"}, "00 00 00 00 00 01 01"},
        SystemCase{"EmptyTextsCountAsZero", {true, false, false, true}, {"", ""}, "00 01 00 00 01 00 00"},
        SystemCase{"ValuesSentWhole", {}, {"255", "+7"}, "00 00 00 00 00 FF 07"}),
    [](const auto& info) { return std::string(info.param.name); });

using TransactionDeath = WireFixture;

TEST_F(TransactionDeath, BrokenInvariantsStop) {
    const protocol::SystemSwitches off;
    for (const char* bad : {"a", "1.5", " 1", "1 ", "256", "-1", "0x1"}) {
        SCOPED_TRACE(bad);
        const protocol::SystemStoredValues fn{bad, "0"};
        const protocol::SystemStoredValues sleep{"0", bad};
        EXPECT_DEATH(SendSystemFunctionData(nullptr, off, &fn), "fnfunction");
        EXPECT_DEATH(SendSystemFunctionData(nullptr, off, &sleep), "sleeplight");
    }
    EXPECT_DEATH(SendSystemFunctionData(comm_.get(), off, nullptr), "without a database");
    EXPECT_DEATH(SendLightModeData(comm_.get(), 256, std::nullopt), "light mode");
    EXPECT_DEATH(SendLightModeData(comm_.get(), -1, std::nullopt), "light mode");
}

}  // namespace
}  // namespace qx9::test
