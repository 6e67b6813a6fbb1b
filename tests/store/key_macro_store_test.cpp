// Key assignments and macros.
#include <gtest/gtest.h>

#include "store_support.h"

namespace qx9::test {
namespace {

ProfileKey key(std::int64_t layer, std::int64_t keyValue, std::int64_t value,
               const char* desc = "X") {
    return {0, layer, 1, keyValue, kMacroTypeKey, value, value + 1, value + 2, desc};
}

TEST_F(StoreTest, ReassignedKeyGetsANewerRowAndLayersStaySeparate) {
    EXPECT_EQ(db_.addKeyProfile(key(0, 10, 5, "first")), 1);
    db_.addKeyProfile(key(0, 20, 6));
    db_.addKeyProfile(key(1, 10, 9, "fn"));
    EXPECT_EQ(db_.addKeyProfile(key(0, 10, 7, "second")), 4);

    // Appended after the caller's entry, in the order of the last assignment.
    std::vector<ProfileKey> base(1);
    EXPECT_TRUE(db_.queryKeysProfile(1, 0, base));
    const Rows stored = {"2|1|0|20|3|6|7|8|X", "4|1|0|10|3|7|8|9|second"};
    EXPECT_EQ(strs(base), (Rows{"0|0|0|0|0|0|0|0|", stored[0], stored[1]}));
    EXPECT_EQ(sql_.rows("SELECT * FROM t_keyprofile WHERE fnlayerId = 0"), stored);

    ProfileKey record = key(1, 77, 77, "caller's");
    EXPECT_FALSE(db_.queryKeyProfile(1, 1, 20, record));
    EXPECT_EQ(record.macroDesc, "caller's");
    EXPECT_TRUE(db_.queryKeyProfile(1, 1, 10, record));
    EXPECT_EQ(str(record), "3|1|1|10|3|9|10|11|fn");
}

TEST_F(StoreTest, ValueZeroClearsAndKeyZeroTouchesNothing) {
    db_.addKeyProfile(key(0, 10, 5));
    db_.addKeyProfile(key(1, 10, 5));
    EXPECT_EQ(db_.addKeyProfile(key(0, 10, 0)), 0);
    EXPECT_EQ(sql_.rows("SELECT fnlayerId FROM t_keyprofile"), Rows{"1"});

    sql_.exec(
        "INSERT INTO t_keyprofile (profId, fnlayerId, keyvalue, macroType, macroValue, "
        "macro2Value, macro3Value, macroDesc) VALUES (1, 0, 0, 3, 9, 0, 0, 'zero')");
    EXPECT_EQ(db_.addKeyProfile(key(0, 0, 0)), 0);
    EXPECT_EQ(db_.addKeyProfile(key(0, 0, 4)), 0);
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_keyprofile"), "2");
}

TEST_F(StoreTest, RefusedInsertLeavesTheKeyWithItsDefault) {
    db_.addKeyProfile(key(0, 10, 5));
    sql_.refuse("BEFORE INSERT ON t_keyprofile");
    EXPECT_EQ(db_.addKeyProfile(key(0, 10, 6)), 0);
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_keyprofile"), "0");
}

TEST_F(StoreTest, MacroHeaderDefaultsAndItsTwoWriters) {
    EXPECT_EQ(db_.addMacroProfile("Combo"), 1);
    EXPECT_EQ(sql_.rows("SELECT * FROM t_macro_data"), Rows{"1|1|0|0|Combo"});
    EXPECT_TRUE(db_.modifyMacroInfo({1, 3, 2, 50, "ignored"}));
    EXPECT_EQ(sql_.rows("SELECT * FROM t_macro_data"), Rows{"1|3|2|50|Combo"});
    EXPECT_TRUE(db_.updateMacroProfileName(1, "Renamed"));

    MacroInfo info;
    EXPECT_TRUE(db_.queryMacroInfo(1, info));
    EXPECT_EQ(str(info), "1|3|2|50|Renamed");
    EXPECT_FALSE(db_.queryMacroInfo(2, info));

    std::vector<MacroInfo> list(2);
    db_.addMacroProfile("Second");
    EXPECT_EQ(db_.queryAllMacroData(list), 4);
    EXPECT_EQ(str(list[3]), "2|1|0|0|Second");
}

TEST_F(StoreTest, EventsComeBackInInsertionOrder) {
    const std::int64_t a = db_.addMacroProfile("A");
    const std::int64_t b = db_.addMacroProfile("B");
    db_.addMacroRecord(event(a, kRecordKeyDown, 2, 4));
    db_.addMacroRecord(event(a, kRecordDelay, 0, 30));
    db_.addMacroRecord(event(b, kRecordMouseDown, 0, 1));
    db_.addMacroRecord(event(a, kRecordKeyUp, 1, 4));

    std::vector<RecordInfo> events;
    EXPECT_EQ(db_.queryMacroRecord(a, events), 3);
    const Rows expected = {"1|1|2|2|e2|4", "2|1|1|0|e0|30", "4|1|3|1|e1|4"};
    EXPECT_EQ(strs(events), expected);
    EXPECT_EQ(sql_.rows("SELECT * FROM t_macrorecord WHERE macro_id = 1"), expected);
    EXPECT_EQ(db_.getRecordCount(), 4);
}

TEST_F(StoreTest, AMacroGoesWithItsEventsOrNotAtAll) {
    for (const char* name : {"A", "B", "C"}) {
        db_.addMacroRecord(event(db_.addMacroProfile(name), kRecordDelay, 0, 10));
    }
    sql_.refuse("BEFORE DELETE ON t_macro_data WHEN OLD.macro_id = 1");
    sql_.refuse("BEFORE DELETE ON t_macrorecord WHEN OLD.macro_id = 2");

    EXPECT_FALSE(db_.deleteMacroProfile(1));
    EXPECT_FALSE(db_.deleteMacroProfile(2));
    EXPECT_TRUE(db_.deleteMacroProfile(3));
    EXPECT_EQ(sql_.rows("SELECT macro_id FROM t_macro_data"), (Rows{"1", "2"}));
    EXPECT_EQ(sql_.rows("SELECT macro_id FROM t_macrorecord"), (Rows{"1", "2"}));
    EXPECT_EQ(db_.countMacros(), 2);
}

}  // namespace
}  // namespace qx9::test
