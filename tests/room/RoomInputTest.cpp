// Who gets the pointer and the keys in a room with its bar.
#include <gtest/gtest.h>

#include "tests/room/ToolbarTest.h"

namespace Corvanta::Room {
namespace {

using namespace Corvanta::Testing;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr int kSpace = SDLK_SPACE;

class RoomInputTest : public ToolbarTest {
protected:
    // With the space bar for push-to-talk.
    void OpenWithKey() {
        Fake().Set([](FakeResults& results) {
            results.configuration["Device.PushToTalkKey"] = std::string("Space");
        });
        OpenBar();
    }
    [[nodiscard]] static std::string LastCursor() { return Calls().Of("Host_SetCursor").back().arguments[0]; }
    [[nodiscard]] SDL_Point PlaceOf(const std::string& name) {
        const auto place = FindInBar(name);
        EXPECT_TRUE(place.has_value()) << name;
        return place.value_or(SDL_Point{-1, -1});
    }
};

// Keys

TEST_F(RoomInputTest, TheHostHearsOfAKeyForPushToTalkWhenTheBarIsMade) {
    Fake().Set(
        [](FakeResults& results) { results.configuration["Device.PushToTalkKey"] = std::string("Space"); });
    Open();
    view->BuildControls();
    EXPECT_EQ(Calls().Count("Host_OnPushToTalkConfigured"), 1U);
}

TEST_F(RoomInputTest, AHeldKeyOpensTheMicrophone) {
    OpenWithKey();
    PushKey(SDL_KEYDOWN, kSpace);
    view->Tick();
    EXPECT_TRUE(view->IsMicEnabled());
    EXPECT_TRUE(FindInBar("mic").has_value());
    // A second press of the same key without a release is a repeat.
    PushKey(SDL_KEYDOWN, kSpace);
    view->Tick();
    EXPECT_TRUE(view->IsMicEnabled());
    PushKey(SDL_KEYUP, kSpace);
    view->Tick();
    EXPECT_FALSE(view->IsMicEnabled());
    EXPECT_TRUE(FindInBar("nomic").has_value());
    EXPECT_THAT(HostCalls(), IsEmpty());
}

TEST_F(RoomInputTest, OtherKeysAndOtherWindowsKeysDoNothing) {
    OpenWithKey();
    PushKey(SDL_KEYDOWN, SDLK_a);
    SDL_Event event = EventOf(SDL_KEYDOWN);
    event.key.keysym.sym = kSpace;
    event.window.windowID += 100;
    Push(event);
    view->Tick();
    EXPECT_FALSE(view->IsMicEnabled());
}

TEST_F(RoomInputTest, AKeyThatIsHeldWhenTheRoomEndsLeavesTheMicrophoneShut) {
    OpenWithKey();
    PushKey(SDL_KEYDOWN, kSpace);
    view->Tick();
    Calls().Clear();
    view->Shutdown();
    EXPECT_EQ(Calls().Of("WebRTC_SetEnabledLocalAudioTrack"),
              (std::vector<Call>{{"WebRTC_SetEnabledLocalAudioTrack", {"false", "0"}}}));
}

// Pointer

TEST_F(RoomInputTest, APressHitsWhatTheTickBeforeSawUnderThePointer) {
    OpenBar();
    const SDL_Point camera = PlaceOf("cam");
    const SDL_Point speaker = PlaceOf("audio");
    MoveTo(camera);
    PushMotion(speaker);
    PushPress();
    view->Tick();
    EXPECT_THAT(HostCalls(), ElementsAre(Call{"Host_OnCameraToggled", {"false"}}));
}

TEST_F(RoomInputTest, APressBesideTheBarDoesNothing) {
    OpenBar();
    PressAt({kBarViewWidth / 2, kBarTop - 1});
    PressAt({kBarViewWidth / 2, 10});
    EXPECT_THAT(HostCalls(), IsEmpty());
}

TEST_F(RoomInputTest, APointerThatHasLeftTheWindowKeepsItsLastPlace) {
    OpenBar();
    const SDL_Point camera = PlaceOf("cam");
    MoveTo(camera);
    MoveTo({-1, -1});
    PushPress();
    view->Tick();
    EXPECT_EQ(HostCalls().size(), 1U);
}

TEST_F(RoomInputTest, AnotherWindowsPressDoesNothing) {
    OpenBar();
    MoveTo(PlaceOf("cam"));
    SDL_Event event = EventOf(SDL_MOUSEBUTTONDOWN);
    event.window.windowID += 100;
    Push(event);
    view->Tick();
    EXPECT_THAT(HostCalls(), IsEmpty());
}

TEST_F(RoomInputTest, AReleaseIsNoPress) {
    OpenBar();
    MoveTo(PlaceOf("cam"));
    Push(EventOf(SDL_MOUSEBUTTONUP));
    view->Tick();
    EXPECT_THAT(HostCalls(), IsEmpty());
}

TEST_F(RoomInputTest, TheTilesCursorEndsWithTheWall) {
    OpenBarAndWall();
    view->SetCursor(3, 1);
    EXPECT_EQ(view->GetCursor(), 3);
    view->SlideThumbnails(false, false);
    view->Tick();
    EXPECT_EQ(view->GetCursor(), 0);
    EXPECT_EQ(LastCursor(), "0");
}

TEST_F(RoomInputTest, TheTilesCursorEndsWhenTheWallIsDetached) {
    OpenBarAndWall();
    int wallWindow = 0;
    ASSERT_EQ(view->CreateDetachedView(&wallWindow, 800, 400), 1);
    view->SetCursor(3, 1);
    view->Tick();
    EXPECT_EQ(LastCursor(), "0");
}

TEST_F(RoomInputTest, APressThatEndsTheRoomReachesNothingAfterIt) {
    OpenBar();
    MoveTo(PlaceOf("options"));
    Calls().OnCall("Host_ShowOptions", [](const Call&) { roomActive.store(false); });
    PushPress();
    PushMotion({10, 10});
    view->Tick();
    EXPECT_EQ(HostCalls().size(), 1U);
    Calls().Clear();
    view->Tick();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U);
}

TEST_F(RoomInputTest, TheWallAndTheBarGetAPressEachInItsPlace) {
    OpenBarAndWall();
    AddCamera(kWhite);
    AddRemote("one", kBlack);
    view->Tick();
    const SDL_Rect& tile = TileOf("one")->displayRect;
    PressAt({tile.x + tile.w / 2, tile.y + tile.h / 2});
    EXPECT_TRUE(view->IsMainVideo(*TileOf("one")));
    EXPECT_THAT(HostCalls(), IsEmpty());
    Press("cam");
    EXPECT_TRUE(view->IsMainVideo(*TileOf("one")));
    EXPECT_EQ(HostCalls().size(), 1U);
}

}  // namespace
}  // namespace Corvanta::Room
