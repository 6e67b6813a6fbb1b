#include "protocol/light_mode.h"

#include "common/bytes.h"
#include "protocol/command_frame.h"

namespace qx9::protocol {

std::array<std::uint8_t, 65> buildLightModeReport(std::int64_t currentLightMode,
                                                  const std::optional<LightRecord>& record) {
    std::array<std::uint8_t, 65> report{};
    report[0] = checkedByte(currentLightMode, "light mode");
    report[14] = kTrailer0;
    report[15] = kTrailer1;
    if (record) {
        // Record bytes 0 (the mode) and 4–7 are not sent.
        for (int i : {1, 2, 3, 8, 9, 10, 11}) report[i] = (*record)[i];
    }
    return report;
}

void SendLightModeData(DeviceComm* comm, std::int64_t currentLightMode,
                       const std::optional<LightRecord>& record) {
    CommandFrame frame(comm);
    frame.send(kOpen);
    frame.send(kLightModeHeader, 1);
    const auto report = buildLightModeReport(currentLightMode, record);
    sendRawDataReport(comm, report);
    frame.send(kEnd, 0);
    frame.send(kClose);
}

}  // namespace qx9::protocol
