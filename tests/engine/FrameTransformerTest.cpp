#include "engine/webrtc/FrameTransformer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <functional>
#include <limits>
#include <memory>
#include <string>
#include <vector>

#include "engine/logger/Logger.h"
#include "engine/webrtc/OwnedFrames.h"
#include "engine/webrtc/TransferFunctions.h"
#include "platform/Logger.h"
#include "platform/WebRTC.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/TemporaryFolder.h"

namespace Corvanta::Engine {
namespace {

constexpr std::array kTypes{VideoFrameBufferType::RGB,       VideoFrameBufferType::YUV420,
                            VideoFrameBufferType::YUV422,    VideoFrameBufferType::YUV444,
                            VideoFrameBufferType::YUV420_16, VideoFrameBufferType::YUV422_16,
                            VideoFrameBufferType::YUV444_16};

const ColorSpace kSdr(ColorMatrix::BT709, ColorRange::Limited, ColorPrimaries::BT709,
                      ColorTransfer::IEC61966_2_1);
const ColorSpace kHdr(ColorMatrix::BT2020NCL, ColorRange::Limited, ColorPrimaries::BT2020,
                      ColorTransfer::SMPTEST2084);
const ColorSpace kHlg(ColorMatrix::BT2020NCL, ColorRange::Limited, ColorPrimaries::BT2020,
                      ColorTransfer::ARIB_STD_B67);
const ColorSpace kBt601(ColorMatrix::SMPTE170M, ColorRange::Limited, ColorPrimaries::SMPTE170M,
                        ColorTransfer::SMPTE170M);

using Codes = std::array<int, 3>;

int BitsOf(VideoFrameBufferType type) {
    return IsSixteenBit(type) ? 10 : 8;
}

// Codes of a pixel: Y, U, V, or for packed pictures red, green, blue.
Codes ReadPixel(const VideoFrameBuffer& frame, int x, int y) {
    if (const auto* rgb = dynamic_cast<const RGBFrameBuffer*>(&frame)) {
        const uint8_t* pixel = rgb->GetBuffer() + static_cast<ptrdiff_t>(4) * (y * frame.GetWidth() + x);
        return {pixel[2], pixel[1], pixel[0]};
    }
    const auto& planar = dynamic_cast<const PlanarYUVFrameBuffer&>(frame);
    const int cx = planar.GetSubsamplingMode() == SubsamplingMode::Mode444 ? x : x / 2;
    const int cy = planar.GetSubsamplingMode() == SubsamplingMode::Mode420 ? y / 2 : y;
    const auto read = [&](const auto* plane, int stride, int column, int row) {
        return static_cast<int>(
            plane[static_cast<ptrdiff_t>(stride) / static_cast<int>(sizeof(*plane)) * row + column]);
    };
    const auto all = [&](const auto& f) {
        return Codes{read(f.GetDataY(), f.GetStrideY(), x, y), read(f.GetDataU(), f.GetStrideU(), cx, cy),
                     read(f.GetDataV(), f.GetStrideV(), cx, cy)};
    };
    if (const auto* wide = dynamic_cast<const YUV16FrameBuffer*>(&frame)) return all(*wide);
    return all(dynamic_cast<const YUVFrameBuffer&>(frame));
}

void WriteSample(const NewFrame& made, size_t plane, int x, int y, int code) {
    uint8_t* line = made.planes[plane].data + static_cast<ptrdiff_t>(made.planes[plane].stride) * y;
    if (IsSixteenBit(made.frame->GetType())) {
        const auto word = static_cast<uint16_t>(code);
        std::memcpy(line + 2 * static_cast<ptrdiff_t>(x), &word, sizeof(word));
    } else {
        line[x] = static_cast<uint8_t>(code);
    }
}

void WritePixel(const NewFrame& made, int x, int y, const Codes& codes) {
    if (made.frame->GetType() == VideoFrameBufferType::RGB) {
        uint8_t* pixel = made.planes[0].data + static_cast<ptrdiff_t>(4) * (y * made.frame->GetWidth() + x);
        pixel[0] = static_cast<uint8_t>(codes[2]);
        pixel[1] = static_cast<uint8_t>(codes[1]);
        pixel[2] = static_cast<uint8_t>(codes[0]);
        pixel[3] = 255;
        return;
    }
    const SubsamplingMode mode = GetSubsampling(made.frame->GetType());
    WriteSample(made, 0, x, y, codes[0]);
    const int cx = mode == SubsamplingMode::Mode444 ? x : x / 2;
    const int cy = mode == SubsamplingMode::Mode420 ? y / 2 : y;
    WriteSample(made, 1, cx, cy, codes[1]);
    WriteSample(made, 2, cx, cy, codes[2]);
}

NewFrame MakePicture(VideoFrameBufferType type, int width, int height, const ColorSpace& space,
                     const std::function<Codes(int, int)>& paint) {
    NewFrame made = MakeFrame(type, width, height, space);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) WritePixel(made, x, y, paint(x, y));
    }
    return made;
}

