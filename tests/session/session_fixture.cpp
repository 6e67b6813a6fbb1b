#include "session/session_fixture.h"

#include "hid/device_access.h"

namespace qx9::test {

std::unique_ptr<KeyboardSession> openSession(const std::filesystem::path& databaseFile,
                                             const std::shared_ptr<WireRecorder>& recorder, RecordingEvents& events) {
    SessionConfig config{.databaseFile = databaseFile, .pacer = recorder.get(), .wire = recorder, .postToMain = {}};
    return std::make_unique<KeyboardSession>(config, &events);
}

void connectKeyboard(KeyboardSession& session, const std::shared_ptr<VirtualQX9>& keyboard) {
    session.device.deviceConnected(virtualQX9Record(keyboard));
}

void disconnectKeyboard(KeyboardSession& session, const std::shared_ptr<VirtualQX9>& keyboard) {
    session.device.deviceDisconnected(virtualQX9Record(keyboard));
}

SessionTest::SessionTest()
    : dbPath_(dir_ / "device.sqlite3"), keyboard_(std::make_shared<VirtualQX9>()),
      recorder_(std::make_shared<WireRecorder>()) {
    curLanguage = kLanguageSimplifiedChinese;
    session_ = openSession(dbPath_, recorder_, events_);
}

SessionTest::~SessionTest() { session_.reset(); }

std::vector<int> SessionTest::commandCodes() const {
    // A command report is a SET that the next event (after its pause) reads back.
    std::vector<int> codes;
    const auto& ev = recorder_->events;
    for (std::size_t i = 0; i < ev.size(); ++i) {
        if (ev[i].kind != WireEvent::Set) continue;
        std::size_t j = i + 1;
        while (j < ev.size() && ev[j].kind == WireEvent::Pause) ++j;
        if (j < ev.size() && ev[j].kind == WireEvent::Get) codes.push_back(ev[i].bytes[1]);
    }
    return codes;
}

}  // namespace qx9::test
