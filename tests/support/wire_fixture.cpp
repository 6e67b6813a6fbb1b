#include "support/wire_fixture.h"

#include <algorithm>

#include "common/console.h"
#include "layout/key_maps.h"

namespace qx9::test {

void WireRecorder::pause(std::chrono::microseconds duration) {
    events.push_back({WireEvent::Pause, {}, true, duration.count()});
}

void WireRecorder::record(WireDirection direction, std::span<const std::uint8_t> bytes, bool ok) {
    events.push_back({direction == WireDirection::Set ? WireEvent::Set : WireEvent::Get,
                      Bytes(bytes.begin(), bytes.end()), ok, 0});
}

Bytes hexBytes(std::string_view hex) {
    Bytes out;
    EXPECT_TRUE(parseHexBytes(hex, out)) << hex;
    return out;
}

Bytes report(const std::string& hexPrefix) {
    Bytes prefix = hexBytes(hexPrefix);
    prefix.resize(64, 0);
    return prefix;
}

Bytes sparse(std::initializer_list<std::pair<int, int>> bytes, std::size_t size) {
    Bytes out(size, 0);
    for (auto [index, value] : bytes) out.at(static_cast<std::size_t>(index)) = static_cast<std::uint8_t>(value);
    return out;
}

void put(Bytes& block, std::size_t offset, std::string_view hex) {
    const Bytes b = hexBytes(hex);
    ASSERT_LE(offset + b.size(), block.size()) << hex;
    std::copy(b.begin(), b.end(), block.begin() + static_cast<std::ptrdiff_t>(offset));
}

std::vector<Bytes> setsOf(const std::vector<WireEvent>& events) {
    std::vector<Bytes> out;
    for (const auto& e : events) {
        if (e.kind == WireEvent::Set) out.push_back(e.bytes);
    }
    return out;
}

ProfileKey profileKey(std::int64_t key, std::int64_t type, std::int64_t value, std::int64_t value2,
                      std::int64_t value3) {
    return {.keyValue = key, .macroType = type, .macroValue = value, .macro2Value = value2,
            .macro3Value = value3, .macroDesc = {}};
}

WireFixture::WireFixture()
    : keyboard_(std::make_shared<VirtualQX9>()), recorder_(std::make_shared<WireRecorder>()) {
    installKB108KMaps();
    previousConsole_ = setConsoleStream(&console_);
    comm_ = std::make_unique<DeviceComm>(keyboard_, recorder_.get(), recorder_);
}

WireFixture::~WireFixture() { setConsoleStream(previousConsole_); }

std::vector<Bytes> WireFixture::sets() const { return setsOf(recorder_->events); }

std::vector<WireEvent> WireFixture::calls() const {
    std::vector<WireEvent> out;
    for (const auto& e : recorder_->events) {
        if (e.kind != WireEvent::Pause) out.push_back(e);
    }
    return out;
}

std::size_t WireFixture::pauseCount() const {
    std::size_t n = 0;
    for (const auto& e : recorder_->events) n += e.kind == WireEvent::Pause;
    return n;
}

}  // namespace qx9::test

namespace qx9::test {

namespace {

std::string describe(const WireEvent& e) {
    switch (e.kind) {
        case WireEvent::Pause: return "pause " + std::to_string(e.micros) + " us";
        case WireEvent::Set: return "SET " + hexString(e.bytes) + (e.ok ? "" : " FAIL");
        case WireEvent::Get: return "GET " + hexString(e.bytes) + (e.ok ? "" : " FAIL");
    }
    return "?";
}

}  // namespace

::testing::AssertionResult wireMatches(const std::vector<WireEvent>& events,
                                       const std::vector<Step>& steps) {
    std::vector<WireEvent> expected;
    const auto pause = [&] { expected.push_back({WireEvent::Pause, {}, true, 5000}); };
    for (const Step& s : steps) {
        switch (s.kind) {
            case Step::Command: {
                pause();
                expected.push_back({WireEvent::Set, s.bytes, true, 0});
                pause();
                Bytes ack = s.bytes;
                ack[3] = 0;
                expected.push_back({WireEvent::Get, ack, true, 0});
                break;
            }
            case Step::Raw:
                pause();
                expected.push_back({WireEvent::Set, s.bytes, true, 0});
                break;
            case Step::Pause:
                pause();
                break;
            case Step::Block:
                for (std::size_t o = 0; o + 64 <= s.bytes.size(); o += 64) {
                    pause();
                    expected.push_back({WireEvent::Set, Bytes(s.bytes.begin() + o, s.bytes.begin() + o + 64), true, 0});
                }
                break;
        }
    }
    const std::size_t n = std::max(events.size(), expected.size());
    for (std::size_t i = 0; i < n; ++i) {
        const bool haveE = i < expected.size(), haveA = i < events.size();
        if (haveE && haveA && expected[i].kind == events[i].kind && expected[i].bytes == events[i].bytes &&
            expected[i].ok == events[i].ok && expected[i].micros == events[i].micros) {
            continue;
        }
        return ::testing::AssertionFailure()
               << "wire differs at event " << i << " of " << events.size() << "\n  expected: "
               << (haveE ? describe(expected[i]) : "(end)") << "\n  actual:   "
               << (haveA ? describe(events[i]) : "(end)");
    }
    return ::testing::AssertionSuccess();
}

}  // namespace qx9::test
