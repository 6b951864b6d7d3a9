// What the short steps of thick curves cover. A curve goes from pixel to pixel by a few at once, so that a
// stroke, and the next one of its width, makes the same steps over and over.
#pragma once

#include <SDL.h>

#include <cstdint>
#include <vector>

#include "drawing/CoverageMask.h"

namespace Corvanta::Drawing {

// One step of a curve and the joint to the one before it, which came by `before`; (0, 0): there is none.
void AddCurveStep(CoverageMask& mask, SDL_Point before, SDL_Point from, SDL_Point to, int width);

// Those of curves of one width. Made for one drawing; render thread.
class StepStamps final {
public:
    explicit StepStamps(int width);

    // Seen from where the step begins. Null where it has to be drawn as it is: a long or a wide one, one near
    // the edges of the target, or one with other pixels at another place. Valid until the next call.
    [[nodiscard]] const MaskStamp* Find(SDL_Point before, SDL_Point from, SDL_Point step);

private:
    [[nodiscard]] uint16_t Make(SDL_Point before, SDL_Point step);

    int width_;
    // By both steps: one more than the place among the stamps; 0: not made yet.
    std::vector<uint16_t> places_;
    std::vector<MaskStamp> stamps_;
};

}  // namespace Corvanta::Drawing
