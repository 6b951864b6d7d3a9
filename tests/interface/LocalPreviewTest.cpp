// The own camera's picture in a window of its own: opened, fed, followed and closed as a host does it.
#include <limits>
#include <string>
#include <utility>
#include <vector>

#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomTest.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;

constexpr int kWidth = 64;
constexpr int kHeight = 48;
constexpr const char* kCamera = "camera-0";
constexpr uint32_t kTeal = 0xFF008080;
constexpr uint32_t kBlack = 0xFF000000;
constexpr int kMostTicks = 5000;

int gPreviewWindow = 0;

int Open(bool fit = true) {
    return SDLinterface_OpenLocalPreview(&gPreviewWindow, kWidth, kHeight, fit);
}

void StartCamera(const std::string& sourceId = kCamera) {
    Fake().OfferLocalSource(StreamType::Camera, sourceId);
}

void DeliverTeal(const std::string& sourceId = kCamera) {
    Fake().Deliver(sourceId, MakeFrame({.width = 64,
                                        .height = 32,
                                        .type = VideoFrameBufferType::RGB,
                                        .colorSpace = kSrgb,
                                        .argb = kTeal}));
}

std::vector<std::string> RegisteredSources() {
    std::vector<std::string> sources;
    for (const auto& [sourceId, sink] : Fake().RegisteredSinks()) sources.push_back(sourceId);
    return sources;
}

// What the preview presented last; it is ticked until it presents.
Picture TickUntilPresented() {
    Picture picture;
    const UI::AbstractView* view = Interface::gExtraViews.back();
    Fake().OnCall("SDL_RenderPresent", [&](const Call&) { picture = ReadPicture(view->GetRenderer()); });
    for (int tick = 0; tick < kMostTicks && picture.pixels.empty(); ++tick) {
        SDLinterface_TickLocalPreview();
        SDL_Delay(1);
    }
    Fake().OnCall("SDL_RenderPresent", {});
    return picture;
}

class LocalPreviewTest : public RoomTest {};
class LocalPreviewWithoutRoomTest : public StartedTest {};

TEST_F(LocalPreviewTest, ShowsTheWholePictureOfTheOwnCamera) {
    StartCamera();
    ASSERT_EQ(Open(), 1);
    EXPECT_TRUE(AreaIs(TickUntilPresented(), {0, 0, kWidth, kHeight}, kBlack));
    DeliverTeal();
    const Picture picture = TickUntilPresented();
    EXPECT_TRUE(AreaIs(picture, {0, 8, 64, 32}, kTeal));
    EXPECT_TRUE(AreaIs(picture, {0, 0, 64, 8}, kBlack));
}

TEST_F(LocalPreviewTest, FillsItsWindowOnRequest) {
    StartCamera();
    ASSERT_EQ(Open(false), 1);
    static_cast<void>(TickUntilPresented());
    DeliverTeal();
    EXPECT_TRUE(AreaIs(TickUntilPresented(), {0, 0, kWidth, kHeight}, kTeal));
}

TEST_F(LocalPreviewTest, CostsNoDrawingWhileNothingIsNew) {
    StartCamera();
    ASSERT_EQ(Open(), 1);
    static_cast<void>(TickUntilPresented());
    Calls().Clear();
    for (int tick = 0; tick < 10; ++tick) SDLinterface_TickLocalPreview();
    EXPECT_THAT(Calls().OfThisThread(), IsEmpty());
}

TEST_F(LocalPreviewTest, LeavesTheRoomsOwnTileItsPictures) {
    StartCamera();
    const size_t before = Fake().Deliver(kCamera, MakeFrame());
    ASSERT_EQ(Open(), 1);
    EXPECT_EQ(Fake().Deliver(kCamera, MakeFrame()), before + 1);
    SDLinterface_CloseLocalPreview();
    EXPECT_EQ(Fake().Deliver(kCamera, MakeFrame()), before);
}

TEST_F(LocalPreviewTest, LeavesTheRoomsOwnTileTheConnectionsFigures) {
    StartCamera();
    Calls().Clear();
    ASSERT_EQ(Open(), 1);
    // The preview's tile asked for them, and then the room's again.
    EXPECT_EQ(Calls().Count("WebRTC_SetConnectionStatsCallback"), 2U);
}

TEST_F(LocalPreviewTest, IsWindowTwoWhileItIsOpen) {
    EXPECT_EQ(Interface::GetViewWindowId(2), -1);
    ASSERT_EQ(Open(), 1);
    EXPECT_GE(Interface::GetViewWindowId(2), 0);
    EXPECT_NE(Interface::GetViewWindowId(2), Interface::GetViewWindowId(0));
    SDLinterface_UpdateWindowScale(2, 2.0F);
    EXPECT_EQ(Interface::gExtraViews.back()->GetScale(), 2.0F);
    SDLinterface_CloseLocalPreview();
    EXPECT_EQ(Interface::GetViewWindowId(2), -1);
    EXPECT_THAT(Interface::gExtraViews, IsEmpty());
}

