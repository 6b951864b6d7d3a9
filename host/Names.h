// Names that people give on the command line and in the environment. Plain functions of values.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace Corvanta::Host {

// Whether the text is UTF-8 without a line break or another control character, so that a title can show it.
[[nodiscard]] bool IsOneLine(std::string_view text);

// A room's name that nobody else comes upon, of small letters and digits.
[[nodiscard]] std::string MakeOwnRoomName();

}  // namespace Corvanta::Host
