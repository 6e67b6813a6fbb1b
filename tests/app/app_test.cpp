// The window on a virtual QX9, walked as a user would: synthesized clicks and keys, then the
// database, the keyboard's memory and the widgets checked.
#include <sstream>
#include <thread>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include "app/app_delegate.h"
#include "app/app_style.h"
#include "app/keystroke_capture.h"
#include "app/single_instance.h"
#include "app/start_view.h"
#include "cli/ctl.h"
#include "virtual/virtual_qx9_memory.h"
#include "i18n/extra_texts.h"
#include "pages/custom_key_dialog_view.h"
#include "pages/key_menu.h"
#include "pages/key_page_view.h"
#include "pages/macro_page_view.h"
#include "virtual_window.h"
#include "widgets/custom_key_func_view.h"
#include "widgets/keyboard_view.h"

using namespace qx9;

class AppTest : public QObject, test::WindowHarness {
    Q_OBJECT

    void clickKey(int layoutIndex) {
        KeyboardView* kb = controller_->keyPage()->keyboard();
        const QPoint p = kb->keyRect(layoutIndex).center();
        QTest::mouseMove(kb, p);
        QTest::mousePress(kb, Qt::LeftButton, Qt::NoModifier, p);
        QTest::mouseRelease(kb, Qt::LeftButton, Qt::NoModifier, p);
        QCoreApplication::processEvents();
    }

    // The macro page with a new macro, as a user reaches it.
    MacroPageView* newMacro() {
        enterPages();
        click("macro_btn");
        click("macro_btn_newmacro");
        return controller_->macroPage();
    }
    // A key as the window system delivers it: X11 key code = evdev code + 8.
    void key(int evdev, bool press, ulong time = 0) {
        QKeyEvent e(press ? QEvent::KeyPress : QEvent::KeyRelease, 0, Qt::NoModifier, quint32(evdev + 8), 0, 0);
        e.setTimestamp(time);
        QApplication::sendEvent(controller_->macroPage()->recordTable(), &e);
        QCoreApplication::processEvents();
    }

    QStringList events() {
        QStringList rows;
        for (QListWidget* t = controller_->macroPage()->recordTable(); rows.size() < t->count();) rows << t->item(rows.size())->text();
        return rows;
    }

    std::unique_ptr<KeystrokeCapture> capture_;

private slots:
    void initTestCase() { applyAppStyle(*qApp); }  // the fonts and paddings users see

    void init() {
        openWindow();
        capture_ = std::make_unique<KeystrokeCapture>(controller_->session().input);
        capture_->start();
    }

    void cleanup() {
        capture_.reset();
        deleteWindow();
    }

    void startViewPagesAndLanguage() {
        QVERIFY(controller_->session().device.showingHomePage());
        QVERIFY(controller_->startView()->isVisible());
        enterPages();
        QVERIFY(!controller_->session().device.showingHomePage());
        QVERIFY(controller_->keyPage()->isVisible());
        QPushButton* top = child<QPushButton>("customkey_btn_toplayer");
        QCOMPARE(top->text(), QString("Top Layer"));
        QTest::mouseClick(child<QToolButton>("config_btn"), Qt::LeftButton);
        QCOMPARE(controller_->session().device.viewType(), int(kPageSettings));
        chooseLanguage(1);
        QCOMPARE(top->text(), QString::fromStdString(CHSLanguage::getLan(90)));
        chooseLanguage(0);
        QCOMPARE(top->text(), QString("Top Layer"));
        QTest::mouseClick(child<QToolButton>("home_btn"), Qt::LeftButton);
        QTRY_VERIFY(controller_->startView()->isVisible());
    }

