// The exact arithmetic of colour: transfer functions, primaries, tone mapping and the whole way of one colour
// from one space to another, in double precision. What the fast kernels are built from and measured against.
// Pure functions and plain values, any thread.
//
// Light is relative to SDR white, which stands for 203 cd/m2 in HDR (ITU-R BT.2408, HDR reference white).
//
// Unspecified members count as BT.709. BT.709, BT.601, SMPTE 240M, BT.2020 SDR, xvYCC and sRGB are taken as
// one display transfer, sRGB's: such pictures are shown without conversion side by side with converted ones,
// so a picture must not grow brighter because its tag is another one of that family.
#pragma once

#include <array>

#include "platform/ColorSpace.h"

namespace Corvanta::Engine {

using Rgb = std::array<double, 3>;
using Matrix3 = std::array<std::array<double, 3>, 3>;

inline constexpr double kSdrWhiteNits = 203;
inline constexpr double kPqPeakNits = 10000;
// HLG is shown as on BT.2100's reference display, where the system gamma is 1.2.
inline constexpr double kHlgPeakNits = 1000;
inline constexpr double kHlgSystemGamma = 1.2;
inline constexpr double kDefaultMasteringPeakNits = 1000;

// How a transfer is handled. Display is sRGB's family above; Other are plain powers and logarithms.
enum class TransferClass { Display, Other, Pq, Hlg };
[[nodiscard]] TransferClass GetTransferClass(ColorTransfer transfer);
// Whether pictures of both may stand side by side without conversion of light.
[[nodiscard]] bool IsSameLight(ColorTransfer first, ColorTransfer second);

// Encoded value 0 to 1 to light 0 to 1 (for SMPTE ST 428 to 1.09, as its white lies below its peak): of the
// display for most, for PQ as a part of 10000 cd/m2 (SMPTE ST 2084), for HLG of the scene (ARIB STD-B67,
// inverse OETF). Values outside are clamped.
[[nodiscard]] double Decode(ColorTransfer transfer, double encoded);
// The inverse.
[[nodiscard]] double Encode(ColorTransfer transfer, double light);

// Linear light from one set of primaries to another; white stays white (Bradford adaptation where they
// differ).
[[nodiscard]] Matrix3 MakePrimariesMatrix(ColorPrimaries from, ColorPrimaries to);
// What each of red, green and blue light gives to luminance; they sum to 1.
[[nodiscard]] Rgb GetLuminanceWeights(ColorPrimaries primaries);
[[nodiscard]] bool IsSamePrimaries(ColorPrimaries first, ColorPrimaries second);

// CIE 1931 x and y of the primaries and their white, H.273 table 2.
struct Chromaticity {
    double x;
    double y;

    bool operator==(const Chromaticity&) const = default;
};
struct PrimarySet {
    std::array<Chromaticity, 3> rgb;
    Chromaticity white;

    bool operator==(const PrimarySet&) const = default;
};
[[nodiscard]] PrimarySet GetPrimarySet(ColorPrimaries primaries);

// Kr and Kb. Matrices that are no weighted sum (constant luminance, chromaticity-derived, ICtCp) get
// BT.2020's, unknown ones BT.709's.
struct LumaWeights {
    double red;
    double blue;
};
[[nodiscard]] LumaWeights GetLumaWeights(ColorMatrix matrix);

// rgb = factor * codes + offset for samples of `bits` bits, rgb 0 to 1 in gamut; and back.
struct CodeMap {
    Matrix3 factor;
    Rgb offset;
};
[[nodiscard]] CodeMap MakeCodesToRgb(ColorMatrix matrix, ColorRange range, int bits);
[[nodiscard]] CodeMap MakeRgbToCodes(ColorMatrix matrix, ColorRange range, int bits);

// The EETF of Report ITU-R BT.2390, 5.4.1 (Hermite spline from the knee to the display's peak, black kept at
// 0). PQ-encoded values; a source of no higher peak than the display passes unchanged.
struct ToneCurve {
    double sourcePeakPq;
    double displayPeakPq;

    [[nodiscard]] bool IsIdentity() const { return sourcePeakPq <= displayPeakPq; }
    // Where the curve leaves the diagonal.
    [[nodiscard]] double GetKneePq() const;
    [[nodiscard]] double Apply(double pq) const;
    // Factor on light for a colour whose largest component is this.
    [[nodiscard]] double GetGain(double pq) const;
};
// From a picture of a space to SDR white.
[[nodiscard]] ToneCurve MakeToneCurve(const ColorSpace& source);

// The way of one encoded colour: decode, HLG's OOTF, tone curve on the largest component (so that hue and
// saturation stay), primaries, gamut, encode. Colours below zero are moved towards the grey of their
// luminance, colours above the display's peak scaled down; both keep the hue in linear light.
class ExactTransfer {
public:
    ExactTransfer(const ColorSpace& source, const ColorSpace& target);
    [[nodiscard]] Rgb Convert(const Rgb& encoded) const;

private:
    [[nodiscard]] Rgb ToDisplayLight(const Rgb& encoded) const;

    ColorTransfer from_;
    ColorTransfer to_;
    Matrix3 primaries_;
    Rgb sourceWeights_;
    Rgb targetWeights_;
    ToneCurve tone_;
    bool toneMapped_;
};

}  // namespace Corvanta::Engine
