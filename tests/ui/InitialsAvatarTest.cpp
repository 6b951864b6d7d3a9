#include "ui/InitialsAvatar.h"

#include "tests/ui/ToolkitTest.h"
#include "ui/TextureCache.h"

namespace Corvanta::UI {
namespace {

using Testing::Calls;
using Testing::RasterisedTexts;
using Testing::Sdl;

const std::string kDisc = "icons/noCamBackground.png";
constexpr SDL_Color kGround{46, 46, 46, 255};
constexpr SDL_Color kLetters{196, 196, 196, 255};

class InitialsAvatarTest : public Testing::ToolkitTest {
protected:
    void ExpectGroundAndDisc(const SDL_Rect& area, int side) {
        ExpectFill(area, kGround);
        ExpectIcon(kDisc, {(area.w - side) / 2 + area.x, (area.h - side) / 2 + area.y, side, side});
    }

    InitialsAvatar avatar_;
};

TEST_F(InitialsAvatarTest, PaintsInitialsOnADiscInTheMiddleOfItsArea) {
    const SDL_Rect area{21, 30, 201, 120};
    avatar_.SetName("ada lovelace");
    EXPECT_EQ(avatar_.GetInitials(), "AL");
    avatar_.Render(Renderer(), &area, 1.0);
    const SDL_Point size = SizeOf(FontBolder, 23, "AL");
    ExpectGroundAndDisc(area, 79);
    ExpectText(FontBolder, 23, "AL", {100 - size.x / 2 + 21, 60 - size.y / 2 + 30}, kLetters);
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_TRUE(DrawColourIsZero());
}

TEST_F(InitialsAvatarTest, GrowsWithItsScale) {
    const SDL_Rect area{0, 0, 320, 240};
    avatar_.SetName("ada");
    avatar_.Render(Renderer(), &area, 1.51);
    const SDL_Point size = SizeOf(FontBolder, 34, "A");
    ExpectGroundAndDisc(area, 119);
    ExpectText(FontBolder, 34, "A", {160 - size.x / 2, 120 - size.y / 2}, kLetters);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(InitialsAvatarTest, CentresLettersOfAnyScript) {
    const SDL_Rect area{0, 0, 200, 120};
    const std::string initials = "\u0418\u041F";
    avatar_.SetName("\u0418\u0432\u0430\u043D \u041F\u0435\u0442\u0440\u043E\u0432");
    avatar_.Render(Renderer(), &area, 1.0);
    const SDL_Point size = SizeOf(FontBolder, 23, initials);
    ExpectGroundAndDisc(area, 79);
    ExpectText(FontBolder, 23, initials, {100 - size.x / 2, 60 - size.y / 2}, kLetters);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(InitialsAvatarTest, ShowsTheDiscAloneWithoutAName) {
    const SDL_Rect area{0, 0, 200, 120};
    avatar_.Render(Renderer(), &area, 1.0);
    ExpectGroundAndDisc(area, 79);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(InitialsAvatarTest, ShowsTheDiscAloneWhenItsNameIsTakenAway) {
    const SDL_Rect area{0, 0, 200, 120};
    avatar_.SetName("ada");
    avatar_.Render(Renderer(), &area, 1.0);
    avatar_.SetName("");
    EXPECT_EQ(avatar_.GetInitials(), "");
    Clear();
    avatar_.Render(Renderer(), &area, 1.0);
    ExpectGroundAndDisc(area, 79);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(InitialsAvatarTest, FollowsItsName) {
    const SDL_Rect area{0, 0, 200, 120};
    avatar_.SetName("ada");
    avatar_.Render(Renderer(), &area, 1.0);
    avatar_.SetName("ada");
    avatar_.Render(Renderer(), &area, 1.0);
    EXPECT_EQ(Rebuilds(), 1U);
    avatar_.SetName("bob");
    avatar_.Render(Renderer(), &area, 1.0);
    EXPECT_EQ(RasterisedTexts(), (std::vector<std::string>{"A", "B"}));
}

TEST_F(InitialsAvatarTest, SurvivesTheLossOfItsRenderer) {
    const SDL_Rect area{0, 0, 200, 120};
    avatar_.SetName("ada");
    {
        const Testing::PixelReader lost(200, 120);
        avatar_.Render(lost.Renderer(), &area, 1.0);
        avatar_.ReleaseTextures();
        ReleaseRendererTextures(lost.Renderer());
        EXPECT_EQ(Sdl().LiveTextures(), 0U);
    }
    avatar_.Render(Renderer(), &area, 1.0);
    const SDL_Point size = SizeOf(FontBolder, 23, "A");
    ExpectGroundAndDisc(area, 79);
    ExpectText(FontBolder, 23, "A", {100 - size.x / 2, 60 - size.y / 2}, kLetters);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(InitialsAvatarTest, SurvivesWildAreasAndScales) {
    avatar_.SetName("ada lovelace");
    for (const SDL_Rect& area : {SDL_Rect{0, 0, 0, 0}, SDL_Rect{5, 5, -10, -10}, SDL_Rect{0, 0, 320, 240}}) {
        for (const double scale : {0.0, -1.0, 0.001}) avatar_.Render(Renderer(), &area, scale);
    }
    const SDL_Rect huge{-100, -100, 30000, 30000};
    avatar_.Render(Renderer(), &huge, 50.0);
    EXPECT_TRUE(DrawColourIsZero());
}

}  // namespace
}  // namespace Corvanta::UI
