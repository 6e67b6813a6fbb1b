#include "widgets/keyboard_picture.h"

#include <QFile>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
#include <QPixmapCache>
#include <QSvgRenderer>

namespace qx9 {

namespace {

constexpr double kBodyRadius = 12;
constexpr double kHoleRadius = 4;

bool looksLikeSvg(const QByteArray& data) {
    if (data.startsWith("\x1f\x8b")) return true;  // compressed SVG
    return data.left(4096).contains("<svg");
}

}  // namespace

KeyboardPicture::KeyboardPicture() = default;
KeyboardPicture::~KeyboardPicture() = default;

bool KeyboardPicture::init(const QString& image, const std::vector<KeyData>& keys) {
    layout_ = widgetLayout(keys, "keyboard key", KB_108K_Size_Conf());
    return load(image);
}

int KeyboardPicture::keyAt(const QPointF& p) const {
    for (std::size_t i = 0; i < layout_.rects.size(); ++i) {
        if (keyContains(layout_.rects[i], p)) return static_cast<int>(i);
    }
    return -1;
}

bool KeyboardPicture::load(const QString& path) {
    path_ = path;
    svgData_.clear();
    raster_ = QImage();
    if (path.isEmpty()) return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return false;
    const QByteArray data = file.readAll();
    if (looksLikeSvg(data)) {
        // Read when it is first drawn, at the size it is drawn at.
        svgData_ = data;
        return true;
    }
    raster_ = QImage::fromData(data);
    return !raster_.isNull();
}

QPixmap KeyboardPicture::rendered(const QSize& pixels, qreal ratio) const {
    const QString key = QStringLiteral("qx9-keyboard:%1:%2x%3").arg(path_).arg(pixels.width()).arg(pixels.height());
    QPixmap pixmap;
    if (!QPixmapCache::find(key, &pixmap)) {
        QSvgRenderer svg(svgData_);
        if (!svg.isValid()) return {};
        svg.setAspectRatioMode(Qt::IgnoreAspectRatio);
        pixmap = QPixmap(pixels);
        pixmap.fill(Qt::transparent);
        QPainter p(&pixmap);
        p.setRenderHint(QPainter::Antialiasing);
        svg.render(&p, QRectF(QPointF(), QSizeF(pixels)));
        p.end();
        QPixmapCache::insert(key, pixmap);
    }
    pixmap.setDevicePixelRatio(ratio);
    return pixmap;
}

void KeyboardPicture::paint(QPainter& painter) const {
    const QRectF frame(QPointF(), layout_.size);
    if (!svgData_.isEmpty()) {
        const qreal ratio = painter.device() ? painter.device()->devicePixelRatio() : 1.0;
        const QPixmap pixmap = rendered((layout_.size * ratio).toSize(), ratio);
        if (!pixmap.isNull()) return painter.drawPixmap(frame.topLeft(), pixmap);
        paintBody(painter);  // a damaged picture
    } else if (!raster_.isNull()) {
        painter.drawImage(frame, raster_);
    } else {
        paintBody(painter);
    }
}

void KeyboardPicture::paintBody(QPainter& painter) const {
    const QRectF plate = QRectF(QPointF(), layout_.size).adjusted(0.5, 0.5, -0.5, -0.5);
    QPainterPath body;
    body.setFillRule(Qt::OddEvenFill);
    body.addRoundedRect(plate, kBodyRadius, kBodyRadius);
    QPainterPath holes;
    for (const QRectF& r : layout_.rects) holes.addRoundedRect(r, kHoleRadius, kHoleRadius);
    body.addPath(holes);

    painter.fillPath(body, QColor(40, 42, 48));
    painter.setPen(QPen(QColor(78, 82, 92), 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(plate, kBodyRadius, kBodyRadius);
    painter.setPen(QPen(QColor(22, 23, 26), 1));
    for (const QRectF& r : layout_.rects) {
        painter.drawRoundedRect(r.adjusted(-0.5, -0.5, 0.5, 0.5), kHoleRadius + 0.5, kHoleRadius + 0.5);
    }
}

}  // namespace qx9
