#include "host/WallControls.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QMenu>
#include <QTest>

#include <string>
#include <vector>

#include "host/HostWindow.h"
#include "tests/host/RecordedInterface.h"
#include "tests/host/RecordedWall.h"

namespace Corvanta::Host {
namespace {

using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WallControlsTest : public ::testing::Test {
protected:
    WallControlsTest() {
        OpenAnswer() = 1;
        room_.show();
        Activate(room_);
    }

    static void Activate(QWidget& window) {
        window.activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
        static_cast<void>(TakePushed());
    }
    // As the toolkit delivers a key, and what comes of it on the next pass of the event loop.
    static void Press(QWidget& window, Qt::Key key) {
        QTest::keyClick(&window, key);
        QApplication::processEvents();
    }
    // The calls since the last time, but those of input and focus, which the windows make themselves.
    static std::vector<std::string> TakeCalls() {
        std::vector<std::string> calls = TakePushed();
        std::erase_if(calls, [](const std::string& call) {
            return call.starts_with("text") || call.starts_with("key") || call.starts_with("move");
        });
        return calls;
    }
    // The only top-level window but the room's.
    static QWidget* SideWindowNow() {
        for (QWidget* const window : QApplication::topLevelWidgets()) {
            if (dynamic_cast<SideWindow*>(window) != nullptr) return window;
        }
        return nullptr;
    }

    HostWindow room_{"Review - Corvanta", 640, 360};
    WallControls wall_{room_, "Review"};
};

TEST_F(WallControlsTest, DetachesTheWallAndBringsItBackByItsKey) {
    Press(room_, Qt::Key_F8);
    EXPECT_THAT(TakeCalls(), ElementsAre("create wall true 960 720", "scale 1 1", "layout 2"));
    ASSERT_NE(wall_.WallWindow(), nullptr);
    EXPECT_TRUE(wall_.WallWindow()->isVisible());
    Press(room_, Qt::Key_F8);
    EXPECT_THAT(TakeCalls(), ElementsAre("leave"));
    EXPECT_EQ(wall_.WallWindow(), nullptr);
    EXPECT_EQ(SideWindowNow(), nullptr);
}

TEST_F(WallControlsTest, LetsTheLibraryGoBeforeTheWindowGoes) {
    wall_.Detach(WallLayout::Column);
    static_cast<void>(TakePushed());
    SideWindowNow()->close();
    // Nothing yet: the window is in the midst of an event.
    EXPECT_NE(wall_.WallWindow(), nullptr);
    EXPECT_TRUE(wall_.WallWindow()->isVisible());
    QApplication::processEvents();
    EXPECT_THAT(TakeCalls(), ElementsAre("leave"));
    EXPECT_EQ(wall_.WallWindow(), nullptr);
}

TEST_F(WallControlsTest, OpensAgainInTheLayoutThatItWasLeftIn) {
    wall_.Detach(WallLayout::Strip);
    wall_.Attach();
    static_cast<void>(TakeCalls());
    wall_.ToggleDetached();
    EXPECT_THAT(TakeCalls(), Contains("layout 0"));
}

TEST_F(WallControlsTest, GoesThroughTheLayouts) {
    wall_.Detach(WallLayout::Strip);
    static_cast<void>(TakeCalls());
    Press(room_, Qt::Key_F9);
    Press(room_, Qt::Key_F9);
    Press(room_, Qt::Key_F9);
    EXPECT_THAT(TakeCalls(), ElementsAre("layout 1", "layout 2", "layout 0"));
}

TEST_F(WallControlsTest, ChoosesALayoutByNumberInTheWallsWindow) {
    wall_.Detach(WallLayout::Strip);
    Activate(*SideWindowNow());
    Press(*SideWindowNow(), Qt::Key_2);
    Press(*SideWindowNow(), Qt::Key_3);
    Press(*SideWindowNow(), Qt::Key_1);
    EXPECT_THAT(TakeCalls(), ElementsAre("layout 1", "layout 2", "layout 0"));
    Press(*SideWindowNow(), Qt::Key_F8);
    EXPECT_THAT(TakeCalls(), ElementsAre("leave"));
}

TEST_F(WallControlsTest, LeavesNumbersInTheRoomsWindowToTheRoom) {
    wall_.Detach(WallLayout::Strip);
    Activate(room_);
    Press(room_, Qt::Key_2);
    EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(WallControlsTest, SaysInTheTitleWhatTheWindowShows) {
    wall_.Detach(WallLayout::Grid);
    EXPECT_EQ(wall_.WallWindow()->windowTitle(), "Review: participants, grid - Corvanta");
    wall_.SetLayout(WallLayout::Column);
    EXPECT_EQ(wall_.WallWindow()->windowTitle(), "Review: participants, column - Corvanta");
}

TEST_F(WallControlsTest, DetachesOnlyOnce) {
    wall_.Detach(WallLayout::Grid);
    static_cast<void>(TakeCalls());
    EXPECT_TRUE(wall_.Detach(WallLayout::Column));
    EXPECT_THAT(TakeCalls(), ElementsAre("layout 1"));
}

TEST_F(WallControlsTest, HasNoWindowThatTheLibraryCannotDrawOn) {
    OpenAnswer() = -1;
    EXPECT_FALSE(wall_.Detach(WallLayout::Grid));
    EXPECT_EQ(wall_.WallWindow(), nullptr);
    EXPECT_FALSE(wall_.OpenPreview());
    EXPECT_EQ(SideWindowNow(), nullptr);
    static_cast<void>(TakeCalls());
    wall_.Tick();
    EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(WallControlsTest, SlidesTheStripOutAndIn) {
    Press(room_, Qt::Key_F7);
    Press(room_, Qt::Key_F7);
    EXPECT_THAT(TakeCalls(), ElementsAre("slide false true", "slide true true"));
}

TEST_F(WallControlsTest, HasNoStripToSlideWhileDetached) {
    wall_.SlideStrip();
    wall_.Detach(WallLayout::Grid);
    static_cast<void>(TakeCalls());
    wall_.SlideStrip();
    EXPECT_THAT(TakeCalls(), IsEmpty());
    // A wall that comes back is in the room, where it would be slid out.
    wall_.Attach();
    wall_.SlideStrip();
    EXPECT_THAT(TakeCalls(), ElementsAre("leave", "slide false true"));
}

TEST_F(WallControlsTest, OpensAndClosesThePreviewByItsKey) {
    Press(room_, Qt::Key_F10);
    EXPECT_THAT(TakeCalls(), ElementsAre("open preview true 480 270 true", "scale 2 1"));
    ASSERT_NE(SideWindowNow(), nullptr);
    EXPECT_EQ(SideWindowNow()->windowTitle(), "Review: own camera - Corvanta");
    Press(room_, Qt::Key_F10);
    EXPECT_THAT(TakeCalls(), ElementsAre("close preview"));
    EXPECT_EQ(SideWindowNow(), nullptr);
}

TEST_F(WallControlsTest, TicksTheWindowsThatAreOpen) {
    wall_.Tick();
    EXPECT_THAT(TakeCalls(), IsEmpty());
    wall_.Detach(WallLayout::Grid);
    wall_.OpenPreview();
    static_cast<void>(TakeCalls());
    wall_.Tick();
    EXPECT_THAT(TakeCalls(), ElementsAre("tick wall", "tick preview"));
}

TEST_F(WallControlsTest, TellsANewSizeOnceItStandsStill) {
    wall_.Detach(WallLayout::Grid);
    wall_.OpenPreview();
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (dynamic_cast<SideWindow*>(window) != nullptr) window->resize(500, 400);
    }
    static_cast<void>(TakeCalls());
    wall_.Tick();
    EXPECT_THAT(TakeCalls(), ElementsAre("tick wall", "tick preview"));
    std::vector<std::string> calls;
    EXPECT_TRUE(QTest::qWaitFor([&] {
        wall_.Tick();
        for (const std::string& call : TakeCalls()) {
            if (!call.starts_with("tick")) calls.push_back(call);
        }
        return calls.size() >= 4;
    }));
    EXPECT_THAT(calls, ElementsAre("create wall true 500 400", "scale 1 1", "open preview true 500 400 true",
                                   "scale 2 1"));
    QTest::qWait(200);
    wall_.Tick();
    EXPECT_THAT(TakeCalls(), ElementsAre("tick wall", "tick preview"));
}

TEST_F(WallControlsTest, GivesUpAWallThatCannotTakeItsNewSize) {
    wall_.Detach(WallLayout::Grid);
    OpenAnswer() = -1;
    SideWindowNow()->resize(500, 400);
    EXPECT_TRUE(QTest::qWaitFor([&] {
        wall_.Tick();
        return wall_.WallWindow() == nullptr;
    }));
    EXPECT_THAT(TakeCalls(), Contains("leave"));
}

TEST_F(WallControlsTest, ForwardsTheWallsInputUnderItsOwnIndex) {
    wall_.Detach(WallLayout::Grid);
    static_cast<void>(TakePushed());
    QWidget* const surface = SideWindowNow()->childAt(10, 10);
    ASSERT_NE(surface, nullptr);
    QTest::mouseClick(surface, Qt::LeftButton, {}, {480, 360});
    EXPECT_THAT(TakePushed(), ::testing::IsSupersetOf({"move 1 0.5 0.5", "down 1", "up 1"}));
}

TEST_F(WallControlsTest, OffersTheLayoutsInAMenu) {
    wall_.Detach(WallLayout::Column);
    QContextMenuEvent event(QContextMenuEvent::Mouse, {10, 10}, {10, 10});
    QApplication::sendEvent(SideWindowNow(), &event);
    auto* const menu = SideWindowNow()->findChild<QMenu*>();
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().size(), 5);
    EXPECT_TRUE(menu->actions()[1]->isChecked());
    static_cast<void>(TakeCalls());
    menu->actions()[2]->trigger();
    QApplication::processEvents();
    EXPECT_THAT(TakeCalls(), ElementsAre("layout 2"));
    menu->actions()[4]->trigger();
    QApplication::processEvents();
    EXPECT_THAT(TakeCalls(), ElementsAre("leave"));
}

TEST_F(WallControlsTest, DropsWhatWasPutOffWhenItGoes) {
    bool done = false;
    {
        WallControls passing(room_, "Review");
        passing.Later([&done](WallControls&) { done = true; });
    }
    QApplication::processEvents();
    EXPECT_FALSE(done);
}

}  // namespace
}  // namespace Corvanta::Host
