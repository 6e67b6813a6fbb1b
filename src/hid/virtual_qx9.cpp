#include "hid/virtual_qx9.h"

#include <algorithm>
#include <atomic>
#include <fstream>
#include <sstream>

#include "hid/device_comm.h"
#include "protocol/command_frame.h"

namespace qx9 {

using namespace protocol;

namespace {

constexpr std::size_t kReportLength = DeviceComm::kReportLength;

std::string nextIdentity() {
    static std::atomic<int> counter{0};
    return "virtual:qx9/" + std::to_string(++counter);
}

bool isHeader(std::uint8_t code) {
    switch (code) {
        case kKeyMappingHeader:
        case kFnKeyMappingHeader:
        case kLightModeHeader:
        case kMacroHeader:
        case kSystemFunctionHeader:
        case kKeyColourHeader:
            return true;
        default:
            return false;
    }
}

// Open, end and close: the command reports outside a header.
bool isFrameCode(std::uint8_t code) {
    switch (code) {
        case kOpen:
        case kOpenMacro:
        case kEnd:
        case kClose:
            return true;
        default:
            return false;
    }
}

}  // namespace

VirtualQX9::VirtualQX9(std::string identity)
    : identity_(identity.empty() ? nextIdentity() : std::move(identity)) {}

bool VirtualQX9::open() {
    if (vanished_) {
        lastError_ = "No such device";
        return false;
    }
    open_ = true;
    return true;
}

bool VirtualQX9::looksLikeFrameCommand(const Report& r) {
    // Open, end and close reports: 04 code [param] and zeros. A data report never looks so.
    if (r.size() < kReportLength || r[kFrameReportIdByte] != DeviceComm::kReportId) return false;
    if (!isFrameCode(r[kFrameCodeByte])) return false;
    return std::all_of(r.begin() + kFrameParameterByte + 1, r.begin() + kReportLength,
                       [](std::uint8_t b) { return b == 0; });
}

bool VirtualQX9::setFeatureReport(std::uint8_t reportId, const std::uint8_t* data, std::size_t length) {
    ++setCount_;
    if (failSetAt_ > 0 && ++setsSinceArmed_ == failSetAt_) {
        failSetAt_ = 0;
        lastError_ = "Broken pipe";
        return false;
    }
    if (vanished_ || !open_) {
        lastError_ = vanished_ ? "No such device" : "device not open";
        return false;
    }
    if (reportId != DeviceComm::kReportId || !data || length == 0 || length > kReportLength) {
        lastError_ = "Invalid argument";
        return false;
    }
    takePendingCommand();
    Report report(kReportLength, 0);
    std::copy_n(data, length, report.begin());

    if (expectedReports_ > 0) {
        if (!looksLikeFrameCommand(report)) {
            takeData(report);
            return true;
        }
        // The block was cut short: drop it and take the report as the command it is.
        ++memory_.droppedBlocks;
        expectedReports_ = 0;
        blockData_.clear();
    }
    if (report[kFrameReportIdByte] != DeviceComm::kReportId) {
        ++memory_.strayReports;
        return true;
    }
    pendingCommand_ = std::move(report);
    return true;
}

bool VirtualQX9::getFeatureReport(std::uint8_t reportId, std::uint8_t* data, std::size_t& length) {
    ++getCount_;
    if (vanished_ || !open_) {
        lastError_ = vanished_ ? "No such device" : "device not open";
        return false;
    }
    if (reportId != DeviceComm::kReportId || !data || length < kReportLength) {
        lastError_ = "Invalid argument";
        return false;
    }
    Report reply;
    if (busyReads_ > 0) {
        --busyReads_;
        reply = pendingCommand_ ? *pendingCommand_ : lastCommand_;
        pendingCommand_.reset();  // not taken: the host must send it again
        reply[DeviceComm::kAckByte] = DeviceComm::kBusy;
    } else {
        takePendingCommand();
        reply = lastCommand_;
        reply[DeviceComm::kAckByte] = 0;  // ready
    }
    std::copy(reply.begin(), reply.end(), data);
    length = kReportLength;
    return true;
}

void VirtualQX9::takePendingCommand() {
    if (!pendingCommand_) return;
    Report command = std::move(*pendingCommand_);
    pendingCommand_.reset();
    takeCommand(command);
}

void VirtualQX9::takeCommand(const Report& report) {
    lastCommand_ = report;
    const std::uint8_t code = report[kFrameCodeByte];
    if (isHeader(code)) {
        blockCode_ = code;
        expectedReports_ = report[kFrameDataReportsByte];
        blockData_.clear();
        return;
    }
    if (!isFrameCode(code)) ++memory_.strayReports;
}

void VirtualQX9::takeData(const Report& report) {
    blockData_.insert(blockData_.end(), report.begin(), report.end());
    if (--expectedReports_ == 0) applyBlock();
}

void VirtualQX9::applyBlock() {
    Report block = std::move(blockData_);
    blockData_.clear();
    std::optional<Report>* nineReportBlock = nullptr;
    switch (blockCode_) {
        case kKeyMappingHeader:
            nineReportBlock = &memory_.keyTables[0];
            break;
        case kFnKeyMappingHeader:
            nineReportBlock = &memory_.keyTables[1];
            break;
        case kKeyColourHeader:
            nineReportBlock = &memory_.keyColours;
            break;
        case kMacroHeader:
            memory_.macroBlock = block;
            break;
        case kLightModeHeader:
            block.resize(kReportLength);
            memory_.lightMode = block;
            break;
        case kSystemFunctionHeader:
            block.resize(kReportLength);
            memory_.systemFunctions = block;
            break;
        default:
            ++memory_.strayReports;
            return;
    }
    if (nineReportBlock) {
        if (block.size() != VirtualQX9Memory::kKeyTableBytes) {
            ++memory_.strayReports;
            return;
        }
        *nineReportBlock = std::move(block);
    }
    ++memory_.transactions;
}

const VirtualQX9Memory& VirtualQX9::memory() {
    takePendingCommand();
    return memory_;
}

void VirtualQX9::setMemory(VirtualQX9Memory memory) { memory_ = std::move(memory); }

bool VirtualQX9::saveState(const std::string& path, std::string& error) {
    const std::string text = memoryToJson(memory());
    const std::string tmp = path + ".tmp";
    {
        std::ofstream out(tmp, std::ios::binary | std::ios::trunc);
        if (!out || !(out << text) || !out.flush()) {
            error = "cannot write " + tmp;
            return false;
        }
    }
    if (std::rename(tmp.c_str(), path.c_str()) != 0) {
        error = "cannot replace " + path;
        std::remove(tmp.c_str());
        return false;
    }
    return true;
}

bool VirtualQX9::loadState(const std::string& path, std::string& error) {
    std::ifstream in(path, std::ios::binary);
    if (!in) {
        error = "cannot read " + path;
        return false;
    }
    std::stringstream text;
    text << in.rdbuf();
    VirtualQX9Memory loaded;
    if (!memoryFromJson(text.str(), loaded, error)) {
        error = path + ": " + error;
        return false;
    }
    memory_ = std::move(loaded);
    return true;
}

}  // namespace qx9
