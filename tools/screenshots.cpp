// Renders the window on a virtual QX9 into PNG files for the README:
//   qx9_screenshots OUTPUT_DIR
// Run under a real display server (xvfb-run) so that fonts render as users see them.
#include <QApplication>
#include <QComboBox>
#include <QDir>
#include <QMainWindow>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QToolButton>

#include "app/app_style.h"
#include "app/keyboard_view_controller.h"
#include "i18n/language.h"
#include "pages/key_menu.h"
#include "pages/key_page_view.h"
#include "widgets/keyboard_view.h"

using namespace qx9;

namespace {

void settle() {
    for (int i = 0; i < 20; ++i) {
        QApplication::processEvents();
        QTest::qWait(10);
    }
}

void save(QWidget* w, const QString& path) {
    settle();
    w->grab().save(path);
    std::printf("%s\n", qPrintable(path));
}

// The two lighting pages: an effect with a colour and a direction, and a set with a painted row
// and a few keys.
void saveLightPages(KeyboardSession& s, QWidget* window, const QString& out, const QString& language) {
    s.device.showPage(kPageBacklight);
    s.lighting.lightModeSelectionChanged(9);  // "Scrolling"
    if (s.lighting.light_btn_randomcolor().on) s.lighting.lightRondomColorSwitch();
    s.lighting.colorButtonAction({ColorButtonPress::kLightPreset, 5});
    s.lighting.backlightSleepTime(2);
    save(window, out + "/backlight-page-" + language + ".png");
    s.device.showPage(kPageUserLight);
    if (s.userLights.userlight_datas().empty()) {
        s.userLights.addUserLight();
        s.userLights.addUserLight();
        s.userLights.keysInBand({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});  // 1 … 0
        s.userLights.userLightPresetColor(5);
        for (int key : {16, 30, 31, 32}) s.userLights.keyClicked(key, key != 16);  // W, A, S, D
        s.userLights.userLightPresetColor(1);
        s.userLights.applyUserLightKeyColor();
    }
    save(window, out + "/userlight-page-" + language + ".png");
    s.device.showPage(kPageKeys);
}

}  // namespace

int main(int argc, char** argv) {
    QApplication app(argc, argv);
    applyAppStyle(app);
    const QString out = argc > 1 ? argv[1] : "docs";
    QDir().mkpath(out);
    QTemporaryDir dir;
    AppOptions options;
    options.virtualKeyboard = true;
    options.noMonitor = true;
    options.database = (dir.path() + "/shots.sqlite3").toStdString();

    QMainWindow window;
    auto* controller = new KeyboardViewController(options, &window);
    window.setCentralWidget(controller);
    window.show();
    settle();
    KeyboardSession& s = controller->session();
    s.settings.comboBoxSelectionDidChange(0);  // English first
    save(&window, out + "/start-view-en.png");

    s.device.button_keyboard_connect();
    // A few assignments so that the page shows marks and texts.
    s.keys.keyboardKeyAction("capsLock");
    s.keys.customKeyFuncAction(41);
    s.keys.keyboardKeyAction("escape");
    s.keys.MenuItemMouseUpAction(102);
    s.keys.keyboardKeyAction("a");
    controller->keyMenu()->hide();
    s.profiles.customkey_button_profile(ProfileList::kAdd);
    save(&window, out + "/key-page-en.png");
    saveLightPages(s, &window, out, "en");

    // A macro made as a user would: a key, a delay, a mouse click.
    s.macros.addMacroData();
    s.macros.macroTableSetObjectValue(0, "Build");
    const auto insertKey = [&](std::int64_t usage) {
        s.core.capture.GLOBAL_LAST_PRESS_KEY_SCANCODE = usage;
        s.macros.insertNewEvent();
    };
    s.macros.radio_action_keyboardevent();
    insertKey(0xE0);  // Left Control
    insertKey(0x05);  // B
    s.macros.radio_action_delaytime();
    s.macros.controlTextDidChange(MacroField::kInsertEvent, "120");
    s.macros.insertNewEvent();
    s.macros.radio_action_mouseevent();
    s.macros.insertNewEvent();
    s.macros.addMacroData();
    s.macros.macroTableSelectionChanged(0);
    s.macros.radio_action_keyboardevent();
    const auto savePage = [&](int page, const QString& name) {
        s.device.showPage(page);
        save(&window, out + "/" + name);
        s.device.showPage(kPageKeys);
    };
    savePage(kPageMacros, "macro-page-en.png");
    savePage(kPageSettings, "settings-page-en.png");

    s.settings.comboBoxSelectionDidChange(1);
    s.device.button_action_home();
    save(&window, out + "/start-view-zh-CN.png");
    s.device.button_keyboard_connect();
    save(&window, out + "/key-page-zh-CN.png");
    savePage(kPageMacros, "macro-page-zh-CN.png");
    savePage(kPageSettings, "settings-page-zh-CN.png");
    saveLightPages(s, &window, out, "zh-CN");
    s.settings.comboBoxSelectionDidChange(0);
    return 0;
}
