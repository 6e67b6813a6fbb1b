#pragma once

#include <gtest/gtest.h>

#include <chrono>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/bytes.h"
#include "hid/device_comm.h"
#include "virtual/virtual_qx9.h"
#include "protocol/transaction.h"
#include "sender/keyboard_sender.h"
#include "store/records.h"
#include "support/scratch.h"

namespace qx9::test {

// One step on the wire as the tests see it: a pause, a set or a get.
struct WireEvent {
    enum Kind { Pause, Set, Get } kind;
    Bytes bytes;               // set: what was sent; get: what was read
    bool ok = true;
    std::int64_t micros = 0;   // pause
    bool operator==(const WireEvent&) const = default;
};

// Records pauses and platform calls into one ordered list.
class WireRecorder final : public Pacer, public WireSink {
public:
    void pause(std::chrono::microseconds duration) override;
    void record(WireDirection direction, std::span<const std::uint8_t> bytes, bool ok) override;
    std::vector<WireEvent> events;
};

// Whitespace-separated hex bytes ("04 18 0A"); a malformed text fails the test.
Bytes hexBytes(std::string_view hex);
// A 64-byte report: the given bytes at the start, zero after them ("04 18").
Bytes report(const std::string& hexPrefix);
// A 64-byte report, zero except for (index, value) pairs.
Bytes sparse(std::initializer_list<std::pair<int, int>> bytes, std::size_t size = 64);
void put(Bytes& block, std::size_t offset, std::string_view hex);
std::vector<Bytes> setsOf(const std::vector<WireEvent>& events);

ProfileKey profileKey(std::int64_t key, std::int64_t type, std::int64_t value, std::int64_t value2 = 0,
                      std::int64_t value3 = 0);

// A virtual QX9 behind a transport whose pauses and calls are recorded and whose diagnostic
// console is captured. The key maps are installed.
class WireFixture : public ::testing::Test {
protected:
    WireFixture();

    std::vector<Bytes> sets() const;           // every SET, in order
    std::vector<WireEvent> calls() const;      // SET and GET, in order
    std::string consoleText() const { return console_.text(); }
    void clearWire() { recorder_->events.clear(); }
    // Runs a transaction on the keyboard (nothing when it is none).
    void send(const protocol::Transaction& transaction) { runTransaction(*comm_, transaction); }
    void send(const std::optional<protocol::Transaction>& transaction) {
        if (transaction) send(*transaction);
    }

    std::shared_ptr<VirtualQX9> keyboard_;
    std::shared_ptr<WireRecorder> recorder_;
    std::unique_ptr<DeviceComm> comm_;

private:
    ConsoleCapture console_;
};

// What a keyboard holds after it was sent `blocks` as the database file holds them now (the
// keyboard that a database describes).
VirtualQX9Memory keyboardOf(const std::string& databaseFile, const std::vector<BlockRequest>& blocks);

// The expected shape of a transaction on the wire, step by step.
struct Step {
    enum Kind { Command, Raw, Block, Pause } kind;
    Bytes bytes;  // command / raw: one 64-byte report; block: all reports back to back
    static Step command(const Bytes& b) { return {Command, b}; }
    static Step command(const std::string& hexPrefix) { return {Command, report(hexPrefix)}; }
    static Step raw(const Bytes& b) { return {Raw, b}; }
    static Step block(const Bytes& b) { return {Block, b}; }
    static Step pause() { return {Pause, {}}; }
};

// Checks the recorded events against the steps: a command is pause, SET, pause, GET (the
// keyboard's answer is the command with byte 3 = 0); a raw report is pause, SET; a block is
// pause, SET per report; a pause is a 5 ms pause of the builder itself. Reports the first difference.
::testing::AssertionResult wireMatches(const std::vector<WireEvent>& events,
                                       const std::vector<Step>& steps);

}  // namespace qx9::test
