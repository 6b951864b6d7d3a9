#include "ui/Icon.h"

#include <gtest/gtest.h>

#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/ui/WorkingFolder.h"
#include "ui/TextureCache.h"

namespace Corvanta::UI {
namespace {

using Testing::AreaIs;
using Testing::Calls;
using Testing::PixelReader;
using Testing::WorkingFolder;

constexpr const char* kName = "icons/some.png";
constexpr uint32_t kBlack = 0xFF000000;
constexpr uint32_t kOrange = 0xFFFF8000;

class IconTest : public ::testing::Test {
protected:
    IconTest() {
        Testing::Sdl().Reset();
        Calls().Reset();
    }
    ~IconTest() override { ReleaseRendererTextures(reader_.Renderer()); }

    [[nodiscard]] SDL_Renderer* Renderer() const { return reader_.Renderer(); }
    [[nodiscard]] Testing::Picture Read() const { return reader_.Read(); }

    const WorkingFolder folder_;

private:
    const PixelReader reader_{20, 20};
};

TEST_F(IconTest, FillsItsSizeFromItsTopLeftCorner) {
    folder_.AddPicture(kName, 3, 3, kOrange);
    Icon icon(kName);
    icon.SetWidth(5);
    icon.SetHeight(7);
    icon.Render(Renderer(), {2, 4});
    EXPECT_TRUE(AreaIs(Read(), {2, 4, 5, 7}, kOrange));
    EXPECT_TRUE(AreaIs(Read(), {0, 0, 20, 4}, kBlack));
    EXPECT_TRUE(AreaIs(Read(), {7, 4, 13, 16}, kBlack));
}

TEST_F(IconTest, TouchesNoFileWithoutAWidthOrAHeight) {
    folder_.AddPicture(kName, 3, 3, kOrange);
    Icon icon(kName);
    for (const auto& [width, height] :
         {std::pair(0, 5), std::pair(5, 0), std::pair(-1, 5), std::pair(5, -1)}) {
        icon.SetWidth(width);
        icon.SetHeight(height);
        icon.Render(Renderer(), {0, 0});
    }
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 0U);
    EXPECT_EQ(icon.GetTexture(), nullptr);
    EXPECT_TRUE(AreaIs(Read(), {0, 0, 20, 20}, kBlack));
}

TEST_F(IconTest, LoadsItsPictureOnce) {
    folder_.AddPicture(kName, 3, 3, kOrange);
    Icon icon(kName);
    icon.SetWidth(5);
    icon.SetHeight(5);
    icon.Render(Renderer(), {0, 0});
    icon.Render(Renderer(), {0, 0});
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 1U);
    EXPECT_EQ(icon.GetTexture(), LoadCachedTexture(Renderer(), kName));
}

TEST_F(IconTest, TriesAPictureThatIsMissingAgainInTheNextDrawing) {
    Icon icon(kName);
    icon.SetWidth(5);
    icon.SetHeight(5);
    icon.Render(Renderer(), {0, 0});
    icon.Render(Renderer(), {0, 0});
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 2U);
    EXPECT_TRUE(AreaIs(Read(), {0, 0, 20, 20}, kBlack));
    folder_.AddPicture(kName, 3, 3, kOrange);
    icon.Render(Renderer(), {0, 0});
    EXPECT_TRUE(AreaIs(Read(), {0, 0, 5, 5}, kOrange));
}

TEST_F(IconTest, LooksItsPictureUpAgainWhenItIsToldToForgetIt) {
    folder_.AddPicture(kName, 3, 3, kOrange);
    Icon icon(kName);
    icon.SetWidth(5);
    icon.SetHeight(5);
    icon.Render(Renderer(), {0, 0});
    icon.SetTexture(nullptr);
    icon.Render(Renderer(), {10, 10});
    EXPECT_NE(icon.GetTexture(), nullptr);
    EXPECT_TRUE(AreaIs(Read(), {10, 10, 5, 5}, kOrange));
}

TEST_F(IconTest, IsNeverHoveredAndTakesNoClick) {
    folder_.AddPicture(kName, 3, 3, kOrange);
    Icon icon(kName);
    icon.SetWidth(5);
    icon.SetHeight(5);
    icon.Render(Renderer(), {0, 0});
    icon.OnHover({1, 1});
    EXPECT_FALSE(icon.hovered);
    EXPECT_FALSE(icon.OnClick());
    EXPECT_EQ(icon.GetPath(), kName);
}

TEST_F(IconTest, DrawsNothingWithoutARenderer) {
    folder_.AddPicture(kName, 3, 3, kOrange);
    Icon icon(kName);
    icon.SetWidth(5);
    icon.SetHeight(5);
    icon.Render(nullptr, {0, 0});
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 0U);
    EXPECT_EQ(icon.GetTexture(), nullptr);
}

}  // namespace
}  // namespace Corvanta::UI
