// libFuzzer target: the report-descriptor parser on arbitrary bytes.
#include <cstddef>
#include <cstdint>
#include <span>

#include "hid/report_descriptor.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::span<const std::uint8_t> d(data, size);
    const qx9::ReportSizes s = qx9::parseReportDescriptor(d);
    if (!s.valid && (s.input || s.output || s.feature)) __builtin_trap();
    if (s.input < 0 || s.output < 0 || s.feature < 0) __builtin_trap();
    (void)qx9::featureReportSize(d, 4);
    return 0;
}
