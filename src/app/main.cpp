// halvorn-qx9: the configuration window of the HALVORN QX9.
#include <QApplication>
#include <QMainWindow>
#include <QScreen>
#include <QSocketNotifier>
#include <cstdio>
#include <csignal>
#include <ostream>
#include <fcntl.h>
#include <unistd.h>

#include "app/app_delegate.h"
#include "app/app_options.h"
#include "app/app_resources.h"
#include "app/app_style.h"
#include "app/keyboard_view_controller.h"
#include "app/single_instance.h"
#include "common/app_id.h"
#include "common/console.h"

namespace {

int g_signalPipe[2] = {-1, -1};

void onTerminationSignal(int) {
    const char byte = 1;
    [[maybe_unused]] const auto n = ::write(g_signalPipe[1], &byte, 1);
}

// SIGINT and SIGTERM end the application the same way as closing its window, so that the
// database is left closed and a virtual keyboard's memory is saved.
void quitOnTerminationSignals(QApplication& app) {
    if (::pipe2(g_signalPipe, O_CLOEXEC | O_NONBLOCK) != 0) return;
    auto* notifier = new QSocketNotifier(g_signalPipe[0], QSocketNotifier::Read, &app);
    QObject::connect(notifier, &QSocketNotifier::activated, &app, [] { QApplication::quit(); });
    struct sigaction action {};
    action.sa_handler = onTerminationSignal;
    sigemptyset(&action.sa_mask);
    ::sigaction(SIGINT, &action, nullptr);
    ::sigaction(SIGTERM, &action, nullptr);
}

}  // namespace

int main(int argc, char** argv) {
    // Diagnostic lines go out whole, line by line, also when the output is a pipe or a file.
    std::setvbuf(stdout, nullptr, _IOLBF, 0);
    qx9::AppOptions options;
    const qx9::OptionsResult read = qx9::parseAppOptions(argc, argv, options);
    if (read.action == qx9::OptionsResult::kPrint) {
        std::fputs(read.text.c_str(), stdout);
        return 0;
    }
    if (read.action == qx9::OptionsResult::kRefuse) {
        std::fprintf(stderr, "halvorn-qx9: %s", read.text.c_str());
        return 2;
    }
    // The diagnostic lines are for whoever asks for them; otherwise they go nowhere.
    static std::ostream discarded(nullptr);
    if (!options.verbose) qx9::setConsoleStream(&discarded);
    QApplication app(argc, argv);
    QApplication::setApplicationName("HALVORN QX9");
    QApplication::setDesktopFileName(qx9::kApplicationId);
    qx9::initAppResources();
    QApplication::setWindowIcon(QIcon(":/images/app_icon.svg"));
    qx9::applyAppStyle(app);
    quitOnTerminationSignals(app);

    // A second start on the same database brings the first window to the front instead.
    qx9::SingleInstance instance(QString::fromStdString(qx9::sessionDatabaseFile(options.database).string()));
    if (instance.askRunningWindow()) return 0;

    QMainWindow window;  // closing it ends the application
    window.setObjectName("MainWindow");
    auto* controller = new qx9::KeyboardViewController(options, &window);
    window.setCentralWidget(controller);
    // Every page lays itself out for a larger window, so the window can be maximised as any
    // other: with the maximise button shown, every window manager offers the same.
    window.adjustSize();
    if (QScreen* screen = window.screen()) window.move(screen->availableGeometry().center() - window.rect().center());
    qx9::AppDelegate delegate;
    delegate.showWindow = [&window] {
        window.showNormal();
        window.raise();
        window.activateWindow();
    };
    // Hidden (started at login) only where the tray can bring it up; closing the window of a
    // hidden start leaves the tray item, as quitting is the menu's.
    const bool hidden = options.hidden && qx9::AppDelegate::trayAvailable();
    if (hidden) {
        QApplication::setQuitOnLastWindowClosed(false);
        controller->startHidden();
    } else {
        window.show();
    }
    instance.serve(&window);

    delegate.applicationDidFinishLaunching(controller->session());
    controller->keystrokeCaptureStarted(controller->session().input.readsEventDevices());
    return app.exec();
}
