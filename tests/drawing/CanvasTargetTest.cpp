// What a canvas leaves behind in the renderer, and what it relies on.
#include <vector>

#include "tests/drawing/CanvasTest.h"

namespace Corvanta::Drawing {
namespace {

using Testing::AreaIs;
using Testing::kAll;
using Testing::kBlack;
using Testing::kGreen;
using Testing::kLeftHalf;
using Testing::kRed;
using Testing::kScreen;
using Testing::Picture;
using Testing::PixelIs;

struct View {
    SDL_Texture* target = nullptr;
    SDL_Rect viewport{};
    float scaleX = 0;
    float scaleY = 0;
    bool isClipped = false;
    SDL_Rect clip{};

    static View Of(SDL_Renderer* renderer) {
        View view;
        view.target = SDL_GetRenderTarget(renderer);
        SDL_RenderGetViewport(renderer, &view.viewport);
        SDL_RenderGetScale(renderer, &view.scaleX, &view.scaleY);
        view.isClipped = SDL_RenderIsClipEnabled(renderer) == SDL_TRUE;
        SDL_RenderGetClipRect(renderer, &view.clip);
        return view;
    }
    bool operator==(const View& other) const {
        return target == other.target && SDL_RectEquals(&viewport, &other.viewport) == SDL_TRUE &&
               scaleX == other.scaleX && scaleY == other.scaleY && isClipped == other.isClipped &&
               SDL_RectEquals(&clip, &other.clip) == SDL_TRUE;
    }
};

// With and without a texture into which the tile itself is drawn.
class CanvasTarget : public Testing::SizedCanvasTest, public ::testing::WithParamInterface<bool> {
protected:
    CanvasTarget() {
        if (GetParam()) {
            outer_ =
                SDL_CreateTexture(Renderer(), SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_TARGET, 301, 201);
            SDL_SetRenderTarget(Renderer(), outer_);
        }
    }
    ~CanvasTarget() override {
        SDL_SetRenderTarget(Renderer(), nullptr);
        if (outer_ != nullptr) SDL_DestroyTexture(outer_);
    }

    // Each of what a canvas draws into its own textures.
    void DrawAll() {
        Add("a", "1")->leavesBlendMode = true;
        Add("b", "2");
        canvas->SetPreview(Mark("p"));
        canvas->Render(Renderer(), kAll, {10, 10, 20, 20});
    }

