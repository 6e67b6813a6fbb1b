#pragma once

#include <QWidget>

#include "pages/page_controls.h"

class QLabel;
class QListWidget;
class QListWidgetItem;
class QPushButton;
class QToolButton;

namespace qx9 {

class ColorControls;
class KeyboardLightView;
class KeyboardSession;

// The per-key lighting page: the list of colour sets, the keyboard on which keys are selected
// and painted, the colour controls, Reset and Apply. It shows the per-key page model and
// forwards the user's actions to it.
class UserLightPageView : public QWidget {
    Q_OBJECT
public:
    UserLightPageView(KeyboardSession& session, QWidget* parent = nullptr);

    QListWidget* setTable() const { return userlight_table; }
    KeyboardLightView* keyboard() const { return userlight_keyboardctrl; }
    ColorControls* colorControls() const { return colors_; }

    // Mirrors the page model.
    void sync();
    // Names of the controls that show no text of their own.
    void retranslate();
    // Starts editing the selected set's name in place.
    void beginRename();

private:
    void setEdited(QListWidgetItem* item);

    KeyboardSession& session_;
    QListWidget* userlight_table;
    QToolButton* userlight_btn_add;
    QToolButton* userlight_btn_del;
    QToolButton* renameButton_;
    KeyboardLightView* userlight_keyboardctrl;
    ColorControls* colors_;
    QPushButton* userlight_btn_resetcolor;
    QPushButton* userlight_btn_apply;
    QLabel* note_;
    bool syncing_ = false;
    FixedTexts texts_;
};

}  // namespace qx9
