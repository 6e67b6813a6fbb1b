#include "virtual/virtual_qx9.h"

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "common/private_file.h"
#include "hid/device_comm.h"
#include "protocol/command_frame.h"

namespace qx9 {

using namespace protocol;

namespace {

static_assert(protocol::kReportLength == DeviceComm::kReportLength);
// How often a lock file held by another process is tried again.
constexpr auto kLockRetryDelay = std::chrono::milliseconds(2);

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
    std::lock_guard lock(mutex_);
    if (vanished_) {
        lastError_ = "No such device";
        return false;
    }
    open_ = true;
    return true;
}

void VirtualQX9::close() {
    std::lock_guard lock(mutex_);
    open_ = false;
}

bool VirtualQX9::isOpen() const {
    std::lock_guard lock(mutex_);
    return open_;
}

std::string VirtualQX9::lastError() const {
    std::lock_guard lock(mutex_);
    return lastError_;
}

void VirtualQX9::setBusyReads(int count) {
    std::lock_guard lock(mutex_);
    busyReads_ = count;
}

void VirtualQX9::failSetAt(int k, SetFault fault) {
    std::lock_guard lock(mutex_);
    failSetAt_ = k;
    setFault_ = fault;
    setsSinceArmed_ = 0;
}

void VirtualQX9::vanish() {
    std::lock_guard lock(mutex_);
    vanished_ = true;
}

void VirtualQX9::reappear() {
    std::lock_guard lock(mutex_);
    vanished_ = false;
}

std::uint64_t VirtualQX9::setCount() const {
    std::lock_guard lock(mutex_);
    return setCount_;
}

std::uint64_t VirtualQX9::getCount() const {
    std::lock_guard lock(mutex_);
    return getCount_;
}

bool VirtualQX9::lockExclusive(std::chrono::milliseconds timeout) {
    const auto deadline = std::chrono::steady_clock::now() + timeout;
    {
        std::unique_lock hold(holdMutex_);
        if (!holdFree_.wait_until(hold, deadline, [this] { return !held_; })) {
            std::lock_guard lock(mutex_);
            lastError_ = "the keyboard is in use";
            return false;
        }
        held_ = true;
    }
    std::lock_guard lock(mutex_);
    if (sharedState_.empty()) return true;
    const std::string lockPath = sharedState_ + ".lock";
    const int fd = ::open(lockPath.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600);
    if (fd < 0) {
        lastError_ = "cannot open " + lockPath;
        releaseHold();
        return false;
    }
    while (::flock(fd, LOCK_EX | LOCK_NB) != 0) {
        if (errno == EINTR) continue;
        if (errno != EWOULDBLOCK || std::chrono::steady_clock::now() >= deadline) {
            lastError_ = sharedState_ + " is in use by another program";
            ::close(fd);
            releaseHold();
            return false;
        }
        mutex_.unlock();
        std::this_thread::sleep_for(kLockRetryDelay);
        mutex_.lock();
    }
    sharedLockFd_ = fd;
    // Another process may have changed the keyboard since this one last held it.
    std::error_code ec;
    std::string error;
    if (std::filesystem::exists(sharedState_, ec) && !loadStateLocked(sharedState_, error)) lastError_ = error;
    return true;
}

bool VirtualQX9::unlock() {
    bool kept = true;
    {
        std::lock_guard lock(mutex_);
        if (sharedLockFd_ >= 0) {
            std::string error;
            kept = saveStateLocked(sharedState_, error);
            if (!kept) lastError_ = error;
            ::flock(sharedLockFd_, LOCK_UN);
            ::close(sharedLockFd_);
            sharedLockFd_ = -1;
        }
    }
    releaseHold();
    return kept;
}

void VirtualQX9::releaseHold() {
    {
        std::lock_guard hold(holdMutex_);
        held_ = false;
    }
    holdFree_.notify_one();
}

bool VirtualQX9::shareState(const std::string& path, std::string& error) {
    std::lock_guard lock(mutex_);
    std::error_code ec;
    if (std::filesystem::exists(path, ec) && !loadStateLocked(path, error)) return false;
    sharedState_ = path;
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
    std::lock_guard lock(mutex_);
    ++setCount_;
    if (failSetAt_ > 0 && ++setsSinceArmed_ == failSetAt_) {
        failSetAt_ = 0;
        switch (setFault_) {
            case SetFault::kFail: lastError_ = "Broken pipe"; return false;
            case SetFault::kVanish: vanished_ = true; break;
            case SetFault::kBusyOnce: busyReads_ = 1; break;
            case SetFault::kBusyTwice: busyReads_ = 2; break;
        }
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
    std::lock_guard lock(mutex_);
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

VirtualQX9Memory VirtualQX9::memory() {
    std::lock_guard lock(mutex_);
    takePendingCommand();
    return memory_;
}

void VirtualQX9::setMemory(VirtualQX9Memory memory) {
    std::lock_guard lock(mutex_);
    memory_ = std::move(memory);
}

bool VirtualQX9::saveState(const std::string& path, std::string& error) {
    std::lock_guard lock(mutex_);
    return saveStateLocked(path, error);
}

bool VirtualQX9::loadState(const std::string& path, std::string& error) {
    std::lock_guard lock(mutex_);
    return loadStateLocked(path, error);
}

bool VirtualQX9::saveStateLocked(const std::string& path, std::string& error) {
    takePendingCommand();
    const std::string text = memoryToJson(memory_);
    return replacePrivateFile(path, text, error);
}

bool VirtualQX9::loadStateLocked(const std::string& path, std::string& error) {
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

HIDDevice virtualQX9Record(std::shared_ptr<VirtualQX9> keyboard) {
    HIDDevice record;
    record.vendorId = kQX9VendorId;
    record.productId = kQX9ProductId;
    record.featureSize = kQX9FeatureSize;
    record.name = "HALVORN QX9 (virtual)";
    record.device = std::move(keyboard);
    return record;
}

}  // namespace qx9
