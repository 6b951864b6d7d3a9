// Painting for the generated clips: smooth shapes on an RGBA canvas, made once, and fast copies of them onto
// the planes of a 4:2:0 picture, for every frame. BT.709, limited range. A canvas and a sprite are for one
// thread at a time.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace Corvanta::Engine {

struct Rgb {
    float red = 0, green = 0, blue = 0;  // 0 to 1, gamma-coded
};

// 0xRRGGBB.
[[nodiscard]] constexpr Rgb FromHex(uint32_t hex) {
    return {static_cast<float>(hex >> 16U & 0xFFU) / 255.0F, static_cast<float>(hex >> 8U & 0xFFU) / 255.0F,
            static_cast<float>(hex & 0xFFU) / 255.0F};
}

struct Yuv {
    uint8_t y = 16, u = 128, v = 128;
};

// H.273 equations 34 to 43 with BT.709's Kr and Kb.
[[nodiscard]] Yuv ToYuv(const Rgb& color);

// The planes of a picture, borrowed. Width and height are even.
struct Planes {
    int width = 0, height = 0;
    uint8_t* y = nullptr;
    uint8_t* u = nullptr;
    uint8_t* v = nullptr;
    int strideY = 0, strideUV = 0;
};

// One byte a pixel, 255 for fully covered.
struct Mask {
    int width = 0, height = 0;
    std::vector<uint8_t> coverage;
};

struct Shape {
    // Of a point (a pixel's centre) from the edge, in pixels, negative inside.
    std::function<float(float x, float y)> distance;
    // What the inside fits into.
    float left = 0, top = 0, right = 0, bottom = 0;
};

[[nodiscard]] Shape Ellipse(float centerX, float centerY, float radiusX, float radiusY);
[[nodiscard]] Shape RoundedBox(float left, float top, float right, float bottom, float radius);
// What of the first lies outside the second.
[[nodiscard]] Shape Without(const Shape& shape, const Shape& cutOut);
// The edge of a shape as a line of that width.
[[nodiscard]] Shape Outline(const Shape& shape, float width);

// A small picture with soft edges, ready to be blended.
class Sprite final {
public:
    Sprite() = default;

    // Blends it with its top-left corner at (x, y), which are made even and may lie outside.
    void Draw(const Planes& target, int x, int y) const;

    [[nodiscard]] int Width() const { return width; }
    [[nodiscard]] int Height() const { return height; }
    [[nodiscard]] bool IsEmpty() const { return width == 0; }

private:
    friend class Canvas;

    // Samples multiplied by their coverage, and what of the ground shines through.
    struct Layer {
        std::vector<uint8_t> sample, rest;
    };

    int width = 0, height = 0;
    Layer luma, chromaU, chromaV;
};

class Canvas final {
public:
    // Transparent. Odd sizes are rounded up.
    Canvas(int canvasWidth, int canvasHeight);

    // Fills a shape, with an edge `softness` pixels wide.
    void Fill(const Shape& shape, const Rgb& color, float opacity = 1.0F, float softness = 1.0F);
    // Fills everything, by a function of the pixel's centre.
    void Paint(const std::function<Rgb(float x, float y)>& color);
    void FillMask(const Mask& mask, int left, int top, const Rgb& color, float opacity = 1.0F);

    // The same picture in a width and height that many times smaller.
    [[nodiscard]] Canvas Reduced(int divisor) const;
    [[nodiscard]] Sprite ToSprite() const;
    // Writes the canvas over a picture of its size, opaque, with the rounding errors spread so that gradients
    // show no steps.
    void WriteTo(const Planes& target) const;

    [[nodiscard]] int Width() const { return width; }
    [[nodiscard]] int Height() const { return height; }

private:
    struct Pixel {
        float red = 0, green = 0, blue = 0, alpha = 0;  // multiplied by alpha
    };

    void Blend(int x, int y, const Rgb& color, float alpha);

    int width, height;
    std::vector<Pixel> pixels;
};

// Fills a rectangle, clipped; coordinates are made even.
void FillBox(const Planes& target, int left, int top, int right, int bottom, const Yuv& color);

}  // namespace Corvanta::Engine
