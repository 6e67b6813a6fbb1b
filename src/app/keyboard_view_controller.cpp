#include "app/keyboard_view_controller.h"

#include <QCursor>
#include <QHBoxLayout>
#include <QLabel>
#include <QLibraryInfo>
#include <QLocale>
#include <QProgressBar>
#include <QShowEvent>
#include <QSocketNotifier>
#include <QStackedWidget>
#include <QTimer>
#include <QToolButton>
#include <QTranslator>
#include <QVBoxLayout>
#include <QWindow>
#include <cstdio>

#include "app/app_resources.h"
#include "app/app_style.h"
#include "app/start_view.h"
#include "app/undo_buttons.h"
#include "virtual/virtual_qx9.h"
#include "i18n/extra_texts.h"
#include "i18n/language.h"
#include "layout/key_maps.h"
#include "pages/color_panel.h"
#include "pages/custom_key_dialog_view.h"
#include "pages/key_menu.h"
#include "pages/key_page_view.h"
#include "pages/macro_page_view.h"
#include "pages/message_box.h"
#include "pages/page_controls.h"
#include "pages/lighting_page_view.h"
#include "pages/settings_page_view.h"
#include "pages/user_light_page_view.h"
#include "widgets/custom_key_func_view.h"
#include "widgets/keyboard_view.h"

