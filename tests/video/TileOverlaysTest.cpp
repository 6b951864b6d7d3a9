#include "video/TileOverlays.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <map>
#include <string>
#include <vector>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/video/OverlayTest.h"

namespace Corvanta::Video {
namespace {

using namespace Corvanta::Testing;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::Not;
using Steps = std::vector<std::string>;

constexpr int64_t kNsPerMs = 1'000'000;
constexpr uint32_t kPictureColour = 0xFFFFFFFF;
constexpr uint32_t kDimmedColour = 0xFF808080;
constexpr uint32_t kBorderColour = 0xFF2196F3;
constexpr uint32_t kGroundColour = 0xFF2E2E2E;

// A colour under black of the hover's strength.
uint32_t Shaded(uint32_t colour) {
    uint32_t shaded = 0xFF000000;
    for (const unsigned shift : {0U, 8U, 16U})
        shaded |= ((colour >> shift & 0xFFU) * (255 - 64) / 255) << shift;
    return shaded;
}

class TileOverlaysTest : public TileOverlayTest {
protected:
    ~TileOverlaysTest() override { gradient_.ReleaseTexture(); }

    // A remote camera's tile with everything that it may have.
    void MakeFull() {
        Make();
        AddMenuButton();
        AddConnectionButton();
        tile->draggable = true;
        tile->AddBadge("icons/pin.png");
        tile->AddBadge("icons/wide.png");
        gradient_.Resize(Renderer(), kTile.w, kTile.h, true);
        tile->SetOverlayGradient(&gradient_);
        tile->GetMenu().AddButton("icons/spotlight.png", "Spotlight", [] {});
    }

    // What this drawing drew, in its order.
    [[nodiscard]] Steps DrawnSteps() {
        Calls().Clear();
        Draw();
        const std::vector<Call> calls = Calls().All();
        std::map<std::string, std::string> names;
        for (const char* icon :
             {"equalizer", "mute", "exclamation", "drag", "nameBackgroundLeft", "nameBackgroundMiddle",
              "nameBackgroundRight", "noCamBackground", "thumbnail-background", "thumbnail-panel-close",
              "connection-strength", "thumbnailMenu", "thumbnailMenuHover", "pin", "wide", "spotlight"}) {
            const std::string path = std::string("icons/") + icon + ".png";
            names[ToText(UI::LoadCachedTexture(Renderer(), path))] = icon;
        }
        names[ToText(gradient_.GetTexture())] = "gradient";
        Steps steps;
        std::string colour;
        for (const Call& call : calls) {
            if (call.name == "SDL_SetRenderDrawColor") {
                colour = call.arguments[1] + ' ' + call.arguments[2] + ' ' + call.arguments[3] + ' ' +
                         call.arguments[4];
            } else if (call.name == "SDL_RenderFillRect") {
                steps.push_back("fill " + colour);
            } else if (call.name == "SDL_RenderDrawRect") {
                steps.push_back("outline " + colour);
            } else if (call.name == "SDL_RenderCopy") {
                const auto known = names.find(call.arguments[1]);
                if (known != names.end()) {
                    steps.push_back(known->second);
                } else {
                    steps.push_back(call.arguments[2] == "null" ? "text" : "picture");
                }
            }
        }
        return steps;
    }
    // As four numbers.
    [[nodiscard]] std::string LastColour() const {
        Uint8 part[4] = {1, 1, 1, 1};
        SDL_GetRenderDrawColor(Renderer(), &part[0], &part[1], &part[2], &part[3]);
        return ToText(part[0]) + ' ' + ToText(part[1]) + ' ' + ToText(part[2]) + ' ' + ToText(part[3]);
    }

