// Renderers that lose what was drawn into their textures, and renderers that go without a word.
#include <gmock/gmock.h>

#include <memory>

#include "drawing/ErasedLinePath.h"
#include "drawing/LinePath.h"
#include "drawing/TextBox.h"
#include "tests/drawing/CanvasTest.h"

namespace Corvanta::Drawing {
namespace {

using Testing::Calls;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using Testing::kAll;
using Testing::kBlack;
using ::testing::Key;
using Testing::kGreen;
using Testing::kLeftHalf;
using Testing::kRed;
using Testing::kRightHalf;
using Testing::kScreen;
using Testing::kWholeCanvas;
using Testing::Picture;
using Testing::SamePicture;
using Testing::Sdl;

constexpr SDL_Rect kLeftOfScreen{0, 0, 319, 360};
constexpr SDL_Rect kRightOfScreen{321, 0, 319, 360};

void AddThrough(LinePath& path) {
    path.strokeWidth = 100;
    path.color = Color(255, 0, 0, 255);
    path.points = {{100, 360}, {600, 360}, {1100, 360}};
}

// As a driver does.
void Lose(SDL_Renderer* renderer, SDL_Texture* texture) {
    ASSERT_EQ(SDL_SetRenderTarget(renderer, texture), 0);
    SDL_SetRenderDrawColor(renderer, 0, 0, 0, 0);
    SDL_RenderClear(renderer);
    SDL_SetRenderTarget(renderer, nullptr);
}

// Lost targets

class LostTargets : public Testing::SizedCanvasTest {};

TEST_F(LostTargets, AreDrawnAgainInTheOrderOfTheirMarks) {
    std::vector<std::string> order;
    const auto first = Add("a", "2", kWholeCanvas, kRed);
    const auto second = Add("a", "1", kRightHalf, kGreen);
    Frame();
    const auto waiting = Add("a", "0", {0, 0, 1280, 72}, kGreen);
    for (const auto& mark : {first, second, waiting}) mark->log = &order;
    Lose(Renderer(), first->target);
    canvas->DrawAgain();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    const Picture picture = Frame();
    EXPECT_THAT(order, ElementsAre("2", "1", "0"));
    EXPECT_TRUE(AreaIs(picture, {0, 40, 319, 320}, kRed));
    EXPECT_TRUE(AreaIs(picture, {0, 0, 640, 34}, kGreen));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kGreen));
    Frame();
    EXPECT_EQ(first->renders, 2);
    EXPECT_EQ(waiting->renders, 1);
}

TEST_F(LostTargets, OfAllParticipantsAreDrawnAgain) {
    const auto left = Add("a", "1", kLeftHalf, kRed);
    const auto right = Add("b", "1", kRightHalf, kGreen);
    Frame();
    Lose(Renderer(), left->target);
    Lose(Renderer(), right->target);
    ASSERT_TRUE(AreaIs(Frame(), kScreen, kBlack));
    canvas->DrawAgain();
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, kLeftOfScreen, kRed));
    EXPECT_TRUE(AreaIs(picture, kRightOfScreen, kGreen));
}

TEST_F(LostTargets, LeaveAStrokeThatGrowsWhole) {
    const auto path = std::make_shared<LinePath>();
    AddThrough(*path);
    canvas->SetPreview(path);
    const Picture before = Frame();
    ASSERT_THAT(path->strokeTextures, ElementsAre(Key(Renderer())));
    Lose(Renderer(), path->strokeTextures.at(Renderer()));
    canvas->DrawAgain();
    EXPECT_TRUE(SamePicture(Frame(), before));
    EXPECT_FALSE(AreaIs(before, kScreen, kBlack));
    canvas->SetPreview(nullptr);
}

TEST_F(LostTargets, AreErasedAgainWhereTheEraserWas) {
    Add("me", "1");
    Frame();
    LinePath path;
    AddThrough(path);
    canvas->SetPreview(std::make_shared<ErasedLinePath>(path));
    Frame();
    const Picture before = Frame();
    canvas->DrawAgain();
    Frame();
    EXPECT_TRUE(SamePicture(Frame(), before));
    EXPECT_TRUE(AreaIs(before, {60, 160, 480, 40}, kBlack));
}