// What the codes of a pixel stand for, 0 to 1.
Rgb ToRgb(const Codes& codes, VideoFrameBufferType type, const ColorSpace& space) {
    if (type == VideoFrameBufferType::RGB) return {codes[0] / 255.0, codes[1] / 255.0, codes[2] / 255.0};
    const CodeMap map = MakeCodesToRgb(space.GetMatrix(), space.GetRange(), BitsOf(type));
    Rgb rgb{};
    for (size_t i = 0; i < 3; ++i) {
        rgb[i] = map.factor[i][0] * codes[0] + map.factor[i][1] * codes[1] + map.factor[i][2] * codes[2] +
                 map.offset[i];
    }
    return rgb;
}

// Codes before rounding.
Rgb ToCodes(const Rgb& rgb, VideoFrameBufferType type, const ColorSpace& space) {
    if (type == VideoFrameBufferType::RGB) return {rgb[0] * 255, rgb[1] * 255, rgb[2] * 255};
    const CodeMap map = MakeRgbToCodes(space.GetMatrix(), space.GetRange(), BitsOf(type));
    Rgb codes{};
    for (size_t i = 0; i < 3; ++i) {
        codes[i] =
            map.factor[i][0] * rgb[0] + map.factor[i][1] * rgb[1] + map.factor[i][2] * rgb[2] + map.offset[i];
    }
    return codes;
}

// Colours in and around the gamut, one a pixel.
Codes SweepCodes(int index, VideoFrameBufferType type) {
    const int top = (1 << BitsOf(type)) - 1;
    return {top * (index % 41) / 40, top * (index / 41 % 25) / 24, top * (index / 1025 % 25) / 24};
}
constexpr int kSweepWidth = 41 * 25;
constexpr int kSweepHeight = 25;

struct Errors {
    double largest = 0;
    double mean = 0;
};

// Errors of a conversion over the sweep, in steps of an 8-bit code, against the arithmetic in double
// precision.
Errors MeasureSweep(const ColorSpace& from, const ColorSpace& to, VideoFrameBufferType type, KernelPath path,
                    const std::function<Rgb(const Rgb&)>& convert) {
    const NewFrame source = MakePicture(type, kSweepWidth, kSweepHeight, from,
                                        [&](int x, int y) { return SweepCodes(y * kSweepWidth + x, type); });
    VideoFrameTransformer transformer(path);
    const auto out = transformer.Convert(source.frame.get(), kSweepWidth, kSweepHeight, type, to);
    const double top = (1 << BitsOf(type)) - 1;
    Errors errors;
    for (int y = 0; y < kSweepHeight; ++y) {
        for (int x = 0; x < kSweepWidth; ++x) {
            const Rgb rgb = ToRgb(ReadPixel(*source.frame, x, y), type, from);
            const Rgb wanted = ToCodes(convert(rgb), type, to);
            const Codes got = ReadPixel(*out, x, y);
            for (size_t i = 0; i < 3; ++i) {
                const double error =
                    std::abs(got[i] - std::clamp(wanted[i], 0.0, top)) / (BitsOf(type) == 10 ? 4 : 1);
                errors.largest = std::max(errors.largest, error);
                errors.mean += error / (3.0 * kSweepWidth * kSweepHeight);
            }
        }
    }
    return errors;
}

Errors MeasureSweep(const ColorSpace& from, const ColorSpace& to, VideoFrameBufferType type,
                    KernelPath path) {
    const ExactTransfer exact(from, to);
    return MeasureSweep(from, to, type, path, [&exact](const Rgb& rgb) { return exact.Convert(rgb); });
}

