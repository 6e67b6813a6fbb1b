#include "protocol/system_function.h"

#include "common/bytes.h"
#include "common/fatal.h"
#include "protocol/command_frame.h"
#include "store/config_value.h"

namespace qx9::protocol {

std::array<std::uint8_t, 65> buildSystemFunctionReport(const SystemSwitches& switches,
                                                       const SystemStoredValues& stored) {
    const std::int64_t fnFunction = parseConfigInteger(stored.fnfunction, "fnfunction");
    const std::int64_t sleepTime = parseConfigInteger(stored.sleeplight, "sleeplight");
    std::array<std::uint8_t, 65> report{};
    report[1] = switches.gameMode ? 1 : 0;
    report[2] = switches.blockAltTab ? 1 : 0;
    report[3] = switches.blockAltF4 ? 1 : 0;
    report[4] = switches.lockWin ? 1 : 0;
    report[5] = checkedByte(fnFunction, "fnfunction");
    report[6] = checkedByte(sleepTime, "sleeplight");
    report[62] = kTrailer0;
    report[63] = kTrailer1;
    return report;
}

void SendSystemFunctionData(DeviceComm* comm, const SystemSwitches& switches,
                            const SystemStoredValues* stored) {
    CommandFrame frame(comm);
    frame.send(kOpen);
    frame.setParameter(1);
    frame.send(kSystemFunctionHeader, 1);
    if (!stored) fatalError("system functions sent without a database");
    const auto report = buildSystemFunctionReport(switches, *stored);
    sendRawDataReport(comm, report);
    frame.send(kEnd, 0);
}

}  // namespace qx9::protocol
