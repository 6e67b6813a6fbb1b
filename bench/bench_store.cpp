// The store operations behind every user action, on a database of realistic size: 10 profiles
// with 100 assigned keys each, 50 macros of 40 events. The file lives in a fresh directory
// under $QX9_BENCH_DIR (default: the temporary directory), so the figures include that file
// system's sync cost.
//
// The cases registered with one iteration ("…/iterations:1") are there to count the syncs of
// a single operation, as the difference between
//   strace -f -c -e trace=fdatasync,fsync qx9_bench_store --benchmark_filter='<case>/iterations:1'
// and the same with --benchmark_filter='^$' (building the database alone).
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <cstdint>
#include <filesystem>
#include <iostream>
#include <memory>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "common/console.h"
#include "store/device_sqlite.h"

namespace {

using qx9::DeviceSQLite;

constexpr std::int64_t kProfiles = 10;
constexpr std::int64_t kKeysPerProfile = 100;
constexpr std::int64_t kMacros = 50;
constexpr std::int64_t kEventsPerMacro = 40;

std::filesystem::path g_dir;
std::unique_ptr<DeviceSQLite> g_db;

std::filesystem::path makeTempDir(const std::filesystem::path& parent) {
    std::string pattern = (parent / "qx9-bench-XXXXXX").string();
    if (!mkdtemp(pattern.data())) {
        std::cerr << "cannot create " << pattern << '\n';
        std::exit(1);
    }
    return pattern;
}

void fill(DeviceSQLite& db) {
    for (std::int64_t p = 1; p <= kProfiles; ++p) {
        if (p > 1) db.addProfile("Configuration File " + std::to_string(p));
        db.writeLightProfile(p);
        for (std::int64_t k = 1; k <= kKeysPerProfile; ++k) {
            db.addKeyProfile({0, 0, p, k, qx9::kMacroTypeKey, k + 3, 0, 0, "key"});
        }
    }
    for (std::int64_t m = 0; m < kMacros; ++m) {
        const std::int64_t id = db.addMacroProfile("Macro " + std::to_string(m));
        for (std::int64_t e = 0; e < kEventsPerMacro; ++e) {
            const std::int64_t type = e % 2 ? qx9::kRecordKeyUp : qx9::kRecordKeyDown;
            db.addMacroRecord({0, id, type, e, 4 + e / 2, "A"});
        }
    }
}

// The 3,500 rows in one transaction: one commit instead of one per row.
void buildDatabase() {
    const char* where = std::getenv("QX9_BENCH_DIR");
    g_dir =
        makeTempDir(where ? std::filesystem::path(where) : std::filesystem::temp_directory_path());
    const std::filesystem::path file = g_dir / "bench.sqlite3";
    g_db = std::make_unique<DeviceSQLite>(DeviceSQLite::atPath(file));
    DeviceSQLite::Transaction transaction = g_db->beginTransaction();
    fill(*g_db);
    if (!transaction.commit()) {
        std::cerr << "cannot fill " << file.string() << '\n';
        std::exit(1);
    }
    std::cerr << "database: " << file.string() << '\n';
}

// Switching profiles: the keys of the base layer, the lighting rows (present, so no write),
// the selected mode.
void BM_ProfileSwitch(benchmark::State& state) {
    std::int64_t profile = 0;
    for (auto _ : state) {
        profile = profile % kProfiles + 1;
        std::vector<qx9::ProfileKey> keys;
        g_db->queryKeysProfile(profile, 0, keys);
        benchmark::DoNotOptimize(g_db->writeLightProfile(profile));
        benchmark::DoNotOptimize(g_db->getLightModeSelectIndex(profile));
        benchmark::DoNotOptimize(keys.data());
    }
}
BENCHMARK(BM_ProfileSwitch)->Unit(benchmark::kMicrosecond);

// Assigning one key: delete its row, insert the new one.
void BM_AddKeyProfile(benchmark::State& state) {
    std::int64_t value = 10;
    for (auto _ : state) {
        value = value == 10 ? 11 : 10;
        benchmark::DoNotOptimize(
            g_db->addKeyProfile({0, 0, 3, 42, qx9::kMacroTypeKey, value, 0, 0, "key"}));
    }
}
BENCHMARK(BM_AddKeyProfile)->Unit(benchmark::kMicrosecond);

// Changing one backlight parameter: read the mode's record, store it back.
void BM_LightEdit(benchmark::State& state) {
    for (auto _ : state) {
        qx9::lightData light;
        g_db->queryLightInfo(3, 5, light);
        light.data[9] = light.data[9] == 15 ? 14 : 15;
        benchmark::DoNotOptimize(g_db->modifyLightData(3, 5, light.data));
    }
}
BENCHMARK(BM_LightEdit)->Unit(benchmark::kMicrosecond);

// The read halves alone, to tell statement cost from commit cost.
void BM_QueryKeysProfile(benchmark::State& state) {
    for (auto _ : state) {
        std::vector<qx9::ProfileKey> keys;
        g_db->queryKeysProfile(7, 0, keys);
        benchmark::DoNotOptimize(keys.data());
    }
}
BENCHMARK(BM_QueryKeysProfile)->Unit(benchmark::kMicrosecond);

void BM_QueryLightInfo(benchmark::State& state) {
    for (auto _ : state) {
        qx9::lightData light;
        benchmark::DoNotOptimize(g_db->queryLightInfo(3, 5, light));
    }
}
BENCHMARK(BM_QueryLightInfo)->Unit(benchmark::kMicrosecond);

// The events of a 40-event macro with one more inserted in the middle, as the macro editor
// stores them after an insertion.
std::vector<qx9::RecordInfo> macroWithInsertedEvent(std::int64_t macroId) {
    std::vector<qx9::RecordInfo> events;
    for (std::int64_t e = 0; e < kEventsPerMacro; ++e) {
        const std::int64_t type = e % 2 ? qx9::kRecordKeyUp : qx9::kRecordKeyDown;
        events.push_back({0, macroId, type, e, 4 + e / 2, "A"});
    }
    events.insert(events.begin() + kEventsPerMacro / 2,
                  {0, macroId, qx9::kRecordDelay, 0, 30, "30"});
    for (std::size_t i = 0; i < events.size(); ++i)
        events[i].recordIndex = static_cast<std::int64_t>(i);
    return events;
}

// Storing those 41 events the way the editor always did: delete them all, then one commit per
// event.
void BM_MacroInsertEventRowByRow(benchmark::State& state) {
    const std::vector<qx9::RecordInfo> events = macroWithInsertedEvent(kMacros / 2);
    for (auto _ : state) {
        g_db->deleteMacroRecord(kMacros / 2);
        for (const qx9::RecordInfo& e : events) benchmark::DoNotOptimize(g_db->addMacroRecord(e));
    }
}
BENCHMARK(BM_MacroInsertEventRowByRow)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_MacroInsertEventRowByRow)->Iterations(1);

