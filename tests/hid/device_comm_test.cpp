#include <gtest/gtest.h>

#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

using Transport = WireFixture;

TEST_F(Transport, CommandReportIsPausedSetPausedAndAcknowledged) {
    const Bytes open = sparse({{0, 0x04}, {1, 0x18}}, 65);
    EXPECT_TRUE(comm_->sendDeviceData(open));
    EXPECT_TRUE(wireMatches(recorder_->events, {Step::command("04 18")}));
}

TEST_F(Transport, BusyAnswerCausesExactlyOneResendAndOneMoreRead) {
    struct Case {
        int busyReads;
        std::size_t sets;
    };
    for (const Case c : {Case{0, 1}, Case{1, 2}, Case{2, 2}, Case{5, 2}}) {
        SCOPED_TRACE(c.busyReads);
        clearWire();
        keyboard_->setBusyReads(c.busyReads);
        EXPECT_TRUE(comm_->sendDeviceData(report("04 13 00 00 00 00 00 00 01")));
        const auto wire = calls();
        ASSERT_EQ(wire.size(), 2 * c.sets);
        for (std::size_t i = 0; i < wire.size(); i += 2) {
            EXPECT_EQ(wire[i].kind, WireEvent::Set);
            EXPECT_EQ(wire[i].bytes, report("04 13 00 00 00 00 00 00 01"));
            EXPECT_EQ(wire[i + 1].kind, WireEvent::Get);
        }
        EXPECT_EQ(wire[1].bytes[3], c.busyReads > 0 ? 0xFF : 0x00);
        EXPECT_EQ(pauseCount(), 2 * c.sets);
        keyboard_->setBusyReads(0);
    }
}

TEST_F(Transport, CallersArrayIsNeverChanged) {
    Bytes data = sparse({{0, 0x04}, {1, 0x18}, {3, 0xFF}, {64, 0x77}}, 65);
    const Bytes before = data;
    keyboard_->setBusyReads(1);
    comm_->sendDeviceData(data);
    EXPECT_EQ(data, before);
}

// A backend that answers busy with a short read, to see which length the resend uses.
class ShortReadBackend final : public HidBackend {
public:
    std::string identity() const override { return "short"; }
    std::int64_t productId() const override { return 0x024F; }
    bool open() override { return true; }
    void close() override {}
    bool isOpen() const override { return true; }
    bool setFeatureReport(std::uint8_t, const std::uint8_t*, std::size_t length) override {
        setLengths.push_back(length);
        return true;
    }
    bool getFeatureReport(std::uint8_t, std::uint8_t* data, std::size_t& length) override {
        data[3] = 0xFF;
        length = 60;
        return true;
    }
    std::string lastError() const override { return {}; }
    std::vector<std::size_t> setLengths;
};

TEST(TransportResend, UsesTheLengthTheReadReturned) {
    auto backend = std::make_shared<ShortReadBackend>();
    WireRecorder recorder;
    DeviceComm comm(backend, &recorder);
    EXPECT_TRUE(comm.sendDeviceData(report("04 18")));
    EXPECT_EQ(backend->setLengths, (std::vector<std::size_t>{64, 60}));
}

TEST_F(Transport, ResultIsTheResultOfTheLastPlatformCall) {
    keyboard_->failSetAt(1);
    EXPECT_FALSE(comm_->sendDeviceData(report("04 18")));
    EXPECT_EQ(calls().size(), 1u);  // no read after a failed set

    clearWire();
    keyboard_->setBusyReads(1);
    keyboard_->failSetAt(2);  // the resend fails
    EXPECT_FALSE(comm_->sendDeviceData(report("04 18")));
    EXPECT_EQ(calls().size(), 3u);

    clearWire();
    keyboard_->vanish();
    EXPECT_FALSE(comm_->sendDeviceData(report("04 18")));
    EXPECT_TRUE(comm_->sendDeviceData(Bytes(576), 640));  // a block reports success regardless
    EXPECT_EQ(calls().size(), 2u);  // the failed set of each: no read, no second report
    keyboard_->reappear();
}

