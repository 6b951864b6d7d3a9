#include "engine/webrtc/TransferPlan.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cassert>
#include <cmath>
#include <functional>

namespace Corvanta::Engine {

namespace {

using Curve = std::function<double(double)>;

constexpr int kEighths = 20;
constexpr int kOctaves = 23;

// Powers of x of the polynomial through points (x, d), by Newton's divided differences.
template <size_t kTerms>
std::array<double, kTerms> Expand(const std::array<double, kTerms>& x, std::array<double, kTerms> d) {
    for (size_t order = 1; order < kTerms; ++order) {
        for (size_t i = kTerms - 1; i >= order; --i) d[i] = (d[i] - d[i - 1]) / (x[i] - x[i - order]);
    }
    std::array<double, kTerms> power{d[kTerms - 1]};
    for (size_t i = kTerms - 1; i-- > 0;) {
        for (size_t k = kTerms - 1; k > 0; --k) power[k] = power[k - 1] - x[i] * power[k];
        power[0] = d[i] - x[i] * power[0];
    }
    return power;
}

std::array<double, 4> FitCubic(const Curve& curve, double low, double high) {
    const double width = high - low;
    const std::array<double, 4> x{low, low + width / 4, high - width / 4, high};
    return Expand<4>(x, {curve(x[0]), curve(x[1]), curve(x[2]), curve(x[3])});
}

// Through the curve's Chebyshev points on 0 to 1.
template <size_t kTerms>
std::array<double, kTerms> FitPolynomial(const Curve& curve) {
    constexpr double kPi = 3.14159265358979323846;
    std::array<double, kTerms> x{};
    std::array<double, kTerms> d{};
    for (size_t i = 0; i < kTerms; ++i) {
        x[i] = (1 - std::cos(kPi * (static_cast<double>(i) + 0.5) / kTerms)) / 2;
        d[i] = curve(x[i]);
    }
    return Expand(x, d);
}

// A curve on x from 0 to 1. Neighbouring cubics share the point where they meet.
Segments MakeSegments(const Curve& curve, double scale, double offset, int shift) {
    Segments segments;
    segments.scale = static_cast<float>(scale);
    segments.offset = static_cast<float>(offset);
    segments.shift = shift;
    const auto intervalOf = [shift](float z) { return std::bit_cast<uint32_t>(z) >> shift; };
    const uint32_t first = intervalOf(segments.offset);
    const uint32_t last = intervalOf(segments.offset + segments.scale);
    assert(last - first < 8);
    const auto curveOfZ = [&](double z) { return curve(std::clamp((z - offset) / scale, 0.0, 1.0)); };
    for (uint32_t interval = first; interval <= last; ++interval) {
        const auto border = [&](uint32_t at) {
            return std::clamp<double>(static_cast<double>(std::bit_cast<float>(at << shift)), offset,
                                      offset + scale);
        };
        const auto power = FitCubic(curveOfZ, border(interval), border(interval + 1));
        for (size_t k = 0; k < 4; ++k) segments.coefficients[k][interval & 7] = static_cast<float>(power[k]);
    }
    return segments;
}

// Rounding must not lift a z to 2, where the last eighth ends.
constexpr double kBelowOne = 0.999999;

Segments MakeEighths(const Curve& curve) {
    return MakeSegments(curve, kBelowOne, 1, kEighths);
}

// The first interval ends at x = first, the next ones are each twice as wide as the one before. The offset is
// a shade above the octave's border, so that a black with a rounding error stays above it.
Segments MakeOctaves(const Curve& curve, double first) {
    const double octaves = std::ceil(std::log2(1 + 1 / first));
    const double scale = std::exp2(-octaves) / first;
    return MakeSegments(curve, scale, first * scale * 1.001, kOctaves);
}

Table MakeTable(const Curve& curve, size_t size) {
    Table table{std::make_unique<float[]>(size), static_cast<float>(size - 1)};
    for (size_t i = 0; i < size; ++i) {
        table.entries[i] = static_cast<float>(curve(static_cast<double>(i) / static_cast<double>(size - 1)));
    }
    return table;
}

constexpr size_t kGainEntries = 4096;
// Half an entry is a quarter of a 10-bit code where PQ is steepest.
constexpr size_t kCurveEntries = 16384;

// Where sRGB's straight piece ends on the encoded side.
constexpr double kSrgbToe = 0.04045;
// 1/254 leaves eight octaves up to just above 1, and the first one nearly covers sRGB's straight piece of
// light.
constexpr double kFirstLightOctave = 1.0 / 254;

double PeakNits(TransferClass type) {
    switch (type) {
        case TransferClass::Pq: return kPqPeakNits;
        case TransferClass::Hlg: return kHlgPeakNits;
        default: return kSdrWhiteNits;
    }
}

TransferPlan::Target TargetOf(TransferClass type) {
    switch (type) {
        case TransferClass::Pq: return TransferPlan::Target::Pq;
        case TransferClass::Hlg: return TransferPlan::Target::Hlg;
        case TransferClass::Other: return TransferPlan::Target::Other;
        default: return TransferPlan::Target::Display;
    }
}

bool IsHdr(TransferClass type) {
    return type == TransferClass::Pq || type == TransferClass::Hlg;
}

void UseDecode(TransferPlan& plan, const Segments& curve) {
    plan.inputScale = curve.scale;
    plan.inputOffset = curve.offset;
    plan.inputLow = curve.offset;
    plan.inputHigh = curve.offset + curve.scale;
    plan.decode = curve;
}

// `gain` over where the largest component stands, knee to 1.
void UseTone(TransferPlan& plan, double knee, const Curve& gain) {
    plan.knee = static_cast<float>(knee);
    plan.toneGain = MakeEighths([&](double above) { return gain(knee + above * (1 - knee)); });
    const double scale = kBelowOne / (1 - knee);
    plan.toneGain.scale = static_cast<float>(scale);
    plan.toneGain.offset = static_cast<float>(1 - scale * knee);
}

void PlanPq(TransferPlan& plan, const ToneCurve& tone) {
    plan.light = TransferPlan::Light::Pq;
    if (!plan.toneMapped) {
        plan.pqTable = MakeTable([](double v) { return std::sqrt(Decode(ColorTransfer::SMPTEST2084, v)); },
                                 kCurveEntries);
        return;
    }
    const double top = tone.sourcePeakPq;
    plan.inputScale = static_cast<float>(1 / top);
    const auto power = FitPolynomial<TransferPlan::kPqTerms>(
        [top](double v) { return std::sqrt(Decode(ColorTransfer::SMPTEST2084, v * top)); });
    std::transform(power.begin(), power.end(), plan.pqDecode,
                   [](double term) { return static_cast<float>(term); });
    plan.toneMapped = !tone.IsIdentity();
    if (plan.toneMapped) {
        UseTone(plan, tone.GetKneePq() / top, [&](double v) { return std::sqrt(tone.GetGain(v * top)); });
    }
}

void PlanHlg(TransferPlan& plan, const ToneCurve& tone, double targetPeak) {
    plan.light = TransferPlan::Light::Hlg;
    UseDecode(plan, MakeEighths([](double e) { return std::sqrt(Decode(ColorTransfer::ARIB_STD_B67, e)); }));
    const double peak = kHlgPeakNits / targetPeak;
    plan.hlgPeak = static_cast<float>(peak);
    plan.ootfGain = MakeOctaves(
        [peak](double root) { return peak * std::pow(root, 4 * (kHlgSystemGamma - 1)); }, kFirstLightOctave);
    plan.toneMapped = plan.toneMapped && !tone.IsIdentity();
    if (!plan.toneMapped) return;
    const double knee = Decode(ColorTransfer::SMPTEST2084, tone.GetKneePq()) * kPqPeakNits / kHlgPeakNits;
    UseTone(plan, std::sqrt(knee), [&tone](double root) {
        return tone.GetGain(Encode(ColorTransfer::SMPTEST2084, root * root * kHlgPeakNits / kPqPeakNits));
    });
}

void PlanDisplay(TransferPlan& plan, ColorTransfer transfer) {
    plan.light = TransferPlan::Light::Display;
    const auto decode = [transfer](double e) { return Decode(transfer, e); };
    const bool logarithmic = transfer == ColorTransfer::Log || transfer == ColorTransfer::LogSqrt;
    UseDecode(plan, logarithmic ? MakeEighths(decode) : MakeOctaves(decode, kSrgbToe));
}

void PlanTarget(TransferPlan& plan, ColorTransfer transfer) {
    const auto encode = [transfer](double light) { return Encode(transfer, light); };
    if (plan.target == TransferPlan::Target::Display) {
        plan.encode = MakeOctaves(encode, kFirstLightOctave);
        plan.lightScale = plan.encode.scale;
        plan.lightOffset = plan.encode.offset;
        return;
    }
    plan.encodeTable =
        MakeTable([&](double root) { return encode(root * root * root * root); }, kCurveEntries);
    if (plan.target != TransferPlan::Target::Hlg) return;
    plan.inverseOotf = MakeTable(
        [](double root) {
            return std::pow(std::max(root * root, 1e-9), (1 - kHlgSystemGamma) / kHlgSystemGamma);
        },
        kGainEntries);
}

}  // namespace

TransferPlan MakeTransferPlan(const ColorSpace& source, const ColorSpace& target) {
    TransferPlan plan;
    if (IsSamePrimaries(source.GetPrimaries(), target.GetPrimaries()) &&
        IsSameLight(source.GetTransfer(), target.GetTransfer())) {
        return plan;
    }
    const TransferClass from = GetTransferClass(source.GetTransfer());
    const TransferClass to = GetTransferClass(target.GetTransfer());
    plan.target = TargetOf(to);
    plan.toneMapped = IsHdr(from) && !IsHdr(to);
    double unitNits = kSdrWhiteNits;  // of the light that Linearise gives
    if (from == TransferClass::Pq) {
        unitNits = kPqPeakNits;
        PlanPq(plan, MakeToneCurve(source));
    } else if (from == TransferClass::Hlg) {
        unitNits = PeakNits(to);
        PlanHlg(plan, MakeToneCurve(source), unitNits);
    } else {
        PlanDisplay(plan, source.GetTransfer());
    }
    PlanTarget(plan, target.GetTransfer());

    const Matrix3 primaries = MakePrimariesMatrix(source.GetPrimaries(), target.GetPrimaries());
    const Rgb sourceWeights = GetLuminanceWeights(source.GetPrimaries());
    const Rgb targetWeights = GetLuminanceWeights(target.GetPrimaries());
    const double unit = unitNits / PeakNits(to) * static_cast<double>(plan.lightScale);
    for (size_t i = 0; i < 3; ++i) {
        for (size_t j = 0; j < 3; ++j) plan.primaries[i][j] = static_cast<float>(primaries[i][j] * unit);
        plan.sourceWeights[i] = static_cast<float>(sourceWeights[i]);
        plan.targetWeights[i] = static_cast<float>(targetWeights[i]);
    }
    return plan;
}

}  // namespace Corvanta::Engine
