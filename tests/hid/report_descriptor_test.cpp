#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>

#include "common/bytes.h"
#include "hid/report_descriptor.h"

namespace qx9 {
namespace {

// Descriptors written out item by item.
// A boot keyboard: 8 modifier bits, a reserved byte, six key bytes in; five LEDs and padding out.
const char* const kBootKeyboard =
    "05 01 09 06 A1 01 05 07 19 E0 29 E7 15 00 25 01 75 01 95 08 81 02 95 01 75 08 81 01"
    " 95 05 75 01 05 08 19 01 29 05 91 02 95 01 75 03 91 01 95 06 75 08 15 00 25 65"
    " 05 07 19 00 29 65 81 00 C0";
// A consumer-control collection, report 3: one 16-bit usage in.
const char* const kConsumer =
    "05 0C 09 01 A1 01 85 03 15 00 26 FF 03 19 00 2A FF 03 75 10 95 01 81 00 C0";
// The configuration interface: vendor page FF0A, feature report 4 of 63 bytes plus its ID,
// and an input report 5 of 32 bytes.
const char* const kVendorConfig =
    "06 0A FF 09 01 A1 01 85 04 15 00 26 FF 00 75 08 95 3F 09 01 B1 02"
    " 85 05 95 20 09 02 81 02 C0";
// The keyboard's main interface with numbered reports: keyboard 1, consumer 3.
const char* const kNumberedKeyboard =
    "05 01 09 06 A1 01 85 01 05 07 19 E0 29 E7 15 00 25 01 75 01 95 08 81 02 95 06 75 08"
    " 15 00 25 65 19 00 29 65 81 00 C0"
    " 05 0C 09 01 A1 01 85 03 15 00 26 FF 03 19 00 2A FF 03 75 10 95 01 81 00 C0";
// Long items between short ones, and push/pop of the global state.
const char* const kLongItemsAndPushPop =
    "06 00 FF 09 01 A1 01 FE 02 10 AA BB 75 08 95 10 A4 75 01 95 01 81 02 B4 81 02"
    " FE 00 22 B1 02 C0";

struct DescriptorCase {
    const char* name;
    const char* hex;
    std::int64_t input, output, feature;
    bool valid;
};

void PrintTo(const DescriptorCase& c, std::ostream* os) { *os << c.name; }

const DescriptorCase kCases[] = {
    {"BootKeyboard", kBootKeyboard, 8, 1, 0, true},
    {"ConsumerControl", kConsumer, 3, 0, 0, true},
    {"VendorConfiguration", kVendorConfig, 33, 0, 64, true},
    {"NumberedKeyboard", kNumberedKeyboard, 8, 0, 0, true},
    // push saves 8 × 16; the 1-bit input in between, then 128 bits again: 129 bits in, 17 bytes;
    // the feature after the pop is 128 bits, 16 bytes
    {"LongItemsAndPushPop", kLongItemsAndPushPop, 17, 0, 16, true},
    {"Empty", "", 0, 0, 0, true},
    {"TruncatedItem", "05 01 09 06 A1 01 26 FF", 0, 0, 0, false},
    {"PopWithoutPush", "75 08 95 01 B4 81 02", 0, 0, 0, false},
    {"EndWithoutCollection", "75 08 95 01 81 02 C0", 0, 0, 0, false},
    {"UnclosedCollection", "A1 01 75 08 95 01 81 02", 0, 0, 0, false},
    {"ReportIdZero", "A1 01 85 00 75 08 95 01 81 02 C0", 0, 0, 0, false},
    {"LongItemPastTheEnd", "FE 05 10 00 00", 0, 0, 0, false},
    {"AbsurdSize", "A1 01 77 FF FF FF FF 97 FF FF FF FF 81 02 C0", 0, 0, 0, false},
};

class ReportDescriptor : public ::testing::TestWithParam<DescriptorCase> {};

TEST_P(ReportDescriptor, Sizes) {
    const DescriptorCase& c = GetParam();
    Bytes d;
    ASSERT_TRUE(parseHexBytes(c.hex, d));
    const ReportSizes s = parseReportDescriptor(d);
    EXPECT_EQ(s.valid, c.valid);
    EXPECT_EQ(s.input, c.input);
    EXPECT_EQ(s.output, c.output);
    EXPECT_EQ(s.feature, c.feature);
}

INSTANTIATE_TEST_SUITE_P(Descriptors, ReportDescriptor, ::testing::ValuesIn(kCases),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(ReportDescriptorFeature, OnlyTheConfigurationInterfaceHasFeatureReport4Of64Bytes) {
    struct Case {
        const char* hex;
        std::int64_t report4;
    };
    for (const Case c : {Case{kVendorConfig, 64}, Case{kBootKeyboard, 0}, Case{kNumberedKeyboard, 0},
                         Case{"06 0A FF 09 01 A1 01 85 04 75 08 95 20 B1 02 C0", 33}}) {
        Bytes d;
        ASSERT_TRUE(parseHexBytes(c.hex, d));
        EXPECT_EQ(featureReportSize(d, 4), c.report4) << c.hex;
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
        EXPECT_TRUE(s.valid || (s.input == 0 && s.output == 0 && s.feature == 0)) << entry.path();
        ++files;
    }
    EXPECT_GT(files, 0u);
}

}  // namespace
}  // namespace qx9
