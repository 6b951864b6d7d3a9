#include "drawing/FontText.h"

#include <SDL_ttf.h>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include "drawing/AsciiSpace.h"

namespace Corvanta::Drawing {

namespace {

constexpr std::string_view kSizeUnit = "px";
constexpr char kDefaultFamily[] = "Arial";

// A decimal number with whatever follows it. The texts are those that clients on other systems show.
[[nodiscard]] int ReadSize(std::string_view text) {
    // from_chars knows no plus, and must not meet a second sign after it.
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    int size = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), size);
    if (result.ec == std::errc::result_out_of_range) throw std::out_of_range("stoi argument out of range");
    if (result.ec != std::errc{}) throw std::invalid_argument("invalid stoi argument");
    return size;
}

[[nodiscard]] int StyleOf(std::string_view word) {
    if (word == "italic") return TTF_STYLE_ITALIC;
    if (word == "bold") return TTF_STYLE_BOLD;
    if (word == "underline") return TTF_STYLE_UNDERLINE;
    return TTF_STYLE_NORMAL;
}

}  // namespace

FontText ParseFontText(const std::string& text) {
    FontText font;
    std::string word;
    for (size_t start = 0; start <= text.size();) {
        const size_t end = std::min(text.find(' ', start), text.size());
        word.assign(text, start, end - start);
        std::erase_if(word, IsAsciiSpace);
        if (font.size > 0) {
            font.family += word;
            font.family += ' ';
        } else {
            font.style |= StyleOf(word);
        }
        const size_t unit = word.find(kSizeUnit);
        if (unit != std::string::npos) font.size = ReadSize(std::string_view(word).substr(0, unit));
        start = end + 1;
    }
    if (font.family.empty()) throw std::length_error("string too long");
    font.family.pop_back();
    return font;
}

std::string WriteFontText(const FontText& font) {
    std::string text;
    if ((font.style & TTF_STYLE_ITALIC) != 0) text += "italic ";
    if ((font.style & TTF_STYLE_BOLD) != 0) text += "bold ";
    // Readers take a size of 32 bits.
    constexpr double kSmallest = std::numeric_limits<int>::min();
    constexpr double kLargest = std::numeric_limits<int>::max();
    const double size = std::isnan(font.size) ? 0 : std::clamp(std::round(font.size), kSmallest, kLargest);
    text += std::to_string(static_cast<int>(size));
    text += kSizeUnit;
    text += ' ';
    text += font.family.empty() ? kDefaultFamily : font.family;
    return text;
}

}  // namespace Corvanta::Drawing
