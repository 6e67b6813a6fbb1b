#pragma once

#include <QColor>
#include <QWidget>

#include <array>
#include <string>

class QLabel;
class QLineEdit;

namespace qx9 {

class ColorButton;

// The colour controls of a lighting page: the three number fields (red, green, blue), the swatch
// that opens the colour dialog and the fourteen preset colours. The controls are named after
// the page's prefix ("light" or "userlight"): `<prefix>_edit_color_r`/`_g`/`_b`,
// `<prefix>_btn_color` and `<prefix>_btn_color1` … `<prefix>_btn_color14`. A click on one
// emits colorButtonAction with 0 for the swatch or the preset's number.
class ColorControls : public QWidget {
    Q_OBJECT
public:
    ColorControls(const QString& prefix, QWidget* parent = nullptr);

    QLineEdit* field(int channel) const { return fields_.at(static_cast<std::size_t>(channel)); }
    ColorButton* swatch() const { return swatch_; }
    ColorButton* preset(int index) const { return presets_.at(static_cast<std::size_t>(index - 1)); }

    // Mirrors of the page model.
    void setFields(const std::string& r, const std::string& g, const std::string& b);
    void setSwatch(const QColor& color);
    void setColorsEnabled(bool enabled);
    void retranslate();

signals:
    // The user changed a field's text (channel 0 red, 1 green, 2 blue).
    void fieldEdited(int channel, const QString& text);
    // The swatch (0) or a preset (1–14) was clicked.
    void colorButtonAction(int preset);

private:
    std::array<QLineEdit*, 3> fields_{};
    std::array<QLabel*, 3> labels_{};
    ColorButton* swatch_ = nullptr;
    std::array<ColorButton*, 14> presets_{};
};

}  // namespace qx9
