#include "pages/color_panel.h"

#include <QColorDialog>

#include "session/keyboard_session.h"

namespace qx9 {

ColorPanel::ColorPanel(KeyboardSession& session, QWidget* window)
    : QObject(window), session_(session), window_(window) {}

QColorDialog* ColorPanel::dialog() {
    if (dialog_) return dialog_;
    dialog_ = new QColorDialog(window_);
    dialog_->setObjectName("colorPanel");
    // Qt's own dialog: it reports every colour as it is picked, and screen readers reach it.
    dialog_->setOptions(QColorDialog::NoButtons | QColorDialog::DontUseNativeDialog);
    dialog_->setModal(false);
    connect(dialog_, &QColorDialog::currentColorChanged, this, [this](const QColor& c) {
        if (syncing_) return;
        const LightColor color{c.redF(), c.greenF(), c.blueF()};
        switch (session_.lighting.colorPanel()) {
            case ColorPanelAction::LightColor: session_.lighting.lightColorPanel(color); break;
            case ColorPanelAction::UserLightColor: session_.userLights.userLightColorPanel(color); break;
            case ColorPanelAction::Closed: break;
        }
    });
    connect(dialog_, &QColorDialog::finished, this, [this] {
        if (!syncing_) session_.lighting.colorPanelClosed();
    });
    return dialog_;
}

void ColorPanel::sync() {
    syncing_ = true;
    if (session_.lighting.colorPanel() == ColorPanelAction::Closed) {
        if (dialog_) dialog_->hide();
    } else if (!dialog()->isVisible()) {
        // At the colour it edits: the swatch of the page that opened it.
        if (session_.lighting.colorPanel() == ColorPanelAction::LightColor) {
            dialog_->setCurrentColor(QColor::fromRgb(session_.lighting.light_btn_color()));
        } else {
            const LightColor& c = session_.userLights.userlight_btn_color();
            dialog_->setCurrentColor(QColor::fromRgbF(float(c.red), float(c.green), float(c.blue)));
        }
        dialog_->show();
        dialog_->raise();
    }
    syncing_ = false;
}

}  // namespace qx9
