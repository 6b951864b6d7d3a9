#include "host/ColorSwatch.h"

#include <QBrush>
#include <QPen>

namespace Corvanta::Host {
namespace {

constexpr int kOpaque = 255;
constexpr QColor kSquare(0x9A, 0x9E, 0xA8);
constexpr QColor kOtherSquare(0x5A, 0x5E, 0x68);
// Seen on the palette's dark ground, around black as well.
constexpr QColor kRim(255, 255, 255, 70);

}  // namespace

QColor ToQColor(std::uint32_t rgba) {
    const auto channel = [rgba](unsigned shift) { return static_cast<int>((rgba >> shift) & 0xFFU); };
    return {channel(24), channel(16), channel(8), channel(0)};
}

std::uint32_t FromQColor(const QColor& color) {
    const auto channel = [](int value, unsigned shift) { return static_cast<std::uint32_t>(value) << shift; };
    return channel(color.red(), 24) | channel(color.green(), 16) | channel(color.blue(), 8) |
           channel(color.alpha(), 0);
}

void DrawSwatch(QPainter& painter, const QRectF& place, std::uint32_t rgba) {
    const QColor color = ToQColor(rgba);
    const QRectF disc = place.adjusted(0.5, 0.5, -0.5, -0.5);
    painter.setPen(Qt::NoPen);
    if (color.alpha() < kOpaque) {
        painter.setBrush(kSquare);
        painter.drawEllipse(disc);
        painter.setBrush(kOtherSquare);
        constexpr int kQuarter = 90 * 16;  // in the toolkit's sixteenths of a degree
        painter.drawPie(disc, 0, kQuarter);
        painter.drawPie(disc, 2 * kQuarter, kQuarter);
    }
    painter.setBrush(color);
    painter.drawEllipse(disc);
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(kRim, 1.0));
    painter.drawEllipse(disc);
}

}  // namespace Corvanta::Host