TEST_F(LostTargets, OfACanvasThatHasDrawnNothingAreNone) {
    DrawingCanvas fresh;
    Calls().Clear();
    fresh.DrawAgain();
    canvas->DrawAgain();
    EXPECT_THAT(Calls().All(), IsEmpty());
    Add("a", "1");
    canvas->DrawAgain();
    EXPECT_TRUE(AreaIs(Frame(), kScreen, kRed));
}

// A renderer that has gone

class LostRenderer : public Testing::SizedCanvasTest {
protected:
    LostRenderer() {
        canvas->MoveToRenderer(lost_->Renderer());
        canvas->Resize(lost_->Renderer(), 1280, 720);
    }

    void DrawOnIt() { canvas->Render(LostOne(), kAll, kScreen); }
    // The canvas is not told.
    void Lose() { lost_.reset(); }
    [[nodiscard]] SDL_Renderer* LostOne() const { return lost_->Renderer(); }

private:
    std::unique_ptr<Testing::PixelReader> lost_ =
        std::make_unique<Testing::PixelReader>(kScreen.w, kScreen.h);
};

TEST_F(LostRenderer, LeavesAStrokeThatGrowsWhole) {
    const auto path = std::make_shared<LinePath>();
    AddThrough(*path);
    canvas->SetPreview(path);
    DrawOnIt();
    ASSERT_THAT(path->strokeTextures, ElementsAre(Key(LostOne())));
    Lose();
    const Picture picture = Frame();
    EXPECT_TRUE(AreaIs(picture, {60, 160, 480, 40}, kRed));
    EXPECT_THAT(path->strokeTextures, ElementsAre(Key(Renderer())));
    EXPECT_THAT(path->tailTextures, ElementsAre(Key(Renderer())));
}

TEST_F(LostRenderer, LeavesAStrokeThatWaitsForItsLayer) {
    const auto path = std::make_shared<LinePath>();
    AddThrough(*path);
    canvas->SetPreview(path);
    DrawOnIt();
    canvas->SetPreview(nullptr);
    path->controlId = "1";
    canvas->AddShape("me", path);
    Lose();
    EXPECT_TRUE(AreaIs(Frame(), {60, 160, 480, 40}, kRed));
    EXPECT_THAT(path->strokeTextures, IsEmpty());
    EXPECT_THAT(path->tailTextures, IsEmpty());
}

TEST_F(LostRenderer, TakesAStrokeAlongThatWasThrownAway) {
    const auto path = std::make_shared<LinePath>();
    AddThrough(*path);
    canvas->SetPreview(path);
    DrawOnIt();
    canvas->SetPreview(nullptr);
    Lose();
    Frame();
    EXPECT_THAT(path->strokeTextures, IsEmpty());
    EXPECT_THAT(path->tailTextures, IsEmpty());
}

TEST_F(LostRenderer, KeepsATextureThatAnotherRendererHas) {
    TextBox text;
    LinePath path;
    SDL_Texture* const kept =
        SDL_CreateTexture(Renderer(), SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_TARGET, 8, 8);
    SDL_Texture* const gone =
        SDL_CreateTexture(LostOne(), SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_TARGET, 8, 8);
    for (auto* const textures : {&text.textures, &path.strokeTextures, &path.tailTextures}) {
        *textures = {{Renderer(), kept}, {LostOne(), gone}};
    }
    SDL_Renderer* const lost = LostOne();
    Lose();
    Calls().Clear();
    text.ForgetTextures(lost);
    path.ForgetTextures(lost);
    EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 0U);
    for (auto* const textures : {&text.textures, &path.strokeTextures, &path.tailTextures}) {
        EXPECT_THAT(*textures, ElementsAre(Key(Renderer())));
        textures->clear();
    }
    SDL_DestroyTexture(kept);
}

}  // namespace
}  // namespace Corvanta::Drawing
