// The gallery driven as its window drives it: input is pushed through the library's face, looked at by the
// next tick, and seen in the pixels of the view. Without a display.
#include "tools/gallery/GalleryView.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <limits>
#include <memory>
#include <ostream>
#include <stdexcept>
#include <string>

#include "interface/ProcessState.h"
#include "interface/SDLinterface.h"
#include "tests/fake_platform/PixelReader.h"
#include "tests/interface/RoomTest.h"

namespace Corvanta::Gallery {
namespace {

using Testing::Picture;
using Testing::SamePicture;

constexpr int kWidth = 1280;
constexpr int kHeight = 800;
constexpr int kScrollStep = 4;
constexpr int kLowest = std::numeric_limits<int>::min();
constexpr int kHighest = std::numeric_limits<int>::max();

[[nodiscard]] SDL_Rect AreaOf(const GallerySheet& sheet, const std::string& name) {
    for (const Cell& cell : sheet.GetCells()) {
        if (cell.name == name) return cell.area;
    }
    throw std::invalid_argument("no such cell: " + name);
}

[[nodiscard]] Picture Cut(const Picture& picture, const SDL_Rect& area) {
    Picture cut{area.w, area.h, {}};
    for (int y = area.y; y < area.y + area.h; ++y) {
        for (int x = area.x; x < area.x + area.w; ++x) cut.pixels.push_back(picture.At(x, y));
    }
    return cut;
}

class GalleryViewTest : public Testing::StartedTest {
protected:
    GalleryViewTest() : view_(std::make_shared<GalleryView>()) {
        Interface::ReplaceCurrentView(view_);
        EXPECT_EQ(view_->Init(&windowOfTheHost, kWidth, kHeight), 1);
        view_->MakeSheet();
        SDLinterface_VideoRoomResize(kWidth, kHeight);
        // Metrics that one drawing measures serve the next.
        for (int drawing = 0; drawing < 3; ++drawing) Tick();
        idle_ = Look();
    }

    static void Tick() { SDL_VideoRoomCheckInputAndRender(); }
    static void MoveTo(SDL_Point point) {
        SDLinterface_PushMouseMoveEvent(0, (static_cast<float>(point.x) + 0.5F) / kWidth,
                                        (static_cast<float>(point.y) + 0.5F) / kHeight);
    }
    static void Leave() { SDLinterface_PushMouseMoveEvent(0, -1.0F, -1.0F); }
    [[nodiscard]] Picture Look() const { return Testing::ReadPicture(view_->GetRenderer()); }
    [[nodiscard]] SDL_Rect Area(const char* name) const {
        return AreaOf(GallerySheet(view_->GetRenderer()), name);
    }
    // On the control of a cell that stands in its middle.
    [[nodiscard]] SDL_Point OnControl(const char* name) const {
        const SDL_Rect area = Area(name);
        return {area.x + area.w / 2, area.y + area.h / 2 + 16};
    }
    // Whether the cell looks otherwise than at first.
    [[nodiscard]] bool HasChanged(const char* name) const {
        const SDL_Rect area = Area(name);
        return !SamePicture(Cut(Look(), area), Cut(idle_, area));
    }
    // By how many pixels the sheet is scrolled; -1 when it shows anything else.
    [[nodiscard]] int Scrolled() const {
        const Picture now = Look();
        for (int way = 0; way < kHeight; ++way) {
            const ptrdiff_t cut = static_cast<ptrdiff_t>(way) * kWidth;
            if (std::equal(now.pixels.begin(), now.pixels.end() - cut, idle_.pixels.begin() + cut))
                return way;
        }
        return -1;
    }

