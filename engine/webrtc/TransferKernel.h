// The arithmetic on rows of pixels, written once over "lanes": a vector type with its operations. Included by
// one file per vector type; the functions are templates on that type, so that code for one kind of machine
// never stands in for another's. See TransferKernels.h for what each function does.
#pragma once

#include <cstddef>
#include <cstdint>

#include "engine/webrtc/TransferKernels.h"
#include "engine/webrtc/TransferPlan.h"

namespace Corvanta::Engine {

template <typename Lanes>
struct TransferKernel {
    using Float = typename Lanes::Float;

    // Whole vectors are read.
    template <typename Sample, bool kHalfChroma>
    static void LoadPlanes(const FloatMap& map, const Sample* y, const Sample* u, const Sample* v, RgbRow row,
                           int count) {
        // All matrices but YCgCo leave the second plane out of red and the third out of blue.
        if (map.factor[0][1] == 0 && map.factor[2][2] == 0) {
            LoadPlanesAs<Sample, kHalfChroma, true>(map, y, u, v, row, count);
        } else {
            LoadPlanesAs<Sample, kHalfChroma, false>(map, y, u, v, row, count);
        }
    }

    // Whole vectors are read.
    static void LoadPacked(float scale, float offset, const uint8_t* pixels, RgbRow row, int count) {
        const Float a = Lanes::Set(scale);
        const Float b = Lanes::Set(offset);
        for (int x = 0; x < count; x += Lanes::kCount) {
            const auto pixel = Lanes::LoadPixels(pixels + 4 * static_cast<ptrdiff_t>(x));
            Lanes::Store(row.blue + x, Lanes::MulAdd(Lanes::template Byte<0>(pixel), a, b));
            Lanes::Store(row.green + x, Lanes::MulAdd(Lanes::template Byte<1>(pixel), a, b));
            Lanes::Store(row.red + x, Lanes::MulAdd(Lanes::template Byte<2>(pixel), a, b));
        }
    }

    // Whole vectors are written, here and below.
    static void StorePacked(RgbRow row, uint8_t* pixels, int count) {
        const Float top = Lanes::Set(255);
        const auto byte = [top](const float* part) {
            return Lanes::Min(Lanes::Max(Lanes::Mul(Lanes::Load(part), top), Lanes::Set(0)), top);
        };
        for (int x = 0; x < count; x += Lanes::kCount) {
            Lanes::StorePixels(pixels + 4 * static_cast<ptrdiff_t>(x), byte(row.red + x), byte(row.green + x),
                               byte(row.blue + x));
        }
    }

    template <typename Sample>
    static void StorePlane(const FloatMap& map, int plane, int top, RgbRow row, Sample* out, int count) {
        const Sum sum(map.factor[plane], map.offset[plane]);
        for (int x = 0; x < count; x += Lanes::kCount) {
            Lanes::StoreSamples(out + x, sum.Of(LoadColour(row, x)), top);
        }
    }

    template <typename Sample>
    static void StoreHalfChroma(const FloatMap& map, int top, RgbRow upper, RgbRow lower, Sample* u,
                                Sample* v, int count) {
        FloatMap mean = map;
        for (int i = 0; i < 3; ++i) {
            for (int j = 0; j < 3; ++j) mean.factor[i][j] *= 0.25F;
        }
        const Sum second(mean.factor[1], mean.offset[1]);
        const Sum third(mean.factor[2], mean.offset[2]);
        const auto sum = [](const float* above, const float* below, int x) {
            const Float left = Lanes::Add(Lanes::Load(above + x), Lanes::Load(below + x));
            const Float right =
                Lanes::Add(Lanes::Load(above + x + Lanes::kCount), Lanes::Load(below + x + Lanes::kCount));
            return Lanes::AddPairs(left, right);
        };
        for (int x = 0; x < count; x += 2 * Lanes::kCount) {
            const Colour c{sum(upper.red, lower.red, x), sum(upper.green, lower.green, x),
                           sum(upper.blue, lower.blue, x)};
            Lanes::StoreSamples(u + x / 2, second.Of(c), top);
            Lanes::StoreSamples(v + x / 2, third.Of(c), top);
        }
    }

    static void Convert(const TransferPlan& plan, RgbRow row, RgbRow scratch, int count) {
        using Light = TransferPlan::Light;
        switch (plan.light) {
            case Light::Same: return;
            case Light::Display: ConvertFrom<Light::Display>(plan, row, scratch, count); return;
            case Light::Pq: ConvertFrom<Light::Pq>(plan, row, scratch, count); return;
            case Light::Hlg: ConvertFrom<Light::Hlg>(plan, row, scratch, count); return;
        }
    }

private:
    // Rows are passed by value and a plan's constants are read before a loop: a store of floats might change
    // what lives behind a reference, so it would be read again for each vector.
    struct Colour {
        Float red, green, blue;
    };

