// Pictures of 1920x1080 from one colour space to another on one thread, in their own type: the engine's frame
// transformer against zimg and a bare copy of the planes, in turns. zimg clips HDR light where the
// transformer maps tones, so it does less. Arguments: --rounds N.
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <functional>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "bench/Medians.h"
#include "bench/ZimgGraph.h"
#include "engine/webrtc/FrameTransformer.h"
#include "engine/webrtc/OwnedFrames.h"

namespace Corvanta::Bench {
namespace {

using Engine::NewFrame;

constexpr int kWidth = 1920;
constexpr int kHeight = 1080;
constexpr int kDefaultRounds = 41;
constexpr double kGoal = 0.5;
// zimg's exact curves take a tenth of a second a frame: a few rounds show it.
constexpr int kMaxExactRounds = 5;

const ColorSpace kSdr(ColorMatrix::BT709, ColorRange::Limited, ColorPrimaries::BT709,
                      ColorTransfer::IEC61966_2_1);
const ColorSpace kPq(LegacyColorSpace::BT2020);
const ColorSpace kHlg(ColorMatrix::BT2020NCL, ColorRange::Limited, ColorPrimaries::BT2020,
                      ColorTransfer::ARIB_STD_B67);
const ColorSpace kBt601(ColorMatrix::SMPTE170M, ColorRange::Limited, ColorPrimaries::SMPTE170M,
                        ColorTransfer::SMPTE170M);

struct Way {
    const char* name;
    ColorSpace from;
    ColorSpace to;
    VideoFrameBufferType type;
    bool inTable;
};
const std::array kWays{
    Way{"PQ to SDR, 10-bit 4:2:0", kPq, kSdr, VideoFrameBufferType::YUV420_16, true},
    Way{"PQ to SDR, 10-bit 4:4:4", kPq, kSdr, VideoFrameBufferType::YUV444_16, false},
    Way{"HLG to SDR, 10-bit 4:2:0", kHlg, kSdr, VideoFrameBufferType::YUV420_16, false},
    Way{"HLG to PQ, 10-bit 4:2:0", kHlg, kPq, VideoFrameBufferType::YUV420_16, false},
    Way{"BT.601 to SDR, 8-bit 4:2:0", kBt601, kSdr, VideoFrameBufferType::YUV420, false},
};

// Light and shade with grain, mostly of moderate colour: a tenth of the pixels lies above the knee of the
// tone curve and some outside the target's gamut, as in real pictures.
NewFrame Paint(VideoFrameBufferType type, const ColorSpace& space) {
    NewFrame made = Engine::MakeFrame(type, kWidth, kHeight, space);
    std::mt19937 random(1);
    const bool wide = Engine::IsSixteenBit(type);
    for (size_t i = 0; i < 3; ++i) {
        const Engine::WritablePlane& plane = made.planes[i];
        const int width = plane.rowBytes / (wide ? 2 : 1);
        for (int y = 0; y < plane.rows; ++y) {
            for (int x = 0; x < width; ++x) {
                const double u = static_cast<double>(x) / width;
                const double v = static_cast<double>(y) / plane.rows;
                const double level =
                    i == 0   ? 360 + 110 * std::sin(7 * u + 2 * v) + 80 * std::sin(38 * u) * std::cos(18 * v)
                    : i == 1 ? 512 + 45 * std::sin(6 * u + 2 * v)
                             : 512 + 45 * std::cos(5 * u - 2 * v);
                const int code = static_cast<int>(level) + static_cast<int>(random() % 8);
                uint8_t* line = plane.data + static_cast<ptrdiff_t>(plane.stride) * y;
                if (wide) {
                    const auto word = static_cast<uint16_t>(code);
                    std::memcpy(line + 2 * static_cast<ptrdiff_t>(x), &word, sizeof(word));
                } else {
                    line[x] = static_cast<uint8_t>(code / 4);
                }
            }
        }
    }
    return made;
}

std::array<ZimgPlane, 3> PlanesOf(const NewFrame& made) {
    std::array<ZimgPlane, 3> planes{};
    for (size_t i = 0; i < 3; ++i) planes[i] = {made.planes[i].data, made.planes[i].stride};
    return planes;
}

Nanoseconds ThreadTimeOf(const std::function<void()>& call) {
    const Nanoseconds start = CpuTimeOf(CLOCK_THREAD_CPUTIME_ID);
    call();
    return CpuTimeOf(CLOCK_THREAD_CPUTIME_ID) - start;
}

void Measure(const Way& way, int rounds) {
    const NewFrame source = Paint(way.type, way.from);
    const NewFrame target = Engine::MakeFrame(way.type, kWidth, kHeight, way.to);
    VideoFrameTransformer transformer;
    std::vector<std::unique_ptr<ZimgGraph>> graphs;
    const int bits = Engine::IsSixteenBit(way.type) ? 10 : 8;
    const SubsamplingMode mode = Engine::GetSubsampling(way.type);
    for (const ZimgMode zimgMode : {ZimgMode::Default, ZimgMode::Approximate, ZimgMode::Fastest}) {
        graphs.push_back(std::make_unique<ZimgGraph>(
            MakeZimgFormat(kWidth, kHeight, bits, mode, way.from, false),
            MakeZimgFormat(kWidth, kHeight, bits, mode, way.to, false), zimgMode));
    }
    const auto zimg = [&](size_t graph) {
        return [&, graph] { graphs[graph]->Run(PlanesOf(source), PlanesOf(target)); };
    };
    std::shared_ptr<VideoFrameBuffer> out;
    const std::array<std::function<void()>, 5> calls{
        [&] { out = transformer.Convert(source.frame.get(), kWidth, kHeight, way.type, way.to); }, zimg(0),
        zimg(1), zimg(2),
        [&] {
            for (size_t i = 0; i < 3; ++i) {
                const Engine::WritablePlane& plane = source.planes[i];
                std::memcpy(target.planes[i].data, plane.data,
                            static_cast<size_t>(plane.stride) * static_cast<size_t>(plane.rows));
            }
        }};
    std::array<std::vector<Nanoseconds>, 5> times;
    for (int round = 0; round < rounds; ++round) {
        for (size_t i = 0; i < calls.size(); ++i) {
            if (i == 1 && round >= kMaxExactRounds) continue;
            times[i].push_back(ThreadTimeOf(calls[i]));
        }
    }
    std::array<Nanoseconds, 5> median{};
    for (size_t i = 0; i < calls.size(); ++i) median[i] = MedianOf(times[i]);
    std::printf(
        "%-27s ours %.2f ms, zimg %.2f ms, with approximate curves %.2f ms, also with 512 bits and nearest "
        "chroma %.2f ms, copy %.2f ms\n",
        way.name, median[0] / 1e6, median[1] / 1e6, median[2] / 1e6, median[3] / 1e6, median[4] / 1e6);
    if (!way.inTable) return;
    const std::string name = std::string("1920x1080 ") + way.name + ", over zimg";
    PrintRatio(name.c_str(), median[0], median[1], kGoal);
    PrintRatio((name + " with approximate curves").c_str(), median[0], median[2], kGoal);
    PrintRatio((name + " with those, 512 bits and nearest chroma").c_str(), median[0], median[3], 0);
}

int Main(int argc, char** argv) {
    int rounds = kDefaultRounds;
    if (argc == 3 && std::string_view(argv[1]) == "--rounds") rounds = std::atoi(argv[2]);
    if (rounds < 1 || argc == 2) {
        std::fprintf(stderr, "usage: bench_transform [--rounds N]\n");
        return 2;
    }
    for (const Way& way : kWays) Measure(way, rounds);
    return 0;
}

}  // namespace
}  // namespace Corvanta::Bench

int main(int argc, char** argv) {
    try {
        return Corvanta::Bench::Main(argc, argv);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "bench_transform: %s\n", error.what());
    } catch (const zimgxx::zerror& error) {
        std::fprintf(stderr, "bench_transform: zimg: %s\n", error.msg);
    }
    return 1;
}
