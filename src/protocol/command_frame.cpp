#include "protocol/command_frame.h"

namespace qx9::protocol {

void CommandFrame::send(std::uint8_t code) {
    buffer_[kFrameReportIdByte] = kReportId;
    buffer_[kFrameCodeByte] = code;
    transaction_.steps.push_back({TransactionStep::kCommand, {buffer_.begin(), buffer_.end()}, 1});
}

void CommandFrame::send(std::uint8_t code, std::uint8_t dataReports) {
    buffer_[kFrameDataReportsByte] = dataReports;
    send(code);
}

void CommandFrame::sendRawDataReport(std::span<const std::uint8_t> report) {
    const auto first = report.first(kReportLength);
    transaction_.steps.push_back({TransactionStep::kRawReport, {first.begin(), first.end()}, 1});
}

void CommandFrame::sendDataBlock(std::span<const std::uint8_t> block, int reports) {
    const auto sent = block.first(kReportLength * static_cast<std::size_t>(reports));
    transaction_.steps.push_back({TransactionStep::kDataBlock, {sent.begin(), sent.end()}, reports});
}

void CommandFrame::pause() { transaction_.steps.push_back({TransactionStep::kPause, {}, 0}); }

std::size_t Transaction::reportCount() const {
    std::size_t n = 0;
    for (const TransactionStep& step : steps) n += static_cast<std::size_t>(step.reports);
    return n;
}

}  // namespace qx9::protocol
