#include <gtest/gtest.h>

#include <chrono>

#include "hid/pacer.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

using Transport = WireFixture;

// A command report is pause, set, pause, get; a busy answer (FF at byte 3) brings exactly one
// resend and one more read; a failed set is not read back and fails the command.
TEST_F(Transport, BusyAnswerCausesOneResendAndAFailedSetEndsTheCommand) {
    struct Case {
        int busyReads, failSet;
        bool result;
        const char* wire;  // p pause, S set, X failed set, G answer, B busy answer
    };
    const Bytes command = report("04 13 00 00 00 00 00 00 01");
    for (const Case c : {Case{0, 0, true, "pSpG"}, Case{1, 0, true, "pSpBpSpG"}, Case{2, 0, true, "pSpBpSpB"},
                         Case{5, 0, true, "pSpBpSpB"}, Case{0, 1, false, "pX"}, Case{1, 2, false, "pSpBpX"}}) {
        clearWire();
        keyboard_->setBusyReads(c.busyReads);
        keyboard_->failSetAt(c.failSet);
        EXPECT_EQ(comm_->sendDeviceData(command), c.result) << c.wire;
        std::string wire;
        for (const WireEvent& e : recorder_->events) {
            if (e.kind == WireEvent::Pause) wire += 'p';
            else if (e.kind == WireEvent::Get) wire += e.bytes[3] == 0xFF ? 'B' : 'G';
            else wire += !e.ok ? 'X' : e.bytes == command ? 'S' : '?';
        }
        EXPECT_EQ(wire, c.wire);
    }
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
    bool lockExclusive(std::chrono::milliseconds) override { return true; }
    bool unlock() override { return true; }
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

TEST_F(Transport, AbsentKeyboardRefusesWithoutPlatformCallsOrPauses) {
    comm_->setDeviceStatus(0);
    EXPECT_FALSE(comm_->sendDeviceData(report("04 18")));
    EXPECT_FALSE(comm_->sendDeviceData(Bytes(640, 1), 640));
    EXPECT_FALSE(comm_->sendDeviceDataNoGet(report("04 18")));
    EXPECT_TRUE(recorder_->events.empty());
    EXPECT_EQ(consoleText(), "");
}

TEST_F(Transport, BlockWriteSendsOneReportFewerThanLengthCounts) {
    Bytes data(700);
    for (std::size_t i = 0; i < data.size(); ++i) data[i] = static_cast<std::uint8_t>(i * 7 + 1);
    const std::pair<std::int64_t, int> cases[] = {{64, 0}, {127, 0}, {128, 1}, {640, 9}, {700, 9}};
    for (const auto& [length, reports] : cases) {
        clearWire();
        EXPECT_TRUE(comm_->sendDeviceData(data, length));
        EXPECT_TRUE(wireMatches(recorder_->events, {Step::block(Bytes(data.begin(), data.begin() + 64 * reports))}))
            << length;
    }
}

std::string repeat(const std::string& text, int n) {
    std::string s;
    while (n-- > 0) s += text;
    return s;
}

TEST_F(Transport, BlockWritePrintsEachReportAndStopsAtTheFirstFailure) {
    keyboard_->failSetAt(3);
    EXPECT_FALSE(comm_->sendDeviceData(sparse({{0, 4}, {1, 24}, {64, 255}}, 320), 320));
    const auto wire = calls();
    ASSERT_EQ(wire.size(), 3u);
    EXPECT_TRUE(wire[0].ok && wire[1].ok && !wire[2].ok);
    EXPECT_EQ(consoleText(), "newArr-0[4, 24" + repeat(", 0", 62) + "]\nnewArr-1[255" + repeat(", 0", 63) +
                                 "]\nnewArr-2[0" + repeat(", 0", 63) + "]\n");
}

// The pause before each report is never shorter than asked, whatever the machine's wake-ups (a
// lower bound on the monotonic clock; nothing is asserted about how much longer it is).
TEST(SleepPacer, NeverPausesLessThanAsked) {
    using namespace std::chrono;
    for (const microseconds asked : {microseconds(1), microseconds(230), microseconds(1000), kReportPause}) {
        for (int i = 0; i < 20; ++i) {
            const auto start = steady_clock::now();
            sleepPacer().pause(asked);
            EXPECT_GE(steady_clock::now() - start, asked) << asked.count() << " µs";
        }
    }
}

TEST(WireLog, LineFormat) {
    const Bytes b = sparse({{0, 0x04}, {1, 0x18}, {63, 0xAB}});
    const std::string expected = "SET 04 18" + repeat(" 00", 61) + " AB";
    EXPECT_EQ(formatWireLine(WireDirection::Set, b, true), expected);
    EXPECT_EQ(formatWireLine(WireDirection::Get, b, true), "GET" + expected.substr(3));
    EXPECT_EQ(formatWireLine(WireDirection::Get, {}, false), "GET FAIL");
}


}  // namespace
}  // namespace qx9::test
