#pragma once

#include <QWidget>

#include "pages/page_controls.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

namespace qx9 {

class AppProfilesDialog;
class KeyboardLightView;
class KeyboardSession;

// The settings page: language, game mode with its three key blocks, the two resets, and the
// keyboard in its default colours as decoration; beside them what follows the user on the
// desktop: starting at login in the tray, lights off while locked, the automatic profiles.
class SettingsPageView : public QWidget {
    Q_OBJECT
public:
    SettingsPageView(KeyboardSession& session, QWidget* parent = nullptr);
    void sync();
    void retranslate();

private:
    void confirmThen(bool all);
    QLayout* desktopColumn();
    void setDesktopOptions();

    KeyboardSession& session_;
    QLabel* config_label_language;
    QComboBox* combo_language;
    QLabel* config_label_gamemode;
    QLabel* config_label_lockwin;
    QCheckBox* boxes_[4];
    QPushButton* btn_resetmousedata;
    QPushButton* btn_resetalldata;
    KeyboardLightView* config_keyboardctrl;
    QLabel* desktopHeading_;
    QCheckBox* startAtLogin_;
    QLabel* noTray_;
    QCheckBox* darkWhenLocked_;
    QCheckBox* automaticProfiles_;
    QLabel* focusSource_;
    QPushButton* editRules_;
    AppProfilesDialog* rulesDialog_ = nullptr;
    bool syncing_ = false;
    FixedTexts texts_;
};

}  // namespace qx9
