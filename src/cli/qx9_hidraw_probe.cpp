// Run by udev for the hidraw nodes of the keyboard's vendor and product (the rule in data/udev):
//   qx9-hidraw-probe /sys/devices/.../hidraw/hidrawN
// Exits 0 only when the node is the QX9's configuration interface (feature report 4 of 64 bytes),
// so that the seat user gets access to that node and never to one that carries keystrokes.
#include <cstdio>
#include <string>

#include "hid/hidraw_probe.h"

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: qx9-hidraw-probe SYSFS-PATH-OF-HIDRAW-NODE\n");
        return 2;
    }
    return qx9::isQX9ConfigurationNode(argv[1]) ? 0 : 1;
}
