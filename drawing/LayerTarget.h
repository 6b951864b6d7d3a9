// Draws into a texture for as long as it lives. Then the renderer draws where it did before, in the same
// viewport, clip and scale, with draw colour (0, 0, 0, 0) and blend mode BLEND. Render thread.
#pragma once

#include <SDL.h>

namespace Corvanta::Drawing {

class LayerTarget final {
public:
    // The whole texture is drawn into, whatever scale and viewport the window has.
    LayerTarget(SDL_Renderer* renderer, SDL_Texture* texture);
    ~LayerTarget();
    LayerTarget(const LayerTarget&) = delete;
    LayerTarget& operator=(const LayerTarget&) = delete;

    // False when the texture cannot be drawn into: nothing may be drawn then, since it would land on what is
    // shown.
    [[nodiscard]] bool IsSet() const { return isSet_; }

private:
    void SaveView();

    SDL_Renderer* const renderer_;
    SDL_Texture* const outer_;
    bool isSet_ = false;
    // How the outer texture is drawn into, if there is one.
    float scaleX_ = 1;
    float scaleY_ = 1;
    bool isWhole_ = true;
    SDL_Rect viewport_{};
    bool isClipped_ = false;
    SDL_Rect clip_{};
};

}  // namespace Corvanta::Drawing
