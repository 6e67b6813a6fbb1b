#pragma once

class QApplication;

namespace qx9 {

// The application's look: a dark theme with the product's orange as the highlight.
void applyAppStyle(QApplication& app);
// The interface font for a language: the desktop's own for English, Noto Sans CJK for the
// Chinese ones, whose Latin letters match their characters. A Chinese face is only loaded when
// Chinese text is shown.
void setInterfaceFont(int language);

}  // namespace qx9
