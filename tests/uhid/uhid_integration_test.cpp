// The device layer against the real kernel: udev, hidraw and feature reports, with a QX9 made
// through /dev/uhid. Runs inside a throw-away virtual machine (see run_in_vm.sh).
#include <gtest/gtest.h>

#include <chrono>
#include <cstdlib>
#include <sys/wait.h>
#include <unistd.h>
#include <condition_variable>
#include <future>
#include <thread>

#include "common/console.h"
#include "common/notification_center.h"
#include "hid/device_comm.h"
#include "hid/hid_device_monitor.h"
#include "hid/hidraw_device.h"
#include "hid/hidraw_probe.h"
#include "hid/udev_hid.h"
#include "layout/key_maps.h"
#include "protocol/key_mapping.h"
#include "protocol/light_mode.h"
#include "support/wire_fixture.h"
#include "uhid/uhid_device.h"

namespace qx9::test {
namespace {

using namespace std::chrono_literals;

// The QX9 shows three interfaces under one vendor and product; only the configuration interface
// has the 64-byte feature report 4.
const char* const kKeyboardInterface =
    "05 01 09 06 A1 01 05 07 19 E0 29 E7 15 00 25 01 75 01 95 08 81 02 95 01 75 08 81 01"
    " 95 05 75 01 05 08 19 01 29 05 91 02 95 01 75 03 91 01 95 06 75 08 15 00 25 65"
    " 05 07 19 00 29 65 81 00 C0";
const char* const kConsumerInterface =
    "05 0C 09 01 A1 01 85 03 15 00 26 FF 03 19 00 2A FF 03 75 10 95 01 81 00 C0";
const char* const kConfigurationInterface =
    "06 0A FF 09 01 A1 01 85 04 15 00 26 FF 00 75 08 95 3F 09 01 B1 02 C0";

Bytes hex(const char* text) {
    Bytes b;
    parseHexBytes(text, b);
    return b;
}

// Collects the device notifications.
class Observer {
public:
    Observer() {
        for (const char* name : {kHIDDeviceConnected, kHIDDeviceDisconnected}) {
            tokens_.push_back(NotificationCenter::defaultCenter().addObserver(name, [this](const Notification& n) {
                const auto& dict = std::any_cast<const HIDDeviceDictionary&>(n.object);
                std::lock_guard lock(mutex_);
                events_.push_back({n.name, dict.at(kDeviceKey)});
                changed_.notify_all();
            }));
        }
    }
    ~Observer() {
        for (auto t : tokens_) NotificationCenter::defaultCenter().removeObserver(t);
    }
    // Waits until `count` notifications named `name` have arrived; returns them.
    std::vector<HIDDevice> waitFor(const std::string& name, std::size_t count,
                                   std::chrono::milliseconds timeout = 15s) {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, timeout, [&] { return matching(name).size() >= count; });
        return matching(name);
    }

private:
    std::vector<HIDDevice> matching(const std::string& name) const {
        std::vector<HIDDevice> out;
        for (const auto& [n, d] : events_) {
            if (n == name) out.push_back(d);
        }
        return out;
    }
    std::vector<NotificationCenter::Token> tokens_;
    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::pair<std::string, HIDDevice>> events_;
};

class KernelPath : public ::testing::Test {
protected:
    static void SetUpTestSuite() {
        installKB108KMaps();
        static std::ostringstream quiet;
        setConsoleStream(&quiet);
        observer_ = new Observer;
        monitor_ = new HIDDeviceMonitor({{0x05AC, 0x024F}}, 64);
        monitorThread_ = std::thread([] { monitor_->start(); });
        keyboard_ = new UhidDevice("HALVORN QX9 Keyboard", hex(kKeyboardInterface), false);
        consumer_ = new UhidDevice("HALVORN QX9 Consumer", hex(kConsumerInterface), false);
        config_ = new UhidDevice("HALVORN QX9", hex(kConfigurationInterface), true);
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
        auto reference = std::make_shared<VirtualQX9>();
        WireRecorder recorder;
        DeviceComm comm(reference, &recorder, std::shared_ptr<WireSink>(&recorder, [](WireSink*) {}));
        send(&comm);
        std::vector<Bytes> out;
        for (const auto& e : recorder.events) {
            if (e.kind == WireEvent::Set) out.push_back(e.bytes);
        }
        return out;
    }

