#include "video/TilePicture.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/fake_platform/TestFrames.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;
using Type = VideoFrameBufferType;

class TilePictureTest : public FakePlatformTest {
protected:
    TilePictureTest() { Sdl().Reset(); }
    ~TilePictureTest() override {
        picture.ReleaseTexture();
        Sdl().Reset();
    }

    void InstallPacked(const Frame& frame, uint32_t argb = 0xFFFFFFFF) {
        PreparedFrame prepared{frame, {}, true};
        prepared.raster.pixels.assign(
            static_cast<size_t>(frame->GetWidth()) * static_cast<size_t>(frame->GetHeight()), argb);
        picture.Install(prepared);
    }
    void InstallAsItIs(const Frame& frame) {
        PreparedFrame prepared{frame, {}, false};
        picture.Install(prepared);
    }
    [[nodiscard]] bool Keep() { return picture.KeepTexture(screen.Renderer()); }
    [[nodiscard]] bool KeepAndUpload() {
        (void)Keep();
        return picture.Upload();
    }
    [[nodiscard]] static size_t Created() { return Calls().Count("SDL_CreateTexture"); }
    [[nodiscard]] static size_t Destroyed() { return Calls().Count("SDL_DestroyTexture"); }
    [[nodiscard]] static std::vector<std::string> Messages() { return Fake().LogsOf(1); }

    PixelReader screen{64, 48};
    TilePicture picture;
};

TEST_F(TilePictureTest, HasNoTextureBeforeThereIsAFrame) {
    EXPECT_FALSE(Keep());
    EXPECT_FALSE(picture.Upload());
    EXPECT_EQ(picture.GetTexture(), nullptr);
    EXPECT_EQ(Created(), 0U);
    EXPECT_TRUE(Fake().Logs().empty());
}

TEST_F(TilePictureTest, MakesOneStreamingTextureOfTheFramesSizeAndSaysSo) {
    InstallPacked(MakeFrame({.width = 40, .height = 30}));
    EXPECT_TRUE(Keep());
    EXPECT_FALSE(Keep());
    const auto created = Calls().Of("SDL_CreateTexture");
    ASSERT_EQ(created.size(), 1U);
    EXPECT_EQ(created[0].arguments[1], "SDL_PIXELFORMAT_ARGB8888");
    EXPECT_EQ(created[0].arguments[3], "1");
    EXPECT_EQ(created[0].arguments[4], "40");
    EXPECT_EQ(created[0].arguments[5], "30");
    EXPECT_EQ(Messages(), std::vector<std::string>{"Created video texture: w,h: 40 30"});
}

TEST_F(TilePictureTest, KeepsTheTextureWhileSizeAndTypeStay) {
    for (int i = 0; i < 5; ++i) {
        InstallPacked(MakeFrame());
        EXPECT_TRUE(KeepAndUpload());
    }
    EXPECT_EQ(Created(), 1U);
    EXPECT_EQ(Destroyed(), 0U);
    EXPECT_EQ(Messages().size(), 1U);
}

TEST_F(TilePictureTest, KeepsTheTextureWhenTheColourSpaceAloneChanges) {
    InstallPacked(MakeFrame({.colorSpace = kBt709Limited}));
    ASSERT_TRUE(KeepAndUpload());
    InstallPacked(MakeFrame({.colorSpace = kBt2020Pq}));
    ASSERT_TRUE(KeepAndUpload());
    EXPECT_EQ(Created(), 1U);
    EXPECT_EQ(picture.GetColorSpace(), kBt2020Pq);
}

TEST_F(TilePictureTest, ReplacesTheTextureOnceWhenTheSizeChangesAndSaysSo) {
    InstallPacked(MakeFrame({.width = 1280, .height = 720}));
    (void)Keep();
    InstallPacked(MakeFrame({.width = 640, .height = 360}));
    EXPECT_TRUE(Keep());
    EXPECT_FALSE(Keep());
    EXPECT_EQ(Created(), 2U);
    EXPECT_EQ(Destroyed(), 1U);
    EXPECT_EQ(Sdl().LiveTextures(), 1U);
    EXPECT_EQ(Messages(), (std::vector<std::string>{
                              "Created video texture: w,h: 1280 720",
                              "Resized video texture from w: 1280 h: 720 to new w: 640 new h: 360"}));
}

