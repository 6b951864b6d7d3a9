// A display for the tests of a process: the one that DISPLAY names, or else an Xvfb that this process starts
// and ends. Main thread.
#pragma once

namespace Corvanta::Testing {

// Makes sure, once for the process, that DISPLAY names a display that answers. False when there is none and
// Xvfb cannot be started; a test then has nothing to run on and fails with that.
[[nodiscard]] bool EnsureDisplay();

}  // namespace Corvanta::Testing
