#pragma once

#include <QDialog>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;
class QTableWidget;

namespace qx9 {

class KeyboardSession;

// The rules of the automatic profiles: the list (application, title, profile), and a rule to add
// below it, its application filled in with the one that was in front last. Every change is
// stored in the rules' file at once; the list shows the file as it is, also when qx9ctl changed it.
class AppProfilesDialog : public QDialog {
    Q_OBJECT
public:
    AppProfilesDialog(KeyboardSession& session, QWidget* parent = nullptr);
    void sync();
    void retranslate();

protected:
    // Opens on the application's field: what the user came to type.
    void showEvent(QShowEvent* event) override;

private:
    KeyboardSession& session_;
    QTableWidget* rules_;
    QLabel* applicationLabel_;
    QLineEdit* application_;
    QLabel* titleLabel_;
    QLineEdit* title_;
    QLabel* profileLabel_;
    QComboBox* profile_;
    QPushButton* add_;
    QPushButton* delete_;
};

}  // namespace qx9
