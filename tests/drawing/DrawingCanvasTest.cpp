// What a canvas shows of the marks that it is given.
#include "drawing/DrawingCanvas.h"

#include <gmock/gmock.h>

#include <climits>

#include "tests/drawing/CanvasTest.h"

namespace Corvanta::Drawing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
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
using Testing::SamePicture;
using Testing::Sdl;

constexpr SDL_Rect kLeftOfScreen{0, 0, 319, 360};
constexpr SDL_Rect kRightOfScreen{321, 0, 319, 360};

class UnsizedCanvas : public Testing::CanvasTest {};
class Canvas : public Testing::SizedCanvasTest {};

// Size

TEST_F(UnsizedCanvas, DrawsNothingAndKeepsMarksUntilItHasASize) {
    const auto first = Add("a", "1", kWholeCanvas, kRed);
    const auto second = Add("a", "2", kRightHalf, kGreen);
    EXPECT_THAT(CallsOfFrame(), IsEmpty());
    EXPECT_EQ(first->renders, 0);
    EXPECT_EQ(canvas->CanvasWidth(), 0);
    EXPECT_EQ(canvas->CanvasHeight(), 0);
    EXPECT_EQ(canvas->TextureWidth(), 0);
    EXPECT_EQ(canvas->TextureHeight(), 0);

    canvas->Resize(Renderer(), 1280, 720);
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kRed));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kGreen));
    EXPECT_EQ(second->renders, 1);
}

TEST_F(UnsizedCanvas, GetsItsSizeFromTheFrameAlone) {
    canvas->SetFrameSize(1920, 1080);
    EXPECT_EQ(canvas->CanvasWidth(), 1280);
    EXPECT_EQ(canvas->CanvasHeight(), 720);
    EXPECT_EQ(canvas->TextureWidth(), 2560);
    EXPECT_EQ(canvas->TextureHeight(), 1440);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
}

TEST_F(UnsizedCanvas, PassesOverASizeThatIsNotPositive) {
    for (const SDL_Point size : {SDL_Point{0, 720}, {1280, 0}, {-1280, -720}, {0, 0}, {INT_MIN, INT_MIN}}) {
        canvas->SetFrameSize(size.x, size.y);
        canvas->Resize(Renderer(), size.x, size.y);
        EXPECT_EQ(canvas->TextureWidth(), 0);
    }
    canvas->Resize(Renderer(), 720, 1280);
    canvas->Resize(Renderer(), 0, 0);
    EXPECT_EQ(canvas->CanvasWidth(), 540);
    EXPECT_EQ(canvas->TextureWidth(), 1080);
}

TEST_F(UnsizedCanvas, ShowsAMarkAtOnePlaceWhateverResolutionTheStreamHas) {
    canvas->Resize(Renderer(), 1280, 720);
    Add("a", "1", {320, 180, 640, 360});
    const Picture first = Frame();
    EXPECT_TRUE(AreaIs(first, {161, 91, 318, 178}, kRed));
    EXPECT_TRUE(PixelIs(first, 158, 180, kBlack));
    for (const SDL_Point size : {SDL_Point{1920, 1080}, {3840, 2160}, {320, 180}}) {
        canvas->ReleaseResources(Renderer());
        canvas->Resize(Renderer(), size.x, size.y);
        Add("a", "1", {320, 180, 640, 360});
        EXPECT_TRUE(SamePicture(Frame(), first));
    }
}

TEST_F(UnsizedCanvas, ShowsAMarkAtTheFractionsThatItsUnitsHaveOnItsOwnCanvas) {
    // 960 by 960 units.
    canvas->Resize(Renderer(), 1000, 1000);
    Add("a", "1", {480, 480, 480, 480});
    const Picture square = Frame();
    EXPECT_TRUE(AreaIs(square, {321, 181, 319, 179}, kRed));
    EXPECT_TRUE(AreaIs(square, kLeftOfScreen, kBlack));

    canvas->ReleaseResources(Renderer());
    canvas->Resize(Renderer(), 1280, 720);
    Add("a", "1", {480, 480, 480, 480});
    const Picture wide = Frame();
    EXPECT_TRUE(AreaIs(wide, {241, 241, 238, 119}, kRed));
    EXPECT_TRUE(PixelIs(wide, 238, 300, kBlack));
    EXPECT_TRUE(PixelIs(wide, 482, 300, kBlack));
}

