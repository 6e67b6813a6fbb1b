#include "cli/ctl_device.h"

#include <filesystem>

#include "hid/device_access.h"
#include "hid/udev_hid.h"

namespace qx9::ctl {

namespace {

bool useInterface(const AttachedInterface& a, OpenedDevice& opened, std::string& error) {
    if (!isQX9ConfigurationInterface(a.record)) {
        error = a.devnode + " is not a QX9 configuration interface";
        return false;
    }
    const OpenedInterface node = openInterface(a.record);
    if (!node.opened) {
        error = node.error;
        return false;
    }
    opened.record = a.record;
    return true;
}

}  // namespace

bool openDevice(const std::string& spec, OpenedDevice& opened, std::string& error) {
    opened = {};
    if (spec == "virtual" || spec.rfind("virtual:", 0) == 0) {
        auto keyboard = std::make_shared<VirtualQX9>();
        if (spec.size() > 8) {
            opened.stateFile = spec.substr(8);
            if (std::filesystem::exists(opened.stateFile) && !keyboard->loadState(opened.stateFile, error)) {
                return false;
            }
        }
        keyboard->open();
        opened.virtualKeyboard = keyboard;
        opened.record = virtualQX9Record(keyboard);
        return true;
    }
    const auto interfaces = enumerateHidInterfaces(false);
    if (spec == "auto") {
        for (const AttachedInterface& a : interfaces) {
            if (isQX9ConfigurationInterface(a.record)) return useInterface(a, opened, error);
        }
        return true;  // no keyboard
    }
    std::error_code ec;
    const auto wanted = std::filesystem::weakly_canonical(spec, ec);
    for (const AttachedInterface& a : interfaces) {
        if (a.devnode == spec || (!ec && std::filesystem::weakly_canonical(a.devnode, ec) == wanted)) {
            return useInterface(a, opened, error);
        }
    }
    error = spec + ": no such hidraw device";
    return false;
}

bool saveVirtualState(OpenedDevice& opened, std::string& error) {
    if (!opened.virtualKeyboard || opened.stateFile.empty()) return true;
    return opened.virtualKeyboard->saveState(opened.stateFile, error);
}

}  // namespace qx9::ctl