struct Way {
    const char* name;
    ColorSpace from;
    ColorSpace to;
    double largest;  // of a 10-bit conversion, in 8-bit steps, rounding (0.125) included
};

ColorSpace Space(ColorPrimaries primaries, ColorTransfer transfer, ColorMatrix matrix = ColorMatrix::BT709) {
    return {matrix, ColorRange::Limited, primaries, transfer};
}

const std::vector<Way>& GetWays() {
    static const std::vector<Way> ways{
        {"PqToSdr", kHdr, kSdr, 0.20},
        {"HlgToSdr", kHlg, kSdr, 0.20},
        {"HlgToPq", kHlg, kHdr, 0.16},
        {"Bt601ToSdr", kBt601, kSdr, 0.17},
        {"Bt601PalToSdr", Space(ColorPrimaries::BT470BG, ColorTransfer::BT709, ColorMatrix::BT470BG), kSdr,
         0.17},
        {"Bt2020SdrToSdr", Space(ColorPrimaries::BT2020, ColorTransfer::BT2020_10, ColorMatrix::BT2020NCL),
         kSdr, 0.18},
        {"DisplayP3ToSdr", Space(ColorPrimaries::SMPTEST432, ColorTransfer::IEC61966_2_1), kSdr, 0.18},
        {"CinemaP3ToSdr", Space(ColorPrimaries::SMPTEST431, ColorTransfer::Gamma26), kSdr, 0.18},
        {"Gamma28OfBt470MToSdr", Space(ColorPrimaries::BT470M, ColorTransfer::Gamma28, ColorMatrix::FCC),
         kSdr, 0.25},
        {"FilmToSdr", Space(ColorPrimaries::Film, ColorTransfer::Gamma22), kSdr, 0.20},
        {"LinearToSdr", Space(ColorPrimaries::BT709, ColorTransfer::Linear), kSdr, 0.17},
        {"LogToSdr", Space(ColorPrimaries::BT709, ColorTransfer::Log), kSdr, 0.17},
        {"P3PqToPq", Space(ColorPrimaries::SMPTEST432, ColorTransfer::SMPTEST2084), kHdr, 0.60},
        {"SdrToPq", kSdr, kHdr, 0.16},
        {"SdrToHlg", kSdr, kHlg, 0.20},
        {"PqToHlg", kHdr, kHlg, 0.25},
        {"SdrToGamma22", kSdr, Space(ColorPrimaries::BT709, ColorTransfer::Gamma22), 0.17},
    };
    return ways;
}

class EveryWay : public testing::TestWithParam<Way> {};

TEST_P(EveryWay, StaysByTheArithmeticInDoublePrecision) {
    for (const KernelPath path : {KernelPath::Fastest, KernelPath::Portable}) {
        const Errors errors =
            MeasureSweep(GetParam().from, GetParam().to, VideoFrameBufferType::YUV444_16, path);
        EXPECT_LE(errors.largest, GetParam().largest);
        EXPECT_LE(errors.mean, 0.08);  // rounding alone gives 0.0625
    }
}

TEST_P(EveryWay, IsRightForEightBitsAndPackedPixels) {
    for (const auto type : {VideoFrameBufferType::YUV444, VideoFrameBufferType::RGB}) {
        EXPECT_LE(MeasureSweep(GetParam().from, GetParam().to, type, KernelPath::Fastest).largest,
                  0.5 + GetParam().largest);
    }
}

INSTANTIATE_TEST_SUITE_P(FrameTransformer, EveryWay, testing::ValuesIn(GetWays()),
                         [](const auto& each) { return std::string(each.param.name); });

TEST(FrameTransformer, KeepsGreysGreyAndInOrder) {
    for (const ColorSpace& from : {kHdr, kHlg, kBt601}) {
        const NewFrame source = MakePicture(VideoFrameBufferType::YUV420_16, 1024, 2, from, [](int x, int) {
            return Codes{x, 512, 512};
        });
        VideoFrameTransformer transformer;
        const auto out =
            transformer.Convert(source.frame.get(), 1024, 2, VideoFrameBufferType::YUV420_16, kSdr);
        int previous = 0;
        for (int x = 0; x < 1024; ++x) {
            const Codes codes = ReadPixel(*out, x, 0);
            ASSERT_EQ(codes[1], 512) << x;
            ASSERT_EQ(codes[2], 512) << x;
            ASSERT_GE(codes[0], previous) << x;
            previous = codes[0];
        }
        EXPECT_EQ(ReadPixel(*out, 0, 0)[0], 64);
        EXPECT_EQ(ReadPixel(*out, 1023, 0)[0], 940);
    }
}

