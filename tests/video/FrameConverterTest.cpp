#include "video/FrameConverter.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <random>
#include <string>
#include <tuple>
#include <vector>

namespace Corvanta::Video {
namespace {

constexpr std::array kMatrices{ColorMatrix::RGB,       ColorMatrix::BT709,   ColorMatrix::Unspecified,
                               ColorMatrix::FCC,       ColorMatrix::BT470BG, ColorMatrix::SMPTE170M,
                               ColorMatrix::SMPTE240M, ColorMatrix::YCoCg,   ColorMatrix::BT2020NCL};
constexpr std::array kRanges{ColorRange::Unspecified, ColorRange::Limited, ColorRange::Full};
constexpr std::array kDepths{SampleDepth::Bits8, SampleDepth::Bits10};
constexpr std::array kPaths{ConverterPath::Fastest, ConverterPath::Portable};
constexpr std::array kModes{SubsamplingMode::Mode420, SubsamplingMode::Mode422, SubsamplingMode::Mode444};

// Red, green and blue as H.273 defines them, in 8-bit steps, clamped into the gamut.
std::array<double, 3> ExactRgb(int y, int u, int v, SampleDepth depth, ColorMatrix matrix, ColorRange range) {
    const int bits = static_cast<int>(depth);
    const double unit = std::pow(2.0, bits - 8);
    const auto likeLuma = [&](int code) {
        return range == ColorRange::Full ? code / (std::pow(2.0, bits) - 1) : (code / unit - 16) / 219;
    };
    const auto likeChroma = [&](int code) {
        return range == ColorRange::Full ? (code - 128 * unit) / (std::pow(2.0, bits) - 1)
                                         : (code / unit - 128) / 224;
    };
    double red = 0;
    double green = 0;
    double blue = 0;
    if (matrix == ColorMatrix::RGB) {
        green = likeLuma(y);
        blue = likeLuma(u);
        red = likeLuma(v);
    } else if (matrix == ColorMatrix::YCoCg) {
        const double t = likeLuma(y) - likeChroma(u);
        green = likeLuma(y) + likeChroma(u);
        blue = t - likeChroma(v);
        red = t + likeChroma(v);
    } else {
        double kr = 0.2126;
        double kb = 0.0722;
        if (matrix == ColorMatrix::FCC) std::tie(kr, kb) = std::pair(0.30, 0.11);
        if (matrix == ColorMatrix::BT470BG || matrix == ColorMatrix::SMPTE170M) {
            std::tie(kr, kb) = std::pair(0.299, 0.114);
        }
        if (matrix == ColorMatrix::SMPTE240M) std::tie(kr, kb) = std::pair(0.212, 0.087);
        if (matrix == ColorMatrix::BT2020NCL) std::tie(kr, kb) = std::pair(0.2627, 0.0593);
        red = likeLuma(y) + 2 * (1 - kr) * likeChroma(v);
        blue = likeLuma(y) + 2 * (1 - kb) * likeChroma(u);
        green = (likeLuma(y) - kr * red - kb * blue) / (1 - kr - kb);
    }
    const auto step = [](double component) { return std::clamp(component, 0.0, 1.0) * 255; };
    return {step(red), step(green), step(blue)};
}

double Error(uint32_t pixel, const std::array<double, 3>& exact) {
    return std::max({std::abs((pixel >> 16 & 255) - exact[0]), std::abs((pixel >> 8 & 255) - exact[1]),
                     std::abs((pixel & 255) - exact[2])});
}

// A picture in buffers of exactly its size, so that a read beyond it is one that the address sanitizer sees.
struct Picture {
    Picture(int width, int height, SubsamplingMode mode, SampleDepth depth, int padding)
        : bytes(depth == SampleDepth::Bits8 ? 1 : 2) {
        const int chromaWidth = mode == SubsamplingMode::Mode444 ? width : (width + 1) / 2;
        const int chromaHeight = mode == SubsamplingMode::Mode420 ? (height + 1) / 2 : height;
        planes.width = width;
        planes.height = height;
        planes.subsampling = mode;
        planes.depth = depth;
        planes.strideY = width * bytes + padding;
        planes.strideU = chromaWidth * bytes + padding;
        planes.strideV = chromaWidth * bytes + 2 * padding;
        const auto size = [](int stride, int rows, int rowBytes) {
            return static_cast<size_t>(stride) * static_cast<size_t>(rows - 1) +
                   static_cast<size_t>(rowBytes);
        };
        y.resize(size(planes.strideY, height, width * bytes));
        u.resize(size(planes.strideU, chromaHeight, chromaWidth * bytes));
        v.resize(size(planes.strideV, chromaHeight, chromaWidth * bytes));
        planes.y = y.data();
        planes.u = u.data();
        planes.v = v.data();
    }

