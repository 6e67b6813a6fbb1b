#include "support/wire_fixture.h"

#include <algorithm>
#include <iterator>

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
    for (const auto& e : events)
        if (e.kind == WireEvent::Set) out.push_back(e.bytes);
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
    comm_ = std::make_unique<DeviceComm>(keyboard_, recorder_.get(), recorder_);
}

std::vector<Bytes> WireFixture::sets() const { return setsOf(recorder_->events); }

std::vector<WireEvent> WireFixture::calls() const {
    std::vector<WireEvent> out;
    std::ranges::copy_if(recorder_->events, std::back_inserter(out),
                         [](const WireEvent& e) { return e.kind != WireEvent::Pause; });
    return out;
}

namespace {

std::string describe(const std::vector<WireEvent>& events, std::size_t i) {
    if (i >= events.size()) return "(end)";
    const WireEvent& e = events[i];
    if (e.kind == WireEvent::Pause) return "pause " + std::to_string(e.micros) + " us";
    return (e.kind == WireEvent::Set ? "SET " : "GET ") + hexString(e.bytes) + (e.ok ? "" : " FAIL");
}

}  // namespace

::testing::AssertionResult wireMatches(const std::vector<WireEvent>& events,
                                       const std::vector<Step>& steps) {
    std::vector<WireEvent> expected;
    const auto add = [&](WireEvent::Kind kind, const Bytes& bytes = {}) {  // each after a 5 ms pause
        expected.push_back({WireEvent::Pause, {}, true, 5000});
        if (kind != WireEvent::Pause) expected.push_back({kind, bytes});
    };
    for (const Step& s : steps) {
        if (s.kind == Step::Pause) add(WireEvent::Pause);
        if (s.kind == Step::Command || s.kind == Step::Raw) add(WireEvent::Set, s.bytes);
        for (std::size_t o = 0; s.kind == Step::Block && o + 64 <= s.bytes.size(); o += 64)
            add(WireEvent::Set, Bytes(s.bytes.begin() + o, s.bytes.begin() + o + 64));
        if (s.kind == Step::Command) {
            Bytes ack = s.bytes;
            ack[3] = 0;
            add(WireEvent::Get, ack);
        }
    }
    for (std::size_t i = 0; i < std::max(events.size(), expected.size()); ++i) {
        if (i < expected.size() && i < events.size() && expected[i] == events[i]) continue;
        return ::testing::AssertionFailure() << "wire differs at event " << i << " of " << events.size()
                                             << "\n  expected: " << describe(expected, i)
                                             << "\n  actual:   " << describe(events, i);
    }
    return ::testing::AssertionSuccess();
}

VirtualQX9Memory keyboardOf(const std::string& databaseFile, const std::vector<BlockRequest>& blocks) {
    struct NoPause final : Pacer {
        void pause(std::chrono::microseconds) override {}
    } noPause;
    auto keyboard = std::make_shared<VirtualQX9>();
    DeviceComm comm(keyboard, &noPause);
    const auto db = DeviceSQLite::openForReading(databaseFile);
    sendBlocks(comm, *db, blocks);
    return keyboard->memory();
}

}  // namespace qx9::test
