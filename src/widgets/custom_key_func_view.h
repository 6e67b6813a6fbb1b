#pragma once

#include <QRectF>
#include <QSizeF>
#include <QString>
#include <QWidget>

#include <cstddef>
#include <cstdint>
#include <vector>

#include "layout/custom_key_func.h"
#include "widgets/key_focus.h"
#include "widgets/key_label.h"
#include "widgets/keyboard_accessible.h"

namespace qx9 {

// One palette key as drawn: its label (or icon) and its marks. `initView` takes effect once.
struct KeyFuncView {
    QString iconPath;  // resolved resource path of the key's icon, empty for a text label
    QString text;
    bool isHover = false;
    bool isSelect = false;
    bool initFinish = false;
    std::int64_t key_code = 0;

    void initView(const QString& key_icon, const QString& label, std::int64_t code);
};

// The key-function palette: a small full-size keyboard whose keys are the functions a QX9 key
// can be given. A click on a key (press and release over the same key) emits
// customKeyFuncAction with the key's code. The
// selection marks are set from outside; the palette never changes them itself. In the
// accessibility tree each key is a child named after its function, whose press action is a click.
class CustomKeyFuncView : public QWidget, public AccessibleKeyboard {
    Q_OBJECT

public:
    explicit CustomKeyFuncView(QWidget* parent = nullptr);

    // Replaces the palette with `keys` (element i must have index i).
    void initKeyFuncs(const std::vector<keyFunc>& keys);

    // Selection marks. An index outside the palette is fatal.
    void setSelected(int index, bool selected);
    void clearSelection();
    bool isSelected(int index) const;

    int hoverKeyItem() const { return hoverKey_; }
    const std::vector<keyFunc>& keys() const { return customkey_array_; }
    // The key's rectangle in widget coordinates. An index outside the palette is fatal.
    QRect keyRect(int index) const;
    // The key's text as drawn on its cap (none on a key with an icon). An index outside the
    // palette is fatal.
    KeyLabel fittedLabel(int index) const;

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

    // AccessibleKeyboard
    int accessibleKeyCount() const override { return static_cast<int>(views_.size()); }
    QRect accessibleKeyRect(int key) const override { return keyRect(key); }
    QString accessibleKeyName(int key) const override;
    bool accessibleKeysCheckable() const override { return true; }
    bool accessibleKeySelected(int key) const override { return isSelected(key); }
    void accessibleKeyPress(int key) override { activate(checkedIndex(key)); }
    int accessibleFocusKey() const override { return focus_.key(); }

signals:
    void customKeyFuncAction(std::int64_t key_code);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    std::size_t checkedIndex(int index) const;
    int keyAt(const QPointF& p) const;
    void setHover(int index);
    void redrawKey(std::size_t i);
    void activate(std::size_t i);

    std::vector<keyFunc> customkey_array_;
    std::vector<KeyFuncView> views_;  // element i: key i
    std::vector<QRectF> widgetRects_;
    QSizeF layoutSize_;
    int hoverKey_ = -1;
    int pressedKey_ = -1;
    KeyFocus focus_{this, *this, [this](int key, bool) { accessibleKeyPress(key); }};  // Space: a click
};

}  // namespace qx9
