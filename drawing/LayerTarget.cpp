#include "drawing/LayerTarget.h"

namespace Corvanta::Drawing {

LayerTarget::LayerTarget(SDL_Renderer* renderer, SDL_Texture* texture)
    : renderer_(renderer), outer_(SDL_GetRenderTarget(renderer)) {
    if (outer_ != nullptr) SaveView();
    isSet_ = SDL_SetRenderTarget(renderer_, texture) == 0;
    if (isSet_) SDL_RenderSetViewport(renderer_, nullptr);
}

LayerTarget::~LayerTarget() {
    // A driver that fails may have gone half of the way.
    SDL_SetRenderTarget(renderer_, outer_);
    // SDL itself puts back how the window is drawn into.
    if (outer_ != nullptr) {
        SDL_RenderSetScale(renderer_, scaleX_, scaleY_);
        SDL_RenderSetViewport(renderer_, isWhole_ ? nullptr : &viewport_);
        SDL_RenderSetClipRect(renderer_, isClipped_ ? &clip_ : nullptr);
    }
    SDL_SetRenderDrawColor(renderer_, 0, 0, 0, 0);
    SDL_SetRenderDrawBlendMode(renderer_, SDL_BLENDMODE_BLEND);
}

void LayerTarget::SaveView() {
    SDL_RenderGetScale(renderer_, &scaleX_, &scaleY_);
    SDL_RenderGetViewport(renderer_, &viewport_);
    isClipped_ = SDL_RenderIsClipEnabled(renderer_) == SDL_TRUE;
    SDL_RenderGetClipRect(renderer_, &clip_);

    // Divided by the scale the whole may lose a part of a pixel.
    SDL_RenderSetScale(renderer_, 1, 1);
    SDL_Rect pixels{};
    SDL_RenderGetViewport(renderer_, &pixels);
    SDL_Point whole{};
    SDL_GetRendererOutputSize(renderer_, &whole.x, &whole.y);
    isWhole_ = pixels.x == 0 && pixels.y == 0 && pixels.w == whole.x && pixels.h == whole.y;
}

}  // namespace Corvanta::Drawing
