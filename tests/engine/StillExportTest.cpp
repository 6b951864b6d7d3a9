#include "engine/webrtc/StillExport.h"

#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <thread>
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
const ColorSpace kBt709(LegacyColorSpace::BT709);

// A flat picture.
NewFrame MakeFlat(VideoFrameBufferType type, int width, int height, const ColorSpace& space,
                  const std::array<int, 3>& codes) {
    NewFrame made = MakeFrame(type, width, height, space);
    for (size_t i = 0; i < 3; ++i) {
        for (int row = 0; row < made.planes[i].rows; ++row) {
            uint8_t* line = made.planes[i].data + static_cast<ptrdiff_t>(made.planes[i].stride) * row;
            if (type == VideoFrameBufferType::RGB) {
                for (int x = 0; x < width; ++x) {
                    for (int part = 0; part < 3; ++part) {
                        line[4 * x + part] = static_cast<uint8_t>(codes[static_cast<size_t>(2 - part)]);
                    }
                }
            } else if (IsSixteenBit(type)) {
                for (int at = 0; at < made.planes[i].rowBytes; at += 2) {
                    const auto word = static_cast<uint16_t>(codes[i]);
                    std::memcpy(line + at, &word, sizeof(word));
                }
            } else {
                std::memset(line, codes[i], static_cast<size_t>(made.planes[i].rowBytes));
            }
        }
    }
    return made;
}

struct Png {
    unsigned width = 0;
    unsigned height = 0;
    int bits = 0;
    // Samples red, green, blue of all pixels.
    std::vector<int> samples;
    bool hasSrgb = false;
    double gamma = 0;
    std::array<double, 8> chromaticities{};  // white, red, green, blue
    std::optional<std::array<int, 4>> codePoints;
};

std::optional<Png> ReadPng(const std::filesystem::path& path) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
    if (file == nullptr) return std::nullopt;
    png_structp reader = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(reader);
    png_set_keep_unknown_chunks(reader, PNG_HANDLE_CHUNK_ALWAYS, nullptr, 0);
    png_init_io(reader, file.get());
    png_read_png(reader, info, PNG_TRANSFORM_IDENTITY, nullptr);
    Png png;
    png.width = png_get_image_width(reader, info);
    png.height = png_get_image_height(reader, info);
    png.bits = png_get_bit_depth(reader, info);
    EXPECT_EQ(png_get_color_type(reader, info), PNG_COLOR_TYPE_RGB);
    const png_bytepp rows = png_get_rows(reader, info);
    for (unsigned y = 0; y < png.height; ++y) {
        for (size_t i = 0; i < size_t{png.width} * 3; ++i) {
            png.samples.push_back(png.bits == 8 ? rows[y][i] : rows[y][2 * i] << 8 | rows[y][2 * i + 1]);
        }
    }
    int intent = 0;
    png.hasSrgb = png_get_sRGB(reader, info, &intent) != 0;
    png_get_gAMA(reader, info, &png.gamma);
    auto& c = png.chromaticities;
    png_get_cHRM(reader, info, &c[0], &c[1], &c[2], &c[3], &c[4], &c[5], &c[6], &c[7]);
    png_unknown_chunkp chunks = nullptr;
    const int count = png_get_unknown_chunks(reader, info, &chunks);
    for (int i = 0; i < count; ++i) {
        if (std::strcmp(reinterpret_cast<const char*>(chunks[i].name), "cICP") != 0) continue;
        EXPECT_EQ(chunks[i].size, 4U);
        png.codePoints = {chunks[i].data[0], chunks[i].data[1], chunks[i].data[2], chunks[i].data[3]};
    }
    png_destroy_read_struct(&reader, &info, nullptr);
    return png;
}

class StillExport : public testing::Test {
protected:
    StillExport() { ConfigureLog(kLogInformation, folder.File("log")); }
    ~StillExport() override { ConfigureLog(kLogInformation, {}); }

