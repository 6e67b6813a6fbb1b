#include "widgets/keyboard_view.h"

#include <QEnterEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPen>

#include <string>

#include "common/fatal.h"
#include "layout/key_maps.h"
#include "widgets/layout_geometry.h"

namespace qx9 {

namespace {

constexpr int kLabelPixelSize = 10;

}  // namespace

KeyboardView::KeyboardView(QWidget* parent) : QWidget(parent) {
    installKeyboardAccessibility();
    setMouseTracking(true);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

KeyboardView::~KeyboardView() = default;

void KeyboardView::initKeyboard(const QString& kbImage, const std::vector<KeyData>& keyArray) {
    bCreateImageView_ = picture_.init(kbImage, keyArray);
    kbKeyArrayHover_ = keyArray;
    kbKeyArraySelect_ = keyArray;
    isEvent_ = true;
    keyViews_.assign(keyArray.size(), KeyView{});
    selectKeyViews_.assign(keyArray.size(), SelectKeyView{});
    updateGeometry();
    update();
}

void KeyboardView::resetKeyMacro() {
    for (const KeyData& k : kbKeyArraySelect_) {
        const KeyNameEntry& entry = G_KB_SuperKeyNameMap.at(k.keyname);
        kbKeyArraySelect_[checkedIndex(k.index)].keyMacro = entry.full_name;
        AccessibleKeyboard::keyChanged(this, static_cast<int>(k.index), QAccessible::DescriptionChanged);
    }
    for (const KeyData& k : kbKeyArrayHover_) {
        const std::size_t i = checkedIndex(k.index);
        if (keyViews_[i].isMacro) {
            keyViews_[i].isMacro = false;
            redrawKey(i);
        }
    }
    update();  // the labels changed
}

void KeyboardView::setKeyMacro(int layoutIndex, const QString& text, bool macroState) {
    const std::size_t i = checkedIndex(layoutIndex);
    kbKeyArraySelect_[i].keyMacro = text.toStdString();
    keyViews_[i].isMacro = macroState;
    redrawKey(i);
    AccessibleKeyboard::keyChanged(this, layoutIndex, QAccessible::DescriptionChanged);
}

void KeyboardView::setKeyCheck(int layoutIndex, bool check) {
    const std::size_t i = checkedIndex(layoutIndex);
    selectKeyViews_[i].keyCheck = check;
    redrawKey(i);
}

QString KeyboardView::keyMacro(int layoutIndex) const {
    return QString::fromStdString(kbKeyArraySelect_[checkedIndex(layoutIndex)].keyMacro);
}

bool KeyboardView::isMacro(int layoutIndex) const {
    return keyViews_[checkedIndex(layoutIndex)].isMacro;
}

bool KeyboardView::keyCheck(int layoutIndex) const {
    return selectKeyViews_[checkedIndex(layoutIndex)].keyCheck;
}

bool KeyboardView::isKeyHighlighted(int layoutIndex) const {
    return keyViews_[checkedIndex(layoutIndex)].highlighted();
}

QRect KeyboardView::keyRect(int index) const {
    return picture_.rects()[checkedIndex(index)].toAlignedRect();
}

KeyLabel KeyboardView::fittedLabel(int index) const {
    const std::size_t i = checkedIndex(index);
    return fitKeyLabel(QString::fromStdString(kbKeyArraySelect_[i].keyMacro), picture_.rects()[i], font(),
                       kLabelPixelSize);
}

QString KeyboardView::accessibleKeyName(int key) const {
    return keyFullName(kbKeyArraySelect_[checkedIndex(key)].keyname);
}

QString KeyboardView::accessibleKeyDescription(int key) const {
    const QString text = keyMacro(key);
    return text == accessibleKeyName(key) ? QString() : text;
}

void KeyboardView::accessibleKeyPress(int key) {
    if (!isEvent_ || onHomePage()) return;
    selectKey(key);
    activateKey(checkedIndex(key));
}

QSize KeyboardView::sizeHint() const {
    return picture_.size().toSize();
}

std::size_t KeyboardView::checkedIndex(std::int64_t index) const {
    if (index < 0 || index >= static_cast<std::int64_t>(kbKeyArraySelect_.size())) {
        fatalError("key position " + std::to_string(index) + " is not on the keyboard");
    }
    return static_cast<std::size_t>(index);
}

void KeyboardView::redrawKey(std::size_t i) {
    KeyView& v = keyViews_[i];
    v.backgroundColor = v.highlighted() ? highlightColor() : keyRestColor();
    update(picture_.rects()[i].toAlignedRect());
}

void KeyboardView::postToolTip(const KeyboardToolTip& tip) {
    emit ShowKeyboardToolTipWnd(tip);
}

// --- pointer ---------------------------------------------------------------------------------

void KeyboardView::mouseMoveEvent(QMouseEvent* event) {
    // Motion with a button held is a drag, which the keyboard ignores: hover and selection stay.
    if (event->buttons() != Qt::NoButton) return;
    trackKeyViewHover(event->position());
    mouseMoved(event->position());
}

void KeyboardView::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    mouseDown();
}

void KeyboardView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    mouseUp(event->position());
}

