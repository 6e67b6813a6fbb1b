#include "pages/key_menu.h"

#include <QApplication>
#include <QLabel>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPushButton>
#include <QVBoxLayout>
#include <algorithm>
#include <map>
#include <string>

#include "pages/page_controls.h"

#include "i18n/language.h"

namespace qx9 {

namespace {

QPushButton* menuRow(const char* name, int id, KeyMenuViewController* parent) {
    auto* b = new QPushButton(parent);
    b->setObjectName(name);
    b->setProperty("role", "menuitem");
    b->setProperty("menuid", id);
    b->setCursor(Qt::PointingHandCursor);
    QObject::connect(b, &QPushButton::clicked, parent, [parent, id] { emit parent->MenuItemMouseUpAction(id); });
    return b;
}

}  // namespace

KeyMenuViewController::KeyMenuViewController(QWidget* parent) : QFrame(parent) {
    setObjectName("keyboardKeyMenu");
    hide();
    qApp->installEventFilter(this);  // a press or the focus elsewhere closes it
    menuitem_defaultkey = menuRow("menuitem_defaultkey", 101, this);
    menuitem_diablekey = menuRow("menuitem_diablekey", 102, this);
    menuitem_customkey = menuRow("menuitem_customkey", 103, this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(4, 4, 4, 4);
    layout->setSpacing(0);
    for (QPushButton* b : {menuitem_defaultkey, menuitem_diablekey, menuitem_customkey}) layout->addWidget(b);
}

void KeyMenuViewController::mousePressEvent(QMouseEvent* event) {
    if (rect().contains(event->position().toPoint())) {
        QFrame::mousePressEvent(event);
        return;
    }
    const QPointF global = event->globalPosition();
    hide();
    QWidget* target = QApplication::widgetAt(global.toPoint());
    if (!target) return;
    const QPointF local = target->mapFromGlobal(global);
    for (QEvent::Type type : {QEvent::MouseButtonPress, QEvent::MouseButtonRelease}) {
        QMouseEvent click(type, local, global, event->button(),
                          type == QEvent::MouseButtonPress ? event->buttons() : Qt::NoButton, event->modifiers());
        QApplication::sendEvent(target, &click);
    }
}

bool KeyMenuViewController::eventFilter(QObject* watched, QEvent* event) {
    if (isVisible() && (event->type() == QEvent::MouseButtonPress || event->type() == QEvent::FocusIn)) {
        auto* w = qobject_cast<QWidget*>(watched);
        if (w && w != this && !isAncestorOf(w)) hide();  // the press goes on to what it was aimed at
    }
    return QFrame::eventFilter(watched, event);
}

void KeyMenuViewController::showAt(const QPoint& globalPos) {
    returnFocus_ = QApplication::focusWidget();
    menuitem_defaultkey->setText(text(101));
    menuitem_diablekey->setText(text(102));
    menuitem_customkey->setText(text(103));
    hide();
    adjustSize();
    // Within the window: below the point, or above it where the window ends.
    const QWidget* window = parentWidget();
    QPoint at = window->mapFromGlobal(globalPos);
    if (at.y() + height() > window->height()) at.ry() -= height() + 30;
    at.setX(std::clamp(at.x(), 0, std::max(0, window->width() - width())));
    at.setY(std::clamp(at.y(), 0, std::max(0, window->height() - height())));
    move(at);
    show();
    raise();
    menuitem_defaultkey->setFocus(Qt::PopupFocusReason);  // the arrows move on, Space or Return chooses, Escape closes
}

void KeyMenuViewController::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Down || event->key() == Qt::Key_Up) {
        focusNextPrevChild(event->key() == Qt::Key_Down);
        return;
    }
    // Return and Enter choose too, as in any menu.
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter) {
        if (auto* item = qobject_cast<QPushButton*>(focusWidget())) item->click();
        return;
    }
    if (event->key() == Qt::Key_Escape) {
        hide();
        if (returnFocus_) returnFocus_->setFocus(Qt::PopupFocusReason);
        return;
    }
    QFrame::keyPressEvent(event);
}

KBToolTipsViewController::KBToolTipsViewController(QWidget* parent)
    : QFrame(parent, Qt::ToolTip | Qt::FramelessWindowHint) {
    setObjectName("keyboardToolTips");
    setAttribute(Qt::WA_TransparentForMouseEvents);
    label_keydesc = new QLabel(this);
    label_keydesc->setObjectName("label_keydesc");
    label_keymacro = new QLabel(this);
    label_keymacro->setObjectName("label_keymacro");
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(10, 6, 10, 6);
    layout->addWidget(label_keydesc);
    layout->addWidget(label_keymacro);
}

void KBToolTipsViewController::showAt(const QPoint& globalPos, const QString& keyDesc, const QString& keyMacro) {
    label_keydesc->setText(keyDesc);
    label_keymacro->setText(keyMacro);
    adjustSize();
    move(globalPos);
    show();
    raise();
}

}  // namespace qx9
