// The initials that stand for a name. Plain values.
#pragma once

#include <string>
#include <string_view>

namespace Corvanta::UI {

// The first letter and the one behind the first space, ASCII in upper case; a letter of several UTF-8 bytes
// is taken whole. Empty for an empty name.
[[nodiscard]] std::string InitialsOf(std::string_view displayName);

}  // namespace Corvanta::UI
