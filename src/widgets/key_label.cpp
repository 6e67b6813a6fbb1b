#include "widgets/key_label.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QTextBoundaryFinder>

#include <algorithm>

namespace qx9 {

namespace {

constexpr double kPadding = 2;  // left and right of the text, inside the cap

// The two lines of `text` broken where the longer line is shortest, at a space or between two
// Chinese characters (where a line may break); empty when the text cannot be broken.
QString twoLines(const QString& text, const QFontMetricsF& metrics, double& width) {
    QString best;
    width = 0;
    QTextBoundaryFinder breaks(QTextBoundaryFinder::Line, text);
    for (qsizetype at = breaks.toNextBoundary(); at > 0 && at < text.size(); at = breaks.toNextBoundary()) {
        const QString first = text.left(at).trimmed();
        const QString second = text.mid(at).trimmed();
        if (first.isEmpty() || second.isEmpty()) continue;
        const double w = std::max(metrics.horizontalAdvance(first), metrics.horizontalAdvance(second));
        if (best.isEmpty() || w < width) {
            best = first + '\n' + second;
            width = w;
        }
    }
    return best;
}

}  // namespace

KeyLabel fitKeyLabel(const QString& text, const QRectF& key, QFont font, int largestPixelSize) {
    const QRectF box = key.adjusted(kPadding, 0, -kPadding, 0);
    for (int size = largestPixelSize; size >= kMinKeyLabelPixelSize; --size) {
        font.setPixelSize(size);
        const QFontMetricsF metrics(font);
        if (metrics.height() > box.height()) continue;
        if (metrics.horizontalAdvance(text) <= box.width()) return {font, text, box, false};
        double width = 0;
        const QString lines = twoLines(text, metrics, width);
        if (!lines.isEmpty() && width <= box.width() && metrics.lineSpacing() + metrics.height() <= box.height()) {
            return {font, lines, box, false};
        }
    }
    font.setPixelSize(kMinKeyLabelPixelSize);
    const QString elided = QFontMetricsF(font).elidedText(text, Qt::ElideRight, box.width());
    return {font, elided, box, elided != text};
}

void drawKeyLabel(QPainter& painter, const KeyLabel& label) {
    painter.setFont(label.font);
    painter.drawText(label.box, Qt::AlignCenter, label.text);
}

}  // namespace qx9
