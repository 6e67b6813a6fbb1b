#pragma once

#include <gtest/gtest.h>

#include "hid/capture_state.h"
#include "layout/key_maps.h"
#include "support/scratch.h"

namespace qx9 {

// A capture state whose key classes are those of the 108-key keyboard, as after its connection,
// with the console captured.
class CaptureTest : public ::testing::Test {
protected:
    void SetUp() override { cs.setKeyClasses(KB_108K_SuperKeyNameMap()); }

    test::ConsoleCapture console_;
    CaptureState cs;
};

}  // namespace qx9
