#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>

#include "protocol/key_mapping.h"
#include "protocol/light_mode.h"
#include "protocol/system_function.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

using VirtualKeyboard = WireFixture;

TEST_F(VirtualKeyboard, AnswersEachReadWithTheLastCommandTaken) {
    comm_->sendDeviceData(report("04 18"));
    comm_->sendDeviceData(report("04 11 00 00 00 00 00 00 09"));
    const auto wire = calls();
    ASSERT_EQ(wire.size(), 4u);
    EXPECT_EQ(wire[1].bytes, report("04 18"));
    EXPECT_EQ(wire[3].bytes, report("04 11 00 00 00 00 00 00 09"));
}

TEST_F(VirtualKeyboard, BusyAnswerDropsTheCommandUntilItIsSentAgain) {
    // The header is answered busy twice: the resend is dropped too, so the nine reports
    // that follow arrive outside a transaction and nothing is stored.
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
    protocol::SendKeyMacroData(comm_.get(), 0, {});
    EXPECT_FALSE(keyboard_->memory().keyTables[0].has_value());
    EXPECT_EQ(keyboard_->memory().droppedBlocks, 1u);

    // The next transaction is taken whole.
    protocol::SendKeyMacroData(comm_.get(), 0, {});
    EXPECT_TRUE(keyboard_->memory().keyTables[0].has_value());
}

TEST_F(VirtualKeyboard, VanishedKeyboardFailsEveryCall) {
    keyboard_->vanish();
    protocol::SendLightModeData(comm_.get(), 3, std::nullopt);
    for (const auto& e : calls()) EXPECT_FALSE(e.ok);
    EXPECT_FALSE(keyboard_->open());
    EXPECT_EQ(keyboard_->lastError(), "No such device");
}

class VirtualKeyboardState : public WireFixture {
protected:
    std::filesystem::path dir_ = std::filesystem::temp_directory_path() /
                                 ("qx9-virtual-" + std::to_string(::getpid()));
    void SetUp() override { std::filesystem::create_directories(dir_); }
    void TearDown() override { std::filesystem::remove_all(dir_); }
    std::string write(const std::string& name, const std::string& text) {
        const auto p = dir_ / name;
        std::ofstream(p) << text;
        return p.string();
    }
};

TEST_F(VirtualKeyboardState, MemoryOutlivesTheProcessThroughItsFile) {
    protocol::SendKeyMacroData(comm_.get(), 0, {{profileKey(4, kMacroTypeKey, 5)}, {}});  // a → b
    protocol::SendLightModeData(comm_.get(), 7, LightRecord{0, 1, 2, 3, 0, 0, 0, 0, 1, 9, 4, 2});
    const std::string path = (dir_ / "state.json").string();
    std::string error;
    ASSERT_TRUE(keyboard_->saveState(path, error)) << error;

    VirtualQX9 second;
    ASSERT_TRUE(second.loadState(path, error)) << error;
    EXPECT_EQ(second.memory(), keyboard_->memory());
    EXPECT_EQ(keyRecord(second.memory(), 0, 56), (std::array<std::uint8_t, 4>{2, 0, 5, 0}));
    const auto light = decodeLightMode(second.memory());
    ASSERT_TRUE(light);
    EXPECT_EQ(light->mode, 7);
    EXPECT_EQ(light->speed, 4);
}

TEST_F(VirtualKeyboardState, BadFilesAreRefusedAndChangeNothing) {
    protocol::SendLightModeData(comm_.get(), 2, std::nullopt);
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
    int i = 0;
    for (const std::string& text : bad) {
        SCOPED_TRACE(text);
        std::string error;
        EXPECT_FALSE(keyboard_->loadState(write("bad" + std::to_string(i++), text), error));
        EXPECT_FALSE(error.empty());
        EXPECT_EQ(keyboard_->memory(), before);
    }
    std::string error;
    EXPECT_FALSE(keyboard_->loadState((dir_ / "missing.json").string(), error));
    EXPECT_FALSE(keyboard_->saveState((dir_ / "no/such/dir/state.json").string(), error));
}

}  // namespace
}  // namespace qx9::test
