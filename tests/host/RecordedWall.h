// The library's functions for side windows as recorders that write into Pushed(), and what they answer. Main
// thread only.
#pragma once

namespace Corvanta::Host {

// Answered by opening a view: 1 for success.
[[nodiscard]] int& OpenAnswer();

}  // namespace Corvanta::Host
