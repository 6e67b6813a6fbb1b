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

bool openDevice(const std::string& named, OpenedDevice& opened, std::string& error) {
    opened = {};
    if (named == "virtual" || named.rfind("virtual:", 0) == 0) {
        auto keyboard = std::make_shared<VirtualQX9>();
        if (named.size() > 8) {
            opened.stateFile = named.substr(8);
            // Every process with this file has the same keyboard: each transaction reads it and
            // writes it back while it holds the keyboard.
            if (!keyboard->shareState(opened.stateFile, error)) return false;
        }
        keyboard->open();
        opened.virtualKeyboard = keyboard;
        opened.record = virtualQX9Record(keyboard);
        return true;
    }
    const auto interfaces = enumerateHidInterfaces(false);
    if (named == "auto") {
        for (const AttachedInterface& a : interfaces) {
            if (isQX9ConfigurationInterface(a.record)) return useInterface(a, opened, error);
        }
        return true;  // no keyboard
    }
    std::error_code ec;
    const auto wanted = std::filesystem::weakly_canonical(named, ec);
    for (const AttachedInterface& a : interfaces) {
        if (a.devnode == named || (!ec && std::filesystem::weakly_canonical(a.devnode, ec) == wanted)) {
            return useInterface(a, opened, error);
        }
    }
    error = named + ": no such hidraw device";
    return false;
}

}  // namespace qx9::ctl