TEST(FrameTransformer, BringsHdrWhiteToABrightGreyAndItsPeakToWhite) {
    // 203 cd/m2 is code 64 + 876 * 0.5807 = 573, 1000 cd/m2 code 723.
    const NewFrame source = MakePicture(VideoFrameBufferType::YUV444_16, 2, 1, kHdr, [](int x, int) {
        return Codes{x == 0 ? 573 : 723, 512, 512};
    });
    VideoFrameTransformer transformer;
    const auto out = transformer.Convert(source.frame.get(), 2, 1, VideoFrameBufferType::RGB, kSdr);
    EXPECT_NEAR(ReadPixel(*out, 0, 0)[0], 229, 1);
    EXPECT_EQ(ReadPixel(*out, 1, 0)[0], 255);
}

TEST(FrameTransformer, TakesThePeakFromTheMetadataOfEachFrame) {
    ColorSpace dim = kHdr;
    HDRMetadata metadata;
    metadata.maxContentLightLevelNits = 300;
    dim.SetHDRMetadata(metadata);
    VideoFrameTransformer transformer;
    const auto white = [&](const ColorSpace& space) {
        const NewFrame source = MakePicture(VideoFrameBufferType::YUV444_16, 1, 1, space, [](int, int) {
            return Codes{573, 512, 512};
        });
        return ReadPixel(*transformer.Convert(source.frame.get(), 1, 1, VideoFrameBufferType::RGB, kSdr), 0,
                         0)[0];
    };
    const int usual = white(kHdr);
    EXPECT_GT(white(dim), usual + 5);
    EXPECT_EQ(white(kHdr), usual);
}

TEST(FrameTransformer, CopiesSamplesThatMeanTheSameAlready) {
    const ColorSpace unspecified;
    for (const VideoFrameBufferType type : kTypes) {
        const NewFrame source = MakePicture(type, 37, 11, unspecified, [](int x, int y) {
            return Codes{(x * 7 + y) & 255, (x * 3) & 255, (y * 5) & 255};
        });
        VideoFrameTransformer transformer;
        const auto out = transformer.Convert(source.frame.get(), 37, 11, type, kSdr);
        ASSERT_NE(out, nullptr);
        EXPECT_NE(out, source.frame);
        EXPECT_EQ(out->GetColorSpace(), kSdr);
        EXPECT_EQ(out->GetType(), type);
        for (int y = 0; y < 11; ++y) {
            for (int x = 0; x < 37; ++x) ASSERT_EQ(ReadPixel(*out, x, y), ReadPixel(*source.frame, x, y));
        }
    }
}

TEST(FrameTransformer, HonoursRangeAndMatrixOfTheSource) {
    const ColorSpace full(ColorMatrix::SMPTE170M, ColorRange::Full, ColorPrimaries::BT709,
                          ColorTransfer::BT709);
    for (const auto type : {VideoFrameBufferType::YUV444, VideoFrameBufferType::YUV444_16}) {
        const Errors errors =
            MeasureSweep(full, kSdr, type, KernelPath::Fastest, [](const Rgb& rgb) { return rgb; });
        EXPECT_LE(errors.largest, 0.51);
    }
    const NewFrame source = MakePicture(VideoFrameBufferType::YUV444, 2, 1, full, [](int x, int) {
        return Codes{255 * x, 128, 128};
    });
    VideoFrameTransformer transformer;
    const auto out = transformer.Convert(source.frame.get(), 2, 1, VideoFrameBufferType::YUV444, kSdr);
    EXPECT_EQ(ReadPixel(*out, 0, 0), (Codes{16, 128, 128}));
    EXPECT_EQ(ReadPixel(*out, 1, 0), (Codes{235, 128, 128}));
}