TEST_F(LocalPreviewTest, WaitsForACameraThatStartsLater) {
    ASSERT_EQ(Open(), 1);
    SDLinterface_TickLocalPreview();
    EXPECT_THAT(RegisteredSources(), IsEmpty());
    StartCamera();
    SDLinterface_TickLocalPreview();
    EXPECT_THAT(RegisteredSources(), ElementsAre(kCamera));
    DeliverTeal();
    EXPECT_TRUE(AreaIs(TickUntilPresented(), {0, 8, 64, 32}, kTeal));
}

TEST_F(LocalPreviewTest, LetsGoOfACameraThatStops) {
    StartCamera();
    ASSERT_EQ(Open(), 1);
    Fake().RemoveLocalSource(kCamera);
    Calls().Clear();
    SDLinterface_TickLocalPreview();
    EXPECT_EQ(Fake().CallsOf("MediaManager_UnregisterCallback").at(0).arguments.at(0), kCamera);
    StartCamera("camera-1");
    SDLinterface_TickLocalPreview();
    EXPECT_THAT(RegisteredSources(), ElementsAre("camera-1"));
}

TEST_F(LocalPreviewTest, TakesItsSinkBackBeforeItGoes) {
    StartCamera();
    ASSERT_EQ(Open(), 1);
    Calls().Clear();
    SDLinterface_CloseLocalPreview();
    EXPECT_THAT(Calls().NamesAmong({"MediaManager_UnregisterCallback", "SDL_DestroyRenderer"}),
                ElementsAre("MediaManager_UnregisterCallback", "SDL_DestroyRenderer"));
    EXPECT_THAT(RegisteredSources(), IsEmpty());
    EXPECT_EQ(Sdl().LiveRenderers(), 1U);
    SDLinterface_CloseLocalPreview();
    SDLinterface_TickLocalPreview();
}

TEST_F(LocalPreviewTest, IsReplacedByASecondOne) {
    StartCamera();
    ASSERT_EQ(Open(), 1);
    const auto first = Fake().RegisteredSinks();
    ASSERT_EQ(SDLinterface_OpenLocalPreview(&gPreviewWindow, 32, 16, true), 1);
    ASSERT_THAT(Fake().RegisteredSinks(), SizeIs(1));
    EXPECT_EQ(Fake().RegisteredSinks()[0].first, kCamera);
    EXPECT_THAT(Interface::gExtraViews, SizeIs(1));
    EXPECT_EQ(Interface::gExtraViews.back()->GetWidth(), 32);
    EXPECT_EQ(Sdl().LiveRenderers(), 2U);
}

TEST_F(LocalPreviewTest, FailsWithoutAWindow) {
    ASSERT_EQ(Open(), 1);
    EXPECT_EQ(SDLinterface_OpenLocalPreview(nullptr, kWidth, kHeight, true), -1);
    EXPECT_THAT(Interface::gExtraViews, IsEmpty());
    EXPECT_THAT(RegisteredSources(), IsEmpty());
    SDLinterface_TickLocalPreview();
    Sdl().Fail("SDL_CreateRenderer");
    EXPECT_EQ(Open(), -1);
    EXPECT_EQ(Sdl().LiveWindows(), 1U);
    EXPECT_EQ(Open(), 1);
}

TEST_F(LocalPreviewTest, OutlivesTheRoom) {
    StartCamera();
    ASSERT_EQ(Open(), 1);
    Interface::CurrentView()->Shutdown();
    SDLinterface_TickLocalPreview();
    SDLinterface_UpdateWindowScale(2, 1.5F);
    EXPECT_GE(Interface::GetViewWindowId(2), 0);
    // And shows the camera of the next.
    ASSERT_EQ(Enter(), 1);
    StartCamera("camera-1");
    SDLinterface_TickLocalPreview();
    EXPECT_THAT(RegisteredSources(), ElementsAre("camera-1"));
}

TEST_F(LocalPreviewTest, EndsWithTheLibrary) {
    StartCamera();
    ASSERT_EQ(Open(), 1);
    DeliverTeal();
    Calls().Clear();
    SDLinterface_GlobalQuit();
    EXPECT_THAT(Interface::gExtraViews, IsEmpty());
    EXPECT_EQ(Sdl().LiveRenderers(), 0U);
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    EXPECT_EQ(Fake().CallNames().back(), "SDL_Quit");
    SDLinterface_TickLocalPreview();
    SDLinterface_CloseLocalPreview();
}

TEST_F(LocalPreviewWithoutRoomTest, IsBlackWithoutARoom) {
    ASSERT_EQ(Open(), 1);
    EXPECT_TRUE(AreaIs(TickUntilPresented(), {0, 0, kWidth, kHeight}, kBlack));
    SDLinterface_CloseLocalPreview();
    EXPECT_EQ(Sdl().LiveRenderers(), 0U);
}

TEST_F(LocalPreviewWithoutRoomTest, SurvivesWildSizes) {
    for (const SDL_Point size : {SDL_Point{0, 0}, SDL_Point{-1, 5}, SDL_Point{1, 1}, SDL_Point{70'000, 1},
                                 SDL_Point{1, std::numeric_limits<int>::min()}}) {
        if (SDLinterface_OpenLocalPreview(&gPreviewWindow, size.x, size.y, true) == 1) {
            SDLinterface_TickLocalPreview();
        }
        SDLinterface_CloseLocalPreview();
    }
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
}

}  // namespace
}  // namespace Corvanta::Testing
