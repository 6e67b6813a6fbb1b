// Host time of whole user actions on a database of realistic size: a macro save with 50 macros
// of 40 events, one event inserted into a 40-event macro (and by the macro page into one of 600
// and of 2400 events), a key assignment, and an export and an
// import of that database. The keyboard is the virtual QX9
// and the transport's pacer does not pause, so the keyboard's mandated 5 ms pauses are left
// out and only the host's own work is measured. The database lives in a fresh directory under
// $QX9_BENCH_DIR (default: the temporary directory), so the figures include that file
// system's sync cost.
#include <benchmark/benchmark.h>
#include <stdlib.h>

#include <chrono>
#include <filesystem>
#include <iostream>
#include <memory>
#include <sstream>
#include <string>

#include "common/console.h"
#include "hid/pacer.h"
#include "virtual/virtual_qx9.h"
#include "layout/key_maps.h"
#include "hid/device_access.h"
#include "ops/configuration.h"
#include "ops/key_assignment.h"
#include "ops/macros.h"
#include "session/keyboard_session.h"

namespace {

constexpr std::int64_t kProfiles = 3;
constexpr std::size_t kKeysPerProfile = 60;
constexpr std::int64_t kMacros = 50;
constexpr std::int64_t kEventsPerMacro = 40;

// The transport's pauses cost nothing here.
class NoPause final : public qx9::Pacer {
public:
    void pause(std::chrono::microseconds) override {}
};

NoPause g_noPause;
std::filesystem::path g_dir;
std::shared_ptr<qx9::VirtualQX9> g_keyboard;
std::unique_ptr<qx9::KeyboardSession> g_session;

std::filesystem::path makeTempDir(const std::filesystem::path& parent) {
    std::string pattern = (parent / "qx9-bench-XXXXXX").string();
    if (!mkdtemp(pattern.data())) {
        std::cerr << "cannot create " << pattern << '\n';
        std::exit(1);
    }
    return pattern;
}

void fill(qx9::DeviceSQLite& db) {
    for (std::int64_t p = 1; p <= kProfiles; ++p) {
        if (p > 1) db.addProfile("Configuration File " + std::to_string(p));
        db.writeLightProfile(p);
        const auto& keys = qx9::KB_108K_SuperKeyCodeMap().entries();
        for (std::size_t k = 0; k < keys.size() && k < kKeysPerProfile; ++k) {
            db.addKeyProfile({0, 0, p, keys[k].code, qx9::kMacroTypeKey, 4 + static_cast<std::int64_t>(k % 26), 0, 0, "key"});
        }
    }
    for (std::int64_t m = 0; m < kMacros; ++m) {
        const std::int64_t id = db.addMacroProfile("Macro" + std::to_string(m + 1));
        for (std::int64_t e = 0; e < kEventsPerMacro; ++e) {
            const std::int64_t type = e % 2 ? qx9::kRecordKeyUp : qx9::kRecordKeyDown;
            db.addMacroRecord({0, id, type, e, 4 + e / 2, "A"});
        }
    }
    const std::int64_t set = db.addUserLight(1, "User light1");
    for (std::int64_t k = 4; k < 30; ++k) db.addUserLightLEDData({0, set, k, 0x010203 * (k - 3)});  // a–z
}

// The database is filled in memory-backed /dev/shm when there is one (every store write is a
// synced commit) and copied to where it is measured.
std::filesystem::path buildDatabase() {
    const char* where = std::getenv("QX9_BENCH_DIR");
    g_dir = makeTempDir(where ? std::filesystem::path(where) : std::filesystem::temp_directory_path());
    const std::filesystem::path file = g_dir / "bench.sqlite3";
    const bool shm = std::filesystem::is_directory("/dev/shm");
    const std::filesystem::path scratch = shm ? makeTempDir("/dev/shm") : g_dir;
    {
        qx9::DeviceSQLite db = qx9::DeviceSQLite::atPath(scratch / "bench.sqlite3");
        fill(db);
    }
    if (shm) {
        std::filesystem::copy_file(scratch / "bench.sqlite3", file);
        std::filesystem::remove_all(scratch);
    }
    std::cerr << "database: " << file.string() << '\n';
    return file;
}

// A session connected to a virtual QX9 as at the window's first connection.
void openSession(const std::filesystem::path& file) {
    qx9::SessionConfig config;
    config.databaseFile = file;
    config.pacer = &g_noPause;
    g_session = std::make_unique<qx9::KeyboardSession>(config);
    g_keyboard = std::make_shared<qx9::VirtualQX9>();
    g_session->device.deviceConnected(qx9::virtualQX9Record(g_keyboard));
}

// The Save button of the macro page on a macro of 40 events: its events and header stored
// again, then the download of all macros. (50 macros of 40 events exceed the keyboard's
// capacity, so the download stops at its capacity check and sends nothing.)
void BM_MacroSave(benchmark::State& state) {
    g_session->macros.macroTableSelectionChanged(7);
    for (auto _ : state) g_session->macros.button_action_saverecord();
    state.counters["events"] = static_cast<double>(g_session->macros.RecordListDatas().size());
}
BENCHMARK(BM_MacroSave)->Unit(benchmark::kMillisecond);

// One event inserted into a macro of 40 events (qx9ctl macro insert): the list stored in one
// transaction, then the download of all macros.
void BM_InsertEvent(benchmark::State& state) {
    const qx9::ops::Target target = *g_session->core.target();
    const std::int64_t macro = 8;
    const std::vector<qx9::ops::RecordRow> events = qx9::ops::storedEvents(target.db, macro);
    for (auto _ : state) {
        std::vector<qx9::ops::RecordRow> longer = events;
        qx9::ops::insertEvents(longer, 0, false, qx9::ops::delayEvents(10));
        const qx9::ops::Outcome o = qx9::ops::storeAndSendEvents(target, macro, longer);
        if (o.status == qx9::ops::Outcome::kNotStored) state.SkipWithError("not stored");
    }
}
BENCHMARK(BM_InsertEvent)->Unit(benchmark::kMillisecond);

// The macro page's Insert button on a macro of N events: the list stored, the macro memory
// counted again for the page, the download (which the capacity check stops).
void BM_PageInsertEvent(benchmark::State& state) {
    qx9::MacroPage& page = g_session->macros;
    page.addMacroData();
    const int row = page.macroSelectIndex();
    std::vector<qx9::ops::RecordRow> events;
    for (std::int64_t e = 0; e < state.range(0); e += 2) events.insert(events.end(), {{qx9::kRecordKeyDown, "A", 4}, {qx9::kRecordKeyUp, "A", 4}});
    qx9::ops::storeEvents(*g_session->core.target(), page.MacroListDatas().back().macroid, events);
    page.macroTableSelectionChanged(row);
    page.radio_action_delaytime();
    page.controlTextDidChange(qx9::MacroField::kInsertEvent, "10");
    for (auto _ : state) page.insertNewEvent();
    state.counters["events"] = static_cast<double>(page.RecordListDatas().size());
    page.deleteMacroData();
}
BENCHMARK(BM_PageInsertEvent)->Arg(600)->Arg(2400)->Unit(benchmark::kMillisecond);

// A key assignment (qx9ctl key set 1 0 a key:5): stored, then profile 1's key map sent.
void BM_AssignKey(benchmark::State& state) {
    const qx9::ops::Target target = *g_session->core.target();
    for (auto _ : state) {
        if (!qx9::ops::assignKey(target, 1, 0, 4, *qx9::ops::paletteFunction(5))) state.SkipWithError("not stored");
    }
}
BENCHMARK(BM_AssignKey)->Unit(benchmark::kMillisecond);

// Export: every row read in one snapshot and written as the document.
void BM_Export(benchmark::State& state) {
    std::size_t size = 0;
    for (auto _ : state) {
        std::string doc;
        if (!qx9::ops::exportConfiguration(*g_session->core.db(), doc)) state.SkipWithError("not exported");
        size = doc.size();
    }
    state.counters["bytes"] = static_cast<double>(size);
}
BENCHMARK(BM_Export)->Unit(benchmark::kMillisecond);

// Import of that document: the whole check, the replacement in one transaction and what a
// first connection sends (per-key colours, system functions, key map).
void BM_Import(benchmark::State& state) {
    std::string doc;
    if (!qx9::ops::exportConfiguration(*g_session->core.db(), doc)) {
        state.SkipWithError("not exported");
        return;
    }
    for (auto _ : state) {
        if (!qx9::ops::importConfiguration(*g_session->core.target(), doc)) state.SkipWithError("not imported");
    }
    state.counters["bytes"] = static_cast<double>(doc.size());
}
BENCHMARK(BM_Import)->Unit(benchmark::kMillisecond);

// The check of the document alone.
void BM_ImportCheckOnly(benchmark::State& state) {
    std::string doc;
    std::string error;
    qx9::ops::exportConfiguration(*g_session->core.db(), doc);
    for (auto _ : state) benchmark::DoNotOptimize(qx9::ops::parseConfigurationDocument(doc, error));
}
BENCHMARK(BM_ImportCheckOnly)->Unit(benchmark::kMillisecond);

}  // namespace

int main(int argc, char** argv) {
    benchmark::Initialize(&argc, argv);
    std::ostringstream quiet;  // keep the diagnostic console out of the report
    qx9::setConsoleStream(&quiet);
    openSession(buildDatabase());
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    g_session.reset();
    std::filesystem::remove_all(g_dir);
    qx9::setConsoleStream(nullptr);
    return 0;
}
