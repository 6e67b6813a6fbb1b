#pragma once

#include <QString>

class QMessageBox;
class QWidget;

namespace qx9 {

struct ConfirmationTexts;

// A warning sheet: window-modal on `parent`'s window, titled with the application's name and
// wide enough for the title to show whole. It deletes itself when answered.
QMessageBox* openWarning(QWidget* parent, const QString& message, const QString& informative);

// Asks before a destructive change. Only the second button acts; the first takes Return, Esc
// and closing the box, so nothing happens unless the user chooses the second.
bool confirmed(QWidget* parent, const ConfirmationTexts& texts);

}  // namespace qx9
