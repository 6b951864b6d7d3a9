// Commands and queries of the host about window, renderer and the room's state.
#include <limits>

#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomTest.h"
#include "tests/ui/TestView.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class CommandWithoutViewTest : public StartedTest {};
class CommandTest : public RoomTest {};

TEST_F(CommandWithoutViewTest, DoesNothing) {
    SDLinterface_VideoRoomResize(10, 10);
    SDLinterface_VideoRoomSetViewport(10, 10);
    SDLinterface_VideoRoomSetContentScaleFactor(2.0F);
    for (const int window : {0, 1, 2, 3, -1}) SDLinterface_UpdateWindowScale(window, 2.0F);
    SDLinterface_VideoRoomSetSDRBrightnessBoost(200.0F);
    SDLinterface_VideoRoomSetFullscreenEnabled(true);
    SDLInterface_SetDetachedBordersVisibility(true);
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
}

TEST_F(CommandWithoutViewTest, AnswersWithNothing) {
    EXPECT_EQ(SDLinterface_VideoRoomGetSDRBrightnessBoost(), 0.0F);
    EXPECT_EQ(SDLinterface_VideoRoomGetNativeVideoView(), nullptr);
    EXPECT_FALSE(SDLinterface_ExportRemoteFrame("a"));
    EXPECT_FALSE(SDLinterface_ExportRemoteFrame(nullptr));
}

TEST_F(CommandWithoutViewTest, RemembersMicrophoneAndCamera) {
    EXPECT_FALSE(SDLinterface_VideoRoomGetMicEnabled());
    EXPECT_FALSE(SDLinterface_VideoRoomGetVideoEnabled());
    SDLinterface_VideoRoomSetMicEnabled(true);
    EXPECT_TRUE(SDLinterface_VideoRoomGetMicEnabled());
    EXPECT_FALSE(SDLinterface_VideoRoomGetVideoEnabled());
    SDLinterface_VideoRoomSetVideoEnabled(true);
    SDLinterface_VideoRoomSetMicEnabled(false);
    EXPECT_FALSE(SDLinterface_VideoRoomGetMicEnabled());
    EXPECT_TRUE(SDLinterface_VideoRoomGetVideoEnabled());
}

TEST_F(CommandTest, AsksTheViewForMicrophoneAndCamera) {
    SDLinterface_VideoRoomSetMicEnabled(true);
    SDLinterface_VideoRoomSetVideoEnabled(false);
    EXPECT_TRUE(Interface::CurrentView()->IsMicEnabled());
    EXPECT_FALSE(Interface::CurrentView()->IsVideoEnabled());
    Interface::CurrentView()->SetMicEnabled(false);
    Interface::CurrentView()->SetVideoEnabled(true);
    EXPECT_FALSE(SDLinterface_VideoRoomGetMicEnabled());
    EXPECT_TRUE(SDLinterface_VideoRoomGetVideoEnabled());
}

TEST_F(CommandTest, ResizesTheWindowAndDrawsAtOnce) {
    SDLinterface_VideoRoomResize(320, 200);
    EXPECT_EQ(Interface::CurrentView()->GetWidth(), 320);
    EXPECT_EQ(Interface::CurrentView()->GetHeight(), 200);
    EXPECT_THAT(
        Fake().CallsOf("SDL_SetWindowSize").at(0).arguments,
        ElementsAre(ToText(static_cast<const void*>(Interface::CurrentView()->GetWindow())), "320", "200"));
    EXPECT_GE(Calls().Count("SDL_RenderPresent"), 1U);
}

TEST_F(CommandTest, SetsTheViewport) {
    SDLinterface_VideoRoomSetViewport(320, 200);
    EXPECT_EQ(Fake().CallsOf("SDL_RenderSetViewport").at(0).arguments[1], "0 0 320 200");
}

TEST_F(CommandTest, SetsTheContentScale) {
    SDLinterface_VideoRoomSetContentScaleFactor(1.5F);
    float x = 0;
    float y = 0;
    SDL_RenderGetScale(Interface::CurrentView()->GetRenderer(), &x, &y);
    EXPECT_EQ(x, 1.5F);
    EXPECT_EQ(y, 1.5F);
    EXPECT_EQ(Interface::CurrentView()->GetScale(), 1.0F);
}

TEST_F(CommandTest, ScalesTheRoomsControlsAtIndexZero) {
    SDLinterface_UpdateWindowScale(0, 1.25F);
    EXPECT_EQ(Interface::CurrentView()->GetScale(), 1.25F);
    // Laid out again.
    EXPECT_GE(Calls().Count("SDL_RenderPresent"), 1U);
    Calls().Clear();
    SDLinterface_UpdateWindowScale(0, 1.25F);
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
}

