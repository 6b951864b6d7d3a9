// The exact arithmetic of ITU-T H.273 between RGB and planar samples, in double precision: what converted
// pictures are compared with.
#pragma once

#include <array>
#include <cstdint>

#include "platform/ColorSpace.h"

namespace Corvanta::Testing {

// Samples of one pixel.
struct Yuv {
    uint16_t y = 0;
    uint16_t u = 0;
    uint16_t v = 0;

    bool operator==(const Yuv&) const = default;
};

// Nearest samples of a colour given as non-linear R'G'B' from 0 to 1 (H.273, 8.3, equations for full and
// limited range). `bits` is 8 or 10. BT709, BT470BG, SMPTE170M, FCC, SMPTE240M and BT2020NCL; any other
// matrix as BT709.
Yuv ExactYuv(double red, double green, double blue, ColorMatrix matrix, ColorRange range, int bits);

// The colour of a sample, each component clamped and rounded to 8 bits: 0xFFRRGGBB.
uint32_t ExactArgb(const Yuv& yuv, ColorMatrix matrix, ColorRange range, int bits);

// Unclamped and unrounded components, where 255 is full.
std::array<double, 3> ExactRgb(const Yuv& yuv, ColorMatrix matrix, ColorRange range, int bits);

// The largest difference of a component of two colours 0xAARRGGBB, alpha apart.
int MaxDifference(uint32_t left, uint32_t right);

// White, yellow, cyan, green, magenta, red, blue and black at full strength, as R'G'B' from 0 to 1.
inline constexpr std::array<std::array<double, 3>, 8> kTestBars{
    {{1, 1, 1}, {1, 1, 0}, {0, 1, 1}, {0, 1, 0}, {1, 0, 1}, {1, 0, 0}, {0, 0, 1}, {0, 0, 0}}};

}  // namespace Corvanta::Testing
