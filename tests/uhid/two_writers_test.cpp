// Two programs write to one QX9 at the same time through the kernel's hidraw node, round after
// round: the keyboard takes every transaction whole, and ends as the database says. Each writer
// is this program again, run as qx9ctl (--qx9ctl ARGS).
#include <gtest/gtest.h>

#include <chrono>
#include <filesystem>
#include <iostream>
#include <thread>

#include "cli/ctl.h"
#include "common/console.h"
#include "hid/udev_hid.h"
#include "virtual/virtual_qx9_memory.h"
#include "layout/key_maps.h"
#include "support/descriptors.h"
#include "support/processes.h"
#include "support/sql_value.h"
#include "support/wire_fixture.h"
#include "uhid/uhid_device.h"

namespace qx9::test {
namespace {

using namespace std::chrono_literals;
constexpr int kRounds = 12;

// The configuration interface's hidraw node once udev has made it; empty after 15 s.
std::string configurationNode() {
    for (auto waited = 0ms; waited < 15s; waited += 100ms) {
        for (const AttachedInterface& a : enumerateHidInterfaces(false)) {
            if (isQX9ConfigurationInterface(a.record)) return a.devnode;
        }
        std::this_thread::sleep_for(100ms);
    }
    return {};
}

TEST(TwoWriters, EveryTransactionArrivesWholeAndTheKeyboardEndsAsTheDatabaseSays) {
    installKB108KMaps();
    std::ostringstream quiet;
    setConsoleStream(&quiet);
    UhidDevice config("HALVORN QX9", hexBytes(kConfigurationInterface), true);
    ASSERT_TRUE(config.created()) << config.error();
    const std::string node = configurationNode();
    ASSERT_FALSE(node.empty()) << "no hidraw node for the QX9";

    const std::string db = (std::filesystem::temp_directory_path() / "two-writers.sqlite3").string();
    const std::string self = std::filesystem::read_symlink("/proc/self/exe");
    const auto qx9ctl = [&](std::vector<std::string> args) {
        args.insert(args.begin(), {"--qx9ctl", "--db", db, "--device", node});
        return args;
    };
    ASSERT_EQ(exitStatus(startProcess(self, qx9ctl({"macro", "add"}))), 0);
    for (int round = 0; round < kRounds; ++round) {
        // A macro download (tens of reports) against a light mode or a key map.
        const std::vector<std::string> other =
            round % 2 ? std::vector<std::string>{"light", "select", std::to_string(round % 19)}
                      : std::vector<std::string>{"key", "set", "1", "0", "f", "key:" + std::to_string(4 + round)};
        const std::vector<int> statuses = runTogether(self, {qx9ctl({"macro", "insert", "1", "key:a"}), qx9ctl(other)});
        EXPECT_EQ(statuses, (std::vector<int>{0, 0})) << "round " << round;
    }

    const VirtualQX9Memory held = config.keyboard().memory();
    EXPECT_EQ(held.droppedBlocks, 0u) << "a transaction was cut by another";
    EXPECT_EQ(held.strayReports, 0u) << "a report came outside its transaction";
    const VirtualQX9Memory stored =
        keyboardOf(db, {SaveMacroToKeyboard(), SendLightModeData(1, 1), SendKeyMacroData(1, 0)});
    EXPECT_EQ(held.macroBlock, stored.macroBlock);
    EXPECT_EQ(held.lightMode, stored.lightMode);
    EXPECT_EQ(held.keyTables[0], stored.keyTables[0]);
    EXPECT_EQ(sqlValue(db, "SELECT COUNT(*) FROM t_macrorecord"), std::to_string(2 * kRounds));  // every press kept

    // The keyboard refuses a report in the middle of a key map: stored, and the status says it was not sent.
    {
        std::lock_guard lock(config.keyboardMutex());
        config.keyboard().failSetAt(4);
    }
    EXPECT_EQ(exitStatus(startProcess(self, qx9ctl({"key", "set", "1", "0", "g", "key:5"}))), 1);
    EXPECT_EQ(sqlValue(db, "SELECT macroValue FROM t_keyprofile WHERE keyvalue = 10 AND profId = 1"), "5");
}

}  // namespace
}  // namespace qx9::test

int main(int argc, char** argv) {
    if (argc > 1 && std::string(argv[1]) == "--qx9ctl") {
        return qx9::ctl::run(std::vector<std::string>(argv + 2, argv + argc), std::cout, std::cerr);
    }
    ::testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