    // Written through the exported function and read back.
    std::optional<Png> Export(const NewFrame& made) {
        const std::string path = folder.File("exportedRemoteFrame").string();
        if (!WebRTC_ExportStillImageFromVideoFrameBuffer(path, made.frame)) return std::nullopt;
        return ReadPng(path + ".png");
    }
    void ExpectFailure(const std::string& path, const std::shared_ptr<VideoFrameBuffer>& frame) {
        const size_t before = CountLines();
        EXPECT_FALSE(WebRTC_ExportStillImageFromVideoFrameBuffer(path, frame));
        EXPECT_TRUE(Eventually([&] { return CountLines() > before; }));
        EXPECT_EQ(CountLines(), before + 1);
    }
    [[nodiscard]] size_t CountLines() const {
        const std::string log = folder.Read("log");
        return static_cast<size_t>(std::count(log.begin(), log.end(), '\n'));
    }
    // Other than the log.
    [[nodiscard]] size_t CountFiles() const {
        size_t count = 0;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path)) {
            if (entry.path().filename() != "log") ++count;
        }
        return count;
    }

    TemporaryFolder folder;
};

TEST_F(StillExport, WritesEightBitsForEightBitFramesAndSixteenForTenBitOnes) {
    for (const VideoFrameBufferType type : kTypes) {
        const auto png = Export(MakeFlat(type, 7, 5, kBt709, {100, 100, 100}));
        ASSERT_TRUE(png);
        EXPECT_EQ(png->width, 7U);
        EXPECT_EQ(png->height, 5U);
        EXPECT_EQ(png->bits, IsSixteenBit(type) ? 16 : 8);
    }
    EXPECT_EQ(CountFiles(), 1U);
}

TEST_F(StillExport, ConvertsByTheFramesOwnMatrixAndRange) {
    for (const VideoFrameBufferType type : kTypes) {
        if (type == VideoFrameBufferType::RGB) continue;
        for (const ColorMatrix matrix : {ColorMatrix::BT709, ColorMatrix::SMPTE170M, ColorMatrix::BT2020NCL,
                                         ColorMatrix::RGB, ColorMatrix::YCoCg}) {
            for (const ColorRange range : {ColorRange::Limited, ColorRange::Full, ColorRange::Unspecified}) {
                const int step = IsSixteenBit(type) ? 4 : 1;
                const std::array<int, 3> codes{120 * step, 140 * step, 110 * step};
                const auto png = Export(
                    MakeFlat(type, 3, 3,
                             ColorSpace(matrix, range, ColorPrimaries::BT709, ColorTransfer::BT709), codes));
                ASSERT_TRUE(png);
                const CodeMap map = MakeCodesToRgb(matrix, range, IsSixteenBit(type) ? 10 : 8);
                const double top = png->bits == 8 ? 255 : 65535;
                for (size_t at = 0; at < png->samples.size(); ++at) {
                    const auto& factor = map.factor[at % 3];
                    const double exact = factor[0] * codes[0] + factor[1] * codes[1] + factor[2] * codes[2] +
                                         map.offset[at % 3];
                    ASSERT_NEAR(png->samples[at], exact * top, 0.501);
                }
            }
        }
    }
}

TEST_F(StillExport, KeepsPackedPixelsAsTheyAre) {
    const auto png = Export(MakeFlat(VideoFrameBufferType::RGB, 2, 2, kBt709, {10, 200, 77}));
    ASSERT_TRUE(png);
    EXPECT_EQ(png->samples, (std::vector<int>{10, 200, 77, 10, 200, 77, 10, 200, 77, 10, 200, 77}));
}

TEST_F(StillExport, NamesSrgbForBt709) {
    for (const ColorSpace& space : {kBt709, ColorSpace()}) {
        const auto png = Export(MakeFlat(VideoFrameBufferType::YUV420, 4, 4, space, {100, 128, 128}));
        ASSERT_TRUE(png);
        EXPECT_TRUE(png->hasSrgb);
        EXPECT_NEAR(png->gamma, 0.45455, 1e-5);
        EXPECT_NEAR(png->chromaticities[2], 0.64, 1e-4);
        EXPECT_FALSE(png->codePoints);
    }
}

TEST_F(StillExport, NamesGammaAndPrimariesOfOtherSdrSpaces) {
    const ColorSpace space(ColorMatrix::BT709, ColorRange::Limited, ColorPrimaries::SMPTEST432,
                           ColorTransfer::Gamma28);
    const auto png = Export(MakeFlat(VideoFrameBufferType::YUV420, 4, 4, space, {100, 128, 128}));
    ASSERT_TRUE(png);
    EXPECT_FALSE(png->hasSrgb);
    EXPECT_NEAR(png->gamma, 1 / 2.8, 1e-5);
    EXPECT_NEAR(png->chromaticities[0], 0.3127, 1e-4);
    EXPECT_NEAR(png->chromaticities[2], 0.680, 1e-4);
    EXPECT_NEAR(png->chromaticities[5], 0.690, 1e-4);
    EXPECT_FALSE(png->codePoints);
}