TEST(FrameTransformer, ConvertsBetweenAllTypesAtEverySize) {
    // A flat picture stays flat, to its last pixel, whatever the vectors of the machine.
    for (const VideoFrameBufferType from : kTypes) {
        const Codes colour = from == VideoFrameBufferType::RGB ? Codes{200, 120, 60}
                             : IsSixteenBit(from)              ? Codes{520, 440, 600}
                                                               : Codes{130, 110, 150};
        for (const VideoFrameBufferType to : kTypes) {
            const Rgb wanted =
                ToCodes(ExactTransfer(kBt601, kSdr).Convert(ToRgb(colour, from, kBt601)), to, kSdr);
            for (const int width : {1, 2, 3, 7, 8, 9, 15, 16, 17, 31, 33, 63, 65, 511, 513, 1030}) {
                for (const int height : {1, 2, 3}) {
                    const NewFrame source =
                        MakePicture(from, width, height, kBt601, [&](int, int) { return colour; });
                    for (const KernelPath path : {KernelPath::Fastest, KernelPath::Portable}) {
                        VideoFrameTransformer transformer(path);
                        const auto out = transformer.Convert(source.frame.get(), width, height, to, kSdr);
                        ASSERT_EQ(out->GetType(), to);
                        for (int y = 0; y < height; ++y) {
                            for (int x = 0; x < width; ++x) {
                                const Codes got = ReadPixel(*out, x, y);
                                for (size_t i = 0; i < 3; ++i) {
                                    ASSERT_LE(std::abs(got[i] - wanted[i]), 0.65)
                                        << width << "x" << height << " at " << x << ", " << y;
                                }
                            }
                        }
                    }
                }
            }
        }
    }
}

TEST(FrameTransformer, AveragesChromaOverItsBlock) {
    const ColorSpace other(ColorMatrix::BT2020NCL, ColorRange::Full, ColorPrimaries::BT709,
                           ColorTransfer::BT709);
    const NewFrame source = MakePicture(VideoFrameBufferType::RGB, 3, 3, other, [](int x, int y) {
        return Codes{(x + y) % 2 * 200, 100, 50};
    });
    VideoFrameTransformer transformer;
    const auto out = transformer.Convert(source.frame.get(), 3, 3, VideoFrameBufferType::YUV420, kSdr);
    const Rgb middle = ToCodes({100 / 255.0, 100 / 255.0, 50 / 255.0}, VideoFrameBufferType::YUV420, kSdr);
    EXPECT_NEAR(ReadPixel(*out, 0, 0)[2], middle[2], 0.6);
    // The last column and row have no neighbour.
    const Rgb corner = ToCodes({0, 100 / 255.0, 50 / 255.0}, VideoFrameBufferType::YUV420, kSdr);
    EXPECT_NEAR(ReadPixel(*out, 2, 2)[2], corner[2], 0.6);
}

// Planes of exactly the size that the frame says, at any address, so that every read beyond them is seen.
class TightFrame final : public YUV16FrameBuffer {
public:
    TightFrame(int width, int height, SubsamplingMode mode, int padding)
        : YUV16FrameBuffer(width, height, kHdr), mode_(mode) {
        const int chromaWidth = mode == SubsamplingMode::Mode444 ? width : (width + 1) / 2;
        const bool halfHeight = mode != SubsamplingMode::Mode444 && mode != SubsamplingMode::Mode422;
        const int chromaHeight = halfHeight ? (height + 1) / 2 : height;
        strides_ = {2 * width + padding, 2 * chromaWidth + padding, 2 * chromaWidth + 2 * padding};
        for (size_t i = 0; i < 3; ++i) {
            const int rows = i == 0 ? height : chromaHeight;
            planes_[i].assign(static_cast<size_t>(strides_[i]) * static_cast<size_t>(rows - 1) +
                                  size_t{2} * static_cast<size_t>(i == 0 ? width : chromaWidth),
                              2);
        }
    }
    void Clear() override {}
    VideoFrameBufferType GetType() const override { return VideoFrameBufferType::YUV420_16; }
    SubsamplingMode GetSubsamplingMode() const override { return mode_; }
    int GetStrideY() const override { return strides_[0]; }
    int GetStrideU() const override { return strides_[1]; }
    int GetStrideV() const override { return strides_[2]; }
    const uint16_t* GetDataY() const override { return Data(0); }
    const uint16_t* GetDataU() const override { return Data(1); }
    const uint16_t* GetDataV() const override { return Data(2); }

private:
    [[nodiscard]] const uint16_t* Data(size_t plane) const {
        return reinterpret_cast<const uint16_t*>(planes_[plane].data());
    }
    SubsamplingMode mode_;
    std::array<int, 3> strides_{};
    std::array<std::vector<uint8_t>, 3> planes_;
};

