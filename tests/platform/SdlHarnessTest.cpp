#include <SDL.h>
#include <SDL_image.h>
#include <SDL_ttf.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "platform/Connections.h"
#include "platform/SDLAdditions.h"
#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/FakeSdlAdditions.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/fake_platform/XWindow.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;

class SdlHarness : public FakePlatformTest {
protected:
    SdlHarness() {
        Sdl().Reset();
        SdlAdditions().Reset();
    }
};

TEST_F(SdlHarness, PutsSdlAndSiblingCallsIntoOneOrder) {
    SDL_SetHint(SDL_HINT_RENDER_SCALE_QUALITY, "best");
    Connections_CloseConnection();
    SDL_LogSetAllPriority(SDL_LOG_PRIORITY_VERBOSE);
    EXPECT_EQ(TTF_Init(), 0);
    EXPECT_THAT(Fake().CallNames(), ElementsAre("SDL_SetHint", "Connections_CloseConnection",
                                                "SDL_LogSetAllPriority", "TTF_Init"));
    EXPECT_STREQ(SDL_GetHint(SDL_HINT_RENDER_SCALE_QUALITY), "best");
    TTF_Quit();
}

TEST_F(SdlHarness, FailsAsOftenAsATestAsks) {
    const PixelReader reader(4, 4);
    Sdl().Fail("SDL_CreateTexture");
    EXPECT_EQ(
        SDL_CreateTexture(reader.Renderer(), SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STREAMING, 4, 4),
        nullptr);
    EXPECT_STREQ(SDL_GetError(), "The test lets SDL_CreateTexture fail");
    SDL_Texture* const texture =
        SDL_CreateTexture(reader.Renderer(), SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STREAMING, 4, 4);
    EXPECT_NE(texture, nullptr);
    EXPECT_EQ(Sdl().LiveTextures(), 1U);
    SDL_DestroyTexture(texture);
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
}

TEST_F(SdlHarness, MakesAStandInForPlanarHdrTexturesOnlyWhenAllowed) {
    const PixelReader reader(4, 4);
    EXPECT_EQ(SDL_CreateTexture(reader.Renderer(), kPixelFormatI210, SDL_TEXTUREACCESS_STREAMING, 5, 3),
              nullptr);
    Sdl().AllowPlanarHdrTextures(true);
    for (const Uint32 format :
         {kPixelFormatI422, kPixelFormatI444, kPixelFormatI010, kPixelFormatI210, kPixelFormatI410}) {
        SDL_Texture* const texture =
            SDL_CreateTexture(reader.Renderer(), format, SDL_TEXTUREACCESS_STREAMING, 5, 3);
        ASSERT_NE(texture, nullptr);
        Uint32 reported = 0;
        int width = 0;
        SDL_QueryTexture(texture, &reported, nullptr, &width, nullptr);
        EXPECT_EQ(reported, format);
        EXPECT_EQ(width, 5);
        SDL_DestroyTexture(texture);
    }
}

TEST_F(SdlHarness, KeepsWhatTheAdditionsAreTold) {
    const PixelReader reader(4, 4);
    SdlAdditions().SetRenderColorSpace(kColorSpaceBt2020);
    int colorSpace = 0;
    EXPECT_EQ(SDL_GetRenderColorSpace(reader.Renderer(), &colorSpace), 0);
    EXPECT_EQ(colorSpace, kColorSpaceBt2020);
    SDL_SetRenderSDRBrightness(reader.Renderer(), 204.0F);
    float nits = 0.0F;
    EXPECT_EQ(SDL_GetRenderSDRBrightness(reader.Renderer(), &nits), 0);
    EXPECT_EQ(nits, 204.0F);
    SdlAdditions().Fail("SDL_GetRenderSDRBrightness");
    EXPECT_LT(SDL_GetRenderSDRBrightness(reader.Renderer(), &nits), 0);
    RenderHDRMetadata metadata{};
    metadata.maxContentLightLevelNits = 1000.0F;
    SDL_SetRenderHDRMetadata(reader.Renderer(), &metadata);
    EXPECT_EQ(SdlAdditions().Metadata()->maxContentLightLevelNits, 1000.0F);
    SDL_RemoveRenderHDRMetadata(reader.Renderer());
    EXPECT_FALSE(SdlAdditions().Metadata().has_value());
}

TEST_F(SdlHarness, OffersTheRenderDriversOfATest) {
    Sdl().SetRenderDrivers({"direct3d", "direct3d11"});
    EXPECT_EQ(SDL_GetNumRenderDrivers(), 2);
    SDL_RendererInfo info{};
    EXPECT_EQ(SDL_GetRenderDriverInfo(1, &info), 0);
    EXPECT_STREQ(info.name, "direct3d11");
    EXPECT_LT(SDL_GetRenderDriverInfo(2, &info), 0);
}

TEST_F(SdlHarness, ReadsBackWhatTheSoftwareRendererDrew) {
    const PixelReader reader(8, 6);
    const auto frame = MakeRgbFrame({.width = 2, .height = 2, .argb = 0xFF112233});
    SDL_Texture* const texture =
        SDL_CreateTexture(reader.Renderer(), SDL_PIXELFORMAT_ARGB8888, SDL_TEXTUREACCESS_STREAMING, 2, 2);
    SDL_UpdateTexture(texture, nullptr, frame->GetBuffer(), 8);
    const SDL_Rect destination{2, 1, 4, 3};
    SDL_RenderCopy(reader.Renderer(), texture, nullptr, &destination);
    const Picture picture = reader.Read();
    EXPECT_TRUE(AreaIs(picture, destination, 0xFF112233));
    EXPECT_TRUE(PixelIs(picture, 1, 1, 0xFF000000));
    EXPECT_FALSE(PixelIs(picture, 2, 1, 0xFF112235, 1));
    EXPECT_TRUE(SamePicture(picture, ReadPicture(reader.Renderer())));
    SDL_DestroyTexture(texture);
}

TEST_F(SdlHarness, OpensAForeignWindowThatTheHostResizesAndSdlDrawsOn) {
    XWindow window(200, 100);
    ASSERT_EQ(SDL_Init(SDL_INIT_VIDEO), 0) << SDL_GetError();
    SDL_SetHint(SDL_HINT_RENDER_DRIVER, "software");
    SDL_SetHint(SDL_HINT_FRAMEBUFFER_ACCELERATION, "0");
    SDL_Window* const sdlWindow = SDL_CreateWindowFrom(window.Handle());
    ASSERT_NE(sdlWindow, nullptr) << SDL_GetError();
    Sdl().AllowHdrRendererFlag(true);
    SDL_Renderer* const renderer = SDL_CreateRenderer(sdlWindow, -1, 8 | kRendererHdrOutput);
    ASSERT_NE(renderer, nullptr) << SDL_GetError();
    SDL_SetRenderDrawColor(renderer, 10, 20, 30, 255);
    SDL_RenderClear(renderer);
    SDL_RenderPresent(renderer);
    EXPECT_EQ(window.ReadPixels().at(0), 0xFF0A141EU);
    EXPECT_EQ(Sdl().LiveRenderers(), 1U);
    SDL_DestroyRenderer(renderer);
    SDL_DestroyWindow(sdlWindow);
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    window.Resize(320, 240);
    EXPECT_EQ(window.GetSize(), (XWindow::Size{320, 240}));
    SDL_Quit();
}

}  // namespace
}  // namespace Corvanta::Testing
