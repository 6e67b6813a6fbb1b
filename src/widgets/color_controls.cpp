#include "widgets/color_controls.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>

#include "i18n/extra_texts.h"
#include "layout/light_colours.h"
#include "widgets/color_button.h"

namespace qx9 {

namespace {

constexpr int kPresetsPerRow = 7;
constexpr const char* kChannelLetters[3] = {"R", "G", "B"};
constexpr const char* kChannelSuffixes[3] = {"r", "g", "b"};

}  // namespace

ColorControls::ColorControls(const QString& prefix, QWidget* parent) : QWidget(parent) {
    auto* fieldsRow = new QHBoxLayout;
    fieldsRow->setSpacing(6);
    for (int c = 0; c < 3; ++c) {
        labels_[c] = new QLabel(kChannelLetters[c], this);
        fields_[c] = new QLineEdit(this);
        fields_[c]->setObjectName(QString("%1_edit_color_%2").arg(prefix, kChannelSuffixes[c]));
        fields_[c]->setMaxLength(4);
        fields_[c]->setFixedWidth(52);
        fields_[c]->setAlignment(Qt::AlignCenter);
        labels_[c]->setBuddy(fields_[c]);
        connect(fields_[c], &QLineEdit::textEdited, this, [this, c](const QString& text) { emit fieldEdited(c, text); });
        fieldsRow->addWidget(labels_[c]);
        fieldsRow->addWidget(fields_[c]);
        fieldsRow->addSpacing(4);
    }
    swatch_ = new ColorButton(this);
    connect(swatch_, &ColorButton::colorButtonAction, this, [this] { emit colorButtonAction(0); });
    swatch_->setObjectName(prefix + "_btn_color");
    swatch_->setFixedSize(48, 26);
    fieldsRow->addWidget(swatch_);
    fieldsRow->addStretch();

    auto* presetGrid = new QGridLayout;
    presetGrid->setSpacing(6);
    for (int i = 1; i <= kPresetColorCount; ++i) {
        auto* b = new ColorButton(this);
        connect(b, &ColorButton::colorButtonAction, this, [this, i] { emit colorButtonAction(i); });
        b->setObjectName(QString("%1_btn_color%2").arg(prefix).arg(i));
        const RgbColor c = presetLightColor(i);
        b->setBtnColor(QColor(c.r, c.g, c.b));
        presets_[static_cast<std::size_t>(i - 1)] = b;
        presetGrid->addWidget(b, (i - 1) / kPresetsPerRow, (i - 1) % kPresetsPerRow);
    }
    presetGrid->setColumnStretch(kPresetsPerRow, 1);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(8);
    layout->addLayout(fieldsRow);
    layout->addLayout(presetGrid);
    retranslate();
}

void ColorControls::setFields(const std::string& r, const std::string& g, const std::string& b) {
    const std::string* texts[3] = {&r, &g, &b};
    for (int c = 0; c < 3; ++c) {
        const QString t = QString::fromStdString(*texts[c]);
        if (fields_[c]->text() != t) fields_[c]->setText(t);  // leaves the cursor alone otherwise
    }
}

void ColorControls::setSwatch(const QColor& color) {
    swatch_->setBtnColor(color);
}

void ColorControls::setColorsEnabled(bool enabled) {
    for (QLineEdit* f : fields_) f->setEnabled(enabled);
    swatch_->setDiasble(!enabled);
    for (ColorButton* b : presets_) b->setDiasble(!enabled);
}

void ColorControls::retranslate() {
    const ExtraText names[3] = {ExtraText::kRed, ExtraText::kGreen, ExtraText::kBlue};
    for (int c = 0; c < 3; ++c) fields_[c]->setAccessibleName(QString::fromStdString(extraText(names[c])));
    swatch_->setAccessibleName(QString::fromStdString(extraText(ExtraText::kColour)));
    const QString preset = QString::fromStdString(extraText(ExtraText::kPresetColour));
    for (int i = 1; i <= kPresetColorCount; ++i) presets_[static_cast<std::size_t>(i - 1)]->setAccessibleName(preset.arg(i));
}

}  // namespace qx9
