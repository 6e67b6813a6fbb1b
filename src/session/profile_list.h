#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace qx9 {

class KeyPage;
struct SessionCore;

// One row of the profile table: the profile id and the name as displayed.
struct ProfileRow {
    std::int64_t profileId = 0;
    std::string name;
};

// The profile table of the key page: loading, adding, deleting, renaming, choosing.
class ProfileList {
public:
    // The three buttons under the table.
    enum Button { kAdd, kDelete, kRename };

    ProfileList(SessionCore& core, KeyPage& keys) : core_(core), keys_(keys) {}

    const std::vector<ProfileRow>& rows() const { return customkey_profilelist_datas_; }
    int selectedRow() const { return selectedRow_; }

    void loadKeyProfile();
    // Another program changed the database: the rows again, the highlight on the same profile
    // (none when it is gone). The current profile stays.
    void reloadFromDatabase();
    void setKeyProfileTableSelect(int selectIndex);
    // The user chose a row of the table.
    void tableSelectionChanged(int row);
    void selectProfileIndex(int index);
    void selectProfile(std::int64_t profile);
    // The profile's key marks, without storing or sending anything (a load).
    void showProfile(std::int64_t profile);

    // The buttons: add, delete, rename (the front end then edits the row in place and reports
    // the text through keyTableItemViewEdit).
    void customkey_button_profile(Button button);
    bool renameAllowed() const { return selectedRow_ >= 0; }
    void keyTableItemViewEdit(int index, const std::string& text);

    // A stored name as the current language shows it.
    static std::string displayedName(const std::string& stored);

private:
    void addProfile();
    void deleteProfile();

    SessionCore& core_;
    KeyPage& keys_;
    std::vector<ProfileRow> customkey_profilelist_datas_;
    int selectedRow_ = -1;
};

}  // namespace qx9
