#include "hid/virtual_qx9.h"

#include <algorithm>
#include <atomic>
#include <fstream>
#include <sstream>

namespace qx9 {

namespace {

constexpr std::size_t kReportLength = 64;

std::string nextIdentity() {
    static std::atomic<int> counter{0};
    return "virtual:qx9/" + std::to_string(++counter);
}

bool isHeader(std::uint8_t code) {
    switch (code) {
        case 0x11: case 0x27: case 0x13: case 0x15: case 0x17: case 0x23: return true;
        default: return false;
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
    if (r.size() < kReportLength || r[0] != 0x04) return false;
    if (r[1] != 0x18 && r[1] != 0x19 && r[1] != 0x02 && r[1] != 0xF0) return false;
    return std::all_of(r.begin() + 3, r.begin() + kReportLength, [](std::uint8_t b) { return b == 0; });
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
    if (reportId != 4 || !data || length == 0 || length > kReportLength) {
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
    if (report[0] != 0x04) {
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
    if (reportId != 4 || !data || length < kReportLength) {
        lastError_ = "Invalid argument";
        return false;
    }
    Report reply;
    if (busyReads_ > 0) {
        --busyReads_;
        reply = pendingCommand_ ? *pendingCommand_ : lastCommand_;
        pendingCommand_.reset();  // not taken: the host must send it again
        reply[3] = 0xFF;
    } else {
        takePendingCommand();
        reply = lastCommand_;
        reply[3] = 0x00;
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
    const std::uint8_t code = report[1];
    if (isHeader(code)) {
        blockCode_ = code;
        expectedReports_ = report[8];
        blockData_.clear();
        return;
    }
    switch (code) {
        case 0x18: case 0x19: case 0x02: case 0xF0: break;
        default: ++memory_.strayReports; break;
    }
}

void VirtualQX9::takeData(const Report& report) {
    blockData_.insert(blockData_.end(), report.begin(), report.end());
    if (--expectedReports_ == 0) applyBlock();
}

void VirtualQX9::applyBlock() {
    Report block = std::move(blockData_);
    blockData_.clear();
    const auto nineReports = [&]() -> std::optional<Report> {
        if (block.size() != VirtualQX9Memory::kKeyTableBytes) {
            ++memory_.strayReports;
            return std::nullopt;
        }
        return block;
    };
    switch (blockCode_) {
        case 0x11: if (auto b = nineReports()) memory_.keyTables[0] = b; else return; break;
        case 0x27: if (auto b = nineReports()) memory_.keyTables[1] = b; else return; break;
        case 0x23: if (auto b = nineReports()) memory_.keyColours = b; else return; break;
        case 0x15: memory_.macroBlock = block; break;
        case 0x13: block.resize(kReportLength); memory_.lightMode = block; break;
        case 0x17: block.resize(kReportLength); memory_.systemFunctions = block; break;
        default: ++memory_.strayReports; return;
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
