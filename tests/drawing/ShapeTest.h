// What tests of shapes share: a picture of 640 by 360 pixels for a canvas of 1280 by 720 units, so that a
// unit is half a pixel, and a clock that a test turns.
#pragma once

#include <SDL.h>

#include <cstdint>
#include <random>
#include <utility>
#include <vector>

#include "drawing/Color.h"
#include "drawing/LinePath.h"
#include "drawing/Shape.h"
#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "ui/Clock.h"

namespace Corvanta::Testing {

constexpr double kCanvasWidth = 1280;
constexpr double kCanvasHeight = 720;
constexpr uint32_t kBackground = 0xFF204060;
constexpr uint32_t kOpaqueRed = 0xFFFF0000;
constexpr SDL_Color kRedColor{255, 0, 0, 255};

class ShapeTest : public FakePlatformTest {
protected:
    ShapeTest() {
        Sdl().Reset();
        nowNs = 1'000'000'000;
        UI::SetClock([] { return nowNs; });
        Start(kBackground);
    }
    ~ShapeTest() override {
        UI::SetClock(nullptr);
        Sdl().Reset();
    }

    [[nodiscard]] SDL_Renderer* Renderer() const { return reader.Renderer(); }
    static void TurnMs(int64_t ms) { nowNs += ms * 1'000'000; }

    // A fresh picture in that colour.
    void Start(uint32_t argb) {
        reader.Fill(argb);
        SDL_SetRenderDrawBlendMode(Renderer(), SDL_BLENDMODE_BLEND);
    }
    void Draw(Drawing::Shape& shape) {
        shape.Normalize(kCanvasWidth, kCanvasHeight);
        shape.Render(Renderer());
    }
    Picture Drawn(Drawing::Shape& shape, uint32_t background = kBackground) {
        Start(background);
        Draw(shape);
        return reader.Read();
    }
    [[nodiscard]] SDL_BlendMode BlendMode() const {
        SDL_BlendMode mode = SDL_BLENDMODE_INVALID;
        SDL_GetRenderDrawBlendMode(Renderer(), &mode);
        return mode;
    }

    inline static int64_t nowNs = 0;
    PixelReader reader{640, 360};
};

// Every pixel with its alpha.
inline bool Identical(const Picture& left, const Picture& right) {
    return left.pixels == right.pixels;
}

// Pixels of that colour.
inline size_t CountOf(const Picture& picture, uint32_t argb) {
    size_t count = 0;
    for (const uint32_t pixel : picture.pixels) count += pixel == argb ? 1 : 0;
    return count;
}

inline void AddPoints(Drawing::LinePath& path, const std::vector<std::pair<double, double>>& points) {
    path.points.insert(path.points.end(), points.begin(), points.end());
    path.normalized = false;
}

}  // namespace Corvanta::Testing
