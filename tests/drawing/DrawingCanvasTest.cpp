// What a canvas shows of the marks that it is given.
#include "drawing/DrawingCanvas.h"

#include <gmock/gmock.h>

#include "tests/drawing/CanvasTest.h"

namespace Corvanta::Drawing {
namespace {

using ::testing::ElementsAre;
using Testing::kAll;
using Testing::kBlack;
using Testing::kBlue;
using Testing::kGreen;
using Testing::kLeftHalf;
using Testing::kRed;
using Testing::kRightHalf;
using Testing::kScreen;
using Testing::kWholeCanvas;
using Testing::Picture;
using Testing::PixelIs;
using Testing::Sdl;

constexpr SDL_Rect kLeftOfScreen{0, 0, 319, 360};
constexpr SDL_Rect kRightOfScreen{321, 0, 319, 360};

class Canvas : public Testing::SizedCanvasTest {};

// Lists and layers

TEST_F(Canvas, DrawsEachMarkOnce) {
    const auto mark = Add("a", "1");
    for (int frame = 0; frame < 3; ++frame) EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
    EXPECT_EQ(mark->renders, 1);
    EXPECT_THAT(mark->released, ElementsAre(Renderer()));
}

TEST_F(Canvas, StacksTheMarksOfALayerInTheOrderOfArrival) {
    Add("a", "2", kWholeCanvas, kRed);
    Add("a", "1", kWholeCanvas, kGreen);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kGreen));
    Add("a", "0", kWholeCanvas, kBlue);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlue));
}

TEST_F(Canvas, StacksLayersByParticipantWhateverTheOrderOfArrival) {
    Add("b", "1", kWholeCanvas, kBlue);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlue));
    Add("a", "2", kWholeCanvas, kRed);
    Add("B", "3", kWholeCanvas, kGreen);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlue));
    canvas->ClearParticipant("b");
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
}

TEST_F(Canvas, LaysTranslucentLayersOverThePicture) {
    Add("a", "1", kWholeCanvas, 0x00FFFFFF);
    reader.Fill(kGreen);
    canvas->Render(Renderer(), kAll, kScreen);
    EXPECT_TRUE(AreaIs(reader.Read(), kScreen, kGreen));
}

TEST_F(Canvas, DrawsAMarkThatComesTwiceOnce) {
    const auto waiting = Add("a", "1");
    const auto again = Add("a", "1");
    Frame();
    const auto later = Add("a", "1");
    Frame();
    EXPECT_EQ(waiting->renders, 1);
    EXPECT_EQ(again->renders, 0);
    EXPECT_EQ(later->renders, 0);
    EXPECT_EQ(Add("b", "1")->renders, 0);
}

TEST_F(Canvas, KeepsTheSameIdOfTwoParticipantsApart) {
    const auto left = Add("a", "1", kLeftHalf, kRed);
    const auto right = Add("b", "1", kRightHalf, kGreen);
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kRed));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kGreen));
}

TEST_F(Canvas, TakesIdsOfAnyKind) {
    const std::string huge(1U << 20U, 'x');
    const auto empty = Add("", "");
    const auto longOne = Add("", huge);
    const auto almostTheSame = Add("", huge + "y");
    const auto again = Add("", huge);
    const auto withNul = Add("", std::string("\0", 1));
    canvas->AddShape("", nullptr);
    Frame();
    EXPECT_EQ(empty->renders, 1);
    EXPECT_EQ(longOne->renders, 1);
    EXPECT_EQ(almostTheSame->renders, 1);
    EXPECT_EQ(again->renders, 0);
    EXPECT_EQ(withNul->renders, 1);
}

TEST_F(Canvas, ClearsTheMarksOfOneParticipant) {
    Add("a", "1", kLeftHalf, kRed);
    Add("b", "2", kRightHalf, kGreen);
    Frame();
    const auto waiting = Add("a", "3");
    canvas->ClearParticipant("a");
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kBlack));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kGreen));
    EXPECT_EQ(waiting->renders, 0);
}

TEST_F(Canvas, ClearsAllMarks) {
    Add("a", "1", kLeftHalf);
    Add("b", "2", kRightHalf);
    Frame();
    canvas->ClearAll();
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlack));
}

TEST_F(Canvas, DrawsAMarkAgainThatComesBackAfterAClear) {
    const auto mark = Add("a", "1", kLeftHalf);
    Add("a", "2", kRightHalf);
    Frame();
    canvas->ClearParticipant("a");
    canvas->AddShape("a", mark);
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kRed));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kBlack));
    EXPECT_EQ(mark->renders, 2);
}

