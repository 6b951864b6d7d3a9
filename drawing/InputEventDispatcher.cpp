#include "drawing/InputEventDispatcher.h"

namespace Corvanta::Drawing {

namespace {

// Listeners may come and go from within a call.
template <typename Call>
void Tell(const std::set<InputEventListener*>& listeners, const Call& call) {
    for (auto next = listeners.begin(); next != listeners.end();) {
        InputEventListener* const listener = *next;
        call(*listener);
        next = listeners.upper_bound(listener);
    }
}

}  // namespace

void InputEventDispatcher::Dispatch(const SDL_Event& event) {
    switch (event.type) {
        case SDL_KEYDOWN:
            Tell(listeners, [&](InputEventListener& to) { to.OnKeyDown(event.key.keysym.sym); });
            break;
        case SDL_KEYUP:
            Tell(listeners, [&](InputEventListener& to) { to.OnKeyUp(event.key.keysym.sym); });
            break;
        case SDL_MOUSEMOTION:
            if (event.motion.x == -1 && event.motion.y == -1) break;
            lastPointer = {event.motion.x, event.motion.y};
            Tell(listeners, [&](InputEventListener& to) { to.OnMouseMove(lastPointer); });
            break;
        case SDL_MOUSEBUTTONDOWN:
            Tell(listeners, [&](InputEventListener& to) { to.OnMouseDown(lastPointer); });
            break;
        case SDL_MOUSEBUTTONUP:
            Tell(listeners, [&](InputEventListener& to) { to.OnMouseUp(lastPointer); });
            break;
        default: break;
    }
}

}  // namespace Corvanta::Drawing
