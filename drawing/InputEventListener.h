// Hears pointer and keys. Render thread.
#pragma once

#include <SDL.h>

namespace Corvanta::Drawing {

class InputEventListener {
public:
    // Positions in the view's coordinates.
    virtual void OnMouseDown(const SDL_Point& /*position*/) {}
    virtual void OnMouseUp(const SDL_Point& /*position*/) {}
    virtual void OnMouseMove(const SDL_Point& /*position*/) {}
    virtual void OnKeyDown(int /*keycode*/) {}
    virtual void OnKeyUp(int /*keycode*/) {}

protected:
    ~InputEventListener() = default;
};

}  // namespace Corvanta::Drawing