    void keyTextsFitTheirKeysAtTheMinimumSize() {
        enterPages();
        window_->resize(window_->minimumSizeHint());
        KeyboardView* kb = controller_->keyPage()->keyboard();
        for (int language = 0; language < 3; ++language) {
            chooseLanguage(language);
            clickKey(33 + language);  // disabled, the longest text the menu gives; one spot twice would be a double click
            QTRY_VERIFY(controller_->keyMenu()->isVisible());
            QTest::mouseClick(controller_->keyMenu()->findChild<QPushButton*>("menuitem_diablekey"), Qt::LeftButton);
            for (int i = 0; i < kb->keyCount(); ++i) {
                const KeyLabel label = kb->fittedLabel(i);
                QVERIFY2(!label.elided && QString(label.text).remove(' ').remove('\n') == kb->keyMacro(i).remove(' '), qPrintable(kb->keyMacro(i)));
            }
        }
        CustomKeyFuncView* palette = controller_->keyPage()->palette();
        for (int i = 0; i < int(palette->keys().size()); ++i) QVERIFY(!palette->fittedLabel(i).elided);
    }

    void keysInTheAccessibilityTree() {
        enterPages();
        QAccessibleInterface* keys = QAccessible::queryAccessibleInterface(controller_->keyPage()->keyboard());
        QCOMPARE(keys->childCount(), controller_->keyPage()->keyboard()->keyCount());
        QAccessibleInterface* a = keys->child(30);
        QCOMPARE(a->text(QAccessible::Name), "A");
        QCOMPARE(a->text(QAccessible::Description), QString());  // nothing more than its name
        a->actionInterface()->doAction(QAccessibleActionInterface::pressAction());  // as a click: the key menu
        QTRY_VERIFY(controller_->keyMenu()->isVisible() && a->state().checked);
        QTest::mouseClick(controller_->keyMenu()->findChild<QPushButton*>("menuitem_diablekey"), Qt::LeftButton);
        QTRY_COMPARE(a->text(QAccessible::Description), QString::fromStdString(localizedText(102)));
        QAccessibleInterface* funcs = QAccessible::queryAccessibleInterface(controller_->keyPage()->palette());
        QCOMPARE(funcs->childCount(), int(controller_->keyPage()->palette()->keys().size()));
        for (int i = 0; i < funcs->childCount(); ++i) QVERIFY(!funcs->child(i)->text(QAccessible::Name).isEmpty());
        QCOMPARE(funcs->child(0)->text(QAccessible::Name), "Escape");
    }

    void customDialogCapturesShiftAndOne() {  // by keyboard alone
        enterPages();
        KeyboardView* kb = controller_->keyPage()->keyboard();
        kb->setFocus();
        QTest::keyClick(kb, Qt::Key_Space);  // the focused key: Escape
        QTRY_VERIFY(controller_->keyMenu()->isVisible());
        for (Qt::Key key : {Qt::Key_Down, Qt::Key_Down, Qt::Key_Return}) {  // the third item, "Custom Function"
            QTest::keyClick(controller_->keyMenu()->focusWidget(), key);
        }
        CustomKeyViewController* dialog = nullptr;
        QTRY_VERIFY((dialog = window_->findChild<CustomKeyViewController*>()) != nullptr);
        QTRY_VERIFY(dialog->isVisible());
        dialog->findChild<QComboBox*>("key_functiontype")->setCurrentIndex(1); QCoreApplication::processEvents();  // "Keyboard Function"
        QTest::keyClick(dialog->findChild<QPushButton*>("keyfunc_capture"), Qt::Key_Space);  // from the keyboard
        QLineEdit* target = dialog->findChild<QLineEdit*>("keyfunc_edit");
        // Left Shift (evdev 42) and 1 (evdev 2), as the window system reports them: code + 8.
        QKeyEvent shift(QEvent::KeyPress, Qt::Key_Shift, Qt::ShiftModifier, 50, 0, 0);
        QApplication::sendEvent(target, &shift);
        QKeyEvent one(QEvent::KeyPress, Qt::Key_Exclam, Qt::ShiftModifier, 10, 0, 0);
        QApplication::sendEvent(target, &one);
        QCOMPARE(target->text(), QString("Left Shift + 1"));
        for (auto [key, code] : {std::pair{Qt::Key_Exclam, 10}, {Qt::Key_Shift, 50}}) {  // released: the capture ends
            QKeyEvent up(QEvent::KeyRelease, key, Qt::NoModifier, quint32(code), 0, 0);
            QApplication::sendEvent(target, &up);
        }
        QTRY_VERIFY(dialog->findChild<QPushButton*>("key_savedatabtn")->hasFocus());
        QTest::keyClick(dialog->findChild<QPushButton*>("key_savedatabtn"), Qt::Key_Space);
        QTRY_COMPARE(controller_->keyPage()->keyboard()->keyMacro(0), QString("Left Shift + 1"));
    }