TEST_F(TilePictureTest, ReplacesTheTextureWhenOneSideAloneChanges) {
    InstallPacked(MakeFrame({.width = 40, .height = 30}));
    (void)Keep();
    InstallPacked(MakeFrame({.width = 42, .height = 30}));
    EXPECT_TRUE(Keep());
    InstallPacked(MakeFrame({.width = 42, .height = 32}));
    EXPECT_TRUE(Keep());
    EXPECT_EQ(Created(), 3U);
    EXPECT_EQ(Messages().size(), 3U);
}

TEST_F(TilePictureTest, ReplacesTheTextureWhenTheTypeChangesAtTheSameSize) {
    InstallPacked(MakeFrame({.width = 64, .height = 48, .type = Type::YUV420}));
    (void)Keep();
    InstallPacked(MakeFrame({.width = 64, .height = 48, .type = Type::YUV444}));
    EXPECT_TRUE(Keep());
    EXPECT_EQ(Created(), 2U);
    EXPECT_EQ(Messages().back(), "Resized video texture from w: 64 h: 48 to new w: 64 new h: 48");
}

TEST_F(TilePictureTest, ReplacesTheTextureWithoutAWordWhenOnlyTheFormOfThePictureChanges) {
    const auto frame = MakeFrame();
    InstallAsItIs(frame);
    (void)Keep();
    InstallPacked(frame);
    EXPECT_TRUE(Keep());
    EXPECT_EQ(Created(), 2U);
    EXPECT_EQ(Messages(), std::vector<std::string>{"Created video texture: w,h: 64 48"});
}

TEST_F(TilePictureTest, UploadsAFrameOnce) {
    InstallPacked(MakeFrame());
    EXPECT_TRUE(KeepAndUpload());
    EXPECT_FALSE(KeepAndUpload());
    EXPECT_EQ(Calls().Count("SDL_UpdateTexture"), 1U);
}

TEST_F(TilePictureTest, UploadsTheNewestFrameOnly) {
    for (const uint32_t argb : {0xFF0000FFU, 0xFF00FF00U, 0xFFFF0000U}) InstallPacked(MakeFrame(), argb);
    ASSERT_TRUE(KeepAndUpload());
    EXPECT_EQ(Calls().Count("SDL_UpdateTexture"), 1U);
    SDL_RenderCopy(screen.Renderer(), picture.GetTexture(), nullptr, nullptr);
    EXPECT_TRUE(AreaIs(screen.Read(), {0, 0, 64, 48}, 0xFFFF0000));
}

TEST_F(TilePictureTest, UploadsRgbRowsOfFourBytesAPixel) {
    const auto frame = MakeRgbFrame({.width = 10, .height = 4});
    InstallAsItIs(frame);
    ASSERT_TRUE(KeepAndUpload());
    const auto updates = Calls().Of("SDL_UpdateTexture");
    ASSERT_EQ(updates.size(), 1U);
    EXPECT_EQ(updates[0].arguments[1], "null");
    EXPECT_EQ(updates[0].arguments[2], ToText(static_cast<const void*>(frame->GetBuffer())));
    EXPECT_EQ(updates[0].arguments[3], "40");
    EXPECT_EQ(picture.GetPitch(), 40);
}

TEST_F(TilePictureTest, ChoosesTheMatrixBeforeItMakesAnEightBitPlanarTextureOnly) {
    InstallAsItIs(MakeFrame({.type = Type::RGB}));
    (void)Keep();
    InstallPacked(MakeFrame());
    (void)Keep();
    EXPECT_EQ(Calls().Count("SDL_SetYUVConversionMode"), 0U);
    InstallAsItIs(MakeFrame({.width = 32, .height = 32}));
    Calls().Clear();
    (void)Keep();
    EXPECT_EQ(Calls().NamesAmong({"SDL_SetYUVConversionMode", "SDL_CreateTexture"}),
              (std::vector<std::string>{"SDL_SetYUVConversionMode", "SDL_CreateTexture"}));
    EXPECT_EQ(Calls().Of("SDL_SetYUVConversionMode")[0].arguments[0], "2");
    EXPECT_EQ(Calls().Of("SDL_CreateTexture")[0].arguments[1], "SDL_PIXELFORMAT_IYUV");
}

