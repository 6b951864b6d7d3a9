// What the tick keeps from one call to the next, and what waits until the view is left. Host thread.
#pragma once

#include <functional>

namespace Corvanta::Interface {

// Starts the timers anew, so that the first tick of a room does not count the time before it.
void ResetTickTimers();

// Runs body, which calls into the view: a tick, or a command that draws at once. From there the host's own
// functions are called, and these may ask for what must not happen while the view is at work.
void CallIntoView(const std::function<void()>& body);

// A tick, or a command that draws at once, is under way.
[[nodiscard]] bool IsViewAtWork();

// While the view is at work, remembers the action for the moment when it is left and returns true. Otherwise
// returns false, and the caller goes on.
[[nodiscard]] bool DeferUntilViewIsLeft(std::function<void()> action);

}  // namespace Corvanta::Interface
