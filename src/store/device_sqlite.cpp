#include "store/device_sqlite.h"

#include <system_error>

#include "common/console.h"
#include "store/data_location.h"
#include "store/schema.h"

namespace qx9 {

DeviceSQLite::DeviceSQLite(const std::string& fileName, std::string_view applicationId) {
    const std::optional<std::filesystem::path> directory = databaseDirectory(applicationId);
    if (!directory) return;  // no application id: nothing to open, nothing to say
    open(*directory, *directory / fileName);
}

DeviceSQLite DeviceSQLite::atPath(const std::filesystem::path& file) {
    DeviceSQLite db;
    db.open(file.parent_path(), file);
    return db;
}

DeviceSQLite::Transaction DeviceSQLite::beginTransaction() {
    return db_ ? Transaction(db_->begin()) : Transaction();
}

DeviceSQLite::Transaction DeviceSQLite::beginRead() const {
    return db_ ? Transaction(db_->begin(sqlite::Connection::Mode::Read)) : Transaction();
}

std::unique_ptr<DeviceSQLite> DeviceSQLite::openForReading(const std::filesystem::path& file) {
    std::unique_ptr<DeviceSQLite> db(new DeviceSQLite());
    db->file_ = file;
    try {
        db->db_.emplace(sqlite::Connection::open(file.string()));
    } catch (const sqlite::Error& e) {
        console() << "init: connect fail " << e.what() << '\n';
    }
    return db;
}

std::int64_t DeviceSQLite::dataVersion() const {
    if (!db_) return 0;
    try {
        auto row = db_->query("PRAGMA data_version");
        return row.step() ? row.integer(0) : 0;
    } catch (const sqlite::Error&) {
        return 0;
    }
}

std::unique_ptr<DeviceSQLite> DeviceSQLite::openFile(const std::filesystem::path& file) {
    if (file.empty()) return std::make_unique<DeviceSQLite>(kDeviceDatabaseFileName);
    return std::make_unique<DeviceSQLite>(atPath(file));
}

bool DeviceSQLite::readable() const {
    std::vector<ProfileData> profiles;
    return isConnected() && queryProfileList(profiles);
}

void DeviceSQLite::open(const std::filesystem::path& directory, const std::filesystem::path& file) {
    namespace fs = std::filesystem;
    db_.reset();
    file_ = file;
    if (!directory.empty()) {
        // The folders this creates are the user's alone, whatever the umask: recorded macros
        // are keystrokes. Folders that exist already are left as they are.
        std::error_code ec;
        std::vector<fs::path> created;
        for (fs::path p = directory; !p.empty() && !fs::exists(p, ec); p = p.parent_path()) {
            created.push_back(p);
            if (p == p.parent_path()) break;
        }
        fs::create_directories(directory, ec);
        if (ec) {
            console() << "init: connect fail "
                      << "cannot create " << directory.string() << ": " << ec.message() << '\n';
            return;
        }
        for (const fs::path& p : created) fs::permissions(p, fs::perms::owner_all, fs::perm_options::replace, ec);
    }
    std::error_code ec;
    const bool newFile = !fs::exists(file, ec);
    try {
        db_.emplace(sqlite::Connection::open(file.string()));
    } catch (const sqlite::Error& e) {
        console() << "init: connect fail " << e.what() << '\n';
        return;
    }
    if (newFile) {
        fs::permissions(file, fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::replace, ec);
    }
    createTable();
    console() << "init: connect success\n";
}

void DeviceSQLite::createTable() {
    for (const schema::Table& table : schema::tables()) {
        if (!db_) continue;
        try {
            db_->run(schema::createStatement(table));
        } catch (const sqlite::Error& e) {
            // The tables after this one stay missing and no default data is written.
            console() << "createTable fail " << e.what() << '\n';
            return;
        }
    }
    initDBdata(1);
    console() << "createTable success\n";
}

void DeviceSQLite::dropTable() {
    for (const char* table : schema::dropOrder()) {
        if (!db_) continue;
        try {
            db_->run(std::string("DROP TABLE \"") + table + '"');
        } catch (const sqlite::Error& e) {
            console() << "dropTable table failed " << e.what() << '\n';
            return;
        }
    }
    console() << "dropTable  success\n";
}

}  // namespace qx9
