#include "widgets/color_button.h"

#include <QPainter>


namespace qx9 {

ColorButton::ColorButton(QWidget* parent) : QAbstractButton(parent) {
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    connect(this, &QAbstractButton::clicked, this, &ColorButton::colorButtonAction);
}

void ColorButton::setBtnColor(const QColor& color) {
    if (color_ == color) return;
    color_ = color;
    setAccessibleDescription(color.name().toUpper());
    update();
}

void ColorButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    const QRectF r = QRectF(rect()).adjusted(1.5, 1.5, -1.5, -1.5);
    QColor fill = color_;
    if (isDiasble()) fill = QColor::fromHsv(fill.hsvHue(), fill.hsvSaturation() / 4, 60 + fill.value() / 4);
    const bool framed = hasFocus() || underMouse() || isDown();
    painter.setPen(QPen(framed && !isDiasble() ? QColor(0xCA, 0x51, 0x00) : QColor(0x4a, 0x4e, 0x57), framed ? 2 : 1));
    painter.setBrush(fill);
    painter.drawRoundedRect(r, 4, 4);
}

}  // namespace qx9
