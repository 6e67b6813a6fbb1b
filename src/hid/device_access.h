#pragma once

#include <memory>
#include <string>

#include "hid/hid_device.h"

namespace qx9 {

// The fix for a configuration interface that exists but may not be opened.
std::string accessFix();

// Opens a keyboard's configuration interface for use (on the thread that will write to it).
struct OpenedInterface {
    bool opened = false;
    bool accessDenied = false;  // the node exists but this user may not open it
    std::string node;           // the hidraw node, empty for a virtual keyboard
    std::string error;          // why it did not open, with the fix when access was denied
};
OpenedInterface openInterface(const HIDDevice& record);

}  // namespace qx9
