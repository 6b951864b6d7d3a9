// One mark of a drawing over video. It lives in three spaces: canvas units, in which gestures set it and the
// wire carries it; fractions of the canvas, which Normalize computes once; and pixels of the renderer's
// viewport, to which Render multiplies the fractions. So it is the same drawing at any resolution.
//
// Normalize, Render, ReleaseTextures and ForgetTextures belong to the render thread, under the lock of the
// canvas that draws the shape; SetStart and SetEnd to the same thread. Shapes are shared, never copied; one
// that came over the wire is complete before it is shared.
#pragma once

#include <SDL.h>

#include <cstdint>
#include <nlohmann/json_fwd.hpp>
#include <string>

namespace Corvanta::Drawing {

class Shape {
public:
    // Draws into the renderer's present target.
    virtual void Render(SDL_Renderer* renderer) = 0;
    // Fractions of a canvas of that size in canvas units. Does nothing for a shape that has them already.
    virtual void Normalize(double canvasWidth, double canvasHeight) = 0;
    // The gesture begins at a point and goes on to a point, in canvas units.
    virtual void SetStart(double x, double y) = 0;
    virtual void SetEnd(double x, double y) = 0;
    // The shape as others read it, with its envelope.
    [[nodiscard]] virtual nlohmann::json ToJson() = 0;
    // Frees what the shape holds for that renderer, which must still be alive.
    virtual void ReleaseTextures(SDL_Renderer* renderer);
    virtual ~Shape() = default;
    // That renderer may have gone, and what the shape held for it goes with it.
    virtual void ForgetTextures(SDL_Renderer* renderer);

    Shape(const Shape&) = delete;
    Shape& operator=(const Shape&) = delete;

    // Canvas units.
    uint32_t strokeWidth = 0;
    // Identity across clients and across undo. Empty until the shape is finished or read from the wire.
    std::string controlId;

protected:
    Shape() = default;
};

}  // namespace Corvanta::Drawing
