// What a person sees: the pixels of the main video in the room's window.
#include <gtest/gtest.h>

#include "tests/room/RoomViewTest.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;

class RoomDrawingTest : public RoomViewTest {
protected:
    // A camera whose picture is red with a green upper left quarter.
    void ShowCamera(int width, int height) {
        const auto frame =
            MakeRgbFrame({.width = width, .height = height, .colorSpace = kSrgb, .argb = 0xFFFF0000});
        for (int y = 0; y < height / 2; ++y) {
            for (int x = 0; x < width / 2; ++x) frame->SetPixel(x, y, 0xFF00FF00);
        }
        const auto sink = view->AddLocalVideoSource(StreamType::Camera, "camera");
        ASSERT_NE(sink, nullptr);
        ASSERT_TRUE(Show(sink, frame));
    }
    void ReadNoScaling(bool value) {
        Fake().Set(
            [&](FakeResults& results) { results.configuration["DebugDisableVideoRenderScaling"] = value; });
        view->ReadRenderScalingSetting();
    }
};

TEST_F(RoomDrawingTest, FillsAWindowOfThePicturesShape) {
    Open(640, 480);
    ShowCamera(64, 48);
    const Picture picture = TickAndRead();
    EXPECT_TRUE(AreaIs(picture, {0, 0, 320, 240}, 0xFF00FF00));
    EXPECT_TRUE(AreaIs(picture, {320, 0, 320, 480}, 0xFFFF0000));
    EXPECT_TRUE(AreaIs(picture, {0, 240, 320, 240}, 0xFFFF0000));
}

TEST_F(RoomDrawingTest, LetterboxesAWidePictureTopAndBottom) {
    Open(640, 480);
    ShowCamera(64, 36);
    const Picture picture = TickAndRead();
    EXPECT_TRUE(AreaIs(picture, {0, 0, 640, 60}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {0, 60, 320, 180}, 0xFF00FF00));
    EXPECT_TRUE(AreaIs(picture, {320, 60, 320, 360}, 0xFFFF0000));
    EXPECT_TRUE(AreaIs(picture, {0, 420, 640, 60}, kBlack));
}

TEST_F(RoomDrawingTest, LetterboxesATallPictureLeftAndRight) {
    Open(640, 480);
    ShowCamera(36, 48);
    const Picture picture = TickAndRead();
    EXPECT_TRUE(AreaIs(picture, {0, 0, 140, 480}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {140, 0, 180, 240}, 0xFF00FF00));
    EXPECT_TRUE(AreaIs(picture, {320, 240, 180, 240}, 0xFFFF0000));
    EXPECT_TRUE(AreaIs(picture, {500, 0, 140, 480}, kBlack));
}

TEST_F(RoomDrawingTest, GivesATallWindowsWholeWidthToThePicture) {
    Open(640, 480);
    ShowCamera(64, 48);
    const Picture picture = ReadPresented([&] { view->Resize(120, 400); });
    ASSERT_EQ(picture.width, 120);
    EXPECT_TRUE(AreaIs(picture, {0, 0, 120, 155}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {0, 155, 60, 45}, 0xFF00FF00));
    EXPECT_TRUE(AreaIs(picture, {60, 155, 60, 90}, 0xFFFF0000));
    EXPECT_TRUE(AreaIs(picture, {0, 245, 120, 155}, kBlack));
}

TEST_F(RoomDrawingTest, KeepsThumbnailsShapeFreeForAStreamWithoutAPicture) {
    Open(640, 480);
    ASSERT_NE(view->AddLocalVideoSource(StreamType::Camera, "camera"), nullptr);
    EXPECT_TRUE(AreaIs(TickAndRead(), {0, 0, 640, 480}, kBlack));
    const SDL_Rect rect = view->GetMainVideoRect();
    EXPECT_EQ(rect.w, 640);
    EXPECT_EQ(rect.h, 480);
}

TEST_F(RoomDrawingTest, ShowsNothingOfAFrameThatHasNoTexture) {
    Open(640, 480);
    ShowCamera(64, 48);
    Sdl().FailAlways("SDL_CreateTexture");
    EXPECT_TRUE(AreaIs(TickAndRead(), {0, 0, 640, 480}, kBlack));
    EXPECT_TRUE(AreaIs(TickAndRead(), {0, 0, 640, 480}, kBlack));
    Sdl().Fail("SDL_CreateTexture", 0);
    EXPECT_TRUE(PixelIs(TickAndRead(), 10, 10, 0xFF00FF00));
}

