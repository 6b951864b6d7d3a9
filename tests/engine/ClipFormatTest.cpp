// Files of every format that a frame object can show, from the file to the library's sink.
#include <gtest/gtest.h>

#include <array>
#include <chrono>
#include <cmath>
#include <cstdint>
#include <mutex>
#include <ostream>
#include <string>
#include <vector>

#include "platform/WebRTC.h"
#include "tests/engine/ClipFile.h"
#include "tests/engine/Eventually.h"
#include "tests/engine/RoomVisitor.h"

namespace Corvanta::Engine {
namespace {

using Sample3 = std::array<double, 3>;

// The samples in the picture's middle, Y, U, V or blue, green, red, as 8-bit values with fractions.
Sample3 Middle(const VideoFrameBuffer& frame) {
    const int x = frame.GetWidth() / 2;
    const int y = frame.GetHeight() / 2;
    if (const auto* packed = dynamic_cast<const RGBFrameBuffer*>(&frame)) {
        const uint8_t* pixel = packed->GetBuffer() + (y * frame.GetWidth() + x) * 4;
        return {double(pixel[0]), double(pixel[1]), double(pixel[2])};
    }
    const auto& planar = dynamic_cast<const PlanarYUVFrameBuffer&>(frame);
    const int chromaX = planar.GetSubsamplingMode() == SubsamplingMode::Mode444 ? x : x / 2;
    const int chromaY = planar.GetSubsamplingMode() == SubsamplingMode::Mode420 ? y / 2 : y;
    if (const auto* yuv = dynamic_cast<const YUVFrameBuffer*>(&frame)) {
        return {double(yuv->GetDataY()[y * yuv->GetStrideY() + x]),
                double(yuv->GetDataU()[chromaY * yuv->GetStrideU() + chromaX]),
                double(yuv->GetDataV()[chromaY * yuv->GetStrideV() + chromaX])};
    }
    const auto& deep = dynamic_cast<const YUV16FrameBuffer&>(frame);
    return {deep.GetDataY()[y * deep.GetStrideY() / 2 + x] / 4.0,
            deep.GetDataU()[chromaY * deep.GetStrideU() / 2 + chromaX] / 4.0,
            deep.GetDataV()[chromaY * deep.GetStrideV() / 2 + chromaX] / 4.0};
}

struct Clip {
    const char* name;
    const char* file;
    const char* output;
    VideoFrameBufferType type;
    ColorSpace color;
    // Of 0xC04020 by the clip's matrix and range.
    Sample3 middle;
};

void PrintTo(const Clip& clip, std::ostream* stream) {
    *stream << clip.name;
}

constexpr ColorSpace Tagged(ColorMatrix matrix, ColorRange range = ColorRange::Limited,
                            ColorPrimaries primaries = ColorPrimaries::BT709,
                            ColorTransfer transfer = ColorTransfer::BT709) {
    return {matrix, range, primaries, transfer};
}

// 0xC04020 in code values. BT.601: Y' = 0.299 R + 0.587 G + 0.114 B, and so on.
constexpr Sample3 kBt601{100.7, 95.0, 186.5};
constexpr Sample3 kBt601Full{98.6, 90.4, 194.6};
constexpr Sample3 kBt709{92.4, 101.1, 185.5};
constexpr Sample3 kBt709Full{88.9, 97.3, 193.5};
constexpr Sample3 kBt2020{98.2, 98.3, 185.4};
constexpr Sample3 kPacked{32, 64, 192};

const std::vector<Clip> kClips{
    {"H264", "clip.mp4",
     "-vf scale=out_color_matrix=bt709,format=yuv420p -c:v libx264 -color_primaries bt709 "
     "-color_trc bt709 -colorspace bt709 -color_range tv",
     VideoFrameBufferType::YUV420, Tagged(ColorMatrix::BT709), kBt709},
    {"H264Untagged", "clip.mp4", "-c:v libx264 -pix_fmt yuv420p", VideoFrameBufferType::YUV420,
     Tagged(ColorMatrix::SMPTE170M), kBt601},
    {"H264FullRange", "clip.mp4",
     "-vf scale=out_color_matrix=bt709:out_range=full,format=yuv420p -c:v libx264 -color_primaries bt709 "
     "-color_trc bt709 -colorspace bt709 -color_range pc",
     VideoFrameBufferType::YUV420, Tagged(ColorMatrix::BT709, ColorRange::Full), kBt709Full},
    {"H264Subsampling422", "clip.mp4", "-c:v libx264 -pix_fmt yuv422p", VideoFrameBufferType::YUV422,
     Tagged(ColorMatrix::SMPTE170M), kBt601},
    {"H264Subsampling444", "clip.mp4", "-c:v libx264 -pix_fmt yuv444p", VideoFrameBufferType::YUV444,
     Tagged(ColorMatrix::SMPTE170M), kBt601},
    {"H264Rgb", "clip.mp4", "-c:v libx264rgb -qp 0", VideoFrameBufferType::RGB,
     Tagged(ColorMatrix::RGB, ColorRange::Full, ColorPrimaries::BT709, ColorTransfer::IEC61966_2_1), kPacked},
    {"Vp9TenBit", "clip.webm", "-c:v libvpx-vp9 -deadline realtime -pix_fmt yuv420p10le",
     VideoFrameBufferType::YUV420_16, Tagged(ColorMatrix::SMPTE170M), kBt601},
    {"Vp9Pq", "clip.webm",
     "-vf scale=out_color_matrix=bt2020,format=yuv420p10le -c:v libvpx-vp9 -deadline realtime "
     "-color_primaries bt2020 -color_trc smpte2084 -colorspace bt2020nc -color_range tv",
     VideoFrameBufferType::YUV420_16,
     Tagged(ColorMatrix::BT2020NCL, ColorRange::Limited, ColorPrimaries::BT2020, ColorTransfer::SMPTEST2084),
     kBt2020},
    {"ProRes422", "clip.mov",
     "-vf scale=out_color_matrix=bt709,format=yuv422p10le -c:v prores_ks -profile:v 3 -color_primaries bt709 "
     "-color_trc bt709 -colorspace bt709",
     VideoFrameBufferType::YUV422_16, Tagged(ColorMatrix::BT709), kBt709},
    {"ProRes4444WithAlpha", "clip.mov",
     "-vf scale=out_color_matrix=bt709,format=yuva444p10le -c:v prores_ks -profile:v 4 -color_primaries "
     "bt709 "
     "-color_trc bt709 -colorspace bt709",
     VideoFrameBufferType::YUV444_16, Tagged(ColorMatrix::BT709), kBt709},
    {"MotionJpeg", "clip.avi", "-c:v mjpeg -q:v 2 -pix_fmt yuvj420p", VideoFrameBufferType::YUV420,
     Tagged(ColorMatrix::SMPTE170M, ColorRange::Full), kBt601Full},
    {"TwelveBit", "clip.mkv", "-c:v ffv1 -pix_fmt yuv444p12le", VideoFrameBufferType::YUV444_16,
     Tagged(ColorMatrix::SMPTE170M), kBt601},
};

class ClipFormat : public testing::TestWithParam<Clip> {};

TEST_P(ClipFormat, ReachesTheSinkWithItsTypeSizeAndColour) {
    const Clip& clip = GetParam();
    const TemporaryFolder folder;
    const auto path = MakeClip(folder, clip.file, clip.output);
    RoomVisitor visitor;
    visitor.Enter({{"one", path.string()}});
    ASSERT_TRUE(visitor.WaitForFrames(0, 3)) << visitor.Log();
    const auto frame = visitor.LastFrame(0);
    EXPECT_EQ(frame->GetType(), clip.type);
    EXPECT_EQ(frame->GetWidth(), 320);
    EXPECT_EQ(frame->GetHeight(), 180);
    const ColorSpace& color = frame->GetColorSpace();
    EXPECT_EQ(color.GetMatrix(), clip.color.GetMatrix());
    EXPECT_EQ(color.GetRange(), clip.color.GetRange());
    EXPECT_EQ(color.GetPrimaries(), clip.color.GetPrimaries());
    EXPECT_EQ(color.GetTransfer(), clip.color.GetTransfer());
    EXPECT_FALSE(color.GetHDRMetadata().has_value());
    const Sample3 middle = Middle(*frame);
    // Lossy codecs and ffmpeg's own conversion are each about one step off.
    for (std::size_t plane = 0; plane < 3; ++plane)
        EXPECT_NEAR(middle[plane], clip.middle[plane], 2.0) << plane;
}

INSTANTIATE_TEST_SUITE_P(Files, ClipFormat, testing::ValuesIn(kClips),
                         [](const auto& testCase) { return testCase.param.name; });

TEST(ClipFile, BringsItsHdrMetadata) {
    const TemporaryFolder folder;
    const auto path = MakeClip(
        folder, "clip.mp4",
        "-c:v libx265 -pix_fmt yuv420p10le -x265-params "
        "'log-level=none:colorprim=bt2020:transfer=smpte2084:colormatrix=bt2020nc:hdr10=1:max-cll=1000,400:"
        "master-display=G(13250,34500)B(7500,3000)R(34000,16000)WP(15635,16450)L(10000000,50)'");
    RoomVisitor visitor;
    visitor.Enter({{"one", path.string()}});
    ASSERT_TRUE(visitor.WaitForFrames(0, 1)) << visitor.Log();
    const auto metadata = visitor.LastFrame(0)->GetColorSpace().GetHDRMetadata();
    ASSERT_TRUE(metadata.has_value());
    EXPECT_NEAR(metadata->redX, 0.68, 1e-6);
    EXPECT_NEAR(metadata->blueY, 0.06, 1e-6);
    EXPECT_FLOAT_EQ(metadata->maxMasteringLuminanceNits, 1000.0F);
    EXPECT_FLOAT_EQ(metadata->maxContentLightLevelNits, 1000.0F);
}

TEST(ClipFile, IsShownWithSquarePixelsAndTheRightWayUp) {
    const TemporaryFolder folder;
    const auto wide = MakeClip(folder, "wide.mp4", "-vf setsar=2/1 -c:v libx264 -pix_fmt yuv420p");
    const auto upright = MakeClip(folder, "upright.mp4", "-c:v libx264 -pix_fmt yuv420p");
    const auto turned =
        MakeClip(folder, "turned.mp4", "-c copy -metadata:s:v rotate=90", "-i '" + upright.string() + "'");
    RoomVisitor visitor;
    visitor.Enter({{"wide", wide.string()}, {"turned", turned.string()}});
    ASSERT_TRUE(visitor.WaitForFrames(0, 1));
    ASSERT_TRUE(visitor.WaitForFrames(1, 1));
    EXPECT_EQ(visitor.LastFrame(0)->GetWidth(), 640);
    EXPECT_EQ(visitor.LastFrame(0)->GetHeight(), 180);
    EXPECT_EQ(visitor.LastFrame(1)->GetWidth(), 180);
    EXPECT_EQ(visitor.LastFrame(1)->GetHeight(), 320);
}

TEST(ClipFile, PlaysInALoopAndCutsNoRoundShort) {
    const TemporaryFolder folder;
    // One second that goes from black to white, so that a round's end is seen in the luma.
    const auto path =
        MakeClip(folder, "clip.mp4", "-c:v libx264 -pix_fmt yuv420p -c:a aac",
                 "-f lavfi -i \"color=c=black:s=320x180:r=30:d=1,geq=lum='16+N*7':cb=128:cr=128\" "
                 "-f lavfi -i sine=f=440:d=1");
    std::mutex mutex;
    std::vector<int> luma;
    RoomVisitor visitor;
    visitor.onFrame = [&](const std::shared_ptr<VideoFrameBuffer>& frame) {
        const std::lock_guard lock(mutex);
        luma.push_back(static_cast<int>(Middle(*frame)[0]));
    };
    visitor.Enter({{"one", path.string()}});
    ASSERT_TRUE(visitor.WaitForFrames(0, 80));
    RoomVisitor::Leave();
    std::size_t rounds = 0;
    for (std::size_t index = 1; index < luma.size(); ++index) {
        if (luma[index] >= luma[index - 1]) continue;
        ++rounds;
        // A busy machine may drop some pictures; a round is never cut short.
        EXPECT_GT(luma[index - 1], 170) << index;
        EXPECT_LT(luma[index], 70) << index;
    }
    EXPECT_GE(rounds, 2U);
}

TEST(ClipFile, LoopsAlsoWhereSegmentsCannot) {
    const TemporaryFolder folder;
    const auto path = MakeClip(folder, "clip.ts", "-c:v libx264 -pix_fmt yuv420p");
    RoomVisitor visitor;
    visitor.Enter({{"one", path.string()}});
    EXPECT_TRUE(visitor.WaitForFrames(0, 75)) << visitor.Log();
}

TEST(ClipFile, ShowsAStillPictureAgainAndAgainAndNotAsFastAsItCan) {
    const TemporaryFolder folder;
    const auto path = MakeClip(folder, "still.png", "-frames:v 1");
    RoomVisitor visitor;
    visitor.Enter({{"one", path.string()}});
    const auto start = std::chrono::steady_clock::now();
    EXPECT_TRUE(visitor.WaitForFrames(0, 4)) << visitor.Log();
    EXPECT_GT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(900));
}

TEST(ClipFile, TakesANameWithEverySortOfCharacter) {
    const TemporaryFolder folder;
    const auto path = MakeClip(folder, "sp ace ü%41#?.mp4", "-c:v libx264 -pix_fmt yuv420p");
    RoomVisitor visitor;
    visitor.Enter({{"one", path.string()}});
    EXPECT_TRUE(visitor.WaitForFrames(0, 1)) << visitor.Log();
}

TEST(ClipFile, OfTheFirstParticipantIsTheMainVideoBesideTheTestPicture) {
    const TemporaryFolder folder;
    const auto path = MakeClip(folder, "clip.mp4", "-c:v libx264 -pix_fmt yuv420p");
    RoomVisitor visitor;
    visitor.Enter({{"one", path.string()}, {"two", "test"}});
    ASSERT_TRUE(visitor.WaitForFrames(0, 30));
    ASSERT_TRUE(visitor.WaitForFrames(1, 30));
    std::string speaker;
    EXPECT_TRUE(WebRTC_GetActiveSpeaker(speaker));
    EXPECT_EQ(speaker, "participant-1-one");
}

}  // namespace
}  // namespace Corvanta::Engine
