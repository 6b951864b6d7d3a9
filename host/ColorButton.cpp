#include "host/ColorButton.h"

#include <QPainter>

#include <utility>

#include "host/ColorPopup.h"
#include "host/ColorSwatch.h"
#include "host/PaletteLook.h"

namespace Corvanta::Host {
namespace {

constexpr int kSwatch = 22;
constexpr qreal kDisabledOpacity = 0.3;

}  // namespace

ColorButton::ColorButton(QWidget* parent, const QString& name, std::function<void(std::uint32_t)> onColor)
    : QToolButton(parent), onColor_(std::move(onColor)) {
    setFocusPolicy(Qt::TabFocus);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    setAccessibleName(name);
    setToolTip(name);
    QObject::connect(this, &QToolButton::clicked, this, [this] { Open(); });
}

void ColorButton::SetColor(std::uint32_t color) {
    if (std::exchange(color_, color) != color) update();
}

QSize ColorButton::sizeHint() const {
    return {kPaletteSide, kPaletteSide};
}

void ColorButton::Take(std::uint32_t color) {
    SetColor(color);
    onColor_(color);
}

void ColorButton::Open() {
    delete popup_;
    popup_ = new ColorPopup(this, accessibleName(), color_, [this](std::uint32_t color) { Take(color); });
    popup_->OpenAbove(*this);
}

void ColorButton::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (isEnabled() && (isDown() || underMouse() || hasFocus())) {
        painter.setPen(hasFocus() ? QPen(palette().color(QPalette::ButtonText), 1.0) : QPen(Qt::NoPen));
        painter.setBrush(palette().color(QPalette::Button).lighter(isDown() ? 100 : kPaletteHoverLighter));
        painter.drawRoundedRect(QRectF(rect()).adjusted(1, 1, -1, -1), kPaletteRadius, kPaletteRadius);
    }
    if (!isEnabled()) painter.setOpacity(kDisabledOpacity);
    QRectF place(0, 0, kSwatch, kSwatch);
    place.moveCenter(QRectF(rect()).center());
    DrawSwatch(painter, place, color_);
}

}  // namespace Corvanta::Host