    [[nodiscard]] uint32_t PixelAt(int x, int y) const {
        SDL_RenderSetScale(Renderer(), 1, 1);
        SDL_RenderSetViewport(Renderer(), nullptr);
        const SDL_Rect place{x, y, 1, 1};
        uint32_t pixel = 0;
        SDL_RenderReadPixels(Renderer(), &place, SDL_PIXELFORMAT_ARGB8888, &pixel, 4);
        return pixel;
    }

private:
    SDL_Texture* outer_ = nullptr;
};

INSTANTIATE_TEST_SUITE_P(, CanvasTarget, ::testing::Bool(),
                         [](const auto& test) { return test.param ? "InATexture" : "InTheWindow"; });

TEST_P(CanvasTarget, LeavesTargetViewportScaleAndClipAsTheyWere) {
    for (const float scale : {1.0F, 1.5F, 2.0F}) {
        SDL_RenderSetScale(Renderer(), scale, scale + 0.5F);
        const SDL_Rect viewport{8, 6, 60, 50};
        SDL_RenderSetViewport(Renderer(), &viewport);
        const SDL_Rect clip{4, 2, 30, 20};
        SDL_RenderSetClipRect(Renderer(), &clip);
        const View before = View::Of(Renderer());
        DrawAll();
        EXPECT_EQ(View::Of(Renderer()), before) << scale;
        canvas->ClearAll();
    }
}

TEST_P(CanvasTarget, LeavesTheWholeViewportWhole) {
    SDL_RenderSetScale(Renderer(), 2, 2);
    SDL_RenderSetViewport(Renderer(), nullptr);
    DrawAll();
    EXPECT_EQ(SDL_RenderIsClipEnabled(Renderer()), SDL_FALSE);
    // The last column of an odd number of pixels is half of a logical one.
    SDL_Point size{};
    SDL_GetRendererOutputSize(Renderer(), &size.x, &size.y);
    SDL_RenderSetScale(Renderer(), 1, 1);
    SDL_Rect viewport{};
    SDL_RenderGetViewport(Renderer(), &viewport);
    EXPECT_EQ(viewport.w, size.x);
    EXPECT_EQ(viewport.h, size.y);
}

TEST_P(CanvasTarget, LeavesTheDrawColourAtZeroAndBlendsAsUsual) {
    SDL_SetRenderDrawColor(Renderer(), 1, 2, 3, 4);
    SDL_SetRenderDrawBlendMode(Renderer(), SDL_BLENDMODE_NONE);
    Add("a", "1")->leavesBlendMode = true;
    canvas->Render(Renderer(), kAll, kScreen);
    SDL_Color color{};
    SDL_GetRenderDrawColor(Renderer(), &color.r, &color.g, &color.b, &color.a);
    EXPECT_EQ(color.r + color.g + color.b + color.a, 0);
    SDL_BlendMode mode = SDL_BLENDMODE_NONE;
    SDL_GetRenderDrawBlendMode(Renderer(), &mode);
    EXPECT_EQ(mode, SDL_BLENDMODE_BLEND);
}

TEST_P(CanvasTarget, DrawsEveryMarkWithBlending) {
    SDL_SetRenderDrawBlendMode(Renderer(), SDL_BLENDMODE_NONE);
    const auto first = Add("a", "1");
    first->leavesBlendMode = true;
    const auto second = Add("a", "2");
    second->leavesBlendMode = true;
    const auto preview = Mark("p");
    canvas->SetPreview(preview);
    canvas->Render(Renderer(), kAll, kScreen);
    EXPECT_EQ(first->blendMode, SDL_BLENDMODE_BLEND);
    EXPECT_EQ(second->blendMode, SDL_BLENDMODE_BLEND);
    EXPECT_EQ(preview->blendMode, SDL_BLENDMODE_BLEND);
}

TEST_P(CanvasTarget, CoversTheWholeLayerWhateverTheScaleOfTheWindow) {
    SDL_RenderSetScale(Renderer(), 2, 2);
    const SDL_Rect viewport{5, 5, 100, 60};
    SDL_RenderSetViewport(Renderer(), &viewport);
    const SDL_Rect clip{0, 0, 90, 50};
    SDL_RenderSetClipRect(Renderer(), &clip);
    const auto mark = Add("a", "1");
    const auto preview = Mark("p");
    canvas->SetPreview(preview);
    canvas->Render(Renderer(), kAll, {0, 0, 80, 40});
    for (const auto& drawn : {mark, preview}) {
        EXPECT_EQ(drawn->viewport.x, 0);
        EXPECT_EQ(drawn->viewport.y, 0);
        EXPECT_EQ(drawn->viewport.w, 2560);
        EXPECT_EQ(drawn->viewport.h, 1440);
    }
    // Its place on the screen is scaled, moved and clipped as the tile's.
    EXPECT_EQ(PixelAt(10, 10), kRed);
    EXPECT_EQ(PixelAt(169, 89), kRed);
    EXPECT_NE(PixelAt(9, 9), kRed);
    EXPECT_NE(PixelAt(170, 89), kRed);
    EXPECT_NE(PixelAt(169, 90), kRed);
}

TEST_P(CanvasTarget, DrawsAllThatIsInTheLayerOnTheWindow) {
    SDL_RenderSetScale(Renderer(), 2, 2);
    Add("a", "1", Testing::kWholeCanvas, kRed);
    Add("a", "2", {1180, 620, 100, 100}, kGreen);
    canvas->Render(Renderer(), kAll, {0, 0, 128, 72});
    EXPECT_EQ(PixelAt(0, 0), kRed);
    EXPECT_EQ(PixelAt(255, 143), kGreen);
    EXPECT_EQ(PixelAt(240, 130), kGreen);
    EXPECT_EQ(PixelAt(230, 120), kRed);
}

}  // namespace
}  // namespace Corvanta::Drawing
