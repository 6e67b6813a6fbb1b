#include "pages/app_profiles_dialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTableWidget>

#include "i18n/extra_texts.h"
#include "i18n/language.h"
#include "pages/page_controls.h"
#include "session/keyboard_session.h"

namespace qx9 {

namespace {

constexpr int kColumns = 3;
constexpr QSize kMinimumSize{560, 360};

}  // namespace

AppProfilesDialog::AppProfilesDialog(KeyboardSession& session, QWidget* parent) : QDialog(parent), session_(session) {
    setObjectName("app_profiles_dialog");
    setMinimumSize(kMinimumSize);
    rules_ = new QTableWidget(0, kColumns, this);
    rules_->setObjectName("app_profiles_rules");
    rules_->setSelectionBehavior(QAbstractItemView::SelectRows);
    rules_->setSelectionMode(QAbstractItemView::SingleSelection);
    rules_->setEditTriggers(QAbstractItemView::NoEditTriggers);
    rules_->verticalHeader()->hide();
    rules_->horizontalHeader()->setSectionResizeMode(QHeaderView::Stretch);
    rules_->setTabKeyNavigation(false);  // Tab leaves the list, the arrows move in it
    applicationLabel_ = new QLabel(this);
    application_ = new QLineEdit(this);
    application_->setObjectName("app_profiles_application");
    applicationLabel_->setBuddy(application_);
    titleLabel_ = new QLabel(this);
    title_ = new QLineEdit(this);
    title_->setObjectName("app_profiles_title");
    titleLabel_->setBuddy(title_);
    profileLabel_ = new QLabel(this);
    profile_ = new QComboBox(this);
    profile_->setObjectName("app_profiles_profile");
    profileLabel_->setBuddy(profile_);
    add_ = new QPushButton(this);
    add_->setObjectName("app_profiles_add");
    delete_ = new QPushButton(this);
    delete_->setObjectName("app_profiles_delete");
    auto* close = new QDialogButtonBox(QDialogButtonBox::Close, this);  // in Qt's words for the language

    connect(add_, &QPushButton::clicked, this, [this] {
        const QString application = application_->text().trimmed();
        if (application.isEmpty() || profile_->currentIndex() < 0) return;
        session_.follow.addRule({application.toStdString(), title_->text().trimmed().toStdString(),
                                 profile_->currentData().toLongLong()});
        title_->clear();
    });
    connect(delete_, &QPushButton::clicked, this, [this] {
        if (rules_->currentRow() >= 0) session_.follow.removeRule(static_cast<std::size_t>(rules_->currentRow()));
    });
    connect(rules_, &QTableWidget::itemSelectionChanged, this, [this] { delete_->setEnabled(rules_->currentRow() >= 0); });
    connect(application_, &QLineEdit::returnPressed, add_, &QPushButton::click);
    connect(title_, &QLineEdit::returnPressed, add_, &QPushButton::click);
    connect(close, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* form = new QGridLayout;
    form->addWidget(applicationLabel_, 0, 0);
    form->addWidget(application_, 0, 1);
    form->addWidget(titleLabel_, 1, 0);
    form->addWidget(title_, 1, 1);
    form->addWidget(profileLabel_, 2, 0);
    form->addWidget(profile_, 2, 1);
    form->setColumnStretch(1, 1);
    auto* buttons = new QHBoxLayout;
    buttons->addWidget(add_);
    buttons->addWidget(delete_);
    buttons->addStretch();
    buttons->addWidget(close);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(rules_, 1);
    layout->addLayout(form);
    layout->addLayout(buttons);
    retranslate();
    sync();
    // The application that was in front last is the likeliest to want a rule.
    const ops::FocusedWindow& front = session_.follow.inFront();
    application_->setText(QString::fromStdString(front.appId.empty() ? front.windowClass : front.appId));
}

void AppProfilesDialog::showEvent(QShowEvent* event) {
    QDialog::showEvent(event);
    application_->setFocus();
}

void AppProfilesDialog::retranslate() {
    setWindowTitle(text(ExtraText::kAutomaticProfiles));
    rules_->setHorizontalHeaderLabels({text(ExtraText::kApplication), text(ExtraText::kTitleContains), text(ExtraText::kProfile)});
    rules_->setAccessibleName(text(ExtraText::kAutomaticProfiles));
    applicationLabel_->setText(text(ExtraText::kApplication));
    titleLabel_->setText(text(ExtraText::kTitleContains));
    profileLabel_->setText(text(ExtraText::kProfile));
    add_->setText(text(ExtraText::kAdd));
    delete_->setText(text(ExtraText::kDelete));
}

void AppProfilesDialog::sync() {
    const std::int64_t chosen = profile_->currentData().toLongLong();
    profile_->clear();
    for (const ProfileRow& row : session_.profiles.rows()) profile_->addItem(QString::fromStdString(row.name), QVariant::fromValue(row.profileId));
    if (const int at = profile_->findData(QVariant::fromValue(chosen)); at >= 0) profile_->setCurrentIndex(at);
    const int selected = rules_->currentRow();
    const auto& rules = session_.follow.rules();
    rules_->setRowCount(static_cast<int>(rules.size()));
    for (int r = 0; r < static_cast<int>(rules.size()); ++r) {
        const ops::AppProfileRule& rule = rules[static_cast<std::size_t>(r)];
        QString profile = QString::number(rule.profile);
        for (const ProfileRow& row : session_.profiles.rows()) {
            if (row.profileId == rule.profile) profile = QString::fromStdString(row.name);
        }
        const QString cells[kColumns] = {QString::fromStdString(rule.application), QString::fromStdString(rule.title), profile};
        for (int c = 0; c < kColumns; ++c) rules_->setItem(r, c, new QTableWidgetItem(cells[c]));
    }
    rules_->setCurrentCell(std::min(selected, rules_->rowCount() - 1), 0);
    delete_->setEnabled(rules_->currentRow() >= 0);
}

}  // namespace qx9