TEST_F(StillExport, NamesHdrByItsCodePoints) {
    for (const ColorTransfer transfer : {ColorTransfer::SMPTEST2084, ColorTransfer::ARIB_STD_B67}) {
        const ColorSpace space(ColorMatrix::BT2020NCL, ColorRange::Limited, ColorPrimaries::BT2020, transfer);
        const auto png = Export(MakeFlat(VideoFrameBufferType::YUV420_16, 4, 4, space, {500, 512, 512}));
        ASSERT_TRUE(png);
        ASSERT_TRUE(png->codePoints);
        EXPECT_EQ(*png->codePoints, (std::array<int, 4>{9, static_cast<int>(transfer), 0, 1}));
        EXPECT_FALSE(png->hasSrgb);
        EXPECT_EQ(png->gamma, 0);
    }
}

TEST_F(StillExport, ReplacesAnEarlierStill) {
    ASSERT_TRUE(Export(MakeFlat(VideoFrameBufferType::RGB, 2, 2, kBt709, {1, 2, 3})));
    const auto png = Export(MakeFlat(VideoFrameBufferType::RGB, 1, 1, kBt709, {4, 5, 6}));
    ASSERT_TRUE(png);
    EXPECT_EQ(png->samples, (std::vector<int>{4, 5, 6}));
    EXPECT_EQ(CountFiles(), 1U);
}

TEST_F(StillExport, FailsWithOneLogLineWhereNothingCanBeWritten) {
    const auto frame = MakeFlat(VideoFrameBufferType::YUV420, 4, 4, kBt709, {100, 128, 128}).frame;
    ExpectFailure((folder.path / "missing" / "still").string(), frame);
    // A folder stands where the file should go.
    std::filesystem::create_directories(folder.path / "still.png" / "inside");
    ExpectFailure(folder.File("still").string(), frame);
    EXPECT_EQ(CountFiles(), 1U);
}

TEST_F(StillExport, FailsWithOneLogLineWhenTheDiskIsFull) {
    ASSERT_TRUE(std::filesystem::is_character_file("/dev/full")) << "a device that takes nothing is needed";
    // Whatever number the unfinished file gets, its name is a link to the device that takes nothing.
    const auto frame = MakeFlat(VideoFrameBufferType::RGB, 400, 400, kBt709, {1, 2, 3}).frame;
    for (int i = 0; i < 1000; ++i) {
        std::filesystem::create_symlink("/dev/full", folder.File("still.png." + std::to_string(i) + ".part"));
    }
    ExpectFailure(folder.File("still").string(), frame);
    EXPECT_FALSE(std::filesystem::exists(folder.File("still.png")));
}

TEST_F(StillExport, RefusesAFrameThatCannotBeRead) {
    ExpectFailure(folder.File("still").string(), nullptr);
    class Hollow final : public RGBFrameBuffer {
    public:
        Hollow() : RGBFrameBuffer(4, 4, kBt709) {}
        void Clear() override {}
        VideoFrameBufferType GetType() const override { return VideoFrameBufferType::RGB; }
        const uint8_t* GetBuffer() const override { return nullptr; }
    };
    ExpectFailure(folder.File("still").string(), std::make_shared<Hollow>());
    EXPECT_EQ(CountFiles(), 0U);
}

TEST_F(StillExport, IsWholeWhenSeveralThreadsWriteTheSameName) {
    const std::string path = folder.File("still").string();
    std::vector<std::thread> threads;
    threads.reserve(4);
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([&path, thread] {
            const NewFrame made =
                MakeFlat(VideoFrameBufferType::RGB, 64, 64, kBt709, {thread, thread, thread});
            for (int i = 0; i < 10; ++i)
                EXPECT_TRUE(WebRTC_ExportStillImageFromVideoFrameBuffer(path, made.frame));
        });
    }
    for (std::thread& thread : threads) thread.join();
    const auto png = ReadPng(path + ".png");
    ASSERT_TRUE(png);
    EXPECT_EQ(std::count(png->samples.begin(), png->samples.end(), png->samples[0]), 64 * 64 * 3);
    EXPECT_EQ(CountFiles(), 1U);
}

}  // namespace
}  // namespace Corvanta::Engine