TEST_F(CommandTest, ScalesTheLastExtraViewAtIndexTwo) {
    TestView first;
    TestView last;
    Interface::gExtraViews = {&first, &last};
    SDLinterface_UpdateWindowScale(2, 3.0F);
    roomActive.store(false);
    SDLinterface_UpdateWindowScale(2, 4.0F);
    Interface::gExtraViews.push_back(nullptr);
    SDLinterface_UpdateWindowScale(2, 5.0F);
    Interface::gExtraViews.clear();
    EXPECT_THAT(last.scales, ElementsAre(3.0F, 4.0F));
    EXPECT_THAT(first.scales, IsEmpty());
    EXPECT_EQ(Interface::CurrentView()->GetScale(), 1.0F);
}

TEST_F(CommandTest, ScalesNothingAtAnyOtherIndex) {
    for (const int window : {1, 2, 3, -1}) SDLinterface_UpdateWindowScale(window, 2.0F);
    EXPECT_EQ(Interface::CurrentView()->GetScale(), 1.0F);
}

TEST_F(CommandTest, ScalesNoRoomThatStopped) {
    roomActive.store(false);
    SDLinterface_UpdateWindowScale(0, 2.0F);
    EXPECT_EQ(Interface::CurrentView()->GetScale(), 1.0F);
}

TEST_F(CommandTest, SetsTheBrightnessOfSdrWhite) {
    EXPECT_EQ(SDLinterface_VideoRoomGetSDRBrightnessBoost(), 280.0F);
    SDLinterface_VideoRoomSetSDRBrightnessBoost(203.6F);
    EXPECT_EQ(SDLinterface_VideoRoomGetSDRBrightnessBoost(), 204.0F);
    EXPECT_THAT(Fake().CallsOf("Configuration_SetPropertyInt").at(0).arguments,
                ElementsAre("SDRBrightnessBoost", "203"));
}

TEST_F(CommandTest, HasNoNativeChild) {
    EXPECT_EQ(SDLinterface_VideoRoomGetNativeVideoView(), nullptr);
}

TEST_F(CommandTest, KeepsFullScreenAndBorders) {
    SDLinterface_VideoRoomSetFullscreenEnabled(true);
    EXPECT_TRUE(Interface::CurrentView()->IsFullscreenEnabled());
    SDLinterface_VideoRoomSetFullscreenEnabled(false);
    EXPECT_FALSE(Interface::CurrentView()->IsFullscreenEnabled());
    SDLInterface_SetDetachedBordersVisibility(true);
    EXPECT_TRUE(Interface::CurrentView()->GetThumbnails().HasDetachedBorders());
    EXPECT_EQ(Calls().Count("Host_SetCursor"), 0U);
}

TEST_F(CommandTest, WritesTheNextFrameOfAStream) {
    Fake().OfferRemoteSource("a");
    EXPECT_TRUE(SDLinterface_ExportRemoteFrame("a"));
    Fake().Deliver("a", MakeFrame());
    ASSERT_EQ(Fake().StillExports().size(), 1U);
    EXPECT_EQ(Fake().StillExports()[0].path, "configuration-folder/exportedRemoteFrame");
    EXPECT_FALSE(SDLinterface_ExportRemoteFrame("b"));
    EXPECT_FALSE(SDLinterface_ExportRemoteFrame(nullptr));
}

TEST_F(CommandTest, SurvivesWildSizes) {
    const int wild[] = {0, -1, 1, std::numeric_limits<int>::min(), 70'000, std::numeric_limits<int>::max()};
    Fake().OfferRemoteSource("a");
    SDLinterface_VideoRoomUpdateActiveSpeaker("a");
    for (const int width : wild) {
        for (const int height : wild) {
            SDLinterface_VideoRoomSetViewport(width, height);
            SDL_VideoRoomCheckInputAndRender();
        }
    }
    for (const int size : {0, -1, std::numeric_limits<int>::min(), 1}) {
        SDLinterface_VideoRoomResize(size, size);
        SDL_VideoRoomCheckInputAndRender();
    }
    SDLinterface_VideoRoomResize(640, 360);
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Interface::CurrentView()->GetWidth(), 640);
}

TEST_F(CommandTest, SurvivesWildFactors) {
    const float wild[] = {0.0F,
                          -1.0F,
                          1.0e-30F,
                          1.0e30F,
                          std::numeric_limits<float>::infinity(),
                          std::numeric_limits<float>::quiet_NaN()};
    for (const float factor : wild) {
        SDLinterface_UpdateWindowScale(0, factor);
        SDLinterface_VideoRoomSetContentScaleFactor(factor);
        SDLinterface_VideoRoomSetSDRBrightnessBoost(factor);
        SDL_VideoRoomCheckInputAndRender();
    }
}

}  // namespace
}  // namespace Corvanta::Testing
