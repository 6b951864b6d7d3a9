// From code values of planar pictures to red, green and blue: the luma weights of each matrix and the linear
// map they make with range and depth. Plain values, any thread.
#pragma once

#include <array>

#include "platform/ColorSpace.h"

namespace Corvanta::Video {

// Kr and Kb of ITU-T H.273 equations 38 to 40; Kg is what remains to 1.
struct LumaWeights {
    double red;
    double blue;
};

// Weights of a matrix that is a weighted sum of R', G' and B'. BT.2020 constant luminance, the
// chromaticity-derived ones and ICtCp are no such sum and get BT.2020's weights, their nearest; every other
// value gets BT.709's.
[[nodiscard]] constexpr LumaWeights GetLumaWeights(ColorMatrix matrix) {
    switch (matrix) {
        case ColorMatrix::FCC: return {0.30, 0.11};
        case ColorMatrix::BT470BG:
        case ColorMatrix::SMPTE170M: return {0.299, 0.114};
        case ColorMatrix::SMPTE240M: return {0.212, 0.087};
        case ColorMatrix::BT2020NCL:
        case ColorMatrix::BT2020CL:
        case ColorMatrix::CDNCLS:
        case ColorMatrix::CDCLS:
        case ColorMatrix::BT2100ICtCp: return {0.2627, 0.0593};
        default: return {0.2126, 0.0722};
    }
}

// rgb[i] = sum over j of factor[i][j] * code[j], plus offset[i]; codes are those of the first, second and
// third plane, results lie in 0 to 1 for colours in gamut.
struct YuvToRgb {
    std::array<std::array<double, 3>, 3> factor;
    std::array<double, 3> offset;
};

// The map for samples of `bits` bits (H.273 equations 20 to 31 for the ranges). Every range but Full is
// Limited.
[[nodiscard]] constexpr YuvToRgb MakeYuvToRgb(ColorMatrix matrix, ColorRange range, int bits) {
    const double step = 1 << (bits - 8);
    const double top = (1 << bits) - 1;
    const bool full = range == ColorRange::Full;
    const double lumaScale = full ? 1 / top : 1 / (219 * step);
    const double chromaScale = full ? 1 / top : 1 / (224 * step);
    const double black = full ? 0 : 16 * step;
    const double middle = 128 * step;

    std::array<std::array<double, 3>, 3> shape{};  // acts on normalised luma and chroma
    bool planesAreRgb = false;
    if (matrix == ColorMatrix::RGB) {
        planesAreRgb = true;
        shape = {{{0, 0, 1}, {1, 0, 0}, {0, 1, 0}}};  // planes are G, B, R
    } else if (matrix == ColorMatrix::YCoCg) {
        shape = {{{1, -1, 1}, {1, 1, 0}, {1, -1, -1}}};  // planes are Y, Cg, Co
    } else {
        const auto [red, blue] = GetLumaWeights(matrix);
        const double green = 1 - red - blue;
        const double redSlope = 2 * (1 - red);
        const double blueSlope = 2 * (1 - blue);
        shape = {
            {{1, 0, redSlope}, {1, -blueSlope * blue / green, -redSlope * red / green}, {1, blueSlope, 0}}};
    }
    YuvToRgb map{};
    for (size_t i = 0; i < 3; ++i) {
        for (size_t j = 0; j < 3; ++j) {
            const bool luma = j == 0 || planesAreRgb;
            map.factor[i][j] = shape[i][j] * (luma ? lumaScale : chromaScale);
            map.offset[i] -= map.factor[i][j] * (luma ? black : middle);
        }
    }
    return map;
}

}  // namespace Corvanta::Video
