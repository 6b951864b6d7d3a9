#include "ui/TextEllipsis.h"

#include <algorithm>

namespace Corvanta::UI {
namespace {

constexpr int kDots = 3;

}  // namespace

std::optional<std::string> ShortenText(const std::string& text, int textWidth, int maxWidth) {
    if (text.empty() || maxWidth >= textWidth) return std::nullopt;
    const int perCharacter = static_cast<int>(static_cast<size_t>(textWidth) / text.size());
    // More bytes than pixels: there is no average to judge by.
    if (perCharacter == 0) return std::nullopt;
    const int keep = maxWidth / perCharacter - kDots;
    if (keep < 0) return std::nullopt;
    return text.substr(0, static_cast<size_t>(std::max(keep, 1))) + "...";
}

}  // namespace Corvanta::UI
