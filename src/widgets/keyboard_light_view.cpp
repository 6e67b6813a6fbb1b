#include "widgets/keyboard_light_view.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPen>

#include <cmath>

namespace qx9 {

KeyboardLightView::KeyboardLightView(QWidget* parent) : QWidget(parent) {
    installKeyboardAccessibility();
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setFocusPolicy(Qt::NoFocus);  // a preview until selection is on
}

void KeyboardLightView::initKeyboard(const QString& kbImage, const std::vector<KeyData>& keyArray) {
    picture_.init(kbImage, keyArray);
    keys_ = keyArray;
    colours_.assign(keyArray.size(), QColor(Qt::black));
    highlighted_.assign(keyArray.size(), false);
    updateGeometry();
    update();
}

void KeyboardLightView::setEvent(bool on) {
    isEvent_ = on;
    setCursor(on ? Qt::CrossCursor : Qt::ArrowCursor);
    setFocusPolicy(on ? Qt::StrongFocus : Qt::NoFocus);
}

void KeyboardLightView::setKeyColours(const std::vector<std::uint32_t>& colours) {
    for (std::size_t i = 0; i < colours.size() && i < colours_.size(); ++i) {
        setKeyColor(static_cast<int>(i), QColor::fromRgb(colours[i]));
    }
}

void KeyboardLightView::setKeyColor(int layoutIndex, const QColor& color) {
    QColor& c = colours_.at(static_cast<std::size_t>(layoutIndex));
    if (c == color) return;
    c = color;
    update(keyRect(layoutIndex));
    AccessibleKeyboard::keyChanged(this, layoutIndex, QAccessible::DescriptionChanged);
}

void KeyboardLightView::setKeyHighlighted(int layoutIndex, bool highlighted) {
    const auto i = static_cast<std::size_t>(layoutIndex);
    if (highlighted_.at(i) == highlighted) return;
    highlighted_[i] = highlighted;
    update(keyRect(layoutIndex).adjusted(-2, -2, 2, 2));
    AccessibleKeyboard::keyChanged(this, layoutIndex);
}

QRect KeyboardLightView::keyRect(int layoutIndex) const {
    return picture_.rects().at(static_cast<std::size_t>(layoutIndex)).toAlignedRect();
}

QString KeyboardLightView::accessibleKeyName(int key) const {
    return keyFullName(keys_.at(static_cast<std::size_t>(key)).keyname);
}

QString KeyboardLightView::accessibleKeyDescription(int key) const {
    return colours_.at(static_cast<std::size_t>(key)).name().toUpper();
}

void KeyboardLightView::accessibleKeyPress(int key) {
    if (isEvent_) emit keyClicked(key, false);
}

// --- pointer ---------------------------------------------------------------------------------

void KeyboardLightView::mousePressEvent(QMouseEvent* event) {
    if (!isEvent_ || event->button() != Qt::LeftButton) return QWidget::mousePressEvent(event);
    pressed_ = true;
    ptMouseDown_ = event->position();
    // Between keys the selection stays, and a rubber band may start here.
    emit keyClicked(picture_.keyAt(ptMouseDown_), event->modifiers().testFlag(Qt::ShiftModifier));
}

void KeyboardLightView::mouseMoveEvent(QMouseEvent* event) {
    if (!isEvent_) return;
    const QPointF p = event->position();
    if (!pressed_) {
        const int key = picture_.keyAt(p);
        if (key != hoverKeyItem_) emit keyHovered(hoverKeyItem_ = key);
        return;
    }
    const QPointF d = p - ptMouseDown_;
    if (std::abs(d.x()) <= kDragThreshold && std::abs(d.y()) <= kDragThreshold) return;
    const QRectF old = frameSelect_;
    frameSelect_ = QRectF(ptMouseDown_, p).normalized();
    std::vector<int> inBand;
    for (std::size_t i = 0; i < picture_.rects().size(); ++i) {
        if (picture_.rects()[i].intersects(frameSelect_)) inBand.push_back(static_cast<int>(i));
    }
    update(old.united(frameSelect_).toAlignedRect().adjusted(-2, -2, 2, 2));
    emit keysInBand(inBand);
}

void KeyboardLightView::mouseReleaseEvent(QMouseEvent* event) {
    if (!isEvent_ || event->button() != Qt::LeftButton) return QWidget::mouseReleaseEvent(event);
    pressed_ = false;
    update(frameSelect_.toAlignedRect().adjusted(-2, -2, 2, 2));
    frameSelect_ = QRectF();  // the selection stays
}

void KeyboardLightView::leaveEvent(QEvent* event) {
    if (isEvent_ && hoverKeyItem_ != -1) emit keyHovered(hoverKeyItem_ = -1);
    QWidget::leaveEvent(event);
}

// --- painting --------------------------------------------------------------------------------

void KeyboardLightView::paintEvent(QPaintEvent*) {
    const std::vector<QRectF>& rects = picture_.rects();
    if (rects.empty()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (std::size_t i = 0; i < rects.size(); ++i) painter.fillRect(rects[i], colours_[i]);
    picture_.paint(painter);

    // Selected and hovered keys: an orange frame round the key cap with a white one inside, seen
    // on any colour.
    painter.setBrush(Qt::NoBrush);
    const QPen outer(highlightColor(), 2);
    const QPen inner(QColor(255, 255, 255), 1.5);
    for (std::size_t i = 0; i < rects.size(); ++i) {
        if (!highlighted_[i]) continue;
        painter.setPen(outer);
        painter.drawRoundedRect(rects[i].adjusted(1, 1, -1, -1), 4, 4);
        painter.setPen(inner);
        painter.drawRoundedRect(rects[i].adjusted(3, 3, -3, -3), 3, 3);
    }
    if (!frameSelect_.isNull()) {
        QPen band(QColor(255, 255, 255, 200), 1, Qt::DashLine);
        painter.setPen(band);
        painter.setBrush(QColor(0xCA, 0x51, 0x00, 40));
        painter.drawRect(frameSelect_);
    }
    focus_.paint(painter);
}

}  // namespace qx9
