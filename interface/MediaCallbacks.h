// The functions by which the media layers know the library. Each looks at the current view, does nothing
// without one and otherwise forwards to it. Any thread.
#pragma once

namespace Corvanta::Interface {

// Hands the functions to the media manager. Host thread.
void RegisterMediaCallbacks();

}  // namespace Corvanta::Interface
