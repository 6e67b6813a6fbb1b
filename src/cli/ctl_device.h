#pragma once

#include <memory>
#include <ostream>
#include <string>

#include "hid/hid_device.h"
#include "virtual/virtual_qx9.h"

namespace qx9::ctl {

// The keyboard a qx9ctl run talks to.
struct OpenedDevice {
    HIDDevice record;                       // device null: no keyboard
    std::shared_ptr<VirtualQX9> virtualKeyboard;
    std::string stateFile;                  // virtual:FILE
};

// Opens what --device names: "auto" (the first QX9 configuration interface, none when absent),
// "virtual", "virtual:FILE" or a hidraw node. False with a message in `error` when the device
// cannot be used (a node that is not a QX9 configuration interface, one that cannot be opened,
// a state file that cannot be read).
bool openDevice(const std::string& named, OpenedDevice& opened, std::string& error);

}  // namespace qx9::ctl
