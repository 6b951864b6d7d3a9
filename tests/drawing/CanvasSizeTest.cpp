// The size of a canvas, and its changes.
#include <gmock/gmock.h>

#include <climits>

#include "tests/drawing/CanvasTest.h"

namespace Corvanta::Drawing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;
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

constexpr SDL_Rect kLeftOfScreen{0, 0, 319, 360};
constexpr SDL_Rect kRightOfScreen{321, 0, 319, 360};

class UnsizedCanvas : public Testing::CanvasTest {};
class SizedCanvas : public Testing::SizedCanvasTest {};

// The first size

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

// Changes of size

TEST_F(SizedCanvas, DrawsAllMarksAgainInTheirOrderForAnotherRatio) {
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

// Where there is no video yet, the tile gives the place in which it stands.
TEST_F(UnsizedCanvas, DrawsAllLayersAgainForAFirstPictureOfAnotherRatio) {
    canvas->Resize(Renderer(), 640, 360);
    const auto left = Add("a", "1", kLeftHalf, kRed);
    const auto right = Add("b", "2", kRightHalf, kGreen);
    Frame();
    EXPECT_EQ(left->viewport.w, 2560);
    canvas->Resize(Renderer(), 1024, 768);
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kRed));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kGreen));
    for (const auto& mark : {left, right}) {
        EXPECT_EQ(mark->renders, 2);
        EXPECT_EQ(mark->viewport.w, 2560);
        EXPECT_EQ(mark->viewport.h, 1920);
    }
    EXPECT_EQ(canvas->CanvasHeight(), 960);
    EXPECT_EQ(Sdl().LiveTextures(), 2U);
}

TEST_F(SizedCanvas, LeavesOutAMarkThatComesAgainAfterAChangeOfSize) {
    const auto mark = Add("a", "1");
    Frame();
    canvas->Resize(Renderer(), 640, 480);
    const auto waiting = Add("a", "1");
    Frame();
    const auto drawn = Add("a", "1");
    Frame();
    EXPECT_EQ(mark->renders, 2);
    EXPECT_EQ(waiting->renders, 0);
    EXPECT_EQ(drawn->renders, 0);
}

TEST_F(SizedCanvas, LeavesOutAMarkThatComesAgainAfterAMove) {
    const auto mark = Add("a", "1");
    Frame();
    canvas->MoveToRenderer(Renderer());
    const auto waiting = Add("a", "1");
    Frame();
    const auto drawn = Add("a", "1");
    Frame();
    EXPECT_EQ(mark->renders, 2);
    EXPECT_EQ(waiting->renders, 0);
    EXPECT_EQ(drawn->renders, 0);
}

TEST_F(SizedCanvas, KeepsTheFractionsOfAMarkThroughAChangeOfSize) {
    Add("a", "1", {320, 180, 640, 360});
    const Picture before = Frame();
    canvas->Resize(Renderer(), 1000, 1000);
    const Picture after = Frame();
    EXPECT_TRUE(AreaIs(after, {161, 91, 318, 178}, kRed));
    EXPECT_TRUE(PixelIs(after, 158, 180, kBlack));
    EXPECT_TRUE(PixelIs(after, 481, 180, kBlack));
}

TEST_F(SizedCanvas, DrawsNothingAgainWhereTheLayersKeepTheirSize) {
    const auto mark = Add("a", "1");
    Frame();
    for (const SDL_Point size : {SDL_Point{1920, 1080}, {640, 360}, {0, 0}, {1280, 720}}) {
        canvas->Resize(Renderer(), size.x, size.y);
        EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
    }
    EXPECT_EQ(mark->renders, 1);
}

TEST_F(SizedCanvas, FollowsASizeThatCameWithoutARenderer) {
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

}  // namespace
}  // namespace Corvanta::Drawing
