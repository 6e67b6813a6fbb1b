// The window's sender: requests in the order of the changes, a request for a waiting block
// taking its place at the end, every block built from the database when it goes, results
// reported, and closing bounded. The keyboard is held from the test to make requests wait.
#include <gtest/gtest.h>

#include <mutex>
#include <thread>

#include "virtual/virtual_qx9_memory.h"
#include "layout/key_maps.h"
#include "ops/lighting.h"
#include "ops/user_lights.h"
#include "sender/queued_sender.h"
#include "support/wire_fixture.h"

namespace qx9::test {
namespace {

using namespace std::chrono_literals;

class QueuedSenderTest : public ::testing::Test {
protected:
    QueuedSenderTest() {
        installKB108KMaps();
        QueuedSender::Events events;
        events.finished = [this](const BlockRequest& request, const SendResult& result) {
            std::lock_guard lock(mutex_);
            results_.emplace_back(request.kind, result.status);
        };
        sender_ = std::make_unique<QueuedSender>(file_, recorder_.get(), recorder_, events);
        sender_->setDevice(keyboard_);
    }

    // The header of each transaction on the wire, in order (0x11 key map, 0x13 light mode, …).
    std::vector<int> headers() const {
        std::vector<int> codes;
        for (const Bytes& b : setsOf(recorder_->events)) {
            if (b[0] == 0x04 && b[1] != 0x18 && b[1] != 0x19 && b[1] != 0x02 && b[1] != 0xF0) codes.push_back(b[1]);
        }
        return codes;
    }
    std::vector<std::pair<BlockRequest::Kind, SendResult::Status>> results() {
        std::lock_guard lock(mutex_);
        return results_;
    }

    TempDir dir_;
    ConsoleCapture quiet_;
    std::filesystem::path file_ = dir_ / "sender.sqlite3";
    DeviceSQLite db_ = DeviceSQLite::atPath(file_);
    std::shared_ptr<VirtualQX9> keyboard_ = std::make_shared<VirtualQX9>();
    std::shared_ptr<WireRecorder> recorder_ = std::make_shared<WireRecorder>();
    std::mutex mutex_;
    std::vector<std::pair<BlockRequest::Kind, SendResult::Status>> results_;
    std::unique_ptr<QueuedSender> sender_;  // the first to go: its thread reports into the members above
};

TEST_F(QueuedSenderTest, RequestsGoInOrderAndARepeatedOneTakesTheLastPlace) {
    ASSERT_TRUE(keyboard_->lockExclusive(1s));  // another program's transaction
    EXPECT_EQ(sender_->send({SendLightModeData(1, 1)}).status, SendResult::kQueued);
    sender_->send({SendKeyMacroData(1, 0), SendUserLightLedData(1)});
    sender_->send({SendKeyMacroData(1, 0)});
    sender_->send({SendSystemFunctionData()});
    EXPECT_FALSE(sender_->finish(50ms));  // still waiting for the keyboard
    keyboard_->unlock();
    ASSERT_TRUE(sender_->finish(10s));
    // The per-key colours carry the per-key light mode after them.
    EXPECT_EQ(headers(), (std::vector<int>{0x13, 0x23, 0x13, 0x11, 0x17}));
    EXPECT_EQ(results().size(), 4u);
}

// Twenty changes while a transaction is under way make one more transaction, built from what
// the database holds when it goes.
TEST_F(QueuedSenderTest, ChangesWhileOneIsSentMergeAndTheLastValueIsSent) {
    LightRecord record;
    ASSERT_TRUE(ops::selectEffect({db_}, 1, ops::kEffectRolling, record));
    ASSERT_TRUE(keyboard_->lockExclusive(1s));
    for (int step = 0; step <= 15; ++step) {
        ASSERT_TRUE(ops::setBrightness({db_}, 1, 1, step));
        sender_->send({SendLightModeData(1, 1)});
        // The first is taken at once and waits for the keyboard; the others wait in the queue.
        while (step == 0 && sender_->waiting() > 0) std::this_thread::sleep_for(1ms);
    }
    keyboard_->unlock();
    ASSERT_TRUE(sender_->finish(10s));
    EXPECT_EQ(headers(), (std::vector<int>{0x13, 0x13}));
    EXPECT_EQ(decodeLightMode(keyboard_->memory())->brightness, 15);
    EXPECT_EQ(decodeLightMode(keyboard_->memory())->mode, ops::kEffectRolling);
}

}  // namespace
}  // namespace qx9::test