namespace qx9 {

namespace {

// How long a notice stays in the notice bar.
constexpr int kNoticeMilliseconds = 8000;
// A transfer shows its progress once it has taken this long.
constexpr int kProgressDelayMilliseconds = 200;
// Writes of the database that come close together are looked at once.
constexpr int kDatabaseSettleMilliseconds = 40;
// How long closing the window waits for the changes still queued for the keyboard.
constexpr std::chrono::milliseconds kCloseWait{10000};
// The room of the pages: the key page's, the largest (its drawn keyboard beside the profile list).
constexpr QSize kPagesMinimumSize{918, 542};
// Between the title and the undo and redo buttons.
constexpr int kUndoSpacing = 12;

struct PageButton {
    int code;
    const char* name;
    const char* icon;
    ExtraText label;  // its tooltip and accessible name
};
constexpr PageButton kPageButtons[] = {
    {kPageKeys, "customkey_btn", "icon_menu_customkey", ExtraText::kPageKeys},
    {kPageMacros, "macro_btn", "icon_menu_macro", ExtraText::kPageMacros},
    {kPageBacklight, "light_btn", "icon_menu_light", ExtraText::kPageBacklight},
    {kPageUserLight, "userlight_btn", "icon_menu_userlight", ExtraText::kPageUserLight},
    {kPageSettings, "config_btn", "icon_menu_config", ExtraText::kPageSettings},
};


// The one of the three interface languages that the system's locale asks for (English for any
// other language).
int systemLanguage() {
    const QLocale locale = QLocale::system();
    if (locale.language() != QLocale::Chinese) return kLanguageEnglish;
    const bool traditional = locale.script() == QLocale::TraditionalChineseScript ||
                             locale.territory() == QLocale::Taiwan || locale.territory() == QLocale::HongKong ||
                             locale.territory() == QLocale::Macau;
    return traditional ? kLanguageTraditionalChinese : kLanguageSimplifiedChinese;
}

}  // namespace

KeyboardViewController::KeyboardViewController(const AppOptions& options, QWidget* parent)
    : QWidget(parent), options_(options) {
    initAppResources();
    setObjectName("KeyboardViewController");
    SessionConfig config;
    config.databaseFile = options.database;
    // Work from the monitor's thread reaches the window through the event loop.
    config.postToMain = [this](std::function<void()> work) {
        QMetaObject::invokeMethod(this, std::move(work), Qt::QueuedConnection);
    };
    // The keyboard is written from a thread of its own: the window never waits for it.
    config.sendOnWorker = options.sendOnWorker;
    session_ = std::make_unique<KeyboardSession>(config, this);
    initViewUI();
}

KeyboardViewController::~KeyboardViewController() {
    session_->device.stopWatching();
    session_->follow.stop();
    // A recording in progress is kept, as Stop would keep it.
    session_->macros.stopRecordingInProgress();
    // What was stored is sent before the window goes, within a bound.
    if (!session_->core.finishSending(kCloseWait)) {
        const std::size_t dropped = session_->core.abandonSending();
        std::fprintf(stderr, "halvorn-qx9: the keyboard did not take %zu change(s) in time; they are stored and reach it "
                             "with the next change or connection\n", dropped);
    }
    if (virtual_ && unsharedState_) {
        std::string error;
        virtual_->saveState(options_.virtualState, error);
    }
    // The session gives back its descriptors while this window can still take them.
    session_.reset();
}

void KeyboardViewController::initViewUI() {
    auto* header = new QWidget(this);
    header->setObjectName("header");
    header->setAttribute(Qt::WA_StyledBackground);
    auto* headerLayout = new QHBoxLayout(header);
    headerLayout->setContentsMargins(16, 8, 16, 8);
    home_btn = new QToolButton(header);
    home_btn->setObjectName("home_btn");
    home_btn->setIcon(QIcon(":/images/icon_home.svg"));
    home_btn->setIconSize(QSize(22, 22));
    home_btn->setCursor(Qt::PointingHandCursor);
    connect(home_btn, &QToolButton::clicked, this, [this] { session_->device.button_action_home(); });
    auto* title = new QLabel("HALVORN QX9", header);
    title->setObjectName("header_title");
    headerLayout->addWidget(home_btn);
    headerLayout->addWidget(title);
    headerLayout->addSpacing(kUndoSpacing);
    undo_ = new UndoButtons(*session_, this, header);
    headerLayout->addWidget(undo_);
    headerLayout->addStretch();
    // A transfer that waits or takes a while: what is being done and how far it is, in the
    // header, where it takes no room from the pages.
    transfer_ = new QWidget(header);
    transfer_->setObjectName("transfer_bar");
    auto* transferLayout = new QHBoxLayout(transfer_);
    transferLayout->setContentsMargins(0, 0, 16, 0);
    transferText_ = new QLabel(transfer_);
    transferText_->setObjectName("transfer_text");
    progress_ = new QProgressBar(transfer_);
    progress_->setObjectName("transfer_progress");
    progress_->setTextVisible(false);
    progress_->setFixedSize(80, 6);
    transferLayout->addWidget(transferText_);
    transferLayout->addWidget(progress_);
    transfer_->hide();
    headerLayout->addWidget(transfer_);
    for (const PageButton& p : kPageButtons) {
        auto* b = new QToolButton(header);
        b->setObjectName(p.name);
        b->setIconSize(QSize(26, 26));
        b->setCursor(Qt::PointingHandCursor);
        b->setAutoRaise(true);
        const int code = p.code;
        connect(b, &QToolButton::clicked, this, [this, code] { showPage(code); });
        pageButtons_[p.code] = b;
        headerLayout->addWidget(b);
    }

    // The pages are made when first shown: the key page's room is kept from the start, so that
    // the window neither grows nor jumps when one of them is made.
    pages_ = new QStackedWidget(this);
    pages_->setMinimumSize(kPagesMinimumSize);
    colorPanel_ = new ColorPanel(*session_, this);

    auto* body = new QStackedWidget(this);
    body->setObjectName("body");
    nodevice_view = new StartView(body);
    connect(nodevice_view, &StartView::keyboardClicked, this, [this] { session_->device.button_keyboard_connect(); });
    body->addWidget(nodevice_view);
    body->addWidget(pages_);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(header);
    layout->addWidget(body, 1);
    // Notices that need no answer (the keyboard did not take a change) show here for a while.
    notice_ = new QLabel(this);
    notice_->setObjectName("notice_label");
    notice_->setWordWrap(true);
    notice_->setContentsMargins(16, 8, 16, 8);
    // It lies over the foot of the window instead of taking room from the pages, so that nothing
    // moves when it comes or goes.
    notice_->setAttribute(Qt::WA_StyledBackground);
    notice_->installEventFilter(this);  // a click puts it away
    notice_->hide();
    noticeTimer_ = new QTimer(this);
    noticeTimer_->setSingleShot(true);
    noticeTimer_->setInterval(kNoticeMilliseconds);
    connect(noticeTimer_, &QTimer::timeout, notice_, &QLabel::hide);
    progressDelay_ = new QTimer(this);
    progressDelay_->setSingleShot(true);
    progressDelay_->setInterval(kProgressDelayMilliseconds);
    connect(progressDelay_, &QTimer::timeout, transfer_, &QWidget::show);
    databaseSettle_ = new QTimer(this);
    databaseSettle_->setSingleShot(true);
    databaseSettle_->setInterval(kDatabaseSettleMilliseconds);
    connect(databaseSettle_, &QTimer::timeout, this, [this] { session_->device.databaseWritten(); });

    qtTexts_ = new QTranslator(this);
    applyLanguage();
    syncPages();
}

// A page is made the first time it is asked for, in the current language and with the session's state.
template <class Page>
Page* KeyboardViewController::page(Page*& slot) {
    if (slot) return slot;
    slot = new Page(*session_, pages_);
    pages_->addWidget(slot);
    slot->retranslate();
    if constexpr (requires { slot->sync(); }) slot->sync();
    return slot;
}

KeyPageView* KeyboardViewController::keyPage() {
    if (customkey_view) return customkey_view;
    page(customkey_view);
    customkey_view->keyboard()->showingHomePage = [this] { return session_->device.showingHomePage(); };
    connect(customkey_view->keyboard(), &KeyboardView::ShowKeyboardToolTipWnd, this, &KeyboardViewController::showKeyToolTip);
    customkey_view->syncKeys();
    customkey_view->syncPalette();
    customkey_view->syncLayerButtons();
    customkey_view->syncFnModeButtons();
    customkey_view->syncProfiles();
    return customkey_view;
}

MacroPageView* KeyboardViewController::macroPage() { return page(macro_view); }
LightingPageView* KeyboardViewController::lightPage() { return page(light_view); }
UserLightPageView* KeyboardViewController::userLightPage() { return page(userlight_view); }
SettingsPageView* KeyboardViewController::settingsPage() { return page(config_view); }

KeyMenuViewController* KeyboardViewController::keyMenu() {
    if (keyboardKeyMenu) return keyboardKeyMenu;
    keyboardKeyMenu = new KeyMenuViewController(this);
    connect(keyboardKeyMenu, &KeyMenuViewController::MenuItemMouseUpAction, this, [this](int menuid) {
        keyboardKeyMenu->hide();
        session_->keys.MenuItemMouseUpAction(menuid);
    });
    return keyboardKeyMenu;
}

bool KeyboardViewController::eventFilter(QObject* watched, QEvent* event) {
    if (watched == notice_ && event->type() == QEvent::MouseButtonPress) notice_->hide();
    // The window's first frame is drawn while its first expose is handled; what waited for it
    // runs next.
    if (event->type() == QEvent::Expose && watched == window()->windowHandle() && window()->windowHandle()->isExposed()) {
        watched->removeEventFilter(this);
        QTimer::singleShot(0, this, &KeyboardViewController::viewDidAppear);
    }
    return QWidget::eventFilter(watched, event);
}

void KeyboardViewController::placeNotice() {
    const int h = notice_->heightForWidth(width());
    notice_->setGeometry(0, height() - h, width(), h);
}

void KeyboardViewController::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    placeNotice();
}

