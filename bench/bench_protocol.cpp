// Host cost of the write transactions on the virtual QX9, and the time to build the blocks.
//
// A transaction's mandated pauses (5 ms before every report, and the macro download's own two)
// are counted by a pacer that sleeps and counts; "overhead_pct" is the wall time beyond those
// pauses as a share of them: sleep overshoot plus building, encoding and the virtual keyboard.
#include <benchmark/benchmark.h>

#include <chrono>
#include <memory>

#include "common/console.h"
#include "hid/device_comm.h"
#include "virtual/virtual_qx9.h"
#include "layout/key_maps.h"
#include "sender/keyboard_sender.h"
#include "protocol/key_mapping.h"
#include "protocol/light_mode.h"
#include "protocol/macro_download.h"
#include "protocol/system_function.h"
#include "protocol/user_light.h"

namespace {

using namespace qx9;
using Clock = std::chrono::steady_clock;

class CountingPacer final : public Pacer {
public:
    void pause(std::chrono::microseconds d) override {
        mandated += d;
        sleepPacer().pause(d);
    }
    std::chrono::microseconds mandated{0};
};

struct NullBuffer : std::streambuf {
    int overflow(int c) override { return c; }
};

protocol::KeyMappingInput fullKeyMap() {
    protocol::KeyMappingInput in;
    for (const auto& e : G_KB_SuperKeyCodeMap.entries()) {
        ProfileKey k;
        k.keyValue = e.code;
        k.macroType = kMacroTypeCombination;
        k.macroValue = 224;
        k.macro2Value = 226;
        k.macro3Value = 76;
        in.keys.push_back(k);
    }
    for (int i = 0; i < 50; ++i) in.macros.push_back(MacroInfo{i + 1, 1, 0, 0, "Macro"});
    return in;
}

// 600 events in 12 macros of 50 (key down, delay, key up, delay, …): just within capacity.
protocol::MacroDownloadInput macros600() {
    protocol::MacroDownloadInput in;
    for (int m = 0; m < 12; ++m) {
        protocol::MacroWithEvents mac;
        mac.info.macroId = m + 1;
        for (int e = 0; e < 50; ++e) {
            RecordInfo r;
            r.recordType = e % 2 == 0 ? (e % 4 == 0 ? kRecordKeyDown : kRecordKeyUp) : kRecordDelay;
            r.recordValue = e % 2 == 0 ? 4 + m : 20;
            mac.events.push_back(r);
        }
        in.macros.push_back(std::move(mac));
    }
    in.storedEventCount = 600;
    in.listedMacroCount = 12;
    return in;
}

std::vector<UserLightLEDData> allKeyColours() {
    std::vector<UserLightLEDData> out;
    for (const auto& e : G_KB_SuperKeyCodeMap.entries()) out.push_back({0, 1, e.code, 0x123456});
    return out;
}

// The transaction as the sender runs it: building it is measured separately below.
void sendTransaction(benchmark::State& state, const protocol::Transaction& transaction) {
    installKB108KMaps();
    NullBuffer nullBuffer;
    std::ostream quiet(&nullBuffer);
    std::ostream* previous = setConsoleStream(&quiet);
    auto keyboard = std::make_shared<VirtualQX9>();
    CountingPacer pacer;
    DeviceComm comm(keyboard, &pacer);
    Clock::duration wall{};
    for (auto _ : state) {
        const auto start = Clock::now();
        qx9::runTransaction(comm, transaction);
        wall += Clock::now() - start;
    }
    setConsoleStream(previous);
    const double wallUs = std::chrono::duration<double, std::micro>(wall).count();
    const double pauseUs = static_cast<double>(pacer.mandated.count());
    const double iters = static_cast<double>(state.iterations());
    state.counters["pauses_ms"] = pauseUs / iters / 1000.0;
    state.counters["overhead_us"] = (wallUs - pauseUs) / iters;
    state.counters["overhead_pct"] = 100.0 * (wallUs - pauseUs) / pauseUs;
}

void BM_LightModeTransaction(benchmark::State& state) {
    const LightRecord record{0, 0xCA, 0x51, 0, 0, 0, 0, 0, 1, 15, 12, 0};
    sendTransaction(state, protocol::lightModeTransaction(3, record));
}
void BM_SystemFunctionTransaction(benchmark::State& state) {
    const protocol::SystemStoredValues stored{"1", "2"};
    sendTransaction(state, protocol::systemFunctionTransaction({true, true, false, true}, stored));
}
void BM_KeyMappingTransaction(benchmark::State& state) {
    installKB108KMaps();
    const auto input = fullKeyMap();
    sendTransaction(state, protocol::keyMappingTransaction(0, input));
}
void BM_MacroTransaction600Events(benchmark::State& state) {
    const auto input = macros600();
    sendTransaction(state, *protocol::macroTransaction(input));
}
void BM_UserLightTransaction(benchmark::State& state) {
    installKB108KMaps();
    const auto colours = allKeyColours();
    sendTransaction(state, protocol::userLightLedTransaction(colours));
}

void BM_BuildKeyMappingBlock(benchmark::State& state) {
    installKB108KMaps();
    const auto input = fullKeyMap();
    for (auto _ : state) benchmark::DoNotOptimize(protocol::buildKeyMappingBlock(input));
}
void BM_BuildMacroBlock600Events(benchmark::State& state) {
    const auto input = macros600();
    for (auto _ : state) benchmark::DoNotOptimize(protocol::buildMacroBlock(input.macros));
}
void BM_BuildKeyColourBlock(benchmark::State& state) {
    installKB108KMaps();
    const auto colours = allKeyColours();
    for (auto _ : state) benchmark::DoNotOptimize(protocol::buildKeyColourBlock(colours));
}

}  // namespace

BENCHMARK(BM_LightModeTransaction)->Unit(benchmark::kMillisecond)->Iterations(40);
BENCHMARK(BM_SystemFunctionTransaction)->Unit(benchmark::kMillisecond)->Iterations(40);
BENCHMARK(BM_KeyMappingTransaction)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(BM_MacroTransaction600Events)->Unit(benchmark::kMillisecond)->Iterations(10);
BENCHMARK(BM_UserLightTransaction)->Unit(benchmark::kMillisecond)->Iterations(20);
BENCHMARK(BM_BuildKeyMappingBlock)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BuildMacroBlock600Events)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BuildKeyColourBlock)->Unit(benchmark::kMicrosecond);

BENCHMARK_MAIN();
