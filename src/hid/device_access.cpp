#include "hid/device_access.h"

#include <cerrno>

#include "hid/hidraw_device.h"

namespace qx9 {

std::string accessFix() {
    return "install the udev rule 70-halvorn-qx9.rules (cmake --install, or scripts/run.sh as "
           "root) and replug the keyboard";
}

OpenedInterface openInterface(const HIDDevice& record) {
    OpenedInterface result;
    if (!record.device) {
        result.error = "no device";
        return result;
    }
    const auto* node = dynamic_cast<const HidrawDevice*>(record.device.get());
    if (node) result.node = node->devnode();
    result.opened = record.device->open();
    if (result.opened) return result;
    result.accessDenied = node && node->openErrno() == EACCES;
    result.error = "cannot open " + (result.node.empty() ? record.name : result.node) + ": " + record.device->lastError();
    if (result.accessDenied) result.error += "; " + accessFix();
    return result;
}

}  // namespace qx9
