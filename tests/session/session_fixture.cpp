#include "session/session_fixture.h"

#include <unistd.h>

#include "common/console.h"
#include "hid/device_access.h"
#include "i18n/language.h"

namespace qx9::test {

namespace {
int g_counter = 0;
}

SessionTest::SessionTest()
    : dir_(std::filesystem::temp_directory_path() /
           ("qx9-session-" + std::to_string(::getpid()) + "-" + std::to_string(++g_counter))),
      keyboard_(std::make_shared<VirtualQX9>()),
      recorder_(std::make_shared<WireRecorder>()) {
    std::filesystem::create_directories(dir_);
    dbPath_ = dir_ / "device.sqlite3";
    previousConsole_ = setConsoleStream(&console_);
    curLanguage = kLanguageSimplifiedChinese;
    SessionConfig config;
    config.databaseFile = dbPath_;
    config.pacer = recorder_.get();
    config.wire = recorder_;
    session_ = std::make_unique<KeyboardSession>(config, &events_);
}

SessionTest::~SessionTest() {
    session_.reset();
    setConsoleStream(previousConsole_);
    std::filesystem::remove_all(dir_);
}

namespace {

Notification deviceNotification(const char* name, const std::shared_ptr<VirtualQX9>& keyboard) {
    return Notification{name, HIDDeviceDictionary{{kDeviceKey, virtualQX9Record(keyboard)}}};
}

}  // namespace

void SessionTest::connect(const std::shared_ptr<VirtualQX9>& keyboard) {
    session_->device.deviceConnected(deviceNotification(kHIDDeviceConnected, keyboard));
}

void SessionTest::disconnect(const std::shared_ptr<VirtualQX9>& keyboard) {
    session_->device.deviceDisconnected(deviceNotification(kHIDDeviceDisconnected, keyboard));
}

std::vector<Bytes> SessionTest::sets() const {
    std::vector<Bytes> out;
    for (const auto& e : recorder_->events) {
        if (e.kind == WireEvent::Set) out.push_back(e.bytes);
    }
    return out;
}

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

std::string SessionTest::sql(const std::string& query) const {
    sqlite3* db = nullptr;
    std::string result;
    if (sqlite3_open_v2(dbPath_.c_str(), &db, SQLITE_OPEN_READONLY, nullptr) == SQLITE_OK) {
        sqlite3_stmt* st = nullptr;
        if (sqlite3_prepare_v2(db, query.c_str(), -1, &st, nullptr) == SQLITE_OK && sqlite3_step(st) == SQLITE_ROW) {
            const unsigned char* text = sqlite3_column_text(st, 0);
            result = text ? reinterpret_cast<const char*>(text) : "";
        }
        sqlite3_finalize(st);
    }
    sqlite3_close(db);
    return result;
}

ProfileKey keyRecord(std::int64_t key, std::int64_t type, std::int64_t v, std::int64_t v2, std::int64_t v3) {
    ProfileKey k;
    k.profId = 1;
    k.keyValue = key;
    k.macroType = type;
    k.macroValue = v;
    k.macro2Value = v2;
    k.macro3Value = v3;
    k.macroDesc = "x";
    return k;
}

}  // namespace qx9::test