void KeyboardView::enterEvent(QEnterEvent* event) {
    mouseEntered();
    QWidget::enterEvent(event);
}

void KeyboardView::leaveEvent(QEvent* event) {
    mouseExited();
    for (std::size_t i = 0; i < keyViews_.size(); ++i) {
        if (keyViews_[i].isHover) {
            keyViews_[i].isHover = false;
            redrawKey(i);
        }
    }
    QWidget::leaveEvent(event);
}

// Each key's background follows the pointer on its own (entering and leaving the key).
void KeyboardView::trackKeyViewHover(const QPointF& p) {
    if (onHomePage()) return;
    for (std::size_t i = 0; i < keyViews_.size(); ++i) {
        const bool inside = keyContains(picture_.rects()[i], p);
        if (keyViews_[i].isHover != inside) {
            keyViews_[i].isHover = inside;
            redrawKey(i);
        }
    }
}

void KeyboardView::mouseMoved(const QPointF& p) {
    if (!isEvent_ || onHomePage()) return;
    if (hoverKeyItem_ != -1) {
        if (keyContains(picture_.rects()[checkedIndex(hoverKeyItem_)], p)) return;  // same key
        hoverKeyItem_ = -1;
        postToolTip(KeyboardToolTip::hidden());
    }
    for (const KeyData& k : kbKeyArraySelect_) {
        const QRectF& r = picture_.rects()[checkedIndex(k.index)];
        if (!keyContains(r, p)) continue;
        hoverKeyItem_ = k.index;
        // The middle of the key's bottom edge, in the parent's coordinates.
        const QPointF origin = isWindow() ? QPointF() : QPointF(pos());
        postToolTip(KeyboardToolTip{1, k.keyname, k.keyMacro, origin.x() + r.center().x(),
                                    origin.y() + r.bottom()});
        return;
    }
}

void KeyboardView::mouseDown() {
    if (isEvent_ && hoverKeyItem_ != -1) selectKey(hoverKeyItem_);
}

void KeyboardView::selectKey(std::int64_t key) {
    if (selectKeyItem_ == key) return;
    const std::int64_t old = selectKeyItem_;
    selectKeyItem_ = key;
    for (std::int64_t k : {old, key}) {
        if (k == -1) continue;
        const std::size_t i = checkedIndex(k);
        keyViews_[i].isSelect = k == key;
        redrawKey(i);
        AccessibleKeyboard::keyChanged(this, static_cast<int>(k));
    }
}

void KeyboardView::mouseUp(const QPointF& p) {
    if (!isEvent_ || selectKeyItem_ == -1) return;
    const std::size_t i = checkedIndex(selectKeyItem_);
    if (!keyContains(picture_.rects()[i], p)) return;  // the click ended off the selected key
    activateKey(i);
}

void KeyboardView::activateKey(std::size_t i) {
    const std::string& name = kbKeyArrayHover_[i].keyname;
    emit keyboardKeyAction(name);
}

void KeyboardView::mouseEntered() {
    postToolTip(KeyboardToolTip::hidden());
}

void KeyboardView::mouseExited() {
    postToolTip(KeyboardToolTip::hidden());
    if (!isEvent_ || hoverKeyItem_ == -1) return;
    const std::size_t i = checkedIndex(hoverKeyItem_);
    if (!customMode_) {
        selectKeyViews_[i].keyCheck = false;
        redrawKey(i);
    }
    hoverKeyItem_ = -1;
}

// --- painting --------------------------------------------------------------------------------

void KeyboardView::paintEvent(QPaintEvent*) {
    if (picture_.rects().empty()) return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);

    // Key backgrounds, under the picture.
    for (std::size_t i = 0; i < picture_.rects().size(); ++i) {
        painter.fillRect(picture_.rects()[i], keyViews_[i].backgroundColor);
    }

    // The picture, transparent over the keys.
    picture_.paint(painter);

    // Assignment texts.
    for (std::size_t i = 0; i < picture_.rects().size(); ++i) {
        painter.setPen(keyViews_[i].highlighted() ? QColor(255, 255, 255) : QColor(34, 34, 38));
        drawKeyLabel(painter, fittedLabel(static_cast<int>(i)));
    }

    // Check marks: a dashed frame (2 wide, 3 on and 1 off) inside the key's bounds.
    QPen dashed(highlightColor(), 2);
    dashed.setDashPattern({1.5, 0.5});  // in units of the pen width
    dashed.setCapStyle(Qt::FlatCap);    // square caps would close the gaps
    painter.setBrush(Qt::NoBrush);
    painter.setPen(dashed);
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (std::size_t i = 0; i < picture_.rects().size(); ++i) {
        if (selectKeyViews_[i].keyCheck) painter.drawRect(picture_.rects()[i].adjusted(1, 1, -1, -1));
    }
    focus_.paint(painter);
}

}  // namespace qx9