    void resetConfirmationsDoNothingOnReturnOrEsc() {
        enterPages();
        clickKey(32);  // another key than the last test's: two clicks on one spot would make a double click
        QTest::mouseClick(controller_->keyMenu()->findChild<QPushButton*>("menuitem_diablekey"), Qt::LeftButton);
        const std::string disabled = sql("SELECT count(*) FROM t_keyprofile");
        QTest::mouseClick(child<QToolButton>("config_btn"), Qt::LeftButton);
        for (const char* reset : {"btn_resetmousedata", "btn_resetalldata"}) {
            for (Qt::Key key : {Qt::Key_Return, Qt::Key_Escape}) {
                auto* button = child<QAbstractButton>(reset);
                QTimer::singleShot(0, [key] { QTest::keyClick(QApplication::activeModalWidget(), key); });
                QTest::mouseClick(button, Qt::LeftButton);
                QCOMPARE(sql("SELECT count(*) FROM t_keyprofile"), disabled);
            }
        }
    }

    void paletteClickClosesTheKeyMenuAndActs() {
        enterPages();
        clickKey(31);
        KeyMenuViewController* menu = controller_->keyMenu();
        QTRY_VERIFY(menu->isVisible());
        CustomKeyFuncView* palette = controller_->keyPage()->palette();
        const QPoint aim = menu->mapFromGlobal(palette->mapToGlobal(palette->keyRect(20).center()));
        QTest::mouseClick(menu, Qt::LeftButton, {}, aim);  // lands outside the menu, on the palette
        QVERIFY(!menu->isVisible());
        QCOMPARE(sql("SELECT count(*) FROM t_keyprofile"), std::string("1"));
    }

    void headerTrayAndAccessHint() {
        enterPages();
        click("macro_btn");
        for (const char* name : {"home_btn", "customkey_btn", "macro_btn", "light_btn", "userlight_btn", "config_btn"}) {
            auto* b = child<QToolButton>(name);
            QVERIFY(!b->toolTip().isEmpty() && b->toolTip() == QAccessible::queryAccessibleInterface(b)->text(QAccessible::Name));
            QCOMPARE(b->property("selected").toBool(), QByteArray(name) == "macro_btn");
        }
        QSignalSpy notices(controller_, &KeyboardViewController::noticeShown);
        controller_->keystrokeCaptureStarted(false);
        controller_->keystrokeCaptureStarted(false);
        QCOMPARE(notices.count(), 1);  // once, and only without event devices to read
        AppDelegate tray;
        tray.setFollowUser(controller_->session().follow);
        bool shown = false;
        tray.showWindow = [&] { shown = true; };
        tray.createButtonStatusBar();
        curLanguage = kLanguageSimplifiedChinese;
        tray.statusItemActivated();  // a left click
        QTRY_VERIFY(tray.statusMenu()->isVisible());
        // The profiles (the one in force checked), lights off, the window, quit; in the language.
        QStringList texts;
        for (QAction* a : tray.statusMenu()->actions()) texts << (a->isSeparator() ? "-" : a->text()) + (a->isChecked() ? "*" : "");
        const auto text = [](ExtraText id) { return QString::fromStdString(extraText(id)); };
        QCOMPARE(texts, (QStringList{"Configuration File 1*", "-", text(ExtraText::kLightsOff), "-", text(ExtraText::kShowWindow),
                                     text(ExtraText::kQuit)}));
        tray.statusMenu()->actions().at(2)->trigger();
        QVERIFY(controller_->session().follow.lightsOff());
        tray.statusMenu()->actions().at(4)->trigger();
        QVERIFY(shown);
        tray.statusMenu()->hide();
        controller_->session().follow.setLightsOff(false);
    }

