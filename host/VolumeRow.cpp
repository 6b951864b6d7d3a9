#include "host/VolumeRow.h"

#include <QGridLayout>
#include <QLabel>
#include <QProgressBar>
#include <QSignalBlocker>
#include <QSlider>

#include <algorithm>
#include <cmath>
#include <utility>

namespace Corvanta::Host {
namespace {

constexpr int kSteps = 100;
constexpr int kMeterSteps = 200;
constexpr int kMeterHeight = 6;
// Within this time the room's answer may still be the volume before.
constexpr qint64 kOwnVolumeMs = 500;

int StepOf(double volume, int steps) {
    // Not a number counts as silence.
    return volume > 0.0 ? static_cast<int>(std::lround(std::min(volume, 1.0) * steps)) : 0;
}

}  // namespace

VolumeRow::VolumeRow(QWidget* parent, const QString& name, double volume, Meter meter,
                     std::function<void(float)> onVolume)
    : QWidget(parent), onVolume_(std::move(onVolume)) {
    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(0, 2, 0, 2);
    name_ = new QLabel(this);
    name_->setTextFormat(Qt::PlainText);
    name_->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
    percent_ = new QLabel(this);
    percent_->setMinimumWidth(percent_->fontMetrics().horizontalAdvance(QStringLiteral("100 %")));
    percent_->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    slider_ = new QSlider(Qt::Horizontal, this);
    slider_->setRange(0, kSteps);
    slider_->setPageStep(kSteps / 10);
    grid->addWidget(name_, 0, 0, 1, 2);
    grid->addWidget(slider_, 1, 0);
    grid->addWidget(percent_, 1, 1);
    grid->setColumnStretch(0, 1);
    if (meter == Meter::Shown) {
        meter_ = new QProgressBar(this);
        meter_->setRange(0, kMeterSteps);
        meter_->setTextVisible(false);
        meter_->setFixedHeight(kMeterHeight);
        grid->addWidget(meter_, 2, 0);
    }
    QObject::connect(slider_, &QSlider::valueChanged, this, [this](int value) {
        percent_->setText(QString::number(value) + QStringLiteral(" %"));
        sinceMoved_.start();
        onVolume_(static_cast<float>(value) / static_cast<float>(kSteps));
    });
    SetName(name);
    SetVolume(volume);
}

void VolumeRow::SetName(const QString& name) {
    if (name_->text() == name) return;
    name_->setText(name);
    slider_->setAccessibleName(QStringLiteral("Volume of ") + name);
}

void VolumeRow::SetVolume(double volume) {
    if (slider_->isSliderDown() || (sinceMoved_.isValid() && !sinceMoved_.hasExpired(kOwnVolumeMs))) return;
    const QSignalBlocker quiet(slider_);
    slider_->setValue(StepOf(volume, kSteps));
    percent_->setText(QString::number(slider_->value()) + QStringLiteral(" %"));
}

void VolumeRow::SetLoudness(double loudness) {
    if (meter_ != nullptr) meter_->setValue(StepOf(loudness, kMeterSteps));
}

void VolumeRow::FocusSlider() {
    slider_->setFocus();
}

}  // namespace Corvanta::Host
