// Undo and redo beside the changes they take back: the host time of one undo next to the same
// change made forward (no keyboard, so no pacing), for each kind of change; and the history's
// size on disk after 100 steps of each kind. The file lives in a fresh directory under
// $QX9_BENCH_DIR (default: the temporary directory).
#include <stdlib.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <iostream>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "common/console.h"
#include "layout/key_maps.h"
#include "ops/configuration.h"
#include "ops/history.h"
#include "ops/key_assignment.h"
#include "ops/lighting.h"
#include "ops/macros.h"
#include "ops/profiles.h"
#include "ops/settings.h"
#include "ops/user_lights.h"

namespace {

using namespace qx9;
using Clock = std::chrono::steady_clock;

constexpr int kSteps = 100;

struct Kind {
    const char* name;
    std::function<ops::Outcome(const ops::Target&, int)> change;
};

double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v[v.size() / 2];
}

template <typename F>
double microseconds(F&& f) {
    const auto start = Clock::now();
    f();
    return std::chrono::duration<double, std::micro>(Clock::now() - start).count();
}

std::uintmax_t historyBytes(const std::filesystem::path& file) {
    std::uintmax_t total = 0;
    std::error_code ec;
    for (const char* suffix : {"", "-wal"}) {
        const auto size = std::filesystem::file_size(file.string() + kHistorySuffix + suffix, ec);
        if (!ec) total += size;
    }
    return total;
}

}  // namespace

int main() {
    std::ostringstream quiet;
    setConsoleStream(&quiet);
    installKB108KMaps();
    const char* base = std::getenv("QX9_BENCH_DIR");
    std::string pattern = (std::filesystem::path(base ? base : std::filesystem::temp_directory_path().string()) / "qx9-history-XXXXXX").string();
    if (!mkdtemp(pattern.data())) return 1;
    const std::filesystem::path dir = pattern;

    std::string documents[2];  // a key assigned, and none
    const std::vector<Kind> kinds = {
        {"assign a key", [](const ops::Target& t, int i) {
             return ops::assignKey(t, 1, 0, 4 + i % 20, i % 2 ? ops::disabledFunction() : *ops::paletteFunction(57));
         }},
        {"edit a macro (40 events)", [](const ops::Target& t, int i) {
             std::vector<ops::RecordRow> events;
             for (int k = 0; k < 20; ++k) {
                 const auto press = ops::keyPressEvents(4 + (k + i) % 20);
                 if (press) events.insert(events.end(), press->begin(), press->end());
             }
             return ops::storeAndSendEvents(t, 1, events, nullptr);
         }},
        {"backlight brightness", [](const ops::Target& t, int i) { return ops::setBrightness(t, 1, 1, i % 5); }},
        {"paint 10 keys", [](const ops::Target& t, int i) {
             std::vector<std::int64_t> keys;
             for (int k = 0; k < 10; ++k) keys.push_back(4 + (k + i) % 20);
             return ops::paintKeys(t, 1, keys, 0x010101u * static_cast<std::uint32_t>(i % 200 + 1));
         }},
        {"sleep time", [](const ops::Target& t, int i) { return ops::setSleepTime(t, (i + 1) % 4, {}); }},
        {"add a profile", [](const ops::Target& t, int) { std::string n; std::int64_t id; return ops::addProfile(t, n, id); }},
        {"reset the keys", [](const ops::Target& t, int i) {
             ops::assignKey(t, 1, 0, 4 + i % 20, ops::disabledFunction());
             std::int64_t mode = 0;
             return ops::resetKeys(t, 1, mode);
         }},
        {"import", [&documents](const ops::Target& t, int i) { return ops::importConfiguration(t, documents[i % 2]); }},
    };

    std::printf("%-26s %12s %12s %8s %14s\n", "change", "forward µs", "undo µs", "ratio", "history KiB");
    int index = 0;
    for (const Kind& kind : kinds) {
        const std::filesystem::path file = dir / ("db" + std::to_string(index++) + ".sqlite3");
        DeviceSQLite db = DeviceSQLite::atPath(file);
        const ops::Target t{db};
        std::string name;
        std::int64_t id = 0;
        ops::addMacro(t, name, id);
        ops::addUserLight(t, name, id);
        if (documents[0].empty()) {
            ops::exportConfiguration(db, documents[1]);
            DeviceSQLite other = DeviceSQLite::atPath(dir / "assigned.sqlite3");
            ops::assignKey({other}, 1, 0, 4, ops::disabledFunction());
            ops::exportConfiguration(other, documents[0]);
        }
        std::vector<double> forward, undo;
        std::int64_t last = 0;
        for (int i = 0; i < kSteps; ++i) {
            ops::Outcome done;
            forward.push_back(microseconds([&] { done = kind.change(t, i); }));
            const std::optional<HistoryStep> taken = ops::nextUndo(db);
            if (!done || !taken || taken->id == last) {
                std::cerr << kind.name << ", change " << i << ": no step taken; " << ops::describe(done) << '\n';
                return 1;
            }
            last = taken->id;
            HistoryStep step;
            undo.push_back(microseconds([&] { ops::undo(t, step); }));
            ops::redo(t, step);
        }
        const double f = median(forward), u = median(undo);
        db = DeviceSQLite::atPath(dir / "other.sqlite3");  // the last connection closed: the log is folded in
        std::printf("%-26s %12.0f %12.0f %8.2f %14.1f\n", kind.name, f, u, u / f,
                    static_cast<double>(historyBytes(file)) / 1024.0);
    }
    std::filesystem::remove_all(dir);
    return 0;
}
