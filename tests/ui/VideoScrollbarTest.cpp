#include "ui/VideoScrollbar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>
#include <string>
#include <tuple>
#include <utility>
#include <vector>

#include "tests/fake_platform/CallLog.h"
#include "tests/ui/ControlSurroundings.h"

namespace Corvanta::UI {
namespace {

using Testing::AreaIs;
using ::testing::ElementsAre;
using ::testing::EndsWith;
using ::testing::IsEmpty;
using Testing::kBlack;
using Testing::kFirstColour;
using Testing::kLastColour;
using Testing::kMiddleColour;

constexpr uint32_t kTrack = 0xFF424242;
constexpr int kLowest = std::numeric_limits<int>::min();
constexpr int kHighest = std::numeric_limits<int>::max();

class VideoScrollbarTest : public Testing::ControlTest {
protected:
    void Draw(VideoScrollbar& bar) {
        Wipe();
        bar.Render(Renderer(), {333, 333});
    }
    // A thumb of 100 that travels 100.
    static VideoScrollbar& Vertical(VideoScrollbar& bar) {
        bar.SetOrientation(true);
        EXPECT_EQ(bar.UpdateMetrics(200, 400, 50, true), 0);
        return bar;
    }
    static VideoScrollbar& Horizontal(VideoScrollbar& bar) {
        EXPECT_EQ(bar.UpdateMetrics(200, 400, 50, false), 0);
        return bar;
    }
    // By the wheel.
    static void Scroll(VideoScrollbar& bar, int way) { bar.Move({way, way}, true); }
};

TEST_F(VideoScrollbarTest, IsHorizontalInvisibleAndEightThickAtFirst) {
    VideoScrollbar bar;
    EXPECT_FALSE(bar.visible);
    EXPECT_FALSE(bar.GetVertical());
    EXPECT_EQ(bar.GetThickness(), 8);
    EXPECT_EQ(bar.height, 8);
    EXPECT_EQ(bar.rect, (SDL_Rect{0, 0, 0, 8}));
    EXPECT_FALSE(bar.IsDragging());
    EXPECT_EQ(bar.GetTrackStart(), 0);
    Draw(bar);
    EXPECT_THAT(Fills(), IsEmpty());
    EXPECT_THAT(Copies(), IsEmpty());
}

TEST_F(VideoScrollbarTest, ShowsNoBarUntilContentOverflowsByMoreThanItsThickness) {
    for (const bool vertical : {true, false}) {
        VideoScrollbar bar;
        bar.SetOrientation(vertical);
        EXPECT_EQ(bar.UpdateMetrics(100, 108, 0, vertical), vertical ? 0 : -4);
        EXPECT_FALSE(bar.visible);
        EXPECT_EQ(bar.UpdateMetrics(100, 109, 0, vertical), 0);
        EXPECT_TRUE(bar.visible);
        EXPECT_EQ(bar.UpdateMetrics(100, 108, 0, vertical), vertical ? 0 : -4);
        EXPECT_FALSE(bar.visible);
    }
    VideoScrollbar thick;
    thick.SetOrientation(true);
    thick.SetWidth(20);
    EXPECT_EQ(thick.UpdateMetrics(100, 120, 0, true), 0);
    EXPECT_FALSE(thick.visible);
    EXPECT_EQ(thick.UpdateMetrics(100, 121, 0, true), 0);
    EXPECT_TRUE(thick.visible);
}

TEST_F(VideoScrollbarTest, CentresAHorizontalContentThatFits) {
    VideoScrollbar bar;
    EXPECT_EQ(bar.UpdateMetrics(100, 41, 0, false), 29);
    EXPECT_EQ(bar.UpdateMetrics(100, 100, 0, false), 0);
    EXPECT_EQ(bar.UpdateMetrics(100, 107, 0, false), -3);
    EXPECT_EQ(bar.UpdateMetrics(100, 41, 0, true), 0);
}

TEST_F(VideoScrollbarTest, MakesTheThumbTheShareOfTheContentThatShows) {
    VideoScrollbar bar;
    Vertical(bar);
    EXPECT_EQ(bar.rect, (SDL_Rect{50, 0, 8, 100}));
    EXPECT_EQ(bar.GetTravel(), 100);
    EXPECT_EQ(bar.UpdateMetrics(240, 500, 70, true), 0);
    EXPECT_EQ(bar.rect, (SDL_Rect{70, 0, 8, 115}));
    EXPECT_EQ(bar.GetTravel(), 125);
    // Requested and drawn size are one.
    EXPECT_EQ(bar.width, 8);
    EXPECT_EQ(bar.height, 115);
    VideoScrollbar other;
    EXPECT_EQ(other.UpdateMetrics(240, 500, 70, false), 0);
    EXPECT_EQ(other.rect, (SDL_Rect{0, 70, 115, 8}));
    EXPECT_EQ(other.width, 115);
    EXPECT_EQ(other.height, 8);
}

TEST_F(VideoScrollbarTest, TurnsTheThumbsPlaceIntoTheContentsOffset) {
    VideoScrollbar bar;
    bar.SetOrientation(true);
    EXPECT_EQ(bar.UpdateMetrics(240, 500, 0, true), 0);
    Scroll(bar, 50);
    EXPECT_EQ(bar.UpdateMetrics(240, 500, 0, true), -104);
    Scroll(bar, 1);
    EXPECT_EQ(bar.UpdateMetrics(240, 500, 0, true), -106);  // 106.08
    Scroll(bar, -51);
    EXPECT_EQ(bar.UpdateMetrics(240, 500, 0, true), 0);
}

TEST_F(VideoScrollbarTest, ReckonsTheOffsetInSinglePrecision) {
    for (const auto& [place, offset] : {std::pair(46, -115), std::pair(50, -124), std::pair(100, -249)}) {
        VideoScrollbar bar;
        bar.SetOrientation(true);
        EXPECT_EQ(bar.UpdateMetrics(240, 600, 0, true), 0);
        Scroll(bar, place);
        EXPECT_EQ(bar.UpdateMetrics(240, 600, 0, true), offset);
    }
}

TEST_F(VideoScrollbarTest, ReachesTheContentsVeryEndAtTheFarEnd) {
    for (const bool vertical : {true, false}) {
        for (const int content : {109, 333, 1000, 999'983, 16'777'215}) {
            VideoScrollbar bar;
            bar.SetOrientation(vertical);
            bar.SetTrackStart(7);
            EXPECT_EQ(bar.UpdateMetrics(100, content, 0, vertical), 0);
            Scroll(bar, kHighest);
            EXPECT_EQ(bar.UpdateMetrics(100, content, 0, vertical), 100 - content);
        }
    }
}

TEST_F(VideoScrollbarTest, MovesBothWaysAndStopsAtTheEnds) {
    for (const bool vertical : {true, false}) {
        VideoScrollbar bar;
        vertical ? Vertical(bar) : Horizontal(bar);
        const int& place = vertical ? bar.rect.y : bar.rect.x;
        Scroll(bar, 30);
        EXPECT_EQ(place, 30);
        Scroll(bar, -10);
        EXPECT_EQ(place, 20);
        Scroll(bar, 81);
        EXPECT_EQ(place, 100);
        Scroll(bar, -101);
        EXPECT_EQ(place, 0);
        for (const int way : {kHighest, kHighest, kLowest, kLowest, kHighest}) {
            Scroll(bar, way);
            EXPECT_EQ(place, way > 0 ? 100 : 0);
        }
    }
}

TEST_F(VideoScrollbarTest, LooksAtTheComponentAlongItself) {
    VideoScrollbar bar;
    Vertical(bar);
    bar.Move({40, 3}, true);
    EXPECT_EQ(bar.rect.y, 3);
    EXPECT_EQ(bar.rect.x, 50);
    VideoScrollbar other;
    Horizontal(other);
    other.Move({40, 3}, true);
    EXPECT_EQ(other.rect.x, 40);
    EXPECT_EQ(other.rect.y, 50);
}

TEST_F(VideoScrollbarTest, FollowsTheDraggingPointerByDifferences) {
    VideoScrollbar bar;
    Vertical(bar);
    bar.OnHover({52, 90});
    EXPECT_TRUE(bar.OnClick());
    bar.Move({52, 95}, false);
    EXPECT_EQ(bar.rect.y, 5);
    bar.Move({0, 85}, false);
    EXPECT_EQ(bar.rect.y, 0);
    // The difference counts from where the pointer was, also beyond the end.
    bar.Move({0, 95}, false);
    EXPECT_EQ(bar.rect.y, 10);
    VideoScrollbar other;
    Horizontal(other);
    other.SetLastPointer({10, 60});
    other.Move({35, 70}, false);
    EXPECT_EQ(other.rect.x, 25);
}

TEST_F(VideoScrollbarTest, RemembersThePlaceOfARelativeMoveToo) {
    VideoScrollbar bar;
    Vertical(bar);
    bar.Move({0, 20}, true);
    bar.Move({0, 25}, false);
    EXPECT_EQ(bar.rect.y, 25);
}

TEST_F(VideoScrollbarTest, SurvivesPointersAtTheLimits) {
    for (const bool vertical : {true, false}) {
        VideoScrollbar bar;
        vertical ? Vertical(bar) : Horizontal(bar);
        for (const int place : {kLowest, kHighest, kLowest, kHighest}) {
            bar.Move({place, place}, false);
            EXPECT_EQ(vertical ? bar.rect.y : bar.rect.x, place > 0 ? 100 : 0);
        }
        bar.OnHover({kLowest, kHighest});
        EXPECT_FALSE(bar.hovered);
    }
}

TEST_F(VideoScrollbarTest, GoesToTheNewTrackStartLessTheOldOne) {
    VideoScrollbar bar;
    Vertical(bar);
    bar.SetTrackStart(20);
    EXPECT_EQ(bar.rect.y, 20);
    EXPECT_EQ(bar.GetTrackStart(), 20);
    Scroll(bar, 30);
    EXPECT_EQ(bar.rect.y, 50);
    bar.SetTrackStart(20);
    EXPECT_EQ(bar.rect.y, 50);
    bar.SetTrackStart(33);
    EXPECT_EQ(bar.rect.y, 13);
    Scroll(bar, 200);
    EXPECT_EQ(bar.rect.y, 133);
    bar.ScrollToStart();
    EXPECT_EQ(bar.rect.y, 33);
    VideoScrollbar other;
    Horizontal(other);
    other.SetTrackStart(20);
    EXPECT_EQ(other.rect.x, 20);
    EXPECT_EQ(other.rect.y, 50);
}

TEST_F(VideoScrollbarTest, GivesPiecesItsThicknessAndCapsHalfOfIt) {
    VideoScrollbar bar;
    bar.SetOrientation(true);
    bar.SetWidth(9);
    EXPECT_EQ(bar.GetThickness(), 9);
    EXPECT_EQ(bar.width, 9);
    EXPECT_EQ(bar.UpdateMetrics(200, 400, 50, true), 0);
    Draw(bar);
    ASSERT_EQ(Copies().size(), 3U);
    EXPECT_EQ(Copies()[0].destination, (SDL_Rect{50, 0, 9, 4}));
    EXPECT_EQ(Copies()[1].destination, (SDL_Rect{50, 4, 9, 92}));
    EXPECT_EQ(Copies()[2].destination, (SDL_Rect{50, 96, 9, 4}));
    VideoScrollbar other;
    other.SetHeight(9);
    EXPECT_EQ(other.GetThickness(), 9);
    EXPECT_EQ(other.UpdateMetrics(200, 400, 50, false), 0);
    Draw(other);
    ASSERT_EQ(Copies().size(), 3U);
    EXPECT_EQ(Copies()[0].destination, (SDL_Rect{0, 54, 4, 9}));
    EXPECT_EQ(Copies()[1].destination, (SDL_Rect{4, 54, 92, 9}));
    EXPECT_EQ(Copies()[2].destination, (SDL_Rect{96, 54, 4, 9}));
}

TEST_F(VideoScrollbarTest, DrawsAHorizontalThumbOnItsTrack) {
    VideoScrollbar bar;
    Horizontal(bar);
    Scroll(bar, 30);
    Draw(bar);
    const auto picture = Read();
    EXPECT_TRUE(AreaIs(picture, {0, 50, 30, 16}, kTrack));
    EXPECT_TRUE(AreaIs(picture, {130, 50, 70, 16}, kTrack));
    EXPECT_TRUE(AreaIs(picture, {30, 50, 100, 4}, kTrack));
    EXPECT_TRUE(AreaIs(picture, {30, 62, 100, 4}, kTrack));
    EXPECT_TRUE(AreaIs(picture, {30, 54, 4, 8}, kFirstColour));
    EXPECT_TRUE(AreaIs(picture, {34, 54, 92, 8}, kMiddleColour));
    EXPECT_TRUE(AreaIs(picture, {126, 54, 4, 8}, kLastColour));
    EXPECT_TRUE(AreaIs(picture, {0, 48, 202, 2}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {0, 66, 202, 2}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {200, 48, 2, 20}, kBlack));
    EXPECT_EQ(DrawColour().r, 0);
    EXPECT_EQ(DrawColour().a, 0);
}

TEST_F(VideoScrollbarTest, DrawsAHorizontalTrackWhateverIsAskedOfTracks) {
    VideoScrollbar bar;
    Horizontal(bar);
    Draw(bar);
    const auto before = Read();
    EXPECT_TRUE(AreaIs(before, {100, 50, 100, 16}, kTrack));
    for (const bool track : {true, false}) {
        bar.SetDrawTrack(track);
        Draw(bar);
        EXPECT_TRUE(SamePicture(Read(), before)) << track;
    }
}

TEST_F(VideoScrollbarTest, DrawsTheCapsAloneOfAThumbThatIsShorterThanThey) {
    VideoScrollbar bar;
    bar.SetOrientation(true);
    EXPECT_EQ(bar.UpdateMetrics(100, 10'000, 50, true), 0);
    EXPECT_EQ(bar.rect, (SDL_Rect{50, 0, 8, 1}));
    Scroll(bar, 30);
    Draw(bar);
    ASSERT_EQ(Copies().size(), 2U);
    EXPECT_EQ(Copies()[0].destination, (SDL_Rect{50, 30, 8, 4}));
    // It ends where the thumb ends.
    EXPECT_EQ(Copies()[1].destination, (SDL_Rect{50, 30 + 1 - 4, 8, 4}));
    VideoScrollbar other;
    EXPECT_EQ(other.UpdateMetrics(100, 10'000, 50, false), 0);
    Scroll(other, 30);
    Draw(other);
    ASSERT_EQ(Copies().size(), 2U);
    EXPECT_EQ(Copies()[0].destination, (SDL_Rect{30, 54, 4, 8}));
    EXPECT_EQ(Copies()[1].destination, (SDL_Rect{30 + 1 - 4, 54, 4, 8}));
}

TEST_F(VideoScrollbarTest, DrawsAVerticalThumbWithoutATrack) {
    VideoScrollbar bar;
    Vertical(bar);
    Scroll(bar, 30);
    Draw(bar);
    const auto picture = Read();
    EXPECT_TRUE(AreaIs(picture, {50, 30, 8, 4}, kFirstColour));
    EXPECT_TRUE(AreaIs(picture, {50, 34, 8, 92}, kMiddleColour));
    EXPECT_TRUE(AreaIs(picture, {50, 126, 8, 4}, kLastColour));
    EXPECT_TRUE(AreaIs(picture, {48, 0, 20, 30}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {48, 130, 20, 80}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {48, 0, 2, 210}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {58, 0, 10, 210}, kBlack));
    EXPECT_EQ(DrawColour().a, 0);
}

TEST_F(VideoScrollbarTest, DrawsAVerticalThumbInTheMiddleOfItsTrack) {
    VideoScrollbar bar;
    Vertical(bar);
    bar.SetDrawTrack(true);
    Scroll(bar, 30);
    Draw(bar);
    const auto picture = Read();
    EXPECT_TRUE(AreaIs(picture, {50, 0, 16, 30}, kTrack));
    EXPECT_TRUE(AreaIs(picture, {50, 130, 16, 70}, kTrack));
    EXPECT_TRUE(AreaIs(picture, {50, 0, 4, 200}, kTrack));
    EXPECT_TRUE(AreaIs(picture, {62, 0, 4, 200}, kTrack));
    EXPECT_TRUE(AreaIs(picture, {54, 30, 8, 4}, kFirstColour));
    EXPECT_TRUE(AreaIs(picture, {54, 34, 8, 92}, kMiddleColour));
    EXPECT_TRUE(AreaIs(picture, {54, 126, 8, 4}, kLastColour));
    EXPECT_TRUE(AreaIs(picture, {50, 200, 16, 10}, kBlack));
    EXPECT_TRUE(AreaIs(picture, {66, 0, 4, 210}, kBlack));
}

TEST_F(VideoScrollbarTest, DrawsNothingWhileInvisible) {
    VideoScrollbar bar;
    Horizontal(bar);
    bar.SetVisible(false);
    Draw(bar);
    EXPECT_THAT(Fills(), IsEmpty());
    EXPECT_THAT(Copies(), IsEmpty());
}

TEST_F(VideoScrollbarTest, ClampsItselfWhenTheContentHasShrunk) {
    VideoScrollbar bar;
    Vertical(bar);
    Scroll(bar, 100);
    // A thumb of 160 that travels 40.
    EXPECT_EQ(bar.UpdateMetrics(200, 250, 50, true), -125);
    EXPECT_EQ(bar.rect.y, 100);
    Draw(bar);
    EXPECT_EQ(bar.rect.y, 40);
    EXPECT_EQ(bar.UpdateMetrics(200, 250, 50, true), -50);
    VideoScrollbar other;
    Horizontal(other);
    Scroll(other, 100);
    EXPECT_EQ(other.UpdateMetrics(200, 250, 50, false), -125);
    Draw(other);
    EXPECT_EQ(other.rect.x, 100);
    Scroll(other, 0);
    EXPECT_EQ(other.rect.x, 40);
}

TEST_F(VideoScrollbarTest, KeepsItsThicknessWhenMetricsTurnIt) {
    VideoScrollbar bar;
    bar.SetOrientation(true);
    bar.SetWidth(12);
    EXPECT_EQ(bar.UpdateMetrics(200, 400, 50, true), 0);
    Scroll(bar, 30);
    EXPECT_EQ(bar.UpdateMetrics(300, 600, 70, false), 0);
    EXPECT_FALSE(bar.GetVertical());
    EXPECT_EQ(bar.rect, (SDL_Rect{0, 70, 150, 12}));
    Scroll(bar, 30);
    EXPECT_EQ(bar.UpdateMetrics(200, 400, 50, true), 0);
    EXPECT_EQ(bar.rect, (SDL_Rect{50, 0, 12, 100}));
    EXPECT_EQ(bar.width, 12);
    EXPECT_EQ(bar.height, 100);
}

TEST_F(VideoScrollbarTest, GoesToItsStartWhenItIsTurned) {
    VideoScrollbar bar;
    bar.SetTrackStart(15);
    bar.SetHeight(11);
    bar.SetOrientation(true);
    EXPECT_TRUE(bar.GetVertical());
    EXPECT_EQ(bar.width, 11);
    EXPECT_EQ(bar.rect.y, 15);
    bar.SetWidth(13);
    bar.SetOrientation(false);
    EXPECT_FALSE(bar.GetVertical());
    EXPECT_EQ(bar.height, 13);
    EXPECT_EQ(bar.rect.x, 15);
}

TEST_F(VideoScrollbarTest, IsHitOnItsThumb) {
    for (const bool vertical : {true, false}) {
        VideoScrollbar bar;
        vertical ? Vertical(bar) : Horizontal(bar);
        Scroll(bar, 30);
        // (along, across)
        for (const auto& [along, across, hit] :
             {std::tuple(30, 50, true), std::tuple(129, 57, true), std::tuple(29, 50, false),
              std::tuple(130, 50, false), std::tuple(30, 49, false), std::tuple(30, 58, false)}) {
            bar.OnHover(vertical ? SDL_Point{across, along} : SDL_Point{along, across});
            EXPECT_EQ(bar.hovered, hit) << along << ' ' << across;
            EXPECT_EQ(bar.IsThumbHovered(), hit);
        }
    }
}

TEST_F(VideoScrollbarTest, IsHitOnItsTrackAndOnTwiceItsThicknessWithOne) {
    for (const bool vertical : {true, false}) {
        VideoScrollbar bar;
        vertical ? Vertical(bar) : Horizontal(bar);
        bar.SetDrawTrack(true);
        Scroll(bar, 30);
        // (along, across), on the bar, on its thumb
        for (const auto& [along, across, hit, onThumb] :
             {std::tuple(30, 50, true, true), std::tuple(129, 65, true, true),
              std::tuple(29, 65, true, false), std::tuple(130, 50, true, false),
              std::tuple(0, 50, true, false), std::tuple(199, 65, true, false),
              std::tuple(-1, 50, false, false), std::tuple(200, 50, false, false),
              std::tuple(30, 49, false, false), std::tuple(30, 66, false, false),
              std::tuple(0, 66, false, false)}) {
            bar.OnHover(vertical ? SDL_Point{across, along} : SDL_Point{along, across});
            EXPECT_EQ(bar.hovered, hit) << along << ' ' << across;
            EXPECT_EQ(bar.IsThumbHovered(), onThumb) << along << ' ' << across;
        }
    }
}

TEST_F(VideoScrollbarTest, IsDraggedByItsThumbAlone) {
    VideoScrollbar bar;
    Vertical(bar);
    bar.SetDrawTrack(true);
    bar.OnHover({50, 150});
    EXPECT_TRUE(bar.hovered);
    EXPECT_FALSE(bar.OnClick());
    EXPECT_FALSE(bar.IsDragging());
    bar.OnHover({50, 50});
    EXPECT_TRUE(bar.OnClick());
    EXPECT_TRUE(bar.IsDragging());
    // It does not end by itself.
    bar.OnHover({900, 900});
    EXPECT_TRUE(bar.IsDragging());
    bar.EndDrag();
    EXPECT_FALSE(bar.IsDragging());
}

TEST_F(VideoScrollbarTest, ForgetsThePointerAtTheEndOfADragAlone) {
    VideoScrollbar bar;
    Vertical(bar);
    bar.SetLastPointer({0, 40});
    bar.EndDrag();
    bar.Move({0, 50}, false);
    EXPECT_EQ(bar.rect.y, 10);
    bar.SetDragging(true);
    bar.EndDrag();
    bar.Move({0, 25}, false);
    EXPECT_EQ(bar.rect.y, 35);
}

TEST_F(VideoScrollbarTest, KeepsThePointerWhenADragIsOnlySwitchedOff) {
    VideoScrollbar bar;
    Vertical(bar);
    bar.SetLastPointer({0, 40});
    bar.SetDragging(true);
    EXPECT_TRUE(bar.IsDragging());
    bar.SetDragging(false);
    EXPECT_FALSE(bar.IsDragging());
    bar.Move({0, 50}, false);
    EXPECT_EQ(bar.rect.y, 10);
}

TEST_F(VideoScrollbarTest, KeepsThePointerOverTheThumbInMind) {
    VideoScrollbar bar;
    Vertical(bar);
    bar.OnHover({52, 60});
    // Outside nothing is remembered.
    bar.OnHover({52, 160});
    bar.Move({52, 61}, false);
    EXPECT_EQ(bar.rect.y, 1);
}

TEST_F(VideoScrollbarTest, LoadsItsPicturesAgainForAnotherRenderer) {
    for (const bool vertical : {true, false}) {
        VideoScrollbar bar;
        vertical ? Vertical(bar) : Horizontal(bar);
        Draw(bar);
        const auto before = Read();
        Draw(bar);
        EXPECT_EQ(Testing::Calls().Count("IMG_LoadTexture"), 0U);
        bar.ResetTextures();
        ReplaceRenderer();
        Draw(bar);
        EXPECT_EQ(Testing::Calls().Count("IMG_LoadTexture"), 3U);
        EXPECT_TRUE(SamePicture(Read(), before));
    }
}

TEST_F(VideoScrollbarTest, HasThreePicturesForEachDirection) {
    for (const bool vertical : {false, true}) {
        VideoScrollbar bar;
        vertical ? Vertical(bar) : Horizontal(bar);
        Draw(bar);
        std::vector<std::string> files;
        for (const auto& call : Testing::Calls().Of("IMG_LoadTexture")) files.push_back(call.arguments.at(1));
        if (vertical) {
            EXPECT_THAT(files, ElementsAre(EndsWith("/icons/scrollbarVerticalFirst.png"),
                                           EndsWith("/icons/scrollbarVerticalMiddle.png"),
                                           EndsWith("/icons/scrollbarVerticalLast.png")));
        } else {
            EXPECT_THAT(files, ElementsAre(EndsWith("/icons/scrollbarHorizontalFirst.png"),
                                           EndsWith("/icons/scrollbarHorizontalMiddle.png"),
                                           EndsWith("/icons/scrollbarHorizontalLast.png")));
        }
    }
}

TEST_F(VideoScrollbarTest, ShowsNothingOfAViewportWithoutExtent) {
    for (const bool vertical : {true, false}) {
        for (const int viewport : {0, -1, kLowest}) {
            for (const int content : {kLowest, -1, 0, 1, 1000, kHighest}) {
                VideoScrollbar bar;
                bar.SetOrientation(vertical);
                EXPECT_EQ(bar.UpdateMetrics(viewport, content, 0, vertical), 0);
                EXPECT_FALSE(bar.visible);
            }
        }
    }
}

TEST_F(VideoScrollbarTest, ShowsNoThumbThatCannotMove) {
    // In single precision the share is 1.
    VideoScrollbar bar;
    bar.SetOrientation(true);
    EXPECT_EQ(bar.UpdateMetrics(1'000'000'000, 1'000'000'009, 0, true), 0);
    EXPECT_FALSE(bar.visible);
}

TEST_F(VideoScrollbarTest, TakesAnyContentAndThickness) {
    for (const int size : {0, -8, 30'000}) {
        VideoScrollbar bar;
        bar.SetWidth(size);
        bar.SetHeight(size);
        for (const bool vertical : {true, false}) {
            EXPECT_LE(bar.UpdateMetrics(30'000, kHighest, 0, vertical), 0);
            Scroll(bar, 30'000);
            bar.SetTrackStart(size);
            Draw(bar);
            bar.OnHover({0, 0});
            bar.SetTrackStart(0);
            EXPECT_EQ(bar.UpdateMetrics(100, kLowest, 0, true), 0);
            EXPECT_GT(bar.UpdateMetrics(100, kLowest, 0, false), 1'000'000'000);
        }
    }
}

TEST_F(VideoScrollbarTest, ShowsNoBarForAContentWithoutExtent) {
    for (const bool vertical : {true, false}) {
        VideoScrollbar bar;
        bar.SetOrientation(vertical);
        // So thin that any content would overflow.
        vertical ? bar.SetWidth(kLowest) : bar.SetHeight(kLowest);
        for (const int content : {0, -1, -50, kLowest}) {
            EXPECT_EQ(bar.UpdateMetrics(100, content, 0, vertical),
                      vertical ? 0 : static_cast<int>((int64_t{100} - content) / 2));
            EXPECT_FALSE(bar.visible);
        }
        EXPECT_LE(bar.UpdateMetrics(100, 1, 0, vertical), kHighest);
    }
}

TEST_F(VideoScrollbarTest, SurvivesPlacesAndThicknessesAtTheLimits) {
    const int numbers[] = {kLowest, kLowest / 2 - 1, 0, kHighest / 2 + 1, kHighest};
    for (const bool vertical : {true, false}) {
        for (const int thickness : numbers) {
            for (const int place : numbers) {
                VideoScrollbar bar;
                vertical ? Vertical(bar) : Horizontal(bar);
                bar.SetDrawTrack(true);
                static_cast<void>(bar.UpdateMetrics(kHighest, kHighest, place, vertical));
                static_cast<void>(bar.UpdateMetrics(200, 400, place, vertical));
                vertical ? bar.SetWidth(thickness) : bar.SetHeight(thickness);
                bar.SetTrackStart(place);
                bar.ScrollToStart();
                bar.Move({place, place}, true);
                bar.OnHover({place, place});
                bar.Move({thickness, thickness}, false);
                bar.OnHover({thickness, kLowest});
                bar.SetVisible(true);
                Draw(bar);
                EXPECT_EQ(bar.GetThickness(), thickness);
            }
        }
    }
}

TEST_F(VideoScrollbarTest, IsHitWhereItsAreaReachesBeyondTheLastPlace) {
    VideoScrollbar bar;
    Vertical(bar);
    EXPECT_EQ(bar.UpdateMetrics(200, 400, kHighest - 3, true), 0);
    bar.OnHover({kHighest - 3, 10});
    EXPECT_TRUE(bar.IsThumbHovered());
    bar.OnHover({kHighest, 10});
    EXPECT_TRUE(bar.IsThumbHovered());
    bar.OnHover({kHighest - 4, 10});
    EXPECT_FALSE(bar.IsThumbHovered());
}

}  // namespace
}  // namespace Corvanta::UI