    template <typename Function>
    static Colour ForEach(const Colour& c, Function function) {
        return {function(c.red), function(c.green), function(c.blue)};
    }

    static Colour Scale(const Colour& c, Float factor) {
        return {Lanes::Mul(c.red, factor), Lanes::Mul(c.green, factor), Lanes::Mul(c.blue, factor)};
    }

    static Colour Square(const Colour& c) {
        return {Lanes::Mul(c.red, c.red), Lanes::Mul(c.green, c.green), Lanes::Mul(c.blue, c.blue)};
    }

    static Float Largest(const Colour& c) { return Lanes::Max(c.red, Lanes::Max(c.green, c.blue)); }

    static Colour LoadColour(RgbRow row, int x) {
        return {Lanes::Load(row.red + x), Lanes::Load(row.green + x), Lanes::Load(row.blue + x)};
    }

    static void StoreColour(const Colour& c, RgbRow row, int x) {
        Lanes::Store(row.red + x, c.red);
        Lanes::Store(row.green + x, c.green);
        Lanes::Store(row.blue + x, c.blue);
    }

    // weights * colour + offset.
    struct Sum {
        explicit Sum(const float* weights, float constant = 0)
            : first(Lanes::Set(weights[0])),
              second(Lanes::Set(weights[1])),
              third(Lanes::Set(weights[2])),
              offset(Lanes::Set(constant)) {}
        Float Of(Float a, Float b, Float c) const {
            return Lanes::MulAdd(first, a, Lanes::MulAdd(second, b, Lanes::MulAdd(third, c, offset)));
        }
        Float Of(const Colour& c) const { return Of(c.red, c.green, c.blue); }
        Float WithoutSecond(Float a, Float c) const {
            return Lanes::MulAdd(first, a, Lanes::MulAdd(third, c, offset));
        }
        Float WithoutThird(Float a, Float b) const {
            return Lanes::MulAdd(first, a, Lanes::MulAdd(second, b, offset));
        }
        Float first, second, third, offset;
    };

    struct Curve {
        explicit Curve(const Segments& segments)
            : terms{Lanes::LoadEight(segments.coefficients[0]), Lanes::LoadEight(segments.coefficients[1]),
                    Lanes::LoadEight(segments.coefficients[2]), Lanes::LoadEight(segments.coefficients[3])},
              scale(Lanes::Set(segments.scale)),
              offset(Lanes::Set(segments.offset)),
              shift(Lanes::MakeShift(segments.shift)) {}
        Float At(Float z) const {
            const auto interval = Lanes::ShiftBits(z, shift);
            Float y = Lanes::Select8(terms[3], interval);
            y = Lanes::MulAdd(y, z, Lanes::Select8(terms[2], interval));
            y = Lanes::MulAdd(y, z, Lanes::Select8(terms[1], interval));
            return Lanes::MulAdd(y, z, Lanes::Select8(terms[0], interval));
        }
        Float Place(Float x) const { return Lanes::MulAdd(x, scale, offset); }
        typename Lanes::Eight terms[4];
        Float scale, offset;
        typename Lanes::Shift shift;
    };

    // The entry nearest to position 0 to 1.
    struct Reader {
        explicit Reader(const Table& table)
            : entries(table.entries.get()), last(Lanes::Set(table.lastIndex)), half(Lanes::Set(0.5F)) {}
        Float At(Float position) const {
            return Lanes::Gather(entries,
                                 Lanes::Truncate(Lanes::Min(Lanes::MulAdd(position, last, half), last)));
        }
        const float* entries;
        Float last, half;
    };

    template <typename Sample, bool kHalfChroma, bool kSparse>
    static void LoadPlanesAs(const FloatMap& map, const Sample* y, const Sample* u, const Sample* v,
                             RgbRow row, int count) {
        const Sum red(map.factor[0], map.offset[0]);
        const Sum green(map.factor[1], map.offset[1]);
        const Sum blue(map.factor[2], map.offset[2]);
        for (int x = 0; x < count; x += Lanes::kCount) {
            const Float luma = Lanes::LoadSamples(y + x);
            const Float second = kHalfChroma ? Lanes::LoadSamplesTwice(u + x / 2) : Lanes::LoadSamples(u + x);
            const Float third = kHalfChroma ? Lanes::LoadSamplesTwice(v + x / 2) : Lanes::LoadSamples(v + x);
            const Float r = kSparse ? red.WithoutSecond(luma, third) : red.Of(luma, second, third);
            const Float b = kSparse ? blue.WithoutThird(luma, second) : blue.Of(luma, second, third);
            StoreColour({r, green.Of(luma, second, third), b}, row, x);
        }
    }