void KeyboardViewController::showEvent(QShowEvent* event) {
    QWidget::showEvent(event);
    if (appeared_) return;
    appeared_ = true;
    // The keyboards are looked for once the window has been drawn the first time: it appears
    // without waiting for them.
    QWindow* handle = window()->windowHandle();
    if (handle && !handle->isExposed()) {
        handle->installEventFilter(this);
    } else {
        QTimer::singleShot(0, this, &KeyboardViewController::viewDidAppear);
    }
}

void KeyboardViewController::showKeyToolTip(const KeyboardToolTip& tip) {
    if (tip.show != 1) {
        if (keyboardToolTips) keyboardToolTips->hide();
        return;
    }
    if (keyboardKeyMenu) keyboardKeyMenu->hide();
    if (!keyboardToolTips) keyboardToolTips = new KBToolTipsViewController(this);
    const QPoint at = customkey_view->keyboard()->parentWidget()->mapToGlobal(QPointF(tip.x - 20, tip.y + 8).toPoint());
    const KeyNameEntry* e = G_KB_SuperKeyNameMap.find(tip.keyDesc);
    keyboardToolTips->showAt(at, QString::fromStdString(e ? e->full_name : tip.keyDesc), QString::fromStdString(tip.keyMacro));
}

void KeyboardViewController::startHidden() {
    if (appeared_) return;
    appeared_ = true;
    QTimer::singleShot(0, this, &KeyboardViewController::viewDidAppear);
}

void KeyboardViewController::runAfter(std::chrono::milliseconds delay, std::function<void()> work) {
    QTimer::singleShot(delay, this, [work = std::move(work)] { work(); });
}

void KeyboardViewController::viewDidAppear() {
    session_->follow.start();
    // udev's news arrive through the event loop, on this thread.
    if (!options_.noMonitor) session_->device.startMonitor();
    if (options_.virtualKeyboard) {
        virtual_ = std::make_shared<VirtualQX9>();
        std::string error;
        // A state file is the keyboard of every program that names it (qx9ctl --device
        // virtual:FILE too): each transaction reads it and writes it back. One that cannot be
        // read is not shared: the keyboard starts empty and is saved over it on exit.
        if (!options_.virtualState.empty() && !virtual_->shareState(options_.virtualState, error)) {
            virtual_->setMemory({});
            unsharedState_ = true;
        }
        plugVirtualKeyboard(true);
    }
}

