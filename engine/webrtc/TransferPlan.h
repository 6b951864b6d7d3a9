// The way of a picture's colours from one space to another, prepared for the kernels: the curves of
// TransferFunctions as short polynomials and tables of floats. Built once per pair of spaces, then only read,
// on any thread.
#pragma once

#include <memory>

#include "engine/webrtc/TransferFunctions.h"
#include "platform/ColorSpace.h"

namespace Corvanta::Engine {

// A curve as cubics in z on up to eight intervals of z = x * scale + offset, x from 0 to 1. Which interval a
// z falls into is told by its bits as a float, shifted right: with shift 20 and z in [1, 2) the intervals are
// eighths, with shift 23 octaves.
struct Segments {
    float scale = 1;
    float offset = 0;
    int shift = 0;
    // Coefficient k of interval i for z to the power of k.
    alignas(64) float coefficients[4][8] = {};
};

// A curve as a table that is read at the nearest entry; its argument, 0 to 1, is the table's position.
struct Table {
    std::unique_ptr<float[]> entries;
    float lastIndex = 0;
};

struct TransferPlan {
    enum class Light { Same, Display, Pq, Hlg };  // Same: values pass through, all else is unused
    enum class Target { Display, Other, Pq, Hlg };

    Light light = Light::Same;
    Target target = Target::Display;

    // Kernels are given values as v = encoded * inputScale + inputOffset, so that the step before them, which
    // maps codes to encoded values, does this too. They clamp v to inputLow and inputHigh, black and peak of
    // the source.
    float inputScale = 1;
    float inputOffset = 0;
    float inputLow = 0;
    float inputHigh = 1;
    // Display: v (as z) to light. Hlg: to the square root of scene light.
    Segments decode;
    // Pq, to an SDR target: square root of light as powers of v. Degree 7 is 0.003/255 off for a peak of 1000
    // cd/m2 and 0.12/255 for 10000.
    static constexpr int kPqTerms = 8;
    float pqDecode[kPqTerms] = {};
    // Pq, to an HDR target, where black is seen more closely than a polynomial is exact: the same over v.
    Table pqTable;
    // Hlg: factor from scene light to the target's unit over the fourth root of scene luminance.
    Segments ootfGain;
    float hlgPeak = 1;
    // The tone curve's factor on light (for Pq its square root) over the largest component from knee to peak:
    // of v for Pq, for Hlg of the square root of light as a part of hlgPeak. Below the knee it is 1.
    bool toneMapped = false;
    float knee = 1;
    Segments toneGain;

    // From light to z of encode (for a table: to light as a part of the target's peak).
    float primaries[3][3] = {};
    float sourceWeights[3] = {};
    float targetWeights[3] = {};
    float lightOffset = 0;  // black
    float lightScale = 1;   // from black to the target's peak

    // To encoded values: encode for Display, for the others encodeTable at the fourth root of light, for Hlg
    // after a factor of inverseOotf at the square root of luminance.
    Segments encode;
    Table encodeTable;
    Table inverseOotf;
};

[[nodiscard]] TransferPlan MakeTransferPlan(const ColorSpace& source, const ColorSpace& target);

}  // namespace Corvanta::Engine
