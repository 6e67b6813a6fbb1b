#include "pages/macro_page_view.h"

#include <QComboBox>
#include <QGridLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QProgressBar>
#include <QPushButton>
#include <QRadioButton>
#include <QTimer>
#include <QVBoxLayout>

#include "i18n/extra_texts.h"
#include "i18n/language.h"
#include "pages/page_controls.h"
#include "session/keyboard_session.h"

namespace qx9 {

namespace {

// Widths of the side columns; the event list takes the rest.
constexpr int kMacroColumnWidth = 236;
constexpr int kInsertColumnWidth = 250;


template <typename W>
W* named(W* w, const char* name) {
    w->setObjectName(name);
    return w;
}

QLabel* heading(const char* name, QWidget* parent) {
    auto* l = named(new QLabel(parent), name);
    l->setProperty("role", "heading");
    return l;
}

// Radios whose state the page model decides: a click asks the model, which turns the others off.
QRadioButton* modelRadio(const char* name, QWidget* parent) { return named(new QRadioButton(parent), name); }

QFrame* panel(const char* name, QWidget* parent) {
    auto* f = named(new QFrame(parent), name);
    f->setProperty("role", "panel");
    return f;
}

void setTextKeepingCursor(QLineEdit* edit, const QString& value) {
    if (edit->text() == value) return;
    const int cursor = edit->cursorPosition();
    edit->setText(value);
    edit->setCursorPosition(std::min<int>(cursor, static_cast<int>(value.size())));
}

// Rebuilds a list only when its rows changed, so that a long event list is not redrawn on
// every change of a radio or a field.
bool fill(QListWidget* list, QStringList& shown, const QStringList& rows, bool editable) {
    if (rows == shown) return false;
    shown = rows;
    list->clear();
    for (const QString& row : rows) {
        auto* item = new QListWidgetItem(row, list);
        if (editable) item->setFlags(item->flags() | Qt::ItemIsEditable);
    }
    return true;
}

void select(QListWidget* list, int row) {
    if (row >= 0 && row < list->count()) {
        list->setCurrentRow(row);
    } else {
        list->setCurrentRow(-1);
        list->clearSelection();
    }
}

}  // namespace

MacroPageView::MacroPageView(KeyboardSession& session, QWidget* parent) : QWidget(parent), session_(session) {
    setObjectName("macro_view");
    MacroPage& model = session_.macros;

    // The macro list, its buttons and the memory the macros take.
    auto* listPanel = texts_.add(panel("macro_listpanel", this), 180);
    auto* listLabel = texts_.add(heading("macro_label_macrolist", listPanel), 180);
    macro_tableview = named(new QListWidget(listPanel), "macro_tableview");
    macro_tableview->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::EditKeyPressed);
    macro_btn_newmacro = texts_.add(named(new QPushButton(listPanel), "macro_btn_newmacro"), 182);
    macro_btn_deletemacro = texts_.add(named(new QPushButton(listPanel), "macro_btn_deletemacro"), 183);
    renameButton_ = named(new QPushButton(listPanel), "macro_btn_renamemacro");
    memoryBar_ = named(new QProgressBar(listPanel), "macro_memory");
    memoryBar_->setTextVisible(false);
    memoryBar_->setMaximumHeight(8);
    auto* memoryText = named(new QLabel(listPanel), "macro_label_memory");
    memoryText->setWordWrap(true);
    memoryFull_ = named(new QLabel(listPanel), "macro_label_memoryfull");
    memoryFull_->setWordWrap(true);
    memoryFull_->setProperty("role", "alert");
    for (QPushButton* b : {macro_btn_newmacro, macro_btn_deletemacro, renameButton_}) b->setProperty("role", "compact");
    auto* listButtons = new QHBoxLayout;
    listButtons->setSpacing(6);
    listButtons->addWidget(macro_btn_newmacro);
    listButtons->addWidget(macro_btn_deletemacro);
    listButtons->addWidget(renameButton_);
    auto* listLayout = new QVBoxLayout(listPanel);
    listLayout->addWidget(listLabel);
    listLayout->addWidget(macro_tableview, 1);
    listLayout->addLayout(listButtons);
    listLayout->addSpacing(6);
    listLayout->addWidget(memoryBar_);
    listLayout->addWidget(memoryText);
    listLayout->addWidget(memoryFull_);
    listPanel->setFixedWidth(kMacroColumnWidth);

