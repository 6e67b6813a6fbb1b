#pragma once

#include <QFrame>
#include <QPointer>

class QLabel;
class QPushButton;

namespace qx9 {

// The key menu, a panel over the window (screen readers find it there): three rows (101 "Default Function", 102 "Disable Keys", 103 "Custom
// Function"); a click emits MenuItemMouseUpAction with the row's id.
class KeyMenuViewController : public QFrame {
    Q_OBJECT
public:
    explicit KeyMenuViewController(QWidget* parent = nullptr);
    // Sets the row texts in the current language and shows the menu at `globalPos`.
    void showAt(const QPoint& globalPos);

signals:
    void MenuItemMouseUpAction(int menuid);

protected:
    // A press outside closes the menu and still reaches what it was aimed at (the palette, another
    // key), so that no click is spent on closing the menu.
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QPushButton* menuitem_defaultkey;
    QPushButton* menuitem_diablekey;
    QPushButton* menuitem_customkey;
    QPointer<QWidget> returnFocus_;  // where Escape puts the focus back
};

// The key tooltip: the key's name and its assignment.
class KBToolTipsViewController : public QFrame {
    Q_OBJECT
public:
    explicit KBToolTipsViewController(QWidget* parent = nullptr);
    void showAt(const QPoint& globalPos, const QString& keyDesc, const QString& keyMacro);

private:
    QLabel* label_keydesc;
    QLabel* label_keymacro;
};

}  // namespace qx9
