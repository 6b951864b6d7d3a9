// Compiled with the instructions of AVX2 and FMA switched on for the whole file. So nothing here may call an
// inline function that other files share: the linker could hand them this file's copy on a machine without
// AVX2.
#include "engine/webrtc/TransferKernel.h"
#include "engine/webrtc/TransferKernels.h"

#if defined(__AVX2__) && defined(__FMA__)

#include <immintrin.h>

namespace Corvanta::Engine {

namespace {

struct EightLanes {
    using Float = __m256;
    using Eight = __m256;
    using Shift = __m128i;
    static constexpr int kCount = 8;

    static Float Set(float value) { return _mm256_set1_ps(value); }
    static Float Load(const float* from) { return _mm256_load_ps(from); }
    static void Store(float* to, Float value) { _mm256_store_ps(to, value); }

    static Float LoadSamples(const uint16_t* from) {
        return _mm256_cvtepi32_ps(
            _mm256_cvtepu16_epi32(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from))));
    }
    static Float LoadSamples(const uint8_t* from) {
        return _mm256_cvtepi32_ps(
            _mm256_cvtepu8_epi32(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(from))));
    }
    static Float LoadSamplesTwice(const uint16_t* from) {
        const __m128i samples = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(from));
        return _mm256_cvtepi32_ps(_mm256_cvtepu16_epi32(_mm_unpacklo_epi16(samples, samples)));
    }
    static Float LoadSamplesTwice(const uint8_t* from) {
        const __m128i samples = _mm_loadu_si32(from);
        return _mm256_cvtepi32_ps(_mm256_cvtepu8_epi32(_mm_unpacklo_epi8(samples, samples)));
    }
    static void StoreSamples(uint16_t* to, Float value, int top) {
        _mm_storeu_si128(reinterpret_cast<__m128i*>(to), ToWords(value, top));
    }
    static void StoreSamples(uint8_t* to, Float value, int top) {
        const __m128i words = ToWords(value, top);
        _mm_storel_epi64(reinterpret_cast<__m128i*>(to), _mm_packus_epi16(words, words));
    }
    static __m256i LoadPixels(const uint8_t* from) {
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(from));
    }
    template <int kByte>
    static Float Byte(__m256i pixels) {
        return _mm256_cvtepi32_ps(
            _mm256_and_si256(_mm256_srli_epi32(pixels, 8 * kByte), _mm256_set1_epi32(255)));
    }
    static void StorePixels(uint8_t* to, Float red, Float green, Float blue) {
        const __m256i pixels = _mm256_or_si256(
            _mm256_or_si256(_mm256_cvtps_epi32(blue), _mm256_slli_epi32(_mm256_cvtps_epi32(green), 8)),
            _mm256_or_si256(_mm256_slli_epi32(_mm256_cvtps_epi32(red), 16),
                            _mm256_slli_epi32(_mm256_set1_epi32(255), 24)));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(to), pixels);
    }

    static Float Add(Float a, Float b) { return _mm256_add_ps(a, b); }
    static Float Sub(Float a, Float b) { return _mm256_sub_ps(a, b); }
    static Float Mul(Float a, Float b) { return _mm256_mul_ps(a, b); }
    static Float Div(Float a, Float b) { return _mm256_div_ps(a, b); }
    static Float MulAdd(Float a, Float b, Float c) { return _mm256_fmadd_ps(a, b, c); }
    static Float NegMulAdd(Float a, Float b, Float c) { return _mm256_fnmadd_ps(a, b, c); }
    static Float Min(Float a, Float b) { return _mm256_min_ps(a, b); }
    static Float Max(Float a, Float b) { return _mm256_max_ps(a, b); }
    static Float SquareRoot(Float a) { return _mm256_sqrt_ps(a); }
    // Sums of neighbours, those of `first` before those of `second`.
    static Float AddPairs(Float first, Float second) {
        const __m256d sums = _mm256_castps_pd(_mm256_hadd_ps(first, second));
        return _mm256_castpd_ps(_mm256_permute4x64_pd(sums, 0b11011000));
    }
    // Floats that are not negative are ordered as their bits are as integers, and negative ones lie below
    // them. Integer comparisons leave the multipliers alone, which are what these loops are short of.
    static Float ClampPositive(Float a, Float low, Float high) {
        return _mm256_castsi256_ps(_mm256_min_epi32(
            _mm256_max_epi32(_mm256_castps_si256(a), _mm256_castps_si256(low)), _mm256_castps_si256(high)));
    }
    static bool AnyAbove(Float a, Float b, Float c, Float limit) {
        const __m256i bits = _mm256_castps_si256(limit);
        return AnyTrue(_mm256_cmpgt_epi32(_mm256_castps_si256(a), bits),
                       _mm256_cmpgt_epi32(_mm256_castps_si256(b), bits),
                       _mm256_cmpgt_epi32(_mm256_castps_si256(c), bits));
    }
    static bool AnyBelow(Float a, Float b, Float c, Float limit) {
        const __m256i bits = _mm256_castps_si256(limit);
        return AnyTrue(_mm256_cmpgt_epi32(bits, _mm256_castps_si256(a)),
                       _mm256_cmpgt_epi32(bits, _mm256_castps_si256(b)),
                       _mm256_cmpgt_epi32(bits, _mm256_castps_si256(c)));
    }
    static Shift MakeShift(int shift) { return _mm_cvtsi32_si128(shift); }
    static __m256i ShiftBits(Float a, Shift shift) { return _mm256_srl_epi32(_mm256_castps_si256(a), shift); }
    static Eight LoadEight(const float* values) { return _mm256_load_ps(values); }
    // The permutation looks at the lowest three bits of each index.
    static Float Select8(Eight values, __m256i index) { return _mm256_permutevar8x32_ps(values, index); }
    static __m256i Truncate(Float a) { return _mm256_cvttps_epi32(a); }
    static Float Gather(const float* values, __m256i index) { return _mm256_i32gather_ps(values, index, 4); }

private:
    static bool AnyTrue(__m256i a, __m256i b, __m256i c) {
        return _mm256_movemask_ps(_mm256_castsi256_ps(_mm256_or_si256(_mm256_or_si256(a, b), c))) != 0;
    }
    static __m128i ToWords(Float value, int top) {
        const __m256i codes = _mm256_cvtps_epi32(value);
        const __m128i words =
            _mm_packus_epi32(_mm256_castsi256_si128(codes), _mm256_extracti128_si256(codes, 1));
        return _mm_min_epu16(words, _mm_set1_epi16(static_cast<int16_t>(top)));
    }
};

constexpr TransferKernels kAvx2 = MakeTransferKernels<EightLanes>();

}  // namespace

}  // namespace Corvanta::Engine

#endif

namespace Corvanta::Engine {

const TransferKernels* GetAvx2Kernels() {
#if defined(__AVX2__) && defined(__FMA__)
    return &kAvx2;
#else
    return nullptr;
#endif
}

}  // namespace Corvanta::Engine