    static inline Observer* observer_ = nullptr;
    static inline HIDDeviceMonitor* monitor_ = nullptr;
    static inline std::thread monitorThread_;
    static inline UhidDevice* keyboard_ = nullptr;
    static inline UhidDevice* consumer_ = nullptr;
    static inline UhidDevice* config_ = nullptr;
};

TEST_F(KernelPath, A_ExactlyTheConfigurationInterfaceIsAnnounced) {
    ASSERT_TRUE(config_->created()) << config_->error();
    ASSERT_TRUE(keyboard_->created()) << keyboard_->error();
    const auto connected = observer_->waitFor(kHIDDeviceConnected, 1);
    ASSERT_EQ(connected.size(), 1u);
    std::this_thread::sleep_for(1s);  // nothing else may follow
    ASSERT_EQ(observer_->waitFor(kHIDDeviceConnected, 1).size(), 1u);
    const HIDDevice& d = connected[0];
    EXPECT_EQ(d.vendorId, 0x05AC);
    EXPECT_EQ(d.productId, 0x024F);
    EXPECT_EQ(d.featureSize, 64);
    EXPECT_EQ(d.id, 0);  // no USB ancestor
    EXPECT_EQ(d.name, "HALVORN QX9");
    EXPECT_NE(d.device->identity().find("0003:05AC:024F."), std::string::npos) << d.device->identity();

    // All three nodes exist; the probe accepts only the configuration interface.
    int accepted = 0, nodes = 0;
    for (const auto& a : enumerateHidInterfaces(false)) {
        if (a.record.vendorId != 0x05AC) continue;
        ++nodes;
        const bool isConfig = isQX9ConfigurationNode(a.syspath);
        accepted += isConfig;
        EXPECT_EQ(isConfig, a.syspath == d.device->identity()) << a.syspath;
    }
    EXPECT_EQ(nodes, 3);
    EXPECT_EQ(accepted, 1);

    // The probe program that udev runs gives the same answers (when the machine was given it).
    if (const char* probe = QX9_HIDRAW_PROBE; ::access(probe, X_OK) == 0) {
        for (const auto& a : enumerateHidInterfaces(false)) {
            if (a.record.vendorId != 0x05AC) continue;
            const std::string command = std::string(probe) + " " + a.syspath;
            const int status = std::system(command.c_str());
            EXPECT_EQ(WIFEXITED(status) ? WEXITSTATUS(status) : -1, a.syspath == d.device->identity() ? 0 : 1)
                << command;
        }
    }
}

TEST_F(KernelPath, B_TransactionsArriveByteForByte) {
    const auto connected = observer_->waitFor(kHIDDeviceConnected, 1);
    ASSERT_EQ(connected.size(), 1u);
    DeviceComm comm(connected[0].device);

    const LightRecord record{0, 0xCA, 0x51, 0, 0, 0, 0, 0, 1, 15, 12, 0};
    ProfileKey remap;
    remap.keyValue = 4;
    remap.macroType = kMacroTypeKey;
    remap.macroValue = 5;
    const protocol::KeyMappingInput keys{{remap}, {}};
    const auto send = [&](DeviceComm* c) {
        protocol::SendLightModeData(c, 0, record);  // its data report starts with 0
        protocol::SendKeyMacroData(c, 0, keys);     // so do its nine data reports
    };
    send(&comm);
    EXPECT_EQ(config_->sets(), expectedSets(send));
    std::lock_guard lock(config_->keyboardMutex());
    const auto& memory = config_->keyboard().memory();
    EXPECT_EQ(keyRecord(memory, 0, 56), (std::array<std::uint8_t, 4>{2, 0, 5, 0}));
    ASSERT_TRUE(decodeLightMode(memory));
    EXPECT_EQ(decodeLightMode(memory)->red, 0xCA);
}

TEST_F(KernelPath, C_BusyAnswerIsSentAgainOnce) {
    const auto connected = observer_->waitFor(kHIDDeviceConnected, 1);
    ASSERT_EQ(connected.size(), 1u);
    DeviceComm comm(connected[0].device);
    const std::size_t before = config_->sets().size();
    {
        std::lock_guard lock(config_->keyboardMutex());
        config_->keyboard().setBusyReads(1);
    }
    EXPECT_TRUE(comm.sendDeviceData(report("04 18")));
    const auto sets = config_->sets();
    ASSERT_EQ(sets.size(), before + 2);
    EXPECT_EQ(sets[before], report("04 18"));
    EXPECT_EQ(sets[before + 1], report("04 18"));
}

TEST_F(KernelPath, D_RemovalMidTransactionNeitherCrashesNorHangs) {
    const auto connected = observer_->waitFor(kHIDDeviceConnected, 1);
    ASSERT_EQ(connected.size(), 1u);
    DeviceComm comm(connected[0].device);
    config_->stallReads(true);
    auto transaction = std::async(std::launch::async, [&] {
        protocol::SendKeyMacroData(&comm, 0, {});
        return comm.sendDeviceData(report("04 18"));
    });
    std::this_thread::sleep_for(300ms);
    config_->destroy();
    ASSERT_EQ(transaction.wait_for(20s), std::future_status::ready) << "the transaction hangs";
    EXPECT_FALSE(transaction.get());
    const auto gone = observer_->waitFor(kHIDDeviceDisconnected, 1);
    ASSERT_EQ(gone.size(), 1u);
    EXPECT_TRUE(sameDevice(gone[0].device, connected[0].device));
    EXPECT_FALSE(connected[0].device->lastError().empty());
}

TEST_F(KernelPath, E_RecreatedKeyboardIsANewDevice) {
    const auto first = observer_->waitFor(kHIDDeviceConnected, 1);
    ASSERT_EQ(first.size(), 1u);
    delete config_;
    config_ = new UhidDevice("HALVORN QX9", hex(kConfigurationInterface), true);
    const auto connected = observer_->waitFor(kHIDDeviceConnected, 2);
    ASSERT_EQ(connected.size(), 2u);
    EXPECT_FALSE(sameDevice(connected[1].device, first[0].device));
    DeviceComm comm(connected[1].device);
    EXPECT_TRUE(comm.sendDeviceData(report("04 18")));
}

}  // namespace
}  // namespace qx9::test
