#include "app/keystroke_capture.h"

#include <QApplication>
#include <QKeyEvent>

#include "session/input_capture.h"

namespace qx9 {

KeystrokeCapture::KeystrokeCapture(InputCapture& input) : input_(input) {}

KeystrokeCapture::~KeystrokeCapture() { qApp->removeEventFilter(this); }

void KeystrokeCapture::start() {
    input_.start();
    qApp->installEventFilter(this);
}

bool KeystrokeCapture::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease) {
        const auto* key = static_cast<QKeyEvent*>(event);
        input_.applicationKeyEvent(key->nativeScanCode(), event->type() == QEvent::KeyPress, key->isAutoRepeat(),
                                   key->timestamp());
    }
    return QObject::eventFilter(watched, event);  // never consumed
}

}  // namespace qx9
