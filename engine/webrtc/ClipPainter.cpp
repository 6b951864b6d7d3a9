#include "engine/webrtc/ClipPainter.h"

#include <algorithm>
#include <cmath>
#include <cstring>

namespace Corvanta::Engine {

namespace {

// BT.709.
constexpr float kRed = 0.2126F;
constexpr float kBlue = 0.0722F;
constexpr float kGreen = 1.0F - kRed - kBlue;

struct YuvFloat {
    float y = 0, u = 0, v = 0;
};

// 8-bit code values of limited range, not rounded; colours multiplied by alpha give values that lack the
// offsets.
YuvFloat ToYuvFloat(float red, float green, float blue) {
    const float luma = kRed * red + kGreen * green + kBlue * blue;
    return {219.0F * luma, 224.0F * (blue - luma) / (2.0F * (1.0F - kBlue)),
            224.0F * (red - luma) / (2.0F * (1.0F - kRed))};
}

uint8_t ToByte(float value) {
    return static_cast<uint8_t>(std::clamp(value + 0.5F, 0.0F, 255.0F));
}

// A 4x4 ordered dither (Bayer), -0.5 to 0.5.
float DitherAt(int x, int y) {
    constexpr float kMatrix[4][4] = {{0, 8, 2, 10}, {12, 4, 14, 6}, {3, 11, 1, 9}, {15, 7, 13, 5}};
    return (kMatrix[y & 3][x & 3] + 0.5F) / 16.0F - 0.5F;
}

// One row of dst = sample + dst * rest / 255.
void BlendRow(uint8_t* target, const uint8_t* sample, const uint8_t* rest, int count) {
    for (int index = 0; index < count; ++index) {
        const unsigned product = static_cast<unsigned>(target[index]) * rest[index] + 128U;
        target[index] = static_cast<uint8_t>(sample[index] + ((product + (product >> 8U)) >> 8U));
    }
}

void BlendPlane(uint8_t* target, int stride, int targetWidth, int targetHeight, const uint8_t* sample,
                const uint8_t* rest, int width, int height, int x, int y) {
    const int firstColumn = std::max(0, -x);
    const int columns = std::min(width, targetWidth - x) - firstColumn;
    if (columns <= 0) return;
    const int lastRow = std::min(height, targetHeight - y);
    for (int row = std::max(0, -y); row < lastRow; ++row) {
        const std::ptrdiff_t source = static_cast<std::ptrdiff_t>(row) * width + firstColumn;
        BlendRow(target + static_cast<std::ptrdiff_t>(y + row) * stride + x + firstColumn, sample + source,
                 rest + source, columns);
    }
}

void FillPlane(uint8_t* plane, int stride, int left, int top, int right, int bottom, uint8_t value) {
    if (right <= left) return;
    for (int row = top; row < bottom; ++row) {
        std::memset(plane + static_cast<std::ptrdiff_t>(row) * stride + left, value,
                    static_cast<std::size_t>(right - left));
    }
}

}  // namespace

Yuv ToYuv(const Rgb& color) {
    const YuvFloat yuv = ToYuvFloat(color.red, color.green, color.blue);
    return {ToByte(16.0F + yuv.y), ToByte(128.0F + yuv.u), ToByte(128.0F + yuv.v)};
}

void Sprite::Draw(const Planes& target, int x, int y) const {
    if (IsEmpty()) return;
    // An arithmetic shift, so that chroma and luma agree left of zero too.
    const int chromaX = x >> 1;
    const int chromaY = y >> 1;
    BlendPlane(target.y, target.strideY, target.width, target.height, luma.sample.data(), luma.rest.data(),
               width, height, chromaX * 2, chromaY * 2);
    BlendPlane(target.u, target.strideUV, target.width / 2, target.height / 2, chromaU.sample.data(),
               chromaU.rest.data(), width / 2, height / 2, chromaX, chromaY);
    BlendPlane(target.v, target.strideUV, target.width / 2, target.height / 2, chromaV.sample.data(),
               chromaV.rest.data(), width / 2, height / 2, chromaX, chromaY);
}

Canvas::Canvas(int canvasWidth, int canvasHeight)
    : width((canvasWidth + 1) & ~1),
      height((canvasHeight + 1) & ~1),
      pixels(static_cast<std::size_t>(width) * static_cast<std::size_t>(height)) {}

void Canvas::Blend(int x, int y, const Rgb& color, float alpha) {
    Pixel& pixel =
        pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x)];
    const float rest = 1.0F - alpha;
    pixel.red = color.red * alpha + pixel.red * rest;
    pixel.green = color.green * alpha + pixel.green * rest;
    pixel.blue = color.blue * alpha + pixel.blue * rest;
    pixel.alpha = alpha + pixel.alpha * rest;
}

