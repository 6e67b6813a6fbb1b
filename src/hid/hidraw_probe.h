#pragma once

#include <string>

namespace qx9 {

// True when the hidraw node at `hidrawSyspath` (a /sys path) is a QX9 configuration interface:
// its report descriptor declares feature report 4 of 64 bytes and no input report that carries
// keystrokes (keyboard or consumer usages), in any collection. udev runs the probe program on
// every hidraw node of the keyboard's vendor and product and grants the seat user access only
// to the nodes it accepts; the application uses the same test.
bool isQX9ConfigurationNode(const std::string& hidrawSyspath);

}  // namespace qx9
