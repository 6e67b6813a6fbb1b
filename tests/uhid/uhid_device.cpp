#include "uhid/uhid_device.h"

#include <fcntl.h>
#include <linux/input.h>
#include <linux/uhid.h>
#include <poll.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace qx9::test {

namespace {

bool writeEvent(int fd, const uhid_event& ev) {
    return ::write(fd, &ev, sizeof ev) == static_cast<ssize_t>(sizeof ev);
}

}  // namespace

UhidDevice::UhidDevice(const std::string& name, const Bytes& descriptor, bool answersWithKeyboard)
    : keyboard_(std::make_unique<VirtualQX9>("uhid-side")), answers_(answersWithKeyboard) {
    keyboard_->open();
    fd_.reset(::open("/dev/uhid", O_RDWR | O_CLOEXEC));
    uhid_event ev{};
    ev.type = UHID_CREATE2;
    std::strncpy(reinterpret_cast<char*>(ev.u.create2.name), name.c_str(), sizeof ev.u.create2.name - 1);
    std::memcpy(ev.u.create2.rd_data, descriptor.data(), descriptor.size());
    ev.u.create2.rd_size = static_cast<std::uint16_t>(descriptor.size());
    ev.u.create2.bus = BUS_USB;
    ev.u.create2.vendor = 0x05AC;
    ev.u.create2.product = 0x024F;
    if (!fd_ || !writeEvent(fd_.get(), ev)) {
        error_ = std::string(fd_ ? "UHID_CREATE2: " : "open /dev/uhid: ") + std::strerror(errno);
        fd_.reset();
        return;
    }
    thread_ = std::thread([this] { serve(); });
}

void UhidDevice::destroy() {
    running_ = false;
    if (thread_.joinable()) thread_.join();
    uhid_event ev{};
    ev.type = UHID_DESTROY;
    if (fd_) writeEvent(fd_.get(), ev);
    fd_.reset();
}

bool UhidDevice::input(const Bytes& report) {
    uhid_event ev{};
    ev.type = UHID_INPUT2;
    ev.u.input2.size = static_cast<std::uint16_t>(report.size());
    std::copy(report.begin(), report.end(), ev.u.input2.data);
    return writeEvent(fd_.get(), ev);
}

std::vector<Bytes> UhidDevice::sets() {
    std::lock_guard lock(mutex_);
    return sets_;
}

void UhidDevice::serve() {
    while (running_) {
        pollfd p{fd_.get(), POLLIN, 0};
        uhid_event ev{}, reply{};
        if (::poll(&p, 1, 50) <= 0 || ::read(fd_.get(), &ev, sizeof ev) <= 0) continue;
        bool ok = false;
        if (ev.type == UHID_SET_REPORT) {
            const auto& req = ev.u.set_report;
            Bytes data(req.data, req.data + std::min<std::size_t>(req.size, UHID_DATA_MAX));
            if (req.rnum == 0 && !data.empty()) data.erase(data.begin());
            std::lock_guard lock(mutex_);
            sets_.push_back(data);
            ok = !answers_ || keyboard_->setFeatureReport(4, data.data(), data.size());
            reply.type = UHID_SET_REPORT_REPLY;
            reply.u.set_report_reply = {.id = req.id, .err = static_cast<__u16>(ok ? 0 : EIO)};
        } else if (ev.type == UHID_GET_REPORT && !stall_) {  // stalled: left unanswered
            std::size_t length = 64;
            std::lock_guard lock(mutex_);
            ok = answers_ && keyboard_->getFeatureReport(4, reply.u.get_report_reply.data, length);
            reply.type = UHID_GET_REPORT_REPLY;
            reply.u.get_report_reply.id = ev.u.get_report.id;
            reply.u.get_report_reply.err = ok ? 0 : EIO;
            reply.u.get_report_reply.size = ok ? static_cast<std::uint16_t>(length) : 0;
        } else {
            continue;
        }
        writeEvent(fd_.get(), reply);
    }
}

}  // namespace qx9::test
