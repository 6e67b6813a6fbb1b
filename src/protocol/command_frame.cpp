#include "protocol/command_frame.h"

namespace qx9::protocol {

void CommandFrame::send(std::uint8_t code) {
    buffer_[kFrameReportIdByte] = DeviceComm::kReportId;
    buffer_[kFrameCodeByte] = code;
    transmit();
}

void CommandFrame::send(std::uint8_t code, std::uint8_t dataReports) {
    buffer_[kFrameDataReportsByte] = dataReports;
    send(code);
}

void CommandFrame::transmit() {
    if (comm_) comm_->sendDeviceData(buffer_);
}

void sendRawDataReport(DeviceComm* comm, std::span<const std::uint8_t> report) {
    if (!comm || comm->deviceStatus() == 0) return;
    comm->pause(kReportPause);
    comm->setFeatureReport(report.first(DeviceComm::kReportLength));
}

void sendDataBlock(DeviceComm* comm, std::span<const std::uint8_t> block, int reports) {
    if (!comm) return;
    comm->sendDeviceData(block, static_cast<std::int64_t>(reports + 1) *
                                    static_cast<std::int64_t>(DeviceComm::kReportLength));
}

}  // namespace qx9::protocol
