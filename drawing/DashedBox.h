// The red dashed box around an open text. Render thread.
#pragma once

#include <SDL.h>

namespace Corvanta::Drawing {

// Around the rectangle in pixels of the viewport, at that distance. Sets the draw colour, no blend mode.
void DrawDashedBox(SDL_Renderer* renderer, const SDL_Rect& rect, int margin);

}  // namespace Corvanta::Drawing
