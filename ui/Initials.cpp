#include "ui/Initials.h"

#include <cctype>

namespace Corvanta::UI {
namespace {

[[nodiscard]] bool IsContinuation(char byte) {
    return (static_cast<unsigned char>(byte) & 0xC0U) == 0x80U;
}

// How many bytes a UTF-8 letter has by its first one; 1 for a byte that begins none.
[[nodiscard]] size_t LetterLength(char first) {
    const auto byte = static_cast<unsigned char>(first);
    if (byte >= 0xF0U) return 4;
    if (byte >= 0xE0U) return 3;
    return byte >= 0xC0U ? 2 : 1;
}

[[nodiscard]] std::string FirstLetter(std::string_view text) {
    std::string letter(1, text.front());
    if (static_cast<unsigned char>(text.front()) < 0x80U) {
        letter[0] = static_cast<char>(std::toupper(static_cast<unsigned char>(text.front())));
        return letter;
    }
    const size_t length = LetterLength(text.front());
    while (letter.size() < length && letter.size() < text.size() && IsContinuation(text[letter.size()])) {
        letter += text[letter.size()];
    }
    return letter;
}

}  // namespace

std::string InitialsOf(std::string_view displayName) {
    if (displayName.empty()) return {};
    std::string initials = FirstLetter(displayName);
    const size_t space = displayName.find(' ');
    if (space != std::string_view::npos && space + 1 < displayName.size()) {
        initials += FirstLetter(displayName.substr(space + 1));
    }
    return initials;
}

}  // namespace Corvanta::UI
