#include "protocol/system_function.h"

#include "common/bytes.h"
#include "common/fatal.h"
#include "protocol/command_frame.h"
#include "store/config_value.h"

namespace qx9::protocol {

ReportBuffer buildSystemFunctionReport(const SystemSwitches& switches,
                                       const SystemStoredValues& stored) {
    const std::int64_t fnFunction = parseConfigInteger(stored.fnfunction, "fnfunction", 0, 255);
    const std::int64_t sleepTime = parseConfigInteger(stored.sleeplight, "sleeplight", 0, 255);
    ReportBuffer report{};
    report[kGameModeByte] = switches.gameMode ? 1 : 0;
    report[kBlockAltTabByte] = switches.blockAltTab ? 1 : 0;
    report[kBlockAltF4Byte] = switches.blockAltF4 ? 1 : 0;
    report[kLockWinByte] = switches.lockWin ? 1 : 0;
    report[kFnFunctionByte] = checkedByte(fnFunction, "fnfunction");
    report[kSleepTimeByte] = checkedByte(sleepTime, "sleeplight");
    putTrailer(report, kSystemFunctionTrailerOffset);
    return report;
}

void SendSystemFunctionData(DeviceComm* comm, const SystemSwitches& switches,
                            const SystemStoredValues* stored) {
    CommandFrame frame(comm);
    frame.send(kOpen);
    frame.setParameter(kSystemFunctionParameter);
    frame.send(kSystemFunctionHeader, kSystemFunctionReports);
    if (!stored) fatalError("system functions sent without a database");
    const auto report = buildSystemFunctionReport(switches, *stored);
    sendRawDataReport(comm, report);
    frame.send(kEnd, kNoDataReports);
}

}  // namespace qx9::protocol
