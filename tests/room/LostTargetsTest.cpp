// Marks in a room whose renderer loses what was drawn into textures.
#include <gtest/gtest.h>

#include "tests/drawing/MarkMessage.h"
#include "tests/room/RoomViewTest.h"

namespace Corvanta::Room {
namespace {

using Testing::Calls;
using Testing::MarkJson;
using Testing::MarkMessage;

constexpr uint32_t kRed = 0xFFFF0000;
constexpr uint32_t kBlue = 0xFF0000FF;
// The pictures of the room are four by three.
constexpr SDL_Rect kWholeCanvas{0, 0, 1280, 960};

class LostTargetsTest : public RoomViewTest {
protected:
    void Mark(const std::string& streamId) {
        view->GetDrawings().OnDataChannelMessage(
            {"two", MarkMessage(streamId, {MarkJson("1", kWholeCanvas, kRed)})});
    }
    // window: SDL's drivers give none, or whatever stood in memory.
    static void PushLoss(Uint32 type, Uint32 window) {
        SDL_Event event;
        SDL_zero(event);
        event.type = type;
        event.window.windowID = window;
        SDL_PushEvent(&event);
        Calls().Clear();
    }
};

TEST_F(LostTargetsTest, MarksAreDrawnAgainWhateverWindowTheEventHas) {
    Open();
    AddCamera(kBlue);
    Mark("me");
    ASSERT_EQ(ShownColor(), kRed);
    for (const Uint32 type : {SDL_RENDER_TARGETS_RESET, SDL_RENDER_DEVICE_RESET}) {
        for (const Uint32 window : {0U, static_cast<Uint32>(view->GetSdlWindowId()), 0xCDCDCDCDU}) {
            PushLoss(type, window);
            EXPECT_EQ(ShownColor(), kRed);
            EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 1U);
            Calls().Clear();
            view->Tick();
            EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 0U);
        }
    }
}

TEST_F(LostTargetsTest, MarksAreDrawnAgainInBothWindowsOfADetachedWall) {
    OpenWithWall();
    AddCamera(kBlue);
    AddRemote("one", kBlue);
    view->SetActiveSpeaker("one");
    Mark("one");
    Mark("me");
    int wallWindow = 0;
    ASSERT_EQ(view->CreateDetachedView(&wallWindow, 800, 400), 1);
    for (int tick = 0; tick < 3; ++tick) {
        view->Tick();
        view->TickDetachedView();
    }
    PushLoss(SDL_RENDER_TARGETS_RESET, 0);
    // The main video is a second tile of its stream; the wall has that stream's first and the camera's.
    EXPECT_EQ(ShownColor(), kRed);
    EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 1U);
    view->TickDetachedView();
    EXPECT_EQ(Calls().Count("SDL_CreateTexture"), 3U);
    view->LeaveDetachedLayout();
}

}  // namespace
}  // namespace Corvanta::Room
