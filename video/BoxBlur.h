// A soft edge for the shadow of a text. Any thread that owns the surface.
#pragma once

#include <SDL.h>

namespace Corvanta::Video {

// Blurs in place, in reading order: each pixel becomes the sum of the square of side 2 * radius + 1 around it
// over that square's area, whereby pixels before it are blurred already and those outside the surface count
// as nothing. So the border fades and the middle stays dark. A surface of other than 4 bytes a pixel, or a
// negative radius, is left alone.
void BoxBlur(SDL_Surface& surface, int radius);

}  // namespace Corvanta::Video