TEST_F(TilePictureTest, UploadsPlanesWithTheirStrides) {
    const auto frame = MakeYuvFrame({.width = 20, .height = 10, .padding = 6});
    InstallAsItIs(frame);
    ASSERT_TRUE(KeepAndUpload());
    const auto updates = Calls().Of("SDL_UpdateYUVTexture");
    ASSERT_EQ(updates.size(), 1U);
    const auto address = [](const uint8_t* plane) { return ToText(static_cast<const void*>(plane)); };
    EXPECT_EQ(std::vector<std::string>(updates[0].arguments.begin() + 1, updates[0].arguments.end()),
              (std::vector<std::string>{"null", address(frame->GetDataY()), "26", address(frame->GetDataU()),
                                        "16", address(frame->GetDataV()), "16"}));
}

TEST_F(TilePictureTest, SaysOnceAFrameThatItsTypeCannotBeShown) {
    const auto unsupported = [] { return MakeFrame({.type = static_cast<Type>(7)}); };
    const std::string message = "Attempted to create unsupported texture (VideoFrame::RecreateTexture)";
    InstallAsItIs(unsupported());
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(Keep());
    EXPECT_EQ(Fake().LogsOf(4), std::vector<std::string>{message});
    InstallAsItIs(unsupported());
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(Keep());
    EXPECT_EQ(Fake().LogsOf(4), (std::vector<std::string>{message, message}));
    EXPECT_EQ(Created(), 0U);
}

TEST_F(TilePictureTest, LosesTheTextureToAnUnsupportedFrameAndGetsItBackWithAGoodOne) {
    InstallPacked(MakeFrame());
    ASSERT_TRUE(KeepAndUpload());
    InstallAsItIs(MakeFrame({.type = static_cast<Type>(9)}));
    EXPECT_FALSE(KeepAndUpload());
    EXPECT_EQ(picture.GetTexture(), nullptr);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    InstallPacked(MakeFrame());
    EXPECT_TRUE(KeepAndUpload());
    EXPECT_NE(picture.GetTexture(), nullptr);
    EXPECT_EQ(Messages().back(), "Created video texture: w,h: 64 48");
}

TEST_F(TilePictureTest, MakesNoTextureAndNoNoiseForAFrameOfAnotherClassThanItsType) {
    for (const Type claimed : {Type::RGB, Type::YUV420_16}) {
        InstallAsItIs(MakeFrame({.type = Type::YUV420, .faults = {.type = claimed}}));
        for (int i = 0; i < 3; ++i) EXPECT_FALSE(KeepAndUpload());
    }
    EXPECT_EQ(Created(), 0U);
    EXPECT_TRUE(Fake().Logs().empty());
}

TEST_F(TilePictureTest, LosesTheTextureToAFrameOfAnotherClassWithoutANewMessage) {
    InstallPacked(MakeFrame());
    ASSERT_TRUE(KeepAndUpload());
    Fake().ClearLogs();
    InstallAsItIs(MakeFrame({.type = Type::YUV420_16, .faults = {.type = Type::YUV420}}));
    EXPECT_FALSE(KeepAndUpload());
    EXPECT_EQ(picture.GetTexture(), nullptr);
    EXPECT_TRUE(Fake().Logs().empty());
}

TEST_F(TilePictureTest, TriesAgainWithEveryDrawingWhenTheTextureCannotBeMade) {
    Sdl().Fail("SDL_CreateTexture", 2);
    InstallPacked(MakeFrame(), 0xFF112233);
    EXPECT_FALSE(KeepAndUpload());
    EXPECT_FALSE(KeepAndUpload());
    EXPECT_TRUE(Fake().Logs().empty());
    // The frame was still pending.
    EXPECT_TRUE(KeepAndUpload());
    EXPECT_EQ(Messages(), std::vector<std::string>{"Created video texture: w,h: 64 48"});
    SDL_RenderCopy(screen.Renderer(), picture.GetTexture(), nullptr, nullptr);
    EXPECT_TRUE(AreaIs(screen.Read(), {0, 0, 64, 48}, 0xFF112233));
}

