// The store operations behind every user action, on a database of realistic size: 10 profiles
// with 100 assigned keys each, 50 macros of 40 events. The file lives in a fresh directory
// under $QX9_BENCH_DIR (default: the temporary directory), so the figures include that file
// system's sync cost.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <cstdint>
#include <filesystem>
#include <iostream>
#include <memory>
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

// Every store write is its own synced commit, so filling 3,500 rows on a disk takes long. The
// file is filled in memory-backed /dev/shm when there is one and then copied to where it is
// measured: $QX9_BENCH_DIR, or the temporary directory.
void buildDatabase() {
    const char* where = std::getenv("QX9_BENCH_DIR");
    g_dir =
        makeTempDir(where ? std::filesystem::path(where) : std::filesystem::temp_directory_path());
    const std::filesystem::path file = g_dir / "bench.sqlite3";
    if (std::filesystem::is_directory("/dev/shm")) {
        const std::filesystem::path scratch = makeTempDir("/dev/shm");
        {
            DeviceSQLite db = DeviceSQLite::atPath(scratch / "bench.sqlite3");
            fill(db);
        }
        std::filesystem::copy_file(scratch / "bench.sqlite3", file);
        std::filesystem::remove_all(scratch);
        g_db = std::make_unique<DeviceSQLite>(DeviceSQLite::atPath(file));
    } else {
        g_db = std::make_unique<DeviceSQLite>(DeviceSQLite::atPath(file));
        fill(*g_db);
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
