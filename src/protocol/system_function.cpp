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

Transaction systemFunctionTransaction(const SystemSwitches& switches, const SystemStoredValues& stored) {
    Transaction transaction;
    CommandFrame frame(transaction);
    frame.send(kOpen);
    frame.setParameter(kSystemFunctionParameter);
    frame.send(kSystemFunctionHeader, kSystemFunctionReports);
    frame.sendRawDataReport(buildSystemFunctionReport(switches, stored));
    frame.send(kEnd, kNoDataReports);
    return transaction;
}

}  // namespace qx9::protocol
