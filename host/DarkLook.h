// The colours of the program's own windows, in one voice with the room. Main thread only.
#pragma once

#include <QColor>

namespace Corvanta::Host {

inline constexpr QColor kWindowColour(0x12, 0x13, 0x16);

// Style and palette of every window from then on; before the first one is made.
void ApplyDarkLook();

}  // namespace Corvanta::Host
