#include "tests/fake_platform/ReferenceColor.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace Corvanta::Testing {

namespace {

struct LumaWeights {
    double red;
    double blue;
};

// H.273, table 4.
LumaWeights WeightsOf(ColorMatrix matrix) {
    switch (matrix) {
        case ColorMatrix::FCC: return {0.30, 0.11};
        case ColorMatrix::BT470BG:
        case ColorMatrix::SMPTE170M: return {0.299, 0.114};
        case ColorMatrix::SMPTE240M: return {0.212, 0.087};
        case ColorMatrix::BT2020NCL: return {0.2627, 0.0593};
        default: return {0.2126, 0.0722};
    }
}

struct Quantisation {
    double lumaScale;
    double lumaOffset;
    double chromaScale;
    double chromaOffset;
    double maximum;
};

Quantisation QuantisationOf(ColorRange range, int bits) {
    const double maximum = std::pow(2.0, bits) - 1.0;
    const double middle = std::pow(2.0, bits - 1);
    if (range == ColorRange::Full) {
        return {maximum, 0.0, maximum, middle, maximum};
    }
    const double unit = std::pow(2.0, bits - 8);
    return {219.0 * unit, 16.0 * unit, 224.0 * unit, middle, maximum};
}

}  // namespace

Yuv ExactYuv(double red, double green, double blue, ColorMatrix matrix, ColorRange range, int bits) {
    const LumaWeights weights = WeightsOf(matrix);
    const Quantisation quantisation = QuantisationOf(range, bits);
    const double luma = weights.red * red + (1.0 - weights.red - weights.blue) * green + weights.blue * blue;
    const double u = 0.5 * (blue - luma) / (1.0 - weights.blue);
    const double v = 0.5 * (red - luma) / (1.0 - weights.red);
    const auto quantise = [&](double value, double scale, double offset) {
        return static_cast<uint16_t>(
            std::clamp(std::round(value * scale + offset), 0.0, quantisation.maximum));
    };
    return {quantise(luma, quantisation.lumaScale, quantisation.lumaOffset),
            quantise(u, quantisation.chromaScale, quantisation.chromaOffset),
            quantise(v, quantisation.chromaScale, quantisation.chromaOffset)};
}

std::array<double, 3> ExactRgb(const Yuv& yuv, ColorMatrix matrix, ColorRange range, int bits) {
    const LumaWeights weights = WeightsOf(matrix);
    const Quantisation quantisation = QuantisationOf(range, bits);
    const double luma = (yuv.y - quantisation.lumaOffset) / quantisation.lumaScale;
    const double u = (yuv.u - quantisation.chromaOffset) / quantisation.chromaScale;
    const double v = (yuv.v - quantisation.chromaOffset) / quantisation.chromaScale;
    const double red = luma + 2.0 * (1.0 - weights.red) * v;
    const double blue = luma + 2.0 * (1.0 - weights.blue) * u;
    const double green =
        (luma - weights.red * red - weights.blue * blue) / (1.0 - weights.red - weights.blue);
    return {255.0 * red, 255.0 * green, 255.0 * blue};
}

uint32_t ExactArgb(const Yuv& yuv, ColorMatrix matrix, ColorRange range, int bits) {
    uint32_t argb = 0xFF;
    for (const double component : ExactRgb(yuv, matrix, range, bits)) {
        argb = argb << 8 | static_cast<uint32_t>(std::clamp(std::lround(component), 0L, 255L));
    }
    return argb;
}

int MaxDifference(uint32_t left, uint32_t right) {
    int difference = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const int l = static_cast<int>(left >> shift & 0xFF);
        const int r = static_cast<int>(right >> shift & 0xFF);
        difference = std::max(difference, std::abs(l - r));
    }
    return difference;
}

}  // namespace Corvanta::Testing
