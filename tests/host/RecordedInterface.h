// The library's functions that the window calls, as recorders: a test looks at what would have been pushed.
// Main thread only.
#pragma once

#include <string>
#include <vector>

namespace Corvanta::Host {

// Each call in order, as its name and its arguments: "move 0 0.5 0.25".
[[nodiscard]] std::vector<std::string>& Pushed();
// The same, and forgets them.
[[nodiscard]] std::vector<std::string> TakePushed();

}  // namespace Corvanta::Host