TEST(FrameTransformer, ReadsNothingBeyondThePlanes) {
    VideoFrameTransformer transformer;
    for (const int mode : {0, 1, 2, 9}) {
        for (const int width : {1, 5, 16, 31, 32, 33, 64, 100, 515}) {
            for (const int padding : {0, 1, 6}) {
                const TightFrame frame(width, 3, static_cast<SubsamplingMode>(mode), padding);
                const auto out = transformer.Convert(&frame, width, 3, VideoFrameBufferType::YUV420_16, kSdr);
                ASSERT_NE(out, nullptr);
                ASSERT_EQ(ReadPixel(*out, 0, 0), ReadPixel(*out, width - 1, 2));
                ASSERT_NE(transformer.Convert(&frame, width + 9, 5, VideoFrameBufferType::YUV422, kSdr),
                          nullptr);
            }
        }
    }
}

TEST(FrameTransformer, ScalesToTheSizeAskedFor) {
    for (const VideoFrameBufferType type : kTypes) {
        const NewFrame source = MakePicture(type, 40, 30, kSdr, [](int x, int) {
            return Codes{40 + 4 * x, 128, 128};
        });
        for (const auto& [width, height] :
             {std::pair(80, 60), std::pair(13, 7), std::pair(1, 1), std::pair(39, 90)}) {
            VideoFrameTransformer transformer;
            const auto out = transformer.Convert(source.frame.get(), width, height, type, kSdr);
            ASSERT_NE(out, nullptr);
            ASSERT_EQ(out->GetWidth(), width);
            ASSERT_EQ(out->GetHeight(), height);
            for (int x = 0; x < width; ++x) {
                const double centre = std::clamp((x + 0.5) * 40 / width - 0.5, 0.0, 39.0);
                EXPECT_NEAR(ReadPixel(*out, x, height / 2)[0], 40 + 4 * centre, 3) << width << " at " << x;
                EXPECT_EQ(ReadPixel(*out, x, height - 1)[1], 128);
            }
        }
    }
}

TEST(FrameTransformer, UsesTheMachinesVectorsWhereItHasThemAndNowhereElse) {
    bool hasVectors = false;
#if defined(__x86_64__) && defined(__GNUC__)
    hasVectors = __builtin_cpu_supports("avx2") != 0 && __builtin_cpu_supports("fma") != 0;
#endif
    const bool usesThem =
        &GetTransferKernels(KernelPath::Fastest) != &GetTransferKernels(KernelPath::Portable);
    EXPECT_EQ(usesThem, hasVectors);
}

TEST(FrameTransformer, RecyclesTheMemoryOfItsFramesAndIsOutlivedByThem) {
    const NewFrame source = MakePicture(VideoFrameBufferType::YUV420, 64, 64, kBt601, [](int x, int) {
        return Codes{x, 128, 128};
    });
    auto transformer = std::make_unique<VideoFrameTransformer>();
    const auto convert = [&] {
        return transformer->Convert(source.frame.get(), 64, 64, VideoFrameBufferType::YUV420, kSdr);
    };
    auto first = convert();
    const uint8_t* memory = dynamic_cast<const YUVFrameBuffer&>(*first).GetDataY();
    first.reset();
    auto second = convert();
    EXPECT_EQ(dynamic_cast<const YUVFrameBuffer&>(*second).GetDataY(), memory);
    transformer.reset();
    second->Clear();
    EXPECT_EQ(ReadPixel(*second, 63, 63), (Codes{16, 128, 128}));
}

// What a frame may wrongly say of itself.
class LyingFrame final : public YUVFrameBuffer {
public:
    LyingFrame(int width, int height) : YUVFrameBuffer(width, height, kBt601) {}
    void Clear() override {}
    VideoFrameBufferType GetType() const override { return type; }
    SubsamplingMode GetSubsamplingMode() const override { return SubsamplingMode::Mode420; }
    int GetStrideY() const override { return strideY; }
    int GetStrideU() const override { return strideU; }
    int GetStrideV() const override { return strideU; }
    const uint8_t* GetDataY() const override { return &sample; }
    const uint8_t* GetDataU() const override { return hasU ? &sample : nullptr; }
    const uint8_t* GetDataV() const override { return &sample; }

