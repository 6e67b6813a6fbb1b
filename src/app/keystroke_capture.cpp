#include "app/keystroke_capture.h"

#include <QApplication>
#include <QKeyEvent>
#include <QSocketNotifier>

#include "hid/keylogger.h"

namespace qx9 {

KeystrokeCapture::KeystrokeCapture() = default;
KeystrokeCapture::~KeystrokeCapture() = default;

void KeystrokeCapture::start(CaptureState& state) {
    if (keylogger_) return;
    keylogger_ = std::make_unique<Keylogger>(state);
    keylogger_->setWatchCallback([this](int fd, bool added) { watch(fd, added); });
    for (int fd : keylogger_->fds()) watch(fd, true);
    if (keylogger_->monitorFd() >= 0) {
        hotplug_ = new QSocketNotifier(keylogger_->monitorFd(), QSocketNotifier::Read, this);
        connect(hotplug_, &QSocketNotifier::activated, this, [this] { keylogger_->hotplugReadable(); });
    }
    qApp->installEventFilter(this);
}

bool KeystrokeCapture::readsEventDevices() const { return keylogger_ && keylogger_->eventDeviceReadable(); }

void KeystrokeCapture::watch(int fd, bool added) {
    if (added) {
        if (notifiers_.count(fd)) return;
        auto* n = new QSocketNotifier(fd, QSocketNotifier::Read, this);
        connect(n, &QSocketNotifier::activated, this, [this, fd] { keylogger_->readAvailable(fd); });
        notifiers_[fd] = n;
    } else if (auto it = notifiers_.find(fd); it != notifiers_.end()) {
        it->second->setEnabled(false);
        it->second->deleteLater();
        notifiers_.erase(it);
    }
}

bool KeystrokeCapture::eventFilter(QObject* watched, QEvent* event) {
    if (keylogger_ && (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)) {
        const auto* key = static_cast<QKeyEvent*>(event);
        keylogger_->applicationKeyEvent(key->nativeScanCode(), event->type() == QEvent::KeyPress,
                                        key->isAutoRepeat(), key->timestamp());
    }
    return QObject::eventFilter(watched, event);  // never consumed
}

}  // namespace qx9
