// Lights off without storing: the keyboard goes dark and comes back with what the database holds.
#include <gtest/gtest.h>

#include "ops/key_assignment.h"
#include "ops/lighting.h"
#include "sender/lights_off_sender.h"
#include "support/wire_fixture.h"
#include "virtual/virtual_qx9_memory.h"

namespace qx9::test {
namespace {

class LightsOffTest : public WireFixture {
protected:
    LightsOffTest() : db_(DeviceSQLite::atPath(dir_ / "db.sqlite3")), direct_(*comm_, db_), sender_(direct_) {}
    int shownMode() {
        const auto light = decodeLightMode(keyboard_->memory());
        return light ? light->mode : -1;
    }
    void choose(std::int64_t effect) {
        LightRecord record{};
        ASSERT_TRUE(ops::selectEffect({db_, &sender_}, 1, effect, record));
    }

    TempDir dir_;
    DeviceSQLite db_;
    DirectSender direct_;
    LightsOffSender sender_;
};

TEST_F(LightsOffTest, DarkWhileAskedAndTheStoredLightingAfter) {
    choose(9);
    ASSERT_EQ(shownMode(), 9);
    sender_.setDark(true, 1);
    EXPECT_EQ(shownMode(), 0);
    // While dark: an effect chosen is stored and kept back; a key map goes out as ever.
    clearWire();
    choose(4);
    EXPECT_TRUE(sets().empty());
    EXPECT_EQ(ops::selectedEffect(db_), 4);
    ASSERT_TRUE(ops::assignKey({db_, &sender_}, 1, 0, 4, ops::disabledFunction()));
    EXPECT_FALSE(sets().empty());
    EXPECT_EQ(shownMode(), 0);
    // Light again: the effect chosen meanwhile; asking twice sends nothing more.
    sender_.setDark(false, 1);
    EXPECT_EQ(shownMode(), 4);
    clearWire();
    sender_.setDark(false, 1);
    EXPECT_TRUE(sets().empty());
    // Dark and light again with nothing chosen meanwhile: the stored effect.
    sender_.setDark(true, 1);
    sender_.setDark(false, 1);
    EXPECT_EQ(shownMode(), 4);
}

}  // namespace
}  // namespace qx9::test
