// The menus that open above the room's bar: where they stand, what they offer, and who gets a press.
#include <gtest/gtest.h>

#include "tests/room/ToolbarTest.h"
#include "tests/ui/ControlSurroundings.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kMenuWidth = 322;

class RoomMenusTest : public ToolbarTest {
protected:
    [[nodiscard]] std::vector<std::string> LayoutLabels() { return LabelsOf(LayoutMenu()); }
    // Drawn away; the pointer is elsewhere.
    void LetBarGo() {
        MoveTo({5, 5});
        TurnMs(kHideMs);
        view->Tick();
        view->Tick();
    }
    [[nodiscard]] SDL_Rect SeenPlate() { return SeenArea(kPlate); }
    [[nodiscard]] SDL_Rect LayoutButtonRect() {
        return dynamic_cast<UI::ToggleButton*>(LayoutMenu().GetAnchorElement())->rect;
    }
    int wallWindow = 0;
};

// The layout menu

TEST_F(RoomMenusTest, TheLayoutMenuOpensByItsButtonAndClosesByIt) {
    OpenBar();
    EXPECT_FALSE(LayoutMenu().visible);
    OpenMenu("layout");
    EXPECT_TRUE(LayoutMenu().visible);
    EXPECT_TRUE(FindInBar("layout-white").has_value());
    Press("layout-white");
    EXPECT_FALSE(LayoutMenu().visible);
    EXPECT_TRUE(FindInBar("layout").has_value());
}

TEST_F(RoomMenusTest, TheLayoutMenuStandsOnTheBarAtItsButton) {
    OpenBar();
    for (const int scale : {1, 2}) {
        view->SetWindowScale(static_cast<float>(scale));
        view->Tick();
        OpenMenu("layout");
        // It would leave the view if it ended where its button ends.
        EXPECT_EQ(LayoutMenu().width, scale * kMenuWidth);
        EXPECT_EQ(LayoutMenu().rect.x, LayoutButtonRect().x);
        EXPECT_EQ(LayoutMenu().rect.y + LayoutMenu().rect.h, kBarViewHeight - scale * kBarHeight);
        Press("layout-white");
    }
}

TEST_F(RoomMenusTest, TheLayoutMenuSlidesUp) {
    OpenBar();
    Press("layout");
    const SDL_Rect first = SeenPlate();
    TurnMs(60);
    const SDL_Rect middle = SeenPlate();
    TurnMs(kMenuSlideMs);
    view->Tick();
    const SDL_Rect last = SeenPlate();
    EXPECT_GT(first.y, middle.y);
    EXPECT_GT(middle.y, last.y);
    EXPECT_EQ(last.y, kBarTop - LayoutMenu().GetPlateHeight());
}

TEST_F(RoomMenusTest, TheLayoutMenuOffersWhatIsNotSo) {
    OpenBarAndWall();
    OpenMenu("layout");
    EXPECT_THAT(LayoutLabels(), ElementsAre("Hide thumbnails", "Detach thumbnails", "Hide toolbar"));
    view->SlideThumbnails(false, true);
    view->GetToolbar().RefreshLayoutMenu();
    EXPECT_TRUE(view->GetThumbnails().IsShown());
    EXPECT_THAT(LayoutLabels(), ElementsAre("Show thumbnails", "Detach thumbnails", "Hide toolbar"));
    TurnMs(1000);
    view->Tick();
    view->Tick();
    ASSERT_FALSE(view->GetThumbnails().IsShown());
    view->GetToolbar().RefreshLayoutMenu();
    EXPECT_THAT(LayoutLabels(), ElementsAre("Show thumbnails", "Detach thumbnails", "Hide toolbar"));
    ASSERT_EQ(view->CreateDetachedView(&wallWindow, 800, 400), 1);
    EXPECT_EQ(LayoutLabels()[1], "Attach thumbnails");
    EXPECT_EQ(LayoutLabels()[0], "Hide thumbnails");
    view->LeaveDetachedLayout();
    EXPECT_EQ(LayoutLabels()[1], "Detach thumbnails");
    view->SetDrawTool(true);
    view->GetToolbar().RefreshLayoutMenu();
    EXPECT_EQ(LayoutLabels()[2], "Show toolbar");
    view->SetDrawTool(false);
    view->GetToolbar().RefreshLayoutMenu();
    EXPECT_EQ(LayoutLabels()[2], "Hide toolbar");
}

TEST_F(RoomMenusTest, TheLayoutMenuKnowsOfABarThatHasGoneByItself) {
    OpenBar();
    LetBarGo();
    ASSERT_FALSE(Bar().visible);
    view->GetToolbar().RefreshLayoutMenu();
    EXPECT_EQ(LayoutLabels()[2], "Show toolbar");
}