    // A second start on the same file reaches the first window; a socket left behind by a window
    // that was killed does not stop the next one.
    void oneWindowPerDatabase() {
        QTemporaryDir dir;
        const QString file = dir.filePath("one.sqlite3");
        QByteArray path;
        {
            SingleInstance first(file);
            path = first.path();
            QVERIFY(!first.askRunningWindow());
            QVERIFY(first.serve(window_));
            struct stat st {};
            QVERIFY(::stat(path.constData(), &st) == 0 && (st.st_mode & (S_IRWXG | S_IRWXO)) == 0);
            QSignalSpy asked(&first, &SingleInstance::asked);
            QVERIFY(SingleInstance(file).askRunningWindow());
            QTRY_COMPARE(asked.count(), 1);
            QVERIFY(!SingleInstance(dir.filePath("other.sqlite3")).askRunningWindow());
        }
        QVERIFY(::access(path.constData(), F_OK) != 0);
        sockaddr_un address {};
        address.sun_family = AF_UNIX;
        std::memcpy(address.sun_path, path.constData(), std::size_t(path.size()));
        const int stale = ::socket(AF_UNIX, SOCK_STREAM, 0);
        QVERIFY(::bind(stale, reinterpret_cast<sockaddr*>(&address), sizeof address) == 0);
        ::close(stale);
        SingleInstance next(file);
        QVERIFY(!next.askRunningWindow());
        QVERIFY(next.serve(window_));
        QVERIFY(SingleInstance(file).askRunningWindow());
    }

    void nothingCutOffAtTheMinimumSize() {
        const QSize beforeAnyPage = window_->minimumSizeHint();  // pages are made as they are shown
        enterPages();
        // The transfer in the header too: another program holds the keyboard throughout.
        QVERIFY(controller_->virtualKeyboard()->lockExclusive(std::chrono::seconds(1)));
        QTest::mouseClick(child<QToolButton>("light_btn"), Qt::LeftButton);
        QTRY_VERIFY(child<QWidget>("transfer_bar")->isVisible());
        for (int language = 0; language < 3; ++language) {
            chooseLanguage(language);
            for (const char* page : {"customkey_btn", "macro_btn", "light_btn", "userlight_btn", "config_btn"}) {
                QTest::mouseClick(child<QToolButton>(page), Qt::LeftButton);
                window_->resize(window_->minimumSizeHint());
                QApplication::processEvents();
                // Every text shows whole: buttons with room for their frame, one-line labels.
                for (QWidget* w : controller_->findChildren<QWidget*>()) {
                    auto* label = qobject_cast<QLabel*>(w);
                    auto* button = qobject_cast<QAbstractButton*>(w);
                    const QString text = button ? button->text() : label && !label->wordWrap() ? label->text() : QString();
                    if (text.isEmpty() || !w->isVisible()) continue;
                    const int needed = w->fontMetrics().horizontalAdvance(text) + (button ? 12 : 0);
                    const int room = button ? w->width() : w->contentsRect().width();
                    QVERIFY2(room >= needed, qPrintable(QString("%1 in language %2: %3 < %4").arg(w->objectName()).arg(language).arg(room).arg(needed)));
                }
            }
        }
        controller_->virtualKeyboard()->unlock();
        QCOMPARE(window_->minimumSizeHint(), beforeAnyPage);
    }

    // Ctrl+Z undoes, Ctrl+Y and Ctrl+Shift+Z redo, anywhere in the window; not while the macro
    // page takes the keys pressed as its own.
    void undoShortcuts_data() {
        QTest::addColumn<QString>("control");  // clicked on the macro page first
        QTest::addColumn<bool>("keysFree");
        QTest::newRow("keys free") << "delayevent_radiobutton" << true;
        QTest::newRow("a key to insert") << "keyboardevent_radiobutton" << false;
        QTest::newRow("recording") << "record_button" << false;
    }

