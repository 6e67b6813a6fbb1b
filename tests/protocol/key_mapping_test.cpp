// Key-mapping download: one 4-byte record per key slot, nine data reports.
#include <gtest/gtest.h>

#include "layout/key_maps.h"
#include "protocol/key_mapping.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

using protocol::buildKeyMappingBlock;
using protocol::KeyMappingInput;

ProfileKey assign(std::int64_t key, std::int64_t type, std::int64_t v, std::int64_t v2 = 0,
                  std::int64_t v3 = 0) {
    ProfileKey k;
    k.keyValue = key;
    k.macroType = type;
    k.macroValue = v;
    k.macro2Value = v2;
    k.macro3Value = v3;
    return k;
}

MacroInfo macro(std::int64_t id) {
    MacroInfo m;
    m.macroId = id;
    return m;
}

struct RecordCase {
    const char* name;
    ProfileKey key;
    int slot;           // the key's "key_index"
    const char* bytes;  // the record at 4 × slot
};

void PrintTo(const RecordCase& c, std::ostream* os) { *os << c.name; }

// Key codes used below and their slots: a 4 → 56, escape 41 → 1, f1 58 → 2, fn 175 → 96,
// rightArrow 79 → 102, pageDown 78 → 121, backslash 49 → 67.
const RecordCase kRecords[] = {
    {"KeyAToB", assign(4, kMacroTypeKey, 5), 56, "02 00 05 00"},
    {"LoneLeftShift", assign(4, kMacroTypeKey, 225), 56, "02 02 00 00"},
    {"LoneRightWin", assign(4, kMacroTypeKey, 231), 56, "02 80 00 00"},
    {"ShiftPlus1", assign(4, kMacroTypeKey, 30, 225), 56, "02 02 1E 00"},
    {"ModifierOnModifier", assign(4, kMacroTypeKey, 224, 226), 56, "02 04 01 00"},
    {"ConsumerPC", assign(41, kMacroTypeKey, 500), 1, "03 94 01 00"},
    {"ConsumerWebHome", assign(41, kMacroTypeKey, 511), 1, "03 23 02 00"},
    {"ConsumerWebForeward", assign(41, kMacroTypeKey, 515), 1, "03 25 02 00"},
    {"ConsumerWebSearch", assign(41, kMacroTypeKey, 517), 1, "03 21 02 00"},
    {"ConsumerPastTheTable", assign(41, kMacroTypeKey, 518), 1, "03 00 00 00"},
    {"DisabledEscape", assign(41, kMacroTypeDisabled, 1), 1, "05 03 00 00"},
    {"MouseLeft", assign(58, kMacroTypeMouse, 1), 2, "01 01 01 00"},
    {"MouseRight", assign(58, kMacroTypeMouse, 2), 2, "01 01 02 00"},
    {"MouseMiddle", assign(58, kMacroTypeMouse, 3), 2, "01 01 04 00"},
    {"MouseDoubleClickAsMask3", assign(58, kMacroTypeMouse, 4), 2, "01 01 03 00"},
    {"MouseScrollUp", assign(58, kMacroTypeMouse, 5), 2, "01 03 01 00"},
    {"MouseScrollDown", assign(58, kMacroTypeMouse, 6), 2, "01 03 FF 00"},
    {"MouseButton4", assign(58, kMacroTypeMouse, 7), 2, "01 01 08 00"},
    {"MouseButton5", assign(58, kMacroTypeMouse, 8), 2, "01 01 10 00"},
    {"MouseUnknown", assign(58, kMacroTypeMouse, 9), 2, "01 00 00 00"},
    {"MediaPlayPause", assign(175, kMacroTypeMultimedia, 1), 96, "03 CD 00 00"},
    {"MediaStop", assign(175, kMacroTypeMultimedia, 2), 96, "03 B7 00 00"},
    {"MediaPrevious", assign(175, kMacroTypeMultimedia, 3), 96, "03 B6 00 00"},
    {"MediaNext", assign(175, kMacroTypeMultimedia, 4), 96, "03 B5 00 00"},
    {"MediaVolumeUp", assign(175, kMacroTypeMultimedia, 5), 96, "03 E9 00 00"},
    {"MediaVolumeDown", assign(175, kMacroTypeMultimedia, 6), 96, "03 EA 00 00"},
    {"MediaMute", assign(175, kMacroTypeMultimedia, 7), 96, "03 E2 00 00"},
    {"MediaUnknown", assign(175, kMacroTypeMultimedia, 8), 96, "03 00 00 00"},
    {"MacBrighter", assign(79, kMacroTypeMacShortcut, 1), 102, "02 00 48 00"},
    {"MacDimmer", assign(79, kMacroTypeMacShortcut, 2), 102, "02 00 47 00"},
    {"MacMissionControl", assign(79, kMacroTypeMacShortcut, 3), 102, "02 10 52 00"},
    {"MacCopy", assign(79, kMacroTypeMacShortcut, 4), 102, "02 08 06 00"},
    {"MacPaste", assign(79, kMacroTypeMacShortcut, 5), 102, "02 08 19 00"},
    {"MacCut", assign(79, kMacroTypeMacShortcut, 6), 102, "02 08 1B 00"},
    {"MacUnknown", assign(79, kMacroTypeMacShortcut, 7), 102, "02 00 00 00"},
    {"MacroThirdInList", assign(78, kMacroTypeMacro, 12, 1, 3), 121, "06 02 01 03"},
    {"MacroFirstInList", assign(78, kMacroTypeMacro, 7, 2, 255), 121, "06 00 02 FF"},
    {"MacroDeleted", assign(78, kMacroTypeMacro, 99, 1, 3), 121, "00 00 00 00"},
    {"CombinationCtrlAltDelete", assign(49, kMacroTypeCombination, 224, 226, 76), 67, "07 01 04 4C"},
    {"CombinationTwoKeys", assign(49, kMacroTypeCombination, 229, 4, 0), 67, "07 20 04 00"},
    {"DefaultFunction", assign(49, kMacroTypeDefault, 49), 67, "00 00 00 00"},
    {"UnknownType", assign(49, 5, 3), 67, "00 00 00 00"},
};

