#include "drawing/ErasedLinePath.h"

#include "drawing/PathTracer.h"

namespace Corvanta::Drawing {

ErasedLinePath::ErasedLinePath() {
    color = Color(0, 0, 0, 0);
}

ErasedLinePath::ErasedLinePath(const LinePath& path) : LinePath(path) {
    color = Color(0, 0, 0, 0);
}

void ErasedLinePath::Render(SDL_Renderer* renderer) {
    if (normalizedPoints.empty()) return;
    {
        const std::scoped_lock lock(colorMutex_);
        color.a = 0;
    }
    SDL_Rect viewport;
    SDL_RenderGetViewport(renderer, &viewport);
    SDL_BlendMode blendMode = SDL_BLENDMODE_NONE;
    SDL_GetRenderDrawBlendMode(renderer, &blendMode);
    SDL_SetRenderDrawBlendMode(renderer, SDL_BLENDMODE_NONE);
    const PathTracer tracer(normalizedPoints, normalizedStrokeWidth, viewport);
    Brush brush(tracer.BoxOfAll());
    tracer.TraceStraight(brush);
    // Not the shape's own colour, which is black again once it has been written to the wire.
    brush.Draw(renderer, {0, 0, 0, 0});
    SDL_SetRenderDrawBlendMode(renderer, blendMode);
}

}  // namespace Corvanta::Drawing
