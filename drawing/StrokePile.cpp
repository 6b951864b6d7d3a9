#include "drawing/StrokePile.h"

#include "drawing/Brush.h"
#include "drawing/PathTracer.h"

namespace Corvanta::Drawing {
namespace {

[[nodiscard]] SDL_Rect ViewportOf(SDL_Renderer* renderer) {
    SDL_Rect viewport;
    SDL_RenderGetViewport(renderer, &viewport);
    return {0, 0, viewport.w, viewport.h};
}

// As masks are laid over each other.
[[nodiscard]] SDL_Rect Aligned(const SDL_Rect& box) {
    const int before = box.x % CoverageMask::kWordBits;
    return {box.x - before, box.y, box.w + before, box.h};
}

}  // namespace

StrokePile::StrokePile(SDL_Renderer* renderer)
    : renderer_(renderer), viewport_(ViewportOf(renderer)), covered_(viewport_) {}

void StrokePile::Draw(const LinePath& stroke) {
    const PathTracer tracer(stroke.normalizedPoints, stroke.normalizedStrokeWidth, viewport_);
    const SDL_Rect box = tracer.BoxOfAll();
    if (SDL_RectEmpty(&box) == SDL_TRUE) return;
    Brush brush(Aligned(box), StampsOf(tracer.Thickness()));
    tracer.TraceAll(brush);
    brush.PaintBeside(covered_);
    SDL_SetRenderDrawBlendMode(renderer_, SDL_BLENDMODE_NONE);
    brush.Draw(renderer_, stroke.color.ToSdl());
}

}  // namespace Corvanta::Drawing
