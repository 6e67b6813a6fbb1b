#include "protocol/light_mode.h"

#include "common/bytes.h"
#include "protocol/command_frame.h"

namespace qx9::protocol {

ReportBuffer buildLightModeReport(std::int64_t currentLightMode,
                                  const std::optional<LightRecord>& record) {
    ReportBuffer report{};
    report[kLightModeByte] = checkedByte(currentLightMode, "light mode");
    putTrailer(report, kLightModeTrailerOffset);
    if (record) {
        for (std::size_t i : kSentLightRecordBytes) report[i] = (*record)[i];
    }
    return report;
}

Transaction lightModeTransaction(std::int64_t currentLightMode, const std::optional<LightRecord>& record) {
    Transaction transaction;
    CommandFrame frame(transaction);
    frame.send(kOpen);
    frame.send(kLightModeHeader, kLightModeReports);
    const auto report = buildLightModeReport(currentLightMode, record);
    frame.sendRawDataReport(report);
    frame.send(kEnd, kNoDataReports);
    frame.send(kClose);
    return transaction;
}

}  // namespace qx9::protocol