    // The events of the selected macro and recording.
    auto* eventPanel = texts_.add(panel("macro_recordpanel", this), 181);
    auto* recordLabel = texts_.add(heading("macro_label_recordlist", eventPanel), 181);
    record_tableview = named(new QListWidget(eventPanel), "record_tableview");
    record_tableview->setEditTriggers(QAbstractItemView::NoEditTriggers);
    record_tableview->setUniformItemSizes(true);
    record_button = texts_.add(named(new QPushButton(eventPanel), "record_button"), 201);
    deleteEventButton_ = named(new QPushButton(eventPanel), "macro_btn_deleteevent");
    recordState_ = named(new QLabel(eventPanel), "macro_label_recordstate");
    recordState_->setWordWrap(true);
    recordState_->setProperty("role", "alert");
    auto* eventHeader = new QHBoxLayout;
    eventHeader->addWidget(recordLabel, 1);
    eventHeader->addWidget(record_button);
    auto* eventButtons = new QHBoxLayout;
    eventButtons->addWidget(deleteEventButton_);
    eventButtons->addStretch();
    auto* eventLayout = new QVBoxLayout(eventPanel);
    eventLayout->addLayout(eventHeader);
    eventLayout->addWidget(record_tableview, 1);
    eventLayout->addWidget(recordState_);
    eventLayout->addLayout(eventButtons);

    // Inserting events, the delay mode and Save.
    auto* insertPanel = texts_.add(panel("macro_insertpanel", this), 188);
    auto* insertLabel = texts_.add(heading("macro_label_insertevent", insertPanel), 188);
    insertevent_combox = named(new QComboBox(insertPanel), "insertevent_combox");
    insertLabel->setBuddy(insertevent_combox);  // screen readers name the box after it
    keyboardevent_radiobutton = texts_.add(modelRadio("keyboardevent_radiobutton", insertPanel), 189);
    mouseevent_radiobutton = texts_.add(modelRadio("mouseevent_radiobutton", insertPanel), 190);
    delayevent_radiobutton = texts_.add(modelRadio("delayevent_radiobutton", insertPanel), 191);
    mousevent_combox = named(new QComboBox(insertPanel), "mousevent_combox");
    mouseLabel_ = named(new QLabel(insertPanel), "macro_label_mousebutton");
    mouseLabel_->setBuddy(mousevent_combox);  // screen readers name the box after it
    insertevent_edit = named(new QLineEdit(insertPanel), "insertevent_edit");
    insertevent_button = texts_.add(named(new QPushButton(insertPanel), "insertevent_button"), 192);
    recorddelay_radiobutton = texts_.add(modelRadio("recorddelay_radiobutton", insertPanel), 184);
    nodelay_radiobutton = texts_.add(modelRadio("nodelay_radiobutton", insertPanel), 185);
    defaultdelay_radiobutton = texts_.add(modelRadio("defaultdelay_radiobutton", insertPanel), 186);
    eventKinds_ = radioGroup({keyboardevent_radiobutton, mouseevent_radiobutton, delayevent_radiobutton}, this);
    delayModes_ = radioGroup({recorddelay_radiobutton, nodelay_radiobutton, defaultdelay_radiobutton}, this);
    delaytime_edit = named(new QLineEdit(insertPanel), "delaytime_edit");
    delaytime_edit->setMaximumWidth(90);
    macro_btn_save = texts_.add(named(new QPushButton(insertPanel), "macro_btn_save"), 193);
    macro_btn_save->setProperty("role", "primary");
    auto* kinds = new QHBoxLayout;
    kinds->addWidget(keyboardevent_radiobutton);
    kinds->addWidget(mouseevent_radiobutton);
    kinds->addWidget(delayevent_radiobutton);
    kinds->addStretch();
    auto* defaultRow = new QHBoxLayout;
    defaultRow->addWidget(defaultdelay_radiobutton);
    defaultRow->addWidget(delaytime_edit);
    defaultRow->addStretch();
    auto* insertLayout = new QVBoxLayout(insertPanel);
    insertLayout->addWidget(insertLabel);
    insertLayout->addWidget(insertevent_combox);
    insertLayout->addLayout(kinds);
    auto* mouseRow = new QHBoxLayout;
    mouseRow->addWidget(mouseLabel_);
    mouseRow->addWidget(mousevent_combox, 1);
    insertLayout->addLayout(mouseRow);
    insertLayout->addWidget(insertevent_edit);
    insertLayout->addWidget(insertevent_button);
    insertLayout->addSpacing(14);
    insertLayout->addWidget(recorddelay_radiobutton);
    insertLayout->addWidget(nodelay_radiobutton);
    insertLayout->addLayout(defaultRow);
    insertLayout->addStretch();
    insertLayout->addWidget(macro_btn_save);
    insertPanel->setFixedWidth(kInsertColumnWidth);

