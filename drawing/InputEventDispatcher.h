// Passes the view's events to whoever listens. A button counts at the place of the last motion. Render
// thread.
#pragma once

#include <SDL.h>

#include <set>

#include "drawing/InputEventListener.h"

namespace Corvanta::Drawing {

class InputEventDispatcher final {
public:
    void Add(InputEventListener* listener) { listeners.insert(listener); }
    void Remove(InputEventListener* listener) { listeners.erase(listener); }

    // Any button counts. A motion to (-1, -1) says that the pointer has left, and is passed over: a stroke
    // must not run to the corner.
    void Dispatch(const SDL_Event& event);

    // Not owned.
    std::set<InputEventListener*> listeners;
    SDL_Point lastPointer{0, 0};
};

}  // namespace Corvanta::Drawing
