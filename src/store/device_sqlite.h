#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "common/app_id.h"
#include "store/change_session.h"
#include "store/configuration.h"
#include "store/history.h"
#include "store/records.h"
#include "store/sqlite_handle.h"
#include "store/store_problem.h"

namespace qx9 {

// The file the application keeps everything in, inside its data directory.
inline constexpr const char* kDeviceDatabaseFileName = "device_keyboard_81k_v2.sqlite3";

// The local database: the only record of what the keyboard holds.
//
// Database errors never reach the caller as errors. Every operation turns them into its own
// "nothing" result (0, false, the empty string, an unchanged list); only opening, table
// creation, default data and the profile reset print a console line. Without a connection
// (the file could not be opened) every operation does nothing and reports that it did not
// (false, 0).
//
// Every operation runs in the caller's transaction when there is one (beginTransaction), and
// those that write several rows as one (replaceConfiguration, replaceMacroRecords, saveMacro,
// deleteMacroProfile) in a level of their own inside it: when one of them fails, its own writes
// are undone and the caller's stay, for the caller to commit or not.
class DeviceSQLite {
public:
    // Groups the operations called during its life into one transaction: none of their writes
    // reaches the file before commit(), and all of them are undone when the object ends
    // uncommitted. Inside another Transaction it is a level of that one. While the transaction
    // could not begin (the file stayed locked by another process for about 2 s, a read-only
    // file) or was rolled back by SQLite itself, every operation fails with its "nothing"
    // result. Objects end in the reverse order of their creation, before the DeviceSQLite.
    class Transaction {
    public:
        // False without a connection (nothing was written), when the transaction could not
        // begin or was lost, or when SQLite refused the commit; the writes are then undone.
        bool commit() { return guard_ && guard_->commit(); }
        // Begun and not lost: the operations can still succeed.
        bool active() const { return guard_ && guard_->active(); }
        // For a transaction begun with beginStep: records what it changed as one step of the
        // history (nothing when it changed nothing, or without a history), then commits. Both or
        // neither reach the files.
        bool commitStep(const HistoryStep& step);

    private:
        friend class DeviceSQLite;
        Transaction() = default;
        explicit Transaction(sqlite::Connection::Transaction guard) : guard_(std::move(guard)) {}

        std::optional<sqlite::Connection::Transaction> guard_;
        std::unique_ptr<sqlite::ChangeSession> session_;  // a step's: what it changes
        const sqlite::Connection* connection_ = nullptr;
    };

    // Without a connection: a guard that does nothing, and whose commit() is false.
    Transaction beginTransaction();
    // A write transaction whose changes become one step of the history (commitStep). Inside
    // another transaction it is a level of that one, and the outer one's step holds them.
    Transaction beginStep();
    // One snapshot of the file for several reads (BEGIN): what other programs commit meanwhile
    // is not seen until it ends. Never writes.
    Transaction beginRead() const;

    // Opens <data directory>/<applicationId>/db/<fileName>, creating directories and file as
    // needed; a new file gets the tables and the first-start data. An existing file is written
    // only when it holds tables of this application (a missing one is then created): an empty
    // file or another program's database is left untouched and is not readable(). Never fails to the
    // caller: on failure the object has no connection. With an empty application id nothing is
    // created and there is no connection.
    explicit DeviceSQLite(const std::string& fileName,
                          std::string_view applicationId = kApplicationId);

    // The same for a file at an explicit path (tests, qx9ctl).
    static DeviceSQLite atPath(const std::filesystem::path& file);
    // `file`, or the application's own file in its data directory when `file` is empty.
    static std::unique_ptr<DeviceSQLite> openFile(const std::filesystem::path& file);
    // The file openFile opens for `file`: itself, or for none the application's own (empty when
    // the user has no data directory).
    static std::filesystem::path fileFor(const std::filesystem::path& file);
    // A second connection to a file that another connection opened, for reading: nothing is
    // created and nothing written.
    static std::unique_ptr<DeviceSQLite> openForReading(const std::filesystem::path& file);

    // A number that changes when another connection (another program, or another connection of
    // this one) commits to the file; 0 without a connection.
    std::int64_t dataVersion() const;

    DeviceSQLite(DeviceSQLite&&) noexcept = default;
    DeviceSQLite& operator=(DeviceSQLite&&) noexcept = default;

    bool isConnected() const { return db_.has_value(); }
    // The file this object opened or tried to open, for messages. Everything read or written goes
    // through this object's connection, so that its transactions cover it.
    const std::filesystem::path& filePath() const { return file_; }
    // Whether the file could be opened and its profiles read: a file that cannot is damaged, not
    // a database, not this application's, or in use, and nothing read from it may reach the
    // keyboard.
    bool readable() const;
    // Why the file could not be opened or read, or why the last transaction's write failed.
    StoreProblem problem() const;

    // The history of user changes (history.h)
    // Whether the history file is open beside the database.
    bool hasHistory() const { return historyOpen_; }
    // The steps, newest first.
    std::vector<HistoryStep> readHistory() const;
    // The step an undo would take back (the newest in force) and the one a redo would make again
    // (the oldest undone); none when there is none.
    std::optional<HistoryStep> stepToUndo() const;
    std::optional<HistoryStep> stepToRedo() const;
    // Takes back or makes again that step, in the caller's transaction (the history's mark
    // included); `step` is the step concerned.
    StepResult undoStep(HistoryStep& step);
    StepResult redoStep(HistoryStep& step);
    // Deletes every row of the tables dropTable drops, one by one, so that a step records them.
    void clearTables();

