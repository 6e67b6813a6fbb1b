#include "app/start_view.h"

#include <QIcon>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include "i18n/language.h"

namespace qx9 {

namespace {

// The keyboard pictures, drawn at this size when the application is built.
constexpr QSize kPictureSize{QX9_PICTURE_WIDTH, QX9_PICTURE_HEIGHT};

// The start view's own lines, in the three languages of the interface.
QString line(int language, int which) {
    static const char* const kTexts[3][4] = {
        {"No keyboard connected. Plug in your HALVORN QX9.", "Click the keyboard to configure it.",
         "A HALVORN QX9 is attached but cannot be opened (%1).",
         "Install the udev rule once (scripts/install-udev-rule.sh as root), then replug the keyboard."},
        {"未连接键盘。请插入 HALVORN QX9。", "点击键盘开始设置。", "已连接 HALVORN QX9，但无法打开（%1）。",
         "请以 root 身份运行一次 scripts/install-udev-rule.sh 安装 udev 规则，然后重新插拔键盘。"},
        {"未連接鍵盤。請插入 HALVORN QX9。", "點擊鍵盤開始設定。", "已連接 HALVORN QX9，但無法開啟（%1）。",
         "請以 root 身分執行一次 scripts/install-udev-rule.sh 安裝 udev 規則，然後重新插拔鍵盤。"},
    };
    const int lang = language == kLanguageSimplifiedChinese ? 1 : language == kLanguageTraditionalChinese ? 2 : 0;
    return QString::fromUtf8(kTexts[lang][which]);
}

}  // namespace

StartView::StartView(QWidget* parent) : QWidget(parent) {
    setObjectName("nodevice_view");
    setAttribute(Qt::WA_StyledBackground);
    keyboard_connect = new QPushButton(this);
    keyboard_connect->setObjectName("keyboard_connect");
    keyboard_connect->setFlat(true);
    keyboard_connect->setIconSize(kPictureSize);
    keyboard_connect->setCursor(Qt::PointingHandCursor);
    connect(keyboard_connect, &QPushButton::clicked, this, &StartView::keyboardClicked);
    title_ = new QLabel("HALVORN QX9", this);
    title_->setObjectName("startview_title");
    title_->setAlignment(Qt::AlignCenter);
    status_ = new QLabel(this);
    status_->setObjectName("startview_status");
    status_->setAlignment(Qt::AlignCenter);
    status_->setWordWrap(true);
    auto* layout = new QVBoxLayout(this);
    layout->addStretch(2);
    layout->addWidget(keyboard_connect, 0, Qt::AlignHCenter);
    layout->addSpacing(18);
    layout->addWidget(title_);
    layout->addWidget(status_);
    layout->addStretch(3);
    setConnected(false);
}

void StartView::setConnected(bool connected) {
    if (connected) accessProblem_.clear();
    // Each picture is read once, when first shown.
    QIcon& picture = connected ? connectedPicture_ : absentPicture_;
    if (picture.isNull()) picture = QIcon(connected ? ":/images/singledevice_keyboard.png" : ":/images/singledevice_keyboard_none.png");
    if (connected != connected_ || keyboard_connect->icon().isNull()) keyboard_connect->setIcon(picture);
    connected_ = connected;
    retranslate(language_);
}

void StartView::setAccessProblem(const QString& node) {
    accessProblem_ = node;
    retranslate(language_);
}

void StartView::retranslate(int language) {
    language_ = language;
    if (!accessProblem_.isEmpty() && !connected_) {
        status_->setText(line(language, 2).arg(accessProblem_) + "\n" + line(language, 3));
    } else {
        status_->setText(connected_ ? line(language, 1) : line(language, 0));
    }
    // A picture button: screen readers read the product and what a click does.
    keyboard_connect->setAccessibleName(QStringLiteral("HALVORN QX9"));
    keyboard_connect->setAccessibleDescription(status_->text());
}

}  // namespace qx9
