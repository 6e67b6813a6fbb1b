#pragma once

#include <QColor>
#include <QImage>
#include <QMetaType>
#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QWidget>

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

#include "layout/keyboard_layout.h"
#include "widgets/key_focus.h"
#include "widgets/key_label.h"
#include "widgets/keyboard_accessible.h"
#include "widgets/keyboard_picture.h"
#include "widgets/keyboard_tooltip.h"

namespace qx9 {

// The background of one key, painted under the keyboard picture: white at rest, the highlight
// colour while the pointer is over the key, while it is the selected key or while it carries an
// assignment of its own.
struct KeyView {
    QColor backgroundColor{255, 255, 255};
    bool isHover = false;
    bool isSelect = false;
    bool isMacro = false;

    bool highlighted() const { return isSelect || isHover || isMacro; }
};

// The overlay of one key, painted over the picture: a dashed frame while `keyCheck` is set (the
// user-lighting keyboard marks painted keys with it). The key-assignment page only clears it.
struct SelectKeyView {
    bool keyCheck = false;
};

// The on-screen QX9 of the key-assignment page (and of the lighting pages): the keyboard
// picture over one background per key. Hit-tests the pointer against the layout's key
// rectangles, keeps the hovered and the selected key and every key's assignment text, and
// reports through two signals:
//   ShowKeyboardToolTipWnd when the pointer enters a key (show 1), leaves a key, or enters or
//       leaves the view (show 0);
//   keyboardKeyAction (the key's name) when the button is released over the selected key.
// The view is a fixed-size picture: keys and picture occupy sizeHint() from the top left. In the
// accessibility tree each key is a child named after its key, described by its text where that
// differs from the name; its press action selects and activates it as a click does.
class KeyboardView : public QWidget, public AccessibleKeyboard {
    Q_OBJECT

public:
    explicit KeyboardView(QWidget* parent = nullptr);
    ~KeyboardView() override;

    // Builds the keys from `keyArray` (element i must have index i) and loads the picture
    // `kbImage` (a resource or file path of an SVG or raster image, transparent over the keys);
    // when it is empty or cannot be read the view draws its own keyboard body. Turns mouse
    // handling on. The hovered and selected key are kept across a rebuild.
    void initKeyboard(const QString& kbImage, const std::vector<KeyData>& keyArray);

    // Every key's text back to the full name of its key name in the name map in force, and every
    // assignment mark cleared.
    void resetKeyMacro();
    // Text and assignment mark of one key. An index outside the keys is fatal.
    void setKeyMacro(int layoutIndex, const QString& text, bool macroState);
    // The dashed frame of one key. An index outside the keys is fatal.
    void setKeyCheck(int layoutIndex, bool check);
    // When on, leaving the view keeps the hovered key's check mark.
    void setCustomMode(bool on) { customMode_ = on; }

    QString keyMacro(int layoutIndex) const;
    bool isMacro(int layoutIndex) const;
    bool keyCheck(int layoutIndex) const;
    // Whether the key's background shows the highlight colour.
    bool isKeyHighlighted(int layoutIndex) const;
    int hoverKeyItem() const { return static_cast<int>(hoverKeyItem_); }
    int selectKeyItem() const { return static_cast<int>(selectKeyItem_); }
    int keyCount() const { return static_cast<int>(kbKeyArraySelect_.size()); }
    const std::vector<KeyData>& keys() const { return kbKeyArraySelect_; }
    // The key's rectangle in widget coordinates. An index outside the keys is fatal.
    QRect keyRect(int index) const;
    // True when a picture was loaded (false: the view draws its own body).
    bool hasPicture() const { return bCreateImageView_; }
    // The key's text as drawn on its cap. An index outside the keys is fatal.
    KeyLabel fittedLabel(int index) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    // Returns true while the application's start page covers the pages; pointer motion is then
    // ignored. Unset means false.
    std::function<bool()> showingHomePage;

    // AccessibleKeyboard
    int accessibleKeyCount() const override { return keyCount(); }
    QRect accessibleKeyRect(int key) const override { return keyRect(key); }
    QString accessibleKeyName(int key) const override;
    QString accessibleKeyDescription(int key) const override;
    bool accessibleKeysCheckable() const override { return isEvent_; }
    bool accessibleKeySelected(int key) const override { return key == selectKeyItem_; }
    void accessibleKeyPress(int key) override;
    int accessibleFocusKey() const override { return focus_.key(); }

signals:
    void ShowKeyboardToolTipWnd(const qx9::KeyboardToolTip& tip);
    void keyboardKeyAction(const std::string& keyName);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    void mouseMoved(const QPointF& p);
    void mouseDown();
    void selectKey(std::int64_t key);
    void activateKey(std::size_t i);
    void mouseUp(const QPointF& p);
    void mouseEntered();
    void mouseExited();
    void trackKeyViewHover(const QPointF& p);

    std::size_t checkedIndex(std::int64_t index) const;
    bool onHomePage() const { return showingHomePage && showingHomePage(); }
    void redrawKey(std::size_t i);
    void postToolTip(const KeyboardToolTip& tip);

    std::vector<KeyData> kbKeyArrayHover_;   // the keys, as drawn under the picture
    std::vector<KeyData> kbKeyArraySelect_;  // the keys with their assignment texts
    std::vector<KeyView> keyViews_;          // element i: background of key i
    std::vector<SelectKeyView> selectKeyViews_;
    KeyboardPicture picture_;  // the key rectangles (element i: key i) and the picture
    std::int64_t hoverKeyItem_ = -1;
    std::int64_t selectKeyItem_ = -1;
    bool isEvent_ = false;
    bool customMode_ = false;
    bool bCreateImageView_ = false;
    KeyFocus focus_{this, *this, [this](int key, bool) { accessibleKeyPress(key); }};  // Space: a click
};

}  // namespace qx9

Q_DECLARE_METATYPE(qx9::KeyboardToolTip)