TEST_F(RoomMenusTest, HidesTheWallWithASlideAndShowsItAgain) {
    OpenBarAndWall();
    OpenMenu("layout");
    Choose("wall-hide");
    EXPECT_FALSE(LayoutMenu().visible);
    EXPECT_TRUE(view->GetThumbnails().IsSlidingOut());
    TurnMs(1000);
    view->Tick();
    view->Tick();
    EXPECT_FALSE(view->GetThumbnails().IsShown());
    OpenMenu("layout");
    Choose("wall-show");
    EXPECT_TRUE(view->GetThumbnails().IsShown());
    EXPECT_FALSE(view->GetThumbnails().IsSlidingOut());
}

TEST_F(RoomMenusTest, AsksTheHostForTheWallsWindow) {
    OpenBar();
    OpenMenu("layout");
    Choose("wall-detach");
    EXPECT_THAT(HostCalls(), ElementsAre(Call{"Host_DetachWall", {}}));
    ASSERT_EQ(view->CreateDetachedView(&wallWindow, 800, 400), 1);
    Calls().Clear();
    OpenMenu("layout");
    Choose("wall-attach");
    EXPECT_THAT(HostCalls(), ElementsAre(Call{"Host_AttachWall", {}}));
}

TEST_F(RoomMenusTest, TheHostMayDetachTheWallFromInsideTheCall) {
    OpenBarAndWall();
    AddCamera(kWhite);
    Calls().OnCall("Host_DetachWall",
                   [this](const Call&) { EXPECT_EQ(view->CreateDetachedView(&wallWindow, 800, 400), 1); });
    OpenMenu("layout");
    Choose("wall-detach");
    EXPECT_TRUE(view->IsDetached());
    EXPECT_EQ(LayoutLabels()[1], "Attach thumbnails");
}

TEST_F(RoomMenusTest, HidesTheBarUntilThePointerComes) {
    OpenBar();
    OpenMenu("layout");
    Choose("toolbar-hide");
    EXPECT_FALSE(Sees("options"));
    EXPECT_FALSE(Bar().visible);
    MoveTo({kBarViewWidth / 2, kBarViewHeight - 5});
    TurnMs(300);
    EXPECT_TRUE(Sees("options"));
}

TEST_F(RoomMenusTest, ShowsTheBarForGood) {
    OpenBar();
    OpenMenu("layout");
    view->SetDrawTool(true);
    view->GetToolbar().RefreshLayoutMenu();
    Choose("toolbar-show");
    EXPECT_TRUE(Sees("options"));
    EXPECT_EQ(LayoutLabels()[2], "Hide toolbar");
    LetBarGo();
    EXPECT_TRUE(Sees("options"));
}

TEST_F(RoomMenusTest, FollowsTheMainVideo) {
    OpenBarAndWall();
    view->SlideThumbnails(false, false);
    OpenMenu("layout");
    view->SlideThumbnails(true, false);
    AddCamera(kWhite);
    view->Tick();
    ASSERT_EQ(Calls().Count("Host_OnMainVideoChanged"), 1U);
    EXPECT_EQ(LayoutLabels()[0], "Hide thumbnails");
}

TEST_F(RoomMenusTest, AnotherMainVideoBringsNoBarBackThatHasGone) {
    OpenBar();
    LetBarGo();
    ASSERT_FALSE(Bar().visible);
    AddCamera(kWhite);
    view->Tick();
    ASSERT_EQ(Calls().Count("Host_OnMainVideoChanged"), 1U);
    EXPECT_FALSE(Bar().visible);
}

TEST_F(RoomMenusTest, RefreshingNeedsNoMenu) {
    Open();
    view->GetToolbar().RefreshLayoutMenu();
    view->GetToolbar().OnMainVideoChanged();
    EXPECT_EQ(view->GetToolbar().GetLayoutMenu(), nullptr);
}

// The options menu

TEST_F(RoomMenusTest, TheOptionsMenuEnds25PixelsFromTheRightEdge) {
    OpenBar();
    OpenMenu(kOptions);
    ASSERT_TRUE(OptionsMenu().visible);
    EXPECT_EQ(OptionsMenu().rect.x + OptionsMenu().rect.w, kBarViewWidth - 25);
    EXPECT_EQ(OptionsMenu().rect.y + OptionsMenu().rect.h, kBarTop);
    const Picture picture = TickAndRead();
    const SDL_Rect& plate = OptionsMenu().rect;
    EXPECT_TRUE(PixelIs(picture, plate.x, plate.y, kPlate));
    EXPECT_TRUE(PixelIs(picture, plate.x + plate.w - 1, plate.y, kPlate));
    EXPECT_TRUE(PixelIs(picture, plate.x - 1, plate.y, kBlack));
    EXPECT_TRUE(PixelIs(picture, plate.x + plate.w, plate.y, kBlack));
    EXPECT_TRUE(PixelIs(picture, plate.x, plate.y - 1, kBlack));
    // The margin keeps its share of the width.
    view->SetWindowScale(2.0F);
    view->Tick();
    EXPECT_EQ(OptionsMenu().rect.x + OptionsMenu().rect.w, kBarViewWidth - 50);
}