TEST_F(Canvas, ClearsNothingElseForAParticipantWhoHasNeverDrawn) {
    Add("a", "1");
    Frame();
    canvas->ClearParticipant("b");
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
    EXPECT_EQ(Sdl().LiveTextures(), 1U);
}

TEST_F(Canvas, MakesLayersThatBlendAndScaleSmoothly) {
    const auto mark = Add("a", "1");
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

// It would be drawn again in each frame otherwise.
TEST_F(Canvas, IsDoneWithAMarkThatShowsNothing) {
    const auto nothing = Add("a", "1", {100, 100, 0, 0});
    for (int frame = 0; frame < 3; ++frame) EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlack));
    EXPECT_EQ(nothing->renders, 1);
    EXPECT_EQ(nothing->released.size(), 1U);
    const auto again = Add("a", "1");
    Frame();
    EXPECT_EQ(again->renders, 0);
    canvas->Resize(Renderer(), 640, 480);
    Frame();
    EXPECT_EQ(nothing->renders, 2);
}

TEST_F(Canvas, TakesSeveralMarksInTheirOrderWithoutThoseThatItHas) {
    std::vector<std::string> order;
    const auto known = Add("a", "1");
    Frame();
    std::vector<std::shared_ptr<Shape>> marks;
    for (const auto* const id : {"3", "1", "2", "3"}) {
        const auto mark = Mark(id);
        mark->log = &order;
        marks.push_back(mark);
    }
    marks.push_back(nullptr);
    canvas->AddShapes("a", marks);
    Frame();
    EXPECT_THAT(order, ElementsAre("3", "2"));
    EXPECT_EQ(known->renders, 1);
}

TEST_F(Canvas, PutsMarksInThePlaceOfAParticipants) {
    Add("a", "1", kLeftHalf, kRed);
    const auto others = Add("b", "2", {0, 0, 1280, 72}, kBlue);
    Frame();
    const auto waiting = Add("a", "3");
    const std::vector<std::shared_ptr<Shape>> marks{Mark("1", kRightHalf, kGreen)};
    canvas->ReplaceShapes("a", marks);
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, {0, 40, 319, 320}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {321, 40, 319, 320}, kGreen));
    EXPECT_TRUE(AreaIs(picture, {0, 0, 640, 34}, kBlue));
    EXPECT_EQ(waiting->renders, 0);
    EXPECT_EQ(others->renders, 1);
    canvas->ReplaceShapes("a", {});
    EXPECT_TRUE(AreaIs(Frame(), {0, 40, 640, 320}, kBlack));
}

// The part that the tile shows

TEST_F(Canvas, ShowsOnlyItsMiddleOverANarrowerPicture) {
    // The middle 540 of 1280 units.
    Add("a", "1", {0, 0, 370, 720}, kRed);
    Add("a", "2", {370, 0, 540, 720}, kGreen);
    Add("a", "3", {910, 0, 370, 720}, kBlue);
    EXPECT_TRUE(AreaIs(Frame({420, 0, 1080, 1440}), {1, 0, 638, 360}, kGreen));
}

TEST_F(Canvas, DrawsInThePlaceOfTheTile) {
    Add("a", "1");
    const Picture picture = Frame(kAll, {100, 50, 320, 180});
    EXPECT_TRUE(AreaIs(picture, {100, 50, 320, 180}, kRed));
    EXPECT_TRUE(PixelIs(picture, 99, 100, kBlack));
    EXPECT_TRUE(PixelIs(picture, 420, 100, kBlack));
    EXPECT_TRUE(PixelIs(picture, 200, 49, kBlack));
    EXPECT_TRUE(PixelIs(picture, 200, 230, kBlack));
}

TEST_F(Canvas, ShowsNothingWithoutARatioAndStillDrawsTheMarks) {
    const auto mark = Add("a", "1");
    EXPECT_TRUE(AreaIs(Frame({0, 0, 100, 0}, {0, 0, 640, 0}), kScreen, kBlack));
    EXPECT_EQ(mark->renders, 1);
    EXPECT_TRUE(AreaIs(Frame({0, 0, -1, 100}), kScreen, kBlack));
    EXPECT_EQ(Testing::Calls().Count("SDL_RenderCopy"), 0U);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
    EXPECT_EQ(mark->renders, 1);
}

// Renderers

