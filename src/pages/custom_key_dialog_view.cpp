#include "pages/custom_key_dialog_view.h"

#include <QComboBox>
#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "i18n/extra_texts.h"
#include "pages/page_controls.h"
#include "i18n/language.h"
#include "session/custom_key_dialog.h"
#include "session/keyboard_session.h"

namespace qx9 {

CustomKeyViewController::CustomKeyViewController(KeyboardSession& session, QWidget* parent)
    : QDialog(parent), session_(session), model_(std::make_unique<CustomKeyDialog>(session.core, session.keys)) {
    setObjectName("customKeyDialog");
    setWindowTitle(text(103));
    setModal(true);

    key_textfield = new QLineEdit(this);
    key_textfield->setObjectName("key_textfield");
    key_textfield->setReadOnly(true);
    keyfunc_label = new QLabel(this);
    keyfunc_label->setObjectName("keyfunc_label");
    keyfunctype_combox = new QComboBox(this);
    keyfunctype_combox->setObjectName("key_functiontype");
    keyfunc_combox = new QComboBox(this);
    keyfunc_combox->setObjectName("key_function");
    functionLabel_ = new QLabel(this);
    functionLabel_->setObjectName("keyfunc_typelabel");
    functionLabel_->setBuddy(keyfunc_combox);  // screen readers name the list after it
    keyfunc_edit = new QLineEdit(this);
    keyfunc_edit->setObjectName("keyfunc_edit");
    keyfunc_edit->setReadOnly(true);
    captureButton_ = new QPushButton(text(ExtraText::kCaptureKeys), this);
    captureButton_->setObjectName("keyfunc_capture");
    label_macrotype = new QLabel(this);
    label_macrotype->setObjectName("label_macrotype");
    combox_macrotype = new QComboBox(this);
    combox_macrotype->setObjectName("macroplaytype");
    edit_macroplaytime = new QLineEdit(this);
    edit_macroplaytime->setObjectName("edit_macroplaytime");
    label_macroplaytime = new QLabel(this);
    label_macroplaytime->setObjectName("label_macroplaytime");
    key_savedatabtn = new QPushButton(this);
    key_savedatabtn->setObjectName("key_savedatabtn");
    key_savedatabtn->setDefault(true);

    // The fixed texts, the key's name, the lists.
    keyfunc_label->setText(text(165));
    key_savedatabtn->setText(text(166));
    label_macrotype->setText(text(167));
    label_macroplaytime->setText(text(171));
    key_textfield->setText(QString::fromStdString(model_->keyText()));
    key_textfield->setAccessibleName(text(ExtraText::kKey));
    keyfunc_edit->setAccessibleName(text(121));  // the keys of a keyboard function
    keyfunc_label->setBuddy(keyfunctype_combox);
    label_macrotype->setBuddy(combox_macrotype);
    label_macroplaytime->setBuddy(edit_macroplaytime);

    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(20, 18, 20, 18);
    grid->setHorizontalSpacing(12);
    grid->setVerticalSpacing(10);
    grid->addWidget(key_textfield, 0, 0, 1, 2);
    grid->addWidget(keyfunc_label, 1, 0);
    grid->addWidget(keyfunctype_combox, 1, 1);
    grid->addWidget(functionLabel_, 2, 0);
    grid->addWidget(keyfunc_combox, 2, 1);
    auto* captureRow = new QHBoxLayout;
    captureRow->addWidget(keyfunc_edit, 1);
    captureRow->addWidget(captureButton_);
    grid->addLayout(captureRow, 3, 1);
    grid->addWidget(label_macrotype, 4, 0);
    grid->addWidget(combox_macrotype, 4, 1);
    grid->addWidget(label_macroplaytime, 5, 0);
    grid->addWidget(edit_macroplaytime, 5, 1);
    grid->addWidget(key_savedatabtn, 6, 1, Qt::AlignRight);
    setMinimumWidth(380);

    model_->viewDidAppear();
    syncing_ = true;
    for (const auto& c : model_->keyFunctionTypeDatas()) keyfunctype_combox->addItem(QString::fromStdString(c.text));
    for (const auto& c : model_->keyFunctionMacroTypeDatas()) combox_macrotype->addItem(QString::fromStdString(c.text));
    syncing_ = false;
    sync();

    connect(keyfunctype_combox, &QComboBox::currentIndexChanged, this, [this](int i) {
        if (syncing_) return;
        model_->selectFunctionType(i);
        fillFunctionList();
        sync();
    });
    connect(keyfunc_combox, &QComboBox::currentIndexChanged, this, [this](int i) {
        if (!syncing_) model_->selectFunction(i);
    });
    connect(combox_macrotype, &QComboBox::currentIndexChanged, this, [this](int i) {
        if (syncing_) return;
        model_->selectMacroPlayType(i);
        sync();
    });
    connect(edit_macroplaytime, &QLineEdit::textEdited, this,
            [this](const QString& t) { model_->setPlayCountText(t.toStdString()); });
    // The next combination pressed is the function; Tab and Escape leave the dialog's fields
    // otherwise.
    connect(captureButton_, &QPushButton::clicked, this, [this] {
        model_->beginCapture();
        keyfunc_edit->setFocus();
        sync();
    });
    connect(key_savedatabtn, &QPushButton::clicked, this, [this] {
        model_->savekeyfunc_action();
        accept();
    });

    // Key events reach the combination capture after the keystroke capture has seen them.
    installEventFilter(this);
    for (QWidget* w : findChildren<QWidget*>()) w->installEventFilter(this);
}

CustomKeyViewController::~CustomKeyViewController() = default;

void CustomKeyViewController::fillFunctionList() {
    syncing_ = true;
    keyfunc_combox->clear();
    for (const auto& c : model_->functionList()) keyfunc_combox->addItem(QString::fromStdString(c.text));
    keyfunc_combox->setCurrentIndex(model_->functionIndex());
    syncing_ = false;
}

void CustomKeyViewController::sync() {
    syncing_ = true;
    keyfunctype_combox->setCurrentIndex(model_->functionTypeIndex());
    keyfunc_combox->setVisible(model_->showsFunctionList());
    functionLabel_->setText(keyfunctype_combox->currentText());
    functionLabel_->setVisible(model_->showsFunctionList());
    keyfunc_edit->setVisible(model_->showsCombinationField());
    keyfunc_edit->setText(QString::fromStdString(model_->keyfuncEditText()));
    keyfunc_edit->setPlaceholderText(model_->capturingKeys() ? text(ExtraText::kPressTheKeys) : text(121));
    captureButton_->setVisible(model_->showsCombinationField());
    captureButton_->setEnabled(!model_->capturingKeys());
    label_macrotype->setVisible(model_->showsMacroPlayType());
    combox_macrotype->setVisible(model_->showsMacroPlayType());
    combox_macrotype->setCurrentIndex(model_->macroPlayTypeIndex());
    label_macroplaytime->setVisible(model_->showsPlayCount());
    edit_macroplaytime->setVisible(model_->showsPlayCount());
    edit_macroplaytime->setText(QString::fromStdString(model_->playCountText()));
    syncing_ = false;
    adjustSize();
}

bool CustomKeyViewController::eventFilter(QObject* watched, QEvent* event) {
    if (model_->capturingKeys() && (event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease)) {
        captureKey();
        return true;  // the keys typed are the combination, not input
    }
    return QDialog::eventFilter(watched, event);
}

void CustomKeyViewController::captureKey() {
    model_->keyEvent();
    keyfunc_edit->setText(QString::fromStdString(model_->keyfuncEditText()));
    if (model_->capturingKeys()) return;
    // Every key is up again: the combination is taken, and Save is next.
    sync();
    key_savedatabtn->setFocus();
}

void CustomKeyViewController::done(int result) {
    QDialog::done(result);
    session_.keys.customKeywindowCloseDid();
}

}  // namespace qx9