TEST_F(RoomDrawingTest, LeavesNothingOfTheLastPictureBehind) {
    Open(640, 480);
    ShowCamera(64, 48);
    (void)TickAndRead();
    view->RemoveLocalVideoSource("camera");
    EXPECT_TRUE(AreaIs(TickAndRead(), {0, 0, 640, 480}, kBlack));
}

TEST_F(RoomDrawingTest, ShowsPixelForPixelWhereScalingIsSwitchedOff) {
    Open(640, 480);
    ReadNoScaling(true);
    ShowCamera(100, 60);
    const Picture picture = TickAndRead();
    EXPECT_TRUE(AreaIs(picture, {270, 210, 50, 30}, 0xFF00FF00));
    EXPECT_TRUE(AreaIs(picture, {320, 210, 50, 60}, 0xFFFF0000));
    EXPECT_TRUE(AreaIs(picture, {0, 0, 640, 210}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {0, 270, 640, 210}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {0, 210, 270, 60}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {370, 210, 270, 60}, kBlack));
}

TEST_F(RoomDrawingTest, ShowsPixelForPixelAlsoUnderTheHostsScale) {
    Open(640, 480);
    ReadNoScaling(true);
    view->SetContentScaleFactor(2.0F);
    ShowCamera(100, 60);
    view->Tick();
    const SDL_Rect drawn = view->GetMainVideoRect();
    EXPECT_EQ(drawn.w, 50);
    EXPECT_EQ(drawn.h, 30);
    EXPECT_EQ(drawn.x, (640 - 50) / 2);
    EXPECT_EQ(drawn.y, (480 - 30) / 2);
}

TEST_F(RoomDrawingTest, ScalesAgainWhereTheSettingIsOffOrMissing) {
    Open(640, 480);
    ReadNoScaling(true);
    ShowCamera(100, 75);
    view->Tick();
    ASSERT_EQ(view->GetMainVideoRect().w, 100);
    ReadNoScaling(false);
    EXPECT_EQ(view->GetMainVideoRect().w, 640);
    ReadNoScaling(true);
    Fake().Set([](FakeResults& results) { results.configuration.clear(); });
    view->ReadRenderScalingSetting();
    EXPECT_EQ(view->GetMainVideoRect().w, 640);
}

TEST_F(RoomDrawingTest, FollowsAStreamThatChangesItsSize) {
    Open(640, 480);
    const auto sink = AddCamera(kWhite);
    (void)TickAndRead();
    ASSERT_TRUE(Show(sink, Plain(0xFFFF0000, 64, 36)));
    const Picture picture = TickAndRead();
    EXPECT_TRUE(AreaIs(picture, {0, 0, 640, 60}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {0, 60, 640, 360}, 0xFFFF0000));
}

TEST_F(RoomDrawingTest, ShowsPlanarPicturesInTheirColours) {
    Open(640, 480);
    const auto sink = view->AddLocalVideoSource(StreamType::Camera, "camera");
    for (int type = 1; type <= 6; ++type) {
        const bool wide = type >= 4;
        ASSERT_TRUE(Show(sink, MakeFrame({.type = static_cast<VideoFrameBufferType>(type),
                                          .y = wide ? uint16_t{940} : uint16_t{235},
                                          .u = wide ? uint16_t{512} : uint16_t{128},
                                          .v = wide ? uint16_t{512} : uint16_t{128}})));
        EXPECT_TRUE(AreaIs(TickAndRead(), {0, 0, 640, 480}, kWhite)) << type;
    }
}

TEST_F(RoomDrawingTest, SurvivesEveryBrokenFrameAsMainVideo) {
    Open(640, 480);
    const auto sink = view->AddLocalVideoSource(StreamType::Camera, "camera");
    for (const BadFrame& bad : MakeBadFrames()) {
        SCOPED_TRACE(bad.name);
        ASSERT_TRUE(Show(sink, bad.frame));
        view->Tick();
    }
    ASSERT_TRUE(Show(sink, Plain(kWhite)));
    EXPECT_TRUE(AreaIs(TickAndRead(), {0, 0, 640, 480}, kWhite));
}

}  // namespace
}  // namespace Corvanta::Room
