// Planar pictures of 1920x1080 to packed pixels on one thread: ours against libyuv, zimg (which gives planes
// of red, green and blue) and a bare copy of as many bytes, in turns. Arguments: --rounds N.
#include <libyuv.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "bench/Medians.h"
#include "bench/ZimgGraph.h"
#include "video/FrameConverter.h"

namespace Corvanta::Bench {
namespace {

using Video::SampleDepth;
using Video::YuvPlanes;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int kPitch = 4 * kWidth;
constexpr int kDefaultRounds = 101;
// Beyond these ratios the converter is not worth having: twice libyuv, a third of zimg.
constexpr double kGoalOfLibyuv = 2.0;
constexpr double kGoalOfZimg = 1.0 / 3;
const ColorSpace kSpace(LegacyColorSpace::BT709);

struct Format {
    const char* name;
    SampleDepth depth;
    SubsamplingMode mode;
    bool inTable;
};
constexpr std::array kFormats{
    Format{"8-bit 4:2:0", SampleDepth::Bits8, SubsamplingMode::Mode420, false},
    Format{"8-bit 4:2:2", SampleDepth::Bits8, SubsamplingMode::Mode422, false},
    Format{"8-bit 4:4:4", SampleDepth::Bits8, SubsamplingMode::Mode444, false},
    Format{"10-bit 4:2:0", SampleDepth::Bits10, SubsamplingMode::Mode420, true},
    Format{"10-bit 4:2:2", SampleDepth::Bits10, SubsamplingMode::Mode422, false},
    Format{"10-bit 4:4:4", SampleDepth::Bits10, SubsamplingMode::Mode444, false},
};

struct alignas(64) Line {
    std::array<uint8_t, 64> bytes;
};
using Memory = std::vector<Line>;

// A picture of every colour.
class Picture final {
public:
    explicit Picture(const Format& format) : bits_(static_cast<int>(format.depth)) {
        std::mt19937 random(1);
        const int sampleBytes = bits_ > 8 ? 2 : 1;
        planes.width = kWidth;
        planes.height = kHeight;
        planes.depth = format.depth;
        planes.subsampling = format.mode;
        planes.matrix = kSpace.GetMatrix();
        planes.range = kSpace.GetRange();
        const int chromaWidth = format.mode == SubsamplingMode::Mode444 ? kWidth : kWidth / 2;
        const int chromaHeight = format.mode == SubsamplingMode::Mode420 ? kHeight / 2 : kHeight;
        planes.strideY = kWidth * sampleBytes;
        planes.strideU = planes.strideV = chromaWidth * sampleBytes;
        const size_t lumaSize = static_cast<size_t>(planes.strideY) * kHeight;
        const size_t chromaSize = static_cast<size_t>(planes.strideU) * static_cast<size_t>(chromaHeight);
        size_ = lumaSize + 2 * chromaSize;
        planes.y = Fill(memory_[0], lumaSize, random);
        planes.u = Fill(memory_[1], chromaSize, random);
        planes.v = Fill(memory_[2], chromaSize, random);
    }
    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    [[nodiscard]] size_t GetSize() const { return size_; }

    YuvPlanes planes;

private:
    const void* Fill(Memory& memory, size_t bytes, std::mt19937& random) const {
        memory.resize((bytes + sizeof(Line) - 1) / sizeof(Line));
        for (size_t i = 0; i < bytes; i += 2) {
            const auto noise = static_cast<uint32_t>(random());
            const auto word = static_cast<uint16_t>(bits_ > 8 ? noise & 1023 : noise & 65535);
            std::memcpy(memory[i / sizeof(Line)].bytes.data() + i % sizeof(Line), &word, sizeof(word));
        }
        return memory.data();
    }

