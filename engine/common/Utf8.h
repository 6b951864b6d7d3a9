// UTF-8 texts from elsewhere, looked at byte by byte. Plain functions of values, which need no other library;
// any thread.
#pragma once

#include <cstddef>
#include <string_view>

namespace Corvanta::Engine {

// Whether the text is UTF-8 without a line break or another control character, so that a title can show it.
[[nodiscard]] bool IsOneLine(std::string_view text);

// As much of the text's beginning as fits into so many bytes, with no character cut through.
[[nodiscard]] std::string_view CutUtf8(std::string_view text, std::size_t mostBytes);

}  // namespace Corvanta::Engine