TEST_F(RoomMenusTest, TheOptionsMenuHasItsEntries) {
    OpenBar();
    EXPECT_THAT(LabelsOf(OptionsMenu()),
                ElementsAre("Save still image", "Brighter", "Darker", "Connection details", "Leave room"));
    OpenMenu(kOptions);
    for (const char* icon : {"still", "brighter", "darker", "connection-strength", "leave"}) {
        EXPECT_TRUE(FindAboveBar(icon).has_value()) << icon;
    }
    EXPECT_FALSE(Sees("hdr"));
}

TEST_F(RoomMenusTest, SavesTheMainVideoAndTellsTheHost) {
    OpenBar();
    AddCamera(kWhite);
    const auto sink = AddRemote("one", kWhite);
    view->SetActiveSpeaker("one");
    view->Tick();
    Calls().Clear();
    OpenMenu(kOptions);
    Choose("still");
    EXPECT_TRUE(Fake().StillExports().empty());
    ASSERT_TRUE(Show(view->GetLocalCameraSink(), Plain(kBlack)));
    EXPECT_TRUE(Fake().StillExports().empty());
    ASSERT_TRUE(Show(sink, Plain(kBlack)));
    ASSERT_EQ(Fake().StillExports().size(), 1U);
    EXPECT_EQ(Fake().StillExports()[0].path, "configuration-folder/exportedRemoteFrame");
    AwaitActions();
    ASSERT_EQ(Calls().Count("Host_OnStillExported"), 1U);
    EXPECT_NE(Calls().Of("Host_OnStillExported")[0].thread, std::this_thread::get_id());
    EXPECT_EQ(Calls().Of("Host_OnStillExported")[0].arguments[0], "configuration-folder/exportedRemoteFrame");
}

TEST_F(RoomMenusTest, SavesNothingWithoutAMainVideo) {
    OpenBar();
    OpenMenu(kOptions);
    Choose("still");
    EXPECT_FALSE(OptionsMenu().visible);
    EXPECT_TRUE(Fake().StillExports().empty());
}

TEST_F(RoomMenusTest, ShowsTheOwnConnectionInTheWall) {
    OpenBar();
    AddCamera(kWhite);
    ASSERT_FALSE(view->GetThumbnails().IsShown());
    OpenMenu(kOptions);
    Choose("connection-strength");
    EXPECT_TRUE(TileOf("me")->GetPanel().visible);
    EXPECT_TRUE(view->GetThumbnails().IsShown());
}

TEST_F(RoomMenusTest, ShowsNoConnectionWithoutACamera) {
    OpenBar();
    OpenMenu(kOptions);
    Choose("connection-strength");
    EXPECT_FALSE(view->GetThumbnails().IsShown());
}

TEST_F(RoomMenusTest, LeavesTheRoom) {
    OpenBar();
    OpenMenu(kOptions);
    Choose("leave");
    EXPECT_THAT(HostCalls(), ElementsAre(Call{"Host_LeaveRoom", {}}));
}

TEST_F(RoomMenusTest, ChangesTheBrightnessOfSdrContent) {
    OpenBar();
    OpenMenu(kOptions);
    Choose("brighter");
    OpenMenu(kOptions);
    Choose("darker");
    // This output knows no white of its own, so both start from the kept one.
    EXPECT_EQ(Calls().Of("Configuration_SetPropertyInt"),
              (std::vector<Call>{{"Configuration_SetPropertyInt", {"SDRBrightnessBoost", "300"}},
                                 {"Configuration_SetPropertyInt", {"SDRBrightnessBoost", "280"}}}));
}

// Who gets a press

TEST_F(RoomMenusTest, APressElsewhereClosesAMenuAndDoesNothingElse) {
    OpenBar();
    const auto camera = FindInBar("cam");
    ASSERT_TRUE(camera.has_value());
    for (const SDL_Point point : {SDL_Point{kBarViewWidth / 2, 100}, *camera}) {
        OpenMenu("layout");
        ASSERT_TRUE(LayoutMenu().visible);
        PressAt(point);
        EXPECT_FALSE(LayoutMenu().visible);
        EXPECT_THAT(HostCalls(), IsEmpty());
    }
    PressAt(*camera);
    EXPECT_EQ(HostCalls().size(), 1U);
}

