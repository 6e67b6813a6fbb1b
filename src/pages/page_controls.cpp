#include "pages/page_controls.h"

#include <QAbstractButton>
#include <QButtonGroup>
#include <QHBoxLayout>
#include <QLabel>
#include <QListWidget>
#include <QStyle>
#include <QToolButton>
#include <QVBoxLayout>

#include "i18n/extra_texts.h"
#include "i18n/language.h"

namespace qx9 {

QString text(int textId) { return QString::fromStdString(localizedText(textId)); }
QString text(ExtraText id) { return QString::fromStdString(extraText(id)); }

void nameButton(QWidget* button, const std::string& name) {
    const QString text = QString::fromStdString(name);
    button->setAccessibleName(text);
    button->setToolTip(text);
}

void nameListButtons(QWidget* add, QWidget* remove, QWidget* rename) {
    nameButton(add, extraText(ExtraText::kAdd));
    nameButton(remove, extraText(ExtraText::kDelete));
    nameButton(rename, extraText(ExtraText::kRename));
}

QButtonGroup* radioGroup(std::initializer_list<QAbstractButton*> radios, QObject* parent) {
    auto* group = new QButtonGroup(parent);
    for (QAbstractButton* r : radios) group->addButton(r);
    return group;
}

void showRadios(QButtonGroup* group, std::initializer_list<std::pair<QAbstractButton*, bool>> states) {
    group->setExclusive(false);  // so that none can be on
    for (const auto& [radio, on] : states) radio->setChecked(on);
    group->setExclusive(true);
}

void FixedTexts::apply() const {
    for (const Entry& e : texts_) {
        const QString text = QString::fromStdString(localizedText(e.textId));
        if (auto* b = qobject_cast<QAbstractButton*>(e.control)) b->setText(text);
        else if (auto* l = qobject_cast<QLabel*>(e.control)) l->setText(text);
        else e.control->setAccessibleName(text);  // a panel: named after its heading
    }
}

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

bool restyle(QWidget* widget, const char* property, bool value) {
    if (widget->property(property).isValid() && widget->property(property).toBool() == value) return false;
    widget->setProperty(property, value);
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
    return true;
}

void showActive(QWidget* control, bool active) { restyle(control, "active", active); }

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
