// The panel's pixels, and what a drawing costs.
#include <gmock/gmock.h>

#include "connectivity/PanelLayout.h"
#include "tests/connectivity/PanelTest.h"
#include "tests/fake_platform/AllocationCounter.h"
#include "ui/TextEllipsis.h"
#include "ui/TextureCache.h"

namespace Corvanta::Connectivity {
namespace {

using Testing::AllocationCounter;
using Testing::Calls;
using ::testing::Contains;
using Testing::Fake;
using Testing::FakeResults;
using ::testing::IsEmpty;

constexpr SDL_Color kLabelColor{255, 255, 255, 178};
constexpr SDL_Color kPlateColor{107, 107, 107, 255};
const std::string kLongChip = "A processor of many words, made by many hands";
using Rows = std::vector<std::pair<std::string, std::string>>;

class PanelDrawing : public Testing::PanelTest {
protected:
    PanelDrawing() {
        Fake().Set([](FakeResults& results) { results.operatingSystem = "System 1"; });
    }

    static Rows LocalRows() {
        return {{"DOWNLOAD SPEED", "--"},        {"UPLOAD SPEED", "--"},
                {"ROUND TRIP TIME", "--"},       {"JITTER", "--"},
                {"CONNECTION TYPE", "Ethernet"}, {"CPU TYPE", "Processor 1"},
                {"CPU APP USAGE", "--"},         {"CPU SYSTEM USAGE", "--"},
                {"SYSTEM VERSION", "Version 1"}, {"OPERATING SYSTEM", "System 1"}};
    }

    static int LineHeight() { return SizeOf(UI::FontMono, kFontSize, "X").y; }
    // The upper edge of a row in the area of the tests, whose list starts at 60 and has gaps of 1.
    static int RowTopOf(int row) { return 60 + row * (LineHeight() + 1); }

