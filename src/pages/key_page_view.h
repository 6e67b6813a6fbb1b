#pragma once

#include <QWidget>

#include "pages/page_controls.h"

class QListWidget;
class QListWidgetItem;
class QPushButton;
class QToolButton;

namespace qx9 {

class KeyboardSession;
class KeyboardView;
class CustomKeyFuncView;

// The key-assignment page: the keyboard, the function palette, the layer and Fn-mode buttons
// and the profile table. It shows the session's state and forwards the user's actions.
class KeyPageView : public QWidget {
    Q_OBJECT
public:
    KeyPageView(KeyboardSession& session, QWidget* parent = nullptr);

    KeyboardView* keyboard() const { return customkey_keyboardctrl; }
    CustomKeyFuncView* palette() const { return customkey_funcctrl; }
    QListWidget* profileTable() const { return customkey_keyprofile; }

    // Mirrors of the session's state.
    void syncKeys();
    void syncPalette();
    void syncLayerButtons();
    void syncFnModeButtons();
    void syncProfiles();
    // Starts editing the selected profile's name in place.
    void beginRename();
    void retranslate();

private:
    void profileEdited(QListWidgetItem* item);

    KeyboardSession& session_;
    KeyboardView* customkey_keyboardctrl;
    CustomKeyFuncView* customkey_funcctrl;
    QPushButton* customkey_btn_toplayer;
    QPushButton* customkey_btn_fnlayer;
    QPushButton* customkey_btn_defaultkey;
    QPushButton* customkey_btn_fnkey;
    QListWidget* customkey_keyprofile;
    QToolButton* addButton_;
    QToolButton* deleteButton_;
    QToolButton* renameButton_;
    bool syncing_ = false;
    FixedTexts texts_;
};

}  // namespace qx9
