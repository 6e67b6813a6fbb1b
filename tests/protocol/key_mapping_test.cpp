// Key-mapping download: one 4-byte record per key slot, nine data reports.
#include <gtest/gtest.h>

#include "layout/key_maps.h"
#include "protocol/key_mapping.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

using protocol::buildKeyMappingBlock;

MacroInfo macro(std::int64_t id) { return {.macroId = id, .macroName = {}}; }

struct RecordCase {
    const char* name;
    std::vector<ProfileKey> keys;  // written in this order
    int slot;                      // the key's "key_index"
    const char* bytes;             // the record at 4 × slot
};

// Key codes used below and their slots: a 4 → 56, escape 41 → 1, f1 58 → 2, fn 175 → 96,
// rightArrow 79 → 102, pageDown 78 → 121, backslash 49 → 67.
const RecordCase kRecords[] = {
    {"KeyAToB", {profileKey(4, kMacroTypeKey, 5)}, 56, "02 00 05 00"},
    {"LoneLeftShift", {profileKey(4, kMacroTypeKey, 225)}, 56, "02 02 00 00"},
    {"LoneRightWin", {profileKey(4, kMacroTypeKey, 231)}, 56, "02 80 00 00"},
    {"ShiftPlus1", {profileKey(4, kMacroTypeKey, 30, 225)}, 56, "02 02 1E 00"},
    {"ModifierOnModifier", {profileKey(4, kMacroTypeKey, 224, 226)}, 56, "02 04 01 00"},
    {"ConsumerPC", {profileKey(41, kMacroTypeKey, 500)}, 1, "03 94 01 00"},
    {"ConsumerWebHome", {profileKey(41, kMacroTypeKey, 511)}, 1, "03 23 02 00"},
    {"ConsumerWebForeward", {profileKey(41, kMacroTypeKey, 515)}, 1, "03 25 02 00"},
    {"ConsumerWebSearch", {profileKey(41, kMacroTypeKey, 517)}, 1, "03 21 02 00"},
    {"ConsumerPastTheTable", {profileKey(41, kMacroTypeKey, 518)}, 1, "03 00 00 00"},
    {"DisabledEscape", {profileKey(41, kMacroTypeDisabled, 1)}, 1, "05 03 00 00"},
    {"MouseLeft", {profileKey(58, kMacroTypeMouse, 1)}, 2, "01 01 01 00"},
    {"MouseRight", {profileKey(58, kMacroTypeMouse, 2)}, 2, "01 01 02 00"},
    {"MouseMiddle", {profileKey(58, kMacroTypeMouse, 3)}, 2, "01 01 04 00"},
    {"MouseDoubleClickAsMask3", {profileKey(58, kMacroTypeMouse, 4)}, 2, "01 01 03 00"},
    {"MouseScrollUp", {profileKey(58, kMacroTypeMouse, 5)}, 2, "01 03 01 00"},
    {"MouseScrollDown", {profileKey(58, kMacroTypeMouse, 6)}, 2, "01 03 FF 00"},
    {"MouseButton4", {profileKey(58, kMacroTypeMouse, 7)}, 2, "01 01 08 00"},
    {"MouseButton5", {profileKey(58, kMacroTypeMouse, 8)}, 2, "01 01 10 00"},
    {"MouseUnknown", {profileKey(58, kMacroTypeMouse, 9)}, 2, "01 00 00 00"},
    {"MediaPlayPause", {profileKey(175, kMacroTypeMultimedia, 1)}, 96, "03 CD 00 00"},
    {"MediaStop", {profileKey(175, kMacroTypeMultimedia, 2)}, 96, "03 B7 00 00"},
    {"MediaPrevious", {profileKey(175, kMacroTypeMultimedia, 3)}, 96, "03 B6 00 00"},
    {"MediaNext", {profileKey(175, kMacroTypeMultimedia, 4)}, 96, "03 B5 00 00"},
    {"MediaVolumeUp", {profileKey(175, kMacroTypeMultimedia, 5)}, 96, "03 E9 00 00"},
    {"MediaVolumeDown", {profileKey(175, kMacroTypeMultimedia, 6)}, 96, "03 EA 00 00"},
    {"MediaMute", {profileKey(175, kMacroTypeMultimedia, 7)}, 96, "03 E2 00 00"},
    {"MediaUnknown", {profileKey(175, kMacroTypeMultimedia, 8)}, 96, "03 00 00 00"},
    {"MacBrighter", {profileKey(79, kMacroTypeMacShortcut, 1)}, 102, "02 00 48 00"},
    {"MacDimmer", {profileKey(79, kMacroTypeMacShortcut, 2)}, 102, "02 00 47 00"},
    {"MacMissionControl", {profileKey(79, kMacroTypeMacShortcut, 3)}, 102, "02 10 52 00"},
    {"MacCopy", {profileKey(79, kMacroTypeMacShortcut, 4)}, 102, "02 08 06 00"},
    {"MacPaste", {profileKey(79, kMacroTypeMacShortcut, 5)}, 102, "02 08 19 00"},
    {"MacCut", {profileKey(79, kMacroTypeMacShortcut, 6)}, 102, "02 08 1B 00"},
    {"MacUnknown", {profileKey(79, kMacroTypeMacShortcut, 7)}, 102, "02 00 00 00"},
    {"MacroThirdInList", {profileKey(78, kMacroTypeMacro, 12, 1, 3)}, 121, "06 02 01 03"},
    {"MacroFirstInList", {profileKey(78, kMacroTypeMacro, 7, 2, 255)}, 121, "06 00 02 FF"},
    {"MacroDeleted", {profileKey(78, kMacroTypeMacro, 99, 1, 3)}, 121, "00 00 00 00"},
    {"CombinationCtrlAltDelete", {profileKey(49, kMacroTypeCombination, 224, 226, 76)}, 67, "07 01 04 4C"},
    {"CombinationTwoKeys", {profileKey(49, kMacroTypeCombination, 229, 4, 0)}, 67, "07 20 04 00"},
    {"DefaultFunction", {profileKey(49, kMacroTypeDefault, 49)}, 67, "00 00 00 00"},
    {"UnknownType", {profileKey(49, 5, 3)}, 67, "00 00 00 00"},
    // A later record overwrites only the bytes it writes; a macro binding without its macro none.
    {"KeyOverDisabled", {profileKey(41, kMacroTypeDisabled, 1), profileKey(41, kMacroTypeKey, 5)}, 1, "02 00 05 00"},
    {"DisabledOverMouse", {profileKey(41, kMacroTypeMouse, 6), profileKey(41, kMacroTypeDisabled, 1)}, 1, "05 03 FF 00"},
    {"KeyOverCombination", {profileKey(41, kMacroTypeCombination, 1, 2, 3), profileKey(41, kMacroTypeKey, 5)}, 1, "02 00 05 03"},
    {"DeletedMacroOverKey", {profileKey(41, kMacroTypeKey, 5), profileKey(41, kMacroTypeMacro, 99)}, 1, "02 00 05 00"},
};

TEST(KeyMappingBlock, EachRecordLandsInItsSlotAndNowhereElse) {
    installKB108KMaps();
    for (const RecordCase& c : kRecords) {
        const auto block = buildKeyMappingBlock({c.keys, {macro(7), macro(9), macro(12)}});
        Bytes expected = sparse({{574, 0xAA}, {575, 0x55}}, 780);
        put(expected, 4 * c.slot, c.bytes);
        EXPECT_EQ(Bytes(block.begin(), block.end()), expected) << c.name;
    }
}

// An empty profile's base layer, then its Fn layer under header 27.
TEST_F(WireFixture, KeyMappingOfAnEmptyProfileOnEachLayer) {
    for (const auto& [layer, header] : {std::pair{0, "04 11 00 00 00 00 00 00 09"}, {1, "04 27 00 00 00 00 00 00 09"}}) {
        clearWire();
        send(protocol::keyMappingTransaction(layer, {}));
        EXPECT_TRUE(wireMatches(recorder_->events, {Step::command("04 18"), Step::command(header),
                                                    Step::block(sparse({{574, 0xAA}, {575, 0x55}}, 576)),
                                                    Step::command("04 02")})) << layer;
    }
}

}  // namespace
}  // namespace qx9::test