    void Set(std::vector<uint8_t>& plane, int stride, int x, int line, int code) const {
        const auto word = static_cast<uint16_t>(code);
        const size_t at = At(stride, x, line);
        if (bytes == 1) {
            plane[at] = static_cast<uint8_t>(code);
        } else {
            std::memcpy(&plane[at], &word, sizeof(word));
        }
    }
    [[nodiscard]] int Get(const std::vector<uint8_t>& plane, int stride, int x, int line) const {
        const size_t at = At(stride, x, line);
        uint16_t word = plane[at];
        if (bytes == 2) std::memcpy(&word, &plane[at], sizeof(word));
        return word;
    }
    [[nodiscard]] size_t At(int stride, int x, int line) const {
        return static_cast<size_t>(stride) * static_cast<size_t>(line) + static_cast<size_t>(x * bytes);
    }
    void SetY(int x, int line, int code) { Set(y, planes.strideY, x, line, code); }
    void SetU(int x, int line, int code) { Set(u, planes.strideU, x, line, code); }
    void SetV(int x, int line, int code) { Set(v, planes.strideV, x, line, code); }

    void FillWithNoise(unsigned seed) {
        std::mt19937 random(seed);
        for (auto* plane : {&y, &u, &v}) {
            for (size_t i = 0; i < plane->size(); ++i) {
                // The high byte of a word stays below 4: ten significant bits.
                (*plane)[i] = static_cast<uint8_t>(random() & 255);
            }
        }
        if (bytes == 1) return;
        const auto narrow = [&](std::vector<uint8_t>& plane, int stride, int width, int height) {
            for (int line = 0; line < height; ++line) {
                for (int x = 0; x < width; ++x)
                    Set(plane, stride, x, line, Get(plane, stride, x, line) & 1023);
            }
        };
        const int chromaWidth =
            planes.subsampling == SubsamplingMode::Mode444 ? planes.width : (planes.width + 1) / 2;
        const int chromaHeight =
            planes.subsampling == SubsamplingMode::Mode420 ? (planes.height + 1) / 2 : planes.height;
        narrow(y, planes.strideY, planes.width, planes.height);
        narrow(u, planes.strideU, chromaWidth, chromaHeight);
        narrow(v, planes.strideV, chromaWidth, chromaHeight);
    }

