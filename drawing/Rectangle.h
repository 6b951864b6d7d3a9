// A filled rectangle with a border inside its edges: what the inner rectangle leaves uncovered.
#pragma once

#include "drawing/Color.h"
#include "drawing/Shape.h"

namespace Corvanta::Drawing {

class Rectangle final : public Shape {
public:
    Rectangle() = default;
    // From the "data" of its wire form. Throws what the JSON library throws at a bad or missing field.
    explicit Rectangle(const nlohmann::json& data);

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
    // Fractions of the canvas, sizes never negative.
    double outerX = 0;
    double outerY = 0;
    double outerWidth = 0;
    double outerHeight = 0;
    double innerX = 0;
    double innerY = 0;
    double innerWidth = 0;
    double innerHeight = 0;
    Color strokeColor;
    Color fillColor;
    bool normalized = false;
};

}  // namespace Corvanta::Drawing
