// The colours that a ColorButton offers: the common ones, how opaque, and any other by a dialog. It goes when
// the person clicks elsewhere. Main thread only.
#pragma once

#include <QFrame>

#include <cstdint>
#include <functional>

class QLabel;
class QSlider;

namespace Corvanta::Host {

class ColorPopup final : public QFrame {
public:
    // color: 0xRRGGBBAA, as what onColor is told at each choice.
    ColorPopup(QWidget* parent, const QString& title, std::uint32_t color,
               std::function<void(std::uint32_t)> onColor);

    void OpenAbove(const QWidget& button);

private:
    void Choose(std::uint32_t color);
    void OpenDialog();

    const QString title_;
    std::uint32_t color_;
    const std::function<void(std::uint32_t)> onColor_;
    // Children of this popup.
    QSlider* opacity_ = nullptr;
    QLabel* percent_ = nullptr;
};

}  // namespace Corvanta::Host
