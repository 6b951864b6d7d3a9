// Texts of any length and content as pictures of bounded size. Render thread.
#pragma once

#include <SDL.h>
#include <SDL_ttf.h>

#include <string>

namespace Corvanta::Drawing {

// The UTF-8 text in the font's present size and style, its lines broken at line feeds and at wrapWidth
// pixels, 0 for line feeds alone. A line feed at the end makes an empty line. Ends at a byte of 0. A text
// whose picture the renderer could not hold, or nobody could see, is cut. Null when there is nothing to be
// drawn; otherwise the caller frees it.
[[nodiscard]] SDL_Surface* RasteriseText(SDL_Renderer* renderer, TTF_Font* font, const std::string& text,
                                         const SDL_Color& color, int wrapWidth);

}  // namespace Corvanta::Drawing
