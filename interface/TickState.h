// What the tick keeps from one call to the next. Host thread.
#pragma once

namespace Corvanta::Interface {

// Starts the timers anew, so that the first tick of a room does not count the time before it.
void ResetTickTimers();

// While a tick runs, remembers the call for its end and returns true: the view must not be taken down under
// it. Outside a tick returns false, and the caller goes on.
[[nodiscard]] bool DeferUntilTickEnds(void (*call)(void));

}  // namespace Corvanta::Interface
