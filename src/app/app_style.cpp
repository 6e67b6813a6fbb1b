#include "app/app_style.h"

#include <QApplication>
#include <QFont>
#include <QFontDatabase>
#include <QPalette>
#include <QProxyStyle>
#include <QStyleFactory>

#include "i18n/language.h"

namespace qx9 {

namespace {

constexpr double kInterfacePointSize = 10;

const char* const kStyleSheet = R"(
QWidget { color: #e6e7ea; }
QMainWindow, #KeyboardViewController, QStackedWidget, #nodevice_view, QDialog { background: #17181b; }
#header { background: #202226; border-bottom: 1px solid #2d3036; }
#header_title { font-size: 15px; font-weight: 600; letter-spacing: 1px; color: #f2f3f5; }
#notice_label { background: #3a2a12; color: #f7d9a8; border-top: 1px solid #6b4a1c; }
#transfer_text { color: #a9adb5; }
#header QToolButton { border: none; padding: 6px 10px; border-radius: 6px; }
#header QToolButton:hover { background: #2b2e34; }
#header QToolButton[selected="true"] { background: #2e2118; }
#startview_title { font-size: 22px; font-weight: 600; color: #f2f3f5; }
#startview_status { font-size: 13px; color: #a9adb5; }
QPushButton#keyboard_connect { border: none; background: transparent; outline: none; }
QPushButton[role="segment"] { background: #333333; border: 1px solid #3d3d3d; padding: 6px 14px; color: #c9ccd2; }
QPushButton[role="segment"][active="true"] { background: #CA5100; border-color: #CA5100; color: #ffffff; }
QPushButton[role="segment"]:hover { border-color: #CA5100; }
QPushButton[role="textswitch"] { background: #24262b; border: 1px solid #33363d; padding: 6px 14px; color: #ffffff; }
QPushButton[role="textswitch"][active="true"] { color: #CA5100; border-color: #CA5100; font-weight: 600; }
QPushButton[role="menuitem"] { text-align: left; border: none; padding: 7px 16px; background: transparent; }
QPushButton[role="menuitem"]:hover { background: #CA5100; color: #ffffff; }
#keyboardKeyMenu, #keyboardToolTips { background: #24262b; border: 1px solid #3a3d45; border-radius: 6px; }
#label_keydesc { font-weight: 600; }
#label_keymacro { color: #f0a060; }
QListWidget { background: #1e2024; border: 1px solid #2d3036; border-radius: 6px; padding: 4px; outline: 0; }
QListWidget QLineEdit { padding: 0px 6px; margin: 0px; border: 1px solid #CA5100; border-radius: 3px; background: #24262b; }
QListWidget::item { padding: 7px 8px; border-radius: 4px; }
QListWidget::item:selected { background: #CA5100; color: #ffffff; }
QListWidget::item:hover:!selected { background: #2b2e34; }
#light_mode_table::item:selected { background: #2e2118; color: #f0a060; }
QToolButton { background: #24262b; border: 1px solid #33363d; border-radius: 4px; min-width: 26px; min-height: 22px; }
QToolButton:hover { border-color: #CA5100; }
QPushButton { background: #2a2d33; border: 1px solid #3a3d45; border-radius: 5px; padding: 6px 16px; }
QPushButton:hover { border-color: #CA5100; }
QPushButton:default { background: #CA5100; border-color: #CA5100; color: #ffffff; }
QComboBox, QLineEdit { background: #24262b; border: 1px solid #3a3d45; border-radius: 5px; padding: 5px 8px; }
QComboBox:focus, QLineEdit:focus { border-color: #CA5100; }
QComboBox::drop-down { border: none; width: 22px; }
QCheckBox::indicator:checked { background: #CA5100; border: 1px solid #CA5100; border-radius: 3px; }
QCheckBox::indicator:unchecked { background: #24262b; border: 1px solid #4a4e57; border-radius: 3px; }
QMessageBox { background: #202226; }
QFrame[role="panel"] { background: #1b1c20; border: 1px solid #2d3036; border-radius: 8px; }
QLabel[role="heading"] { font-size: 13px; font-weight: 600; color: #f2f3f5; background: transparent; border: none; }
QLabel[role="alert"] { color: #f7d9a8; background: transparent; border: none; }
QFrame[role="panel"] QLabel, QFrame[role="panel"] QRadioButton { background: transparent; border: none; }
QRadioButton::indicator:checked { background: #CA5100; border: 1px solid #CA5100; border-radius: 6px; }
QRadioButton::indicator:unchecked { background: #24262b; border: 1px solid #4a4e57; border-radius: 6px; }
QPushButton[role="compact"] { padding: 6px 8px; }
QPushButton[role="primary"] { background: #CA5100; border-color: #CA5100; color: #ffffff; font-weight: 600; }
QPushButton[recording="true"] { background: #b3261e; border-color: #e0463c; color: #ffffff; font-weight: 600; }
QPushButton:disabled, QLineEdit:disabled, QComboBox:disabled, QRadioButton:disabled { color: #6b6f78; }
QProgressBar { background: #24262b; border: 1px solid #33363d; border-radius: 4px; }
QProgressBar::chunk { background: #CA5100; border-radius: 3px; }
QProgressBar[full="true"]::chunk { background: #e0463c; }
QLabel[role="note"] { color: #a9adb5; }
QLabel[active="true"] { color: #CA5100; }
QToolButton[role="imagebutton"] { background: transparent; border: none; }
QToolButton[role="imagebutton"]:focus { border: 1px solid #CA5100; }
QSlider::groove:horizontal { height: 4px; background: #33363d; border-radius: 2px; }
QSlider::sub-page:horizontal { background: #CA5100; border-radius: 2px; }
QSlider::sub-page:horizontal:disabled { background: #4a4e57; }
QSlider::handle:horizontal { background: #e6e7ea; width: 14px; margin: -5px 0; border-radius: 7px; }
QSlider::handle:horizontal:disabled { background: #6a6e77; }
QPushButton:focus, QToolButton:focus, #header QToolButton:focus, QListWidget:focus { border: 1px solid #f2f3f5; }
QSlider::handle:horizontal:focus { background: #ffffff; border: 2px solid #CA5100; }
QRadioButton:focus, QCheckBox:focus { color: #ffffff; text-decoration: underline; }
QPushButton#keyboard_connect:focus { border: 1px solid #f2f3f5; border-radius: 8px; }
)";

// Fusion, without the theme icons it would put on the buttons of message boxes and dialogs.
class AppStyle : public QProxyStyle {
public:
    AppStyle() : QProxyStyle(QStyleFactory::create("Fusion")) {}
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* data) const override {
        if (hint == SH_DialogButtonBox_ButtonsHaveIcons) return 0;
        return QProxyStyle::styleHint(hint, option, widget, data);
    }
};

}  // namespace

void applyAppStyle(QApplication& app) {
    app.setStyle(new AppStyle);
    QPalette p;
    p.setColor(QPalette::Window, QColor(0x17, 0x18, 0x1b));
    p.setColor(QPalette::WindowText, QColor(0xe6, 0xe7, 0xea));
    p.setColor(QPalette::Base, QColor(0x24, 0x26, 0x2b));
    p.setColor(QPalette::Text, QColor(0xe6, 0xe7, 0xea));
    p.setColor(QPalette::Button, QColor(0x2a, 0x2d, 0x33));
    p.setColor(QPalette::ButtonText, QColor(0xe6, 0xe7, 0xea));
    p.setColor(QPalette::Highlight, QColor(0xCA, 0x51, 0x00));
    p.setColor(QPalette::HighlightedText, Qt::white);
    p.setColor(QPalette::ToolTipBase, QColor(0x24, 0x26, 0x2b));
    p.setColor(QPalette::ToolTipText, QColor(0xe6, 0xe7, 0xea));
    app.setPalette(p);
    app.setStyleSheet(kStyleSheet);
    setInterfaceFont(kLanguageEnglish);
}

void setInterfaceFont(int language) {
    QFont f = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    if (language == kLanguageSimplifiedChinese) f.setFamilies({"Noto Sans CJK SC"});
    if (language == kLanguageTraditionalChinese) f.setFamilies({"Noto Sans CJK TC"});
    f.setPointSizeF(kInterfacePointSize);
    if (QApplication::font() != f) QApplication::setFont(f);
}

}  // namespace qx9
