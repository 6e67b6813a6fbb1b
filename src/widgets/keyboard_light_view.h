#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QWidget>

#include <cstdint>
#include <vector>

#include "layout/keyboard_layout.h"
#include "widgets/key_focus.h"
#include "widgets/keyboard_accessible.h"
#include "widgets/keyboard_picture.h"

namespace qx9 {

// The on-screen QX9 of the lighting pages: each key's colour under the keyboard picture, and
// over it a highlight on the selected keys and the key under the pointer. The backlight page
// shows it as a preview; on the per-key page (mouse handling on) it hit-tests the pointer and
// reports what the user selects: a click on a key (with Shift held: added to the selection), or
// a rubber band dragged more than 12 points in either direction from where the button went down
// (also between keys), which selects the keys it touches. The view is a fixed-size picture.
class KeyboardLightView : public QWidget, public AccessibleKeyboard {
    Q_OBJECT
public:
    static constexpr double kDragThreshold = 12;

    explicit KeyboardLightView(QWidget* parent = nullptr);

    void initKeyboard(const QString& kbImage, const std::vector<KeyData>& keyArray);
    // Mouse handling (selection) on or off.
    void setEvent(bool on);

    // Colours as 0xRRGGBB in layout order, exact colours when given as QColor.
    void setKeyColours(const std::vector<std::uint32_t>& colours);
    void setKeyColor(int layoutIndex, const QColor& color);
    void setKeyHighlighted(int layoutIndex, bool highlighted);

    int keyCount() const { return static_cast<int>(keys_.size()); }
    QColor keyColor(int layoutIndex) const { return colours_.at(static_cast<std::size_t>(layoutIndex)); }
    QRect keyRect(int layoutIndex) const;
    // The rubber band being dragged, empty when none.
    QRectF frameSelect() const { return frameSelect_; }

    QSize sizeHint() const override { return picture_.size().toSize(); }
    QSize minimumSizeHint() const override { return sizeHint(); }

    // AccessibleKeyboard
    int accessibleKeyCount() const override { return keyCount(); }
    QRect accessibleKeyRect(int key) const override { return keyRect(key); }
    QString accessibleKeyName(int key) const override;
    QString accessibleKeyDescription(int key) const override;
    bool accessibleKeysCheckable() const override { return isEvent_; }
    bool accessibleKeysPressable() const override { return isEvent_; }
    bool accessibleKeySelected(int key) const override { return highlighted_.at(static_cast<std::size_t>(key)); }
    void accessibleKeyPress(int key) override;
    int accessibleFocusKey() const override { return focus_.key(); }

signals:
    // A press on a key (−1: between keys); `extend` when Shift is held.
    void keyClicked(int layoutIndex, bool extend);
    void keysInBand(const std::vector<int>& layoutIndexes);
    void keyHovered(int layoutIndex);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    KeyboardPicture picture_;
    std::vector<KeyData> keys_;
    std::vector<QColor> colours_;
    std::vector<bool> highlighted_;
    bool isEvent_ = false;
    bool pressed_ = false;
    int hoverKeyItem_ = -1;
    QPointF ptMouseDown_;
    QRectF frameSelect_;
    // Space: a click on the focused key; Shift+Space adds it to the selection.
    KeyFocus focus_{this, *this, [this](int key, bool extend) { if (isEvent_) emit keyClicked(key, extend); }};
};

}  // namespace qx9
