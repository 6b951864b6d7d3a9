#include "video/SingleVideoView.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <future>
#include <memory>
#include <string>
#include <vector>

#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/ui/TestView.h"
#include "tests/video/FlushSink.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kWidth = 64;
constexpr int kHeight = 48;
constexpr uint32_t kRed = 0xFFFF0000;
constexpr uint32_t kBlack = 0xFF000000;

class SingleVideoViewTest : public ViewTest {
protected:
    SingleVideoViewTest() {
        EXPECT_EQ(view.Init(Handle(), kWidth, kHeight), 1);
        view.CreateLocalFrame();
        Fake().ClearCalls();
    }

    // The frame has prepared it when this returns.
    static void Show(const SingleVideoView& shownView, const FrameSpec& spec) {
        (*shownView.GetFrameSink())(MakeFrame(spec));
        EXPECT_TRUE(FlushSink(*shownView.GetFrameSink()));
    }
    void Show(const FrameSpec& spec = RedOf(64, 32)) { Show(view, spec); }
    // Until nothing new is left to draw: the first drawing tells in which form the output wants pictures.
    void Settle() {
        view.Render();
        EXPECT_TRUE(FlushSink(*view.GetFrameSink()));
        view.Render();
        Fake().ClearCalls();
    }
    static FrameSpec RedOf(int width, int height) {
        return {.width = width, .height = height, .type = VideoFrameBufferType::RGB, .argb = kRed};
    }
    // The picture at the moment of the present.
    [[nodiscard]] Picture RenderAndRead(SingleVideoView& shownView) {
        Picture picture;
        Fake().OnCall("SDL_RenderPresent",
                      [&](const Call&) { picture = ReadPicture(shownView.GetRenderer()); });
        shownView.Render();
        Fake().OnCall("SDL_RenderPresent", {});
        return picture;
    }
    [[nodiscard]] static size_t Presents() { return Calls().Count("SDL_RenderPresent"); }
    [[nodiscard]] static std::vector<std::string> DrawingCalls() {
        return Calls().NamesAmong({"SDL_RenderClear", "SDL_RenderCopy", "SDL_RenderPresent"});
    }
    // Source and destination of the last copy.
    [[nodiscard]] static std::vector<std::string> LastCopy() {
        const auto copies = Fake().CallsOf("SDL_RenderCopy");
        if (copies.empty()) return {};
        return {copies.back().arguments.at(2), copies.back().arguments.at(3)};
    }

    SingleVideoView view{7, PictureFit::Whole};
};

TEST_F(SingleVideoViewTest, CostsNothingWhileThereIsNothingNew) {
    view.Render();
    EXPECT_THAT(Calls().OfThisThread(), IsEmpty());
    Show();
    Settle();
    for (int i = 0; i < 10; ++i) view.Render();
    EXPECT_THAT(Calls().OfThisThread(), IsEmpty());
}

TEST_F(SingleVideoViewTest, DrawsANewPictureOnceAndPresentsItLast) {
    Show();
    Settle();
    Show();
    Fake().ClearCalls();
    view.Render();
    view.Render();
    EXPECT_THAT(DrawingCalls(), ElementsAre("SDL_RenderClear", "SDL_RenderCopy", "SDL_RenderPresent"));
}

TEST_F(SingleVideoViewTest, ShowsTheWholePictureBetweenBars) {
    Show();
    const Picture picture = RenderAndRead(view);
    EXPECT_TRUE(AreaIs(picture, {0, 8, 64, 32}, kRed));
    EXPECT_TRUE(AreaIs(picture, {0, 0, 64, 8}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {0, 40, 64, 8}, kBlack));
    EXPECT_THAT(LastCopy(), ElementsAre("0 0 64 32", "0 8 64 32"));
}

TEST_F(SingleVideoViewTest, FillsTheWindowWithTheMiddleOfThePicture) {
    SingleVideoView filled(0, PictureFit::Filled);
    ASSERT_EQ(filled.Init(Handle(), kWidth, kHeight), 1);
    filled.CreateLocalFrame();
    Show(filled, RedOf(64, 32));
    EXPECT_TRUE(AreaIs(RenderAndRead(filled), {0, 0, kWidth, kHeight}, kRed));
    // 32 x 1.333... is 42.
    EXPECT_THAT(LastCopy(), ElementsAre("11 0 42 32", "0 0 64 48"));
}

