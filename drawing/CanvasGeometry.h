// Sizes and places of a canvas over a picture, as functions of plain numbers.
#pragma once

#include <SDL.h>

namespace Corvanta::Drawing {

struct CanvasSize {
    double width = 0;
    double height = 0;
};

// The reference size for frames of that size in pixels, both positive: the same for all frames of one aspect
// ratio, round numbers for the common ones. An odd ratio keeps itself, with the height of the nearest common.
[[nodiscard]] CanvasSize CanvasSizeFor(int frameWidth, int frameHeight);

// Size of a layer in pixels: scale times the reference size, its shorter side held between 720 and 2160.
// maxSide: what the renderer can make, 0 when it does not say.
[[nodiscard]] SDL_Point TextureSizeFor(const CanvasSize& canvas, float scale, int maxSide);

// What of a layer is shown over that part of the picture: the whole height, and of the width as much as the
// picture shows, centred. Empty where there is no ratio to be had, and then nothing is shown.
[[nodiscard]] SDL_Rect CropOf(SDL_Point textureSize, const SDL_Rect& sourceRect,
                              const SDL_Rect& destinationRect);

}  // namespace Corvanta::Drawing
