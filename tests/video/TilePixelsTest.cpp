// Pictures from the sink to the screen, pixel by pixel, against the exact value of their matrix and range.
#include <gtest/gtest.h>

#include <cstdint>
#include <random>
#include <string>
#include <tuple>

#include "tests/fake_platform/ReferenceColor.h"
#include "tests/video/TileTest.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;
using Type = VideoFrameBufferType;

constexpr int kTolerance = 1;

// Type, matrix, range, whether sizes are odd and rows padded.
using Kind = std::tuple<Type, ColorMatrix, ColorRange, bool>;

class TilePixelsTest : public TileTest, public ::testing::WithParamInterface<Kind> {
protected:
    [[nodiscard]] static bool Is16Bit() { return std::get<0>(GetParam()) >= Type::YUV420_16; }
    [[nodiscard]] static int Bits() { return Is16Bit() ? 10 : 8; }
    [[nodiscard]] static bool IsOdd() { return std::get<3>(GetParam()); }
    [[nodiscard]] static FrameSpec Spec() {
        const auto [type, matrix, range, odd] = GetParam();
        return {.width = odd ? 37 : kScreenWidth,
                .height = odd ? 23 : kScreenHeight,
                .type = type,
                // Of primaries and transfer nothing is to be converted.
                .colorSpace = {matrix, range, ColorPrimaries::BT709, ColorTransfer::BT709},
                .padding = odd ? 6 : 0};
    }

    // Fills a frame by a function of the chroma sample's place, and of the pixel's for its luma.
    template <typename Samples>
    [[nodiscard]] static Frame Fill(const FrameSpec& spec, Samples&& samples) {
        const auto fill = [&](auto& frame) {
            using Sample = std::remove_cvref_t<decltype(*frame.GetDataY())>;
            for (int y = 0; y < spec.height; ++y) {
                for (int x = 0; x < spec.width; ++x) {
                    const Yuv yuv = samples(x, y);
                    frame.SetPixel(x, y, static_cast<Sample>(yuv.y), static_cast<Sample>(yuv.u),
                                   static_cast<Sample>(yuv.v));
                }
            }
        };
        if (Is16Bit()) {
            const auto frame = MakeYuv16Frame(spec);
            fill(*frame);
            return frame;
        }
        const auto frame = MakeYuvFrame(spec);
        fill(*frame);
        return frame;
    }

    template <typename Samples>
    void ExpectShown(const FrameSpec& spec, Samples&& samples) {
        const auto [type, matrix, range, odd] = GetParam();
        tile.rect = {0, 0, spec.width, spec.height};
        const Picture picture = DrawAndRead();
        for (int y = 0; y < spec.height; ++y) {
            for (int x = 0; x < spec.width; ++x) {
                ASSERT_TRUE(
                    PixelIs(picture, x, y, ExactArgb(samples(x, y), matrix, range, Bits()), kTolerance));
            }
        }
    }
};

TEST_P(TilePixelsTest, ShowsTestBarsInTheirColours) {
    const auto [type, matrix, range, odd] = GetParam();
    const FrameSpec spec = Spec();
    // Bars of even width, so that no chroma sample lies under two of them.
    const int barWidth = (spec.width / 8 + 1) / 2 * 2;
    const auto bars = [&, matrix = matrix, range = range](int x, int) {
        const auto& color = kTestBars[static_cast<size_t>(std::min(x / barWidth, 7))];
        return ExactYuv(color[0], color[1], color[2], matrix, range, Bits());
    };
    ASSERT_TRUE(Show(Fill(spec, bars)));
    ExpectShown(spec, bars);
}

TEST_P(TilePixelsTest, ShowsAnySamplesAlsoThoseOutsideOfEveryGamut) {
    const FrameSpec spec = Spec();
    const auto noise = [&](int x, int y) {
        const bool full444 = SubsamplingOf(spec.type) == SubsamplingMode::Mode444;
        const bool rows = SubsamplingOf(spec.type) == SubsamplingMode::Mode420;
        const auto hash = [](int a, int b, uint32_t seed) {
            std::minstd_rand random(static_cast<uint32_t>(a * 7919 + b * 104729) + seed);
            random.discard(3);
            return static_cast<uint16_t>(random() % (Is16Bit() ? 1024 : 256));
        };
        const int chromaX = full444 ? x : x / 2;
        const int chromaY = rows ? y / 2 : y;
        return Yuv{hash(x, y, 1), hash(chromaX, chromaY, 1000003), hash(chromaX, chromaY, 2000029)};
    };
    ASSERT_TRUE(Show(Fill(spec, noise)));
    ExpectShown(spec, noise);
}

std::string NameOf(const ::testing::TestParamInfo<Kind>& info) {
    const auto [type, matrix, range, odd] = info.param;
    static constexpr const char* kTypes[] = {"Rgb",           "Yuv420",        "Yuv422",       "Yuv444",
                                             "Yuv420TenBits", "Yuv422TenBits", "Yuv444TenBits"};
    return std::string(kTypes[static_cast<int>(type)]) + std::string(GetName(matrix)).substr(0, 6) +
           (range == ColorRange::Full ? "Full" : "Limited") + (odd ? "Odd" : "Even");
}

INSTANTIATE_TEST_SUITE_P(
    EveryKind, TilePixelsTest,
    ::testing::Combine(::testing::Values(Type::YUV420, Type::YUV422, Type::YUV444, Type::YUV420_16,
                                         Type::YUV422_16, Type::YUV444_16),
                       ::testing::Values(ColorMatrix::BT709, ColorMatrix::SMPTE170M, ColorMatrix::BT2020NCL),
                       ::testing::Values(ColorRange::Limited, ColorRange::Full), ::testing::Bool()),
    NameOf);

using RgbTilePixelsTest = TileTest;

TEST_F(RgbTilePixelsTest, ShowsPackedPixelsAsTheyAre) {
    const auto frame = MakeRgbFrame({.width = kScreenWidth, .height = kScreenHeight, .colorSpace = kSrgb});
    const auto colorOf = [](int x, int y) {
        return 0xFF000000U | static_cast<uint32_t>(x * 4) << 16 | static_cast<uint32_t>(y * 5) << 8 |
               static_cast<uint32_t>((x * y) % 256);
    };
    for (int y = 0; y < kScreenHeight; ++y) {
        for (int x = 0; x < kScreenWidth; ++x) frame->SetPixel(x, y, colorOf(x, y));
    }
    ASSERT_TRUE(Show(frame));
    const Picture picture = DrawAndRead();
    for (int y = 0; y < kScreenHeight; ++y) {
        for (int x = 0; x < kScreenWidth; ++x) ASSERT_TRUE(PixelIs(picture, x, y, colorOf(x, y)));
    }
}

}  // namespace
}  // namespace Corvanta::Video
