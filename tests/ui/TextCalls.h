// What the code under test asks of the text library: TTF_RenderUTF8_Blended, TTF_SizeUTF8 and
// TTF_SetFontStyle are written into Calls() and passed on. Linking TextCalls.cpp puts them in the library's
// place. Any thread.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace Corvanta::Testing {

// The texts that were rasterised, in their order.
[[nodiscard]] std::vector<std::string> RasterisedTexts();
// How often a text was measured.
[[nodiscard]] size_t Measurements();

}  // namespace Corvanta::Testing