void KeyboardViewController::watchDescriptor(int fd, std::function<void()> readable) {
    unwatchDescriptor(fd);
    auto* notifier = new QSocketNotifier(fd, QSocketNotifier::Read, this);
    connect(notifier, &QSocketNotifier::activated, this, [readable = std::move(readable)] { readable(); });
    notifiers_[fd] = notifier;
}

void KeyboardViewController::unwatchDescriptor(int fd) {
    const auto it = notifiers_.find(fd);
    if (it == notifiers_.end()) return;
    it->second->setEnabled(false);
    it->second->deleteLater();
    notifiers_.erase(it);
}

void KeyboardViewController::accessProblem(const std::string& node) {
    nodevice_view->setAccessProblem(QString::fromStdString(node));
}

void KeyboardViewController::databaseWritten() { databaseSettle_->start(); }

void KeyboardViewController::plugVirtualKeyboard(bool plugged) {
    if (!virtual_) return;
    if (plugged) session_->device.arrived(virtualQX9Record(virtual_));
    else session_->device.deviceDisconnected(virtualQX9Record(virtual_));
}

void KeyboardViewController::showPage(int pageCode) {
    session_->device.showPage(pageCode);
}

void KeyboardViewController::syncPages() {
    const int view = session_->device.viewType();
    const bool home = session_->device.showingHomePage();
    if (!home) {
        QWidget* page = nullptr;
        switch (view) {
            case kPageKeys: page = keyPage(); break;
            case kPageMacros: page = macroPage(); break;
            case kPageBacklight: page = lightPage(); break;
            case kPageUserLight: page = userLightPage(); break;
            default: page = settingsPage(); break;
        }
        pages_->setCurrentWidget(page);
    }
    for (const PageButton& p : kPageButtons) {
        const bool selected = p.code == view;
        // Each image is read once, when first shown.
        QIcon& icon = pageIcons_[p.code][selected ? 1 : 0];
        if (icon.isNull()) icon = QIcon(QString(":/images/%1%2.svg").arg(p.icon, selected ? "_check" : ""));
        if (pageButtons_[p.code]->icon().cacheKey() != icon.cacheKey()) pageButtons_[p.code]->setIcon(icon);
        restyle(pageButtons_[p.code], "selected", selected);
    }
    auto* body = static_cast<QStackedWidget*>(nodevice_view->parentWidget());
    body->setCurrentWidget(home ? static_cast<QWidget*>(nodevice_view) : pages_);
    for (auto& [code, b] : pageButtons_) b->setEnabled(!home);
    nodevice_view->setConnected(session_->device.keyboardConnected());
}

