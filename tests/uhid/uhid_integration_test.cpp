// The device layer against the real kernel: udev, hidraw and feature reports, with a QX9 made
// through /dev/uhid. Runs inside a throw-away virtual machine (see run_in_vm.sh).
#include <gtest/gtest.h>

#include <chrono>
#include <unistd.h>
#include <future>
#include <thread>

#include "common/console.h"
#include "hid/device_comm.h"
#include "hid/hid_device_monitor.h"
#include "hid/hidraw_probe.h"
#include "hid/udev_hid.h"
#include "layout/key_maps.h"
#include "protocol/key_mapping.h"
#include "protocol/light_mode.h"
#include "support/descriptors.h"
#include "support/device_recorder.h"
#include "support/wire_fixture.h"
#include "uhid/uhid_device.h"

namespace qx9::test {
namespace {

using namespace std::chrono_literals;

class KernelPath : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        installKB108KMaps();
        static std::ostringstream quiet;
        setConsoleStream(&quiet);
        observer_ = new DeviceRecorder;
        monitor_ = new HIDDeviceMonitor({{0x05AC, 0x024F}}, 64, observer_->events());
        monitorThread_ = std::thread([] { monitor_->start(); });
        keyboard_ = new UhidDevice("HALVORN QX9 Keyboard", hexBytes(kKeyboardInterface), false);
        consumer_ = new UhidDevice("HALVORN QX9 Consumer", hexBytes(kConsumerInterface), false);
        config_ = new UhidDevice("HALVORN QX9", hexBytes(kConfigurationInterface), true);
    }
    static void TearDownTestSuite() {
        delete config_;
        delete consumer_;
        delete keyboard_;
        monitor_->stop();
        monitorThread_.join();
        delete monitor_;
        delete observer_;
    }

    // Runs `send` against an in-process virtual QX9 to learn the SETs the wire must carry.
    template <typename Send>
    static std::vector<Bytes> expectedSets(Send send) {
        WireRecorder recorder;
        const std::shared_ptr<WireSink> sink(&recorder, [](WireSink*) {});
        DeviceComm comm(std::make_shared<VirtualQX9>(), &recorder, sink);
        send(&comm);
        return setsOf(recorder.events);
    }
    static std::vector<HIDDevice> waitFor(const std::string& name, std::size_t count) {
        return observer_->waitFor(name, count, 15s);
    }

    // The configuration interface the monitor announced first (null when none came).
    static HidDeviceRef announced() {
        const auto connected = waitFor("HIDDeviceConnected", 1);
        return connected.empty() ? nullptr : connected[0].device;
    }

    static inline DeviceRecorder* observer_ = nullptr;
    static inline HIDDeviceMonitor* monitor_ = nullptr;
    static inline std::thread monitorThread_;
    static inline UhidDevice* keyboard_ = nullptr;
    static inline UhidDevice* consumer_ = nullptr;
    static inline UhidDevice* config_ = nullptr;
};

TEST_F(KernelPath, A_ExactlyTheConfigurationInterfaceIsAnnounced) {
    ASSERT_TRUE(config_->created()) << config_->error();
    const auto connected = waitFor("HIDDeviceConnected", 1);
    ASSERT_EQ(connected.size(), 1u);
    std::this_thread::sleep_for(1s);  // nothing else may follow
    ASSERT_EQ(waitFor("HIDDeviceConnected", 1).size(), 1u);
    const HIDDevice& d = connected[0];
    EXPECT_EQ(d.vendorId, 0x05AC);
    EXPECT_EQ(d.productId, 0x024F);
    EXPECT_EQ(d.featureSize, 64);
    EXPECT_EQ(d.id, 0);  // no USB ancestor
    EXPECT_EQ(d.name, "HALVORN QX9");
    EXPECT_NE(d.device->identity().find("0003:05AC:024F."), std::string::npos) << d.device->identity();

    // All three nodes exist; the probe accepts only the configuration interface (the program udev
    // runs is checked against udev itself in udev_rule_test.cpp).
    int accepted = 0, nodes = 0;
    for (const auto& a : enumerateHidInterfaces(false)) {
        if (a.record.vendorId != 0x05AC) continue;
        ++nodes;
        const bool isConfig = a.syspath == d.device->identity();
        accepted += isQX9ConfigurationNode(a.syspath);
        EXPECT_EQ(isQX9ConfigurationNode(a.syspath), isConfig) << a.syspath;
    }
    EXPECT_EQ(nodes, 3);
    EXPECT_EQ(accepted, 1);
}

// Data reports that start with 0 make hidraw's report-number byte matter; a busy answer read
// back through the kernel makes the command go again once.
TEST_F(KernelPath, B_TransactionsArriveByteForByte) {
    const HidDeviceRef device = announced();
    ASSERT_TRUE(device);
    DeviceComm comm(device);
    const LightRecord record{0, 0xCA, 0x51, 0, 0, 0, 0, 0, 1, 15, 12, 0};
    const protocol::KeyMappingInput keys{{profileKey(4, kMacroTypeKey, 5)}, {}};
    const auto send = [&](DeviceComm* c) {
        runTransaction(*c, protocol::lightModeTransaction(0, record));
        runTransaction(*c, protocol::keyMappingTransaction(0, keys));
    };
    send(&comm);
    EXPECT_EQ(config_->sets(), expectedSets(send));

    const std::size_t before = config_->sets().size();
    {
        std::lock_guard lock(config_->keyboardMutex());
        config_->keyboard().setBusyReads(1);
    }
    EXPECT_TRUE(comm.sendDeviceData(report("04 18")));
    const auto sets = config_->sets();
    EXPECT_EQ(std::vector<Bytes>(sets.begin() + static_cast<std::ptrdiff_t>(before), sets.end()),
              std::vector<Bytes>(2, report("04 18")));
}

TEST_F(KernelPath, C_RemovalMidTransactionNeitherCrashesNorHangs) {
    const HidDeviceRef device = announced();
    ASSERT_TRUE(device);
    DeviceComm comm(device);
    config_->stallReads(true);
    auto transaction = std::async(std::launch::async, [&] {
        runTransaction(comm, protocol::keyMappingTransaction(0, {}));
        return comm.sendDeviceData(report("04 18"));
    });
    std::this_thread::sleep_for(300ms);
    config_->destroy();
    ASSERT_EQ(transaction.wait_for(20s), std::future_status::ready) << "the transaction hangs";
    EXPECT_FALSE(transaction.get());
    const auto gone = waitFor("HIDDeviceDisconnected", 1);
    ASSERT_EQ(gone.size(), 1u);
    EXPECT_TRUE(sameDevice(gone[0].device, device));
    EXPECT_FALSE(device->lastError().empty());
}

TEST_F(KernelPath, D_RecreatedKeyboardIsANewDevice) {
    const HidDeviceRef first = announced();
    ASSERT_TRUE(first);
    delete config_;
    config_ = new UhidDevice("HALVORN QX9", hexBytes(kConfigurationInterface), true);
    const auto connected = waitFor("HIDDeviceConnected", 2);
    ASSERT_EQ(connected.size(), 2u);
    EXPECT_FALSE(sameDevice(connected[1].device, first));
    EXPECT_TRUE(DeviceComm(connected[1].device).sendDeviceData(report("04 18")));
}

}  // namespace
}  // namespace qx9::test
