#include "hid/hid_device_monitor.h"

#include <libudev.h>
#include <poll.h>
#include <sys/eventfd.h>

#include <cerrno>
#include <memory>

#include "common/fatal.h"
#include "hid/udev_hid.h"
#include "hid/udev_ptr.h"

namespace qx9 {

HIDDeviceMonitor::HIDDeviceMonitor(std::vector<HIDMonitorData> vp, std::int64_t reportSize, HIDDeviceEvents events)
    : vp_(std::move(vp)), reportSize_(reportSize), events_(std::move(events)), wake_(::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)) {}

struct HIDDeviceMonitor::Udev {
    UdevPtr<udev> context;
    UdevPtr<udev_monitor> monitor;
};

HIDDeviceMonitor::~HIDDeviceMonitor() = default;

void HIDDeviceMonitor::stop() {
    const std::uint64_t one = 1;
    if (wake_) {
        [[maybe_unused]] const auto n = ::write(wake_.get(), &one, sizeof one);
    }
}

bool HIDDeviceMonitor::matchesVp(const HIDDevice& d) const {
    for (const HIDMonitorData& m : vp_) {
        if (m.vendorId == d.vendorId && m.productId == d.productId) return true;
    }
    return false;
}

bool HIDDeviceMonitor::rawDeviceAdded(const HIDDevice& device) {
    if (!device.device) fatalError("device arrival without a device");
    if (!isQX9ConfigurationInterface(device)) return false;
    if (events_.HIDDeviceConnected) events_.HIDDeviceConnected(device);
    return true;
}

bool HIDDeviceMonitor::rawDeviceRemoved(const HIDDevice& device) {
    if (!device.device) fatalError("device removal without a device");
    if (!isQX9ConfigurationInterface(device)) return false;
    if (events_.HIDDeviceDisconnected) events_.HIDDeviceDisconnected(device);
    return true;
}

void HIDDeviceMonitor::arrived(udev_device* dev) {
    const char* syspath = udev_device_get_syspath(dev);
    if (!syspath || known_.count(syspath)) return;  // enumerated and announced: report once
    auto rec = hidDeviceFromUdev(dev);
    if (!rec || !matchesVp(*rec)) return;
    known_.emplace(syspath, *rec);
    rawDeviceAdded(*rec);
}

void HIDDeviceMonitor::departed(udev_device* dev) {
    const char* syspath = udev_device_get_syspath(dev);
    if (!syspath) return;
    auto it = known_.find(syspath);
    if (it == known_.end()) return;
    const HIDDevice rec = it->second;
    known_.erase(it);
    rawDeviceRemoved(rec);
}

bool HIDDeviceMonitor::open() {
    udev_ = std::make_unique<Udev>();
    udev_->context.reset(udev_new());
    if (!udev_->context) return false;
    // Listen first, then enumerate, so that nothing arriving in between is missed.
    udev_->monitor.reset(udev_monitor_new_from_netlink(udev_->context.get(), "udev"));
    if (udev_->monitor && (udev_monitor_filter_add_match_subsystem_devtype(udev_->monitor.get(), "hidraw", nullptr) < 0 ||
                           udev_monitor_enable_receiving(udev_->monitor.get()) < 0)) {
        udev_->monitor.reset();
    }
    forEachUdevDevice(udev_->context.get(), "hidraw", nullptr, [this](udev_device* dev) { arrived(dev); });
    return true;
}

int HIDDeviceMonitor::fd() const {
    return udev_ && udev_->monitor ? udev_monitor_get_fd(udev_->monitor.get()) : -1;
}

void HIDDeviceMonitor::receive() {
    if (!udev_ || !udev_->monitor) return;
    // The monitor's socket does not block: every device waiting is taken.
    while (UdevPtr<udev_device> dev{udev_monitor_receive_device(udev_->monitor.get())}) {
        const char* action = udev_device_get_action(dev.get());
        const std::string a = action ? action : "";
        if (a == "add") arrived(dev.get());
        else if (a == "remove") departed(dev.get());
    }
}

void HIDDeviceMonitor::start() {
    open();
    // Without udev the monitor reports nothing and just waits to be stopped.
    pollfd fds[2] = {{wake_.get(), POLLIN, 0}, {fd(), POLLIN, 0}};
    for (;;) {
        const int n = ::poll(fds, 2, -1);
        if (n < 0) {
            if (errno == EINTR) continue;
            return;
        }
        if (fds[0].revents) return;
        if (fds[1].revents & (POLLERR | POLLHUP | POLLNVAL)) {
            fds[1].fd = -1;  // the monitor broke: keep waiting for stop() only
            continue;
        }
        if (fds[1].revents & POLLIN) receive();
    }
}

}  // namespace qx9
