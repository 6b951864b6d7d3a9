// A filled ellipse within the box of the drag, with a border inside its edge.
#pragma once

#include "drawing/Color.h"
#include "drawing/Shape.h"

namespace Corvanta::Drawing {

class Ellipse final : public Shape {
public:
    Ellipse() = default;
    // From the "data" of its wire form. Throws what the JSON library throws at a bad or missing field.
    explicit Ellipse(const nlohmann::json& data);

    void Render(SDL_Renderer* renderer) override;
    void Normalize(double canvasWidth, double canvasHeight) override;
    void SetStart(double startX, double startY) override;
    void SetEnd(double endX, double endY) override;
    [[nodiscard]] nlohmann::json ToJson() override;

    // Canvas units. A drag up or to the left makes the sizes negative.
    double x = 0;
    double y = 0;
    double width = 0;
    double height = 0;
    // Fractions of the canvas, radii never negative.
    double centerX = 0;
    double centerY = 0;
    double radiusX = 0;
    double radiusY = 0;
    double innerRadiusX = 0;
    double innerRadiusY = 0;
    Color strokeColor;
    Color fillColor;
    bool normalized = false;
};

}  // namespace Corvanta::Drawing