TEST_F(SingleVideoViewTest, FollowsAPictureThatChangesItsSize) {
    Show();
    Settle();
    Show(RedOf(24, 48));
    view.Render();
    EXPECT_THAT(LastCopy(), ElementsAre("0 0 24 48", "20 0 24 48"));
}

TEST_F(SingleVideoViewTest, DrawsAgainWhenTheSizeChanges) {
    Show();
    Settle();
    view.Resize(32, 16);
    view.Render();
    EXPECT_THAT(LastCopy(), ElementsAre("0 0 64 32", "0 0 32 16"));
    view.Render();
    EXPECT_EQ(Presents(), 1U);
}

TEST_F(SingleVideoViewTest, ClearsItsWindowWhenTheSizeChangesBeforeAPictureCame) {
    view.Resize(32, 16);
    Fake().ClearCalls();
    view.Render();
    EXPECT_THAT(DrawingCalls(), ElementsAre("SDL_RenderClear", "SDL_RenderPresent"));
    view.Render();
    EXPECT_EQ(Presents(), 1U);
}

TEST_F(SingleVideoViewTest, SurvivesWindowsWithoutAnArea) {
    Show();
    for (const SDL_Point size : {SDL_Point{0, 0}, SDL_Point{-3, 5}, SDL_Point{64, 0}, SDL_Point{64, 48}}) {
        view.Resize(size.x, size.y);
        view.Render();
    }
    EXPECT_THAT(LastCopy(), ElementsAre("0 0 64 32", "0 8 64 32"));
}

TEST_F(SingleVideoViewTest, DrawsNothingWithoutAFrame) {
    SingleVideoView empty(0, PictureFit::Whole);
    ASSERT_EQ(empty.Init(Handle(), kWidth, kHeight), 1);
    empty.Resize(10, 10);
    Fake().ClearCalls();
    empty.Render();
    EXPECT_THAT(Calls().OfThisThread(), IsEmpty());
    EXPECT_EQ(empty.GetFrameSink(), nullptr);
}

TEST_F(SingleVideoViewTest, DrawsNothingWithoutAWindow) {
    SingleVideoView early(0, PictureFit::Whole);
    early.CreateLocalFrame();
    Show(early, RedOf(64, 32));
    early.Resize(10, 10);
    Fake().ClearCalls();
    early.Render();
    EXPECT_EQ(early.Init(nullptr, 10, 10), -1);
    early.Render();
    EXPECT_THAT(DrawingCalls(), IsEmpty());
}

TEST_F(SingleVideoViewTest, SkipsADrawingWhileAnotherThreadDraws) {
    Show();
    Fake().OnCall("SDL_RenderClear", [&](const Call&) {
        Fake().OnCall("SDL_RenderClear", {});
        // It would wait for ever if it waited.
        std::async(std::launch::async, [&] { view.Render(); }).get();
    });
    view.Render();
    EXPECT_EQ(Presents(), 1U);
}

TEST_F(SingleVideoViewTest, ShutsDownAfterTheDrawingInProgress) {
    Show();
    std::future<void> shutdown;
    Fake().OnCall("SDL_RenderClear", [&](const Call&) {
        Fake().OnCall("SDL_RenderClear", {});
        shutdown = std::async(std::launch::async, [&] { view.Shutdown(); });
        EXPECT_EQ(shutdown.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    });
    view.Render();
    shutdown.get();
    const auto names = Calls().NamesAmong({"SDL_RenderPresent", "SDL_DestroyTexture", "SDL_DestroyRenderer"});
    EXPECT_THAT(names, ElementsAre("SDL_RenderPresent", "SDL_DestroyTexture", "SDL_DestroyRenderer"));
}

TEST_F(SingleVideoViewTest, ShutsDownInOrderAndIsOverThen) {
    Show();
    Settle();
    const auto sink = view.GetFrameSink();
    view.Shutdown();
    EXPECT_THAT(Calls().NamesAmong({"SDL_DestroyTexture", "SDL_DestroyRenderer", "SDL_DestroyWindow"}),
                ElementsAre("SDL_DestroyTexture", "SDL_DestroyRenderer", "SDL_DestroyWindow"));
    EXPECT_EQ(view.GetFrameSink(), nullptr);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_FALSE(view.IsInitialised());
    Fake().ClearCalls();
    // Too late, and harmless.
    (*sink)(MakeFrame());
    view.Resize(10, 10);
    view.Render();
    view.Shutdown();
    EXPECT_THAT(DrawingCalls(), IsEmpty());
}

TEST_F(SingleVideoViewTest, StartsAgainAfterItsShutdown) {
    view.Shutdown();
    ASSERT_EQ(view.Init(Handle(), kWidth, kHeight), 1);
    view.CreateLocalFrame();
    Show();
    EXPECT_TRUE(AreaIs(RenderAndRead(view), {0, 8, 64, 32}, kRed));
}

TEST_F(SingleVideoViewTest, LeavesNothingBehindWhenItIsDestroyed) {
    {
        SingleVideoView passing(0, PictureFit::Whole);
        ASSERT_EQ(passing.Init(Handle(), kWidth, kHeight), 1);
        passing.CreateLocalFrame();
        Show(passing, RedOf(8, 8));
        passing.Render();
        EXPECT_GT(Sdl().LiveTextures(), 0U);
    }
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_EQ(Sdl().LiveRenderers(), 1U);
}

TEST_F(SingleVideoViewTest, ReplacesItsFrame) {
    Show();
    Settle();
    const auto old = view.GetFrameSink();
    view.CreateLocalFrame();
    EXPECT_NE(view.GetFrameSink(), old);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    Show();
    view.Render();
    EXPECT_EQ(Presents(), 1U);
}

TEST_F(SingleVideoViewTest, DrawsNoOverlays) {
    Show();
    view.Render();
    EXPECT_EQ(Calls().Count("SDL_RenderCopy"), 1U);
    EXPECT_EQ(Calls().Count("TTF_OpenFont"), 0U);
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 0U);
}

