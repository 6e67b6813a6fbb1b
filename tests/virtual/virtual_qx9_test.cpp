#include <gtest/gtest.h>

#include "protocol/key_mapping.h"
#include "protocol/light_mode.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

using VirtualKeyboard = WireFixture;

TEST_F(VirtualKeyboard, BusyAnswerDropsTheCommandUntilItIsSentAgain) {
    // Busy twice: the resend is dropped too, the nine reports that follow are stray.
    comm_->sendDeviceData(report("04 18"));
    keyboard_->setBusyReads(2);
    comm_->sendDeviceData(report("04 11 00 00 00 00 00 00 09"));
    comm_->sendDeviceData(Bytes(576, 0x01), 640);
    EXPECT_FALSE(keyboard_->memory().keyTables[0].has_value());
    EXPECT_EQ(keyboard_->memory().strayReports, 9u);

    // Busy once: the one resend is taken.
    keyboard_->setBusyReads(1);
    comm_->sendDeviceData(report("04 11 00 00 00 00 00 00 09"));
    comm_->sendDeviceData(Bytes(576, 0x01), 640);
    ASSERT_TRUE(keyboard_->memory().keyTables[0].has_value());
}

TEST_F(VirtualKeyboard, BlockCutShortByALostReportIsDropped) {
    keyboard_->failSetAt(7);  // open and header are sets 1 and 2: the fifth data report fails
    send(protocol::keyMappingTransaction(0, {}));
    EXPECT_FALSE(keyboard_->memory().keyTables[0].has_value());
    EXPECT_EQ(keyboard_->memory().droppedBlocks, 1u);

    // The next transaction is taken whole.
    send(protocol::keyMappingTransaction(0, {}));
    EXPECT_TRUE(keyboard_->memory().keyTables[0].has_value());
}

TEST_F(VirtualKeyboard, BadStateFilesAreRefusedAndChangeNothing) {
    const TempDir dir;
    const std::string file = (dir / "state.json").string();
    send(protocol::lightModeTransaction(2, std::nullopt));
    const VirtualQX9Memory before = keyboard_->memory();
    const std::string bad[] = {
        "",
        "not json",
        "[1, 2]",
        R"({"format": "something else", "raw": {}})",
        R"({"format": "qx9-virtual-memory"})",
        R"({"format": "qx9-virtual-memory", "raw": {"lightMode": "04 18"}})",
        R"({"format": "qx9-virtual-memory", "raw": {"keyTable0": "zz"}})",
        R"({"format": "qx9-virtual-memory", "raw": {"macroBlock": 12}})",
    };
    std::string error;
    for (const std::string& text : bad) {
        std::ofstream(file) << text;
        error.clear();
        EXPECT_FALSE(keyboard_->loadState(file, error)) << text;
        EXPECT_FALSE(error.empty()) << text;
    }
    std::filesystem::remove(file);
    EXPECT_EQ(keyboard_->memory(), before);
    EXPECT_FALSE(keyboard_->loadState(file, error));
    EXPECT_FALSE(keyboard_->saveState(file + "/no/such/dir/state.json", error));
}

}  // namespace
}  // namespace qx9::test