TEST_F(Transport, AbsentKeyboardRefusesWithoutPlatformCallsOrPauses) {
    comm_->setDeviceStatus(0);
    EXPECT_FALSE(comm_->sendDeviceData(report("04 18")));
    EXPECT_FALSE(comm_->sendDeviceData(Bytes(640, 1), 640));
    EXPECT_FALSE(comm_->sendDeviceDataNoGet(report("04 18")));
    EXPECT_TRUE(recorder_->events.empty());
    EXPECT_EQ(keyboard_->setCount() + keyboard_->getCount(), 0u);
    EXPECT_EQ(consoleText(), "");
}

Bytes counting(std::size_t size) {
    Bytes b(size);
    for (std::size_t i = 0; i < size; ++i) b[i] = static_cast<std::uint8_t>(i * 7 + 1);
    return b;
}

TEST_F(Transport, BlockWriteSendsOneReportFewerThanLengthCounts) {
    struct Case {
        std::int64_t length;
        std::size_t reports;
    };
    const Bytes data = counting(700);
    for (const Case c : {Case{64, 0}, Case{127, 0}, Case{128, 1}, Case{640, 9}, Case{700, 9}}) {
        SCOPED_TRACE(c.length);
        clearWire();
        EXPECT_TRUE(comm_->sendDeviceData(data, c.length));
        EXPECT_TRUE(wireMatches(recorder_->events,
                                {Step::block(Bytes(data.begin(), data.begin() + 64 * c.reports))}));
    }
}

TEST_F(Transport, BlockWriteStopsAtTheFirstFailureAndStillSucceeds) {
    keyboard_->failSetAt(3);
    EXPECT_TRUE(comm_->sendDeviceData(counting(576), 640));
    const auto wire = calls();
    ASSERT_EQ(wire.size(), 3u);
    EXPECT_TRUE(wire[0].ok && wire[1].ok);
    EXPECT_FALSE(wire[2].ok);
    // One diagnostic line per report attempted.
    const std::string lines = consoleText();
    EXPECT_EQ(std::count(lines.begin(), lines.end(), '\n'), 3);
}

std::string repeat(const std::string& text, int n) {
    std::string s;
    while (n-- > 0) s += text;
    return s;
}

TEST_F(Transport, BlockWritePrintsEachReport) {
    const Bytes data = sparse({{0, 4}, {1, 24}, {64, 255}}, 192);
    EXPECT_TRUE(comm_->sendDeviceData(data, 192));
    EXPECT_EQ(consoleText(), "newArr-0[4, 24" + repeat(", 0", 62) + "]\nnewArr-1[255" + repeat(", 0", 63) + "]\n");
}

TEST_F(Transport, ReconnectPointsTheSameTransportAtTheNewDevice) {
    auto replugged = std::make_shared<VirtualQX9>();
    comm_->setDeviceStatus(0);
    comm_->setDevice(replugged);
    comm_->setDeviceStatus(1);
    EXPECT_TRUE(comm_->sendDeviceData(report("04 18")));
    EXPECT_EQ(replugged->setCount(), 1u);
    EXPECT_EQ(keyboard_->setCount(), 0u);
    EXPECT_FALSE(sameDevice(replugged, keyboard_));
}

TEST(WireLog, LineFormat) {
    const Bytes b = sparse({{0, 0x04}, {1, 0x18}, {63, 0xAB}});
    const std::string expected = "SET 04 18" + repeat(" 00", 61) + " AB";
    EXPECT_EQ(formatWireLine(WireDirection::Set, b, true), expected);
    EXPECT_EQ(formatWireLine(WireDirection::Get, b, true), "GET" + expected.substr(3));
    EXPECT_EQ(formatWireLine(WireDirection::Get, {}, false), "GET FAIL");
}

using TransportDeath = WireFixture;

TEST_F(TransportDeath, ProgrammingErrorsStop) {
    EXPECT_DEATH(comm_->sendDeviceData(Bytes(64), 63), "below 64");
    EXPECT_DEATH(comm_->sendDeviceData(Bytes(100), 640), "past the end");
    EXPECT_DEATH(comm_->sendDeviceData(Bytes(10)), "64 bytes");
    EXPECT_DEATH(DeviceComm(nullptr), "needs a device");
}

}  // namespace
}  // namespace qx9::test
