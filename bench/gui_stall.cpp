// How long the window's thread stalls while the user acts, with the keyboard written from a
// thread of its own (as the window does) and, as the reference measured in the same run, from
// the window's thread. A 1 ms timer measures its own lateness: the longest lateness is the
// longest stall. The virtual QX9 keeps the keyboard's pacing (5 ms before every report).
//   QT_QPA_PLATFORM=offscreen build/bin/qx9_gui_stall
#include <QApplication>
#include <QColorDialog>
#include <QElapsedTimer>
#include <QMainWindow>
#include <QSlider>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>

#include <atomic>
#include <cstdio>
#include <filesystem>
#include <functional>
#include <thread>

#include "app/keyboard_view_controller.h"
#include "common/console.h"
#include "hid/device_access.h"
#include "virtual/virtual_qx9.h"
#include "virtual/virtual_qx9_memory.h"
#include "ops/configuration.h"
#include "ops/macros.h"
#include "pages/color_panel.h"

namespace {

using namespace qx9;

// The lateness of a timer that should fire every millisecond.
class StallProbe : public QObject {
public:
    StallProbe() {
        timer_.setTimerType(Qt::PreciseTimer);
        timer_.setInterval(1);
        connect(&timer_, &QTimer::timeout, this, [this] {
            const qint64 now = clock_.nsecsElapsed();
            worst_ = std::max(worst_, now - last_ - 1000000);
            last_ = now;
        });
    }
    void start() {
        worst_ = 0;
        clock_.start();
        last_ = 0;
        timer_.start();
    }
    double stopMs() {
        timer_.stop();
        return static_cast<double>(worst_) / 1e6;
    }

private:
    QTimer timer_;
    QElapsedTimer clock_;
    qint64 last_ = 0, worst_ = 0;
};

void pump(int ms) {
    QElapsedTimer t;
    t.start();
    while (t.elapsed() < ms) QApplication::processEvents(QEventLoop::AllEvents, 1);
}

bool waitUntil(const std::function<bool()>& done, int timeoutMs = 20000) {
    QElapsedTimer t;
    t.start();
    while (!done()) {
        if (t.elapsed() > timeoutMs) return false;
        QApplication::processEvents(QEventLoop::AllEvents, 1);
    }
    return true;
}

struct Window {
    QTemporaryDir dir;
    QMainWindow main;
    KeyboardViewController* controller = nullptr;

