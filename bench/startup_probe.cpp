// Start-up probe: the application's own start (options, window, virtual keyboard), stopped at the
// first paint of the main window. Prints the wall clock of that paint and the resident memory.
#include <QApplication>
#include <QLabel>
#include <QMainWindow>
#include <QTimer>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>

#include "app/app_delegate.h"
#include "app/app_options.h"
#include "app/app_resources.h"
#include "app/app_style.h"
#include "app/keyboard_view_controller.h"
#include "app/single_instance.h"
#include "common/console.h"
#include "session/session_core.h"

namespace {

long long realtimeNs() {
    timespec t{};
    clock_gettime(CLOCK_REALTIME, &t);
    return static_cast<long long>(t.tv_sec) * 1000000000LL + t.tv_nsec;
}

long residentKb() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.rfind("VmRSS:", 0) == 0) return std::stol(line.substr(6));
    }
    return -1;
}

class FirstPaint : public QObject {
public:
    bool eventFilter(QObject* o, QEvent* e) override {
        if (e->type() == QEvent::Paint && !done_) {
            done_ = true;
            const long long at = realtimeNs();
            // Let the paint finish, then report and leave.
            QTimer::singleShot(0, [at] {
                std::printf("first_paint_realtime_ns=%lld\n", at);
                QTimer::singleShot(300, [] {
                    std::printf("rss_kb=%ld\n", residentKb());
                    std::fflush(stdout);
                    QApplication::exit(0);
                });
            });
        }
        return QObject::eventFilter(o, e);
    }

private:
    bool done_ = false;
};

}  // namespace

int main(int argc, char** argv) {
    // --bare: the reference, a plain Qt Widgets window of the same size with one label.
    if (argc > 1 && std::string(argv[1]) == "--bare") {
        QApplication app(argc, argv);
        QMainWindow window;
        window.setCentralWidget(new QLabel("HALVORN QX9"));
        window.resize(1000, 640);
        FirstPaint probe;
        window.installEventFilter(&probe);
        window.show();
        return app.exec();
    }
    // The window's own start, as main() makes it.
    qx9::AppOptions options;
    qx9::parseAppOptions(argc, argv, options);
    static std::ostream discarded(nullptr);
    if (!options.verbose) qx9::setConsoleStream(&discarded);
    QApplication app(argc, argv);
    qx9::initAppResources();
    qx9::applyAppStyle(app);
    qx9::SingleInstance instance(QString::fromStdString(qx9::sessionDatabaseFile(options.database).string()));
    if (instance.askRunningWindow()) return 1;
    QMainWindow window;
    auto* controller = new qx9::KeyboardViewController(options, &window);
    window.setCentralWidget(controller);
    window.adjustSize();
    FirstPaint probe;
    window.installEventFilter(&probe);
    window.show();
    instance.serve(&window);
    qx9::AppDelegate delegate;
    delegate.applicationDidFinishLaunching(controller->session());
    return app.exec();
}
