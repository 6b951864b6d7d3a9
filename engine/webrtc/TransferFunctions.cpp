#include "engine/webrtc/TransferFunctions.h"

#include <algorithm>
#include <cmath>

namespace Corvanta::Engine {

namespace {

constexpr Chromaticity kD65{0.3127, 0.3290};
constexpr Chromaticity kIlluminantC{0.310, 0.316};

Rgb Multiply(const Matrix3& m, const Rgb& v) {
    Rgb out{};
    for (size_t i = 0; i < 3; ++i) out[i] = m[i][0] * v[0] + m[i][1] * v[1] + m[i][2] * v[2];
    return out;
}

Matrix3 Multiply(const Matrix3& a, const Matrix3& b) {
    Matrix3 out{};
    for (size_t i = 0; i < 3; ++i) {
        for (size_t j = 0; j < 3; ++j) out[i][j] = a[i][0] * b[0][j] + a[i][1] * b[1][j] + a[i][2] * b[2][j];
    }
    return out;
}

Matrix3 Invert(const Matrix3& m) {
    Matrix3 cofactors{};
    for (size_t i = 0; i < 3; ++i) {
        for (size_t j = 0; j < 3; ++j) {
            const size_t r0 = (i + 1) % 3;
            const size_t r1 = (i + 2) % 3;
            const size_t c0 = (j + 1) % 3;
            const size_t c1 = (j + 2) % 3;
            cofactors[i][j] = m[r0][c0] * m[r1][c1] - m[r0][c1] * m[r1][c0];
        }
    }
    const double determinant =
        m[0][0] * cofactors[0][0] + m[0][1] * cofactors[0][1] + m[0][2] * cofactors[0][2];
    Matrix3 out{};
    for (size_t i = 0; i < 3; ++i) {
        for (size_t j = 0; j < 3; ++j) out[i][j] = cofactors[j][i] / determinant;
    }
    return out;
}

Rgb WhiteXyz(const Chromaticity& white) {
    return {white.x / white.y, 1, (1 - white.x - white.y) / white.y};
}

Matrix3 RgbToXyz(const PrimarySet& set) {
    Matrix3 columns{};
    for (size_t j = 0; j < 3; ++j) {
        columns[0][j] = set.rgb[j].x;
        columns[1][j] = set.rgb[j].y;
        columns[2][j] = 1 - set.rgb[j].x - set.rgb[j].y;
    }
    const Rgb scale = Multiply(Invert(columns), WhiteXyz(set.white));
    for (auto& row : columns) {
        for (size_t j = 0; j < 3; ++j) row[j] *= scale[j];
    }
    return columns;
}

// Lam's cone response of the Bradford transform.
Matrix3 AdaptWhite(const Chromaticity& from, const Chromaticity& to) {
    constexpr Matrix3 kBradford{
        {{0.8951, 0.2664, -0.1614}, {-0.7502, 1.7135, 0.0367}, {0.0389, -0.0685, 1.0296}}};
    const Rgb source = Multiply(kBradford, WhiteXyz(from));
    const Rgb target = Multiply(kBradford, WhiteXyz(to));
    Matrix3 scaled = kBradford;
    for (size_t i = 0; i < 3; ++i) {
        for (double& value : scaled[i]) value *= target[i] / source[i];
    }
    return Multiply(Invert(kBradford), scaled);
}

double DecodeSrgb(double e) {
    return e <= 0.04045 ? e / 12.92 : std::pow((e + 0.055) / 1.055, 2.4);
}

double EncodeSrgb(double l) {
    return l <= 0.0031308 ? 12.92 * l : 1.055 * std::pow(l, 1 / 2.4) - 0.055;
}

// SMPTE ST 2084.
constexpr double kPqM1 = 2610.0 / 16384;
constexpr double kPqM2 = 2523.0 / 4096 * 128;
constexpr double kPqC1 = 3424.0 / 4096;
constexpr double kPqC2 = 2413.0 / 4096 * 32;
constexpr double kPqC3 = 2392.0 / 4096 * 32;

double DecodePq(double e) {
    const double power = std::pow(e, 1 / kPqM2);
    return std::pow(std::max(power - kPqC1, 0.0) / (kPqC2 - kPqC3 * power), 1 / kPqM1);
}

double EncodePq(double l) {
    const double power = std::pow(l, kPqM1);
    return std::pow((kPqC1 + kPqC2 * power) / (1 + kPqC3 * power), kPqM2);
}

// ARIB STD-B67 in BT.2100's normalisation, scene light 0 to 1.
constexpr double kHlgA = 0.17883277;
constexpr double kHlgB = 1 - 4 * kHlgA;
const double kHlgC = 0.5 - kHlgA * std::log(4 * kHlgA);

double DecodeHlg(double e) {
    return e <= 0.5 ? e * e / 3 : (std::exp((e - kHlgC) / kHlgA) + kHlgB) / 12;
}

double EncodeHlg(double l) {
    return l <= 1.0 / 12 ? std::sqrt(3 * l) : kHlgA * std::log(12 * l - kHlgB) + kHlgC;
}

// H.273 table 3, values 9 and 10: the number of decades that the logarithm spans.
double LogDecades(ColorTransfer transfer) {
    return transfer == ColorTransfer::Log ? 2 : 2.5;
}

// H.273's value 17; the product has no name for it.
constexpr ColorTransfer kSmpteSt428{17};
constexpr double kSt428Scale = 52.37 / 48;

double GammaOf(ColorTransfer transfer) {
    switch (transfer) {
        case ColorTransfer::Gamma22: return 2.2;
        case ColorTransfer::Gamma28: return 2.8;
        case ColorTransfer::Gamma26: return 2.6;
        default: return 1;
    }
}

}  // namespace

TransferClass GetTransferClass(ColorTransfer transfer) {
    if (transfer == kSmpteSt428) return TransferClass::Other;
    switch (transfer) {
        case ColorTransfer::Gamma22:
        case ColorTransfer::Gamma28:
        case ColorTransfer::Gamma26:
        case ColorTransfer::Linear:
        case ColorTransfer::Log:
        case ColorTransfer::LogSqrt: return TransferClass::Other;
        case ColorTransfer::SMPTEST2084: return TransferClass::Pq;
        case ColorTransfer::ARIB_STD_B67: return TransferClass::Hlg;
        default: return TransferClass::Display;
    }
}

bool IsSameLight(ColorTransfer first, ColorTransfer second) {
    return first == second || (GetTransferClass(first) == TransferClass::Display &&
                               GetTransferClass(second) == TransferClass::Display);
}

double Decode(ColorTransfer transfer, double encoded) {
    const double e = std::clamp(encoded, 0.0, 1.0);
    switch (GetTransferClass(transfer)) {
        case TransferClass::Display: return DecodeSrgb(e);
        case TransferClass::Pq: return DecodePq(e);
        case TransferClass::Hlg: return DecodeHlg(e);
        case TransferClass::Other: break;
    }
    if (transfer == ColorTransfer::Log || transfer == ColorTransfer::LogSqrt) {
        return std::pow(10.0, (e - 1) * LogDecades(transfer));
    }
    if (transfer == kSmpteSt428) return kSt428Scale * std::pow(e, 2.6);
    return std::pow(e, GammaOf(transfer));
}

double Encode(ColorTransfer transfer, double light) {
    const double l = std::clamp(light, 0.0, 1.0);
    switch (GetTransferClass(transfer)) {
        case TransferClass::Display: return EncodeSrgb(l);
        case TransferClass::Pq: return EncodePq(l);
        case TransferClass::Hlg: return EncodeHlg(l);
        case TransferClass::Other: break;
    }
    if (transfer == ColorTransfer::Log || transfer == ColorTransfer::LogSqrt) {
        return l <= 0 ? 0 : std::max(0.0, 1 + std::log10(l) / LogDecades(transfer));
    }
    if (transfer == kSmpteSt428) return std::pow(l / kSt428Scale, 1 / 2.6);
    return std::pow(l, 1 / GammaOf(transfer));
}

PrimarySet GetPrimarySet(ColorPrimaries primaries) {
    switch (primaries) {
        case ColorPrimaries::BT470M: return {{{{0.67, 0.33}, {0.21, 0.71}, {0.14, 0.08}}}, kIlluminantC};
        case ColorPrimaries::BT470BG: return {{{{0.64, 0.33}, {0.29, 0.60}, {0.15, 0.06}}}, kD65};
        case ColorPrimaries::SMPTE170M:
        case ColorPrimaries::SMPTE240M: return {{{{0.630, 0.340}, {0.310, 0.595}, {0.155, 0.070}}}, kD65};
        case ColorPrimaries::Film: return {{{{0.681, 0.319}, {0.243, 0.692}, {0.145, 0.049}}}, kIlluminantC};
        case ColorPrimaries::BT2020: return {{{{0.708, 0.292}, {0.170, 0.797}, {0.131, 0.046}}}, kD65};
        case ColorPrimaries::SMPTEST428: return {{{{1, 0}, {0, 1}, {0, 0}}}, {1.0 / 3, 1.0 / 3}};
        case ColorPrimaries::SMPTEST431:
            return {{{{0.680, 0.320}, {0.265, 0.690}, {0.150, 0.060}}}, {0.314, 0.351}};
        case ColorPrimaries::SMPTEST432: return {{{{0.680, 0.320}, {0.265, 0.690}, {0.150, 0.060}}}, kD65};
        case ColorPrimaries::JEDECP22: return {{{{0.630, 0.340}, {0.295, 0.605}, {0.155, 0.077}}}, kD65};
        default: return {{{{0.640, 0.330}, {0.300, 0.600}, {0.150, 0.060}}}, kD65};
    }
}

bool IsSamePrimaries(ColorPrimaries first, ColorPrimaries second) {
    return GetPrimarySet(first) == GetPrimarySet(second);
}

Matrix3 MakePrimariesMatrix(ColorPrimaries from, ColorPrimaries to) {
    if (IsSamePrimaries(from, to)) return {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    const PrimarySet source = GetPrimarySet(from);
    const PrimarySet target = GetPrimarySet(to);
    return Multiply(Invert(RgbToXyz(target)),
                    Multiply(AdaptWhite(source.white, target.white), RgbToXyz(source)));
}

Rgb GetLuminanceWeights(ColorPrimaries primaries) {
    return RgbToXyz(GetPrimarySet(primaries))[1];
}

LumaWeights GetLumaWeights(ColorMatrix matrix) {
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

CodeMap MakeRgbToCodes(ColorMatrix matrix, ColorRange range, int bits) {
    const double step = 1 << (bits - 8);
    const double top = (1 << bits) - 1;
    const bool full = range == ColorRange::Full;
    const double lumaScale = full ? top : 219 * step;
    const double chromaScale = full ? top : 224 * step;
    const double black = full ? 0 : 16 * step;
    const double middle = 128 * step;
    if (matrix == ColorMatrix::RGB) {
        return {{{{0, lumaScale, 0}, {0, 0, lumaScale}, {lumaScale, 0, 0}}}, {black, black, black}};
    }
    Matrix3 shape{{{0.25, 0.5, 0.25}, {-0.25, 0.5, -0.25}, {0.5, 0, -0.5}}};  // Y, Cg, Co
    if (matrix != ColorMatrix::YCoCg) {
        const auto [red, blue] = GetLumaWeights(matrix);
        const double green = 1 - red - blue;
        const double cb = 2 * (1 - blue);
        const double cr = 2 * (1 - red);
        shape = {{{red, green, blue},
                  {-red / cb, -green / cb, (1 - blue) / cb},
                  {(1 - red) / cr, -green / cr, -blue / cr}}};
    }
    CodeMap map{shape, {black, middle, middle}};
    for (size_t i = 0; i < 3; ++i) {
        for (double& value : map.factor[i]) value *= i == 0 ? lumaScale : chromaScale;
    }
    return map;
}

CodeMap MakeCodesToRgb(ColorMatrix matrix, ColorRange range, int bits) {
    const CodeMap back = MakeRgbToCodes(matrix, range, bits);
    CodeMap map{Invert(back.factor), {}};
    const Rgb offset = Multiply(map.factor, back.offset);
    for (size_t i = 0; i < 3; ++i) map.offset[i] = -offset[i];
    return map;
}

double ToneCurve::GetKneePq() const {
    if (IsIdentity()) return sourcePeakPq;
    return std::max(1.5 * displayPeakPq - 0.5 * sourcePeakPq, 0.0);
}

double ToneCurve::Apply(double pq) const {
    if (IsIdentity()) return std::min(pq, sourcePeakPq);
    const double maximum = displayPeakPq / sourcePeakPq;
    const double knee = GetKneePq() / sourcePeakPq;
    const double value = std::min(pq / sourcePeakPq, 1.0);
    if (value <= knee) return pq;
    const double t = (value - knee) / (1 - knee);
    const double t2 = t * t;
    const double t3 = t2 * t;
    const double mapped =
        (2 * t3 - 3 * t2 + 1) * knee + (t3 - 2 * t2 + t) * (1 - knee) + (3 * t2 - 2 * t3) * maximum;
    return mapped * sourcePeakPq;
}

double ToneCurve::GetGain(double pq) const {
    if (pq <= GetKneePq() || pq <= 0) return 1;
    return DecodePq(Apply(pq)) / DecodePq(std::min(pq, 1.0));
}

ToneCurve MakeToneCurve(const ColorSpace& source) {
    double peak = kHlgPeakNits;
    if (GetTransferClass(source.GetTransfer()) == TransferClass::Pq) {
        peak = kDefaultMasteringPeakNits;
        if (const auto& metadata = source.GetHDRMetadata()) {
            if (metadata->maxMasteringLuminanceNits > 0) peak = metadata->maxMasteringLuminanceNits;
            if (metadata->maxContentLightLevelNits > 0) peak = metadata->maxContentLightLevelNits;
        }
    }
    // A peak below white says nothing about where white lies.
    peak = std::clamp(peak, kSdrWhiteNits, kPqPeakNits);
    return {EncodePq(peak / kPqPeakNits), EncodePq(kSdrWhiteNits / kPqPeakNits)};
}

ExactTransfer::ExactTransfer(const ColorSpace& source, const ColorSpace& target)
    : from_(source.GetTransfer()),
      to_(target.GetTransfer()),
      primaries_(MakePrimariesMatrix(source.GetPrimaries(), target.GetPrimaries())),
      sourceWeights_(GetLuminanceWeights(source.GetPrimaries())),
      targetWeights_(GetLuminanceWeights(target.GetPrimaries())),
      tone_(MakeToneCurve(source)) {
    const auto isHdr = [](ColorTransfer transfer) {
        const TransferClass type = GetTransferClass(transfer);
        return type == TransferClass::Pq || type == TransferClass::Hlg;
    };
    toneMapped_ = isHdr(from_) && !isHdr(to_);
}

Rgb ExactTransfer::ToDisplayLight(const Rgb& encoded) const {
    const TransferClass type = GetTransferClass(from_);
    // Above the source's peak there is nothing left to show.
    const double top = type == TransferClass::Pq && toneMapped_ ? tone_.sourcePeakPq : 1;
    Rgb light{};
    for (size_t i = 0; i < 3; ++i) light[i] = Decode(from_, std::min(encoded[i], top));
    double scale = 1;
    if (type == TransferClass::Pq) scale = kPqPeakNits / kSdrWhiteNits;
    if (type == TransferClass::Hlg) {
        const double scene =
            sourceWeights_[0] * light[0] + sourceWeights_[1] * light[1] + sourceWeights_[2] * light[2];
        scale = kHlgPeakNits / kSdrWhiteNits * std::pow(std::max(scene, 0.0), kHlgSystemGamma - 1);
    }
    for (double& component : light) component *= scale;
    return light;
}

Rgb ExactTransfer::Convert(const Rgb& encoded) const {
    Rgb light = ToDisplayLight(encoded);
    if (toneMapped_) {
        const double largest = std::max({light[0], light[1], light[2]});
        const double gain =
            tone_.GetGain(EncodePq(std::clamp(largest * kSdrWhiteNits / kPqPeakNits, 0.0, 1.0)));
        for (double& component : light) component *= gain;
    }
    light = Multiply(primaries_, light);
    const double lowest = std::min({light[0], light[1], light[2]});
    if (lowest < 0) {
        const double grey =
            targetWeights_[0] * light[0] + targetWeights_[1] * light[1] + targetWeights_[2] * light[2];
        for (double& component : light) component = grey + (component - grey) * grey / (grey - lowest);
    }
    const TransferClass type = GetTransferClass(to_);
    const double ceiling = type == TransferClass::Pq    ? kPqPeakNits / kSdrWhiteNits
                           : type == TransferClass::Hlg ? kHlgPeakNits / kSdrWhiteNits
                                                        : 1;
    const double highest = std::max({light[0], light[1], light[2], ceiling});
    for (double& component : light) component /= highest;
    if (type == TransferClass::Hlg) {
        const double grey =
            targetWeights_[0] * light[0] + targetWeights_[1] * light[1] + targetWeights_[2] * light[2];
        const double scene = grey > 0 ? std::pow(grey, (1 - kHlgSystemGamma) / kHlgSystemGamma) : 0;
        for (double& component : light) component *= scene;
    }
    Rgb out{};
    for (size_t i = 0; i < 3; ++i) out[i] = Encode(to_, light[i]);
    return out;
}

}  // namespace Corvanta::Engine
