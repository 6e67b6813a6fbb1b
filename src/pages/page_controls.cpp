#include "pages/page_controls.h"

#include <QHBoxLayout>
#include <QListWidget>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

namespace qx9 {

QToolButton* smallButton(const char* name, const QString& text, QWidget* parent) {
    auto* b = new QToolButton(parent);
    b->setObjectName(name);
    b->setText(text);
    b->setCursor(Qt::PointingHandCursor);
    return b;
}

QVBoxLayout* listWithButtons(QListWidget* list, std::initializer_list<QWidget*> buttons) {
    auto* row = new QHBoxLayout;
    for (QWidget* b : buttons) row->addWidget(b);
    row->addStretch();
    auto* column = new QVBoxLayout;
    column->addWidget(list, 1);
    column->addLayout(row);
    return column;
}

void showActive(QWidget* control, bool active) {
    if (control->property("active").isValid() && control->property("active").toBool() == active) return;
    control->setProperty("active", active);
    control->style()->unpolish(control);
    control->style()->polish(control);
}

void editCurrentRow(QListWidget* list) {
    if (QListWidgetItem* item = list->currentItem()) {
        list->setFocus();
        list->editItem(item);
    }
}

QHBoxLayout* centredRow(QLayout* content) {
    auto* row = new QHBoxLayout;
    row->addStretch();
    row->addLayout(content);
    row->addStretch();
    return row;
}

}  // namespace qx9