    void undoShortcuts() {
        QFETCH(QString, control);
        QFETCH(bool, keysFree);
        newMacro();
        click(qPrintable(control));
        window_->activateWindow();
        QVERIFY(QTest::qWaitForWindowActive(window_));
        auto* undo = child<QToolButton>("undo_btn");
        QTRY_COMPARE(undo->toolTip(), QString("Undo: add macro Macro1"));
        QAccessibleInterface* a = QAccessible::queryAccessibleInterface(undo);
        QVERIFY(a->role() == QAccessible::Button && a->text(QAccessible::Name) == "Undo" && undo->focusPolicy() & Qt::TabFocus);
        const struct { Qt::KeyboardModifiers modifiers; Qt::Key key; const char* macros; } presses[] = {
            {Qt::ControlModifier, Qt::Key_Z, "0"}, {Qt::ControlModifier, Qt::Key_Y, "1"},
            {Qt::ControlModifier, Qt::Key_Z, "0"}, {Qt::ControlModifier | Qt::ShiftModifier, Qt::Key_Z, "1"}};
        for (const auto& p : presses) {
            QTest::keyClick(window_, p.key, p.modifiers);
            QCoreApplication::processEvents();
            QCOMPARE(sql("SELECT count(*) FROM t_macro_data"), keysFree ? p.macros : "1");
            if (!keysFree) return;
            QCOMPARE(controller_->macroPage()->findChild<QListWidget*>("macro_tableview")->count(), std::stoi(p.macros));
        }
        QTRY_COMPARE(child<QToolButton>("redo_btn")->toolTip(), QString("Nothing to redo"));
    }

    void followsAScriptOnTheSameDatabase();
    void aTransferThatTakesAWhileShowsItsProgress();
    void closingSendsWhatIsQueuedAndAFailedBlockIsSaid();

    void macroRecording_data() {
        QTest::addColumn<QString>("mode");
        QTest::addColumn<QStringList>("recorded");
        QTest::addColumn<bool>("closeWindow");  // closed while recording instead of Stop
        QTest::addColumn<bool>("byKeyboard");   // Record and Stop chosen with Space
        const QStringList withDelays{"[KEY DOWN] Left Shift", "[Delay:ms]", "[KEY DOWN] A", "[Delay:ms]", "[KEY UP] A"};
        QTest::newRow("recording delay") << "recorddelay_radiobutton" << withDelays << false << false;
        QTest::newRow("no delay") << "nodelay_radiobutton" << QStringList{"[KEY DOWN] Left Shift", "[KEY DOWN] A", "[KEY UP] A"} << false << false;
        QTest::newRow("default delay") << "defaultdelay_radiobutton" << QStringList{"[KEY DOWN] Left Shift", "[Delay:ms] 30", "[KEY DOWN] A", "[Delay:ms] 30", "[KEY UP] A"} << false << false;
        QTest::newRow("window closed") << "recorddelay_radiobutton" << withDelays << true << false;
        QTest::newRow("from the keyboard") << "recorddelay_radiobutton" << withDelays << false << true;
    }

    void macroRecording() {
        QFETCH(QString, mode);
        QFETCH(QStringList, recorded);
        QFETCH(bool, closeWindow);
        QFETCH(bool, byKeyboard);
        newMacro();
        click(qPrintable(mode));
        if (mode.startsWith("default")) QTest::keyClicks(child<QLineEdit>("delaytime_edit"), "30");
        auto* record = child<QPushButton>("record_button");
        if (byKeyboard) QTest::keyClick(record, Qt::Key_Space);
        else click("record_button");
        QCOMPARE(child<QPushButton>("record_button")->text(), QString::fromStdString(localizedText(textid::kStopRecord)));
        key(42, true, 1);   // Left Shift
        key(79, true, 2);   // keypad 1: the keyboard cannot play it
        key(30, true, 3);
        key(30, false, 4);
        QVERIFY2(child<QLabel>("macro_label_recordstate")->text().contains("Keys skipped: 1 "), qPrintable(child<QLabel>("macro_label_recordstate")->text()));
        if (closeWindow) {  // what was recorded is kept and sent, as Stop would
            const std::shared_ptr<VirtualQX9> keyboard = controller_->virtualKeyboard();
            deleteWindow();
            QCOMPARE(sql("SELECT count(*) FROM t_macrorecord"), std::to_string(recorded.size()));
            QCOMPARE(decodeMacros(keyboard->memory()).at(0).events.size(), std::size_t(recorded.size()));
            return;
        }
        if (byKeyboard) {
            // Stop keeps the focus; the Space that chooses it is not part of the macro.
            QCOMPARE(record->focusPolicy(), Qt::StrongFocus);
            QKeyEvent space(QEvent::KeyPress, Qt::Key_Space, Qt::NoModifier, 57 + 8, 0, 0);
            space.setTimestamp(5);
            QApplication::sendEvent(record, &space);
            QCoreApplication::processEvents();
        } else {
            click("record_button");
        }
        QStringList shown = events();
        for (QString& row : shown) row.remove(QRegularExpression(" \\d+$"));  // recorded delays depend on the clock
        for (QString& row : recorded) row.remove(QRegularExpression(" \\d+$"));
        QCOMPARE(shown, recorded);
        if (mode.startsWith("default")) QCOMPARE(events()[1], QString("[Delay:ms] 30"));
        QCOMPARE(sql("SELECT count(*) FROM t_macrorecord"), std::to_string(recorded.size()));
        QCOMPARE(decodeMacros(test::sentMemory(controller_)).at(0).events.size(), std::size_t(recorded.size()) + (mode.startsWith("no") ? 2 : 0));  // two 10 ms pauses
    }

};