    auto* page = new QHBoxLayout(this);
    page->setContentsMargins(20, 16, 20, 16);
    page->setSpacing(14);
    page->addWidget(listPanel);
    page->addWidget(eventPanel, 1);
    page->addWidget(insertPanel);

    // The user's actions go to the page model; its change notification brings sync().
    connect(macro_btn_newmacro, &QPushButton::clicked, this, [&model] { model.button_action_addmacro(); });
    connect(macro_btn_deletemacro, &QPushButton::clicked, this, [&model] { model.button_action_delmacro(); });
    connect(renameButton_, &QPushButton::clicked, this, [this] {
        if (QListWidgetItem* item = macro_tableview->currentItem()) macro_tableview->editItem(item);
    });
    connect(macro_tableview, &QListWidget::currentRowChanged, this, [this, &model](int row) {
        if (!syncing_) model.macroTableSelectionChanged(row);
    });
    connect(macro_tableview, &QListWidget::itemChanged, this, &MacroPageView::macroRenamed);
    connect(record_tableview, &QListWidget::currentRowChanged, this, [this, &model](int row) {
        if (!syncing_) model.recordTableSelectionChanged(row);
    });
    connect(deleteEventButton_, &QPushButton::clicked, this, [&model] { model.button_action_delrecord(); });
    connect(record_button, &QPushButton::clicked, this, [&model] { model.button_action_recordmacro(); });
    connect(insertevent_combox, &QComboBox::activated, this, [&model](int i) { model.insertevent_combox_select(i); });
    connect(mousevent_combox, &QComboBox::activated, this, [&model](int i) { model.mousevent_combox_select(i); });
    connect(keyboardevent_radiobutton, &QRadioButton::clicked, this, [&model] { model.radio_action_keyboardevent(); });
    connect(mouseevent_radiobutton, &QRadioButton::clicked, this, [&model] { model.radio_action_mouseevent(); });
    connect(delayevent_radiobutton, &QRadioButton::clicked, this, [&model] { model.radio_action_delaytime(); });
    connect(recorddelay_radiobutton, &QRadioButton::clicked, this, [&model] { model.radio_action_autodelaytime(); });
    connect(nodelay_radiobutton, &QRadioButton::clicked, this, [&model] { model.radio_action_nodelaytime(); });
    connect(defaultdelay_radiobutton, &QRadioButton::clicked, this, [&model] { model.radio_action_defaultdelaytime(); });
    connect(insertevent_edit, &QLineEdit::textEdited, this, [&model](const QString& t) {
        model.controlTextDidChange(MacroField::kInsertEvent, t.toStdString());
    });
    connect(delaytime_edit, &QLineEdit::textEdited, this, [&model](const QString& t) {
        model.controlTextDidChange(MacroField::kDelayTime, t.toStdString());
    });
    connect(insertevent_button, &QPushButton::clicked, this, [&model] { model.button_action_insertevent(); });
    connect(macro_btn_save, &QPushButton::clicked, this, [&model] { model.button_action_saverecord(); });

    // The page's key monitor: told of every key event of the application once the capture state
    // holds it (the session, which the window ends after its pages, ends the monitor with it).
    session_.input.setKeyMonitor([this](std::uint32_t code, bool pressed, bool autoRepeat, std::uint64_t time) {
        // An event reaches the capture once for every object it passes through: the model is
        // told of it once. Auto-repeats are not new key events.
        const LastKey seen{code, pressed ? QEvent::KeyPress : QEvent::KeyRelease, time};
        if (!isVisible() || autoRepeat || seen == lastKey_) return;
        lastKey_ = seen;
        session_.macros.localKeyEvent();
    });
    record_tableview->installEventFilter(this);
    record_button->installEventFilter(this);
    retranslate();
    sync();
}

