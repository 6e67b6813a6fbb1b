#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include "i18n/language.h"
#include "session/keyboard_session.h"
#include "support/scratch.h"
#include "support/sql_value.h"
#include "support/wire_fixture.h"
#include "virtual/virtual_qx9_memory.h"

namespace qx9::test {

// Records what the session shows the user.
class RecordingEvents final : public SessionEvents {
public:
    void warning(const std::string& message, const std::string& informative) override {
        warnings.push_back(message + " | " + informative);
    }
    void notice(const std::string& text) override { notices.push_back(text); }
    void showKeyMenu() override { ++keyMenus; }
    void showCustomKeyDialog() override { ++dialogs; }
    std::vector<std::string> warnings, notices;
    int keyMenus = 0, dialogs = 0;
};

std::unique_ptr<KeyboardSession> openSession(const std::filesystem::path& databaseFile,
                                             const std::shared_ptr<WireRecorder>& recorder, RecordingEvents& events);
// The monitor's notification that `keyboard` arrived or left.
void connectKeyboard(KeyboardSession& session, const std::shared_ptr<VirtualQX9>& keyboard);
void disconnectKeyboard(KeyboardSession& session, const std::shared_ptr<VirtualQX9>& keyboard);

// A session on a database in a temporary directory and a virtual QX9 behind a recorded wire.
class SessionTest : public ::testing::Test {
protected:
    SessionTest();
    ~SessionTest() override;

    void connect(const std::shared_ptr<VirtualQX9>& keyboard) { connectKeyboard(*session_, keyboard); }
    void connect() { connect(keyboard_); }
    void disconnect(const std::shared_ptr<VirtualQX9>& keyboard) { disconnectKeyboard(*session_, keyboard); }

    // Command codes (byte 1) of the command reports set since the last clearWire, in order.
    std::vector<int> commandCodes() const;
    std::vector<Bytes> sets() const { return setsOf(recorder_->events); }
    void clearWire() { recorder_->events.clear(); }
    std::string sql(const std::string& query) const { return sqlValue(dbPath_, query); }

    TempDir dir_;
    ConsoleCapture console_;
    std::filesystem::path dbPath_;
    std::shared_ptr<VirtualQX9> keyboard_;
    std::shared_ptr<WireRecorder> recorder_;
    RecordingEvents events_;
    std::unique_ptr<KeyboardSession> session_;
};

// The same with the keyboard connected (English, as stored) and the wire cleared of that connection.
class ConnectedSessionTest : public SessionTest {
protected:
    ConnectedSessionTest() { connect(); clearWire(); }
};

}  // namespace qx9::test