    // Tables
    void createTable();
    void dropTable();

    // Default data and reset
    void initDBdata(std::int64_t profile);
    bool writeLightProfile(std::int64_t profile);
    void writeConfigInfo(std::int64_t profile);
    void resetProfile(std::int64_t profile);

    // Profiles and configuration values
    std::int64_t addProfile(const std::string& profile_name);
    bool deleteProfile(std::int64_t profile);
    bool updateProfileName(std::int64_t profile, const std::string& profile_name);
    bool queryProfileList(std::vector<ProfileData>& dataArray) const;
    bool writeConfigData(std::int64_t profile, const std::string& keyValue,
                         const std::string& newvalue);
    bool updateConfigData(std::int64_t profile, const std::string& keyValue,
                          const std::string& newvalue);
    std::string getConfigData(std::int64_t profile, const std::string& keyValue) const;
    // Whether the value has a row (an empty value and a missing one read the same).
    bool hasConfigData(std::int64_t profile, const std::string& keyValue) const;

    // Key assignments
    std::int64_t addKeyProfile(const ProfileKey& data);
    bool queryKeysProfile(std::int64_t profile, std::int64_t fnlayer,
                          std::vector<ProfileKey>& dataArray) const;
    bool queryKeyProfile(std::int64_t profile, std::int64_t fnlayer, std::int64_t keyValue,
                         ProfileKey& data) const;

    // Macros (global, not per profile)
    std::int64_t addMacroProfile(const std::string& macro_name);
    bool updateMacroProfileName(std::int64_t macorId, const std::string& macro_name);
    bool modifyMacroInfo(const MacroInfo& info);
    bool queryMacroInfo(std::int64_t macorId, MacroInfo& info) const;
    std::int64_t queryAllMacroData(std::vector<MacroInfo>& dataArray) const;
    bool deleteMacroProfile(std::int64_t macorId);
    std::int64_t addMacroRecord(const RecordInfo& info);
    bool deleteMacroRecord(std::int64_t macorId);
    std::int64_t queryMacroRecord(std::int64_t macorId, std::vector<RecordInfo>& dataArray) const;
    std::int64_t getRecordCount() const;
    // Replaces the macro's events with `events`, all or nothing: each is stored under `macroId`
    // with its position in the list as its index; the events get new row ids.
    bool replaceMacroRecords(std::int64_t macroId, const std::vector<RecordInfo>& events);
    // The events (replaceMacroRecords) and the header (modifyMacroInfo) of an existing macro, all
    // or nothing; false when there is no macro `info.macroId`.
    bool saveMacro(const MacroInfo& info, const std::vector<RecordInfo>& events);
    // Number of macros (rows of t_macro_data); 0 on an error.
    std::int64_t countMacros() const;

    // Built-in lighting modes
    bool modifyLightData(std::int64_t profile, std::int64_t mode,
                         std::span<const std::uint8_t> data);
    bool selectLightMode(std::int64_t profile, std::int64_t mode);
    std::int64_t getLightModeSelectIndex(std::int64_t profile) const;
    bool queryLightInfo(std::int64_t profile, std::int64_t mode, lightData& data) const;

    // User-light sets and their key colours
    std::int64_t addUserLight(std::int64_t profile_id, const std::string& name);
    bool updateUserLightName(std::int64_t userlight_id, const std::string& name);
    bool deleteUserLight(std::int64_t userlight_id);
    std::int64_t getUserLightData(std::int64_t profile_id,
                                  std::vector<UserLightData>& dataArray) const;
    std::int64_t addUserLightLEDData(const UserLightLEDData& data);
    std::int64_t getUserLightLEDData(std::int64_t userlight_id,
                                     std::vector<UserLightLEDData>& dataArray) const;

    // The whole configuration (configuration.h), read from one snapshot of the file; works on
    // a read-only file too. Nothing and "cannot read the database: …" on an error ("no database
    // is open" without a connection).
    std::optional<Configuration> readConfiguration(std::string& error) const;
    // Replaces the contents of the configuration's tables with `configuration`, every row with
    // its own id, in one transaction: the file holds either all of it or, after false and
    // "cannot write the database: …", what it held before ("no database is open" without a
    // connection).
    bool replaceConfiguration(const Configuration& configuration, std::string& error);

private:
    DeviceSQLite() = default;

    // Creates the directory, opens the file and creates the tables; "init: connect …".
    void open(const std::filesystem::path& directory, const std::filesystem::path& file);
    // Opens the connection; false (and the problem noted) when it cannot.
    bool connect(const std::filesystem::path& file, bool unchanging = false);
    // A new file with the tables and the first-start data, put in place whole.
    bool createFile();
    // An existing file: whether it holds this application's tables (any missing one is created).
    bool checkExistingFile();

    // Attaches the history file beside the database; without it, changes take no step.
    void openHistory();
    StepResult moveStep(bool undo, HistoryStep& step);

    std::optional<sqlite::Connection> db_;
    std::filesystem::path file_;
    bool historyOpen_ = false;
    StoreProblem openProblem_ = StoreProblem::kNone;
    StoreProblem readOnlyCause_ = StoreProblem::kNone;  // why the file was opened read-only
};

}  // namespace qx9