bool MacroPageView::eventFilter(QObject* watched, QEvent* event) {
    // A pointer on Record or Stop: the recording is the pointer's.
    if (watched == record_button && event->type() == QEvent::MouseButtonPress) recordingByKeyboard_ = false;
    const bool key = event->type() == QEvent::KeyPress || event->type() == QEvent::KeyRelease;
    if (!key) return QWidget::eventFilter(watched, event);
    const auto* keyEvent = static_cast<QKeyEvent*>(event);
    const bool recording = session_.macros.macroRecordType() == MacroPage::kRecording;
    const bool choose = keyEvent->key() == Qt::Key_Space || keyEvent->key() == Qt::Key_Return || keyEvent->key() == Qt::Key_Enter;
    if (watched == record_button) {
        if (!recording) {
            // Record chosen from the keyboard (Space or Return): Stop will be too.
            if (!choose || event->type() != QEvent::KeyPress) return false;
            recordingByKeyboard_ = true;
            if (keyEvent->key() == Qt::Key_Space) return false;  // the button clicks as Space goes up
            record_button->click();
            return true;
        }
        // Recording: every key is part of the macro except the one that stops it.
        if (choose && event->type() == QEvent::KeyPress && !keyEvent->isAutoRepeat()) {
            recordingByKeyboard_ = false;
            session_.macros.stopRecordingFromKeyboard();
        }
        return true;
    }
    if (watched != record_tableview) return false;
    // The event list holds the focus while recording: the keys pressed are the macro, not
    // moves in the list. Otherwise Delete removes the selected event and its partner.
    if (recording) return true;
    if (event->type() == QEvent::KeyPress && keyEvent->key() == Qt::Key_Delete) {
        session_.macros.button_action_delrecord();
        return true;
    }
    return false;
}

void MacroPageView::macroRenamed(QListWidgetItem* item) {
    if (syncing_) return;
    const int row = macro_tableview->row(item);
    const std::string name = limitFieldText(MacroField::kName, item->text().toStdString());
    // After the editor has closed: the model's change rebuilds the list.
    QTimer::singleShot(0, this, [this, row, name] {
        session_.macros.macroTableSetObjectValue(row, name);
        shownMacros_.clear();  // an empty or refused name shows the stored one again
        sync();
    });
}

void MacroPageView::retranslate() {
    texts_.apply();
    syncing_ = true;
    const auto fillCombo = [](QComboBox* box, std::initializer_list<int> ids) {
        const int current = box->currentIndex();
        box->clear();
        for (int id : ids) box->addItem(text(id));
        box->setCurrentIndex(std::max(current, 0));
    };
    fillCombo(insertevent_combox, {textid::kInsertBefore, textid::kInsertBefore + 1});
    fillCombo(mousevent_combox, {textid::kMouseLeft, textid::kMouseLeft + 1, textid::kMouseLeft + 2});
    syncing_ = false;
    renameButton_->setText(text(ExtraText::kRename));
    deleteEventButton_->setText(text(ExtraText::kDeleteEvent));
    macro_tableview->setAccessibleName(text(textid::kMacroList));
    record_tableview->setAccessibleName(text(textid::kMacroRecordList));
    mouseLabel_->setText(text(ExtraText::kMouseButton));
    delaytime_edit->setAccessibleName(text(textid::kDefaultDelayRadio));
    shownRecords_.clear();  // mouse rows keep their stored texts; delays and keys relabel
    sync();
}

