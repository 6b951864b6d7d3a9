#include "ui/TextureCache.h"

#include <gtest/gtest.h>

#include <memory>

#include "tests/fake_platform/CallLog.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/fake_platform/SdlRecorder.h"
#include "tests/ui/WorkingFolder.h"

namespace Corvanta::UI {
namespace {

using Testing::Calls;
using Testing::PixelReader;
using Testing::Sdl;
using Testing::WorkingFolder;

constexpr const char* kName = "icons/some.png";

class TextureCacheTest : public ::testing::Test {
protected:
    TextureCacheTest() {
        Sdl().Reset();
        Calls().Reset();
        folder_.AddPicture(kName, 3, 2, 0xFFFFFFFF);
    }
    ~TextureCacheTest() override {
        ReleaseRendererTextures(first_.Renderer());
        ReleaseRendererTextures(second_.Renderer());
    }

    const WorkingFolder folder_;
    const PixelReader first_{4, 4};
    const PixelReader second_{4, 4};
};

TEST_F(TextureCacheTest, LoadsAPictureOnceForARenderer) {
    SDL_Texture* const texture = LoadCachedTexture(first_.Renderer(), kName);
    int width = 0;
    int height = 0;
    SDL_QueryTexture(texture, nullptr, nullptr, &width, &height);
    EXPECT_EQ(width, 3);
    EXPECT_EQ(height, 2);
    EXPECT_EQ(LoadCachedTexture(first_.Renderer(), kName), texture);
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 1U);
}

TEST_F(TextureCacheTest, HoldsATextureOfItsOwnForEachRenderer) {
    SDL_Texture* const ofFirst = LoadCachedTexture(first_.Renderer(), kName);
    SDL_Texture* const ofSecond = LoadCachedTexture(second_.Renderer(), kName);
    EXPECT_NE(ofFirst, nullptr);
    EXPECT_NE(ofSecond, nullptr);
    EXPECT_NE(ofFirst, ofSecond);
    EXPECT_EQ(LoadCachedTexture(first_.Renderer(), kName), ofFirst);
}

TEST_F(TextureCacheTest, ReadsFromTheFolderThatTheProcessStandsIn) {
    (void)LoadCachedTexture(first_.Renderer(), kName);
    ASSERT_EQ(Calls().Count("IMG_LoadTexture"), 1U);
    EXPECT_EQ(Calls().Of("IMG_LoadTexture")[0].arguments.back(), ".//icons/some.png");
}

TEST_F(TextureCacheTest, DoesNotTidyTheName) {
    SDL_Texture* const straight = LoadCachedTexture(first_.Renderer(), kName);
    SDL_Texture* const roundabout = LoadCachedTexture(first_.Renderer(), "icons/../icons/some.png");
    EXPECT_NE(roundabout, nullptr);
    EXPECT_NE(straight, roundabout);
    EXPECT_EQ(Calls().Of("IMG_LoadTexture")[1].arguments.back(), ".//icons/../icons/some.png");
    EXPECT_EQ(LoadCachedTexture(first_.Renderer(), "icons\\some.png"), nullptr);
    EXPECT_EQ(Calls().Of("IMG_LoadTexture")[2].arguments.back(), ".//icons\\some.png");
}

TEST_F(TextureCacheTest, TurnsBackslashesOfTheBaseIntoSlashesAndLeavesTheName) {
    EXPECT_EQ(ShippedFilePath("C:\\room\\", "icons\\a.png"), "C:/room//icons\\a.png");
    EXPECT_EQ(ShippedFilePath("./", "fonts/a.ttf"), ".//fonts/a.ttf");
    EXPECT_EQ(ShippedFilePath("", ""), "/");
}

TEST_F(TextureCacheTest, HasNothingWithoutARenderer) {
    EXPECT_EQ(LoadCachedTexture(nullptr, kName), nullptr);
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 0U);
}

TEST_F(TextureCacheTest, TriesAPictureThatCannotBeLoadedAgain) {
    EXPECT_EQ(LoadCachedTexture(first_.Renderer(), "icons/late.png"), nullptr);
    folder_.AddPicture("icons/late.png", 1, 1, 0xFFFFFFFF);
    EXPECT_NE(LoadCachedTexture(first_.Renderer(), "icons/late.png"), nullptr);
}

TEST_F(TextureCacheTest, DestroysTheTexturesOfARendererAndKeepsThoseOfOthers) {
    (void)LoadCachedTexture(first_.Renderer(), kName);
    folder_.AddPicture("icons/other.png", 1, 1, 0xFFFFFFFF);
    (void)LoadCachedTexture(first_.Renderer(), "icons/other.png");
    SDL_Texture* const kept = LoadCachedTexture(second_.Renderer(), kName);
    ReleaseRendererTextures(first_.Renderer());
    EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 2U);
    EXPECT_EQ(LoadCachedTexture(second_.Renderer(), kName), kept);
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 3U);
    EXPECT_NE(LoadCachedTexture(first_.Renderer(), kName), nullptr);
    EXPECT_EQ(Calls().Count("IMG_LoadTexture"), 4U);
}

TEST_F(TextureCacheTest, ChangesNothingWhenARendererIsReleasedThatItDoesNotKnow) {
    SDL_Texture* const kept = LoadCachedTexture(first_.Renderer(), kName);
    ReleaseRendererTextures(second_.Renderer());
    ReleaseRendererTextures(nullptr);
    EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 0U);
    EXPECT_EQ(LoadCachedTexture(first_.Renderer(), kName), kept);
}

TEST_F(TextureCacheTest, ReleasesARendererTwiceWithoutHarm) {
    (void)LoadCachedTexture(first_.Renderer(), kName);
    ReleaseRendererTextures(first_.Renderer());
    ReleaseRendererTextures(first_.Renderer());
    EXPECT_EQ(Calls().Count("SDL_DestroyTexture"), 1U);
}

}  // namespace
}  // namespace Corvanta::UI
