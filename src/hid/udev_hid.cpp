#include "hid/udev_hid.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <memory>

#include "common/unique_fd.h"
#include "hid/hidraw_device.h"
#include "hid/report_descriptor.h"
#include "hid/udev_ptr.h"

namespace qx9 {

namespace {

std::string text(const char* s) { return s ? std::string(s) : std::string(); }

bool parseHex(const std::string& s, std::int64_t& out) {
    if (s.empty() || s.size() > 8) return false;
    std::int64_t v = 0;
    for (char c : s) {
        int d;
        if (c >= '0' && c <= '9') d = c - '0';
        else if (c >= 'a' && c <= 'f') d = c - 'a' + 10;
        else if (c >= 'A' && c <= 'F') d = c - 'A' + 10;
        else return false;
        v = v * 16 + d;
    }
    out = v;
    return true;
}

}  // namespace

bool parseHidId(const std::string& value, std::int64_t& bus, std::int64_t& vendor,
                std::int64_t& product) {
    const auto a = value.find(':');
    const auto b = a == std::string::npos ? std::string::npos : value.find(':', a + 1);
    if (b == std::string::npos) return false;
    return parseHex(value.substr(0, a), bus) && parseHex(value.substr(a + 1, b - a - 1), vendor) &&
           parseHex(value.substr(b + 1), product);
}

std::int64_t locationIdFromUsb(std::int64_t busnum, const std::string& devpath) {
    if (busnum < 0 || busnum > 255 || devpath.empty()) return 0;
    std::int64_t id = busnum << 24;
    int shift = 20;
    std::size_t i = 0;
    while (i < devpath.size()) {
        std::size_t j = devpath.find('.', i);
        if (j == std::string::npos) j = devpath.size();
        const std::string port = devpath.substr(i, j - i);
        if (port.empty() || port.size() > 2) return 0;
        int p = 0;
        for (char c : port) {
            if (c < '0' || c > '9') return 0;
            p = p * 10 + (c - '0');
        }
        if (shift < 0) break;  // deeper than six hubs: the rest does not fit
        id |= static_cast<std::int64_t>(p & 0x0F) << shift;
        shift -= 4;
        i = j + 1;
    }
    return id;
}

std::vector<std::uint8_t> readReportDescriptor(const std::string& hidrawSyspath) {
    std::vector<std::uint8_t> out;
    const std::string path = hidrawSyspath + "/device/report_descriptor";
    // Never blocks: only a regular file is read (sysfs attributes are), so a FIFO or a device
    // put in its place yields nothing; and at most the 4096 bytes a descriptor can have.
    UniqueFd fd(::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat st {};
    if (!fd || ::fstat(fd.get(), &st) != 0 || !S_ISREG(st.st_mode)) return out;
    std::uint8_t buf[4096];  // the largest descriptor the kernel keeps
    std::size_t total = 0;
    for (;;) {
        const ssize_t n = ::read(fd.get(), buf + total, sizeof buf - total);
        if (n < 0 && errno == EINTR) continue;
        if (n <= 0) break;
        total += static_cast<std::size_t>(n);
        if (total == sizeof buf) break;
    }
    out.assign(buf, buf + total);
    return out;
}

std::optional<HIDDevice> hidDeviceFromUdev(udev_device* hidraw) {
    if (!hidraw) return std::nullopt;
    const std::string syspath = text(udev_device_get_syspath(hidraw));
    const std::string devnode = text(udev_device_get_devnode(hidraw));
    udev_device* hid = udev_device_get_parent_with_subsystem_devtype(hidraw, "hid", nullptr);
    if (!hid || syspath.empty() || devnode.empty()) return std::nullopt;

    HIDDevice rec;
    std::int64_t bus = 0;
    if (!parseHidId(text(udev_device_get_property_value(hid, "HID_ID")), bus, rec.vendorId,
                    rec.productId)) {
        rec.vendorId = rec.productId = 0;
    }
    rec.name = text(udev_device_get_property_value(hid, "HID_NAME"));
    if (udev_device* usb = udev_device_get_parent_with_subsystem_devtype(hidraw, "usb", "usb_device")) {
        std::int64_t busnum = 0;
        const std::string busText = text(udev_device_get_sysattr_value(usb, "busnum"));
        if (!busText.empty() && std::sscanf(busText.c_str(), "%ld", &busnum) == 1) {
            rec.id = locationIdFromUsb(busnum, text(udev_device_get_sysattr_value(usb, "devpath")));
        }
    }
    const ReportSizes sizes = parseReportDescriptor(readReportDescriptor(syspath));
    rec.reportSize = sizes.input;
    rec.featureSize = sizes.feature;
    rec.device = std::make_shared<HidrawDevice>(syspath, devnode, rec.productId);
    return rec;
}

std::vector<AttachedInterface> enumerateHidInterfaces(bool tryOpen) {
    std::vector<AttachedInterface> out;
    UdevPtr<udev> u(udev_new());
    if (!u) return out;
    forEachUdevDevice(u.get(), "hidraw", nullptr, [&](udev_device* dev) {
        auto rec = hidDeviceFromUdev(dev);
        if (!rec) return;
        AttachedInterface a;
        a.syspath = text(udev_device_get_syspath(dev));
        a.devnode = text(udev_device_get_devnode(dev));
        if (tryOpen) {
            UniqueFd fd(::open(a.devnode.c_str(), O_RDWR | O_CLOEXEC | O_NONBLOCK));
            a.openErrno = fd ? 0 : errno;
        }
        a.record = std::move(*rec);
        out.push_back(std::move(a));
    });
    return out;
}

}  // namespace qx9
