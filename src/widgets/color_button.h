#pragma once

#include <QAbstractButton>
#include <QColor>

namespace qx9 {

// A colour swatch of the lighting pages: a rounded square filled with `btn_color`, greyed while
// `isDiasble` is set (the button then takes no clicks). A release over the button emits
// colorButtonAction (and clicked()).
class ColorButton : public QAbstractButton {
    Q_OBJECT
public:
    explicit ColorButton(QWidget* parent = nullptr);

    QColor btn_color() const { return color_; }
    void setBtnColor(const QColor& color);
    bool isDiasble() const { return !isEnabled(); }
    void setDiasble(bool disable) { setEnabled(!disable); }

    QSize sizeHint() const override { return {26, 26}; }

signals:
    void colorButtonAction();

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QColor color_{Qt::black};
};

}  // namespace qx9