    explicit Window(bool onWorker, bool plugged = true) {
        AppOptions options;
        options.virtualKeyboard = plugged;
        options.noMonitor = true;
        options.database = (dir.path() + "/stall.sqlite3").toStdString();
        options.sendOnWorker = onWorker;
        controller = new KeyboardViewController(options, &main);
        main.setCentralWidget(controller);
    }
    KeyboardSession& session() { return controller->session(); }
    bool idle() { return session().core.initFinish && session().core.sendingIdle(); }
    void settle() {
        waitUntil([this] { return idle(); });
        pump(50);
    }
    VirtualQX9Memory keyboard() { return controller->virtualKeyboard()->memory(); }
};

struct Result {
    double stallMs = 0;
    int transactions = 0;
    double lastValueMs = 0;  // from the last step until the keyboard held its value
};

// The keyboard plugged into a window that is open on a database of a few settings: from the
// arrival to the configuration sent.
Result measureConnect(bool onWorker) {
    QTemporaryDir saved;
    const std::string database = (saved.path() + "/stall.sqlite3").toStdString();
    {
        // The database as a user has it, made by an earlier run.
        Window earlier(true);
        earlier.main.show();
        earlier.settle();
        std::filesystem::copy_file(earlier.session().core.db()->filePath(), database);
    }
    Window w(onWorker, false);
    std::filesystem::copy_file(database, (w.dir.path() + "/stall.sqlite3").toStdString());
    w.main.show();
    pump(200);
    auto keyboard = std::make_shared<VirtualQX9>();
    StallProbe probe;
    probe.start();
    w.session().device.arrived(virtualQX9Record(keyboard));
    waitUntil([&] { return w.session().core.initFinish && w.session().core.sendingIdle() && keyboard->setCount() > 0; });
    pump(50);
    return {probe.stopMs(), 0, 0};
}

// One user action on a fresh window: `prepare` before, `act` measured.
Result measure(bool onWorker, const std::function<void(Window&)>& prepare, const std::function<void(Window&, Result&)>& act) {
    Window w(onWorker);
    StallProbe probe;
    w.main.show();
    w.settle();
    Result r;
    prepare(w);
    w.settle();
    probe.start();
    act(w, r);
    w.settle();
    r.stallMs = probe.stopMs();
    return r;
}

// Ten macros of 60 events each (2480 bytes of the 2500-byte macro memory).
void largeMacros(Window& w) {
    DeviceSQLite& db = *w.session().core.db();
    for (int m = 0; m < 10; ++m) {
        std::string name;
        std::int64_t id = 0;
        ops::addMacro({db}, name, id);
        std::vector<ops::RecordRow> events;
        for (int i = 0; i < 15; ++i) {
            const std::vector<ops::RecordRow> press = *ops::keyPressEvents(4 + i);
            for (const ops::RecordRow& e : press) {
                events.push_back(e);
                events.push_back(ops::delayEvents(20).front());
            }
        }
        ops::storeEvents({db}, id, events);
    }
    w.session().macros.initMacroList();
}

void report(const char* action, const Result& worker, const Result& main) {
    std::printf("%-34s %8.1f ms %10.1f ms %7.1fx\n", action, worker.stallMs, main.stallMs,
                worker.stallMs > 0 ? main.stallMs / worker.stallMs : 0.0);
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    std::ostringstream quiet;
    setConsoleStream(&quiet);
    using Act = std::function<void(Window&, Result&)>;
    const auto nothing = [](Window&) {};
    const auto both = [&](const char* action, const std::function<void(Window&)>& prepare, const Act& act) {
        const Result worker = act ? measure(true, prepare, act) : measureConnect(true);
        const Result main = act ? measure(false, prepare, act) : measureConnect(false);
        report(action, worker, main);
        return std::pair(worker, main);
    };

    std::printf("%-34s %11s %13s %8s\n", "longest stall of the window's thread", "own thread", "window's thread", "ratio");
    both("connect", nothing, nullptr);
    both("key assignment", nothing, [](Window& w, Result&) {
        w.session().keys.keyboardKeyAction(w.session().keys.keys().at(30).keyname);
        w.session().keys.MenuItemMouseUpAction(KeyPage::kMenuDisable);
    });
    both("profile select", [](Window& w) { w.session().profiles.customkey_button_profile(ProfileList::kAdd); },
         [](Window& w, Result&) { w.session().profiles.tableSelectionChanged(1); });
    both("macro save, 2.5 KB of macros", largeMacros, [](Window& w, Result&) {
        w.session().macros.macroTableSelectionChanged(0);
        w.session().macros.button_action_saverecord();
    });
    both("10 slider key presses", [](Window& w) { w.session().lighting.lightModeSelectionChanged(10); },
         [](Window& w, Result&) {
             auto* slider = w.main.findChild<QSlider*>("light_slider_brightness");
             slider->setFocus();
             for (int i = 0; i < 10; ++i) {
                 QTest::keyClick(slider, Qt::Key_Left);
                 pump(30);  // the keyboard's auto-repeat
             }
         });
    const auto [dragWorker, dragMain] = both(
        "colour dialog, 20-step drag",
        [](Window& w) {
            w.session().lighting.lightModeSelectionChanged(0);  // a single colour
            w.session().lighting.colorButtonAction({ColorButtonPress::kLightSwatch, 0});
        },
        [](Window& w, Result& r) {
            auto* dialog = w.main.findChild<QColorDialog*>("colorPanel");
            const std::uint64_t before = w.keyboard().transactions;
            QElapsedTimer lastStep;
            for (int step = 1; step <= 20; ++step) {
                dialog->setCurrentColor(QColor(step * 12, 255 - step * 12, 40));
                lastStep.start();
                pump(16);  // a pointer that moves every frame
            }
            waitUntil([&] {
                const auto light = decodeLightMode(w.keyboard());
                return light && light->red == 240 && light->green == 15;
            });
            r.lastValueMs = static_cast<double>(lastStep.nsecsElapsed()) / 1e6 - 16;
            w.settle();
            r.transactions = static_cast<int>(w.keyboard().transactions - before);
        });
    both("import by another program", nothing, [](Window& w, Result&) {
        std::string document;
        ops::exportConfiguration(*w.session().core.db(), document);
        const std::string name = "Configuration File 1";
        document.replace(document.find(name), name.size(), "Imported");
        const std::filesystem::path file = w.session().core.db()->filePath();
        std::atomic<bool> done{false};
        std::thread script([&] {
            DeviceSQLite db = DeviceSQLite::atPath(file);
            ops::importConfiguration({db}, document);
            done = true;
        });
        waitUntil([&] { return done.load(); });
        script.join();
        // The window sees the change and reloads its pages.
        waitUntil([&] { return w.session().profiles.rows().at(0).name == "Imported"; });
    });
    std::printf("\ncolour dialog, 20-step drag: %d light transactions (%d from the window's thread); the keyboard "
                "held the last colour %.0f ms after the last step (%.0f ms)\n",
                dragWorker.transactions, dragMain.transactions, dragWorker.lastValueMs, dragMain.lastValueMs);
    return 0;
}
