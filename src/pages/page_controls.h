#pragma once

#include <QString>

#include "i18n/extra_texts.h"

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

class QAbstractButton;
class QButtonGroup;
class QObject;

class QHBoxLayout;
class QLayout;
class QListWidget;
class QToolButton;
class QVBoxLayout;
class QWidget;

namespace qx9 {

// Pieces the pages share.

// A string-table text, and one of the application's own texts, in the interface language.
QString text(int textId);
QString text(ExtraText id);

// A small text button of a list's button row (add, delete, rename).
QToolButton* smallButton(const char* name, const QString& text, QWidget* parent);
// A list over its row of small buttons.
QVBoxLayout* listWithButtons(QListWidget* list, std::initializer_list<QWidget*> buttons);
// Sets a dynamic property that the style sheet reads and restyles the widget; false when the
// property already had that value.
bool restyle(QWidget* widget, const char* property, bool value);
// Marks a control as the chosen one ("active", which the style sheet colours) and restyles it.
void showActive(QWidget* control, bool active);
// A row that keeps `content` at its natural width in the middle of a wider page.
QHBoxLayout* centredRow(QLayout* content);
// Starts editing the list's current row in place.
void editCurrentRow(QListWidget* list);

// An icon or symbol button's name, read by screen readers and shown as its tooltip.
void nameButton(QWidget* button, const std::string& name);
// The same for the add, delete and rename buttons of a list, in the interface language.
void nameListButtons(QWidget* add, QWidget* remove, QWidget* rename);

// Radios that form one group, whose state the page model decides: arrow keys move among them and
// screen readers hear radio buttons of one group.
QButtonGroup* radioGroup(std::initializer_list<QAbstractButton*> radios, QObject* parent);
// Shows the page model's choice: each radio on or off, none on included.
void showRadios(QButtonGroup* group, std::initializer_list<std::pair<QAbstractButton*, bool>> states);

// The fixed texts of a page's buttons and labels: each control shows its string-table text in
// the interface language, set again by apply() when the language changes.
class FixedTexts {
public:
    // `control` (a button or a label; any other widget is named) shows text `textId` from now on;
    // returns it.
    template <typename Control>
    Control* add(Control* control, int textId) {
        texts_.push_back({control, textId});
        return control;
    }
    void apply() const;

private:
    struct Entry {
        QWidget* control;
        int textId;
    };
    std::vector<Entry> texts_;
};

}  // namespace qx9
