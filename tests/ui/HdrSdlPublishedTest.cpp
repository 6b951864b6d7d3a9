// What published SDL2 is asked for and can show.
#include <gtest/gtest.h>

#include "tests/fake_platform/PixelReader.h"
#include "tests/ui/TestView.h"
#include "ui/HdrSdl.h"

namespace Corvanta::UI {
namespace {

using Testing::Fake;
using Testing::FakeResults;
using Testing::TestView;

class HdrSdlPublishedTest : public Testing::ViewTest {
protected:
    static std::string RendererFlags() { return Fake().CallsOf("SDL_CreateRenderer").back().arguments[2]; }
};

constexpr DisplayTraits kExact{.exactPlanes = true};
constexpr PlaneLayout kCamera{};

TEST_F(HdrSdlPublishedTest, AsksForAnAcceleratedRendererWithTargetsAndNothingElse) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 64, 36), 1);
    EXPECT_EQ(RendererFlags(), "10");
}

TEST_F(HdrSdlPublishedTest, WaitsForTheDisplayOnlyWhenTheUserWantsIt) {
    Fake().Set([](FakeResults& results) { results.configuration["EnableVSync"] = true; });
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 64, 36), 1);
    EXPECT_EQ(RendererFlags(), "14");
    view.CleanupWindow();
    Fake().Set([](FakeResults& results) { results.configuration["EnableVSync"] = false; });
    ASSERT_EQ(view.Init(Handle(), 64, 36), 1);
    EXPECT_EQ(RendererFlags(), "10");
    view.CleanupWindow();
    Fake().Set([](FakeResults& results) { results.configuration["EnableVSync"] = std::string("perhaps"); });
    ASSERT_EQ(view.Init(Handle(), 64, 36), 1);
    EXPECT_EQ(RendererFlags(), "10");
}

TEST_F(HdrSdlPublishedTest, ForgetsTheBrightnessWithItsRenderer) {
    TestView view;
    ASSERT_EQ(view.Init(Handle(), 64, 36), 1);
    SDL_Renderer* const renderer = view.GetRenderer();
    EXPECT_EQ(HdrSdl::GetSdrBrightness(renderer), 280.0F);
    view.CleanupWindow();
    EXPECT_FALSE(HdrSdl::GetSdrBrightness(renderer).has_value());
}

TEST_F(HdrSdlPublishedTest, TellsThatTheSoftwareDriverIsNotExact) {
    const Testing::PixelReader reader(4, 4);
    const DisplayTraits traits = HdrSdl::ReadTraits(reader.Renderer());
    EXPECT_FALSE(traits.exactPlanes);
    EXPECT_EQ(traits.colorSpace, kColorSpaceSdr);
    EXPECT_EQ(HdrSdl::ReadTraits(nullptr), DisplayTraits{});
}

TEST_F(HdrSdlPublishedTest, ShowsOnlyLimitedEightBit420OfBt709AsPlanes) {
    EXPECT_TRUE(HdrSdl::ShowsPlanes(kExact, kCamera));
    EXPECT_TRUE(HdrSdl::ShowsPlanes(kExact, {.matrix = ColorMatrix::Unspecified}));
    EXPECT_TRUE(HdrSdl::ShowsPlanes(kExact, {.range = ColorRange::Unspecified}));
    EXPECT_FALSE(HdrSdl::ShowsPlanes(kExact, {.wide = true}));
    EXPECT_FALSE(HdrSdl::ShowsPlanes(kExact, {.subsampling = SubsamplingMode::Mode422}));
    EXPECT_FALSE(HdrSdl::ShowsPlanes(kExact, {.subsampling = SubsamplingMode::Mode444}));
    EXPECT_FALSE(HdrSdl::ShowsPlanes(kExact, {.matrix = ColorMatrix::BT470BG}));
    EXPECT_FALSE(HdrSdl::ShowsPlanes(kExact, {.matrix = ColorMatrix::BT2020NCL}));
    EXPECT_FALSE(HdrSdl::ShowsPlanes(kExact, {.range = ColorRange::Full}));
    EXPECT_FALSE(HdrSdl::ShowsPlanes({.exactPlanes = false}, kCamera));
}

TEST_F(HdrSdlPublishedTest, TakesWhatItCannotDoWithoutHarm) {
    HdrSdl::SetHdrMetadata(nullptr, {});
    HdrSdl::RemoveHdrMetadata(nullptr);
    HdrSdl::SetTextureColorSpace(nullptr, 1);
    HdrSdl::SetTextureColorSpaceRange(nullptr, 1);
    EXPECT_LT(HdrSdl::UpdateYUVTexture16(nullptr, nullptr, 0, nullptr, 0, nullptr, 0), 0);
}

}  // namespace
}  // namespace Corvanta::UI
