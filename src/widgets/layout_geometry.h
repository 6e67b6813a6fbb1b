#pragma once

#include <QColor>
#include <QPointF>
#include <QRectF>
#include <QSizeF>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "common/fatal.h"
#include "layout/geometry.h"
#include "layout/size_table.h"

namespace qx9 {

// Colours shared by the keyboard and the palette.
inline QColor highlightColor() {
    return QColor(202, 81, 0);
}
inline QColor keyRestColor() {
    return QColor(255, 255, 255);
}

// A layout rectangle (origin at the bottom left, y upwards) in the widget's coordinates (origin
// at the top left, y downwards) for a layout `layoutHeight` points high.
inline QRectF toWidgetRect(const Rect& r, double layoutHeight) {
    return QRectF(r.x, layoutHeight - (r.y + r.height), r.width, r.height);
}

// Hit test in widget coordinates. Half-open on both axes, so that for whole-pixel positions it
// agrees with QRect::contains on the key's QRect and two touching keys never both match.
inline bool keyContains(const QRectF& r, const QPointF& p) {
    return p.x() >= r.left() && p.x() < r.right() && p.y() >= r.top() && p.y() < r.bottom();
}

// The size of a placed layout: the key cells (each key rectangle is its cell inset by one
// point) reach from the origin to their furthest right and top edges; the size table's right
// and top container margins are added beyond them.
inline QSizeF layoutSize(const std::vector<Rect>& rects, const NamedSizes& sizeConf) {
    if (rects.empty()) return QSizeF();
    double right = 0;
    double top = 0;
    for (const Rect& r : rects) {
        right = std::max(right, r.x + r.width + 1);
        top = std::max(top, r.y + r.height + 1);
    }
    return QSizeF(right + sizeConf.at("container_margin_right"),
                  top + sizeConf.at("container_margin_top"));
}

// A placed layout as a view draws it: its size and every key's rectangle in the view's
// coordinates, element i for key i.
struct WidgetLayout {
    QSizeF size;
    std::vector<QRectF> rects;
};

// The widget layout of `keys` (records with an `index` and a layout `rect`). Element i must carry
// index i; otherwise the program stops, naming the element as `what` ("keyboard key").
template <typename Key>
WidgetLayout widgetLayout(const std::vector<Key>& keys, const char* what,
                          const NamedSizes& sizeConf) {
    for (std::size_t i = 0; i < keys.size(); ++i) {
        if (keys[i].index != static_cast<std::int64_t>(i)) {
            fatalError(std::string(what) + " " + std::to_string(i) + " carries index " +
                       std::to_string(keys[i].index));
        }
    }
    std::vector<Rect> rects;
    rects.reserve(keys.size());
    for (const Key& k : keys) rects.push_back(k.rect);
    WidgetLayout out;
    out.size = layoutSize(rects, sizeConf);
    out.rects.reserve(rects.size());
    for (const Rect& r : rects) out.rects.push_back(toWidgetRect(r, out.size.height()));
    return out;
}

}  // namespace qx9