void Canvas::Fill(const Shape& shape, const Rgb& color, float opacity, float softness) {
    const float margin = softness / 2 + 1;
    const int firstX = std::max(0, static_cast<int>(shape.left - margin));
    const int firstY = std::max(0, static_cast<int>(shape.top - margin));
    const int lastX = std::min(width, static_cast<int>(shape.right + margin) + 1);
    const int lastY = std::min(height, static_cast<int>(shape.bottom + margin) + 1);
    for (int y = firstY; y < lastY; ++y) {
        for (int x = firstX; x < lastX; ++x) {
            const float away = shape.distance(static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F);
            const float inside = std::clamp(0.5F - away / softness, 0.0F, 1.0F);
            if (inside <= 0) continue;
            // A wide edge fades without a visible end.
            const float faded = softness > 2.0F ? inside * inside * (3.0F - 2.0F * inside) : inside;
            Blend(x, y, color, faded * opacity);
        }
    }
}

void Canvas::Paint(const std::function<Rgb(float x, float y)>& color) {
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            Blend(x, y, color(static_cast<float>(x) + 0.5F, static_cast<float>(y) + 0.5F), 1.0F);
        }
    }
}

void Canvas::FillMask(const Mask& mask, int left, int top, const Rgb& color, float opacity) {
    for (int y = 0; y < mask.height; ++y) {
        for (int x = 0; x < mask.width; ++x) {
            if (left + x < 0 || left + x >= width || top + y < 0 || top + y >= height) continue;
            const uint8_t coverage =
                mask.coverage[static_cast<std::size_t>(y) * static_cast<std::size_t>(mask.width) +
                              static_cast<std::size_t>(x)];
            if (coverage > 0)
                Blend(left + x, top + y, color, static_cast<float>(coverage) / 255.0F * opacity);
        }
    }
}

Canvas Canvas::Reduced(int divisor) const {
    Canvas reduced((width + divisor - 1) / divisor, (height + divisor - 1) / divisor);
    const float share = 1.0F / static_cast<float>(divisor * divisor);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Pixel& pixel = pixels[static_cast<std::size_t>(y * width + x)];
            Pixel& sum = reduced.pixels[static_cast<std::size_t>(y / divisor * reduced.width + x / divisor)];
            sum.red += pixel.red * share;
            sum.green += pixel.green * share;
            sum.blue += pixel.blue * share;
            sum.alpha += pixel.alpha * share;
        }
    }
    return reduced;
}

Sprite Canvas::ToSprite() const {
    Sprite sprite;
    sprite.width = width;
    sprite.height = height;
    const auto columns = static_cast<std::size_t>(width);
    for (const Pixel& pixel : pixels) {
        const YuvFloat yuv = ToYuvFloat(pixel.red, pixel.green, pixel.blue);
        const uint8_t rest = ToByte(255.0F * (1.0F - pixel.alpha));
        sprite.luma.rest.push_back(rest);
        // Rounded down, so that sample and rest of the ground never exceed a byte.
        sprite.luma.sample.push_back(static_cast<uint8_t>(yuv.y + 16.0F * pixel.alpha));
    }
    for (std::size_t y = 0; y < static_cast<std::size_t>(height); y += 2) {
        for (std::size_t x = 0; x < columns; x += 2) {
            Pixel sum;
            for (const std::size_t index :
                 {y * columns + x, y * columns + x + 1, (y + 1) * columns + x, (y + 1) * columns + x + 1}) {
                sum.red += pixels[index].red / 4;
                sum.green += pixels[index].green / 4;
                sum.blue += pixels[index].blue / 4;
                sum.alpha += pixels[index].alpha / 4;
            }
            const YuvFloat yuv = ToYuvFloat(sum.red, sum.green, sum.blue);
            const uint8_t rest = ToByte(255.0F * (1.0F - sum.alpha));
            sprite.chromaU.rest.push_back(rest);
            sprite.chromaV.rest.push_back(rest);
            sprite.chromaU.sample.push_back(static_cast<uint8_t>(yuv.u + 128.0F * sum.alpha));
            sprite.chromaV.sample.push_back(static_cast<uint8_t>(yuv.v + 128.0F * sum.alpha));
        }
    }
    return sprite;
}

