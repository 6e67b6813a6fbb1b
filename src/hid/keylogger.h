#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "common/unique_fd.h"
#include "hid/evdev_key_reader.h"

struct udev;
struct udev_device;
struct udev_monitor;

namespace qx9 {

// Where the capture state comes from. The keyboards' event nodes when at least one can be read;
// otherwise the application's own key events (which only cover keys pressed while one of its
// windows has the focus). Never both at once.
enum class CaptureSource { Evdev, Application };
CaptureSource captureSourceFor(bool eventDeviceReadable);

// A key event of the application: the window system's native scan code (evdev code + 8 on X11
// and Wayland), press or release. Autorepeats and keys without a Keyboard page usage are left
// out. True when the event reached the capture state.
bool captureFromApplicationKeyEvent(CaptureState& state, std::uint32_t nativeScanCode, bool pressed, bool autoRepeat,
                                    std::int64_t nowMs);

// An event node that udev marks as a keyboard (ID_INPUT_KEYBOARD=1) or as having keys
// (ID_INPUT_KEY=1).
struct KeyboardEventNode {
    std::string syspath;
    std::string devnode;
};
std::vector<KeyboardEventNode> keyboardEventNodes();

// Whether the process may watch keystrokes: at least one keyboard event node opens for reading.
bool inputMonitoringTrusted();

// The global keystroke capture: every keyboard's event node, read without grabbing, feeding the
// capture state. Everything runs on the thread that owns it (the main thread): the owner watches
// fds() and monitorFd() for input and calls readAvailable() and hotplugReadable(); before it
// handles a key event of its own it calls applicationKeyEvent(), so that the state is never older
// than the event.
class Keylogger {
public:
    enum class Discovery {
        Udev,  // the keyboards present now and those plugged in later
        None,  // only the streams handed to addStream()
    };

    // The udev properties that select a node, either one.
    struct Match {
        std::string property;
        std::string value;
    };

    // Prints "dll" and the device list on the console, opens every keyboard node there is and
    // prints "Can't open HID!" when there are nodes and none of them opens (the capture then
    // stays quiet until a readable keyboard appears).
    explicit Keylogger(CaptureState& state, Discovery discovery = Discovery::Udev);
    ~Keylogger();
    Keylogger(const Keylogger&) = delete;
    Keylogger& operator=(const Keylogger&) = delete;

    // `[["ID_INPUT_KEYBOARD": "1"], ["ID_INPUT_KEY": "1"]]`
    static std::string describe(const std::vector<Match>& list);

    // The open event nodes, to watch for input.
    std::vector<int> fds() const;
    // The udev monitor of the input subsystem, to watch for input; -1 without udev.
    int monitorFd() const;
    // Takes in the plugging and unplugging that the monitor reported.
    void hotplugReadable();

    // Called with (fd, true) once a node has been opened and with (fd, false) before a node's
    // descriptor is closed, so that a watcher never outlives its descriptor.
    void setWatchCallback(std::function<void(int fd, bool added)> callback);

    // Reads what one node has pending; a node that has gone is dropped (and its watcher told).
    // An fd that is no longer open here is ignored.
    void readAvailable(int fd);
    // Reads what every node has pending.
    void drain();

    bool eventDeviceReadable() const { return !streams_.empty(); }
    CaptureSource source() const { return captureSourceFor(eventDeviceReadable()); }

    // The application's key event, as its event filter sees it (the filter may see one event
    // several times while it travels up the widgets; `eventTime` tells them apart). With event
    // nodes to read: drains them. Without: feeds the state from the event itself, once.
    void applicationKeyEvent(std::uint32_t nativeScanCode, bool pressed, bool autoRepeat,
                             std::uint64_t eventTime);

    // Watches an open stream of input events under a key (the node's syspath); returns its fd.
    // A stream already watched under the same key is replaced.
    int addStream(UniqueFd fd, const std::string& key);
    // Stops watching the stream of that key, if any.
    void removeStream(const std::string& key);

private:
    struct Stream {
        std::string key;
        std::unique_ptr<EvdevKeyReader> reader;
    };

    void drop(int fd);

    int failedOpens_ = 0;  // keyboard nodes that would not open for reading
    void nodeAppeared(udev_device* dev);
    bool hasKey(const std::string& key) const;

    CaptureState& state_;
    std::map<int, Stream> streams_;
    std::function<void(int, bool)> watch_;
    udev* udev_ = nullptr;
    udev_monitor* monitor_ = nullptr;

    struct AppKey {
        std::uint32_t scan;
        bool pressed;
        std::uint64_t time;
        bool operator==(const AppKey&) const = default;
    };
    std::optional<AppKey> lastAppKey_;
};

}  // namespace qx9
