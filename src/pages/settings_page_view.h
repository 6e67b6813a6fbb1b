#pragma once

#include <QWidget>

#include "pages/page_controls.h"

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

namespace qx9 {

class KeyboardLightView;
class KeyboardSession;

// The settings page: language, game mode with its three key blocks, the two resets, and the
// keyboard in its default colours as decoration.
class SettingsPageView : public QWidget {
    Q_OBJECT
public:
    SettingsPageView(KeyboardSession& session, QWidget* parent = nullptr);
    void sync();
    void retranslate();

private:
    void confirmThen(bool all);

    KeyboardSession& session_;
    QLabel* config_label_language;
    QComboBox* combo_language;
    QLabel* config_label_gamemode;
    QLabel* config_label_lockwin;
    QCheckBox* boxes_[4];
    QPushButton* btn_resetmousedata;
    QPushButton* btn_resetalldata;
    KeyboardLightView* config_keyboardctrl;
    bool syncing_ = false;
    FixedTexts texts_;
};

}  // namespace qx9
