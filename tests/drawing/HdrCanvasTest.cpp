// Layers over the SDL build with the HDR additions.
#include "drawing/LinePath.h"
#include "tests/drawing/CanvasTest.h"
#include "tests/fake_platform/FakeSdlAdditions.h"

namespace Corvanta::Drawing {
namespace {

using Testing::SdlAdditions;

class HdrCanvas : public Testing::SizedCanvasTest {
protected:
    HdrCanvas() { SdlAdditions().Reset(); }
    ~HdrCanvas() override { SdlAdditions().Reset(); }
};

TEST_F(HdrCanvas, TellsLayersAndPreviewTheColourSpaceOfTheRenderer) {
    for (const int colorSpace : {kColorSpaceBt2020, kColorSpaceSdr}) {
        SdlAdditions().SetRenderColorSpace(colorSpace);
        canvas->MoveToRenderer(Renderer());
        const auto mark = Add("a", std::to_string(colorSpace));
        const auto preview = Mark("p");
        canvas->SetPreview(preview);
        Frame();
        EXPECT_EQ(SdlAdditions().ColorOf(mark->target).colorSpace, colorSpace);
        EXPECT_EQ(SdlAdditions().ColorOf(preview->target).colorSpace, colorSpace);
    }
}

TEST_F(HdrCanvas, DrawsWhereTheAdditionsFail) {
    SdlAdditions().Fail("SDL_SetTextureColorSpace");
    SdlAdditions().Fail("SDL_GetRenderColorSpace");
    Add("a", "1");
    EXPECT_TRUE(AreaIs(Frame(), Testing::kScreen, Testing::kRed));
}

TEST_F(HdrCanvas, TellsAStrokesTexturesTheColourSpaceOfTheRenderer) {
    for (const int colorSpace : {kColorSpaceBt2020, kColorSpaceSdr}) {
        SdlAdditions().SetRenderColorSpace(colorSpace);
        LinePath path;
        path.strokeWidth = 20;
        path.points = {{100, 100}, {300, 500}, {500, 100}};
        path.Normalize(1280, 720);
        path.Render(Renderer());
        for (const auto& textures : {path.strokeTextures, path.tailTextures}) {
            ASSERT_EQ(textures.size(), 1U);
            EXPECT_EQ(SdlAdditions().ColorOf(textures.at(Renderer())).colorSpace, colorSpace);
        }
    }
}

}  // namespace
}  // namespace Corvanta::Drawing
