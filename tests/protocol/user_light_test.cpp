// Per-key colours and the per-key light mode.
#include <gtest/gtest.h>

#include "layout/key_maps.h"
#include "protocol/user_light.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

using protocol::buildKeyColourBlock;

UserLightLEDData led(std::int64_t key, std::int64_t rgb) { return {.key_value = key, .key_rgbvalue = rgb}; }

// Slots 0–122 prefilled [i 0 0 0], trailer at 574–575.
Bytes darkBlock(std::size_t size) {
    Bytes b(size, 0);
    for (int i = 0; i < 123; ++i) b[4 * i] = static_cast<std::uint8_t>(i);
    b[574] = 0xAA;
    b[575] = 0x55;
    return b;
}

// The per-key light mode: mode 0x80, colour FF 00 00, random on, brightness, speed and direction 0F.
std::vector<Step> perKeyMode() {
    return {Step::command("04 18"), Step::command("04 13 00 00 00 00 00 00 01"),
            Step::raw(report("80 FF 00 00 00 00 00 00 01 0F 0F 0F 00 00 AA 55")), Step::command("04 02"),
            Step::command("04 F0")};
}

TEST_F(WireFixture, PerKeyModeSwitch) {
    send(protocol::userLightModeTransaction());
    EXPECT_TRUE(wireMatches(recorder_->events, perKeyMode()));

    // An empty set darkens every key, then switches to the per-key mode.
    clearWire();
    send(protocol::userLightLedTransaction({}));
    std::vector<Step> steps = {Step::command("04 18"), Step::command("04 23 00 00 00 00 00 00 09"),
                               Step::block(darkBlock(576)), Step::command("04 02"), Step::command("04 F0")};
    for (const Step& step : perKeyMode()) steps.push_back(step);
    EXPECT_TRUE(wireMatches(recorder_->events, steps));
}

TEST(KeyColourBlock, SlotsAndOverwrites) {
    installKB108KMaps();
    struct Case {
        const char* name;
        std::vector<UserLightLEDData> leds;
        std::size_t offset;
        const char* bytes;
    };
    const Case cases[] = {
        {"F4", {led(61, 0x12ABEF)}, 20, "05 12 AB EF"},
        {"BlackIsDark", {led(61, 0)}, 20, "05 00 00 00"},
        {"LaterWins", {led(61, 0x111111), led(61, 0x222222)}, 20, "05 22 22 22"},
        {"Escape", {led(41, 0xFFFFFF)}, 4, "01 FF FF FF"},
        {"PageDownLast", {led(78, 0x010203)}, 484, "79 01 02 03"},
    };
    for (const Case& c : cases) {
        const auto block = buildKeyColourBlock(c.leds);
        Bytes expected = darkBlock(780);
        put(expected, c.offset, c.bytes);
        EXPECT_EQ(Bytes(block.begin(), block.end()), expected) << c.name;
    }
}

TEST(KeyColourBlock, LightIndexesPastTheQX9Keys) {
    // A model whose code map puts keys at light indexes 130, 143 and 150.
    G_KB_SuperKeyCodeMap = KeyCodeMap({{1000, "k130", "", "", {}, 0, 130, 130, 0, 0, 0},
                                       {1001, "k143", "", "", {}, 0, 143, 143, 0, 0, 0},
                                       {1002, "k150", "", "", {}, 0, 150, 150, 0, 0, 0}});
    const auto block = buildKeyColourBlock({led(1000, 0x0A0B0C), led(1001, 0x0D0E0F), led(1002, 0x102030)});
    // 130 is sent in the ninth report; 143's green and blue give way to the trailer; 150 lies
    // beyond the nine reports.
    EXPECT_EQ(Bytes(block.begin() + 520, block.begin() + 524), (Bytes{130, 0x0A, 0x0B, 0x0C}));
    EXPECT_EQ(Bytes(block.begin() + 572, block.begin() + 576), (Bytes{143, 0x0D, 0xAA, 0x55}));
    EXPECT_EQ(Bytes(block.begin() + 600, block.begin() + 604), (Bytes{150, 0x10, 0x20, 0x30}));
}

}  // namespace
}  // namespace qx9::test
