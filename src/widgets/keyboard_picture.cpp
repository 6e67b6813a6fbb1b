#include "widgets/keyboard_picture.h"

#include <QFile>
#include <QPainter>
#include <QPainterPath>
#include <QPen>
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
    svg_.reset();
    raster_ = QImage();
    if (path.isEmpty()) return false;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) return false;
    const QByteArray data = file.readAll();
    if (looksLikeSvg(data)) {
        auto renderer = std::make_unique<QSvgRenderer>(data);
        if (!renderer->isValid()) return false;
        renderer->setAspectRatioMode(Qt::IgnoreAspectRatio);
        svg_ = std::move(renderer);
        return true;
    }
    raster_ = QImage::fromData(data);
    return !raster_.isNull();
}

void KeyboardPicture::paint(QPainter& painter) const {
    const QRectF frame(QPointF(), layout_.size);
    if (svg_) {
        svg_->render(&painter, frame);
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
