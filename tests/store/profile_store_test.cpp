// Profiles and configuration values.
#include <gtest/gtest.h>

#include "store_support.h"

namespace qx9::test {
namespace {

TEST_F(StoreTest, ProfileListAppendsInIdOrder) {
    EXPECT_EQ(db_.addProfile("Two"), 2);
    EXPECT_EQ(db_.addProfile("x'); DROP TABLE t_profile; --"), 3);
    EXPECT_TRUE(db_.updateProfileName(2, "Game \"quoted\""));

    std::vector<ProfileData> list = {{99, "already there"}};
    EXPECT_TRUE(db_.queryProfileList(list));
    Rows got;
    for (const ProfileData& p : list) got.push_back(std::to_string(p.profId) + "|" + p.name);
    const Rows stored = {"1|Configuration File 1", "2|Game \"quoted\"",
                         "3|x'); DROP TABLE t_profile; --"};
    EXPECT_EQ(got, (Rows{"99|already there", stored[0], stored[1], stored[2]}));
    EXPECT_EQ(sql_.rows("SELECT * FROM t_profile"), stored);
}

TEST_F(StoreTest, DeletingTheLastProfileHandsItsIdAndRowsToTheNextOne) {
    ASSERT_EQ(db_.addProfile("Two"), 2);
    db_.writeLightProfile(2);
    db_.selectLightMode(2, 6);
    db_.addKeyProfile({0, 0, 2, 4, kMacroTypeKey, 5, 0, 0, "B"});

    EXPECT_TRUE(db_.deleteProfile(2));
    EXPECT_TRUE(db_.deleteProfile(42));  // no such profile: still a success
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_lightdata WHERE profId = 2"), "21");

    EXPECT_EQ(db_.addProfile("Newcomer"), 2);
    std::vector<ProfileKey> keys;
    db_.queryKeysProfile(2, 0, keys);
    EXPECT_EQ(strs(keys), Rows{"1|2|0|4|3|5|0|0|B"});
    EXPECT_EQ(db_.getLightModeSelectIndex(2), 6);
}

TEST_F(StoreTest, ConfigValuesByProfileAndKey) {
    EXPECT_TRUE(db_.updateConfigData(1, "language", "2052"));
    EXPECT_EQ(db_.getConfigData(1, "language"), "2052");
    EXPECT_TRUE(db_.writeConfigData(2, "onlytwo", "5"));
    EXPECT_EQ(db_.getConfigData(1, "onlytwo"), "");  // only under another profile

    EXPECT_TRUE(db_.updateConfigData(1, "missing", "1"));  // never adds a key
    EXPECT_EQ(sql_.value("SELECT count(*) FROM t_configdata WHERE key = 'missing'"), "0");

    // Duplicates: every one changes, the first one is read.
    EXPECT_TRUE(db_.writeConfigData(3, "dup", "a"));
    EXPECT_TRUE(db_.writeConfigData(3, "dup", "b"));
    EXPECT_EQ(db_.getConfigData(3, "dup"), "a");
    EXPECT_TRUE(db_.updateConfigData(3, "dup", "c"));
    EXPECT_EQ(sql_.rows("SELECT value FROM t_configdata WHERE key = 'dup'"), (Rows{"c", "c"}));
}

}  // namespace
}  // namespace qx9::test
