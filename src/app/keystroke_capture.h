#pragma once

#include <QObject>
#include <map>
#include <memory>

class QSocketNotifier;

namespace qx9 {

class Keylogger;
struct CaptureState;

// Keystroke capture on the main thread: the keyboards' event nodes watched through socket
// notifiers, and an application-wide event filter that, before any page sees a key event,
// brings the capture state up to date (draining the nodes, or feeding it from the event itself
// when no node can be read). The one-shot "no access" hint is shown by the window.
class KeystrokeCapture : public QObject {
    Q_OBJECT
public:
    KeystrokeCapture();
    ~KeystrokeCapture() override;

    // Starts feeding `state`, which must outlive the capture.
    void start(CaptureState& state);
    bool started() const { return keylogger_ != nullptr; }
    // Whether keys come from the keyboards' event nodes (otherwise from the window's key events).
    bool readsEventDevices() const;

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void watch(int fd, bool added);

    std::unique_ptr<Keylogger> keylogger_;
    std::map<int, QSocketNotifier*> notifiers_;
    QSocketNotifier* hotplug_ = nullptr;
};

}  // namespace qx9
