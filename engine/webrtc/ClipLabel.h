// The burnt-in texts of a generated clip: its name, and the running time from ready-made digits. Made once;
// only read afterwards, on any thread.
#pragma once

#include <array>
#include <chrono>
#include <string>

#include "engine/webrtc/ClipPainter.h"

namespace Corvanta::Engine {

class ClipLabel final {
public:
    // divisor: by how much the clip is smaller than its full size.
    ClipLabel(const std::string& name, int divisor);

    // The name at the top left, the time ("1:02.3") at the top right.
    void Draw(const Planes& target, std::chrono::nanoseconds time) const;

private:
    Sprite nameSprite;
    Sprite timeGround;
    std::array<Sprite, 10> digits;
    Sprite colon, point;
    int digitWidth = 0;
    int margin, padding;
};

}  // namespace Corvanta::Engine
