#pragma once

#include <QFile>
#include <QMainWindow>

#include "app/keyboard_view_controller.h"

namespace qx9::test {

// The window on a virtual QX9 with a fresh database, shown as the application shows it.
inline KeyboardViewController* showWindowOnVirtualQX9(QMainWindow* window, const QString& database) {
    AppOptions options;
    options.virtualKeyboard = true;
    options.noMonitor = true;
    options.database = database.toStdString();
    QFile::remove(database);
    auto* controller = new KeyboardViewController(options, window);
    window->setCentralWidget(controller);
    window->show();
    return controller;
}

}  // namespace qx9::test
