// Where the font library breaks a text into lines, told without drawing it. Render thread.
#pragma once

#include <SDL_ttf.h>

#include <cstddef>
#include <string>

namespace Corvanta::Drawing {

// The place at which the line after the one from there begins, in bytes; the text's size after the last one.
// UTF-8 in the font's present size and style, wrapped at that many pixels, 0 for line feeds alone. A wrapped
// line ends at a line feed or carriage return, else behind its last blank, else where the next character
// would be too far to the right; it holds a character at least.
[[nodiscard]] size_t NextLine(TTF_Font* font, const std::string& text, size_t from, int wrapWidth);

}  // namespace Corvanta::Drawing
