#pragma once

#include <QIcon>
#include <QWidget>
#include <array>
#include <map>
#include <memory>

#include "app/app_options.h"
#include "session/keyboard_session.h"

class QButtonGroup;
class QLabel;
class QProgressBar;
class QSocketNotifier;
class QTimer;
class QStackedWidget;
class QToolButton;
class QTranslator;

namespace qx9 {

class ColorPanel;
class KBToolTipsViewController;
class KeyMenuViewController;
class KeyPageView;
class LightingPageView;
class MacroPageView;
class UserLightPageView;
class SettingsPageView;
class StartView;
class UndoButtons;
class VirtualQX9;
struct KeyboardToolTip;

// The main window's controller: it owns the session and the pages, serves the session's
// descriptors and timers from the event loop and mirrors the session's changes into the pages.
class KeyboardViewController : public QWidget, public SessionEvents {
    Q_OBJECT
public:
    explicit KeyboardViewController(const AppOptions& options, QWidget* parent = nullptr);
    ~KeyboardViewController() override;

    KeyboardSession& session() { return *session_; }
    // The pages and the key menu, made when first asked for.
    KeyPageView* keyPage();
    MacroPageView* macroPage();
    LightingPageView* lightPage();
    UserLightPageView* userLightPage();
    SettingsPageView* settingsPage();
    KeyMenuViewController* keyMenu();
    StartView* startView() const { return nodevice_view; }
    ColorPanel* colorPanel() const { return colorPanel_; }
    const std::shared_ptr<VirtualQX9>& virtualKeyboard() const { return virtual_; }

    // The keystroke capture has started: without the keyboards' event nodes it reads only this
    // window's keys, and the notice bar says once how to give it access.
    void keystrokeCaptureStarted(bool readsEventDevices);
    // Started in the tray without the window: what waits for the first frame runs now.
    void startHidden();
    // Plugs the virtual keyboard in or out, as the monitor would report it.
    void plugVirtualKeyboard(bool plugged);

    // SessionEvents
    void changed(SessionAspect aspect) override;
    void warning(const std::string& message, const std::string& informative) override;
    void notice(const std::string& text) override;
    void sending(std::size_t done, std::size_t total, std::size_t waiting) override;
    void showKeyMenu() override;
    void showCustomKeyDialog() override;
    void accessProblem(const std::string& node) override;
    void databaseWritten() override;
    void watchDescriptor(int fd, std::function<void()> readable) override;
    void unwatchDescriptor(int fd) override;
    void runAfter(std::chrono::milliseconds delay, std::function<void()> work) override;

signals:
    // A warning sheet was shown (tests read it instead of clicking it away).
    void warningShown(const QString& message, const QString& informative);
    // A notice was shown in the notice bar.
    void noticeShown(const QString& text);

protected:
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void initViewUI();
    void viewDidAppear();
    void showKeyToolTip(const KeyboardToolTip& tip);
    void placeNotice();
    void applyLanguage();
    void showPage(int pageCode);
    void syncPages();
    template <class Page>
    Page* page(Page*& slot);

    AppOptions options_;
    std::unique_ptr<KeyboardSession> session_;
    std::map<int, QSocketNotifier*> notifiers_;  // the session's descriptors
    QTimer* databaseSettle_ = nullptr;  // a burst of writes is looked at once
    QTranslator* qtTexts_ = nullptr;    // Qt's own dialogs in the interface language
    std::shared_ptr<VirtualQX9> virtual_;
    bool unsharedState_ = false;  // the virtual keyboard's file could not be read: saved on exit
    bool appeared_ = false;
    bool accessHintShown_ = false;
    bool accessHintShowing_ = false;  // the notice bar shows it (and follows the language)

    StartView* nodevice_view = nullptr;
    QLabel* notice_ = nullptr;  // the notice bar under the pages
    QTimer* noticeTimer_ = nullptr;
    QWidget* transfer_ = nullptr;  // a transfer that takes a while: its text and progress
    QLabel* transferText_ = nullptr;
    QProgressBar* progress_ = nullptr;
    QTimer* progressDelay_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    std::map<int, QToolButton*> pageButtons_;
    std::map<int, std::array<QIcon, 2>> pageIcons_;  // each page button's image, and selected
    QToolButton* home_btn = nullptr;
    UndoButtons* undo_ = nullptr;  // undo and redo, and their shortcuts
    KeyPageView* customkey_view = nullptr;
    SettingsPageView* config_view = nullptr;
    MacroPageView* macro_view = nullptr;
    LightingPageView* light_view = nullptr;
    UserLightPageView* userlight_view = nullptr;
    ColorPanel* colorPanel_ = nullptr;  // the one colour dialog of both lighting pages
    KeyMenuViewController* keyboardKeyMenu = nullptr;
    KBToolTipsViewController* keyboardToolTips = nullptr;
};

}  // namespace qx9
