#pragma once

#include <QIcon>
#include <QWidget>

#include "i18n/language.h"

class QLabel;
class QPushButton;

namespace qx9 {

// The start view over the pages: the keyboard picture (connected or not), the product name and
// a line that says what to do: plug the keyboard in, click it, or fix the access to it.
class StartView : public QWidget {
    Q_OBJECT
public:
    explicit StartView(QWidget* parent = nullptr);

    void setConnected(bool connected);
    // A QX9 is attached but its node could not be opened (empty: no such problem).
    void setAccessProblem(const QString& node);
    // Its lines in this language: the system's until a keyboard's stored language applies.
    void retranslate(int language);

signals:
    void keyboardClicked();

private:
    QPushButton* keyboard_connect;
    QLabel* title_;
    QLabel* status_;
    bool connected_ = false;
    QString accessProblem_;
    int language_ = kLanguageEnglish;
    QIcon connectedPicture_;
    QIcon absentPicture_;
};

}  // namespace qx9
