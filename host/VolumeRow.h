// A name with a volume's slider, and a meter where there is something to measure. Main thread only.
#pragma once

#include <QElapsedTimer>
#include <QWidget>

#include <functional>

class QLabel;
class QProgressBar;
class QSlider;

namespace Corvanta::Host {

class VolumeRow final : public QWidget {
public:
    enum class Meter { None, Shown };

    // volume: a slider position from 0 to 1. onVolume: the person has moved the slider.
    VolumeRow(QWidget* parent, const QString& name, double volume, Meter meter,
              std::function<void(float)> onVolume);

    void SetName(const QString& name);
    // What the room says it is. Nothing while the person moves the slider, and for a moment after that.
    void SetVolume(double volume);
    // 0 to 1.
    void SetLoudness(double loudness);
    void FocusSlider();

private:
    const std::function<void(float)> onVolume_;
    // Children of this row.
    QLabel* name_ = nullptr;
    QSlider* slider_ = nullptr;
    QLabel* percent_ = nullptr;
    QProgressBar* meter_ = nullptr;
    QElapsedTimer sinceMoved_;
};

}  // namespace Corvanta::Host
