// Window indices and the current view.
#include "interface/ProcessState.h"

#include "tests/interface/RoomTest.h"
#include "tests/ui/TestView.h"

namespace Corvanta::Testing {
namespace {

using Interface::GetViewWindowId;

class NoRoomWindowTest : public StartedTest {};
class WindowIndexTest : public RoomTest {};

TEST_F(NoRoomWindowTest, HasNoWindow) {
    for (const int index : {0, 1, 2, 3, -1, 1000}) EXPECT_EQ(GetViewWindowId(index), -1);
}

TEST_F(WindowIndexTest, NamesTheRoomsWindowZero) {
    const auto view = Interface::CurrentView();
    EXPECT_GT(GetViewWindowId(0), 0);
    EXPECT_EQ(GetViewWindowId(0), static_cast<int>(SDL_GetWindowID(view->GetWindow())));
}

TEST_F(WindowIndexTest, HasNoWindowOnceTheRoomStopped) {
    roomActive.store(false);
    EXPECT_EQ(GetViewWindowId(0), -1);
    EXPECT_EQ(GetViewWindowId(1), -1);
}

TEST_F(WindowIndexTest, HasNoDetachedWall) {
    EXPECT_EQ(GetViewWindowId(1), -1);
}

TEST_F(WindowIndexTest, KnowsNoOtherIndices) {
    for (const int index : {-1, 3, 4, 1 << 30, -(1 << 30)}) EXPECT_EQ(GetViewWindowId(index), -1);
}

TEST_F(WindowIndexTest, HasNoIdForAViewWithoutAWindow) {
    Interface::CurrentView()->CleanupWindow();
    EXPECT_EQ(GetViewWindowId(0), -1);
}

TEST_F(NoRoomWindowTest, NamesTheLastExtraViewTwoWithoutARoom) {
    TestView first;
    TestView last;
    int handle = 0;
    ASSERT_EQ(first.Init(&handle, 10, 10), 1);
    ASSERT_EQ(last.Init(&handle, 10, 10), 1);
    Interface::gExtraViews = {&first, &last};
    EXPECT_EQ(GetViewWindowId(2), last.GetSdlWindowId());
    Interface::gExtraViews.push_back(nullptr);
    EXPECT_EQ(GetViewWindowId(2), -1);
    Interface::gExtraViews.clear();
    EXPECT_EQ(GetViewWindowId(2), -1);
}

TEST_F(NoRoomWindowTest, HasNoIdForAnExtraViewWithoutAWindow) {
    TestView view;
    Interface::gExtraViews = {&view};
    EXPECT_EQ(GetViewWindowId(2), -1);
    Interface::gExtraViews.clear();
}

TEST_F(WindowIndexTest, KnowsThatALiveRoomIsNoRecording) {
    EXPECT_EQ(Interface::GetRecordingsView(), nullptr);
}

TEST_F(WindowIndexTest, HandsTheViewOutAsASharedOwner) {
    const auto view = Interface::CurrentView();
    EXPECT_EQ(Interface::ReplaceCurrentView(nullptr), view);
    EXPECT_EQ(Interface::CurrentView(), nullptr);
    EXPECT_TRUE(view->IsInitialised());
    EXPECT_EQ(Interface::ReplaceCurrentView(view), nullptr);
}

}  // namespace
}  // namespace Corvanta::Testing
