#include "engine/webrtc/TransferKernels.h"

#include <bit>
#include <cmath>

#include "engine/webrtc/TransferKernel.h"

namespace Corvanta::Engine {

namespace {

struct OneLane {
    using Float = float;
    using Eight = const float*;
    using Shift = int;
    static constexpr int kCount = 1;

    static Float Set(float value) { return value; }
    static Float Load(const float* from) { return *from; }
    static void Store(float* to, Float value) { *to = value; }
    template <typename Sample>
    static Float LoadSamples(const Sample* from) {
        return static_cast<float>(*from);
    }
    template <typename Sample>
    static Float LoadSamplesTwice(const Sample* from) {
        return static_cast<float>(*from);
    }
    template <typename Sample>
    static void StoreSamples(Sample* to, Float value, int top) {
        *to = static_cast<Sample>(Min(Max(value + 0.5F, 0), static_cast<float>(top)));
    }
    static uint32_t LoadPixels(const uint8_t* from) {
        return from[0] | uint32_t{from[1]} << 8 | uint32_t{from[2]} << 16;
    }
    template <int kByte>
    static Float Byte(uint32_t pixel) {
        return static_cast<float>(pixel >> (8 * kByte) & 255);
    }
    static void StorePixels(uint8_t* to, Float red, Float green, Float blue) {
        StoreSamples(to + 0, blue, 255);
        StoreSamples(to + 1, green, 255);
        StoreSamples(to + 2, red, 255);
        to[3] = 255;
    }
    static Float Add(Float a, Float b) { return a + b; }
    static Float Sub(Float a, Float b) { return a - b; }
    static Float Mul(Float a, Float b) { return a * b; }
    static Float Div(Float a, Float b) { return a / b; }
    static Float MulAdd(Float a, Float b, Float c) { return a * b + c; }
    static Float NegMulAdd(Float a, Float b, Float c) { return c - a * b; }
    static Float Min(Float a, Float b) { return a < b ? a : b; }
    static Float Max(Float a, Float b) { return a > b ? a : b; }
    static Float SquareRoot(Float a) { return std::sqrt(a); }
    static Float AddPairs(Float first, Float second) { return first + second; }
    static Float ClampPositive(Float a, Float low, Float high) { return Min(Max(a, low), high); }
    static bool AnyAbove(Float a, Float b, Float c, Float limit) {
        return a > limit || b > limit || c > limit;
    }
    static bool AnyBelow(Float a, Float b, Float c, Float limit) {
        return a < limit || b < limit || c < limit;
    }
    static Shift MakeShift(int shift) { return shift; }
    static uint32_t ShiftBits(Float a, Shift shift) { return std::bit_cast<uint32_t>(a) >> shift; }
    static Eight LoadEight(const float* values) { return values; }
    static Float Select8(Eight values, uint32_t index) { return values[index & 7]; }
    static uint32_t Truncate(Float a) { return static_cast<uint32_t>(a); }
    static Float Gather(const float* values, uint32_t index) { return values[index]; }
};

constexpr TransferKernels kPortable = MakeTransferKernels<OneLane>();

const TransferKernels& PickFastest() {
#if defined(__x86_64__) && defined(__GNUC__)
    if (__builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0 &&
        GetAvx2Kernels() != nullptr) {
        return *GetAvx2Kernels();
    }
#endif
    return kPortable;
}

}  // namespace

const TransferKernels& GetTransferKernels(KernelPath path) {
    static const TransferKernels& fastest = PickFastest();
    return path == KernelPath::Fastest ? fastest : kPortable;
}

}  // namespace Corvanta::Engine