void MacroPageView::sync() {
    const MacroPage& model = session_.macros;
    const MacroPageControls& c = model.controls();
    syncing_ = true;
    syncLists();
    record_tableview->setEnabled(c.record_tableview);
    deleteEventButton_->setEnabled(c.record_tableview && model.recordSelectIndex() >= 0 &&
                                   model.macroRecordType() != MacroPage::kRecording);
    macro_btn_deletemacro->setEnabled(true);  // with no macro selected it says why
    renameButton_->setEnabled(model.macroSelectIndex() >= 0);
    macro_btn_save->setEnabled(model.macroSelectIndex() >= 0);
    insertevent_combox->setEnabled(c.insertevent_combox);
    insertevent_combox->setCurrentIndex(c.insertevent_combox_index);
    mousevent_combox->setEnabled(c.mousevent_combox);
    mousevent_combox->setCurrentIndex(c.mousevent_combox_index);
    mousevent_combox->setVisible(!c.mousevent_combox_hidden);
    mouseLabel_->setVisible(!c.mousevent_combox_hidden);
    insertevent_edit->setVisible(!c.insertevent_edit_hidden);
    insertevent_edit->setEnabled(c.insertevent_edit);
    setTextKeepingCursor(insertevent_edit, QString::fromStdString(c.insertevent_edit_text));
    const bool keyboardKind = c.keyboardevent_radiobutton;
    insertevent_edit->setPlaceholderText(keyboardKind ? text(ExtraText::kMacroPressKey) : QStringLiteral("ms"));
    insertevent_edit->setAccessibleName(text(keyboardKind ? textid::kKeyboardEventRadio : textid::kDelayEventRadio));
    insertevent_button->setEnabled(c.insertevent_button);
    delaytime_edit->setEnabled(c.delaytime_edit);
    setTextKeepingCursor(delaytime_edit, QString::fromStdString(c.delaytime_edit_text));
    showRadios(eventKinds_, {{keyboardevent_radiobutton, c.keyboardevent_radiobutton},
                             {mouseevent_radiobutton, c.mouseevent_radiobutton},
                             {delayevent_radiobutton, c.delayevent_radiobutton}});
    showRadios(delayModes_, {{recorddelay_radiobutton, c.recorddelay_radiobutton},
                             {nodelay_radiobutton, c.nodelay_radiobutton},
                             {defaultdelay_radiobutton, c.defaultdelay_radiobutton}});
    for (QRadioButton* r : {keyboardevent_radiobutton, mouseevent_radiobutton, delayevent_radiobutton}) {
        r->setEnabled(c.eventRadiosEnabled);
    }
    const bool recording = model.macroRecordType() == MacroPage::kRecording;
    record_button->setEnabled(c.record_button);
    // Reached by Tab to start. A recording started with the pointer keeps the focus off it, so a
    // recorded Space or Return does not stop it; one started from the keyboard keeps the focus on
    // it, and Space or Return there stops it.
    record_button->setFocusPolicy(recording && !recordingByKeyboard_ ? Qt::NoFocus : Qt::StrongFocus);
    record_button->setText(text(c.record_button_title));
    if (restyle(record_button, "recording", recording) && recording && !recordingByKeyboard_) record_tableview->setFocus();
    QStringList state;
    if (recording) state << text(ExtraText::kMacroRecording).arg(model.RecordListDatas().size());
    if (model.skippedKeys() > 0) {
        state << text(ExtraText::kMacroSkipped)
                     .arg(model.skippedKeys())
                     .arg(QStringLiteral("0x%1").arg(model.lastSkippedKey(), 2, 16, QLatin1Char('0')));
    }
    recordState_->setText(state.join(QLatin1Char(' ')));
    recordState_->setVisible(!state.isEmpty());
    syncMemory();
    syncing_ = false;
}

void MacroPageView::syncLists() {
    const MacroPage& model = session_.macros;
    QStringList macros;
    for (const MacroRow& r : model.MacroListDatas()) macros << QString::fromStdString(r.text);
    QStringList records;
    records.reserve(static_cast<qsizetype>(model.RecordListDatas().size()));
    for (const RecordRow& r : model.RecordListDatas()) records << QString::fromStdString(recordListText(r));
    fill(macro_tableview, shownMacros_, macros, true);
    const bool grown = fill(record_tableview, shownRecords_, records, false);
    select(macro_tableview, model.macroSelectIndex());
    select(record_tableview, model.recordSelectIndex());
    // While recording, the newest event stays in sight.
    if (grown && model.macroRecordType() == MacroPage::kRecording) record_tableview->scrollToBottom();
}

void MacroPageView::syncMemory() {
    const ops::MacroMemory& memory = session_.macros.memory();
    memoryBar_->setRange(0, static_cast<int>(memory.capacity));
    memoryBar_->setValue(static_cast<int>(std::clamp<std::int64_t>(memory.used, 0, memory.capacity)));
    const QString used = text(ExtraText::kMacroMemory).arg(memory.used).arg(memory.capacity);
    memoryBar_->setAccessibleName(used);
    if (auto* label = findChild<QLabel*>("macro_label_memory")) label->setText(used);
    memoryFull_->setText(text(ExtraText::kMacroMemoryFull));
    memoryFull_->setVisible(!memory.fits);
    restyle(memoryBar_, "full", !memory.fits);
}

}  // namespace qx9
