#pragma once

#include <atomic>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "common/unique_fd.h"
#include "hid/hid_device.h"

struct udev_device;

namespace qx9 {

// One vendor/product pair to match.
struct HIDMonitorData {
    std::int64_t vendorId = 0;
    std::int64_t productId = 0;
};

// What the monitor reports: the configuration interface arrived or went, with its record. Called
// on the thread that runs the monitor.
struct HIDDeviceEvents {
    std::function<void(const HIDDevice&)> HIDDeviceConnected;
    std::function<void(const HIDDevice&)> HIDDeviceDisconnected;
};

// Finds the keyboard's configuration interface among the hidraw nodes and reports its arrival
// and removal through HIDDeviceEvents. Nodes present when it opens are reported through the same
// arrival path as later ones.
//
// A front end with an event loop watches fd() and calls receive() when it is readable, so the
// reports come on its own thread; start() runs the same loop on a thread of its own.
//
// Linux keeps nothing of a node once it is gone, so the monitor remembers the record of every
// matched node to report its removal with the record it arrived with.
class HIDDeviceMonitor {
public:
    HIDDeviceMonitor(std::vector<HIDMonitorData> vp, std::int64_t reportSize, HIDDeviceEvents events);
    virtual ~HIDDeviceMonitor();
    HIDDeviceMonitor(const HIDDeviceMonitor&) = delete;
    HIDDeviceMonitor& operator=(const HIDDeviceMonitor&) = delete;

    const std::vector<HIDMonitorData>& vp() const { return vp_; }
    std::int64_t reportSize() const { return reportSize_; }

    // Listens to udev, then reports the nodes already there. False without udev.
    bool open();
    // The descriptor that becomes readable when udev has news; -1 before open() or without udev.
    int fd() const;
    // Reports what udev announced since the last call (arrivals and removals).
    void receive();

    // open(), then receive() whenever there is news, until stop(). Call on a thread of its own.
    void start();
    // Ends start(); safe from any thread.
    void stop();

    // Arrival and removal of a matched interface: the identity test, then the report. True when
    // it was reported. A record without a device is a programming error.
    virtual bool rawDeviceAdded(const HIDDevice& device);
    virtual bool rawDeviceRemoved(const HIDDevice& device);

private:
    bool matchesVp(const HIDDevice& d) const;
    void arrived(udev_device* dev);
    void departed(udev_device* dev);

    const std::vector<HIDMonitorData> vp_;
    const std::int64_t reportSize_;
    const HIDDeviceEvents events_;
    UniqueFd wake_;  // eventfd that stop() signals
    struct Udev;
    std::unique_ptr<Udev> udev_;
    std::map<std::string, HIDDevice> known_;  // matched nodes by syspath (monitor thread only)
};

}  // namespace qx9
