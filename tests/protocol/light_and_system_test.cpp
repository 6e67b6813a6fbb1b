// Light-mode and system-function transactions, the two one-report payloads; every transaction
// without a keyboard.
#include <gtest/gtest.h>

#include <functional>

#include "protocol/key_mapping.h"
#include "protocol/light_mode.h"
#include "protocol/macro_download.h"
#include "protocol/system_function.h"
#include "protocol/user_light.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

// The default record of a new profile: colour CA 51 00, random on, brightness 15, speed 12,
// direction 3 for mode 10 and 0 otherwise.
LightRecord defaultRecord(int mode) {
    return {0, 0xCA, 0x51, 0, 0, 0, 0, 0, 1, 0x0F, 0x0C, static_cast<std::uint8_t>(mode == 10 ? 3 : 0)};
}

TEST_F(WireFixture, LightModeTransaction) {
    struct Case {
        std::int64_t mode;
        std::optional<LightRecord> record;
        const char* data;  // the raw data report as it must appear on the wire
    };
    const Case cases[] = {
        {0, defaultRecord(0), "00 CA 51 00 00 00 00 00 01 0F 0C 00 00 00 AA 55"},
        {10, defaultRecord(10), "0A CA 51 00 00 00 00 00 01 0F 0C 03 00 00 AA 55"},  // its own direction
        {4, LightRecord{0, 1, 2, 3, 0, 0, 0, 0, 0, 0x3F, 0xFF, 1},
         "04 01 02 03 00 00 00 00 00 3F FF 01 00 00 AA 55"},
        // record bytes 0 and 4–7 are not sent
        {12, LightRecord{0x99, 1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11},
         "0C 01 02 03 00 00 00 00 08 09 0A 0B 00 00 AA 55"},
        {20, std::nullopt, "14 00 00 00 00 00 00 00 00 00 00 00 00 00 AA 55"},
        {255, std::nullopt, "FF 00 00 00 00 00 00 00 00 00 00 00 00 00 AA 55"},  // outside the catalogue
    };
    for (const Case& c : cases) {
        clearWire();
        send(protocol::lightModeTransaction(c.mode, c.record));
        EXPECT_TRUE(wireMatches(recorder_->events,
                                {Step::command("04 18"), Step::command("04 13 00 00 00 00 00 00 01"),
                                 Step::raw(report(c.data)), Step::command("04 02"), Step::command("04 F0")}));
    }
}

// With the keyboard gone, nothing reaches it; the light mode does not even pause.
TEST_F(WireFixture, TransactionsWithoutAKeyboardSendNothing) {
    const protocol::MacroDownloadInput macros;
    const std::pair<const char*, protocol::Transaction> transactions[] = {
        {"light mode", protocol::lightModeTransaction(3, defaultRecord(3))},
        {"key mapping", protocol::keyMappingTransaction(0, {})},
        {"macros", *protocol::macroTransaction(macros)},
        {"system functions", protocol::systemFunctionTransaction({}, {"0", "0"})},
        {"key colours", protocol::userLightLedTransaction({})},
    };
    for (const auto& [name, transaction] : transactions) {
        comm_->setDeviceStatus(0);
        EXPECT_FALSE(runTransaction(*comm_, transaction)) << name;
        comm_->setDeviceStatus(1);
        EXPECT_TRUE(name == std::string("light mode") ? recorder_->events.empty() : calls().empty()) << name;
        clearWire();
    }
}

TEST_F(WireFixture, SystemFunctionTransaction) {
    struct Case {
        protocol::SystemSwitches switches;
        protocol::SystemStoredValues stored;
        const char* data;  // bytes 0–6 of the record; 62–63 always AA 55
    };
    const Case cases[] = {
        {{}, {"0", "0"}, "00 00 00 00 00 00 00"},
        {{true, true, true, true}, {"1", "3"}, "00 01 01 01 01 01 03"},
        {{true, false, true, false}, {"0", "2"}, "00 01 00 01 00 00 02"},
        {{false, false, false, false}, {"1", "1"}, "00 00 00 00 00 01 01"},  // blocks shown off
        {{true, false, false, true}, {"", ""}, "00 01 00 00 01 00 00"},      // empty texts count as 0
        {{}, {"255", "+7"}, "00 00 00 00 00 FF 07"},                         // values sent whole
        // damaged: taken as 0
        {{}, {"a", "1.5"}, "00 00 00 00 00 00 00"}, {{}, {" 1", "1 "}, "00 00 00 00 00 00 00"},
        {{}, {"256", "-1"}, "00 00 00 00 00 00 00"}, {{}, {"0x1", "0x1"}, "00 00 00 00 00 00 00"},
    };
    for (const Case& c : cases) {
        clearWire();
        send(protocol::systemFunctionTransaction(c.switches, c.stored));
        Bytes record = report(c.data);
        record[62] = 0xAA;
        record[63] = 0x55;
        // The end report still carries byte 2 = 1 from the header; no close report follows.
        EXPECT_TRUE(wireMatches(recorder_->events,
                                {Step::command("04 18"), Step::command("04 17 01 00 00 00 00 00 01"),
                                 Step::raw(record), Step::command("04 02 01")}))
            << c.data;
    }
}

}  // namespace
}  // namespace qx9::test
