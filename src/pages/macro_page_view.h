#pragma once

#include <QStringList>
#include <QWidget>

#include "pages/page_controls.h"

class QButtonGroup;
class QComboBox;
class QLabel;
class QLineEdit;
class QListWidget;
class QListWidgetItem;
class QProgressBar;
class QPushButton;
class QRadioButton;

namespace qx9 {

class KeyboardSession;

// The macro page: the macro list, the events of the selected macro, the insert controls, the
// delay mode, recording and the keyboard's macro memory. It shows the macro page model and
// forwards the user's actions; key events reach the model through an application-wide filter.
class MacroPageView : public QWidget {
    Q_OBJECT
public:
    MacroPageView(KeyboardSession& session, QWidget* parent = nullptr);

    QListWidget* macroTable() const { return macro_tableview; }
    QListWidget* recordTable() const { return record_tableview; }

    // Mirrors the page model.
    void sync();
    // Pop-up rows, accessible names and the texts of this application's own.
    void retranslate();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void syncLists();
    void syncMemory();
    void macroRenamed(QListWidgetItem* item);

    KeyboardSession& session_;
    QListWidget* macro_tableview;
    QListWidget* record_tableview;
    QPushButton* macro_btn_newmacro;
    QPushButton* macro_btn_deletemacro;
    QPushButton* renameButton_;
    QPushButton* deleteEventButton_;
    QPushButton* record_button;
    QLabel* recordState_;
    QProgressBar* memoryBar_;
    QLabel* memoryFull_;
    QComboBox* insertevent_combox;
    QRadioButton* keyboardevent_radiobutton;
    QRadioButton* mouseevent_radiobutton;
    QRadioButton* delayevent_radiobutton;
    QComboBox* mousevent_combox;
    QLabel* mouseLabel_;  // names the mouse button box
    QLineEdit* insertevent_edit;
    QPushButton* insertevent_button;
    QRadioButton* recorddelay_radiobutton;
    QRadioButton* nodelay_radiobutton;
    QRadioButton* defaultdelay_radiobutton;
    QLineEdit* delaytime_edit;
    QPushButton* macro_btn_save;
    // The last key event told to the model.
    struct LastKey {
        quint32 code = 0;
        int type = 0;
        quint64 time = 0;
        bool operator==(const LastKey&) const = default;
    };
    LastKey lastKey_;
    // The recording was started from the keyboard: Stop keeps the focus, and Space or Return on
    // it stops (every other key is recorded).
    bool recordingByKeyboard_ = false;
    QStringList shownMacros_;
    QStringList shownRecords_;
    bool syncing_ = false;
    FixedTexts texts_;
    QButtonGroup* eventKinds_ = nullptr;
    QButtonGroup* delayModes_ = nullptr;
};

}  // namespace qx9