class KeyRecord : public WireFixture, public ::testing::WithParamInterface<RecordCase> {};

TEST_P(KeyRecord, LandsInItsSlotAndNowhereElse) {
    const RecordCase& c = GetParam();
    const KeyMappingInput input{{c.key}, {macro(7), macro(9), macro(12)}};
    const auto block = buildKeyMappingBlock(input);
    Bytes expected = sparse({{574, 0xAA}, {575, 0x55}}, 780);
    const Bytes rec = report(c.bytes);
    std::copy_n(rec.begin(), 4, expected.begin() + 4 * c.slot);
    EXPECT_EQ(Bytes(block.begin(), block.end()), expected);
}

INSTANTIATE_TEST_SUITE_P(Kinds, KeyRecord, ::testing::ValuesIn(kRecords),
                         [](const auto& info) { return std::string(info.param.name); });

TEST_F(WireFixture, KeyMappingOfAnEmptyProfile) {
    protocol::SendKeyMacroData(comm_.get(), 0, {});
    EXPECT_TRUE(wireMatches(recorder_->events, {
                                                   Step::command("04 18"),
                                                   Step::command("04 11 00 00 00 00 00 00 09"),
                                                   Step::block(sparse({{574, 0xAA}, {575, 0x55}}, 576)),
                                                   Step::command("04 02"),
                                               }));
    EXPECT_TRUE(keyRecords(keyboard_->memory(), 0).empty());
}

TEST_F(WireFixture, KeyMappingOfTheFnLayerUsesHeader27) {
    protocol::SendKeyMacroData(comm_.get(), 1, {{assign(41, kMacroTypeDisabled, 1)}, {}});
    ASSERT_GE(sets().size(), 2u);
    EXPECT_EQ(sets()[1], report("04 27 00 00 00 00 00 00 09"));
    EXPECT_FALSE(keyboard_->memory().keyTables[0].has_value());
    EXPECT_EQ(keyRecord(keyboard_->memory(), 1, 1), (std::array<std::uint8_t, 4>{5, 3, 0, 0}));
}

