#include "video/FrameConverter.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>

#include "video/YuvMatrix.h"

// The wide loop needs per-function targets and, on Windows, 32-byte stack alignment that g++ does not give.
#if defined(__x86_64__) && defined(__GNUC__) && !defined(_WIN32)
#define CORVANTA_CONVERTER_AVX2 1
#include <immintrin.h>
#endif

namespace Corvanta::Video {

namespace {

// Samples are brought to 16 bits; 10-bit codes then stand 64 apart, 8-bit codes 256. A component is summed up
// in units of 1/64 of an 8-bit step, which leaves 16-bit lanes with room for every colour out of gamut: luma
// by an unsigned high multiply, chroma by a rounding one (Q15). All terms together lose at most 3.5 units,
// 0.055 of a step.
constexpr int kUnitsPerStep = 64;

struct WeightedSum {
    uint16_t luma;
    int16_t redFromV;
    int16_t greenFromU;
    int16_t greenFromV;
    int16_t blueFromU;
    int16_t bias;  // with half a step for the final shift
};

// Planes that are no luma and colour differences take a plain 32-bit loop with 16 fractional bits.
struct GeneralMap {
    std::array<std::array<int32_t, 3>, 3> factor;
    std::array<int32_t, 3> offset;
};
constexpr int kGeneralBits = 16;

template <typename Sample>
struct Depth;
template <>
struct Depth<uint8_t> {
    static constexpr int kBits = 8;
    static constexpr int kMax = 255;
};
template <>
struct Depth<uint16_t> {
    static constexpr int kBits = 10;
    static constexpr int kMax = 1023;
};

template <typename Sample>
int Load(const uint8_t* plane, int index) {
    Sample sample;
    std::memcpy(&sample, plane + static_cast<ptrdiff_t>(sizeof(Sample)) * index, sizeof(Sample));
    return std::min<int>(sample, Depth<Sample>::kMax);
}

int16_t Round16(double value) {
    return static_cast<int16_t>(std::lround(value));
}

WeightedSum MakeWeightedSum(ColorMatrix matrix, ColorRange range, int bits) {
    const YuvToRgb map = MakeYuvToRgb(matrix, range, bits);
    // Units per 16-bit sample value.
    const double units = 255.0 * kUnitsPerStep / (1 << (16 - bits));
    const double lumaFactor = map.factor[0][0] * units;
    const double black =
        -255.0 * kUnitsPerStep * map.factor[0][0] * (range == ColorRange::Full ? 0 : 16 << (bits - 8));
    const auto q15 = [units](double factor) { return Round16(factor * units * (1 << 15)); };
    return {static_cast<uint16_t>(std::lround(lumaFactor * (1 << 16))), q15(map.factor[0][2]),
            q15(map.factor[1][1]), q15(map.factor[1][2]), q15(map.factor[2][1]),
            // The high multiply rounds down: half a unit comes back here.
            Round16(black + kUnitsPerStep / 2.0 + (lumaFactor > 0 ? 0.5 : 0))};
}

GeneralMap MakeGeneralMap(ColorMatrix matrix, ColorRange range, int bits) {
    const YuvToRgb map = MakeYuvToRgb(matrix, range, bits);
    constexpr double kScale = 255.0 * (1 << kGeneralBits);
    GeneralMap general{};
    for (size_t i = 0; i < 3; ++i) {
        for (size_t j = 0; j < 3; ++j) {
            general.factor[i][j] = static_cast<int32_t>(std::lround(map.factor[i][j] * kScale));
        }
        general.offset[i] =
            static_cast<int32_t>(std::lround(map.offset[i] * kScale)) + (1 << (kGeneralBits - 1));
    }
    return general;
}

uint32_t Pack(int red, int green, int blue) {
    const auto byte = [](int value) { return static_cast<uint32_t>(std::clamp(value, 0, 255)); };
    return 0xFF000000U | byte(red) << 16 | byte(green) << 8 | byte(blue);
}

struct Row {
    const uint8_t* y;
    const uint8_t* u;
    const uint8_t* v;
    uint8_t* target;
};

// Pixels first to last - 1 of a row, first even. ChromaShift is 1 where two pixels share a chroma sample.
// Plain loops over short arrays, which compilers turn into vectors of whatever width the machine has.
template <typename Sample, int ChromaShift>
void ConvertPixels(const WeightedSum& sum, const Row& row, int first, int last) {
    constexpr int kShift = 16 - Depth<Sample>::kBits;
    constexpr int kBlock = 64;
    const auto rounded = [](int value, int factor) { return (value * factor + (1 << 14)) >> 15; };
    const auto centred = [](const uint8_t* plane, int index) {
        return (Load<Sample>(plane, index) << kShift) - (1 << 15);
    };
    const auto spread = [](std::array<int, kBlock>& pixels, int samples) {
        if constexpr (ChromaShift == 1) {
            for (auto i = static_cast<size_t>(samples); i-- > 0;)
                pixels[2 * i] = pixels[2 * i + 1] = pixels[i];
        }
    };
    for (int start = first; start < last; start += kBlock) {
        const int count = std::min(kBlock, last - start);
        const int chromaStart = start >> ChromaShift;
        const int chromaCount = (count + ChromaShift) >> ChromaShift;
        std::array<int, kBlock> red;
        std::array<int, kBlock> green;
        std::array<int, kBlock> blue;
        for (int i = 0; i < chromaCount; ++i) {
            const auto at = static_cast<size_t>(i);
            const int u = centred(row.u, chromaStart + i);
            const int v = centred(row.v, chromaStart + i);
            red[at] = rounded(v, sum.redFromV);
            green[at] = rounded(u, sum.greenFromU) + rounded(v, sum.greenFromV);
            blue[at] = rounded(u, sum.blueFromU);
        }
        spread(red, chromaCount);
        spread(green, chromaCount);
        spread(blue, chromaCount);
        uint8_t* target = row.target + 4 * static_cast<ptrdiff_t>(start);
        for (int i = 0; i < count; ++i) {
            const auto at = static_cast<size_t>(i);
            const unsigned code = static_cast<unsigned>(Load<Sample>(row.y, start + i)) << kShift;
            const int luma = static_cast<int>((code * sum.luma) >> 16) + sum.bias;
            const uint32_t pixel =
                Pack((luma + red[at]) >> 6, (luma + green[at]) >> 6, (luma + blue[at]) >> 6);
            std::memcpy(target + 4 * static_cast<ptrdiff_t>(i), &pixel, sizeof(pixel));
        }
    }
}

template <typename Sample, int ChromaShift>
void ConvertPixels(const GeneralMap& map, const Row& row, int width) {
    for (int x = 0; x < width; ++x) {
        const std::array<int, 3> code{Load<Sample>(row.y, x), Load<Sample>(row.u, x >> ChromaShift),
                                      Load<Sample>(row.v, x >> ChromaShift)};
        std::array<int, 3> rgb{};
        for (size_t i = 0; i < 3; ++i) {
            rgb[i] = (map.offset[i] + map.factor[i][0] * code[0] + map.factor[i][1] * code[1] +
                      map.factor[i][2] * code[2]) >>
                     kGeneralBits;
        }
        const uint32_t pixel = Pack(rgb[0], rgb[1], rgb[2]);
        std::memcpy(row.target + 4 * static_cast<ptrdiff_t>(x), &pixel, sizeof(pixel));
    }
}

#if defined(CORVANTA_CONVERTER_AVX2)

#define CORVANTA_AVX2 __attribute__((target("avx2"), always_inline)) inline

struct WideSum {
    __m256i luma, redFromV, greenFromU, greenFromV, blueFromU, bias;
};

struct WideChroma {
    __m256i red, green, blue;
};

// Sixteen samples as 16-bit values.
template <typename Sample>
CORVANTA_AVX2 __m256i LoadWide(const uint8_t* plane, int index) {
    const uint8_t* source = plane + static_cast<ptrdiff_t>(sizeof(Sample)) * index;
    if constexpr (sizeof(Sample) == 1) {
        const __m128i samples = _mm_loadu_si128(reinterpret_cast<const __m128i*>(source));
        return _mm256_slli_epi16(_mm256_cvtepu8_epi16(samples), 8);
    } else {
        const __m256i samples = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(source));
        return _mm256_slli_epi16(_mm256_min_epu16(samples, _mm256_set1_epi16(Depth<uint16_t>::kMax)), 6);
    }
}

CORVANTA_AVX2 WideChroma MultiplyChroma(const WideSum& sum, __m256i u, __m256i v) {
    const __m256i signBit = _mm256_set1_epi16(static_cast<int16_t>(0x8000));
    u = _mm256_xor_si256(u, signBit);
    v = _mm256_xor_si256(v, signBit);
    return {_mm256_mulhrs_epi16(v, sum.redFromV),
            _mm256_add_epi16(_mm256_mulhrs_epi16(u, sum.greenFromU), _mm256_mulhrs_epi16(v, sum.greenFromV)),
            _mm256_mulhrs_epi16(u, sum.blueFromU)};
}

// Thirty-two pixels from two times sixteen.
CORVANTA_AVX2 void StoreWide(const WideSum& sum, __m256i luma0, __m256i luma1, const WideChroma& chroma0,
                             const WideChroma& chroma1, uint8_t* target) {
    luma0 = _mm256_add_epi16(_mm256_mulhi_epu16(luma0, sum.luma), sum.bias);
    luma1 = _mm256_add_epi16(_mm256_mulhi_epu16(luma1, sum.luma), sum.bias);
    const auto component = [&](__m256i part0, __m256i part1) __attribute__((target("avx2"), always_inline)) {
        return _mm256_packus_epi16(_mm256_srai_epi16(_mm256_adds_epi16(luma0, part0), 6),
                                   _mm256_srai_epi16(_mm256_adds_epi16(luma1, part1), 6));
    };
    const __m256i red = component(chroma0.red, chroma1.red);
    const __m256i green = component(chroma0.green, chroma1.green);
    const __m256i blue = component(chroma0.blue, chroma1.blue);
    const __m256i opaque = _mm256_set1_epi8(-1);
    const __m256i blueGreen0 = _mm256_unpacklo_epi8(blue, green);
    const __m256i blueGreen1 = _mm256_unpackhi_epi8(blue, green);
    const __m256i redAlpha0 = _mm256_unpacklo_epi8(red, opaque);
    const __m256i redAlpha1 = _mm256_unpackhi_epi8(red, opaque);
    const auto store = [target](int at, __m256i low, __m256i high)
        __attribute__((target("avx2"), always_inline)) {
        auto* out = reinterpret_cast<__m256i*>(target + at);
        _mm256_storeu_si256(out, _mm256_permute2x128_si256(low, high, 0x20));
        _mm256_storeu_si256(out + 1, _mm256_permute2x128_si256(low, high, 0x31));
    };
    store(0, _mm256_unpacklo_epi16(blueGreen0, redAlpha0), _mm256_unpackhi_epi16(blueGreen0, redAlpha0));
    store(64, _mm256_unpacklo_epi16(blueGreen1, redAlpha1), _mm256_unpackhi_epi16(blueGreen1, redAlpha1));
}

// Converts the pixels that fill whole vectors and returns how many they are.
template <typename Sample, int ChromaShift>
__attribute__((target("avx2"))) int ConvertPixelsAvx2(const WeightedSum& narrow, const Row& row, int width) {
    const WideSum sum{_mm256_set1_epi16(static_cast<int16_t>(narrow.luma)),
                      _mm256_set1_epi16(narrow.redFromV),
                      _mm256_set1_epi16(narrow.greenFromU),
                      _mm256_set1_epi16(narrow.greenFromV),
                      _mm256_set1_epi16(narrow.blueFromU),
                      _mm256_set1_epi16(narrow.bias)};
    int x = 0;
    for (; x + 32 <= width; x += 32) {
        WideChroma chroma0;
        WideChroma chroma1;
        if constexpr (ChromaShift == 1) {
            // Quarters 0, 2 | 1, 3, so that unpacking within lanes gives pixels in order.
            const __m256i u = _mm256_permute4x64_epi64(LoadWide<Sample>(row.u, x / 2), 0b11011000);
            const __m256i v = _mm256_permute4x64_epi64(LoadWide<Sample>(row.v, x / 2), 0b11011000);
            const WideChroma shared = MultiplyChroma(sum, u, v);
            chroma0 = {_mm256_unpacklo_epi16(shared.red, shared.red),
                       _mm256_unpacklo_epi16(shared.green, shared.green),
                       _mm256_unpacklo_epi16(shared.blue, shared.blue)};
            chroma1 = {_mm256_unpackhi_epi16(shared.red, shared.red),
                       _mm256_unpackhi_epi16(shared.green, shared.green),
                       _mm256_unpackhi_epi16(shared.blue, shared.blue)};
        } else {
            chroma0 = MultiplyChroma(sum, LoadWide<Sample>(row.u, x), LoadWide<Sample>(row.v, x));
            chroma1 = MultiplyChroma(sum, LoadWide<Sample>(row.u, x + 16), LoadWide<Sample>(row.v, x + 16));
        }
        StoreWide(sum, LoadWide<Sample>(row.y, x), LoadWide<Sample>(row.y, x + 16), chroma0, chroma1,
                  row.target + 4 * static_cast<ptrdiff_t>(x));
    }
    return x;
}

bool HasAvx2() {
    return __builtin_cpu_supports("avx2") != 0;
}

#else

template <typename Sample, int ChromaShift>
int ConvertPixelsAvx2(const WeightedSum&, const Row&, int) {
    return 0;
}

bool HasAvx2() {
    return false;
}

#endif

template <typename Sample, int ChromaShift>
void ConvertPlanes(const YuvPlanes& planes, uint8_t* target, size_t pitch, ConverterPath path) {
    const int chromaRowShift =
        planes.subsampling == SubsamplingMode::Mode422 || planes.subsampling == SubsamplingMode::Mode444 ? 0
                                                                                                         : 1;
    const bool weighted = planes.matrix != ColorMatrix::RGB && planes.matrix != ColorMatrix::YCoCg;
    const bool wide = path == ConverterPath::Fastest && HasAvx2();
    WeightedSum sum{};
    GeneralMap general{};
    if (weighted) {
        sum = MakeWeightedSum(planes.matrix, planes.range, Depth<Sample>::kBits);
    } else {
        general = MakeGeneralMap(planes.matrix, planes.range, Depth<Sample>::kBits);
    }
    const auto at = [](const void* plane, int stride, int line) {
        return static_cast<const uint8_t*>(plane) + static_cast<ptrdiff_t>(stride) * line;
    };
    for (int line = 0; line < planes.height; ++line) {
        const int chromaLine = line >> chromaRowShift;
        const Row row{at(planes.y, planes.strideY, line), at(planes.u, planes.strideU, chromaLine),
                      at(planes.v, planes.strideV, chromaLine), target + pitch * static_cast<size_t>(line)};
        if (!weighted) {
            ConvertPixels<Sample, ChromaShift>(general, row, planes.width);
            continue;
        }
        const int done = wide ? ConvertPixelsAvx2<Sample, ChromaShift>(sum, row, planes.width) : 0;
        ConvertPixels<Sample, ChromaShift>(sum, row, done, planes.width);
    }
}

template <typename Sample>
void ConvertDepth(const YuvPlanes& planes, uint8_t* target, size_t pitch, ConverterPath path) {
    if (planes.subsampling == SubsamplingMode::Mode444) {
        ConvertPlanes<Sample, 0>(planes, target, pitch, path);
    } else {
        ConvertPlanes<Sample, 1>(planes, target, pitch, path);
    }
}

template <typename Frame>
YuvPlanes PlanesOf(const Frame& frame, SampleDepth depth) {
    return {.y = frame.GetDataY(),
            .u = frame.GetDataU(),
            .v = frame.GetDataV(),
            .strideY = frame.GetStrideY(),
            .strideU = frame.GetStrideU(),
            .strideV = frame.GetStrideV(),
            .width = frame.GetWidth(),
            .height = frame.GetHeight(),
            .subsampling = frame.GetSubsamplingMode(),
            .depth = depth,
            .matrix = frame.GetColorSpace().GetMatrix(),
            .range = frame.GetColorSpace().GetRange()};
}

}  // namespace

void ConvertToArgb(const YuvPlanes& planes, uint32_t* target, size_t pitch, ConverterPath path) {
    auto* bytes = reinterpret_cast<uint8_t*>(target);
    if (planes.depth == SampleDepth::Bits10) {
        ConvertDepth<uint16_t>(planes, bytes, pitch, path);
    } else {
        ConvertDepth<uint8_t>(planes, bytes, pitch, path);
    }
}

std::optional<YuvPlanes> GetPlanes(const PlanarYUVFrameBuffer& frame) {
    if (const auto* narrow = dynamic_cast<const YUVFrameBuffer*>(&frame)) {
        return PlanesOf(*narrow, SampleDepth::Bits8);
    }
    if (const auto* wide = dynamic_cast<const YUV16FrameBuffer*>(&frame)) {
        return PlanesOf(*wide, SampleDepth::Bits10);
    }
    return std::nullopt;
}

void ConvertToArgb(const PlanarYUVFrameBuffer& frame, uint32_t* target, size_t pitch) {
    if (const auto planes = GetPlanes(frame)) ConvertToArgb(*planes, target, pitch);
}

}  // namespace Corvanta::Video
