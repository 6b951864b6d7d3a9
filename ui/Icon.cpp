#include "ui/Icon.h"

#include <utility>

#include "ui/TextureCache.h"

namespace Corvanta::UI {

Icon::Icon(std::string path) : path_(std::move(path)) {}

void Icon::Render(SDL_Renderer* renderer, SDL_Point position) {
    if (width <= 0 || height <= 0) return;
    if (texture_ == nullptr) texture_ = LoadCachedTexture(renderer, path_);
    if (texture_ == nullptr) return;
    const SDL_Rect destination{position.x, position.y, width, height};
    SDL_RenderCopy(renderer, texture_, nullptr, &destination);
}

}  // namespace Corvanta::UI
