// The font of a text on the wire, as "italic bold 24px Arial". Plain values; any thread.
#pragma once

#include <string>

namespace Corvanta::Drawing {

struct FontText {
    // TTF_STYLE_BOLD, TTF_STYLE_ITALIC, TTF_STYLE_UNDERLINE.
    int style = 0;
    // Canvas units.
    double size = 0;
    std::string family;

    bool operator==(const FontText&) const = default;
};

// Style words count before the size, and everything after it is the family, with its quotation marks. Each
// "px" sets the size, in the family too. Throws std::invalid_argument where no number stands before a "px",
// std::out_of_range where one beyond 32 bits does, and std::length_error for a font without size or family.
[[nodiscard]] FontText ParseFontText(const std::string& text);

// The size goes out rounded, an empty family as Arial, and underline not at all.
[[nodiscard]] std::string WriteFontText(const FontText& font);

}  // namespace Corvanta::Drawing