    // A row of one component to light, or for Pq and Hlg to its square root.
    template <TransferPlan::Light kLight>
    static void Decode(const TransferPlan& plan, const float* values, float* light, int count) {
        const Float low = Lanes::Set(plan.inputLow);
        const Float high = Lanes::Set(plan.inputHigh);
        const auto run = [&](const auto& curve) {
            for (int x = 0; x < count; x += Lanes::kCount) {
                Lanes::Store(light + x, curve.At(Lanes::ClampPositive(Lanes::Load(values + x), low, high)));
            }
        };
        if constexpr (kLight != TransferPlan::Light::Pq) {
            run(Curve(plan.decode));
        } else if (plan.pqTable.entries != nullptr) {
            run(Reader(plan.pqTable));
        } else {
            run(PqPolynomial(plan.pqDecode));
        }
    }

    struct PqPolynomial {
        explicit PqPolynomial(const float* powers) {
            for (int k = 0; k < TransferPlan::kPqTerms; ++k) terms[k] = Lanes::Set(powers[k]);
        }
        Float At(Float v) const {
            Float y = terms[TransferPlan::kPqTerms - 1];
            for (int k = TransferPlan::kPqTerms - 2; k >= 0; --k) y = Lanes::MulAdd(y, v, terms[k]);
            return y;
        }
        Float terms[TransferPlan::kPqTerms];
    };

    // Factor on light by where the components stand on the way to the peak, which they may exceed.
    struct Tone {
        explicit Tone(const TransferPlan& plan) : knee(Lanes::Set(plan.knee)), gain(plan.toneGain) {}
        bool IsNeeded(const Colour& place) const {
            return Lanes::AnyAbove(place.red, place.green, place.blue, knee);
        }
        Float GetGain(const Colour& place) const {
            const Float one = Lanes::Set(1);
            return gain.At(Lanes::Max(gain.Place(Lanes::Min(Largest(place), one)), one));
        }
        Float knee;
        Curve gain;
    };

    // v is what light was decoded from; both are square roots of light, before and after.
    static void ToneMapPq(const TransferPlan& plan, RgbRow v, RgbRow light, int count) {
        const Tone tone(plan);
        for (int x = 0; x < count; x += Lanes::kCount) {
            const Colour place = LoadColour(v, x);
            if (tone.IsNeeded(place)) StoreColour(Scale(LoadColour(light, x), tone.GetGain(place)), light, x);
        }
    }

    // From the square root of scene light to light of the display.
    static void FinishHlg(const TransferPlan& plan, RgbRow light, int count) {
        const Tone tone(plan);
        const Sum luminance(plan.sourceWeights);
        const Curve ootf(plan.ootfGain);
        const Float ofPeak = Lanes::Set(1 / plan.hlgPeak);
        const bool toneMapped = plan.toneMapped;
        for (int x = 0; x < count; x += Lanes::kCount) {
            const Colour scene = Square(LoadColour(light, x));
            const Float root = Lanes::SquareRoot(Lanes::SquareRoot(luminance.Of(scene)));
            Colour shown = Scale(scene, ootf.At(ootf.Place(root)));
            if (toneMapped) {
                const Colour place =
                    ForEach(shown, [&](Float part) { return Lanes::SquareRoot(Lanes::Mul(part, ofPeak)); });
                if (tone.IsNeeded(place)) shown = Scale(shown, tone.GetGain(place));
            }
            StoreColour(shown, light, x);
        }
    }

    // Light (for Pq its square root) to z in the target's primaries.
    template <TransferPlan::Light kLight>
    static void Mix(const TransferPlan& plan, RgbRow light, RgbRow row, int count) {
        const Sum red(plan.primaries[0], plan.lightOffset);
        const Sum green(plan.primaries[1], plan.lightOffset);
        const Sum blue(plan.primaries[2], plan.lightOffset);
        for (int x = 0; x < count; x += Lanes::kCount) {
            Colour c = LoadColour(light, x);
            if constexpr (kLight == TransferPlan::Light::Pq) c = Square(c);
            StoreColour({red.Of(c), green.Of(c), blue.Of(c)}, row, x);
        }
    }

