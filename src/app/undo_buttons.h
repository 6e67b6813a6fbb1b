#pragma once

#include <QWidget>
#include <array>

#include "i18n/language.h"
#include "session/undo_history.h"

class QShortcut;
class QToolButton;

namespace qx9 {

class KeyboardSession;

// The header's undo and redo buttons, and the window's shortcuts for them: Ctrl+Z undoes,
// Ctrl+Shift+Z and Ctrl+Y redo, anywhere in `window` while it is the active window (so never
// while one of its dialogs is open). They mirror the session's undo history. The shortcuts leave
// the keys to a page that takes them as its own (KeyboardSession::keysCaptured); the buttons
// still act. On the start view neither acts.
class UndoButtons : public QWidget {
    Q_OBJECT
public:
    UndoButtons(KeyboardSession& session, QWidget* window, QWidget* parent);

    // The buttons' names and tooltips in this language from now on.
    void retranslate(int language);
    // The steps undo and redo would take, and whether the pages are shown.
    void sync();
    // Whether the keys are the shortcuts' or a page's.
    void syncShortcuts();

private:
    struct Control {
        UndoHistory::Move move;
        QToolButton* button = nullptr;
        QShortcut* shortcut = nullptr;
        bool enabled = false;  // as the button last showed it
    };

    KeyboardSession& session_;
    std::array<Control, 2> controls_;
    int language_ = kLanguageEnglish;
};

}  // namespace qx9
