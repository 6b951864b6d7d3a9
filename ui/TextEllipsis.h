// How a text that is too wide is cut. Plain values.
#pragma once

#include <optional>
#include <string>

namespace Corvanta::UI {

// The first bytes of the text that fit into maxWidth with "..." behind them, judged by the text's average
// width a byte; nothing when the text fits, or is to be drawn whole because not even the dots fit. Both
// widths in logical pixels. The cut may fall inside a character.
[[nodiscard]] std::optional<std::string> ShortenText(const std::string& text, int textWidth, int maxWidth);

}  // namespace Corvanta::UI
