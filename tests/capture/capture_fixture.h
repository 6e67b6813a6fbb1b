#pragma once

#include <gtest/gtest.h>

#include <sstream>

#include "common/console.h"
#include "hid/capture_state.h"
#include "layout/key_maps.h"

namespace qx9 {

// A capture state whose key classes are those of the 108-key keyboard, as after its connection,
// with the console captured.
class CaptureTest : public ::testing::Test {
protected:
    void SetUp() override {
        previous_ = setConsoleStream(&console_);
        cs.setKeyClasses(KB_108K_SuperKeyNameMap());
    }
    void TearDown() override { setConsoleStream(previous_); }

    CaptureState cs;
    std::ostringstream console_;
    std::ostream* previous_ = nullptr;
};

}  // namespace qx9
