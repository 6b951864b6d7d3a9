// What the buttons of the drawing palette have in common. Plain values.
#pragma once

#include <QtGlobal>

namespace Corvanta::Host {

// In the desktop's units.
inline constexpr int kPaletteSide = 34;
inline constexpr qreal kPaletteRadius = 8.0;
// Of the ground under the pointer, in percent of the button's own.
inline constexpr int kPaletteHoverLighter = 130;

}  // namespace Corvanta::Host