    int bits_;
    size_t size_ = 0;
    std::array<Memory, 3> memory_;
};

void RunLibyuv(const YuvPlanes& p, uint8_t* target) {
    const auto* constants = &libyuv::kYuvH709Constants;
    if (p.depth == SampleDepth::Bits8) {
        const auto convert = p.subsampling == SubsamplingMode::Mode420   ? &libyuv::I420ToARGBMatrix
                             : p.subsampling == SubsamplingMode::Mode422 ? &libyuv::I422ToARGBMatrix
                                                                         : &libyuv::I444ToARGBMatrix;
        convert(static_cast<const uint8_t*>(p.y), p.strideY, static_cast<const uint8_t*>(p.u), p.strideU,
                static_cast<const uint8_t*>(p.v), p.strideV, target, kPitch, constants, p.width, p.height);
        return;
    }
    const auto convert = p.subsampling == SubsamplingMode::Mode420   ? &libyuv::I010ToARGBMatrix
                         : p.subsampling == SubsamplingMode::Mode422 ? &libyuv::I210ToARGBMatrix
                                                                     : &libyuv::I410ToARGBMatrix;
    convert(static_cast<const uint16_t*>(p.y), p.strideY / 2, static_cast<const uint16_t*>(p.u),
            p.strideU / 2, static_cast<const uint16_t*>(p.v), p.strideV / 2, target, kPitch, constants,
            p.width, p.height);
}

Nanoseconds ThreadTimeOf(const std::function<void()>& call) {
    const Nanoseconds start = CpuTimeOf(CLOCK_THREAD_CPUTIME_ID);
    call();
    return CpuTimeOf(CLOCK_THREAD_CPUTIME_ID) - start;
}

void Measure(const Format& format, int rounds) {
    const Picture picture(format);
    const YuvPlanes& planes = picture.planes;
    std::vector<uint32_t> ours(static_cast<size_t>(kWidth) * kHeight);
    std::vector<uint32_t> theirs(ours.size());
    const std::vector<uint8_t> source(picture.GetSize() + ours.size() * sizeof(uint32_t));
    std::vector<uint8_t> copy(source.size());
    std::array<Memory, 3> rgb;
    for (Memory& plane : rgb) plane.resize(ours.size() / sizeof(Line));
    ZimgGraph zimg(
        MakeZimgFormat(kWidth, kHeight, static_cast<int>(format.depth), format.mode, kSpace, false),
        MakeZimgFormat(kWidth, kHeight, 8, SubsamplingMode::Mode444, kSpace, true), ZimgMode::Fastest);
    const std::array<ZimgPlane, 3> from{{{const_cast<void*>(planes.y), planes.strideY},
                                         {const_cast<void*>(planes.u), planes.strideU},
                                         {const_cast<void*>(planes.v), planes.strideV}}};
    const std::array<ZimgPlane, 3> to{
        {{rgb[0].data(), kWidth}, {rgb[1].data(), kWidth}, {rgb[2].data(), kWidth}}};

    const std::array<std::function<void()>, 5> calls{
        [&] { Video::ConvertToArgb(planes, ours.data(), kPitch); },
        [&] { RunLibyuv(planes, reinterpret_cast<uint8_t*>(theirs.data())); }, [&] { zimg.Run(from, to); },
        // Half of the bytes: a copy reads and writes each of them.
        [&] { std::memcpy(copy.data(), source.data(), source.size() / 2); },
        [&] { Video::ConvertToArgb(planes, theirs.data(), kPitch, Video::ConverterPath::Portable); }};
    std::array<std::vector<Nanoseconds>, 5> times;
    for (int round = 0; round < rounds; ++round) {
        for (size_t i = 0; i < calls.size(); ++i) times[i].push_back(ThreadTimeOf(calls[i]));
    }
    std::array<Nanoseconds, 5> median{};
    for (size_t i = 0; i < calls.size(); ++i) median[i] = MedianOf(times[i]);
    std::printf(
        "%-13s ours %.3f ms, libyuv %.3f ms, zimg %.3f ms, copy %.3f ms, ours without vectors %.3f ms\n",
        format.name, median[0] / 1e6, median[1] / 1e6, median[2] / 1e6, median[3] / 1e6, median[4] / 1e6);
    if (!format.inTable) return;
    const std::string name =
        std::string("Conversion of 1920x1080 ") + format.name + " to packed pixels, over ";
    PrintRatio((name + "libyuv").c_str(), median[0], median[1], kGoalOfLibyuv);
    PrintRatio((name + "zimg").c_str(), median[0], median[2], kGoalOfZimg);
    PrintRatio((name + "a copy of as many bytes").c_str(), median[0], median[3], 0);
}

int Main(int argc, char** argv) {
    int rounds = kDefaultRounds;
    if (argc == 3 && std::string_view(argv[1]) == "--rounds") rounds = std::atoi(argv[2]);
    if (rounds < 1 || argc == 2) {
        std::fprintf(stderr, "usage: bench_conversion [--rounds N]\n");
        return 2;
    }
    for (const Format& format : kFormats) Measure(format, rounds);
    return 0;
}

}  // namespace
}  // namespace Corvanta::Bench

int main(int argc, char** argv) {
    try {
        return Corvanta::Bench::Main(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_conversion: %s\n", error.what());
    } catch (const zimgxx::zerror& error) {
        std::fprintf(stderr, "bench_conversion: zimg: %s\n", error.msg);
    }
    return 1;
}