    OverlayGradient gradient_;
};

// The states that a person can see

TEST_F(TileOverlaysTest, ARestingTileShowsPictureShadeBadgesAndName) {
    MakeFull();
    ASSERT_TRUE(ShowPicture());
    Draw();
    EXPECT_THAT(DrawnSteps(),
                ElementsAre("picture", "gradient", "connection-strength", "wide", "pin", "nameBackgroundLeft",
                            "nameBackgroundMiddle", "nameBackgroundRight", "text", "text"));
    EXPECT_EQ(LastColour(), "0 0 0 255");
}

TEST_F(TileOverlaysTest, AHoveredTileIsDimmedAndShadedAndShowsGripNameAndButtons) {
    MakeFull();
    ASSERT_TRUE(ShowPicture());
    tile->hovered = true;
    Draw();
    EXPECT_THAT(DrawnSteps(),
                ElementsAre("picture", "gradient", "connection-strength", "wide", "pin", "fill 0 0 0 64",
                            "nameBackgroundLeft", "nameBackgroundMiddle", "nameBackgroundRight", "text",
                            "text", "drag", "text", "thumbnailMenu"));
    const Picture picture = DrawAndRead();
    EXPECT_TRUE(PixelIs(picture, 60, 85, Shaded(kDimmedColour), 2));
}

TEST_F(TileOverlaysTest, ADraggedTileIsAtFullBrightnessWithoutBadgesNameAndButtons) {
    MakeFull();
    ASSERT_TRUE(ShowPicture());
    tile->dragging = true;
    tile->hovered = true;
    EXPECT_THAT(DrawnSteps(), ElementsAre("picture", "gradient", "connection-strength"));
    EXPECT_TRUE(PixelIs(DrawAndRead(), 60, 85, kPictureColour));
}

TEST_F(TileOverlaysTest, ALostConnectionDimsTheTileAndSaysSo) {
    MakeFull();
    ASSERT_TRUE(ShowPicture());
    tile->lostConnection = true;
    Draw();
    EXPECT_THAT(DrawnSteps(), ElementsAre("picture", "gradient", "connection-strength", "wide", "pin",
                                          "nameBackgroundLeft", "nameBackgroundMiddle", "nameBackgroundRight",
                                          "text", "text", "exclamation", "text"));
    EXPECT_TRUE(PixelIs(DrawAndRead(), 60, 85, kDimmedColour, 1));
    EXPECT_EQ(PlacesOf("exclamation"), (std::vector<SDL_Rect>{{101, 85, 50, 50}}));
}

TEST_F(TileOverlaysTest, ALostTileThatIsHoveredHasNoGrip) {
    MakeFull();
    ASSERT_TRUE(ShowPicture());
    tile->lostConnection = true;
    tile->hovered = true;
    Draw();
    const Steps steps = DrawnSteps();
    EXPECT_THAT(steps, Not(Contains("drag")));
    EXPECT_EQ(steps.back(), "text");
    EXPECT_EQ(steps[steps.size() - 2], "exclamation");
    EXPECT_EQ(steps[steps.size() - 3], "thumbnailMenu");
}

TEST_F(TileOverlaysTest, ALostTileThatIsDraggedIsAtFullBrightnessAndStillSaysSo) {
    MakeFull();
    ASSERT_TRUE(ShowPicture());
    tile->lostConnection = true;
    tile->dragging = true;
    Draw();
    EXPECT_THAT(DrawnSteps(),
                ElementsAre("picture", "gradient", "connection-strength", "exclamation", "text"));
    EXPECT_TRUE(PixelIs(DrawAndRead(), 60, 85, kPictureColour));
}

TEST_F(TileOverlaysTest, WithoutAPictureTheAvatarStandsInItsPlaceWithoutTheShadeOfAPicture) {
    MakeFull();
    Draw();
    EXPECT_THAT(DrawnSteps(), ElementsAre("fill 46 46 46 255", "noCamBackground", "text",
                                          "connection-strength", "wide", "pin", "nameBackgroundLeft",
                                          "nameBackgroundMiddle", "nameBackgroundRight", "text", "text"));
    const Picture picture = DrawAndRead();
    EXPECT_TRUE(PixelIs(picture, 22, 150, kGroundColour));
    // The disc of 79 pixels in the middle.
    EXPECT_EQ(PlacesOf("noCamBackground"), (std::vector<SDL_Rect>{{87, 70, 79, 79}}));
}

TEST_F(TileOverlaysTest, WithItsVideoOffTheAvatarCoversThePicture) {
    Make();
    ASSERT_TRUE(ShowPicture());
    Draw();
    tile->SetVideoEnabled(false);
    const Picture picture = DrawAndRead();
    EXPECT_EQ(PlacesOf("noCamBackground").size(), 1U);
    EXPECT_TRUE(PixelIs(picture, 22, 150, kGroundColour));
    tile->SetVideoEnabled(true);
    ASSERT_TRUE(ShowPicture());
    Calls().Clear();
    Draw();
    EXPECT_TRUE(PlacesOf("noCamBackground").empty());
}

TEST_F(TileOverlaysTest, AsMainVideoItShowsThePictureAloneWhateverItsState) {
    MakeFull();
    tile->inGrid = false;
    tile->hovered = true;
    tile->lostConnection = true;
    tile->onMainVideo = true;
    tile->muted = true;
    tile->GetPanel().SetVisible(true);
    EXPECT_TRUE(DrawnSteps().empty());
    EXPECT_TRUE(AreaIs(DrawAndRead(), kTile, kScreenColour));
    ASSERT_TRUE(ShowPicture());
    EXPECT_THAT(DrawnSteps(), ElementsAre("picture"));
    EXPECT_TRUE(AreaIs(DrawAndRead(), kTile, kPictureColour));
    EXPECT_EQ(Calls().Count("Connections_GetPublisherDisplayName"), 0U);
}

TEST_F(TileOverlaysTest, ACameraThatWentSilentShowsTheAvatarInTheDrawingThatNoticesIt) {
    Make();
    ASSERT_TRUE(ShowPicture());
    const int64_t drawnNs = UI::NowNs();
    tile->SetRenderTime(drawnNs);
    Draw();
    tile->SetRenderTime(drawnNs + 7000 * kNsPerMs);
    Calls().Clear();
    Draw();
    EXPECT_TRUE(PlacesOf("noCamBackground").empty());
    tile->SetRenderTime(drawnNs + 7001 * kNsPerMs);
    const Picture picture = DrawAndRead();
    EXPECT_FALSE(tile->HasTexture());
    EXPECT_EQ(PlacesOf("noCamBackground").size(), 1U);
    EXPECT_TRUE(PixelIs(picture, 22, 150, kGroundColour));
    ASSERT_TRUE(ShowPicture());
    Calls().Clear();
    Draw();
    EXPECT_TRUE(PlacesOf("noCamBackground").empty());
}

// Main video and muted

TEST_F(TileOverlaysTest, TheTileOfTheMainVideoHasABlueBorderAndTheEqualizer) {
    MakeFull();
    ASSERT_TRUE(ShowPicture());
    tile->onMainVideo = true;
    tile->muted = true;
    Draw();
    const Steps steps = DrawnSteps();
    EXPECT_THAT(
        Steps(steps.begin() + 2, steps.begin() + 6),
        ElementsAre("connection-strength", "outline 33 150 243 255", "outline 33 150 243 255", "equalizer"));
    const Picture picture = DrawAndRead();
    EXPECT_EQ(RectsOf("SDL_RenderDrawRect"), (std::vector<SDL_Rect>{{20, 30, 213, 160}, {21, 31, 211, 158}}));
    EXPECT_TRUE(PixelIs(picture, 20, 30, kBorderColour));
    EXPECT_TRUE(PixelIs(picture, 231, 188, kBorderColour));
    EXPECT_TRUE(PixelIs(picture, 22, 32, kPictureColour));
    EXPECT_EQ(PlacesOf("equalizer"), (std::vector<SDL_Rect>{{61, 159, 21, 21}}));
    EXPECT_TRUE(PlacesOf("mute").empty());
}

TEST_F(TileOverlaysTest, AMutedTileHasItsSignRightOfTheConnectionButton) {
    Make();
    ASSERT_TRUE(ShowPicture());
    tile->muted = true;
    Calls().Clear();
    Draw();
    EXPECT_EQ(PlacesOf("mute"), (std::vector<SDL_Rect>{{30, 159, 21, 21}}));
    AddConnectionButton();
    Calls().Clear();
    Draw();
    EXPECT_EQ(PlacesOf("mute"), (std::vector<SDL_Rect>{{61, 159, 21, 21}}));
    EXPECT_EQ(PlacesOf("connection-strength"), (std::vector<SDL_Rect>{{30, 160, 21, 21}}));
    EXPECT_TRUE(PlacesOf("equalizer").empty());
}

TEST_F(TileOverlaysTest, TheSignStaysOnADraggedTile) {
    Make();
    tile->muted = true;
    tile->dragging = true;
    Calls().Clear();
    Draw();
    EXPECT_EQ(PlacesOf("mute").size(), 1U);
}

// What covers what

TEST_F(TileOverlaysTest, TheHoverShadeLiesOverBadgesAndSignsAndUnderNameGripAndButtons) {
    MakeFull();
    ASSERT_TRUE(ShowPicture());
    tile->muted = true;
    tile->hovered = true;
    Draw();
    const Picture picture = DrawAndRead();
    EXPECT_TRUE(PixelIs(picture, 40, 170, Shaded(kConnectionColour), 2));
    EXPECT_TRUE(PixelIs(picture, 70, 170, Shaded(kMuteColour), 2));
    EXPECT_TRUE(PixelIs(picture, 210, 168, Shaded(kWideColour), 2));
    EXPECT_TRUE(PixelIs(picture, 30, 40, kLeftPlateColour));
    EXPECT_TRUE(PixelIs(picture, 82, 98, kGripColour));
    EXPECT_TRUE(PixelIs(picture, 209, 50, kMenuButtonColour));
}

TEST_F(TileOverlaysTest, TheLostConnectionStandsOverTheGripsPlaceAndTheMenu) {
    MakeFull();
    tile->hovered = true;
    tile->lostConnection = true;
    tile->GetMenu().SetVisible(true);
    Draw();
    const Picture picture = DrawAndRead();
    // The menu reaches from 80 to 220 and from 50 on.
    EXPECT_TRUE(PixelIs(picture, 126, 110, kExclamationColour));
}

TEST_F(TileOverlaysTest, TheMenuLiesOverItsButtonAndTheName) {
    MakeFull();
    tile->hovered = true;
    tile->GetMenu().SetVisible(true);
    Draw();
    const Picture picture = DrawAndRead();
    EXPECT_EQ(tile->GetMenu().rect.x, 80);
    EXPECT_EQ(tile->GetMenu().rect.y, 50);
    EXPECT_TRUE(PixelIs(picture, 210, 52, 0xFF424242));
    EXPECT_TRUE(PixelIs(picture, 209, 45, kMenuButtonColour));
}

// Badges

TEST_F(TileOverlaysTest, BadgesStandFromTheRightTheNewestFirstWithGapsOfTheirHeight) {
    MakeFull();
    Calls().Clear();
    Draw();
    EXPECT_EQ(PlacesOf("wide"), (std::vector<SDL_Rect>{{191, 162, 28, 14}}));
    EXPECT_EQ(PlacesOf("pin"), (std::vector<SDL_Rect>{{163, 162, 14, 14}}));
}

TEST_F(TileOverlaysTest, ABadgeWithoutAPictureDrawsNothingAndIsTriedAgain) {
    Make();
    tile->AddBadge("icons/not-there.png");
    Draw();
    Folder().AddPicture("icons/not-there.png", 16, 16, 0xFF00FF00);
    Calls().Clear();
    Draw();
    EXPECT_EQ(PlacesOf("not-there"), (std::vector<SDL_Rect>{{205, 162, 14, 14}}));
}

// Buttons

TEST_F(TileOverlaysTest, ButtonsStandBelowEachOtherWhileHoveredAndNotOtherwise) {
    Make();
    AddMenuButton();
    UI::ToggleButton::Options options;
    options.offIconName = "icons/pin.png";
    options.onIconName = "icons/wide.png";
    const UI::ToggleButton* toggle = tile->AddHoverToggleButton(std::move(options));
    UI::Button* other = tile->AddOtherButton(PictureButton("icons/mute.png"));
    Calls().Clear();
    Draw();
    EXPECT_TRUE(PlacesOf("thumbnailMenu").empty());
    tile->hovered = true;
    Draw();
    EXPECT_EQ(PlacesOf("thumbnailMenu"), (std::vector<SDL_Rect>{{198, 39, 23, 23}}));
    EXPECT_EQ(toggle->rect, (SDL_Rect{198, 71, 23, 23}));
    EXPECT_TRUE(toggle->visible);
    EXPECT_TRUE(PlacesOf("mute").empty());
    EXPECT_EQ(other->rect.w, 0);
}

TEST_F(TileOverlaysTest, AHoveredButtonShowsItsOtherPicture) {
    Make();
    UI::Button* button = AddMenuButton();
    tile->hovered = true;
    button->hovered = true;
    EXPECT_TRUE(PixelIs(DrawAndRead(), 209, 50, kHoveredMenuButtonColour));
}

TEST_F(TileOverlaysTest, ShowsNoMenuWithoutAButtonToHangItOn) {
    Make();
    tile->GetMenu().AddButton("icons/spotlight.png", "Spotlight", [] {});
    tile->hovered = true;
    tile->GetMenu().SetVisible(true);
    Calls().Clear();
    Draw();
    EXPECT_TRUE(PlacesOf("spotlight").empty());
}

TEST_F(TileOverlaysTest, KeepsTheMenuOfATileWhoseScrollbarIsDraggedAndWindsItBackLater) {
    Make();
    AddMenuButton();
    for (int i = 0; i < 8; ++i) tile->GetMenu().AddButton("icons/spotlight.png", "Item", [] {});
    tile->hovered = true;
    tile->GetMenu().SetVisible(true);
    Draw();
    UI::VideoScrollbar& scrollbar = tile->GetMenu().GetScrollbar();
    ASSERT_TRUE(scrollbar.visible);
    scrollbar.Move({0, 10}, true);
    scrollbar.SetDragging(true);
    tile->hovered = false;
    Calls().Clear();
    Draw();
    EXPECT_FALSE(PlacesOf("spotlight").empty());
    EXPECT_TRUE(PlacesOf("drag").empty());
    EXPECT_EQ(scrollbar.rect.y, scrollbar.GetTrackStart() + 10);
    scrollbar.EndDrag();
    Calls().Clear();
    Draw();
    EXPECT_TRUE(PlacesOf("spotlight").empty());
    EXPECT_EQ(scrollbar.rect.y, scrollbar.GetTrackStart());
}

TEST_F(TileOverlaysTest, ATileThatCannotBeDraggedHasNoGrip) {
    Make();
    tile->hovered = true;
    EXPECT_THAT(DrawnSteps(), Not(Contains("drag")));
    tile->draggable = true;
    EXPECT_THAT(DrawnSteps(), Contains("drag"));
    EXPECT_EQ(PlacesOf("drag"), (std::vector<SDL_Rect>{{80, 96, 92, 28}}));
}

// Panel

TEST_F(TileOverlaysTest, AnOpenPanelLeavesOnlyTheName) {
    MakeFull();
    ASSERT_TRUE(ShowPicture());
    tile->hovered = true;
    tile->lostConnection = true;
    tile->onMainVideo = true;
    tile->GetPanel().SetVisible(true);
    Draw();
    const Steps steps = DrawnSteps();
    EXPECT_EQ(steps[0], "picture");
    EXPECT_EQ(steps[1], "gradient");
    EXPECT_EQ(steps[2], "thumbnail-background");
    for (const char* hidden : {"connection-strength", "equalizer", "wide", "pin", "drag", "thumbnailMenu",
                               "exclamation", "fill 0 0 0 64", "outline 33 150 243 255"}) {
        EXPECT_THAT(steps, Not(Contains(hidden)));
    }
    EXPECT_THAT(Steps(steps.end() - 5, steps.end()), ElementsAre("nameBackgroundLeft", "nameBackgroundMiddle",
                                                                 "nameBackgroundRight", "text", "text"));
}

TEST_F(TileOverlaysTest, TheOwnPanelReportsAlsoWhileItIsHiddenOrTheTileHasNoSize) {
    Make(TileOrigin::Local);
    // The time to the next report counts from the end of the last.
    const auto hasReported = [&](size_t times) {
        return Calls().Count("RESTApi_SendConnectivityLog") == times && !tile->GetPanel().IsBusy();
    };
    ASSERT_TRUE(Eventually([&] { return hasReported(1); }));
    clock.TurnMs(5001);
    ASSERT_TRUE(Eventually([&] {
        Draw();
        return hasReported(2);
    }));
    Place({0, 0, 0, 0});
    clock.TurnMs(5001);
    EXPECT_TRUE(Eventually([&] {
        Draw();
        return hasReported(3);
    }));
}

// Name

TEST_F(TileOverlaysTest, TheRoomsNameComesBeforeThePublishers) {
    Make();
    tile->SetDisplayName("Grace");
    Draw();
    EXPECT_THAT(RasterisedTexts(), ElementsAre("G", "Grace"));
    EXPECT_EQ(Calls().Count("Connections_GetPublisherDisplayName"), 0U);
}

TEST_F(TileOverlaysTest, AsksForThePublishersNameUntilItIsDrawnAndNotAgain) {
    Make();
    tile->dragging = true;
    Draw();
    Draw();
    EXPECT_EQ(Calls().Count("Connections_GetPublisherDisplayName"), 2U);
    tile->dragging = false;
    Draw();
    Calls().Clear();
    Draw();
    EXPECT_EQ(Calls().Count("Connections_GetPublisherDisplayName"), 0U);
    Fake().Set([](FakeResults& results) { results.publisherNames["id"] = "Grace"; });
    tile->RefreshNamePlate();
    Draw();
    EXPECT_THAT(RasterisedTexts(), ElementsAre("G", "Grace"));
}

TEST_F(TileOverlaysTest, ANameThatHoldsASeparatorIsShownAsItIs) {
    Make();
    tile->SetDisplayName("a | b");
    Draw();
    EXPECT_THAT(RasterisedTexts(), Contains("a | b"));
}

TEST_F(TileOverlaysTest, ATileWithoutANameHasAnEmptyPlateAndAnEmptyAvatar) {
    Make();
    Fake().Set([](FakeResults& results) { results.publisherNames["id"] = ""; });
    EXPECT_THAT(DrawnSteps(), ElementsAre("fill 46 46 46 255", "noCamBackground", "nameBackgroundLeft",
                                          "nameBackgroundRight"));
}

TEST_F(TileOverlaysTest, ReservesTheButtonColumnAtTheEndOfTheName) {
    Make();
    tile->SetDisplayName("A name that is much too long for any plate");
    Draw();
    Calls().Clear();
    Draw();
    ASSERT_EQ(PlacesOf("nameBackgroundMiddle").size(), 1U);
    EXPECT_LE(PlacesOf("nameBackgroundMiddle")[0].w, 147);
    EXPECT_GT(PlacesOf("nameBackgroundMiddle")[0].w, 120);
}

// Sizes

TEST_F(TileOverlaysTest, EverythingFollowsTheTilesSize) {
    MakeFull();
    ASSERT_TRUE(ShowPicture());
    Place({0, 0, 426, 320});
    tile->hovered = true;
    Draw();
    Calls().Clear();
    Draw();
    EXPECT_EQ(PlacesOf("nameBackgroundLeft"), (std::vector<SDL_Rect>{{16, 16, 22, 42}}));
    EXPECT_EQ(PlacesOf("drag"), (std::vector<SDL_Rect>{{121, 132, 184, 56}}));
    EXPECT_EQ(PlacesOf("thumbnailMenu"), (std::vector<SDL_Rect>{{354, 19, 47, 47}}));
    EXPECT_EQ(PlacesOf("connection-strength"), (std::vector<SDL_Rect>{{21, 257, 42, 42}}));
}

TEST_F(TileOverlaysTest, TakesItsPlaceOnTheWallFromWhereItWasDrawn) {
    Make();
    tile->rect = {40, 50, 213, 160};
    Draw();
    EXPECT_EQ(tile->displayRect, (SDL_Rect{40, 50, 213, 160}));
    tile->inGrid = false;
    tile->rect = {1, 2, 3, 4};
    Draw();
    EXPECT_EQ(tile->displayRect, (SDL_Rect{40, 50, 213, 160}));
}

TEST_F(TileOverlaysTest, SurvivesSizesThatNoTileHas) {
    constexpr int kMost = std::numeric_limits<int>::max();
    constexpr int kLeast = std::numeric_limits<int>::min();
    MakeFull();
    ASSERT_TRUE(ShowPicture());
    tile->hovered = true;
    tile->muted = true;
    tile->onMainVideo = true;
    tile->lostConnection = true;
    tile->GetMenu().SetVisible(true);
    for (const bool panelOpen : {false, true}) {
        tile->GetPanel().SetVisible(panelOpen);
        for (const SDL_Rect& rect :
             {SDL_Rect{0, 0, 0, 0}, SDL_Rect{5, 5, -10, -10}, SDL_Rect{0, 0, 1, 1}, SDL_Rect{0, 0, 3, 2},
              SDL_Rect{0, 0, 40, 30}, SDL_Rect{0, 0, kMost, kMost}, SDL_Rect{kMost, kMost, 160, 120},
              SDL_Rect{kLeast, kLeast, 160, 120}, SDL_Rect{0, 0, kLeast, kLeast}, SDL_Rect{0, 0, kMost, 1}}) {
            Place(rect);
            Draw();
            Draw();
            EXPECT_EQ(tile->displayRect, rect);
            tile->OnPointer({3, 3}, false);
            tile->hovered = true;
        }
    }
}

TEST_F(TileOverlaysTest, SurvivesNamesOfEveryKind) {
    MakeFull();
    tile->hovered = true;
    tile->lostConnection = true;
    for (const std::string& name :
         {std::string(10000, 'W'), std::string(10000, '\xFF'), std::string("\xC3"), std::string(),
          std::string(" | "), std::string(" "), std::string("\xF0\x9F\x98\x80 \xF0\x9F\x98\x80")}) {
        tile->SetDisplayName(name);
        tile->RefreshNamePlate();
        for (const SDL_Rect& rect : {kTile, SDL_Rect{0, 0, 20, 15}}) {
            Place(rect);
            tile->OnPointer({45, 45}, false);
            tile->hovered = true;
            Draw();
            Draw();
        }
        EXPECT_FALSE(tile->GetPlaybackBarName().size() > 10000 + 3);
    }
}

// Renderers and cost

TEST_F(TileOverlaysTest, ReleasesEveryRasterAndLeavesTheSharedPictures) {
    MakeFull();
    ASSERT_TRUE(ShowPicture());
    tile->hovered = true;
    tile->lostConnection = true;
    tile->GetMenu().SetVisible(true);
    Draw();
    tile->lostConnection = false;
    Draw();
    tile->SetVideoEnabled(false);
    Draw();
    tile->GetPanel().SetVisible(true);
    Draw();
    tile->ReleaseGraphics();
    UI::ReleaseRendererTextures(Renderer());
    gradient_.ReleaseTexture();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
}

TEST_F(TileOverlaysTest, DrawsEverythingOnTheRendererThatItMovedTo) {
    MakeFull();
    ASSERT_TRUE(ShowPicture());
    tile->hovered = true;
    tile->onMainVideo = true;
    tile->GetMenu().SetVisible(true);
    Draw();
    PixelReader other{640, 480};
    SDL_SetRenderDrawBlendMode(other.Renderer(), SDL_BLENDMODE_BLEND);
    tile->SetOverlayGradient(nullptr);
    tile->MoveToRenderer(other.Renderer());
    UI::ReleaseRendererTextures(Renderer());
    gradient_.ReleaseTexture();
    EXPECT_EQ(Sdl().LiveTextures(), 0U);
    tile->Render(other.Renderer(), {0, 0});
    Calls().Clear();
    other.Fill(kScreenColour);
    tile->Render(other.Renderer(), {0, 0});
    for (const Call& call : Calls().Of("SDL_RenderCopy"))
        EXPECT_EQ(call.arguments[0], ToText(other.Renderer()));
    const Picture picture = other.Read();
    EXPECT_TRUE(PixelIs(picture, 30, 40, kLeftPlateColour));
    EXPECT_TRUE(PixelIs(picture, 209, 45, kMenuButtonColour));
    EXPECT_TRUE(PixelIs(picture, 210, 168, Shaded(kWideColour), 2));
    tile->ReleaseGraphics();
    UI::ReleaseRendererTextures(other.Renderer());
}

TEST_F(TileOverlaysTest, ASteadyTileAllocatesNothingAndMakesNothing) {
    MakeFull();
    tile->SetDisplayName("A name that is much too long for any plate");
    ASSERT_TRUE(ShowPicture());
    const auto drawAllStates = [&] {
        for (int state = 0; state < 64; ++state) {
            tile->hovered = (state & 1) != 0;
            tile->lostConnection = (state & 2) != 0;
            tile->onMainVideo = (state & 4) != 0;
            tile->muted = (state & 8) != 0;
            tile->dragging = (state & 16) != 0;
            tile->GetMenu().visible = (state & 32) != 0;
            tile->OnPointer({45, 45}, !tile->hovered);
            Draw();
        }
    };
    clock.TurnMs(1000);
    drawAllStates();
    drawAllStates();
    Calls().Clear();
    drawAllStates();
    EXPECT_EQ(Calls().Count("SDL_CreateTextureFromSurface") + Calls().Count("SDL_CreateTexture"), 0U);
    EXPECT_EQ(Measurements() + RasterisedTexts().size(), 0U);
    EXPECT_EQ(Calls().Count("Connections_GetPublisherDisplayName"), 0U);
    Calls().SetRecording(false);
    AllocationCounter::Start();
    drawAllStates();
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
}

TEST_F(TileOverlaysTest, ASteadyAvatarAllocatesNothing) {
    MakeFull();
    Draw();
    Draw();
    Calls().SetRecording(false);
    AllocationCounter::Start();
    for (int i = 0; i < 20; ++i) Draw();
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
}

TEST_F(TileOverlaysTest, ATileThatWasNeverDrawnIsSmall) {
    AllocationCounter::Start();
    auto other = std::make_unique<VideoFrame>("other", "session", "profile", TileOrigin::Remote);
    AllocationCounter::Stop();
    EXPECT_LT(AllocationCounter::Bytes(), 64U * 1024U);
}

}  // namespace
}  // namespace Corvanta::Video