TEST_F(SingleVideoViewTest, BlackensThePictureWhenTheVideoGoesOff) {
    Show();
    Settle();
    view.SetVideoEnabled(false);
    EXPECT_FALSE(view.IsVideoEnabled());
    EXPECT_THAT(Fake().LogsOf(2), ::testing::Contains("Enable/disable local video"));
    EXPECT_TRUE(AreaIs(RenderAndRead(view), {0, 0, kWidth, kHeight}, kBlack));
    (*view.GetFrameSink())(MakeFrame(RedOf(64, 32)));
    Fake().ClearCalls();
    view.Render();
    EXPECT_EQ(Presents(), 0U);
    view.SetVideoEnabled(true);
    Show();
    EXPECT_TRUE(AreaIs(RenderAndRead(view), {0, 8, 64, 32}, kRed));
}

TEST_F(SingleVideoViewTest, KeepsTheVideosSwitchForALaterFrame) {
    SingleVideoView later(0, PictureFit::Whole);
    EXPECT_TRUE(later.IsVideoEnabled());
    Fake().ClearLogs();
    later.SetVideoEnabled(false);
    EXPECT_THAT(Fake().LogsOf(2), IsEmpty());
    ASSERT_EQ(later.Init(Handle(), kWidth, kHeight), 1);
    later.CreateLocalFrame();
    (*later.GetFrameSink())(MakeFrame(RedOf(64, 32)));
    Fake().ClearCalls();
    later.Render();
    EXPECT_EQ(Presents(), 0U);
}

TEST_F(SingleVideoViewTest, AnswersWithWhatItWasGiven) {
    EXPECT_EQ(view.GetWindowId(), 7);
    EXPECT_EQ(view.GetStreamName(), "");
    view.SetStreamName("Camera");
    EXPECT_EQ(view.GetStreamName(), "Camera");
    EXPECT_EQ(view.GetFrameCallback(), nullptr);
    int frames = 0;
    view.SetFrameCallback([&](const std::shared_ptr<VideoFrameBuffer>&) { ++frames; });
    ASSERT_NE(view.GetFrameCallback(), nullptr);
    (*view.GetFrameCallback())(nullptr);
    EXPECT_EQ(frames, 1);
    view.SetFrameCallback({});
    EXPECT_EQ(view.GetFrameCallback(), nullptr);
}

TEST_F(SingleVideoViewTest, IsReadyOnceItWasInitialised) {
    SingleVideoView late(0, PictureFit::Whole);
    EXPECT_FALSE(late.IsWindowReady());
    ASSERT_EQ(late.Init(Handle(), kWidth, kHeight), 1);
    EXPECT_TRUE(late.IsWindowReady());
    EXPECT_EQ(late.Init(Handle(), 1, 1), 0);
    EXPECT_EQ(late.GetWidth(), kWidth);
}

}  // namespace
}  // namespace Corvanta::Video
