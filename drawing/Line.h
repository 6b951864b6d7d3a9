// A straight line with round ends, dashed or with an arrow head at the end that was drawn last.
#pragma once

#include "drawing/Color.h"
#include "drawing/Shape.h"

namespace Corvanta::Drawing {

class Line final : public Shape {
public:
    Line() = default;
    // From the "data" of its wire form. Throws what the JSON library throws at a bad or missing field.
    explicit Line(const nlohmann::json& data);

    // Leaves the renderer's blend mode at BLEND when it has drawn, and untouched for a line without length.
    void Render(SDL_Renderer* renderer) override;
    void Normalize(double canvasWidth, double canvasHeight) override;
    void SetStart(double x, double y) override;
    void SetEnd(double x, double y) override;
    [[nodiscard]] nlohmann::json ToJson() override;
    virtual void SetColor(const Color& newColor) { color = newColor; }

    // Canvas units.
    double x1 = 0;
    double y1 = 0;
    double x2 = 0;
    double y2 = 0;
    Color color;
    // Fractions of the canvas, left end first.
    double startX = 0;
    double startY = 0;
    double endX = 0;
    double endY = 0;
    double normalizedStrokeWidth = 0;
    double normalizedDash = 0;
    // Length of a dash in canvas units, followed by a gap of twice that; 0 is a solid line.
    uint32_t dash = 0;
    // A head at (x2, y2).
    bool arrow = false;
    bool normalized = false;
    // Normalize has exchanged the ends.
    bool reversed = false;
};

}  // namespace Corvanta::Drawing
