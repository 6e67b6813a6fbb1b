#pragma once

#include <QWidget>

#include "pages/page_controls.h"

#include <array>

class QLabel;
class QListWidget;
class QButtonGroup;
class QRadioButton;
class QSlider;
class QToolButton;

namespace qx9 {

class ColorControls;
class KeyboardLightView;
class KeyboardSession;

// The backlight page: the effect list, the preview keyboard and the effect's parameters
// (colour, random colour, brightness, speed, direction) and the sleep time. It shows the
// backlight page model and forwards the user's actions to it.
class LightingPageView : public QWidget {
    Q_OBJECT
public:
    LightingPageView(KeyboardSession& session, QWidget* parent = nullptr);

    QListWidget* modeTable() const { return light_mode_table; }
    KeyboardLightView* keyboard() const { return light_keyboardctrl; }
    ColorControls* colorControls() const { return colors_; }

    // Mirrors the page model.
    void sync();
    // Names of the controls that show no text of their own.
    void retranslate();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QLabel* label(const char* name, QWidget* buddy);
    void syncModeList();

    KeyboardSession& session_;
    QListWidget* light_mode_table;
    KeyboardLightView* light_keyboardctrl;
    ColorControls* colors_;
    QToolButton* light_btn_randomcolor;
    QSlider* light_slider_brightness;
    QSlider* light_slider_speed;
    std::array<QToolButton*, 4> directions_{};  // by direction: left, right, up, down
    std::array<QRadioButton*, 4> sleepRadios_{};
    QButtonGroup* sleepTimes_ = nullptr;
    std::array<QLabel*, 4> sleepLabels_{};
    bool syncing_ = false;
    bool chosenByPress_ = false;  // the current row changed since the last press
    FixedTexts texts_;
};

}  // namespace qx9
