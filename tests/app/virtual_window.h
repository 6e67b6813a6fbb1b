#pragma once

#include <QFile>
#include <QMainWindow>

#include "app/keyboard_view_controller.h"
#include "virtual/virtual_qx9.h"

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

// What the keyboard holds once the window's sender has sent everything queued.
inline VirtualQX9Memory sentMemory(KeyboardViewController* controller) {
    controller->session().core.finishSending(std::chrono::seconds(10));
    return controller->virtualKeyboard()->memory();
}

}  // namespace qx9::test
