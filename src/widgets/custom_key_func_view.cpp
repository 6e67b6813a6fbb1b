#include "widgets/custom_key_func_view.h"

#include <QIcon>
#include <QMouseEvent>
#include <QPainter>
#include <QPen>

#include <map>
#include <string>

#include "common/fatal.h"
#include "widgets/keyboard_tooltip.h"
#include "widgets/layout_geometry.h"

namespace qx9 {

namespace {

constexpr int kLabelPixelSize = 9;
constexpr double kIconSize = 20;
constexpr double kKeyRadius = 3;
constexpr double kOutlineWidth = 1.5;  // the inner half of a 3-point outline on the bounds

const QColor kKeyFill(80, 80, 80);
const QColor kOutline(180, 180, 180);
const QColor kHoverOutline(180, 81, 0);

}  // namespace

void KeyFuncView::initView(const QString& key_icon, const QString& label, std::int64_t code) {
    if (initFinish) return;
    initFinish = true;
    key_code = code;
    if (!key_icon.isEmpty()) {
        iconPath = key_icon.startsWith(':') || key_icon.startsWith('/')
                       ? key_icon
                       : QStringLiteral(":/images/") + key_icon;
    } else {
        text = label;
    }
}

CustomKeyFuncView::CustomKeyFuncView(QWidget* parent) : QWidget(parent) {
    installKeyboardAccessibility();
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

void CustomKeyFuncView::initKeyFuncs(const std::vector<keyFunc>& keys) {
    WidgetLayout placed = widgetLayout(keys, "palette key", CustomKeyFunc_Size_Conf());
    customkey_array_ = keys;
    layoutSize_ = placed.size;
    widgetRects_ = std::move(placed.rects);
    views_.assign(keys.size(), KeyFuncView{});
    for (std::size_t i = 0; i < keys.size(); ++i) {
        views_[i].initView(QString::fromStdString(keys[i].key_icon),
                           QString::fromStdString(keys[i].keyname), keys[i].key_code);
    }
    hoverKey_ = -1;
    pressedKey_ = -1;
    updateGeometry();
    update();
}

void CustomKeyFuncView::setSelected(int index, bool selected) {
    const std::size_t i = checkedIndex(index);
    views_[i].isSelect = selected;
    redrawKey(i);
    AccessibleKeyboard::keyChanged(this, index);
}

void CustomKeyFuncView::clearSelection() {
    for (std::size_t i = 0; i < views_.size(); ++i) {
        if (views_[i].isSelect) {
            views_[i].isSelect = false;
            redrawKey(i);
            AccessibleKeyboard::keyChanged(this, static_cast<int>(i));
        }
    }
}

bool CustomKeyFuncView::isSelected(int index) const {
    return views_[checkedIndex(index)].isSelect;
}

QRect CustomKeyFuncView::keyRect(int index) const {
    return widgetRects_[checkedIndex(index)].toAlignedRect();
}

KeyLabel CustomKeyFuncView::fittedLabel(int index) const {
    const std::size_t i = checkedIndex(index);
    return fitKeyLabel(views_[i].text, widgetRects_[i], font(), kLabelPixelSize);
}

QString CustomKeyFuncView::accessibleKeyName(int key) const {
    const keyFunc& k = customkey_array_[checkedIndex(key)];
    const CustomKeyFuncCodeEntry* e = CustomKeyFuncCodeMap().find(static_cast<int>(k.key_code));
    return e ? spokenKeyName(e->full_name, e->code) : QString::fromStdString(k.keyname);
}

QSize CustomKeyFuncView::sizeHint() const {
    return layoutSize_.toSize();
}

std::size_t CustomKeyFuncView::checkedIndex(int index) const {
    if (index < 0 || index >= static_cast<int>(views_.size())) {
        fatalError("palette position " + std::to_string(index) + " is not in the palette");
    }
    return static_cast<std::size_t>(index);
}

int CustomKeyFuncView::keyAt(const QPointF& p) const {
    for (std::size_t i = 0; i < widgetRects_.size(); ++i) {
        if (keyContains(widgetRects_[i], p)) return static_cast<int>(i);
    }
    return -1;
}

void CustomKeyFuncView::redrawKey(std::size_t i) {
    update(widgetRects_[i].toAlignedRect());
}

void CustomKeyFuncView::setHover(int index) {
    if (index == hoverKey_) return;
    if (hoverKey_ != -1) {
        views_[static_cast<std::size_t>(hoverKey_)].isHover = false;
        redrawKey(static_cast<std::size_t>(hoverKey_));
    }
    hoverKey_ = index;
    if (hoverKey_ != -1) {
        views_[static_cast<std::size_t>(hoverKey_)].isHover = true;
        redrawKey(static_cast<std::size_t>(hoverKey_));
    }
}

void CustomKeyFuncView::mouseMoveEvent(QMouseEvent* event) {
    // A key follows the pointer in and out of it, but not while a button is held.
    if (event->buttons() == Qt::NoButton) setHover(keyAt(event->position()));
}

void CustomKeyFuncView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    pressedKey_ = keyAt(event->position());
}

void CustomKeyFuncView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    const int pressed = pressedKey_;
    pressedKey_ = -1;
    if (pressed != -1 && keyAt(event->position()) == pressed) activate(static_cast<std::size_t>(pressed));
}

void CustomKeyFuncView::activate(std::size_t i) {
    const std::int64_t code = views_[i].key_code;
    emit customKeyFuncAction(code);
}

void CustomKeyFuncView::leaveEvent(QEvent* event) {
    setHover(-1);
    QWidget::leaveEvent(event);
}

void CustomKeyFuncView::paintEvent(QPaintEvent*) {
    if (widgetRects_.empty()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);

    for (std::size_t i = 0; i < widgetRects_.size(); ++i) {
        const KeyFuncView& v = views_[i];
        const QRectF& r = widgetRects_[i];
        const double inset = kOutlineWidth / 2;
        painter.setPen(QPen(v.isHover ? kHoverOutline : kOutline, kOutlineWidth));
        painter.setBrush(v.isSelect ? highlightColor() : kKeyFill);
        painter.drawRoundedRect(r.adjusted(inset, inset, -inset, -inset), kKeyRadius, kKeyRadius);

        if (!v.iconPath.isEmpty()) {
            const QRectF iconRect(r.center().x() - kIconSize / 2, r.center().y() - kIconSize / 2,
                                  kIconSize, kIconSize);
            QIcon(v.iconPath).paint(&painter, iconRect.toAlignedRect());
            continue;
        }
        painter.setPen(QColor(255, 255, 255));
        drawKeyLabel(painter, fittedLabel(static_cast<int>(i)));
    }
    focus_.paint(painter);
}

}  // namespace qx9
