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
    const ssize_t n = ::write(fd, &ev, sizeof ev);
    return n == static_cast<ssize_t>(sizeof ev);
}

}  // namespace

UhidDevice::UhidDevice(const std::string& name, const Bytes& descriptor, bool answersWithKeyboard)
    : keyboard_(std::make_unique<VirtualQX9>("uhid-side")), answers_(answersWithKeyboard) {
    keyboard_->open();
    fd_.reset(::open("/dev/uhid", O_RDWR | O_CLOEXEC));
    if (!fd_) {
        error_ = std::string("open /dev/uhid: ") + std::strerror(errno);
        return;
    }
    uhid_event ev{};
    ev.type = UHID_CREATE2;
    std::strncpy(reinterpret_cast<char*>(ev.u.create2.name), name.c_str(), sizeof ev.u.create2.name - 1);
    std::memcpy(ev.u.create2.rd_data, descriptor.data(), descriptor.size());
    ev.u.create2.rd_size = static_cast<std::uint16_t>(descriptor.size());
    ev.u.create2.bus = BUS_USB;
    ev.u.create2.vendor = 0x05AC;
    ev.u.create2.product = 0x024F;
    if (!writeEvent(fd_.get(), ev)) {
        error_ = std::string("UHID_CREATE2: ") + std::strerror(errno);
        fd_.reset();
        return;
    }
    thread_ = std::thread([this] { serve(); });
}

UhidDevice::~UhidDevice() {
    destroy();
}

void UhidDevice::destroy() {
    running_ = false;
    if (thread_.joinable()) thread_.join();
    if (fd_) {
        uhid_event ev{};
        ev.type = UHID_DESTROY;
        writeEvent(fd_.get(), ev);
        fd_.reset();
    }
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
        if (::poll(&p, 1, 50) <= 0) continue;
        uhid_event ev{};
        if (::read(fd_.get(), &ev, sizeof ev) <= 0) continue;
        if (ev.type == UHID_SET_REPORT) {
            const auto& req = ev.u.set_report;
            Bytes data(req.data, req.data + std::min<std::size_t>(req.size, UHID_DATA_MAX));
            if (req.rnum == 0 && !data.empty()) data.erase(data.begin());
            bool ok = true;
            {
                std::lock_guard lock(mutex_);
                sets_.push_back(data);
                if (answers_) ok = keyboard_->setFeatureReport(4, data.data(), data.size());
            }
            uhid_event reply{};
            reply.type = UHID_SET_REPORT_REPLY;
            reply.u.set_report_reply.id = req.id;
            reply.u.set_report_reply.err = ok ? 0 : EIO;
            writeEvent(fd_.get(), reply);
        } else if (ev.type == UHID_GET_REPORT) {
            if (stall_) continue;  // never answered: the host waits until the device goes
            const auto& req = ev.u.get_report;
            uhid_event reply{};
            reply.type = UHID_GET_REPORT_REPLY;
            reply.u.get_report_reply.id = req.id;
            std::size_t length = 64;
            bool ok = false;
            if (answers_) {
                std::lock_guard lock(mutex_);
                ok = keyboard_->getFeatureReport(4, reply.u.get_report_reply.data, length);
            }
            reply.u.get_report_reply.err = ok ? 0 : EIO;
            reply.u.get_report_reply.size = ok ? static_cast<std::uint16_t>(length) : 0;
            writeEvent(fd_.get(), reply);
        }
    }
}

}  // namespace qx9::test
