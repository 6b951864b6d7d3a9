// Base of everything drawn in a view: it knows its size, draws itself at a point that its parent gives it in
// each frame, and keeps the flags that input is routed by. Touched on the render thread only.
#pragma once

#include <SDL.h>

namespace Corvanta::UI {

class GraphicElementInterface {
public:
    virtual ~GraphicElementInterface() = default;

    // Draws at position, in logical pixels: the element's centre or its top-left corner, as the subclass
    // says. Leaves the renderer's draw colour at (0, 0, 0, 0) where it changed it.
    virtual void Render(SDL_Renderer* renderer, SDL_Point position) = 0;
    // True when the click was consumed.
    virtual bool OnClick() = 0;
    virtual void SetVisible(bool value) { visible = value; }
    // Sets hovered by where the mouse is, in logical pixels of the view.
    virtual void OnHover(const SDL_Point& mouse) { hovered = Hits(mouse); }
    virtual void SetWidth(int value) { width = value; }
    virtual void SetHeight(int value) { height = value; }

    // Part of a texture that is shown; the video tile's.
    SDL_Rect sourceRect{0, 0, 0, 0};
    // Where the last Render drew, in logical pixels. Hit testing reads this; all zero until then.
    SDL_Rect rect{0, 0, 0, 0};
    // Requested size in logical pixels.
    int width = 0;
    int height = 0;
    // Bytes of a row of an RGB picture; the video tile's.
    int pitch = 0;
    // Parents skip invisible children; the element itself does not test it unless its class says so.
    bool visible = true;
    // Clicks are routed by this flag.
    bool hovered = false;

protected:
    GraphicElementInterface() = default;
    GraphicElementInterface(const GraphicElementInterface&) = default;
    GraphicElementInterface& operator=(const GraphicElementInterface&) = default;

    // Half-open: the right and the bottom edge do not hit.
    [[nodiscard]] bool Hits(const SDL_Point& point) const {
        return point.x >= rect.x && point.x < rect.x + rect.w && point.y >= rect.y &&
               point.y < rect.y + rect.h;
    }
};

}  // namespace Corvanta::UI
