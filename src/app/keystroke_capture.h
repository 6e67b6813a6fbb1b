#pragma once

#include <QObject>

namespace qx9 {

class InputCapture;

// Keystroke capture in the window: starts the session's capture, and an application-wide event
// filter hands it every key event before any page sees it (it drains the keyboards' event nodes
// then, or takes the key from the event itself when no node can be read). The one-shot "no
// access" hint is shown by the window.
class KeystrokeCapture : public QObject {
    Q_OBJECT
public:
    explicit KeystrokeCapture(InputCapture& input);
    ~KeystrokeCapture() override;

    void start();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    InputCapture& input_;
};

}  // namespace qx9
