#pragma once

#include <libudev.h>

#include <memory>

namespace qx9 {

// Owning pointers to libudev objects: each goes with its own unref call.
struct UdevDeleter {
    void operator()(udev* u) const { udev_unref(u); }
    void operator()(udev_monitor* m) const { udev_monitor_unref(m); }
    void operator()(udev_enumerate* e) const { udev_enumerate_unref(e); }
    void operator()(udev_device* d) const { udev_device_unref(d); }
};
template <typename T>
using UdevPtr = std::unique_ptr<T, UdevDeleter>;

// Calls `each(device)` for every device of `subsystem` present now, in udev's order; with a
// `sysname` pattern ("event*") only for the devices whose name matches it. A device that
// vanished between the scan and its lookup is skipped.
template <typename Each>
void forEachUdevDevice(udev* u, const char* subsystem, const char* sysname, Each each) {
    UdevPtr<udev_enumerate> e(udev_enumerate_new(u));
    if (!e) return;
    udev_enumerate_add_match_subsystem(e.get(), subsystem);
    if (sysname) udev_enumerate_add_match_sysname(e.get(), sysname);
    udev_enumerate_scan_devices(e.get());
    udev_list_entry* entry;
    udev_list_entry_foreach(entry, udev_enumerate_get_list_entry(e.get())) {
        UdevPtr<udev_device> dev(udev_device_new_from_syspath(u, udev_list_entry_get_name(entry)));
        if (dev) each(dev.get());
    }
}

}  // namespace qx9
