// What of the X display can be shared. Any thread; asks the display, which takes some milliseconds.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace Corvanta::Engine {

// What the user is to read of a window, of the whole screen for 0. Nothing when it is not there.
[[nodiscard]] std::optional<std::string> FindScreenTitle(std::uint32_t window);

}  // namespace Corvanta::Engine