    // Into the range from black to the target's peak: colours below black move towards the grey of their
    // luminance, colours above the peak are scaled down.
    static void FitGamut(const TransferPlan& plan, RgbRow row, int count) {
        const Float black = Lanes::Set(plan.lightOffset);
        const Float top = Lanes::Set(plan.lightOffset + plan.lightScale);
        const Float peak = Lanes::Set(plan.lightScale);
        const Float tiny = Lanes::Set(1e-9F);
        const Sum luminance(plan.targetWeights);
        for (int x = 0; x < count; x += Lanes::kCount) {
            Colour z = LoadColour(row, x);
            if (Lanes::AnyBelow(z.red, z.green, z.blue, black)) {
                const Float lowest = Lanes::Min(Lanes::Min(z.red, z.green), Lanes::Min(z.blue, black));
                const Float grey = luminance.Of(z);
                const Float height = Lanes::Max(Lanes::Sub(grey, black), tiny);
                const Float keep = Lanes::Div(height, Lanes::Add(height, Lanes::Sub(black, lowest)));
                const Float rest = Lanes::NegMulAdd(grey, keep, grey);
                z = ForEach(z, [&](Float part) { return Lanes::MulAdd(part, keep, rest); });
                StoreColour(z, row, x);
            }
            if (Lanes::AnyAbove(z.red, z.green, z.blue, top)) {
                const Float factor = Lanes::Div(peak, Lanes::Max(Lanes::Sub(Largest(z), black), peak));
                const Float rest = Lanes::NegMulAdd(black, factor, black);
                StoreColour(ForEach(z, [&](Float part) { return Lanes::MulAdd(part, factor, rest); }), row,
                            x);
            }
        }
    }

    // From light of the display to light of the scene.
    static void InvertHlgOotf(const TransferPlan& plan, RgbRow row, int count) {
        const Sum luminance(plan.targetWeights);
        const Reader gain(plan.inverseOotf);
        const Float zero = Lanes::Set(0);
        for (int x = 0; x < count; x += Lanes::kCount) {
            const Colour shown = LoadColour(row, x);
            const Float root = Lanes::SquareRoot(Lanes::Max(luminance.Of(shown), zero));
            StoreColour(Scale(shown, gain.At(root)), row, x);
        }
    }

    // A row of one component from z to encoded values, in place.
    static void Encode(const TransferPlan& plan, float* part, int count) {
        if (plan.target == TransferPlan::Target::Display) {
            const Curve curve(plan.encode);
            for (int x = 0; x < count; x += Lanes::kCount)
                Lanes::Store(part + x, curve.At(Lanes::Load(part + x)));
            return;
        }
        const Reader table(plan.encodeTable);
        const Float zero = Lanes::Set(0);
        for (int x = 0; x < count; x += Lanes::kCount) {
            const Float light = Lanes::Max(Lanes::Load(part + x), zero);
            Lanes::Store(part + x, table.At(Lanes::SquareRoot(Lanes::SquareRoot(light))));
        }
    }

    // In several short passes, each with no more constants than there are registers and with many pixels in
    // flight.
    template <TransferPlan::Light kLight>
    static void ConvertFrom(const TransferPlan& plan, RgbRow row, RgbRow light, int count) {
        Decode<kLight>(plan, row.red, light.red, count);
        Decode<kLight>(plan, row.green, light.green, count);
        Decode<kLight>(plan, row.blue, light.blue, count);
        if (kLight == TransferPlan::Light::Pq && plan.toneMapped) ToneMapPq(plan, row, light, count);
        if (kLight == TransferPlan::Light::Hlg) FinishHlg(plan, light, count);
        Mix<kLight>(plan, light, row, count);
        FitGamut(plan, row, count);
        if (plan.target == TransferPlan::Target::Hlg) InvertHlgOotf(plan, row, count);
        Encode(plan, row.red, count);
        Encode(plan, row.green, count);
        Encode(plan, row.blue, count);
    }
};

template <typename Lanes>
constexpr TransferKernels MakeTransferKernels() {
    using Kernel = TransferKernel<Lanes>;
    return {&Kernel::template LoadPlanes<uint8_t, true>,
            &Kernel::template LoadPlanes<uint8_t, false>,
            &Kernel::template LoadPlanes<uint16_t, true>,
            &Kernel::template LoadPlanes<uint16_t, false>,
            &Kernel::LoadPacked,
            &Kernel::Convert,
            &Kernel::template StorePlane<uint8_t>,
            &Kernel::template StorePlane<uint16_t>,
            &Kernel::template StoreHalfChroma<uint8_t>,
            &Kernel::template StoreHalfChroma<uint16_t>,
            &Kernel::StorePacked};
}

}  // namespace Corvanta::Engine