TEST_F(TilePictureTest, MakesNoTextureForAFrameWithoutASize) {
    for (const auto& [width, height] : {std::pair{0, 48}, {64, 0}, {0, 0}, {-3, -3}}) {
        InstallAsItIs(MakeFrame({.width = width, .height = height}));
        EXPECT_FALSE(KeepAndUpload());
        InstallAsItIs(MakeFrame({.width = width, .height = height, .type = Type::RGB}));
        EXPECT_FALSE(KeepAndUpload());
    }
    EXPECT_EQ(Created(), 0U);
}

TEST_F(TilePictureTest, FillsANewTextureWithTheFrameThatItKept) {
    InstallPacked(MakeFrame(), 0xFF445566);
    ASSERT_TRUE(KeepAndUpload());
    picture.ReleaseTexture();
    EXPECT_NE(picture.GetFrame(), nullptr);
    PixelReader other{64, 48};
    EXPECT_TRUE(picture.KeepTexture(other.Renderer()));
    EXPECT_TRUE(picture.Upload());
    SDL_RenderCopy(other.Renderer(), picture.GetTexture(), nullptr, nullptr);
    EXPECT_TRUE(AreaIs(other.Read(), {0, 0, 64, 48}, 0xFF445566));
    picture.ReleaseTexture();
}

TEST_F(TilePictureTest, BlackensTheFrameAndItsPackedPixels) {
    const auto frame = MakeFrame({.y = 200});
    InstallPacked(frame, 0xFF445566);
    ASSERT_TRUE(KeepAndUpload());
    picture.Blank();
    EXPECT_EQ(ClearCount(frame), 1);
    EXPECT_TRUE(KeepAndUpload());
    SDL_RenderCopy(screen.Renderer(), picture.GetTexture(), nullptr, nullptr);
    EXPECT_TRUE(AreaIs(screen.Read(), {0, 0, 64, 48}, 0xFF000000));
}

TEST_F(TilePictureTest, BlankingNothingDoesNothing) {
    picture.Blank();
    EXPECT_FALSE(KeepAndUpload());
}

TEST_F(TilePictureTest, DropsFrameAndTexture) {
    const auto frame = MakeFrame();
    InstallPacked(frame);
    ASSERT_TRUE(KeepAndUpload());
    picture.Drop();
    EXPECT_EQ(frame.use_count(), 1);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_FALSE(KeepAndUpload());
}

TEST_F(TilePictureTest, HandsTheReplacedRasterBackSoThatItsMemoryIsUsedAgain) {
    InstallPacked(MakeFrame());
    PreparedFrame prepared{MakeFrame(), {}, true};
    prepared.raster.pixels.assign(64 * 48, 0xFF000001);
    picture.Install(prepared);
    EXPECT_EQ(prepared.raster.pixels, std::vector<uint32_t>(64 * 48, 0xFFFFFFFF));
    EXPECT_EQ(prepared.frame, nullptr);
}

TEST_F(TilePictureTest, FollowsFramesThatChangeTypeAndSizeEveryTime) {
    for (int i = 0; i < 60; ++i) {
        const int width = 1 + i % 13;
        const int height = 1 + i % 7;
        const auto type = static_cast<Type>(i % 9);
        const auto frame = MakeFrame({.width = width, .height = height, .type = type});
        if (type == Type::RGB || type > Type::YUV444_16) {
            InstallAsItIs(frame);
        } else {
            InstallPacked(frame);
        }
        EXPECT_EQ(KeepAndUpload(), type <= Type::YUV444_16) << i;
        EXPECT_EQ(Sdl().LiveTextures(), type <= Type::YUV444_16 ? 1U : 0U);
    }
}

}  // namespace
}  // namespace Corvanta::Video
