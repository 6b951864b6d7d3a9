// What the SDL build with the HDR additions is asked for.
#include <gtest/gtest.h>

#include "tests/fake_platform/FakeSdlAdditions.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/ui/TestView.h"
#include "ui/HdrSdl.h"

namespace Corvanta::UI {
namespace {

using Testing::Calls;
using Testing::Fake;
using Testing::FakeResults;
using Testing::SdlAdditions;
using Testing::TestView;

using Names = std::vector<std::string>;

class HdrSdlNativeTest : public Testing::ViewTest {
protected:
    HdrSdlNativeTest() { SdlAdditions().Reset(); }
    ~HdrSdlNativeTest() override { SdlAdditions().Reset(); }

    static std::string RendererFlags() { return Fake().CallsOf("SDL_CreateRenderer").back().arguments[2]; }
};

TEST_F(HdrSdlNativeTest, AsksForARendererThatCanDriveAnHdrOutput) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 64, 36), 1);
    EXPECT_EQ(RendererFlags(), "26");
}

TEST_F(HdrSdlNativeTest, WaitsForTheDisplayOnlyWhenTheUserWantsIt) {
    Fake().Set([](FakeResults& results) { results.configuration["EnableVSync"] = true; });
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 64, 36), 1);
    EXPECT_EQ(RendererFlags(), "30");
}

TEST_F(HdrSdlNativeTest, SetsTheBrightnessAfterTheWatchAtTheEndOfTheStart) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 64, 36), 1);
    EXPECT_EQ(Calls().NamesAmong(
                  {"SDL_AddEventWatch", "Configuration_GetPropertyInt", "SDL_SetRenderSDRBrightness"}),
              (Names{"SDL_AddEventWatch", "Configuration_GetPropertyInt", "SDL_SetRenderSDRBrightness"}));
    EXPECT_EQ(SdlAdditions().Brightness(), 280.0F);
    EXPECT_EQ(Fake().CallsOf("SDL_SetRenderSDRBrightness")[0].arguments[0],
              Testing::ToText(view.GetRenderer()));
}

TEST_F(HdrSdlNativeTest, StoresTheBrightnessBeforeItAppliesIt) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 64, 36), 1);
    Fake().ClearCalls();
    view.SetSDRBrightness(203.6F);
    EXPECT_EQ(Fake().CallNames(), (Names{"Configuration_SetPropertyInt", "SDL_SetRenderSDRBrightness"}));
    EXPECT_EQ(SdlAdditions().Brightness(), 204.0F);
    SdlAdditions().SetBrightness(123.5F);
    EXPECT_EQ(view.GetSDRBrightness(), 123.5F);
}

TEST_F(HdrSdlNativeTest, RoundsHalvesAwayFromZero) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 64, 36), 1);
    view.SetSDRBrightness(100.5F);
    EXPECT_EQ(SdlAdditions().Brightness(), 101.0F);
    EXPECT_EQ(Fake().CallsOf("Configuration_SetPropertyInt").back().arguments[1], "100");
}

TEST_F(HdrSdlNativeTest, KnowsNoBrightnessWhenTheRendererDoesNot) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 64, 36), 1);
    SdlAdditions().Fail("SDL_GetRenderSDRBrightness");
    EXPECT_EQ(view.GetSDRBrightness(), 0.0F);
}

TEST_F(HdrSdlNativeTest, ShowsEveryLayoutAsItIs) {
    EXPECT_TRUE(HdrSdl::ShowsPlanes({}, {.wide = true,
                                         .subsampling = SubsamplingMode::Mode444,
                                         .matrix = ColorMatrix::BT2020NCL,
                                         .range = ColorRange::Full}));
}

TEST_F(HdrSdlNativeTest, ReadsTheOutputsColourSpaceAndFormat) {
    SdlAdditions().SetRenderColorSpace(kColorSpaceBt2020);
    SdlAdditions().SetRenderPixelFormat(SDL_PIXELFORMAT_ARGB2101010);
    const Testing::PixelReader reader(4, 4);
    const DisplayTraits traits = HdrSdl::ReadTraits(reader.Renderer());
    EXPECT_EQ(traits.colorSpace, kColorSpaceBt2020);
    EXPECT_EQ(traits.pixelFormat, Uint32{SDL_PIXELFORMAT_ARGB2101010});
    EXPECT_TRUE(traits.exactPlanes);
}

TEST_F(HdrSdlNativeTest, TakesAnOutputThatDoesNotAnswerForSdr) {
    SdlAdditions().SetRenderColorSpace(kColorSpaceBt2020);
    SdlAdditions().Fail("SDL_GetRenderColorSpace");
    SdlAdditions().Fail("SDL_GetRenderPixelFormat");
    const Testing::PixelReader reader(4, 4);
    EXPECT_EQ(HdrSdl::ReadTraits(reader.Renderer()).colorSpace, kColorSpaceSdr);
}

TEST_F(HdrSdlNativeTest, PassesColourAndMetadataOn) {
    const Testing::PixelReader reader(4, 4);
    RenderHDRMetadata metadata{};
    metadata.maxMasteringLuminanceNits = 1000.0F;
    HdrSdl::SetHdrMetadata(reader.Renderer(), metadata);
    ASSERT_TRUE(SdlAdditions().Metadata().has_value());
    EXPECT_EQ(SdlAdditions().Metadata()->maxMasteringLuminanceNits, 1000.0F);
    HdrSdl::RemoveHdrMetadata(reader.Renderer());
    EXPECT_FALSE(SdlAdditions().Metadata().has_value());

    SDL_Texture* const texture =
        SDL_CreateTexture(reader.Renderer(), SDL_PIXELFORMAT_IYUV, SDL_TEXTUREACCESS_STREAMING, 4, 4);
    HdrSdl::SetTextureColorSpace(texture, kColorSpaceBt2020);
    HdrSdl::SetTextureColorSpaceRange(texture, 1);
    EXPECT_EQ(SdlAdditions().ColorOf(texture).colorSpace, kColorSpaceBt2020);
    EXPECT_EQ(SdlAdditions().ColorOf(texture).fullRange, 1);
    SDL_DestroyTexture(texture);
}

TEST_F(HdrSdlNativeTest, UploadsWholeWidePlanes) {
    const Uint16 samples[4] = {};
    HdrSdl::UpdateYUVTexture16(nullptr, samples, 8, samples, 4, samples, 2);
    ASSERT_EQ(Calls().Count("SDL_UpdateYUVTexture16"), 1U);
    const auto call = Fake().CallsOf("SDL_UpdateYUVTexture16")[0];
    EXPECT_EQ(call.arguments[1], "whole");
    EXPECT_EQ(call.arguments[3], "8");
    EXPECT_EQ(call.arguments[5], "4");
    EXPECT_EQ(call.arguments[7], "2");
}

}  // namespace
}  // namespace Corvanta::UI