// The same 41 events in one transaction.
void BM_MacroInsertEvent(benchmark::State& state) {
    const std::vector<qx9::RecordInfo> events = macroWithInsertedEvent(kMacros / 2);
    for (auto _ : state) {
        if (!g_db->replaceMacroRecords(kMacros / 2, events)) state.SkipWithError("refused");
    }
}
BENCHMARK(BM_MacroInsertEvent)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_MacroInsertEvent)->Iterations(1);

// Bytes of row data in a configuration: 8 for each integer, the length of each text.
std::size_t rowBytes(const qx9::Configuration& c) {
    std::size_t bytes = 0;
    for (const auto& p : c.profiles) bytes += 8 + p.name.size();
    for (const auto& v : c.configurationValues) bytes += 16 + v.key.size() + v.value.size();
    for (const auto& k : c.keyAssignments) bytes += 8 * 8 + k.macroDesc.size();
    for (const auto& l : c.lighting) bytes += 15 * 8 + (l.name ? l.name->size() : 0);
    for (const auto& u : c.userLights) bytes += 4 * 8 + u.userlight_name.size();
    bytes += c.userLightColours.size() * 4 * 8;
    for (const auto& m : c.macros) bytes += 4 * 8 + m.macroName.size();
    for (const auto& e : c.macroEvents) bytes += 5 * 8 + e.recordDesc.size();
    return bytes;
}

// Import of a large configuration: the benchmark database with both Fn layers of every profile
// assigned and a set of ten per-key colours per profile, about 250 KB of rows, replacing the
// contents of a file of its own.
void BM_ReplaceConfiguration(benchmark::State& state) {
    std::string error;
    std::optional<qx9::Configuration> c = g_db->readConfiguration(error);
    if (!c) {
        state.SkipWithError(error.c_str());
        return;
    }
    const std::size_t keys = c->keyAssignments.size();
    const std::int64_t lastId = keys ? c->keyAssignments.back().keyId : 0;
    for (std::size_t i = 0; i < keys; ++i) {
        qx9::ProfileKey fn = c->keyAssignments[i];
        fn.keyId += lastId;
        fn.fnlayerId = 1;
        c->keyAssignments.push_back(fn);
    }
    for (std::int64_t p = 1; p <= kProfiles; ++p) {
        c->userLights.push_back({p, p, "User light" + std::to_string(p), 15, 15});
        for (std::int64_t k = 1; k <= 10; ++k) {
            const auto id = static_cast<std::int64_t>(c->userLightColours.size()) + 1;
            c->userLightColours.push_back({id, p, k, 0x123456 + k});
        }
    }
    DeviceSQLite target = DeviceSQLite::atPath(g_dir / "replace.sqlite3");
    for (auto _ : state) {
        if (!target.replaceConfiguration(*c, error)) state.SkipWithError(error.c_str());
    }
    state.counters["rowKB"] = static_cast<double>(rowBytes(*c)) / 1000.0;
}
BENCHMARK(BM_ReplaceConfiguration)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReplaceConfiguration)->Iterations(1);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    std::ostringstream quiet;  // keep "init: connect success" out of the report
    qx9::setConsoleStream(&quiet);
    buildDatabase();
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    g_db.reset();
    std::filesystem::remove_all(g_dir);
    return 0;
}
