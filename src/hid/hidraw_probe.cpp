#include "hid/hidraw_probe.h"

#include "hid/hid_device.h"
#include "hid/report_descriptor.h"
#include "hid/udev_hid.h"

namespace qx9 {

// The udev rule picks the nodes the probe runs on by the vendor and product that
// src/hid/CMakeLists.txt gives it; they must be the keyboard's.
static_assert(kQX9VendorId == QX9_USB_VENDOR_ID && kQX9ProductId == QX9_USB_PRODUCT_ID,
              "the udev rule and the application name different keyboards");

bool isQX9ConfigurationNode(const std::string& hidrawSyspath) {
    const auto descriptor = readReportDescriptor(hidrawSyspath);
    return featureReportSize(descriptor, kQX9ReportId) == kQX9FeatureSize &&
           !parseReportDescriptor(descriptor).keystrokeInputs;
}

}  // namespace qx9