// qx9ctl on the window's database: the window shows what it changed without being told.
void AppTest::followsAScriptOnTheSameDatabase() {
    newMacro();
    const std::string db = database().toStdString();
    const auto qx9ctl = [&](std::vector<std::string> args) {
        args.insert(args.begin(), {"--db", db, "--device", "virtual"});
        std::ostringstream out, err;
        return ctl::run(args, out, err);
    };
    QCOMPARE(qx9ctl({"macro", "insert", "1", "key:c"}), 0);
    QCOMPARE(qx9ctl({"profile", "rename", "1", "Scripted"}), 0);
    QTRY_COMPARE(controller_->keyPage()->profileTable()->item(0)->text(), QString("Scripted"));
    QTRY_COMPARE(child<QToolButton>("undo_btn")->toolTip(), QString("Undo: rename profile Scripted"));
    QTRY_COMPARE(events(), QStringList({"[KEY DOWN] C", "[KEY UP] C"}));
}

// While another program's transaction holds the keyboard, the window's change waits for it and
// the window says that it is sending; the window stays usable.
void AppTest::aTransferThatTakesAWhileShowsItsProgress() {
    enterPages();
    auto* progress = child<QWidget>("transfer_bar");
    QVERIFY(!progress->isVisible());
    QVERIFY(controller_->virtualKeyboard()->lockExclusive(std::chrono::seconds(1)));
    QTest::mouseClick(child<QToolButton>("light_btn"), Qt::LeftButton);  // sends the effect
    QTRY_VERIFY(progress->isVisible());
    QVERIFY(child<QLabel>("transfer_text")->text().startsWith(QString::fromStdString(extraText(ExtraText::kSending))));
    QTest::mouseClick(child<QToolButton>("macro_btn"), Qt::LeftButton);  // the window answers meanwhile
    QCOMPARE(controller_->session().device.viewType(), int(kPageMacros));
    controller_->virtualKeyboard()->unlock();
    QTRY_VERIFY(!progress->isVisible());
    QCOMPARE(decodeLightMode(test::sentMemory(controller_))->mode, int(controller_->session().core.currentLightMode));
}

void AppTest::closingSendsWhatIsQueuedAndAFailedBlockIsSaid() {
    enterPages();
    const std::shared_ptr<VirtualQX9> keyboard = controller_->virtualKeyboard();
    QSignalSpy notices(controller_, &KeyboardViewController::noticeShown);
    keyboard->vanish();
    QTest::mouseClick(child<QToolButton>("light_btn"), Qt::LeftButton);
    const QString notSent = QString::fromStdString(extraText(ExtraText::kNotSent));
    QTRY_VERIFY(std::any_of(notices.begin(), notices.end(), [&](const QList<QVariant>& n) { return n.at(0).toString() == notSent; }));
    keyboard->reappear();
    // A change still waiting for the keyboard when the window closes reaches it.
    QVERIFY(keyboard->lockExclusive(std::chrono::seconds(1)));
    QTest::mouseClick(child<QToolButton>("light_btn"), Qt::LeftButton);
    std::thread otherProgram([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        keyboard->unlock();
    });
    const auto before = keyboard->memory().transactions;
    deleteWindow();
    otherProgram.join();
    QVERIFY(keyboard->memory().transactions > before);
}

QTEST_MAIN(AppTest)
#include "app_test.moc"