TEST_F(UnsizedCanvas, ShowsMarksOnFramesOfEveryShape) {
    for (const SDL_Point size :
         {SDL_Point{1, 1}, {8192, 8192}, {4000, 1000}, {8192, 1}, {1, 8192}, {720, 1280}}) {
        canvas->Resize(Renderer(), size.x, size.y);
        const auto width = static_cast<float>(canvas->CanvasWidth());
        const auto height = static_cast<float>(canvas->CanvasHeight());
        Add("a", "1", {width / 2, 0, width / 2, height});
        const Picture picture = Frame();
        EXPECT_TRUE(PixelIs(picture, 600, 180, kRed)) << size.x << 'x' << size.y;
        EXPECT_TRUE(PixelIs(picture, 40, 180, kBlack)) << size.x << 'x' << size.y;
        canvas->ReleaseResources(Renderer());
    }
}

TEST_F(UnsizedCanvas, HoldsItsLayersWithinWhatTheRendererMakes) {
    Sdl().LimitTextureSides(1024);
    canvas->Resize(Renderer(), 1280, 720);
    const auto mark = Add("a", "1", kLeftHalf);
    EXPECT_TRUE(AreaIs(Frame(), {0, 0, 318, 360}, kRed));
    EXPECT_EQ(mark->viewport.w, 1024);
    EXPECT_EQ(mark->viewport.h, 576);
    EXPECT_EQ(canvas->TextureWidth(), 1024);
    EXPECT_EQ(canvas->TextureHeight(), 576);
    EXPECT_EQ(canvas->CanvasWidth(), 1280);
}

TEST_F(UnsizedCanvas, AsksARendererOnceWhatItMakes) {
    Sdl().LimitTextureSides(1024);
    canvas->Resize(Renderer(), 1280, 720);
    Sdl().LimitTextureSides(512);
    canvas->Resize(Renderer(), 720, 1280);
    Frame();
    EXPECT_EQ(canvas->TextureHeight(), 1024);
    canvas->MoveToRenderer(Renderer());
    Frame();
    EXPECT_EQ(canvas->TextureHeight(), 512);
}

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

// Changes of size

TEST_F(Canvas, DrawsAllMarksAgainInTheirOrderForAnotherRatio) {
    std::vector<std::string> order;
    for (const auto& id : {"3", "1", "2"}) Add("a", id, kWholeCanvas, kRed)->log = &order;
    Frame();
    Add("a", "0", kLeftHalf, kGreen)->log = &order;
    order.clear();
    canvas->Resize(Renderer(), 640, 480);
    const Picture picture = Frame();
    EXPECT_THAT(order, ElementsAre("3", "1", "2", "0"));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kRed));
    // Its fractions are those of 1280 by 960 units, where it was drawn first.
    EXPECT_TRUE(AreaIs(picture, {0, 0, 319, 269}, kGreen));
    EXPECT_TRUE(AreaIs(picture, {0, 271, 319, 89}, kRed));
    EXPECT_EQ(Sdl().LiveTextures(), 1U);
}

TEST_F(Canvas, KeepsTheFractionsOfAMarkThroughAChangeOfSize) {
    Add("a", "1", {320, 180, 640, 360});
    const Picture before = Frame();
    canvas->Resize(Renderer(), 1000, 1000);
    const Picture after = Frame();
    EXPECT_TRUE(AreaIs(after, {161, 91, 318, 178}, kRed));
    EXPECT_TRUE(PixelIs(after, 158, 180, kBlack));
    EXPECT_TRUE(PixelIs(after, 481, 180, kBlack));
}

TEST_F(Canvas, DrawsNothingAgainWhereTheLayersKeepTheirSize) {
    const auto mark = Add("a", "1");
    Frame();
    for (const SDL_Point size : {SDL_Point{1920, 1080}, {640, 360}, {0, 0}, {1280, 720}}) {
        canvas->Resize(Renderer(), size.x, size.y);
        EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
    }
    EXPECT_EQ(mark->renders, 1);
}

TEST_F(Canvas, FollowsASizeThatCameWithoutARenderer) {
    const auto mark = Add("a", "1");
    Frame();
    canvas->SetFrameSize(1000, 1000);
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
    EXPECT_EQ(mark->viewport.w, 1920);
    canvas->Resize(Renderer(), 1280, 720);
    Frame();
    EXPECT_EQ(mark->viewport.w, 2560);
    EXPECT_EQ(mark->renders, 3);
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
