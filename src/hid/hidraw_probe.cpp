#include "hid/hidraw_probe.h"

#include "hid/report_descriptor.h"
#include "hid/udev_hid.h"

namespace qx9 {

bool isQX9ConfigurationNode(const std::string& hidrawSyspath) {
    const auto descriptor = readReportDescriptor(hidrawSyspath);
    return featureReportSize(descriptor, 4) == 64;
}

}  // namespace qx9
