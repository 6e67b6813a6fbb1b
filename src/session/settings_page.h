#pragma once

#include <cstdint>
#include <array>
#include <string>
#include <vector>

#include "ops/settings.h"

namespace qx9 {

class KeyPage;
class LightingPage;
class ProfileList;
struct SessionCore;

// A row of the language box.
struct LanguageRow {
    std::string text;
    int mode = 0;
};

// The texts of a confirmation sheet in the current language; only the second button acts.
struct ConfirmationTexts {
    std::string message;
    std::string informative;
    std::string firstButton;   // "NO" / "否"
    std::string secondButton;  // "YES" / "是"
};

// The settings page: language, game mode and its key blocks, the two resets.
class SettingsPage {
public:
    // Tags of the four check boxes.
    enum Box : int { kGameMode = 0, kAltTab = 1, kAltF4 = 2, kLockWin = 3 };

    SettingsPage(SessionCore& core, KeyPage& keys, ProfileList& profiles, LightingPage& lighting) : core_(core), keys_(keys), profiles_(profiles), lighting_(lighting) {}

    // The check boxes as shown; the system-function record is built from them.
    bool box(int tag) const { return tag >= 0 && tag < 4 && boxes_[tag]; }
    ops::GameModeSwitches switches() const;

    const std::vector<LanguageRow>& LanguageListDatas() const { return languages_; }
    int languageRow() const { return languageRow_; }

    // The stored language (with its deliberate pairing for an empty value), taken at the first
    // connection, which loads every list next.
    void readStoredLanguage();
    // The same when another program changed it: the lists that show texts are rebuilt.
    void applyStoredLanguage();
    // The user picked a row of the language box.
    void comboBoxSelectionDidChange(int row);
    // Applies the current language to every text and rebuilds the lists that carry texts.
    void LanguageSwicth();

    void loadGameModeData();
    // Another program changed the database: the language, and the boxes when the stored switches
    // are no longer those the page last showed.
    void reloadFromDatabase();
    // A check box was clicked: it now shows `on`; then the change is stored and sent.
    void button_action_gamemode(int tag, bool on);
    void configGameMode(int type);

    // The two resets, to be run when the user confirmed with the second button.
    static ConfirmationTexts resetKeysTexts();
    static ConfirmationTexts resetAllTexts();
    void configResetKeys();
    void configResetAllDatas();

private:
    void showSwitches(const ops::GameModeSwitches& shown);
    // The four stored switch values, as the boxes last followed them.
    std::array<std::string, 4> storedValues() const;

    SessionCore& core_;
    KeyPage& keys_;
    ProfileList& profiles_;
    LightingPage& lighting_;
    bool boxes_[4] = {false, false, false, false};
    std::vector<LanguageRow> languages_{{"English", 1033}, {"简体中文", 2052}, {"繁体中文", 1028}};
    int languageRow_ = -1;
    std::array<std::string, 4> shownValues_;
};

}  // namespace qx9