void KeyboardViewController::applyLanguage() {
    // Qt's own texts (the colour dialog) from the Qt translations the system has, when it has them.
    QCoreApplication::removeTranslator(qtTexts_);
    const char* qtLocale = curLanguage == kLanguageSimplifiedChinese    ? "zh_CN"
                           : curLanguage == kLanguageTraditionalChinese ? "zh_TW"
                                                                        : nullptr;
    if (qtLocale && qtTexts_->load(QString("qtbase_") + qtLocale, QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        QCoreApplication::installTranslator(qtTexts_);
    }
    if (QWidget* w = window()) w->setWindowTitle(QString::fromStdString(session_->device.windowTitle()));
    // The window's own words (the header, the start view, the notice) are in the system's
    // language until a keyboard's stored language applies; the pages follow the interface language.
    const int shown = session_->device.loaded() ? curLanguage : systemLanguage();
    setInterfaceFont(shown);
    const auto name = [shown](QWidget* w, ExtraText id) {
        const QString t = QString::fromStdString(extraText(id, shown));
        w->setToolTip(t);
        w->setAccessibleName(t);
    };
    name(home_btn, ExtraText::kPageHome);
    undo_->retranslate(shown);
    for (const PageButton& p : kPageButtons) name(pageButtons_[p.code], p.label);
    notice_->setAccessibleName(QString::fromStdString(extraText(ExtraText::kNotice, shown)));
    if (accessHintShowing_ && notice_->isVisible()) notice_->setText(QString::fromStdString(extraText(ExtraText::kInputAccessHint, shown)));
    nodevice_view->retranslate(shown);
    // Room for the text with a count of waiting changes, so that the header keeps it whole at the
    // window's smallest size.
    transferText_->setMinimumWidth(transferText_->fontMetrics().horizontalAdvance(QString::fromStdString(extraText(ExtraText::kSending, shown)) + " (+99)"));
    if (customkey_view) customkey_view->retranslate();
    if (config_view) config_view->retranslate();
    if (macro_view) macro_view->retranslate();
    if (light_view) light_view->retranslate();
    if (userlight_view) userlight_view->retranslate();
}

void KeyboardViewController::changed(SessionAspect aspect) {
    switch (aspect) {
        case SessionAspect::Connection:
            nodevice_view->setConnected(session_->device.keyboardConnected());
            if (QWidget* w = window()) w->setWindowTitle(QString::fromStdString(session_->device.windowTitle()));
            break;
        case SessionAspect::Page:
            syncPages();
            undo_->sync();
            break;
        // A page not made yet reads everything when it is.
        case SessionAspect::KeyView: if (customkey_view) customkey_view->syncKeys(); break;
        case SessionAspect::Palette: if (customkey_view) customkey_view->syncPalette(); break;
        case SessionAspect::FnLayer: if (customkey_view) customkey_view->syncLayerButtons(); break;
        case SessionAspect::FnMode: if (customkey_view) customkey_view->syncFnModeButtons(); break;
        case SessionAspect::ProfileList: if (customkey_view) customkey_view->syncProfiles(); break;
        case SessionAspect::Settings: if (config_view) config_view->sync(); break;
        case SessionAspect::Language:
            applyLanguage();
            if (config_view) config_view->sync();
            break;
        case SessionAspect::Macros:
            if (macro_view) macro_view->sync();
            undo_->syncShortcuts();  // a recording or the key to insert takes the keys
            break;
        case SessionAspect::LightModes:
            if (light_view) light_view->sync();
            colorPanel_->sync();
            break;
        case SessionAspect::UserLights: if (userlight_view) userlight_view->sync(); break;
        case SessionAspect::Desktop: if (config_view) config_view->sync(); break;
        case SessionAspect::History: undo_->sync(); break;
    }
}

void KeyboardViewController::warning(const std::string& message, const std::string& informative) {
    const QString m = QString::fromStdString(message), i = QString::fromStdString(informative);
    emit warningShown(m, i);
    openWarning(this, m, i);
}

void KeyboardViewController::notice(const std::string& text) {
    accessHintShowing_ = false;
    const QString t = QString::fromStdString(text);
    notice_->setText(t);
    placeNotice();
    notice_->show();
    notice_->raise();
    noticeTimer_->start();
    emit noticeShown(t);
}

void KeyboardViewController::sending(std::size_t done, std::size_t total, std::size_t waiting) {
    if (total == 0) {
        progressDelay_->stop();
        transfer_->hide();
        return;
    }
    if (!transfer_->isVisible() && !progressDelay_->isActive()) progressDelay_->start();
    progress_->setRange(0, static_cast<int>(total));
    progress_->setValue(static_cast<int>(done));
    QString text = QString::fromStdString(extraText(ExtraText::kSending));
    if (waiting > 0) text += QStringLiteral(" (+%1)").arg(waiting);
    transferText_->setText(text);
    progress_->setAccessibleName(text);
}

void KeyboardViewController::keystrokeCaptureStarted(bool readsEventDevices) {
    if (readsEventDevices || accessHintShown_) return;
    accessHintShown_ = true;
    // The application's own words: in the user's language until the stored one applies.
    notice(extraText(ExtraText::kInputAccessHint, session_->device.loaded() ? curLanguage : systemLanguage()));
    accessHintShowing_ = true;
}

// At the pointer; under the key when it was pressed elsewhere (through the accessibility tree).
void KeyboardViewController::showKeyMenu() {
    const KeyboardView* kb = keyPage()->keyboard();
    const QRect key = kb->selectKeyItem() == -1 ? QRect() : kb->keyRect(kb->selectKeyItem());
    const bool atPointer = key.isNull() || key.contains(kb->mapFromGlobal(QCursor::pos()));
    keyMenu()->showAt(atPointer ? QCursor::pos() : kb->mapToGlobal(key.bottomLeft()));
}

void KeyboardViewController::showCustomKeyDialog() {
    auto* dialog = new CustomKeyViewController(*session_, window());
    dialog->setAttribute(Qt::WA_DeleteOnClose);
    dialog->open();
}

}  // namespace qx9
