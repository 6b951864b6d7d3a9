// The shape that the local user is drawing, as a canvas shows it.
#include <gmock/gmock.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "drawing/ErasedLinePath.h"
#include "drawing/LinePath.h"
#include "tests/drawing/CanvasTest.h"

namespace Corvanta::Drawing {
namespace {

using Testing::Calls;
using ::testing::ElementsAre;
using Testing::Fake;
using ::testing::IsEmpty;
using Testing::kAll;
using Testing::kBlack;
using Testing::kGreen;
using Testing::kLeftHalf;
using Testing::kRed;
using Testing::kRightHalf;
using Testing::kScreen;
using Testing::kWholeCanvas;
using Testing::Picture;
using Testing::PixelIs;
using Testing::SamePicture;
using Testing::Sdl;

class CanvasPreview : public Testing::SizedCanvasTest {
protected:
    // A stroke through the middle, 100 of 720 canvas units high.
    static std::shared_ptr<ErasedLinePath> Eraser() {
        LinePath path;
        path.strokeWidth = 100;
        path.points = {{100, 360}, {600, 360}, {1100, 360}};
        return std::make_shared<ErasedLinePath>(path);
    }
};

TEST_F(CanvasPreview, LiesOverAllLayers) {
    Add("zzz", "1", kWholeCanvas, kRed);
    canvas->SetPreview(Mark("p", kLeftHalf, kGreen));
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, {0, 0, 319, 360}, kGreen));
    EXPECT_TRUE(AreaIs(picture, {321, 0, 319, 360}, kRed));
}

TEST_F(CanvasPreview, ShowsOverAPictureWithoutMarks) {
    canvas->SetPreview(Mark("p"));
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
}

TEST_F(CanvasPreview, FollowsTheGestureAndLeavesNoTrace) {
    const auto mark = Mark("p", kLeftHalf);
    canvas->SetPreview(mark);
    Frame();
    mark->SetStart(640, 0);
    const Picture moved = Frame();
    EXPECT_TRUE(AreaIs(moved, {0, 0, 319, 360}, kBlack));
    EXPECT_TRUE(AreaIs(moved, {321, 0, 319, 360}, kRed));
    EXPECT_EQ(mark->renders, 2);
    canvas->SetPreview(nullptr);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlack));
}

TEST_F(CanvasPreview, LooksAsTheFinishedMark) {
    const auto mark = Mark("p", {111, 77, 345, 678});
    canvas->SetPreview(mark);
    const SDL_Rect source{0, 0, 400, 300};
    const Picture preview = Frame(source);
    canvas->SetPreview(nullptr);
    canvas->AddShape("me", mark);
    EXPECT_TRUE(SamePicture(Frame(source), preview));
}

TEST_F(CanvasPreview, IsReleasedOnceALayerHasTakenItOver) {
    const auto mark = Mark("p");
    canvas->SetPreview(mark);
    Frame();
    EXPECT_THAT(mark->released, IsEmpty());
    canvas->SetPreview(nullptr);
    canvas->AddShape("me", mark);
    EXPECT_THAT(mark->released, IsEmpty());
    Frame();
    EXPECT_FALSE(mark->released.empty());
    EXPECT_THAT(mark->released, ::testing::Each(Renderer()));
}

TEST_F(CanvasPreview, IsReleasedWhenItIsThrownAway) {
    const auto mark = Mark("p");
    canvas->SetPreview(mark);
    Frame();
    canvas->SetPreview(Mark("q"));
    Frame();
    EXPECT_THAT(mark->released, ElementsAre(Renderer()));
    EXPECT_EQ(mark.use_count(), 1);
}

TEST_F(CanvasPreview, EndsWithTheMoveToAnotherRenderer) {
    const auto mark = Mark("p");
    canvas->SetPreview(mark);
    Frame();
    const Testing::PixelReader other(kScreen.w, kScreen.h);
    canvas->MoveToRenderer(other.Renderer());
    EXPECT_THAT(mark->released, ::testing::Contains(Renderer()));
    EXPECT_EQ(mark.use_count(), 1);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    canvas->Render(other.Renderer(), kAll, kScreen);
    EXPECT_TRUE(AreaIs(other.Read(), kScreen, kBlack));
}

TEST_F(CanvasPreview, EndsWithTheResources) {
    const auto mark = Mark("p");
    canvas->SetPreview(mark);
    Frame();
    canvas->ReleaseResources(Renderer());
    EXPECT_THAT(mark->released, ::testing::Contains(Renderer()));
    EXPECT_EQ(mark.use_count(), 1);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlack));
}

TEST_F(CanvasPreview, ThatWasThrownAwayIsReleasedByAMoveToo) {
    const auto mark = Mark("p");
    canvas->SetPreview(mark);
    Frame();
    canvas->SetPreview(nullptr);
    canvas->MoveToRenderer(Renderer());
    EXPECT_THAT(mark->released, ElementsAre(Renderer()));
}

TEST_F(CanvasPreview, GetsATextureOfTheNewSize) {
    const auto mark = Mark("p");
    canvas->SetPreview(mark);
    Frame();
    canvas->Resize(Renderer(), 1000, 1000);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
    EXPECT_EQ(mark->viewport.w, 1920);
    EXPECT_EQ(Sdl().LiveTextures(), 1U);
}

