#pragma once

#include <QByteArray>
#include <QImage>
#include <QPixmap>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <vector>

#include "layout/keyboard_layout.h"
#include "widgets/layout_geometry.h"

class QPainter;

namespace qx9 {

// The drawn QX9 that every on-screen keyboard shows: the layout's key rectangles in widget
// coordinates and the keyboard picture over them (transparent over the key caps, so that what
// a view paints into the key rectangles shows through). Without a picture it draws a keyboard
// body of its own: a dark plate with a rounded hole over each key.
class KeyboardPicture {
public:
    KeyboardPicture();
    ~KeyboardPicture();

    // Places `keys` (element i must have index i) and loads `image` (a resource or file path of
    // an SVG or raster image). False when there is no picture to draw.
    bool init(const QString& image, const std::vector<KeyData>& keys);

    const QSizeF& size() const { return layout_.size; }
    const std::vector<QRectF>& rects() const { return layout_.rects; }
    // The first key containing `p`, −1 between keys.
    int keyAt(const QPointF& p) const;
    bool hasPicture() const { return !svgData_.isEmpty() || !raster_.isNull(); }

    // Draws the picture (or the body) over the whole frame. An SVG picture is rendered once per
    // size, and the rendering is shared by every keyboard that shows the same picture.
    void paint(QPainter& painter) const;

private:
    bool load(const QString& path);
    QPixmap rendered(const QSize& pixels, qreal ratio) const;
    void paintBody(QPainter& painter) const;

    WidgetLayout layout_;
    QString path_;
    QByteArray svgData_;
    QImage raster_;
};

}  // namespace qx9