    void ExpectFrame() {
        ExpectIcon("icons/thumbnail-background.png", kArea);
        ExpectIcon("icons/thumbnail-panel-close.png", {265, 29, 30, 30});
    }
    // A value as it fits into its column.
    void ExpectValue(const std::string& value, SDL_Point place) {
        const int whole = SizeOf(UI::FontMono, kFontSize, value).x;
        ExpectText(UI::FontMono, kFontSize, UI::ShortenText(value, whole, 94).value_or(value), place);
    }
    void ExpectRow(int row, const std::string& label, const std::string& value) {
        ExpectText(UI::FontMono, kFontSize, label, {23, RowTopOf(row)}, kLabelColor);
        ExpectValue(value, {216, RowTopOf(row)});
    }
    void ExpectRows(const Rows& rows) {
        for (size_t row = 0; row < rows.size(); ++row)
            ExpectRow(static_cast<int>(row), rows[row].first, rows[row].second);
    }
    // What lies behind the rows.
    [[nodiscard]] Testing::Picture FrameAlone() {
        Clear();
        for (const auto& [name, place] :
             {std::pair{"icons/thumbnail-background.png", kArea},
              std::pair{"icons/thumbnail-panel-close.png", SDL_Rect{265, 29, 30, 30}}}) {
            SDL_RenderCopy(Renderer(), UI::LoadCachedTexture(Renderer(), name), nullptr, &place);
        }
        return Drawn();
    }
    // Pixels that differ in these lines, left of the scrollbar.
    static int Different(const Testing::Picture& left, const Testing::Picture& right, int top, int bottom) {
        int count = 0;
        for (int y = top; y < bottom; ++y) {
            for (int x = kArea.x; x < 302; ++x) count += left.At(x, y) != right.At(x, y) ? 1 : 0;
        }
        return count;
    }
    // The middle of a row's value.
    static SDL_Point InValue(int row) { return {220, RowTopOf(row) + LineHeight() / 2}; }
};

TEST_F(PanelDrawing, ShowsBackgroundCloseButtonAndTenRows) {
    MakeLocal().SetVisible(true);
    Update();
    ExpectFrame();
    ExpectRows(LocalRows());
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_TRUE(DrawColourIsZero());
    EXPECT_FALSE(Panel().GetScrollbar().visible);
    EXPECT_EQ(Panel().rect, kArea);
}

TEST_F(PanelDrawing, IsNoneWhileThePanelIsHidden) {
    MakeLocal();
    Update();
    EXPECT_TRUE(NothingDrawn());
    EXPECT_EQ(Panel().rect.w, kArea.w);
    EXPECT_EQ(Panel().rect.h, kArea.h);
}

TEST_F(PanelDrawing, MovesRowsUpWhereAValueIsEmpty) {
    Fake().Set([](FakeResults& results) {
        results.connectionType.clear();
        results.platformVersion.clear();
    });
    MakeLocal().SetVisible(true);
    Update();
    Rows rows = LocalRows();
    rows.erase(rows.begin() + 8);
    rows.erase(rows.begin() + 4);
    ExpectFrame();
    ExpectRows(rows);
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(PanelDrawing, ShortensALongValueWithDots) {
    Fake().Set([](FakeResults& results) { results.cpuType = kLongChip; });
    MakeLocal().SetVisible(true);
    Update();
    Rows rows = LocalRows();
    rows[5].second = kLongChip;
    ExpectFrame();
    ExpectRows(rows);
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_THAT(Testing::RasterisedTexts(), Contains(::testing::EndsWith("...")));
}

TEST_F(PanelDrawing, ShowsTheWholeOfALongValueUnderTheMouseOverTheNextRow) {
    Fake().Set([](FakeResults& results) { results.cpuType = kLongChip; });
    MakeLocal().SetVisible(true);
    Update();
    Panel().OnHover(InValue(5));
    Clear();
    Update();

    ExpectFrame();
    Rows rows = LocalRows();
    for (int row = 9; row > 5; --row)
        ExpectRow(row, rows[static_cast<size_t>(row)].first, rows[static_cast<size_t>(row)].second);
    const int line = LineHeight();
    const SDL_Rect plate{216 + line / 2, RowTopOf(5) + line,
                         SizeOf(UI::FontMono, kFontSize, kLongChip).x + line / 2, line};
    ExpectFill(plate, kPlateColor);
    ExpectText(UI::FontMono, kFontSize, kLongChip, {plate.x, plate.y});
    ExpectRow(5, rows[5].first, kLongChip);
    for (int row = 4; row >= 0; --row)
        ExpectRow(row, rows[static_cast<size_t>(row)].first, rows[static_cast<size_t>(row)].second);
    EXPECT_TRUE(DrawnAsExpected());
    EXPECT_TRUE(DrawColourIsZero());

    Panel().OnHover({0, 0});
    Clear();
    Calls().Clear();
    Update();
    EXPECT_EQ(Calls().Count("SDL_RenderFillRect"), 0U);
}

TEST_F(PanelDrawing, ShowsNoPlateForAShortValueUnderTheMouse) {
    MakeLocal().SetVisible(true);
    Update();
    Panel().OnHover(InValue(5));
    Calls().Clear();
    Update();
    EXPECT_EQ(Calls().Count("SDL_RenderFillRect"), 0U);
}

TEST_F(PanelDrawing, CutsRowsAtTheListsEdgesAndShowsAScrollbar) {
    MakeLocal().SetVisible(true);
    Update(kArea, 20);
    UI::VideoScrollbar& bar = Panel().GetScrollbar();
    ASSERT_TRUE(bar.visible);
    EXPECT_EQ(bar.rect.x, 302);
    EXPECT_EQ(bar.GetTrackStart(), 60);
    // From half of a row on, so that both edges cut one.
    bar.Move({0, 8}, true);
    Clear();
    Update(kArea, 20);
    const Testing::Picture drawn = Drawn();
    const Testing::Picture frame = FrameAlone();
    EXPECT_EQ(Different(drawn, frame, 14, 60), 0);
    EXPECT_EQ(Different(drawn, frame, 210, 224), 0);
    EXPECT_GT(Different(drawn, frame, 60, 66), 0);
    EXPECT_GT(Different(drawn, frame, 200, 210), 0);
}

TEST_F(PanelDrawing, ScrollsTheRowsByTheBarsOffset) {
    MakeLocal().SetVisible(true);
    Update(kArea, 20);
    const int line = SizeOf(UI::FontMono, 20, "X").y;
    const int content = (line + 1) * 10;
    UI::VideoScrollbar& bar = Panel().GetScrollbar();
    bar.Move({0, 10'000}, true);
    Calls().Clear();
    Update(kArea, 20);
    // At the end the last row's gap touches the list's lower edge, within a pixel of rounding.
    const auto copies = Calls().Of("SDL_RenderCopy");
    const std::string last = copies[2].arguments[3];
    int x = 0;
    int y = 0;
    ASSERT_EQ(std::sscanf(last.c_str(), "%d %d", &x, &y), 2) << last;
    EXPECT_EQ(x, 23);
    EXPECT_NEAR(y, 60 - (content - 150) + 9 * (line + 1), 1);
}

TEST_F(PanelDrawing, TakesTheScrollbarsWidthFromAHoveredLongValueAlone) {
    Fake().Set([](FakeResults& results) {
        results.cpuType = kLongChip;
        results.connectionType = kLongChip;
    });
    MakeLocal().SetVisible(true);
    Update(kArea, 16);
    ASSERT_TRUE(Panel().GetScrollbar().visible);
    const int line = SizeOf(UI::FontMono, 16, "X").y;
    Panel().OnHover({220, 60 + 5 * (line + 1) + line / 2});
    Calls().Clear();
    Panel().ReleaseTextures();
    Update(kArea, 16);
    const int whole = SizeOf(UI::FontMono, 16, kLongChip).x;
    const std::string narrow = *UI::ShortenText(kLongChip, whole, 94 - 8);
    const std::string wide = *UI::ShortenText(kLongChip, whole, 94);
    ASSERT_NE(narrow, wide);
    const auto texts = Testing::RasterisedTexts();
    EXPECT_EQ(std::count(texts.begin(), texts.end(), narrow), 1);
    EXPECT_EQ(std::count(texts.begin(), texts.end(), wide), 1);
    EXPECT_EQ(std::count(texts.begin(), texts.end(), kLongChip), 1);
}

TEST_F(PanelDrawing, ForgetsTheMouseOverARowThatWasScrolledAway) {
    Fake().Set([](FakeResults& results) {
        results.connectionType = kLongChip;
        results.operatingSystem = "1";
    });
    constexpr int kFont = 24;
    MakeLocal().SetVisible(true);
    Update(kArea, kFont);
    const SDL_Point mouse{220, 60 + 4 * (SizeOf(UI::FontMono, kFont, "X").y + 1) + 5};
    Panel().OnHover(mouse);
    Calls().Clear();
    Update(kArea, kFont);
    ASSERT_EQ(Calls().Count("SDL_RenderFillRect"), 1U);
    for (const int way : {10'000, -10'000}) {
        Panel().GetScrollbar().Move({0, way}, true);
        Calls().Clear();
        Update(kArea, kFont);
        EXPECT_EQ(Calls().Count("SDL_RenderFillRect"), 0U) << way;
        // Over the row's old place while it is away.
        if (way > 0) Panel().OnHover(mouse);
    }
}

TEST_F(PanelDrawing, FollowsTheTilesPlaceAndSize) {
    MakeLocal().SetVisible(true);
    Update({50, 60, 100, 90});
    Clear();
    Update();
    ExpectFrame();
    ExpectRows(LocalRows());
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(PanelDrawing, SurvivesEveryArea) {
    MakeLocal().SetVisible(true);
    for (const SDL_Rect area :
         {SDL_Rect{0, 0, 0, 0}, SDL_Rect{5, 5, -10, -10}, SDL_Rect{0, 0, 1, 1}, SDL_Rect{0, 0, 100, 0},
          SDL_Rect{0, 0, 0, 100}, SDL_Rect{0, 0, 3, 4000}, SDL_Rect{-500, -500, 7680, 4320}}) {
        for (const int fontSize : {-1, 0, 1, 40}) {
            Update(area, fontSize);
            Panel().OnHover({area.x, area.y});
            Update(area, fontSize);
        }
    }
    Panel().Update(Renderer(), nullptr, kFontSize);
    Panel().OnHover({0, 0});
    Clear();
    Update();
    ExpectFrame();
    ExpectRows(LocalRows());
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(PanelDrawing, ComesBackAfterItsTexturesWereReleased) {
    MakeLocal().SetVisible(true);
    Update();
    const size_t live = Testing::Sdl().LiveTextures();
    Panel().ReleaseTextures();
    EXPECT_EQ(live - Testing::Sdl().LiveTextures(), 20U);
    Clear();
    Update();
    EXPECT_EQ(Testing::Sdl().LiveTextures(), live);
    ExpectFrame();
    ExpectRows(LocalRows());
    EXPECT_TRUE(DrawnAsExpected());
}

TEST_F(PanelDrawing, CostsNeitherAllocationNorRasterWhileNothingChanges) {
    Fake().Set([](FakeResults& results) { results.cpuType = kLongChip; });
    MakeLocal().SetVisible(true);
    WaitForSends(1);
    for (const int fontSize : {kFontSize, 20}) {
        Update(kArea, fontSize);
        Panel().OnHover({220, 60 + 5 * (SizeOf(UI::FontMono, fontSize, "X").y + 1) + 3});
        Update(kArea, fontSize);
        Calls().Clear();
        AllocationCounter::Start();
        for (int round = 0; round < 20; ++round) Update(kArea, fontSize);
        EXPECT_EQ(AllocationCounter::Stop(), 0U) << AllocationCounter::Bytes() << " bytes";
        EXPECT_THAT(Testing::RasterisedTexts(), IsEmpty());
        EXPECT_EQ(Testing::Measurements(), 0U);
        EXPECT_EQ(Calls().Count("SDL_RenderFillRect"), 20U) << "the long value is under the mouse";
    }
}

TEST_F(PanelDrawing, CostsNothingWhileAPanelIsHidden) {
    MakeRemote();
    Update();
    Calls().Clear();
    AllocationCounter::Start();
    for (int round = 0; round < 20; ++round) {
        TurnMs(4000);
        Update();
    }
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
    EXPECT_THAT(Calls().All(), IsEmpty());
}

TEST_F(PanelDrawing, MakesTextsOfStatisticsOnlyWhenTheyChange) {
    MakeLocal().SetVisible(true);
    WaitForSends(1);
    Panel().GetConnectionStats()->OnConnectionStats(0, 1e6, 0, 2e6, 0, 3, 4);
    Update();
    Calls().Clear();
    AllocationCounter::Start();
    for (int round = 0; round < 5; ++round) Update();
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
    EXPECT_THAT(Testing::RasterisedTexts(), IsEmpty());
    Panel().GetConnectionStats()->OnConnectionStats(0, 1e6, 0, 2e6, 0, 3, 5);
    Update();
    EXPECT_THAT(Testing::RasterisedTexts(), ::testing::ElementsAre("5ms"));
}

}  // namespace
}  // namespace Corvanta::Connectivity