TEST_F(CanvasPreview, HasATextureAsALayerHas) {
    const auto mark = Mark("p");
    canvas->SetPreview(mark);
    Frame();
    Uint32 format = 0;
    int access = 0;
    SDL_Point size{};
    ASSERT_EQ(SDL_QueryTexture(mark->target, &format, &access, &size.x, &size.y), 0);
    EXPECT_EQ(format, static_cast<Uint32>(SDL_PIXELFORMAT_ARGB8888));
    EXPECT_EQ(access, SDL_TEXTUREACCESS_TARGET);
    EXPECT_EQ(size.x, 2560);
    EXPECT_EQ(size.y, 1440);
    SDL_BlendMode blendMode = SDL_BLENDMODE_NONE;
    SDL_GetTextureBlendMode(mark->target, &blendMode);
    EXPECT_EQ(blendMode, SDL_BLENDMODE_BLEND);
    SDL_ScaleMode scaleMode = SDL_ScaleModeNearest;
    SDL_GetTextureScaleMode(mark->target, &scaleMode);
    EXPECT_EQ(scaleMode, SDL_ScaleModeLinear);
}

TEST_F(CanvasPreview, IsDrawnAtItsPlaceAndBlended) {
    const auto mark = Mark("p", {320, 180, 640, 360}, 0x80FF0000);
    canvas->SetPreview(mark);
    reader.Fill(kGreen);
    canvas->Render(Renderer(), kAll, kScreen);
    const Picture picture = reader.Read();
    EXPECT_EQ(mark->blendMode, SDL_BLENDMODE_BLEND);
    EXPECT_TRUE(PixelIs(picture, 100, 180, kGreen));
    EXPECT_FALSE(PixelIs(picture, 320, 180, kGreen, 60));
    EXPECT_FALSE(PixelIs(picture, 320, 180, kRed, 60));
}

TEST_F(CanvasPreview, IsNotDrawnOntoTheWindowWhereItHasNoTexture) {
    const auto mark = Mark("p");
    canvas->SetPreview(mark);
    Sdl().Fail("SDL_CreateTexture");
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlack));
    Sdl().Fail("SDL_SetRenderTarget");
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlack));
    EXPECT_EQ(mark->renders, 0);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
}

TEST_F(CanvasPreview, IsLoggedWhenTheCanvasGoesWhileItsTextureLives) {
    canvas->SetPreview(Mark("p"));
    Frame();
    canvas.reset();
    EXPECT_THAT(Fake().LogsOf(4),
                ElementsAre("Attempting to delete canvas when rendering resources are still valid"));
}

TEST_F(CanvasPreview, IsNotLoggedWhenTheCanvasGoesInOrder) {
    canvas->SetPreview(Mark("p"));
    Frame();
    canvas->ReleaseResources(Renderer());
    canvas.reset();
    EXPECT_THAT(Fake().LogsOf(4), IsEmpty());
}

TEST_F(CanvasPreview, AsksNobodyForTheLocalUser) {
    canvas->SetPreview(Mark("p"));
    Frame();
    canvas->SetPreview(nullptr);
    Frame();
    EXPECT_EQ(Calls().Count("Connections_GetLocalUserStreamID"), 0U);
}

// The eraser

TEST_F(CanvasPreview, OfAnEraserActsOnTheLocalLayerAlone) {
    Add("a", "1", kLeftHalf, kGreen);
    Add("me", "2", kWholeCanvas, kRed);
    Frame();
    canvas->SetPreview(Eraser());
    // The layer has been shown already.
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, {60, 160, 250, 40}, kGreen));
    EXPECT_TRUE(AreaIs(picture, {330, 160, 200, 40}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {0, 0, 640, 150}, kRed));
    EXPECT_EQ(Sdl().LiveTextures(), 2U);
}

TEST_F(CanvasPreview, OfAnEraserIsWhatTheFinishedStrokeErases) {
    Add("me", "1", kWholeCanvas, kRed);
    Frame();
    const auto eraser = Eraser();
    canvas->SetPreview(eraser);
    Frame();
    const Picture preview = Frame();
    canvas->SetPreview(nullptr);
    eraser->controlId = "2";
    canvas->AddShape("me", eraser);
    EXPECT_TRUE(SamePicture(Frame(), preview));
    canvas->Resize(Renderer(), 640, 480);
    canvas->Resize(Renderer(), 1280, 720);
    EXPECT_TRUE(SamePicture(Frame(), preview));
}

TEST_F(CanvasPreview, OfAnEraserDoesNothingWithoutALocalLayer) {
    Add("a", "1", kWholeCanvas, kGreen);
    Frame();
    const auto eraser = Eraser();
    canvas->SetPreview(eraser);
    for (int frame = 0; frame < 2; ++frame) EXPECT_TRUE(AreaIs(Frame(), kScreen, kGreen));
    EXPECT_EQ(Sdl().LiveTextures(), 1U);

    canvas->SetPreview(nullptr);
    eraser->controlId = "2";
    canvas->AddShape("me", eraser);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kGreen));
    EXPECT_EQ(Sdl().LiveTextures(), 2U);
}

TEST_F(CanvasPreview, OfAnEraserAsksForTheLocalUserWithoutALock) {
    Add("me", "1");
    Frame();
    std::atomic<bool> isDone = false;
    bool wasFree = false;
    std::thread other;
    Calls().OnCall("Connections_GetLocalUserStreamID", [&](const Testing::Call& call) {
        EXPECT_THAT(call.arguments, ElementsAre("0"));
        other = std::thread([&] {
            canvas->ClearParticipant("b");
            isDone = true;
        });
        const auto end = std::chrono::steady_clock::now() + std::chrono::seconds(5);
        while (!isDone && std::chrono::steady_clock::now() < end) std::this_thread::yield();
        wasFree = isDone;
    });
    canvas->SetPreview(Eraser());
    Frame();
    other.join();
    EXPECT_TRUE(wasFree);
    EXPECT_EQ(Calls().Count("Connections_GetLocalUserStreamID"), 1U);
}

}  // namespace
}  // namespace Corvanta::Drawing
