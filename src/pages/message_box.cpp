#include "pages/message_box.h"

#include <QApplication>
#include <QGridLayout>
#include <QMessageBox>
#include <QPushButton>
#include <QSpacerItem>

#include "session/settings_page.h"

namespace qx9 {

namespace {

// Narrower boxes get their title cut by the window manager.
constexpr int kMinimumBoxWidth = 380;

void prepare(QMessageBox& box, const QString& informative) {
    box.setWindowTitle(QApplication::applicationDisplayName());
    box.setInformativeText(informative);
    box.setWindowModality(Qt::WindowModal);
    if (auto* grid = qobject_cast<QGridLayout*>(box.layout())) {
        grid->addItem(new QSpacerItem(kMinimumBoxWidth, 0, QSizePolicy::Minimum, QSizePolicy::Fixed), grid->rowCount(), 0,
                      1, grid->columnCount());
    }
}

}  // namespace

QMessageBox* openWarning(QWidget* parent, const QString& message, const QString& informative) {
    auto* box = new QMessageBox(QMessageBox::Warning, QString(), message, QMessageBox::Ok, parent ? parent->window() : nullptr);
    box->setObjectName("warningSheet");
    box->setAttribute(Qt::WA_DeleteOnClose);
    prepare(*box, informative);
    box->open();
    return box;
}

bool confirmed(QWidget* parent, const ConfirmationTexts& texts) {
    QMessageBox box(QMessageBox::Warning, QString(), QString::fromStdString(texts.message), QMessageBox::NoButton,
                    parent ? parent->window() : nullptr);
    box.setObjectName("confirmationSheet");
    prepare(box, QString::fromStdString(texts.informative));
    QPushButton* no = box.addButton(QString::fromStdString(texts.firstButton), QMessageBox::RejectRole);
    QPushButton* yes = box.addButton(QString::fromStdString(texts.secondButton), QMessageBox::AcceptRole);
    box.setDefaultButton(no);
    box.setEscapeButton(no);
    box.exec();
    return box.clickedButton() == yes;
}

}  // namespace qx9
