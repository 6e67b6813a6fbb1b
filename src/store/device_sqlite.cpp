#include "store/device_sqlite.h"

#include <fcntl.h>
#include <stdio.h>
#include <unistd.h>

#include <cerrno>
#include <system_error>

#include "common/console.h"
#include "store/data_location.h"
#include "store/schema.h"

namespace qx9 {

DeviceSQLite::DeviceSQLite(const std::string& fileName, std::string_view applicationId) {
    const std::optional<std::filesystem::path> directory = databaseDirectory(applicationId);
    if (!directory) return;  // no place for it: the file cannot be opened, which the front ends say
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

std::filesystem::path DeviceSQLite::fileFor(const std::filesystem::path& file) {
    if (!file.empty()) return file;
    const std::optional<std::filesystem::path> directory = databaseDirectory(kApplicationId);
    return directory ? *directory / kDeviceDatabaseFileName : std::filesystem::path();
}

std::unique_ptr<DeviceSQLite> DeviceSQLite::openFile(const std::filesystem::path& file) {
    if (file.empty()) return std::make_unique<DeviceSQLite>(kDeviceDatabaseFileName);
    return std::make_unique<DeviceSQLite>(atPath(file));
}

bool DeviceSQLite::readable() const {
    std::vector<ProfileData> profiles;
    return isConnected() && openProblem_ == StoreProblem::kNone && queryProfileList(profiles);
}

StoreProblem DeviceSQLite::problem() const {
    if (openProblem_ != StoreProblem::kNone) return openProblem_;
    if (!db_) return StoreProblem::kOther;
    const StoreProblem last = problemOf(db_->lastFailure());
    // A file opened read-only because of a full disk: a refused write is for that reason.
    return last == StoreProblem::kNotWritable && readOnlyCause_ != StoreProblem::kNone ? readOnlyCause_ : last;
}

bool DeviceSQLite::checkExistingFile() {
    std::size_t ours = 0;
    try {
        auto row = db_->query("SELECT name FROM sqlite_master WHERE type = 'table'");
        while (row.step()) {
            for (const schema::Table& table : schema::tables()) ours += row.text(0) == table.name;
        }
    } catch (const sqlite::Error& e) {
        openProblem_ = problemOf({e.code(), e.systemErrno()});
        console() << "init: connect fail " << e.what() << '\n';
        return false;
    }
    if (ours == 0) {
        openProblem_ = StoreProblem::kNotOurs;
        console() << "init: connect fail no table of this application in the file\n";
        return false;
    }
    db_->useWriteAheadLog();
    if (ours < schema::tables().size()) createTable();  // written by an earlier version
    return true;
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
            openProblem_ = problemOf({SQLITE_CANTOPEN, ec.value()});
            console() << "init: connect fail "
                      << "cannot create " << directory.string() << ": " << ec.message() << '\n';
            return;
        }
        for (const fs::path& p : created) fs::permissions(p, fs::perms::owner_all, fs::perm_options::replace, ec);
    }
    std::error_code ec;
    if (!fs::exists(file, ec) && !createFile()) return;
    if (fs::is_regular_file(file, ec) && fs::file_size(file, ec) == 0) {
        openProblem_ = StoreProblem::kNotOurs;  // never a file of ours: see createFile
        console() << "init: connect fail the file is empty\n";
        return;
    }
    if (!connect(file) || !checkExistingFile()) {
        // Where nothing can be written, the file may still be read (and exported), as unchanging.
        const StoreProblem cause = openProblem_;
        if (cause != StoreProblem::kDiskFull && cause != StoreProblem::kNotWritable) return;
        openProblem_ = StoreProblem::kNone;
        if (!connect(file, true) || !checkExistingFile()) {
            openProblem_ = cause;
            return;
        }
        readOnlyCause_ = cause;
    }
    console() << "init: connect success\n";
    if (readOnlyCause_ == StoreProblem::kNone) openHistory();
}

bool DeviceSQLite::connect(const std::filesystem::path& file, bool unchanging) {
    try {
        db_.emplace(unchanging ? sqlite::Connection::openUnchanging(file.string()) : sqlite::Connection::open(file.string()));
        return true;
    } catch (const sqlite::Error& e) {
        openProblem_ = problemOf({e.code(), e.systemErrno()});
        console() << "init: connect fail " << e.what() << '\n';
        return false;
    }
}

bool DeviceSQLite::createFile() {
    // The file is written complete under a name of this process's own and then put in place
    // without replacing anything: a program that starts at the same time finds either no file or
    // a whole one, never an empty file it would have to take for someone else's.
    namespace fs = std::filesystem;
    const fs::path draft = file_.string() + ".new-" + std::to_string(::getpid());
    std::error_code ec;
    if (!connect(draft)) return false;
    fs::permissions(draft, fs::perms::owner_read | fs::perms::owner_write, fs::perm_options::replace, ec);
    db_->useWriteAheadLog();
    createTable();
    const sqlite::Failure failure = db_->lastFailure();
    db_.reset();
    int placed = failure.code == SQLITE_OK ? ::renameat2(AT_FDCWD, draft.c_str(), AT_FDCWD, file_.c_str(), RENAME_NOREPLACE) : -1;
    if (placed != 0 && failure.code == SQLITE_OK && (errno == EINVAL || errno == ENOSYS)) {
        placed = ::link(draft.c_str(), file_.c_str());  // a file system without the no-replace rename
    }
    const int error = errno;
    fs::remove(draft, ec);
    if (placed == 0 || (failure.code == SQLITE_OK && error == EEXIST)) return true;  // or another's first start won
    openProblem_ = problemOf(failure.code != SQLITE_OK ? failure : sqlite::Failure{SQLITE_CANTOPEN, error});
    console() << "init: connect fail cannot create " << file_.string() << '\n';
    return false;
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