TEST_F(Canvas, DrawsEverythingAgainOnTheRendererToWhichItMoves) {
    const auto drawn = Add("a", "1", kLeftHalf, kRed);
    Frame();
    const auto waiting = Add("a", "2", kRightHalf, kGreen);
    const Testing::PixelReader other(kScreen.w, kScreen.h);
    canvas->MoveToRenderer(other.Renderer());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);

    canvas->Render(other.Renderer(), kAll, kScreen);
    const Picture picture = other.Read();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kRed));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kGreen));
    EXPECT_EQ(drawn->renders, 2);
    EXPECT_EQ(waiting->renders, 1);
    canvas->ReleaseResources(other.Renderer());
}

TEST_F(Canvas, ReleasesWhatMarksHoldForBothRenderersWhenItMoves) {
    const auto mark = Add("a", "1");
    Frame();
    mark->released.clear();
    const Testing::PixelReader other(8, 8);
    canvas->MoveToRenderer(other.Renderer());
    EXPECT_THAT(mark->released, ::testing::UnorderedElementsAre(Renderer(), other.Renderer()));
}

TEST_F(Canvas, StartsAfreshOnARendererToWhichItWasNotMoved) {
    auto lost = std::make_unique<Testing::PixelReader>(kScreen.w, kScreen.h);
    canvas->Resize(lost->Renderer(), 1280, 720);
    const auto mark = Add("a", "1");
    canvas->SetPreview(Mark("p", kRightHalf, kGreen));
    canvas->Render(lost->Renderer(), kAll, kScreen);
    lost.reset();
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kRed));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kGreen));
    EXPECT_EQ(mark->renders, 2);
}

TEST_F(Canvas, LosesAllMarksWithItsResources) {
    const auto drawn = Add("a", "1");
    Frame();
    const auto waiting = Add("a", "2");
    drawn->released.clear();
    canvas->ReleaseResources(Renderer());
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    EXPECT_THAT(drawn->released, ElementsAre(Renderer()));
    EXPECT_THAT(waiting->released, ElementsAre(Renderer()));
    EXPECT_EQ(drawn.use_count(), 1);
    EXPECT_EQ(waiting.use_count(), 1);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlack));
    EXPECT_TRUE(AreaIs((Add("a", "1"), Frame()), kScreen, kRed));
}

TEST_F(Canvas, HasNoUseForANullRenderer) {
    Add("a", "1", {0, 0, 1280, 960});
    canvas->Render(nullptr, kAll, kScreen);
    canvas->Resize(nullptr, 640, 480);
    canvas->MoveToRenderer(nullptr);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
    canvas->ReleaseResources(nullptr);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
}

// Failures

TEST_F(Canvas, KeepsMarksWhileNoLayerCanBeMade) {
    Sdl().FailAlways("SDL_CreateTexture");
    const auto first = Add("a", "1", kWholeCanvas, kRed);
    const auto second = Add("a", "2", kRightHalf, kGreen);
    for (int frame = 0; frame < 2; ++frame) EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlack));
    EXPECT_EQ(first->renders, 0);
    Sdl().Reset();
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kRed));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kGreen));
}

TEST_F(Canvas, ShowsTheLayersThatCouldBeMade) {
    Sdl().Fail("SDL_CreateTexture");
    Add("a", "1", kLeftHalf, kRed);
    Add("b", "2", kRightHalf, kGreen);
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kBlack));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kGreen));
    EXPECT_TRUE(AreaIs(Frame(), kLeftOfScreen, kRed));
}

TEST_F(Canvas, DrawsNoMarkOntoTheWindowWhereALayerCannotBeDrawnInto) {
    Add("a", "0", kRightHalf, kBlue);
    Frame();
    Sdl().Fail("SDL_SetRenderTarget", 1);
    const auto mark = Add("a", "1", kLeftHalf, kRed);
    const Picture picture = Frame();
    EXPECT_EQ(mark->renders, 0);
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kBlack));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kBlue));
    EXPECT_TRUE(AreaIs(Frame(), kLeftOfScreen, kRed));
}

TEST_F(Canvas, ShowsNoLayerThatCouldNotBeCleared) {
    Add("a", "1");
    Frame();
    canvas->ClearParticipant("a");
    Add("a", "2", kLeftHalf, kGreen);
    Sdl().Fail("SDL_SetRenderTarget", 1);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kBlack));
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kGreen));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kBlack));
}

}  // namespace
}  // namespace Corvanta::Drawing
