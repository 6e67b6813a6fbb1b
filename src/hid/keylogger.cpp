#include "hid/keylogger.h"

#include <fcntl.h>

#include <cstring>
#include <sstream>

#include "common/console.h"
#include "hid/capture_state.h"
#include "hid/key_usage_table.h"
#include "hid/udev_ptr.h"

namespace qx9 {

namespace {

const std::vector<Keylogger::Match>& keyboardMatches() {
    static const std::vector<Keylogger::Match> list = {{"ID_INPUT_KEYBOARD", "1"}, {"ID_INPUT_KEY", "1"}};
    return list;
}

// An event node (not the input device above it, nor its mouse or joystick node) whose udev
// properties match the list.
bool isKeyboardEventNode(udev_device* dev) {
    const char* sysname = udev_device_get_sysname(dev);
    if (!sysname || std::strncmp(sysname, "event", 5) != 0 || !udev_device_get_devnode(dev)) return false;
    for (const Keylogger::Match& m : keyboardMatches()) {
        const char* v = udev_device_get_property_value(dev, m.property.c_str());
        if (v && m.value == v) return true;
    }
    return false;
}

UniqueFd openForReading(const char* devnode) {
    return UniqueFd(::open(devnode, O_RDONLY | O_NONBLOCK | O_CLOEXEC));
}

template <typename Each>
void forEachKeyboardNode(udev* u, Each each) {
    forEachUdevDevice(u, "input", "event*", [&](udev_device* dev) {
        if (isKeyboardEventNode(dev)) each(dev);
    });
}

}  // namespace

CaptureSource captureSourceFor(bool eventDeviceReadable) {
    return eventDeviceReadable ? CaptureSource::Evdev : CaptureSource::Application;
}

bool captureFromApplicationKeyEvent(CaptureState& state, std::uint32_t nativeScanCode, bool pressed, bool autoRepeat,
                                    std::int64_t nowMs) {
    if (autoRepeat) return false;  // a held key is one press, as the event nodes report it
    const int usage = hidUsageFromNativeScanCode(nativeScanCode);
    if (usage == 0) return false;
    state.captureKeyValue(usage, pressed ? 1 : 0, nowMs);
    return true;
}

std::vector<KeyboardEventNode> keyboardEventNodes() {
    std::vector<KeyboardEventNode> out;
    UdevPtr<udev> u(udev_new());
    if (!u) return out;
    forEachKeyboardNode(u.get(), [&](udev_device* dev) {
        out.push_back({udev_device_get_syspath(dev), udev_device_get_devnode(dev)});
    });
    return out;
}

bool inputMonitoringTrusted() {
    for (const KeyboardEventNode& node : keyboardEventNodes()) {
        if (openForReading(node.devnode.c_str())) return true;
    }
    return false;
}

std::string Keylogger::describe(const std::vector<Match>& list) {
    std::ostringstream s;
    s << '[';
    for (std::size_t i = 0; i < list.size(); ++i) {
        s << (i ? ", " : "") << "[\"" << list[i].property << "\": \"" << list[i].value << "\"]";
    }
    s << ']';
    return s.str();
}

Keylogger::Keylogger(CaptureState& state, Discovery discovery) : state_(state) {
    console() << "dll " << describe(keyboardMatches()) << '\n';
    if (discovery == Discovery::Udev && (udev_ = udev_new())) {
        // Listen first, then enumerate, so that nothing plugged in between is missed.
        monitor_ = udev_monitor_new_from_netlink(udev_, "udev");
        if (monitor_ && (udev_monitor_filter_add_match_subsystem_devtype(monitor_, "input", nullptr) < 0 ||
                         udev_monitor_enable_receiving(monitor_) < 0)) {
            udev_monitor_unref(monitor_);
            monitor_ = nullptr;
        }
        forEachKeyboardNode(udev_, [this](udev_device* dev) { nodeAppeared(dev); });
    }
    if (streams_.empty() && failedOpens_ > 0) console() << "Can't open HID!" << '\n';
}

Keylogger::~Keylogger() {
    streams_.clear();
    if (monitor_) udev_monitor_unref(monitor_);
    if (udev_) udev_unref(udev_);
}

std::vector<int> Keylogger::fds() const {
    std::vector<int> out;
    out.reserve(streams_.size());
    for (const auto& [fd, s] : streams_) out.push_back(fd);
    return out;
}

int Keylogger::monitorFd() const { return monitor_ ? udev_monitor_get_fd(monitor_) : -1; }

void Keylogger::setWatchCallback(std::function<void(int, bool)> callback) { watch_ = std::move(callback); }

bool Keylogger::hasKey(const std::string& key) const {
    for (const auto& [fd, s] : streams_) {
        if (s.key == key) return true;
    }
    return false;
}

void Keylogger::nodeAppeared(udev_device* dev) {
    if (!isKeyboardEventNode(dev)) return;
    const std::string syspath = udev_device_get_syspath(dev);
    if (hasKey(syspath)) return;
    // Not readable (yet): a later "change" of the node, when its permissions change, tries again.
    if (UniqueFd fd = openForReading(udev_device_get_devnode(dev))) addStream(std::move(fd), syspath);
    else ++failedOpens_;
}

void Keylogger::hotplugReadable() {
    if (!monitor_) return;
    while (udev_device* raw = udev_monitor_receive_device(monitor_)) {
        UdevPtr<udev_device> dev(raw);
        const char* action = udev_device_get_action(raw);
        if (!action) continue;
        if (std::strcmp(action, "add") == 0 || std::strcmp(action, "change") == 0) {
            nodeAppeared(raw);
        } else if (std::strcmp(action, "remove") == 0) {
            if (const char* syspath = udev_device_get_syspath(raw)) removeStream(syspath);
        }
    }
}

int Keylogger::addStream(UniqueFd fd, const std::string& key) {
    removeStream(key);
    const int n = fd.get();
    if (n < 0) return -1;
    streams_.emplace(n, Stream{key, std::make_unique<EvdevKeyReader>(std::move(fd), state_)});
    if (watch_) watch_(n, true);
    return n;
}

void Keylogger::removeStream(const std::string& key) {
    for (const auto& [fd, s] : streams_) {
        if (s.key == key) {
            drop(fd);
            return;
        }
    }
}

void Keylogger::drop(int fd) {
    auto node = streams_.extract(fd);
    if (node.empty()) return;
    if (watch_) watch_(fd, false);  // the descriptor is still open here; it closes as `node` goes
}

void Keylogger::readAvailable(int fd) {
    auto it = streams_.find(fd);
    if (it == streams_.end()) return;
    if (!it->second.reader->readAvailable()) drop(fd);
}

void Keylogger::drain() {
    for (int fd : fds()) readAvailable(fd);
}

void Keylogger::applicationKeyEvent(std::uint32_t nativeScanCode, bool pressed, bool autoRepeat,
                                    std::uint64_t eventTime) {
    if (source() == CaptureSource::Evdev) {
        drain();
        return;
    }
    if (autoRepeat) return;
    const AppKey key{nativeScanCode, pressed, eventTime};
    if (lastAppKey_ == key) return;  // the same event on its way to another widget
    if (captureFromApplicationKeyEvent(state_, nativeScanCode, pressed, false, wallClockMs())) lastAppKey_ = key;
}

}  // namespace qx9
