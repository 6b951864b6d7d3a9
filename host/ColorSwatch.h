// How a colour of the drawing tool is shown: a disc, over a chequered one where it is transparent. Plain
// functions; main thread only.
#pragma once

#include <QColor>
#include <QPainter>
#include <QRectF>

#include <cstdint>

namespace Corvanta::Host {

// The library's colours are 0xRRGGBBAA.
[[nodiscard]] QColor ToQColor(std::uint32_t rgba);
[[nodiscard]] std::uint32_t FromQColor(const QColor& color);

// Fills the square `place`. Leaves the painter's pen and brush changed.
void DrawSwatch(QPainter& painter, const QRectF& place, std::uint32_t rgba);

}  // namespace Corvanta::Host
