#pragma once

#include <QFont>
#include <QRectF>
#include <QString>

class QPainter;

namespace qx9 {

// The smallest text a key cap shows before its text is elided, in pixels.
inline constexpr int kMinKeyLabelPixelSize = 7;

// A key's text as it fits its key cap: the font, the text (two lines split by '\n') and the
// box it is centred in.
struct KeyLabel {
    QFont font;
    QString text;
    QRectF box;
    bool elided = false;
};

// Fits `text` into the key cap `key`: from `largestPixelSize` down to kMinKeyLabelPixelSize, the
// first size at which it stands on one line, or on two lines where the cap is tall enough for
// two (broken at a space, or between Chinese characters). Only when nothing fits at the smallest size is it elided, on one line.
// Every view that writes on its keys fits its texts here.
KeyLabel fitKeyLabel(const QString& text, const QRectF& key, QFont font, int largestPixelSize);

void drawKeyLabel(QPainter& painter, const KeyLabel& label);

}  // namespace qx9
