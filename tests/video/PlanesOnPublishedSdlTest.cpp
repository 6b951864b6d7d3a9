// Which planes go up as they are where SDL has a driver that shows them exactly, and what happens to a
// picture when it comes from one driver to another.
#include <gtest/gtest.h>

#include <optional>

#include "tests/video/GatedFrame.h"
#include "tests/video/RendererDriver.h"
#include "tests/video/TileTest.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;
using Type = VideoFrameBufferType;

constexpr int64_t kNsPerMs = 1'000'000;

class PlanesOnPublishedSdlTest : public TileTest {
protected:
    // Draws until the picture has the form that the driver needs.
    [[nodiscard]] bool DrawUntilUploaded(const char* call) {
        return Eventually([&] {
            Draw();
            return Calls().Count(call) > 0;
        });
    }
    [[nodiscard]] bool IsUploadedAsPlanes(const Frame& frame) {
        Draw();
        Calls().Clear();
        EXPECT_TRUE(Show(frame));
        Draw();
        const size_t planes = Calls().Count("SDL_UpdateYUVTexture");
        EXPECT_EQ(planes + Calls().Count("SDL_UpdateTexture"), 1U);
        return planes == 1;
    }
};

[[nodiscard]] ColorSpace Colors(ColorMatrix matrix, ColorRange range) {
    return {matrix, range, ColorPrimaries::BT709, ColorTransfer::BT709};
}

TEST_F(PlanesOnPublishedSdlTest, SendsLimitedRangeBt709FourTwoZeroUpAsPlanes) {
    const PretendedDriver driver("opengl");
    EXPECT_TRUE(
        IsUploadedAsPlanes(MakeFrame({.colorSpace = Colors(ColorMatrix::BT709, ColorRange::Limited)})));
    EXPECT_TRUE(IsUploadedAsPlanes(
        MakeFrame({.colorSpace = Colors(ColorMatrix::Unspecified, ColorRange::Unspecified)})));
}

TEST_F(PlanesOnPublishedSdlTest, PacksWhatNoDriverShowsExactly) {
    const PretendedDriver driver("opengl");
    for (const FrameSpec& spec :
         {FrameSpec{.colorSpace = Colors(ColorMatrix::BT709, ColorRange::Full)},
          FrameSpec{.colorSpace = Colors(ColorMatrix::SMPTE170M, ColorRange::Limited)},
          FrameSpec{.colorSpace = Colors(ColorMatrix::BT2020NCL, ColorRange::Limited)},
          FrameSpec{.type = Type::YUV422}, FrameSpec{.type = Type::YUV444},
          FrameSpec{.type = Type::YUV420_16}, FrameSpec{.type = Type::YUV422_16},
          FrameSpec{.type = Type::YUV444_16},
          FrameSpec{.faults = {.subsampling = static_cast<SubsamplingMode>(9)}}}) {
        EXPECT_FALSE(IsUploadedAsPlanes(MakeFrame(spec))) << static_cast<int>(spec.type);
    }
}

TEST_F(PlanesOnPublishedSdlTest, PacksEverythingForTheSoftwareDriver) {
    EXPECT_FALSE(IsUploadedAsPlanes(MakeFrame()));
}

TEST_F(PlanesOnPublishedSdlTest, BringsAPictureOfBeforeTheFirstDrawingIntoTheDriversForm) {
    const PretendedDriver driver("opengl");
    ASSERT_TRUE(Show(MakeFrame({.y = 235, .u = 128, .v = 128})));
    EXPECT_TRUE(PixelIs(DrawAndRead(), 5, 5, 0xFFFFFFFF));
    ASSERT_TRUE(DrawUntilUploaded("SDL_UpdateYUVTexture"));
    EXPECT_TRUE(PixelIs(DrawAndRead(), 5, 5, 0xFFFFFFFF, 2));
    EXPECT_EQ(MessagesAt(1), std::vector<std::string>{"Created video texture: w,h: 64 48"});
    EXPECT_EQ(Sdl().LiveTextures(), 1U);
    // Once is enough.
    const size_t made = Calls().Count("SDL_CreateTexture");
    for (int i = 0; i < 5; ++i) Draw();
    ASSERT_TRUE(Flush());
    Draw();
    EXPECT_EQ(Calls().Count("SDL_CreateTexture"), made);
}

TEST_F(PlanesOnPublishedSdlTest, BringsAPictureIntoTheFormOfTheNextRenderersDriver) {
    {
        const PretendedDriver driver("opengl");
        ASSERT_TRUE(IsUploadedAsPlanes(MakeFrame({.y = 235, .u = 128, .v = 128})));
    }
    tile.ReleaseGraphics();
    Calls().Clear();
    ASSERT_TRUE(DrawUntilUploaded("SDL_UpdateTexture"));
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFFFFFFFF));
}

// A frame that is shown as planes and that the worker is about to pack.
class PreparedAgainTest : public PlanesOnPublishedSdlTest {
protected:
    PreparedAgainTest() {
        driver_.emplace("opengl");
        EXPECT_TRUE(IsUploadedAsPlanes(frame));
        driver_.reset();
        frame->Arm();
        Draw();
        EXPECT_TRUE(frame->gate.WaitForArrival());
    }
    ~PreparedAgainTest() override { frame->gate.Open(); }

    const std::shared_ptr<GatedFrame> frame = std::make_shared<GatedFrame>();

private:
    std::optional<PretendedDriver> driver_;
};

TEST_F(PreparedAgainTest, IsDrawnMeanwhileAsItWas) {
    Draw();
    EXPECT_TRUE(tile.HasTexture());
    EXPECT_EQ(Calls().Count("SDL_UpdateTexture"), 0U);
    frame->gate.Open();
    EXPECT_TRUE(DrawUntilUploaded("SDL_UpdateTexture"));
}

TEST_F(PreparedAgainTest, IsBlackenedWhenTheWorkerHasLetGoOfIt) {
    tile.BlankFrame();
    EXPECT_EQ(frame->ClearCount(), 0);
    frame->gate.Open();
    ASSERT_TRUE(Eventually([&] { return frame->ClearCount() == 1; }));
    ASSERT_TRUE(DrawUntilUploaded("SDL_UpdateTexture"));
    EXPECT_TRUE(AreaIs(DrawAndRead(), tile.rect, 0xFF000000));
}

TEST_F(PreparedAgainTest, StaysDroppedWhenItWentStaleMeanwhile) {
    tile.inGrid = true;
    tile.SetRenderTime(UI::NowNs() + 8000 * kNsPerMs);
    Draw();
    ASSERT_FALSE(tile.HasTexture());
    frame->gate.Open();
    ASSERT_TRUE(Flush());
    Draw();
    EXPECT_FALSE(tile.HasTexture());
    EXPECT_EQ(frame.use_count(), 1);
}

TEST_F(PreparedAgainTest, EndsWithItsTile) {
    std::thread opener([&] { frame->gate.Open(); });
    tile.ReleaseGraphics();
    tile.Retire();
    opener.join();
}

}  // namespace
}  // namespace Corvanta::Video
