// halvorn-qx9: the configuration window of the HALVORN QX9.
#include <QApplication>
#include <QMainWindow>
#include <QScreen>
#include <cstdio>

#include "app/app_delegate.h"
#include "app/app_options.h"
#include "app/app_resources.h"
#include "app/app_style.h"
#include "app/keyboard_view_controller.h"
#include "common/app_id.h"

int main(int argc, char** argv) {
    qx9::AppOptions options;
    std::string error;
    if (!qx9::parseAppOptions(argc, argv, options, error)) {
        std::fprintf(stderr, "halvorn-qx9: %s\nusage: halvorn-qx9 [--virtual[=STATE.json]] [--db FILE]\n", error.c_str());
        return 2;
    }
    QApplication app(argc, argv);
    QApplication::setApplicationName("HALVORN QX9");
    QApplication::setDesktopFileName(qx9::kApplicationId);
    qx9::initAppResources();
    QApplication::setWindowIcon(QIcon(":/images/app_icon"));
    qx9::applyAppStyle(app);

    QMainWindow window;  // closing it ends the application
    window.setObjectName("MainWindow");
    auto* controller = new qx9::KeyboardViewController(options, &window);
    window.setCentralWidget(controller);
    window.setWindowFlag(Qt::WindowMaximizeButtonHint, false);
    window.adjustSize();
    if (QScreen* screen = window.screen()) window.move(screen->availableGeometry().center() - window.rect().center());
    window.show();

    qx9::AppDelegate delegate;
    delegate.applicationDidFinishLaunching();
    return app.exec();
}
