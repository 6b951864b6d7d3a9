#include "drawing/TextLines.h"

#include <algorithm>
#include <cstdint>
#include <limits>

namespace Corvanta::Drawing {
namespace {

constexpr uint32_t kUnknown = 0xFFFD;
constexpr uint32_t kByteOrderMark = 0xFEFF;
constexpr size_t kMostFollowing = 5;

struct Character {
    uint32_t code = kUnknown;
    size_t bytes = 1;
};

// As the font library reads it: overlong forms are taken, what is cut short is one unknown character.
[[nodiscard]] Character CharacterAt(const std::string& text, size_t from) {
    const auto lead = static_cast<unsigned char>(text[from]);
    Character character;
    if (lead < 0x80U) character.code = lead;
    if (lead < 0xC0U || lead >= 0xFEU) return character;
    size_t following = 1;
    while (following < kMostFollowing && (lead & (0x40U >> following)) != 0) ++following;
    character.code = lead & (0x3FU >> following);
    for (; following > 0 && from + character.bytes < text.size(); --following, ++character.bytes) {
        const auto next = static_cast<unsigned char>(text[from + character.bytes]);
        if ((next & 0xC0U) != 0x80U) break;
        character.code = character.code << 6U | (next & 0x3FU);
    }
    if (following > 0) character.code = kUnknown;
    return character;
}

// How many characters from there are no wider than the wrap. The library looks at all of the rest; what lies
// far behind the end of a line makes no difference.
[[nodiscard]] int CountWithin(TTF_Font* font, const std::string& text, size_t from, int wrapWidth) {
    constexpr size_t kLeastWindow = 16;
    constexpr int kSlimCharacter = 32;
    int before = -1;
    for (size_t window = kLeastWindow + static_cast<size_t>(wrapWidth / kSlimCharacter);; window *= 2) {
        int extent = 0;
        int count = 0;
        if (TTF_MeasureUTF8(font, text.substr(from, window).c_str(), wrapWidth, &extent, &count) != 0)
            return 0;
        if (count == before || window >= text.size() - from) return count;
        before = count;
    }
}

}  // namespace

size_t NextLine(TTF_Font* font, const std::string& text, size_t from, int wrapWidth) {
    const int most = wrapWidth == 0 ? std::numeric_limits<int>::max()
                                    : std::max(1, CountWithin(font, text, from, wrapWidth));
    size_t place = from;
    size_t behindBlank = std::string::npos;
    for (int count = 0; place < text.size() && count < most;) {
        const Character character = CharacterAt(text, place);
        place += character.bytes;
        if (character.code == kByteOrderMark) continue;
        ++count;
        if (character.code == '\n' || (character.code == '\r' && wrapWidth > 0)) return place;
        if (character.code == ' ' || character.code == '\t') behindBlank = place;
    }
    return place < text.size() && behindBlank != std::string::npos ? behindBlank : place;
}

}  // namespace Corvanta::Drawing
