// Drawing without a display: SDL's software renderer on a surface, and its pixels read back and compared. One
// thread.
#pragma once

#include <SDL.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <string>
#include <vector>

namespace Corvanta::Testing {

// A picture, row by row, each pixel 0xAARRGGBB.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<uint32_t> pixels;

    [[nodiscard]] uint32_t At(int x, int y) const;
    // Writes a BMP for a person to look at. Whether it was written.
    [[nodiscard]] bool Save(const std::string& path) const;
};

class PixelReader final {
public:
    // An opaque black surface of that size in pixels. Throws std::runtime_error when SDL cannot make it.
    PixelReader(int width, int height);
    ~PixelReader();
    PixelReader(const PixelReader&) = delete;
    PixelReader& operator=(const PixelReader&) = delete;

    [[nodiscard]] SDL_Renderer* Renderer() const { return renderer_; }

    // Everything that was drawn so far, whatever viewport, clip and scale are set.
    [[nodiscard]] Picture Read() const;
    // Fills the whole surface, as 0xAARRGGBB. Leaves the draw colour at (0, 0, 0, 0).
    void Fill(uint32_t argb);

private:
    SDL_Surface* surface_ = nullptr;
    SDL_Renderer* renderer_ = nullptr;
};

// What any SDL renderer shows now, such as that of a view. Before it is presented.
Picture ReadPicture(SDL_Renderer* renderer);

// The pixel is the colour, each component but alpha at most `tolerance` off.
::testing::AssertionResult PixelIs(const Picture& picture, int x, int y, uint32_t argb, int tolerance = 0);
// Every pixel of the rectangle is the colour.
::testing::AssertionResult AreaIs(const Picture& picture, const SDL_Rect& area, uint32_t argb,
                                  int tolerance = 0);
// The pictures have one size, and no component but alpha differs by more than `tolerance`.
::testing::AssertionResult SamePicture(const Picture& left, const Picture& right, int tolerance = 0);

}  // namespace Corvanta::Testing
