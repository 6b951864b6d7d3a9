#include "video/BoxBlur.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <memory>
#include <random>
#include <vector>

namespace Corvanta::Video {
namespace {

using Surface = std::unique_ptr<SDL_Surface, decltype(&SDL_FreeSurface)>;

Surface MakeSurface(int width, int height, Uint32 format = SDL_PIXELFORMAT_ARGB8888) {
    return {SDL_CreateRGBSurfaceWithFormat(0, width, height, SDL_BITSPERPIXEL(format), format),
            &SDL_FreeSurface};
}

uint32_t& PixelAt(SDL_Surface& surface, int x, int y) {
    return reinterpret_cast<uint32_t*>(static_cast<uint8_t*>(surface.pixels) + y * surface.pitch)[x];
}

std::vector<uint32_t> PixelsOf(SDL_Surface& surface) {
    std::vector<uint32_t> pixels;
    for (int y = 0; y < surface.h; ++y) {
        for (int x = 0; x < surface.w; ++x) pixels.push_back(PixelAt(surface, x, y));
    }
    return pixels;
}

// Word for word what the blur is: nothing is remembered from pixel to pixel.
void BlurSlowly(SDL_Surface& surface, int radius) {
    const int area = (2 * radius + 1) * (2 * radius + 1);
    for (int y = 0; y < surface.h; ++y) {
        for (int x = 0; x < surface.w; ++x) {
            int sums[4] = {0, 0, 0, 0};
            for (int v = y - radius; v <= y + radius; ++v) {
                for (int u = x - radius; u <= x + radius; ++u) {
                    if (u < 0 || v < 0 || u >= surface.w || v >= surface.h) continue;
                    Uint8 part[4];
                    SDL_GetRGBA(PixelAt(surface, u, v), surface.format, &part[0], &part[1], &part[2],
                                &part[3]);
                    for (int i = 0; i < 4; ++i) sums[i] += part[i];
                }
            }
            PixelAt(surface, x, y) = SDL_MapRGBA(
                surface.format, static_cast<Uint8>(sums[0] / area), static_cast<Uint8>(sums[1] / area),
                static_cast<Uint8>(sums[2] / area), static_cast<Uint8>(sums[3] / area));
        }
    }
}

void FillAtRandom(SDL_Surface& surface, std::mt19937& random) {
    for (int y = 0; y < surface.h; ++y) {
        for (int x = 0; x < surface.w; ++x) PixelAt(surface, x, y) = static_cast<uint32_t>(random());
    }
}

TEST(BoxBlur, IsTheMeanOfTheSquareInReadingOrder) {
    std::mt19937 random(7);
    for (const int radius : {0, 1, 4, 30}) {
        for (const auto& [width, height] :
             {std::pair{1, 1}, std::pair{1, 40}, std::pair{40, 1}, std::pair{3, 5}, std::pair{61, 23}}) {
            for (const Uint32 format : {Uint32{SDL_PIXELFORMAT_ARGB8888}, Uint32{SDL_PIXELFORMAT_RGBA8888},
                                        Uint32{SDL_PIXELFORMAT_RGB888}}) {
                const Surface fast = MakeSurface(width, height, format);
                FillAtRandom(*fast, random);
                const Surface slow(SDL_DuplicateSurface(fast.get()), &SDL_FreeSurface);
                BoxBlur(*fast, radius);
                BlurSlowly(*slow, radius);
                EXPECT_EQ(PixelsOf(*fast), PixelsOf(*slow)) << radius << ' ' << width << 'x' << height;
            }
        }
    }
}

TEST(BoxBlur, FadesTheBorderAndKeepsTheMiddleDarker) {
    const Surface surface = MakeSurface(40, 40);
    SDL_FillRect(surface.get(), nullptr, 0x80000000);
    BoxBlur(*surface, 4);
    const auto alphaAt = [&](int x, int y) { return PixelAt(*surface, x, y) >> 24U; };
    // A quarter of the square of the first pixel lies inside: 25 of 81.
    EXPECT_EQ(alphaAt(0, 0), 128U * 25 / 81);
    EXPECT_GT(alphaAt(20, 20), 100U);
    EXPECT_LT(alphaAt(39, 39), alphaAt(20, 20));
}

TEST(BoxBlur, LeavesWhatItCannotBlurAlone) {
    const Surface small = MakeSurface(8, 8, SDL_PIXELFORMAT_RGB24);
    SDL_FillRect(small.get(), nullptr, SDL_MapRGB(small->format, 255, 255, 255));
    BoxBlur(*small, 4);
    EXPECT_EQ(static_cast<uint8_t*>(small->pixels)[0], 255);

    const Surface negative = MakeSurface(8, 8);
    SDL_FillRect(negative.get(), nullptr, 0xFFFFFFFF);
    BoxBlur(*negative, -1);
    EXPECT_EQ(PixelAt(*negative, 0, 0), 0xFFFFFFFF);

    const Surface empty = MakeSurface(0, 0);
    BoxBlur(*empty, 4);
}

}  // namespace
}  // namespace Corvanta::Video