void Canvas::WriteTo(const Planes& target) const {
    const auto columns = static_cast<std::size_t>(width);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const Pixel& pixel = pixels[static_cast<std::size_t>(y) * columns + static_cast<std::size_t>(x)];
            const float luma = ToYuvFloat(pixel.red, pixel.green, pixel.blue).y;
            target.y[static_cast<std::ptrdiff_t>(y) * target.strideY + x] =
                ToByte(16.0F + luma + DitherAt(x, y));
        }
    }
    for (int y = 0; y < height / 2; ++y) {
        for (int x = 0; x < width / 2; ++x) {
            const std::size_t first =
                static_cast<std::size_t>(y) * 2 * columns + static_cast<std::size_t>(x) * 2;
            Pixel mean;
            for (const std::size_t index : {first, first + 1, first + columns, first + columns + 1}) {
                mean.red += pixels[index].red / 4;
                mean.green += pixels[index].green / 4;
                mean.blue += pixels[index].blue / 4;
            }
            const YuvFloat yuv = ToYuvFloat(mean.red, mean.green, mean.blue);
            const std::ptrdiff_t at = static_cast<std::ptrdiff_t>(y) * target.strideUV + x;
            target.u[at] = ToByte(128.0F + yuv.u + DitherAt(x, y));
            target.v[at] = ToByte(128.0F + yuv.v + DitherAt(x, y));
        }
    }
}

Shape Ellipse(float centerX, float centerY, float radiusX, float radiusY) {
    const auto distance = [=](float x, float y) {
        // Exact on the edge of a circle, near enough on that of an ellipse (Inigo Quilez, "Ellipse
        // distance").
        const float unitX = (x - centerX) / radiusX;
        const float unitY = (y - centerY) / radiusY;
        const float scaled = std::sqrt(unitX * unitX + unitY * unitY);
        const float slopeX = unitX / radiusX;
        const float slopeY = unitY / radiusY;
        const float slope = std::sqrt(slopeX * slopeX + slopeY * slopeY);
        return slope < 1e-6F ? -std::min(radiusX, radiusY) : scaled * (scaled - 1.0F) / slope;
    };
    return {distance, centerX - radiusX, centerY - radiusY, centerX + radiusX, centerY + radiusY};
}

Shape RoundedBox(float left, float top, float right, float bottom, float radius) {
    const auto distance = [=](float x, float y) {
        const float outX = std::abs(x - (left + right) / 2) - (right - left) / 2 + radius;
        const float outY = std::abs(y - (top + bottom) / 2) - (bottom - top) / 2 + radius;
        const float cornerX = std::max(outX, 0.0F);
        const float cornerY = std::max(outY, 0.0F);
        return std::sqrt(cornerX * cornerX + cornerY * cornerY) + std::min(std::max(outX, outY), 0.0F) -
               radius;
    };
    return {distance, left, top, right, bottom};
}

Shape Without(const Shape& shape, const Shape& cutOut) {
    const auto distance = [whole = shape.distance, cut = cutOut.distance](float x, float y) {
        return std::max(whole(x, y), -cut(x, y));
    };
    return {distance, shape.left, shape.top, shape.right, shape.bottom};
}

Shape Outline(const Shape& shape, float width) {
    const auto distance = [edge = shape.distance, width](float x, float y) {
        return std::abs(edge(x, y)) - width / 2;
    };
    return {distance, shape.left - width, shape.top - width, shape.right + width, shape.bottom + width};
}

void FillBox(const Planes& target, int left, int top, int right, int bottom, const Yuv& color) {
    const int chromaLeft = std::clamp(left, 0, target.width) / 2;
    const int chromaTop = std::clamp(top, 0, target.height) / 2;
    const int chromaRight = std::clamp(right, 0, target.width) / 2;
    const int chromaBottom = std::clamp(bottom, 0, target.height) / 2;
    FillPlane(target.y, target.strideY, chromaLeft * 2, chromaTop * 2, chromaRight * 2, chromaBottom * 2,
              color.y);
    FillPlane(target.u, target.strideUV, chromaLeft, chromaTop, chromaRight, chromaBottom, color.u);
    FillPlane(target.v, target.strideUV, chromaLeft, chromaTop, chromaRight, chromaBottom, color.v);
}

}  // namespace Corvanta::Engine
