#pragma once

class QApplication;

namespace qx9 {

// The application's look: a dark theme with the product's orange as the highlight.
void applyAppStyle(QApplication& app);

}  // namespace qx9
