// Size and rate of pictures. A plain value.
#pragma once

namespace Corvanta::Engine {

struct PictureShape {
    // Pixels.
    int width = 0;
    int height = 0;
    // Pictures a second.
    int frameRate = 0;

    bool operator==(const PictureShape&) const = default;
};

}  // namespace Corvanta::Engine