TEST_F(WireFixture, KeyMappingOfAFullProfileReachesTheKeyboard) {
    // Every key of the code map remapped to "b": each slot the keyboard has gets 02 00 05 00.
    KeyMappingInput input;
    for (const auto& e : G_KB_SuperKeyCodeMap.entries()) input.keys.push_back(assign(e.code, kMacroTypeKey, 5));
    protocol::SendKeyMacroData(comm_.get(), 0, input);
    const auto records = keyRecords(keyboard_->memory(), 0);
    EXPECT_EQ(records.size(), G_KB_SuperKeyCodeMap.size());
    for (const auto& r : records) EXPECT_EQ(r.bytes, (std::array<std::uint8_t, 4>{2, 0, 5, 0})) << r.slot;
    EXPECT_EQ(sets().size(), 2u + 9u + 1u);
}

TEST(KeyMappingBlock, FOneLandsInTheSecondSlotOfTheTopRow) {
    installKB108KMaps();
    const auto block = buildKeyMappingBlock({{assign(58, kMacroTypeDisabled, 1)}, {}});
    EXPECT_EQ(block[8], 5);
    EXPECT_EQ(block[9], 3);
}

TEST(KeyMappingBlock, LaterRecordOverwritesOnlyTheBytesItWrites) {
    installKB108KMaps();
    struct Case {
        std::vector<ProfileKey> keys;
        const char* bytes;
    };
    const Case cases[] = {
        {{assign(41, kMacroTypeDisabled, 1), assign(41, kMacroTypeKey, 5)}, "02 00 05 00"},
        {{assign(41, kMacroTypeMouse, 6), assign(41, kMacroTypeDisabled, 1)}, "05 03 FF 00"},
        {{assign(41, kMacroTypeCombination, 1, 2, 3), assign(41, kMacroTypeKey, 5)}, "02 00 05 03"},
        {{assign(41, kMacroTypeKey, 5), assign(41, kMacroTypeMacro, 99)}, "02 00 05 00"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.bytes);
        const auto block = buildKeyMappingBlock({c.keys, {}});
        const Bytes expected = report(c.bytes);
        EXPECT_EQ(Bytes(block.begin() + 4, block.begin() + 8), Bytes(expected.begin(), expected.begin() + 4));
    }
}

TEST(KeyMappingBlock, MacroBindingWithoutAnyMacroStaysZero) {
    installKB108KMaps();
    const auto block = buildKeyMappingBlock({{assign(41, kMacroTypeMacro, 1, 1, 1)}, {}});
    EXPECT_EQ(block[4], 0);
}

TEST(KeyMappingDeath, BrokenInvariantsStop) {
    installKB108KMaps();
    EXPECT_DEATH(buildKeyMappingBlock({{assign(70, kMacroTypeKey, 5)}, {}}), "key code 70");
    EXPECT_DEATH(buildKeyMappingBlock({{assign(41, kMacroTypeKey, 300)}, {}}), "key code");
    EXPECT_DEATH(buildKeyMappingBlock({{assign(41, kMacroTypeCombination, 4, 256, 0)}, {}}), "key code");
    EXPECT_DEATH(buildKeyMappingBlock({{assign(41, kMacroTypeMacro, 7, 1, 256)}, {macro(7)}}), "play count");
    std::vector<MacroInfo> many;
    for (int i = 0; i < 300; ++i) many.push_back(macro(i));
    EXPECT_DEATH(buildKeyMappingBlock({{assign(41, kMacroTypeMacro, 256, 1, 1)}, many}), "macro position");
}

TEST(KeyMappingDeath, NothingIsInForceBeforeALayoutInstallsTheMaps) {
    G_KB_SuperKeyCodeMap = {};
    EXPECT_DEATH(buildKeyMappingBlock({{assign(4, kMacroTypeKey, 5)}, {}}), "not in the key code map");
}

}  // namespace
}  // namespace qx9::test
