// Finished strokes without transparency, one over the other, as an undo draws them all again at once: from
// the uppermost down, and of each only what none above it covers. The pixels are those of drawing them in
// order. Made for one drawing; render thread.
#pragma once

#include <SDL.h>

#include <map>

#include "drawing/CoverageMask.h"
#include "drawing/LinePath.h"
#include "drawing/StepStamps.h"

namespace Corvanta::Drawing {

class StrokePile final {
public:
    // On the renderer's target as it is now.
    explicit StrokePile(SDL_Renderer* renderer);

    // Below those that are there. The stroke is normalised and IsSolid.
    void Draw(const LinePath& stroke);

private:
    [[nodiscard]] StepStamps& StampsOf(int width) { return stamps_.try_emplace(width, width).first->second; }

    SDL_Renderer* renderer_;
    SDL_Rect viewport_;
    CoverageMask covered_;
    // By the width of the strokes.
    std::map<int, StepStamps> stamps_;
};

}  // namespace Corvanta::Drawing
