#pragma once

#include <QDialog>
#include <memory>

class QComboBox;
class QLabel;
class QLineEdit;
class QPushButton;

namespace qx9 {

class CustomKeyDialog;
class KeyboardSession;

// The custom key dialog's window: the function type, the function, the captured combination,
// the macro's play mode and count, and Save. Closing it posts "customKeywindowCloseDid".
class CustomKeyViewController : public QDialog {
    Q_OBJECT
public:
    CustomKeyViewController(KeyboardSession& session, QWidget* parent = nullptr);
    ~CustomKeyViewController() override;

    CustomKeyDialog& model() { return *model_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void done(int result) override;

private:
    void sync();
    void fillFunctionList();
    void captureKey();

    KeyboardSession& session_;
    std::unique_ptr<CustomKeyDialog> model_;
    QLineEdit* key_textfield;
    QComboBox* keyfunctype_combox;
    QComboBox* keyfunc_combox;
    QLineEdit* keyfunc_edit;
    QPushButton* captureButton_;
    QLabel* keyfunc_label;
    QLabel* functionLabel_;  // the function list's, named after the chosen type
    QPushButton* key_savedatabtn;
    QLabel* label_macrotype;
    QComboBox* combox_macrotype;
    QLineEdit* edit_macroplaytime;
    QLabel* label_macroplaytime;
    bool syncing_ = false;
};

}  // namespace qx9
