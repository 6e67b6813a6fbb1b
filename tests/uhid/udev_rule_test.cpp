// The udev rule and its probe as the package installs them, against the real systemd-udevd: a USB
// keyboard made with the kernel's gadget side (dummy_hcd, usb_f_hid) enumerates through usbhid, and
// udev tags its nodes. Runs inside a throw-away virtual machine (tests/vm/run_in_vm.sh --root).
#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <unistd.h>

#include "support/descriptors.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

namespace fs = std::filesystem;
const fs::path kGadget = "/sys/kernel/config/usb_gadget/qx9";

void put(const fs::path& file, const std::string& text) { std::ofstream(file, std::ios::binary) << text; }

std::string command(const std::string& line) {
    std::string out;
    std::array<char, 4096> buf{};
    std::unique_ptr<FILE, int (*)(FILE*)> pipe(::popen(line.c_str(), "r"), ::pclose);
    for (std::size_t n; pipe && (n = std::fread(buf.data(), 1, buf.size(), pipe.get())) > 0;) out.append(buf.data(), n);
    return out;
}

// Until the kernel shows `count` hidraw nodes (or 15 s have passed), then until udev has handled them.
void waitForNodes(std::size_t count) {
    for (int i = 0; i < 300 && std::distance(fs::directory_iterator("/sys/class/hidraw"), {}) != long(count); ++i) {
        ::usleep(50000);
    }
    command("udevadm settle --timeout=30");
}

// A keyboard of the QX9's vendor and product with these interfaces, plugged in while it lives.
struct UsbKeyboard {
    explicit UsbKeyboard(const std::vector<const char*>& interfaces) {
        fs::create_directories(kGadget / "configs/c.1");
        put(kGadget / "idVendor", "0x05ac");
        put(kGadget / "idProduct", "0x024f");
        for (std::size_t i = 0; i < interfaces.size(); ++i) {
            const fs::path f = kGadget / ("functions/hid." + std::to_string(i));
            fs::create_directory(f);
            put(f / "report_length", "64");
            const Bytes d = hexBytes(interfaces[i]);
            put(f / "report_desc", std::string(d.begin(), d.end()));
            fs::create_directory_symlink(f, kGadget / "configs/c.1" / f.filename());
        }
        put(kGadget / "UDC", "dummy_udc.0");
        waitForNodes(interfaces.size());
    }
    ~UsbKeyboard() {
        put(kGadget / "UDC", "\n");
        waitForNodes(0);
        for (const auto& link : fs::directory_iterator(kGadget / "configs/c.1"))
            if (link.is_symlink()) fs::remove(link.path()), fs::remove(kGadget / "functions" / link.path().filename());
        fs::remove(kGadget / "configs/c.1");
        fs::remove(kGadget);
    }
};

TEST(UdevRule, TheSeatUserGetsTheConfigurationInterfaceAndNothingElse) {
    ASSERT_TRUE(fs::exists("/usr/lib/udev/rules.d/70-halvorn-qx9.rules"));
    std::string shorter = kConfigurationInterface;  // feature report 4 of 32 bytes, not 64
    shorter.replace(shorter.find("95 3F"), 5, "95 1F");
    struct Case {
        std::vector<const char*> interfaces;
        std::vector<bool> uaccess;  // per interface
    } const cases[] = {
        {{kKeyboardInterface, kConsumerInterface, kConfigurationInterface}, {false, false, true}},
        {{kKeyboardInterface, kConsumerInterface, shorter.c_str()}, {false, false, false}},
        {{kKeyboardInterface}, {false}},
        // Keystrokes beside feature report 4, declared in ways only a full reading of the usages finds.
        {{kExtendedKeyRange, kExtendedConsumerRange}, {false, false}},
        {{kSystemControlKeys, kKeyPagePopped}, {false, false}},
    };
    for (const Case& c : cases) {
        const UsbKeyboard keyboard(c.interfaces);
        std::vector<int> tagged(c.interfaces.size(), -1);
        for (const auto& node : fs::directory_iterator("/sys/class/hidraw")) {
            const std::string path = fs::canonical(node.path()).string();  // …/1-1:1.N/0003:05AC:024F.*/hidraw/hidrawM
            const std::size_t at = path.find(":1.");
            ASSERT_NE(at, std::string::npos) << path;
            const std::string tags = command("udevadm info --query=property --name=/dev/" + node.path().filename().string());
            tagged.at(std::stoul(path.substr(at + 3))) = tags.find(":uaccess:") != std::string::npos;
        }
        EXPECT_EQ(tagged, std::vector<int>(c.uaccess.begin(), c.uaccess.end())) << c.interfaces.size();
    }
}

}  // namespace
}  // namespace qx9::test
