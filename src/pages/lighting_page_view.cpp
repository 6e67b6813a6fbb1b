#include "pages/lighting_page_view.h"

#include <QEvent>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHash>
#include <QLabel>
#include <QListWidget>
#include <QRadioButton>
#include <QSlider>
#include <QToolButton>
#include <QVBoxLayout>

#include "i18n/extra_texts.h"
#include "i18n/language.h"
#include "pages/page_controls.h"
#include "session/keyboard_session.h"
#include "widgets/color_controls.h"
#include "widgets/keyboard_light_view.h"

namespace qx9 {

namespace {

struct DirectionButton {
    ops::Direction direction;
    const char* name;
    const char* image;  // the selected image adds "_check"
    ExtraText accessibleName;
    int row, column;    // in the cross of buttons
};
constexpr DirectionButton kDirectionButtons[] = {
    {ops::kLeft, "light_direction_left", "image_left", ExtraText::kLeft, 1, 0},
    {ops::kRight, "light_direction_right", "image_right", ExtraText::kRight, 1, 2},
    {ops::kUp, "light_direction_top", "image_up", ExtraText::kUp, 0, 1},
    {ops::kDown, "light_direction_bottom", "image_bottom", ExtraText::kDown, 2, 1},
};

// One icon object per image, so that showing the same image again changes nothing.
QIcon image(const QString& name) {
    static QHash<QString, QIcon> icons;
    auto it = icons.find(name);
    if (it == icons.end()) it = icons.insert(name, QIcon(":/images/" + name + ".svg"));
    return *it;
}

// Sets the icon only when it is another image: a list row or button repaints on every set.
template <typename T>
void showImage(T* target, const QString& name) {
    const QIcon icon = image(name);
    if (target->icon().cacheKey() != icon.cacheKey()) target->setIcon(icon);
}

// Shows `widget` as the page model says; a hidden control keeps its place.
void showToggle(QWidget* widget, const LightToggle& t) {
    widget->setEnabled(t.enabled);
    widget->setVisible(!t.hidden);
}

}  // namespace

LightingPageView::LightingPageView(KeyboardSession& session, QWidget* parent) : QWidget(parent), session_(session) {
    setObjectName("light_view");
    light_mode_table = new QListWidget(this);
    light_mode_table->setObjectName("light_mode_table");
    light_mode_table->setSelectionMode(QAbstractItemView::SingleSelection);
    light_mode_table->setIconSize(QSize(16, 16));
    light_mode_table->setFixedWidth(184);
    connect(light_mode_table, &QListWidget::currentRowChanged, this, [this](int row) {
        if (syncing_ || row < 0) return;
        chosenByPress_ = true;
        session_.lighting.lightModeSelectionChanged(row);
    });
    // The highlighted row (the stored effect, whose parameters the controls may not show yet)
    // is chosen again when pressed.
    connect(light_mode_table, &QListWidget::itemPressed, this, [this](QListWidgetItem* item) {
        if (!chosenByPress_) session_.lighting.lightModeSelectionChanged(light_mode_table->row(item));
        chosenByPress_ = false;
    });

    light_keyboardctrl = new KeyboardLightView(this);
    light_keyboardctrl->setObjectName("light_keyboardctrl");
    light_keyboardctrl->initKeyboard(":/images/img_keyboard_layout.svg", session_.keys.keys());

    colors_ = new ColorControls("light", this);
    connect(colors_, &ColorControls::colorButtonAction, this, [this](int preset) {
        session_.lighting.colorButtonAction({preset == 0 ? ColorButtonPress::kLightSwatch : ColorButtonPress::kLightPreset, preset});
    });
    connect(colors_, &ColorControls::fieldEdited, this, [this](int channel, const QString& text) {
        session_.lighting.controlTextDidChange(static_cast<ColorChannel>(channel), text.toStdString());
    });

    light_btn_randomcolor = new QToolButton(this);
    light_btn_randomcolor->setObjectName("light_btn_randomcolor");
    light_btn_randomcolor->setCheckable(true);
    light_btn_randomcolor->setIconSize(QSize(44, 24));
    light_btn_randomcolor->setProperty("role", "imagebutton");
    light_btn_randomcolor->setCursor(Qt::PointingHandCursor);
    connect(light_btn_randomcolor, &QToolButton::clicked, this, [this] { session_.lighting.lightRondomColorSwitch(); });

    auto slider = [this](const char* name, void (LightingPage::*action)(std::int64_t)) {
        auto* s = new QSlider(Qt::Horizontal, this);
        s->setObjectName(name);
        s->setRange(LightingPage::kSliderMinimum, LightingPage::kSliderMaximum);
        s->setPageStep(1);
        s->setTracking(false);  // one change when the handle is let go
        s->setMinimumWidth(140);
        connect(s, &QSlider::valueChanged, this, [this, action](int v) {
            if (!syncing_) (session_.lighting.*action)(v);
        });
        return s;
    };
    light_slider_brightness = slider("light_slider_brightness", &LightingPage::backlightBrightnessChange);
    light_slider_speed = slider("light_slider_speed", &LightingPage::backlightSpeedChange);

    auto* cross = new QGridLayout;
    cross->setSpacing(2);
    for (const DirectionButton& d : kDirectionButtons) {
        auto* b = new QToolButton(this);
        b->setObjectName(d.name);
        b->setIconSize(QSize(22, 22));
        b->setProperty("role", "imagebutton");
        b->setCursor(Qt::PointingHandCursor);
        b->setCheckable(true);  // the chosen direction reads as checked
        QSizePolicy keep = b->sizePolicy();
        keep.setRetainSizeWhenHidden(true);
        b->setSizePolicy(keep);
        const ops::Direction direction = d.direction;
        connect(b, &QToolButton::clicked, this, [this, direction] { session_.lighting.light_button_direction(direction); });
        directions_[static_cast<std::size_t>(d.direction)] = b;
        cross->addWidget(b, d.row, d.column);
    }

    auto* sleepRow = new QHBoxLayout;
    sleepRow->setSpacing(4);
    for (int i = 0; i < 4; ++i) {
        sleepRadios_[i] = new QRadioButton(this);
        sleepRadios_[i]->setObjectName(QString("light_radio_lightsleep%1").arg(i));
        sleepLabels_[i] = texts_.add(label(qPrintable(QString("light_label_lightsleep%1").arg(i)), sleepRadios_[i]), 536 + i);
        connect(sleepRadios_[i], &QRadioButton::clicked, this, [this, i] { session_.lighting.light_button_lightsleeptime(i); });
        sleepRow->addWidget(sleepRadios_[i]);
        sleepRow->addWidget(sleepLabels_[i]);
        sleepRow->addSpacing(14);
    }
    sleepRow->addStretch();
    sleepTimes_ = radioGroup({sleepRadios_[0], sleepRadios_[1], sleepRadios_[2], sleepRadios_[3]}, this);

    // Parameters: the colour on the left; switch, sliders and directions on the right; the
    // sleep time underneath.
    auto* params = new QGridLayout;
    params->setHorizontalSpacing(12);
    params->setVerticalSpacing(10);
    params->addWidget(texts_.add(label("light_label_randomcolor", light_btn_randomcolor), 530), 0, 0);
    params->addWidget(light_btn_randomcolor, 0, 1, Qt::AlignLeft);
    params->addWidget(texts_.add(label("light_label_brightness", light_slider_brightness), 531), 1, 0);
    params->addWidget(light_slider_brightness, 1, 1);
    params->addWidget(texts_.add(label("light_label_speed", light_slider_speed), 532), 2, 0);
    params->addWidget(light_slider_speed, 2, 1);
    params->addLayout(cross, 0, 2, 3, 1, Qt::AlignCenter);

    auto* panel = new QHBoxLayout;
    panel->addWidget(colors_, 0, Qt::AlignTop);
    panel->addSpacing(24);
    panel->addLayout(params, 1);

    auto* sleep = new QHBoxLayout;
    sleep->addWidget(texts_.add(label("light_label_lightsleeptime", nullptr), 535));
    sleep->addSpacing(12);
    sleep->addLayout(sleepRow, 1);

    // The keyboard and its controls keep together, centred in a wide window.
    auto* column = new QWidget(this);
    auto* right = new QVBoxLayout(column);
    right->setContentsMargins(0, 0, 0, 0);
    right->setSpacing(14);
    right->addWidget(light_keyboardctrl, 0, Qt::AlignHCenter);
    right->addSpacing(6);
    right->addLayout(panel);
    right->addLayout(sleep);
    right->addStretch();

    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(20, 16, 20, 16);
    layout->setSpacing(16);
    layout->addWidget(light_mode_table);
    layout->addWidget(column, 1, Qt::AlignHCenter);

    retranslate();
    sync();
}

QLabel* LightingPageView::label(const char* name, QWidget* buddy) {
    auto* l = new QLabel(this);
    l->setObjectName(name);
    if (buddy) {
        l->setBuddy(buddy);  // the control's accessible name
        l->installEventFilter(this);
        l->setCursor(Qt::PointingHandCursor);
    }
    return l;
}

// A click on a control's label acts on the control, as the label is part of it.
bool LightingPageView::eventFilter(QObject* watched, QEvent* event) {
    auto* l = qobject_cast<QLabel*>(watched);
    if (l && event->type() == QEvent::MouseButtonRelease) {
        if (auto* b = qobject_cast<QAbstractButton*>(l->buddy()); b && b->isEnabled() && b->isVisible()) b->click();
        else if (l->buddy()) l->buddy()->setFocus(Qt::MouseFocusReason);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

void LightingPageView::retranslate() {
    texts_.apply();
    for (const DirectionButton& d : kDirectionButtons) {
        nameButton(directions_[static_cast<std::size_t>(d.direction)], extraText(d.accessibleName));
    }
    nameButton(light_btn_randomcolor, localizedText(530));
    colors_->retranslate();
    light_keyboardctrl->setAccessibleName(text(ExtraText::kLightKeyboard));
    light_mode_table->setAccessibleName(text(ExtraText::kEffects));
}

void LightingPageView::syncModeList() {
    const auto& rows = session_.lighting.light_mode_datas();
    const int selected = session_.lighting.selectedRow();
    if (light_mode_table->count() != static_cast<int>(rows.size())) {
        light_mode_table->clear();
        for (std::size_t i = 0; i < rows.size(); ++i) light_mode_table->addItem(QString());
    }
    for (int r = 0; r < light_mode_table->count(); ++r) {
        QListWidgetItem* item = light_mode_table->item(r);
        const QString text = QString::fromStdString(rows[static_cast<std::size_t>(r)].text);
        if (item->text() != text) item->setText(text);
        showImage(item, r == selected ? "icon_circle_h" : "icon_circle_n");
    }
    light_mode_table->setCurrentRow(selected < light_mode_table->count() ? selected : -1);
}

void LightingPageView::sync() {
    syncing_ = true;
    const LightingPage& page = session_.lighting;
    syncModeList();
    colors_->setFields(page.light_edit_color_r(), page.light_edit_color_g(), page.light_edit_color_b());
    colors_->setSwatch(QColor::fromRgb(page.light_btn_color()));
    colors_->setColorsEnabled(page.colorButtonsEnabled());

    const LightToggle& random = page.light_btn_randomcolor();
    showToggle(light_btn_randomcolor, random);
    light_btn_randomcolor->setChecked(random.on);
    showImage(light_btn_randomcolor, random.on ? "img_switch_on" : "img_switch_off");

    light_slider_brightness->setEnabled(page.light_slider_brightness().enabled);
    light_slider_brightness->setValue(page.light_slider_brightness().value);
    light_slider_speed->setEnabled(page.light_slider_speed().enabled);
    light_slider_speed->setValue(page.light_slider_speed().value);

    for (const DirectionButton& d : kDirectionButtons) {
        QToolButton* b = directions_[static_cast<std::size_t>(d.direction)];
        const LightToggle& t = page.directionButton(d.direction);
        showToggle(b, t);
        b->setChecked(t.on);
        showImage(b, QString(d.image) + (t.on ? "_check" : ""));
    }

    const int sleep = page.sleepTimeChoice();  // none chosen: -1
    showRadios(sleepTimes_, {{sleepRadios_[0], sleep == 0}, {sleepRadios_[1], sleep == 1},
                             {sleepRadios_[2], sleep == 2}, {sleepRadios_[3], sleep == 3}});
    for (int i = 0; i < 4; ++i) showActive(sleepLabels_[i], sleep == i);
    light_keyboardctrl->setKeyColours(page.keyColours());
    syncing_ = false;
}

}  // namespace qx9
