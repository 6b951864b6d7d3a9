// What the tick keeps from one call to the next, and what waits until the view is left.
#pragma once

#include <functional>
#include <memory>

#include "room/VideoRoomView.h"

namespace Corvanta::Interface {

// Held by every export that touches a window, a renderer or the place of the current view: these run one at a
// time, whichever of the host's threads calls, be it that of its window, of its loop or of an action. Never
// taken by what media threads call, which the end of a room waits for. The same thread may nest it.
class HostScope final {
public:
    HostScope();
    // The outermost one destroys the views that were retired meanwhile, with the lock released: a view waits
    // for its action, which may wait for this lock.
    ~HostScope();
    HostScope(const HostScope&) = delete;
    HostScope& operator=(const HostScope&) = delete;
};

// Inside a HostScope: keeps a view that has ended until the scope is left.
void RetireView(std::shared_ptr<Room::VideoRoomView> view);

// Starts the timers anew, so that the first tick of a room does not count the time before it.
void ResetTickTimers();

// Runs body, which calls into the view: a tick, or a command that draws at once. From there the host's own
// functions are called, and these may ask for what must not happen while the view is at work.
void CallIntoView(const std::function<void()>& body);

// A tick, or a command that draws at once, is under way on this thread. Inside a HostScope.
[[nodiscard]] bool IsViewAtWork();

// While the view is at work, remembers the action for the moment when it is left and returns true. Otherwise
// returns false, and the caller goes on. Inside a HostScope.
[[nodiscard]] bool DeferUntilViewIsLeft(std::function<void()> action);

}  // namespace Corvanta::Interface
