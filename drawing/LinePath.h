// The freehand stroke of the pencil: a curve through the midpoints of the sampled points. While it grows it
// keeps what is drawn in a texture of its own for each renderer, so that each new point costs only itself.
#pragma once

#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "drawing/Color.h"
#include "drawing/Shape.h"

namespace Corvanta::Drawing {

class PathTracer;

class LinePath : public Shape {
public:
    using Point = std::pair<double, double>;

    LinePath() = default;
    // From the "data" of its wire form. Throws what the JSON library throws at a bad or missing field.
    explicit LinePath(const nlohmann::json& data);
    ~LinePath() override;

    void Render(SDL_Renderer* renderer) override;
    void Normalize(double canvasWidth, double canvasHeight) override;
    void SetStart(double x, double y) override;
    // Takes a point at most once in 21 milliseconds; others are dropped.
    void SetEnd(double x, double y) override;
    [[nodiscard]] nlohmann::json ToJson() override;
    void ReleaseTextures(SDL_Renderer* renderer) override;
    void ForgetTextures(SDL_Renderer* renderer) override;

    // Whether it hides whatever lies below it on the renderer's target, all in one piece: a stroke that will
    // not grow, without transparency, wider than a pixel (lines of one are SDL's own). Once normalised.
    [[nodiscard]] virtual bool IsSolid(SDL_Renderer* renderer) const;

    double normalizedStrokeWidth = 0;
    bool normalized = false;
    // The first point that is not yet in the stroke texture; 0 when nothing is drawn.
    uint64_t drawnIndex = 0;
    // Where the last drawn piece of the curve ended, as fractions of the canvas.
    double penX = 0;
    double penY = 0;
    // In the order of the gesture, canvas units, and the same as fractions.
    std::vector<Point> points;
    std::vector<Point> normalizedPoints;
    Color color;
    // Owned.
    std::map<SDL_Renderer*, SDL_Texture*> strokeTextures;
    std::map<SDL_Renderer*, SDL_Texture*> tailTextures;
    // When the last point was taken, in units of 100 nanoseconds of the steady clock.
    int64_t lastPointTime = 0;

protected:
    // The stroke without what belongs to a renderer.
    LinePath(const LinePath& other);

private:
    [[nodiscard]] bool IsFinished(SDL_Renderer* renderer) const;
    // A stroke that will not grow, without a texture of its own size.
    void RenderFinished(SDL_Renderer* renderer, const PathTracer& tracer) const;
    void RenderGrowing(SDL_Renderer* renderer, const PathTracer& tracer, SDL_Point size);
    // False when the texture cannot be drawn into.
    [[nodiscard]] bool DrawCurve(SDL_Renderer* renderer, const PathTracer& tracer, SDL_Texture* texture);
    [[nodiscard]] bool DrawTail(SDL_Renderer* renderer, const PathTracer& tracer, SDL_Texture* texture);

    // What is painted of the textures for one renderer: the rest is empty, and copying nothing would cost a
    // frame much.
    struct Painted {
        SDL_Rect stroke{0, 0, 0, 0};
        SDL_Rect tail{0, 0, 0, 0};
    };
    std::map<SDL_Renderer*, Painted> painted_;
};

}  // namespace Corvanta::Drawing
