#pragma once

#include <QObject>

class QColorDialog;
class QWidget;

namespace qx9 {

class KeyboardSession;

// The one colour dialog of the window, shared by both lighting pages. It is open while the
// backlight page model says so (a page's swatch opened it, a new effect closes it), and hands
// every colour the user picks to the page that opened it.
class ColorPanel : public QObject {
    Q_OBJECT
public:
    ColorPanel(KeyboardSession& session, QWidget* window);

    // The dialog, made when it is first needed.
    QColorDialog* dialog();
    // Opens, raises or closes the dialog as the page model says.
    void sync();

private:
    KeyboardSession& session_;
    QWidget* window_;
    QColorDialog* dialog_ = nullptr;
    bool syncing_ = false;
};

}  // namespace qx9