    int bytes;
    YuvPlanes planes;
    std::vector<uint8_t> y;
    std::vector<uint8_t> u;
    std::vector<uint8_t> v;
};

std::vector<uint32_t> Convert(const YuvPlanes& planes, ConverterPath path) {
    const auto width = static_cast<size_t>(planes.width);
    std::vector<uint32_t> pixels(width * static_cast<size_t>(planes.height));
    ConvertToArgb(planes, pixels.data(), 4 * width, path);
    return pixels;
}

// Values of a chroma plane worth trying: the ends, the middle and what lies between.
std::vector<int> Codes(int top, int parts) {
    std::vector<int> codes{(top + 1) / 2, (top + 1) / 2 - 1};
    for (int i = 0; i <= parts; ++i) codes.push_back(top * i / parts);
    return codes;
}

class EveryColour : public ::testing::TestWithParam<std::tuple<SampleDepth, ColorRange, ColorMatrix>> {};

TEST_P(EveryColour, IsWithinOneStepOfTheExactMatrix) {
    const auto [depth, range, matrix] = GetParam();
    const int top = depth == SampleDepth::Bits8 ? 255 : 1023;
    const std::vector<int> chroma = Codes(top, 20);
    const int side = static_cast<int>(chroma.size());
    Picture picture(top + 1, side * side, SubsamplingMode::Mode444, depth, 0);
    picture.planes.matrix = matrix;
    picture.planes.range = range;
    for (int line = 0; line < side * side; ++line) {
        for (int x = 0; x <= top; ++x) {
            picture.SetY(x, line, x);
            picture.SetU(x, line, chroma[static_cast<size_t>(line / side)]);
            picture.SetV(x, line, chroma[static_cast<size_t>(line % side)]);
        }
    }
    for (const ConverterPath path : kPaths) {
        const std::vector<uint32_t> pixels = Convert(picture.planes, path);
        double worst = 0;
        bool opaque = true;
        for (int line = 0; line < side * side; ++line) {
            for (int x = 0; x <= top; ++x) {
                const uint32_t pixel =
                    pixels[static_cast<size_t>(line) * static_cast<size_t>(top + 1) + static_cast<size_t>(x)];
                const auto exact = ExactRgb(x, chroma[static_cast<size_t>(line / side)],
                                            chroma[static_cast<size_t>(line % side)], depth, matrix, range);
                worst = std::max(worst, Error(pixel, exact));
                opaque = opaque && pixel >> 24 == 255;
            }
        }
        EXPECT_LE(worst, 0.56) << "path " << static_cast<int>(path);
        EXPECT_TRUE(opaque);
    }
}

INSTANTIATE_TEST_SUITE_P(FrameConverter, EveryColour,
                         ::testing::Combine(::testing::ValuesIn(kDepths), ::testing::ValuesIn(kRanges),
                                            ::testing::ValuesIn(kMatrices)),
                         [](const auto& each) {
                             return std::to_string(static_cast<int>(std::get<0>(each.param))) + "Bits_Range" +
                                    std::to_string(static_cast<int>(std::get<1>(each.param))) + "_Matrix" +
                                    std::to_string(static_cast<int>(std::get<2>(each.param)));
                         });

TEST(FrameConverter, ColoursEachPixelByTheChromaSampleOfItsBlockAtEverySize) {
    unsigned seed = 1;
    for (const SampleDepth depth : kDepths) {
        for (const SubsamplingMode mode : kModes) {
            for (const ColorMatrix matrix : {ColorMatrix::BT709, ColorMatrix::RGB}) {
                for (const int width : {1, 2, 3, 15, 16, 17, 31, 32, 33, 63, 64, 65, 66, 97, 129}) {
                    for (const int height : {1, 2, 3, 5}) {
                        for (const int padding : {0, 1, 7}) {
                            Picture picture(width, height, mode, depth, padding);
                            picture.planes.matrix = matrix;
                            picture.FillWithNoise(seed++);
                            const auto fast = Convert(picture.planes, ConverterPath::Fastest);
                            ASSERT_EQ(fast, Convert(picture.planes, ConverterPath::Portable))
                                << width << "x" << height;
                            const int right = mode == SubsamplingMode::Mode444 ? 0 : 1;
                            const int down = mode == SubsamplingMode::Mode420 ? 1 : 0;
                            for (int line = 0; line < height; ++line) {
                                for (int x = 0; x < width; ++x) {
                                    const auto& planes = picture.planes;
                                    const auto exact = ExactRgb(
                                        picture.Get(picture.y, planes.strideY, x, line),
                                        picture.Get(picture.u, planes.strideU, x >> right, line >> down),
                                        picture.Get(picture.v, planes.strideV, x >> right, line >> down),
                                        depth, matrix, ColorRange::Limited);
                                    ASSERT_LE(Error(fast[static_cast<size_t>(line * width + x)], exact), 0.56)
                                        << width << "x" << height << " at " << x << ", " << line;
                                }
                            }
                        }
                    }
                }
            }
        }
    }
}

TEST(FrameConverter, LeavesTheBytesBetweenRowsOfTheTargetAlone) {
    for (const ConverterPath path : kPaths) {
        Picture picture(35, 3, SubsamplingMode::Mode420, SampleDepth::Bits10, 0);
        picture.FillWithNoise(5);
        std::vector<uint32_t> target(size_t{40} * 3, 0x12345678U);
        ConvertToArgb(picture.planes, target.data(), size_t{40} * 4, path);
        for (size_t line = 0; line < 3; ++line) {
            for (size_t x = 35; x < 40; ++x) EXPECT_EQ(target[line * 40 + x], 0x12345678U);
        }
    }
}

TEST(FrameConverter, TakesAnUnknownSubsamplingModeAs420) {
    Picture picture(18, 6, SubsamplingMode::Mode420, SampleDepth::Bits8, 3);
    picture.FillWithNoise(9);
    const auto expected = Convert(picture.planes, ConverterPath::Fastest);
    picture.planes.subsampling = static_cast<SubsamplingMode>(77);
    EXPECT_EQ(Convert(picture.planes, ConverterPath::Fastest), expected);
}

TEST(FrameConverter, ReadsWordsAboveTenBitsAsTheLargestCode) {
    for (const ConverterPath path : kPaths) {
        Picture wild(40, 1, SubsamplingMode::Mode444, SampleDepth::Bits10, 0);
        Picture tame(40, 1, SubsamplingMode::Mode444, SampleDepth::Bits10, 0);
        for (int x = 0; x < 40; ++x) {
            wild.SetY(x, 0, 65535 - x);
            wild.SetU(x, 0, 1024 + 900 * x);
            wild.SetV(x, 0, 512);
            tame.SetY(x, 0, 1023);
            tame.SetU(x, 0, 1023);
            tame.SetV(x, 0, 512);
        }
        EXPECT_EQ(Convert(wild.planes, path), Convert(tame.planes, path));
    }
}

TEST(FrameConverter, KeepsGreysGrey) {
    for (const SampleDepth depth : kDepths) {
        const int top = depth == SampleDepth::Bits8 ? 255 : 1023;
        for (const ColorRange range : kRanges) {
            for (const ColorMatrix matrix :
                 {ColorMatrix::BT709, ColorMatrix::SMPTE170M, ColorMatrix::BT2020NCL}) {
                Picture picture(top + 1, 1, SubsamplingMode::Mode422, depth, 0);
                picture.planes.matrix = matrix;
                picture.planes.range = range;
                for (int x = 0; x <= top; ++x) {
                    picture.SetY(x, 0, x);
                    picture.SetU(x / 2, 0, (top + 1) / 2);
                    picture.SetV(x / 2, 0, (top + 1) / 2);
                }
                for (const uint32_t pixel : Convert(picture.planes, ConverterPath::Fastest)) {
                    ASSERT_EQ(pixel & 255, pixel >> 8 & 255);
                    ASSERT_EQ(pixel & 255, pixel >> 16 & 255);
                }
            }
        }
    }
}

class TenBitFrame final : public YUV16FrameBuffer {
public:
    TenBitFrame(const Picture& picture, const ColorSpace& colorSpace)
        : YUV16FrameBuffer(picture.planes.width, picture.planes.height, colorSpace),
          planes_(picture.planes) {}
    void Clear() override {}
    VideoFrameBufferType GetType() const override { return VideoFrameBufferType::YUV422_16; }
    SubsamplingMode GetSubsamplingMode() const override { return planes_.subsampling; }
    int GetStrideY() const override { return planes_.strideY; }
    int GetStrideU() const override { return planes_.strideU; }
    int GetStrideV() const override { return planes_.strideV; }
    const uint16_t* GetDataY() const override { return static_cast<const uint16_t*>(planes_.y); }
    const uint16_t* GetDataU() const override { return static_cast<const uint16_t*>(planes_.u); }
    const uint16_t* GetDataV() const override { return static_cast<const uint16_t*>(planes_.v); }

private:
    YuvPlanes planes_;
};

TEST(FrameConverter, TakesDepthMatrixAndRangeFromTheFrame) {
    Picture picture(21, 4, SubsamplingMode::Mode422, SampleDepth::Bits10, 6);
    picture.FillWithNoise(3);
    const TenBitFrame frame(picture, ColorSpace(ColorMatrix::BT2020NCL, ColorRange::Full,
                                                ColorPrimaries::BT709, ColorTransfer::BT709));
    picture.planes.matrix = ColorMatrix::BT2020NCL;
    picture.planes.range = ColorRange::Full;
    std::vector<uint32_t> pixels(size_t{21} * 4);
    ConvertToArgb(frame, pixels.data(), size_t{21} * 4);
    EXPECT_EQ(pixels, Convert(picture.planes, ConverterPath::Fastest));
}

}  // namespace
}  // namespace Corvanta::Video