TEST_F(RoomMenusTest, APressOnAnotherMenusButtonChangesTheMenu) {
    OpenBar();
    OpenMenu("layout");
    OpenMenu(kOptions);
    EXPECT_FALSE(LayoutMenu().visible);
    EXPECT_TRUE(OptionsMenu().visible);
    EXPECT_TRUE(FindInBar("layout").has_value());
}

TEST_F(RoomMenusTest, APressBetweenTheRowsOfAMenuIsTaken) {
    OpenBarAndWall();
    OpenMenu("layout");
    PressAt({LayoutMenu().rect.x + 100, LayoutMenu().rect.y + 2});
    EXPECT_THAT(HostCalls(), IsEmpty());
    EXPECT_FALSE(view->GetThumbnails().IsSlidingOut());
}

TEST_F(RoomMenusTest, AMenuKeepsTheBarAndClosingItLetsItGo) {
    OpenBar();
    OpenMenu("layout");
    MoveTo({LayoutMenu().rect.x + 100, LayoutMenu().rect.y + 30});
    TurnMs(2 * kHideMs);
    view->Tick();
    EXPECT_TRUE(Sees("options"));
    PressAt({kBarViewWidth / 2, 100});
    LetBarGo();
    EXPECT_FALSE(Sees("options"));
}

// Tooltips

TEST_F(RoomMenusTest, AnOpenMenuKeepsTheTooltipsAway) {
    OpenBar();
    Run({{0, 4711}, {1, 12}});
    for (const char* button : {"layout", "davinci-no-arrow", "flame-stream", kOptions}) {
        MoveToButton("cam");
        EXPECT_TRUE(SeesTooltip()) << button;
        OpenMenu(button);
        EXPECT_FALSE(SeesTooltip()) << button;
        MoveToButton("cam");
        EXPECT_FALSE(SeesTooltip()) << button;
        // Closed by its own button.
        OpenMenu(button == std::string("layout") ? "layout-white" : button);
        MoveToButton("cam");
        EXPECT_TRUE(SeesTooltip()) << button;
        // Closed by a press elsewhere.
        OpenMenu(button);
        PressAt({kBarViewWidth / 2, 100});
        MoveToButton("cam");
        EXPECT_TRUE(SeesTooltip()) << button;
    }
}

// Menus of the running programs

TEST_F(RoomMenusTest, AProgramsMenuEndsWithItsButtonOnTheBar) {
    OpenBar();
    Run({{0, 4711}});
    OpenMenu("davinci-no-arrow");
    const SDL_Rect plate = SeenPlate();
    const auto button = FindInBar("davinci-no-arrow");
    ASSERT_TRUE(button.has_value());
    EXPECT_EQ(plate.w, kMenuWidth);
    EXPECT_EQ(plate.y + plate.h, kBarTop);
    EXPECT_GT(plate.x + plate.w, button->x);
    EXPECT_LT(plate.x + plate.w, button->x + 80);
}

TEST_F(RoomMenusTest, AProgramThatEndsTakesItsButtonAndItsMenu) {
    OpenBar();
    EXPECT_FALSE(Sees("davinci-no-arrow"));
    EXPECT_FALSE(Sees("flame-stream"));
    Run({{0, 4711}, {1, 12}});
    EXPECT_TRUE(Sees("davinci-no-arrow"));
    EXPECT_TRUE(Sees("flame-stream"));
    OpenMenu("flame-stream");
    Run({{0, 4711}});
    view->Tick();
    EXPECT_FALSE(Sees("flame-stream"));
    EXPECT_EQ(SeenPlate().w, 0);
    MoveToButton("cam");
    EXPECT_TRUE(SeesTooltip());
}

TEST_F(RoomMenusTest, AProgramsMenuIsInTheWayOfNoPressOnceItIsClosed) {
    OpenBar();
    Run({{1, 12}});
    OpenMenu("flame-stream");
    const auto item = FindAboveBar("decklink-stream");
    ASSERT_TRUE(item.has_value());
    PressAt({kBarViewWidth / 2, 100});
    PressAt(*item);
    AwaitActions();
    EXPECT_THAT(HostCalls(), IsEmpty());
}

// Pictures

TEST_F(RoomMenusTest, PicturesComeBackAfterTheyWereReleased) {
    OpenBar();
    OpenMenu(kOptions);
    const Picture before = TickAndRead();
    view->GetToolbar().ReleaseTextures();
    EXPECT_TRUE(SamePicture(before, TickAndRead()));
}

}  // namespace
}  // namespace Corvanta::Room
