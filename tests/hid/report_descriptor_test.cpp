#include <gtest/gtest.h>

#include <sys/stat.h>
#include <unistd.h>

#include "hid/hidraw_probe.h"
#include "hid/report_descriptor.h"
#include "support/descriptors.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

// The keyboard's main interface with numbered reports: keyboard 1, consumer 3.
const std::string kNumberedKeyboard =
    "05 01 09 06 A1 01 85 01 05 07 19 E0 29 E7 15 00 25 01 75 01 95 08 81 02 95 06 75 08"
    " 15 00 25 65 19 00 29 65 81 00 C0 " + std::string(kConsumerInterface);

struct DescriptorCase {
    const char* name;
    std::string hex;
    std::int64_t input, output, feature;
    bool valid;
    std::int64_t report4 = 0;  // featureReportSize(…, 4)
    bool keystrokes = false;   // an input report of the keyboard or consumer page
};

const DescriptorCase kCases[] = {
    {"BootKeyboard", kKeyboardInterface, 8, 1, 0, true, 0, true},
    {"ConsumerControl", kConsumerInterface, 3, 0, 0, true, 0, true},
    {"ConfigurationInterface", kConfigurationInterface, 0, 0, 64, true, 64},
    // and an input report 5 of 32 bytes after the feature report
    {"ConfigurationWithInputReport",
     "06 0A FF 09 01 A1 01 85 04 15 00 26 FF 00 75 08 95 3F 09 01 B1 02 85 05 95 20 09 02 81 02 C0",
     33, 0, 64, true, 64},
    {"FeatureReport4Of32Bytes", "06 0A FF 09 01 A1 01 85 04 75 08 95 20 B1 02 C0", 0, 0, 33, true, 33},
    {"NumberedKeyboard", kNumberedKeyboard, 8, 0, 0, true, 0, true},
    // Feature report 4 of 64 bytes beside keystrokes: in the same collection, in another one, and
    // as an extended usage (page 7 in the usage's high half) under a vendor page.
    {"KeyboardWithReport4",
     "05 01 09 06 A1 01 85 01 05 07 19 E0 29 E7 75 01 95 08 81 02 06 0A FF 85 04 75 08 95 3F 09 01 B1 02 C0",
     2, 0, 64, true, 64, true},
    {"ConsumerBesideReport4", std::string(kConfigurationInterface) + " " + kConsumerInterface, 3, 0, 64, true, 64, true},
    {"ExtendedKeyboardUsage", "06 0A FF 09 01 A1 01 85 04 75 08 95 3F 09 01 B1 02 85 05 95 08 0B E0 00 07 00 81 02 C0",
     9, 0, 64, true, 64, true},
    {"ExtendedKeyRange", kExtendedKeyRange, 7, 0, 64, true, 64, true},
    {"ExtendedConsumerRange", kExtendedConsumerRange, 3, 0, 64, true, 64, true},
    {"SystemControlKeys", kSystemControlKeys, 2, 0, 64, true, 64, true},
    {"KeyPagePopped", kKeyPagePopped, 7, 0, 64, true, 64, true},
    // A mouse (buttons, X, Y, wheel) and the Generic Desktop usages below System Control carry no keys.
    {"Mouse",
     "05 01 09 02 A1 01 09 01 A1 00 05 09 19 01 29 03 15 00 25 01 95 03 75 01 81 02 95 01 75 05 81 01"
     " 05 01 09 30 09 31 09 38 15 81 25 7F 75 08 95 03 81 06 C0 C0",
     4, 0, 0, true},
    // Long items between short ones; push saves 8 × 16; the 1-bit input in between, then 128 bits
    // again: 129 bits in, 17 bytes; the feature after the pop is 128 bits, 16 bytes.
    {"LongItemsAndPushPop",
     "06 00 FF 09 01 A1 01 FE 02 10 AA BB 75 08 95 10 A4 75 01 95 01 81 02 B4 81 02 FE 00 22 B1 02 C0",
     17, 0, 16, true},
    {"Empty", "", 0, 0, 0, true},
    {"TruncatedItem", "05 01 09 06 A1 01 26 FF", 0, 0, 0, false},
    {"PopWithoutPush", "75 08 95 01 B4 81 02", 0, 0, 0, false},
    {"EndWithoutCollection", "75 08 95 01 81 02 C0", 0, 0, 0, false},
    {"UnclosedCollection", "A1 01 75 08 95 01 81 02", 0, 0, 0, false},
    {"ReportIdZero", "A1 01 85 00 75 08 95 01 81 02 C0", 0, 0, 0, false},
    {"LongItemPastTheEnd", "FE 05 10 00 00", 0, 0, 0, false},
    {"AbsurdSize", "A1 01 77 FF FF FF FF 97 FF FF FF FF 81 02 C0", 0, 0, 0, false},
};

TEST(ReportDescriptor, Sizes) {
    for (const DescriptorCase& c : kCases) {
        const Bytes d = hexBytes(c.hex);
        const ReportSizes s = parseReportDescriptor(d);
        EXPECT_EQ((std::vector<std::int64_t>{s.valid, s.input, s.output, s.feature, featureReportSize(d, 4), s.keystrokeInputs}),
                  (std::vector<std::int64_t>{c.valid, c.input, c.output, c.feature, c.report4, c.keystrokes}))
            << c.name;
    }
}

// Every input the fuzzer kept: the parser must end on each (run under the sanitizers by the
// fuzz script; here it guards against regressions in a normal build).
TEST(ReportDescriptorCorpus, EveryKeptInputParses) {
    const std::filesystem::path dir = QX9_DESCRIPTOR_CORPUS;
    ASSERT_TRUE(std::filesystem::is_directory(dir)) << dir;
    std::size_t files = 0;
    for (const auto& entry : std::filesystem::directory_iterator(dir)) {
        std::ifstream in(entry.path(), std::ios::binary);
        const Bytes d((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
        const ReportSizes s = parseReportDescriptor(d);
        (void)featureReportSize(d, 4);
        EXPECT_TRUE(s.valid || (s.input == 0 && s.output == 0 && s.feature == 0)) << entry.path();
        ++files;
    }
    EXPECT_GT(files, 0u);
}

// The probe udev runs reads the node's descriptor from sysfs: it grants access only to the
// configuration interface, never to one that also carries keystrokes, and never waits on a file
// that is not a plain one.
TEST(HidrawProbe, AcceptsOnlyTheConfigurationInterfaceAndNeverBlocks) {
    namespace fs = std::filesystem;
    const fs::path node = fs::temp_directory_path() / ("qx9-probe-" + std::to_string(::getpid()));
    fs::create_directories(node / "device");
    const fs::path file = node / "device" / "report_descriptor";
    for (const auto& [hex, accepted] : {std::pair{std::string(kConfigurationInterface), true},
                                        {std::string(kConfigurationInterface) + " " + kKeyboardInterface, false},
                                        {std::string(kKeyboardInterface), false}}) {
        const Bytes d = hexBytes(hex);
        std::ofstream(file, std::ios::binary | std::ios::trunc).write(reinterpret_cast<const char*>(d.data()),
                                                                        static_cast<std::streamsize>(d.size()));
        EXPECT_EQ(isQX9ConfigurationNode(node.string()), accepted) << hex;
    }
    fs::remove(file);
    ASSERT_EQ(::mkfifo(file.c_str(), 0600), 0);  // no writer: an open or read would wait forever
    EXPECT_FALSE(isQX9ConfigurationNode(node.string()));
    fs::remove_all(node);
}

}  // namespace
}  // namespace qx9::test