    VideoFrameBufferType type = VideoFrameBufferType::YUV420;
    int strideY = 16;
    int strideU = 8;
    bool hasU = true;

private:
    uint8_t sample = 0;
};

class BadFrames : public testing::Test {
protected:
    BadFrames() { ConfigureLog(kLogInformation, folder.File("log")); }
    ~BadFrames() override { ConfigureLog(kLogInformation, {}); }

    // One log line and no frame.
    void ExpectRefusal(const std::shared_ptr<VideoFrameBuffer>& frame, int width = 16, int height = 16,
                       VideoFrameBufferType type = VideoFrameBufferType::YUV420) {
        const size_t before = CountLines();
        EXPECT_EQ(WebRTC_ConvertFrame(transformer, frame, width, height, type, kSdr), nullptr);
        EXPECT_TRUE(Eventually([&] { return CountLines() > before; }));
        EXPECT_EQ(CountLines(), before + 1);
    }
    [[nodiscard]] size_t CountLines() const {
        const std::string log = folder.Read("log");
        return static_cast<size_t>(std::count(log.begin(), log.end(), '\n'));
    }

    TemporaryFolder folder;
    VideoFrameTransformer* transformer = WebRTC_GetFrameTransformerInstance();
    struct Deleter {
        VideoFrameTransformer* transformer;
        ~Deleter() { WebRTC_DeleteFrameTransformerInstance(transformer); }
    } deleter{transformer};
};

TEST_F(BadFrames, AreRefusedWithOneLogLine) {
    ExpectRefusal(nullptr);
    for (const auto& [width, height] : {std::pair(0, 16), std::pair(16, -5), std::pair(16385, 16),
                                        std::pair(16, std::numeric_limits<int>::max())}) {
        const auto frame = std::make_shared<LyingFrame>(width, height);
        frame->strideY = frame->strideU = std::numeric_limits<int>::max();
        ExpectRefusal(frame);
    }
    auto frame = std::make_shared<LyingFrame>(16, 16);
    frame->strideY = 15;
    ExpectRefusal(frame);
    frame->strideY = -16;
    ExpectRefusal(frame);
    frame = std::make_shared<LyingFrame>(16, 16);
    frame->hasU = false;
    ExpectRefusal(frame);
    frame = std::make_shared<LyingFrame>(16, 16);
    for (const int type : {0, 4, 7, 1000, -1}) {
        frame->type = static_cast<VideoFrameBufferType>(type);
        ExpectRefusal(frame);
    }
}

TEST_F(BadFrames, AreNotMadeEither) {
    const auto frame = MakePicture(VideoFrameBufferType::YUV420, 16, 16, kBt601, [](int, int) {
                           return Codes{99, 128, 128};
                       }).frame;
    ExpectRefusal(frame, 0, 16);
    ExpectRefusal(frame, 16, 20000);
    ExpectRefusal(frame, 16, 16, static_cast<VideoFrameBufferType>(7));
    EXPECT_NE(WebRTC_ConvertFrame(transformer, frame, 16, 16, VideoFrameBufferType::RGB, kSdr), nullptr);
    EXPECT_EQ(WebRTC_ConvertFrame(nullptr, frame, 16, 16, VideoFrameBufferType::RGB, kSdr), nullptr);
    WebRTC_DeleteFrameTransformerInstance(nullptr);
}

TEST(FrameTransformer, SurvivesAFrameThatIsAnotherOneEveryTime) {
    VideoFrameTransformer transformer;
    const std::array spaces{kHdr, kHlg, kBt601, kSdr, ColorSpace()};
    for (int i = 0; i < 60; ++i) {
        const auto index = static_cast<size_t>(i);
        const VideoFrameBufferType type = kTypes[index % kTypes.size()];
        const NewFrame source = MakePicture(type, 1 + i * 3 % 50, 1 + i * 7 % 40,
                                            spaces[index % spaces.size()], [](int x, int y) {
                                                return Codes{x, y, 128};
                                            });
        const auto out =
            transformer.Convert(source.frame.get(), source.frame->GetWidth(), source.frame->GetHeight(),
                                kTypes[(index / 2) % kTypes.size()], i % 2 == 0 ? kSdr : kHdr);
        ASSERT_NE(out, nullptr);
    }
}

}  // namespace
}  // namespace Corvanta::Engine
