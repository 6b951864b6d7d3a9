// The darkening at the foot of a thumbnail that keeps the overlays readable on a bright picture. One texture
// serves all tiles of a wall. Render thread only.
#pragma once

#include <SDL.h>

namespace Corvanta::Video {

class OverlayGradient final {
public:
    OverlayGradient() = default;
    // ReleaseTexture must have come before the renderer went: a renderer takes its textures along.
    ~OverlayGradient() = default;
    OverlayGradient(const OverlayGradient&) = delete;
    OverlayGradient& operator=(const OverlayGradient&) = delete;

    // Makes the texture for tiles of this size in logical pixels; nothing when it is there already.
    void Resize(SDL_Renderer* renderer, int width, int height, bool fromBottom);
    void Render(SDL_Renderer* renderer, SDL_Point topLeft) const;
    void ReleaseTexture();
    [[nodiscard]] SDL_Texture* GetTexture() const { return texture_; }

private:
    int width_ = 0;
    int height_ = 0;
    bool fromBottom_ = false;
    SDL_Texture* texture_ = nullptr;
    SDL_Renderer* renderer_ = nullptr;
};

}  // namespace Corvanta::Video