    std::shared_ptr<GalleryView> view_;
    Picture idle_;
};

TEST_F(GalleryViewTest, TakesAClickWhereThePointerWasInTheTickBefore) {
    MoveTo(OnControl("Toggle off"));
    Tick();
    MoveTo(OnControl("Toggle on"));
    SDLinterface_PushMouseButtonDownEvent(0);
    SDLinterface_PushMouseButtonUpEvent(0);
    Tick();
    Leave();
    Tick();
    EXPECT_TRUE(HasChanged("Toggle off"));
    EXPECT_FALSE(HasChanged("Toggle on"));
}

TEST_F(GalleryViewTest, TakesAClickOneTickLaterWhereThePointerHasCome) {
    MoveTo(OnControl("Toggle off"));
    Tick();
    MoveTo(OnControl("Toggle on"));
    Tick();
    SDLinterface_PushMouseButtonDownEvent(0);
    SDLinterface_PushMouseButtonUpEvent(0);
    Tick();
    Leave();
    Tick();
    EXPECT_FALSE(HasChanged("Toggle off"));
    EXPECT_TRUE(HasChanged("Toggle on"));
}

TEST_F(GalleryViewTest, TakesNothingOfAnotherWindow) {
    const SDL_Point toggle = OnControl("Toggle off");
    for (const int window : {1, 2, 7}) {
        SDL_Event move;
        SDL_zero(move);
        move.type = SDL_MOUSEMOTION;
        move.motion.windowID = static_cast<Uint32>(Interface::GetViewWindowId(window));
        move.motion.x = toggle.x;
        move.motion.y = toggle.y;
        SDL_PushEvent(&move);
        Tick();
        SDLinterface_PushMouseButtonDownEvent(window);
        SDLinterface_PushMouseButtonUpEvent(window);
        SDLinterface_PushScrollWheelEvent(window, 0, -1);
        SDLinterface_PushKeyDownEvent(window, "Down");
        Tick();
        EXPECT_TRUE(SamePicture(Look(), idle_)) << window;
    }
}

TEST_F(GalleryViewTest, ScrollsByTheWheel) {
    SDLinterface_PushScrollWheelEvent(0, 0, -1);
    Tick();
    EXPECT_EQ(Scrolled(), kScrollStep);
    SDLinterface_PushScrollWheelEvent(0, 0, -2);
    Tick();
    EXPECT_EQ(Scrolled(), 3 * kScrollStep);
    SDLinterface_PushScrollWheelEvent(0, 0, 1);
    Tick();
    EXPECT_EQ(Scrolled(), 2 * kScrollStep);
}

TEST_F(GalleryViewTest, ScrollsByTheDirectionThatTheWheelTurnedMoreIn) {
    SDLinterface_PushScrollWheelEvent(0, -2, 1);
    Tick();
    EXPECT_EQ(Scrolled(), 2 * kScrollStep);
    SDLinterface_PushScrollWheelEvent(0, -1, -2);
    Tick();
    EXPECT_EQ(Scrolled(), 4 * kScrollStep);
    SDLinterface_PushScrollWheelEvent(0, 4, 3);
    Tick();
    EXPECT_EQ(Scrolled(), 0);
}

TEST_F(GalleryViewTest, StopsAtItsEndsHoweverFarTheWheelTurns) {
    for (const bool sideways : {false, true}) {
        const auto turn = [sideways](int steps) {
            SDLinterface_PushScrollWheelEvent(0, sideways ? steps : 0, sideways ? 0 : steps);
            Tick();
        };
        turn(kLowest);
        const Picture end = Look();
        EXPECT_FALSE(SamePicture(end, idle_));
        turn(-1);
        EXPECT_TRUE(SamePicture(Look(), end));
        turn(kHighest);
        EXPECT_TRUE(SamePicture(Look(), idle_));
        turn(1);
        EXPECT_TRUE(SamePicture(Look(), idle_));
    }
}

TEST_F(GalleryViewTest, ShowsTheIdlePictureAgainWhenThePointerHasLeft) {
    for (const char* control : {"Button idle", "Toggle off", "State idle", "Link"}) {
        const SDL_Rect area = Area(control);
        MoveTo(control == std::string("Link") ? SDL_Point{area.x + 20, area.y + 56} : OnControl(control));
        Tick();
        Tick();
        EXPECT_TRUE(HasChanged(control)) << control;
        Leave();
        Tick();
        EXPECT_TRUE(SamePicture(Look(), idle_)) << control;
    }
}

// A scrollbar of the sheet under a pointer that counts along and across it.
struct LiveBar {
    const char* cell;
    bool vertical;
};

void PrintTo(const LiveBar& bar, std::ostream* stream) {
    *stream << bar.cell;
}

class GalleryScrollbarTest : public GalleryViewTest, public ::testing::WithParamInterface<LiveBar> {
protected:
    // Its bars lie this far across their cells.
    static constexpr int kAcross = 32 + 4;

    GalleryScrollbarTest() {
        const SDL_Rect area = Area(Bar());
        // So far down that the whole cell is in the window.
        while (area.y + area.h - scrolled_ > kHeight) {
            SDLinterface_PushScrollWheelEvent(0, 0, -1);
            scrolled_ += kScrollStep;
        }
        Tick();
        still_ = LookAtBar();
    }

    [[nodiscard]] static const char* Bar() { return GetParam().cell; }
    [[nodiscard]] SDL_Rect Place() const {
        SDL_Rect area = Area(Bar());
        area.y -= scrolled_;
        return area;
    }
    [[nodiscard]] Picture LookAtBar() const { return Cut(Look(), Place()); }
    [[nodiscard]] bool HasMoved() const { return !SamePicture(LookAtBar(), still_); }
    void Point(int along) const {
        const SDL_Rect area = Place();
        MoveTo(GetParam().vertical ? SDL_Point{area.x + kAcross, area.y + along}
                                   : SDL_Point{area.x + along, area.y + kAcross});
        Tick();
    }
    static void Press() {
        SDLinterface_PushMouseButtonDownEvent(0);
        Tick();
    }
    static void Release() {
        SDLinterface_PushMouseButtonUpEvent(0);
        Tick();
    }

    int scrolled_ = 0;
    Picture still_;
};

TEST_P(GalleryScrollbarTest, FollowsThePointerThatDragsItsThumb) {
    Point(20);
    Point(30);
    EXPECT_FALSE(HasMoved());
    Press();
    EXPECT_FALSE(HasMoved()) << "the thumb does not jump to the pointer";
    Point(70);
    EXPECT_TRUE(HasMoved());
    Point(30);
    EXPECT_FALSE(HasMoved());
    Point(70);
    Release();
    const Picture dragged = LookAtBar();
    Point(100);
    EXPECT_TRUE(SamePicture(LookAtBar(), dragged)) << "nobody holds it any more";
}

TEST_P(GalleryScrollbarTest, StaysWhereItIsWhenItsTrackIsPressed) {
    // The thumb is half as long as its track.
    Point(Place().h - 20);
    Press();
    Point(Place().h - 60);
    EXPECT_FALSE(HasMoved());
    Release();
}

TEST_P(GalleryScrollbarTest, SurvivesAnyTurnOfTheWheel) {
    Point(20);
    SDLinterface_PushScrollWheelEvent(0, 0, kLowest);
    Tick();
    EXPECT_TRUE(HasMoved());
    SDLinterface_PushScrollWheelEvent(0, kHighest, 0);
    Tick();
    EXPECT_FALSE(HasMoved());
}

INSTANTIATE_TEST_SUITE_P(InBothDirections, GalleryScrollbarTest,
                         ::testing::Values(LiveBar{"Scrollbar", false}, LiveBar{"Scrollbar vertical", true}),
                         [](const auto& bar) {
                             return std::string(bar.param.vertical ? "Vertical" : "Horizontal");
                         });

}  // namespace
}  // namespace Corvanta::Gallery
