// A button that shows a colour with its transparency and offers others. Main thread only.
#pragma once

#include <QColor>
#include <QPointer>
#include <QToolButton>

#include <cstdint>
#include <functional>

namespace Corvanta::Host {

class ColorPopup;

class ColorButton final : public QToolButton {
public:
    // onColor: the person has chosen another colour, 0xRRGGBBAA.
    ColorButton(QWidget* parent, const QString& name, std::function<void(std::uint32_t)> onColor);

    // 0xRRGGBBAA.
    void SetColor(std::uint32_t color);

    [[nodiscard]] QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    void Open();
    void Take(std::uint32_t color);

    const std::function<void(std::uint32_t)> onColor_;
    std::uint32_t color_ = 0;
    QPointer<ColorPopup> popup_;
};

}  // namespace Corvanta::Host
