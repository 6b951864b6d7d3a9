// The way into a live room.
#include <thread>

#include "tests/fake_platform/TestFrames.h"
#include "tests/interface/RoomTest.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class RoomEntryTest : public StartedTest {
protected:
    static std::vector<std::string> ConnectionArguments() {
        return Fake().CallsOf("Connections_InitConnection").at(0).arguments;
    }
};

TEST_F(RoomEntryTest, EntersInOrder) {
    EXPECT_EQ(Enter(), 1);
    const Names steps = {"GraphQLClient_GetStoredToken",
                         "GraphQLClient_GetProfileId",
                         "GraphQLClient_GetEmail",
                         "GraphQLClient_GetDisplayName",
                         "Connections_InitConnection",
                         "SDL_CreateWindowFrom",
                         "SDL_CreateRenderer",
                         "WebRTC_GetLocalCameraTargetBitrate",
                         "Connections_SetDefaultOutboundBitrate",
                         "WebRTC_SetEnabledLocalAudioTrack",
                         "Clock",
                         "Connections_SetParticipantJoinedCallback",
                         "GraphQLClient_CStringDealloc",
                         "GraphQLClient_CStringDealloc",
                         "GraphQLClient_CStringDealloc"};
    EXPECT_EQ(Calls().NamesAmong(steps), steps);
    EXPECT_THAT(Fake().CallsOf("Connections_SetDefaultOutboundBitrate")[0].arguments, ElementsAre("2000000"));
    EXPECT_THAT(Fake().CallsOf("WebRTC_SetEnabledLocalAudioTrack")[0].arguments, ElementsAre("false", "0"));
    EXPECT_THAT(Fake().CallsOf("Connections_SetParticipantJoinedCallback")[0].arguments, ElementsAre("set"));
}

TEST_F(RoomEntryTest, ConnectsWithTheHostsArgumentsAndTheClientsFacts) {
    int first = 0;
    int second = 0;
    int seventh = 0;
    EnterRoom(&first, &second, "session", "room", true, false, true, &seventh, true);
    EXPECT_THAT(ConnectionArguments(),
                ElementsAre(ToText(&first), ToText(&second), "session", "__Host-jwt=token", "me@example.com",
                            "profile-id", "Me", "false", "false", "true", ToText(&seventh)));
}

TEST_F(RoomEntryTest, ConnectsWithSoundAndVideoUnlessTheFlagSaysNo) {
    EnterRoom(nullptr, nullptr, "s", "r", false, false, false, nullptr, false);
    EXPECT_EQ(ConnectionArguments()[7], "true");
    EXPECT_EQ(ConnectionArguments()[8], "true");
    EXPECT_EQ(ConnectionArguments()[9], "true");
}

TEST_F(RoomEntryTest, ConnectsWithAnEmptyTokenToo) {
    Fake().Set([](FakeResults& results) { results.storedToken = ""; });
    EXPECT_EQ(Enter(), 1);
    EXPECT_EQ(ConnectionArguments()[3], "__Host-jwt=");
}

TEST_F(RoomEntryTest, NeverLogsTheToken) {
    Fake().Set([](FakeResults& results) { results.storedToken = "very-secret"; });
    Enter();
    SDLinterface_GlobalQuit();
    FailToConnect();
    Enter();
    for (const LogLine& line : Fake().Logs()) EXPECT_EQ(line.text.find("very-secret"), std::string::npos);
}

TEST_F(RoomEntryTest, TakesNullTextsForEmptyOnes) {
    EXPECT_EQ(EnterRoom(nullptr, nullptr, nullptr, nullptr, false, false, false, nullptr, false), 1);
    EXPECT_EQ(ConnectionArguments()[2], "");
    EXPECT_EQ(Interface::CurrentView()->GetIdentity().roomName, "");
}

TEST_F(RoomEntryTest, TellsTheViewWhereItIsAndWhoIsThere) {
    EnterRoom(nullptr, nullptr, "session", "room", true, false, false, nullptr, false);
    const Room::RoomIdentity& identity = Interface::CurrentView()->GetIdentity();
    EXPECT_EQ(identity.roomName, "room");
    EXPECT_EQ(identity.sessionName, "session");
    EXPECT_EQ(identity.profileId, "profile-id");
    EXPECT_TRUE(identity.flagB);
    EXPECT_FALSE(identity.isHost);
    EXPECT_FALSE(identity.flagC);
}

TEST_F(RoomEntryTest, KeepsTheFlagsApart) {
    EnterRoom(nullptr, nullptr, "s", "r", false, true, false, nullptr, false);
    EXPECT_TRUE(Interface::CurrentView()->GetIdentity().isHost);
    EXPECT_FALSE(Interface::CurrentView()->GetIdentity().flagB);
    EnterRoom(nullptr, nullptr, "s", "r", false, false, true, nullptr, false);
    EXPECT_TRUE(Interface::CurrentView()->GetIdentity().flagC);
    EXPECT_FALSE(Interface::CurrentView()->GetIdentity().isHost);
}

TEST_F(RoomEntryTest, IsActiveAndCurrentBeforeItsWindowOpens) {
    bool active = false;
    bool current = false;
    Names logged;
    Watch("SDL_CreateWindowFrom", [&] {
        active = roomActive.load();
        current = HasView();
        logged = Fake().LogsOf(2);
    });
    Enter();
    EXPECT_TRUE(active);
    EXPECT_TRUE(current);
    EXPECT_EQ(logged, Names{"Successfully connected"});
    EXPECT_TRUE(roomActive.load());
}

TEST_F(RoomEntryTest, ConfiguresTheViewAfterItsWindowIsOpen) {
    std::string nameAtWindow = "unset";
    std::string nameAtBitrate = "unset";
    Watch("SDL_CreateWindowFrom", [&] { nameAtWindow = Interface::CurrentView()->GetIdentity().roomName; });
    Watch("Connections_SetDefaultOutboundBitrate",
          [&] { nameAtBitrate = Interface::CurrentView()->GetIdentity().roomName; });
    Enter();
    EXPECT_EQ(nameAtWindow, "");
    EXPECT_EQ(nameAtBitrate, "room");
}

TEST_F(RoomEntryTest, OpensTheHostsWindowInItsSize) {
    int handle = 0;
    SDLinterface_SetRoomWindow(&handle, 800, 450);
    ASSERT_EQ(Enter(), 1);
    EXPECT_THAT(Fake().CallsOf("SDL_CreateWindowFrom")[0].arguments, ElementsAre(ToText(&handle)));
    EXPECT_EQ(Interface::CurrentView()->GetWidth(), 800);
    EXPECT_EQ(Interface::CurrentView()->GetHeight(), 450);
    EXPECT_EQ(Interface::CurrentView()->GetWindowId(), 0);
}

TEST_F(RoomEntryTest, SilencesStreamsThatComeWhileItIsBeingEntered) {
    Watch("WebRTC_SetEnabledLocalAudioTrack", [] { Fake().OfferRemoteSource("early"); });
    Enter();
    ASSERT_EQ(Calls().Count("WebRTC_SetEnabledRemoteAudioTrack"), 1U);
    EXPECT_THAT(Fake().CallsOf("WebRTC_SetEnabledRemoteAudioTrack")[0].arguments,
                ElementsAre("early", "false"));
}

TEST_F(RoomEntryTest, ReportsTheIndexOfItsConnection) {
    Fake().Set([](FakeResults& results) { results.connectionIndex = 7; });
    int indexAtBitrate = 0;
    Watch("Connections_SetDefaultOutboundBitrate", [&] { indexAtBitrate = SDL_GetCurrentConnectionIndex(); });
    EXPECT_EQ(Enter(), 7);
    EXPECT_EQ(indexAtBitrate, 7);
    EXPECT_EQ(SDL_GetCurrentConnectionIndex(), 7);
    SDL_SetVideoRoomConection(9);
    EXPECT_EQ(SDL_GetCurrentConnectionIndex(), 9);
}

TEST_F(RoomEntryTest, GivesAllStringsBack) {
    Enter();
    EXPECT_EQ(Fake().UnreleasedStrings(), 0U);
    EXPECT_EQ(Fake().WrongReleases(), 0U);
}

TEST_F(RoomEntryTest, HoldsTheStringsUntilTheRoomIsReady) {
    size_t held = 0;
    Watch("Connections_SetParticipantJoinedCallback", [&] { held = Fake().UnreleasedStrings(); });
    Enter();
    EXPECT_EQ(held, 3U);
}

TEST_F(RoomEntryTest, DoesNotCountTheTimeBeforeIt) {
    clock_.AdvanceMs(100'000);
    Enter();
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("WebRTC_GetActiveSpeaker"), 0U);
}

TEST_F(RoomEntryTest, UsesACopyOfTheHostsFunctions) {
    {
        HostCallbacks callbacks = Host::Callbacks();
        SDLinterface_SetHostCallbacks(&callbacks);
        callbacks = {};
    }
    Enter();
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("Host_SetCursor"), 1U);
}

TEST_F(RoomEntryTest, WorksForAHostWithoutFunctions) {
    SDLinterface_SetHostCallbacks(nullptr);
    Enter();
    Fake().OfferRemoteSource("a");
    SDL_VideoRoomCheckInputAndRender();
    SDLinterface_VideoRoomUpdateActiveSpeaker("a");
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("Host_SetCursor"), 0U);
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 2U);
}

TEST_F(RoomEntryTest, TakesAParticipantWhoJoinsWithoutHarm) {
    Enter();
    ASSERT_TRUE(Fake().callbacks.participantJoined.IsSet());
    Fake().callbacks.participantJoined();
}

TEST_F(RoomEntryTest, FailsWhenItCannotConnect) {
    FailToConnect();
    EXPECT_EQ(Enter(), -1);
    EXPECT_THAT(Fake().Logs(), ElementsAre(LogLine{2, "Connection failed"}));
    EXPECT_EQ(SDL_GetCurrentConnectionIndex(), -1);
    EXPECT_FALSE(HasView());
    EXPECT_FALSE(roomActive.load());
    EXPECT_EQ(Calls().Count("SDL_CreateWindowFrom"), 0U);
    EXPECT_EQ(Calls().Count("Connections_CloseConnection"), 0U);
    EXPECT_EQ(Calls().Count("Connections_SetParticipantJoinedCallback"), 0U);
    SDL_SetVideoRoomConection(4);
    EXPECT_EQ(SDL_GetCurrentConnectionIndex(), 4);
}

TEST_F(RoomEntryTest, KeepsTheStringsWhenItCannotConnect) {
    FailToConnect();
    Enter();
    EXPECT_EQ(Calls().Count("GraphQLClient_CStringDealloc"), 0U);
    EXPECT_EQ(Fake().UnreleasedStrings(), 3U);
}

TEST_F(RoomEntryTest, LeavesAnEarlierRoomWhenItCannotConnect) {
    Enter();
    const auto earlier = Interface::CurrentView();
    FailToConnect();
    EXPECT_EQ(Enter(), -1);
    EXPECT_EQ(Interface::CurrentView(), earlier);
    EXPECT_TRUE(roomActive.load());
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
}

TEST_F(RoomEntryTest, ClosesTheConnectionAgainWithoutAWindow) {
    SDLinterface_SetRoomWindow(nullptr, 640, 360);
    size_t unreleasedAtClose = 99;
    bool currentAtClose = false;
    bool activeAtClose = false;
    int indexAtClose = 0;
    Watch("Connections_CloseConnection", [&] {
        unreleasedAtClose = Fake().UnreleasedStrings();
        currentAtClose = HasView();
        activeAtClose = roomActive.load();
        indexAtClose = SDL_GetCurrentConnectionIndex();
    });
    EXPECT_EQ(Enter(), -1);
    EXPECT_EQ(Calls().Count("Connections_CloseConnection"), 1U);
    EXPECT_EQ(unreleasedAtClose, 0U);
    EXPECT_TRUE(currentAtClose);
    EXPECT_TRUE(activeAtClose);
    EXPECT_EQ(indexAtClose, 1);
    EXPECT_FALSE(HasView());
    EXPECT_FALSE(roomActive.load());
    EXPECT_EQ(SDL_GetCurrentConnectionIndex(), -1);
    EXPECT_EQ(Fake().WrongReleases(), 0U);
    EXPECT_EQ(Fake().LogsOf(4).size(), 1U);
    EXPECT_EQ(Calls().Count("Connections_SetDefaultOutboundBitrate"), 0U);
}

TEST_F(RoomEntryTest, LeavesNothingBehindWhenTheRendererCannotBeMade) {
    Sdl().Fail("SDL_CreateRenderer");
    EXPECT_EQ(Enter(), -1);
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    EXPECT_FALSE(HasView());
    EXPECT_EQ(Enter(), 1);
    EXPECT_TRUE(roomActive.load());
}

TEST_F(RoomEntryTest, LeavesNoWindowToTheLastOwnerOfAViewThatFailed) {
    Sdl().Fail("SDL_CreateRenderer");
    std::shared_ptr<Room::VideoRoomView> kept;
    Watch("SDL_CreateRenderer", [&] { kept = Interface::CurrentView(); });
    EXPECT_EQ(Enter(), -1);
    ASSERT_NE(kept, nullptr);
    EXPECT_EQ(Sdl().LiveWindows(), 0U);
    Calls().Clear();
    std::thread([&] { kept.reset(); }).join();
    EXPECT_EQ(Calls().NamesAmong({"SDL_DelEventWatch", "SDL_DestroyWindow", "SDL_DestroyRenderer"}), Names{});
}

TEST_F(RoomEntryTest, ReplacesAnEarlierRoomWithoutEndingIt) {
    Enter();
    Fake().OfferRemoteSource("a");
    const std::weak_ptr<Room::VideoRoomView> earlier = Interface::CurrentView();
    Calls().Clear();
    EXPECT_EQ(Enter(), 1);
    EXPECT_TRUE(earlier.expired());
    EXPECT_TRUE(roomActive.load());
    // Its end would have cleared the room's keys.
    EXPECT_EQ(Calls().Count("Configuration_SetPropertyString"), 0U);
    EXPECT_EQ(Sdl().LiveRenderers(), 1U);
    // The window is free before the new view takes it.
    EXPECT_EQ(Calls().NamesAmong({"SDL_DestroyWindow", "SDL_CreateWindowFrom"}),
              (Names{"SDL_DestroyWindow", "SDL_CreateWindowFrom"}));
}

TEST_F(RoomEntryTest, KeepsTheRoomActiveWhenTheLastOwnerOfAReplacedViewLetsGo) {
    Enter();
    auto handlers = SDLinterface_VideoRoomGetRemoteDataChannelCallbacks();
    Enter();
    std::thread([&] { handlers.clear(); }).join();
    EXPECT_TRUE(roomActive.load());
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
}

TEST_F(RoomEntryTest, DropsFramesOfAReplacedRoom) {
    Enter();
    FrameCallback* const sink = Fake().OfferRemoteSource("a");
    Enter();
    (*sink)(MakeFrame());
    Fake().RemoveRemoteSource("a");
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_THAT(Fake().LogsOf(4), IsEmpty());
}

TEST_F(RoomEntryTest, FailsWhenTheHostQuitsWhileItHearsOfThePushToTalkKey) {
    Fake().Set([](FakeResults& results) { results.configuration["Device.PushToTalkKey"] = "Space"; });
    bool viewInside = false;
    Watch("Host_OnPushToTalkConfigured", [&] {
        SDLinterface_GlobalQuit();
        viewInside = HasView();
    });
    EXPECT_EQ(Enter(), -1);
    EXPECT_EQ(Calls().Count("Host_OnPushToTalkConfigured"), 1U);
    EXPECT_TRUE(viewInside) << "it ends once the view is left";
    EXPECT_FALSE(HasView());
    EXPECT_FALSE(roomActive.load());
    EXPECT_EQ(SDL_GetCurrentConnectionIndex(), -1);
    EXPECT_EQ(Calls().Count("Connections_CloseConnection"), 1U);
    EXPECT_EQ(Calls().Count("Connections_SetDefaultOutboundBitrate"), 0U);
    EXPECT_EQ(Fake().UnreleasedStrings(), 0U);
    EXPECT_EQ(Fake().WrongReleases(), 0U);
    EXPECT_EQ(Fake().ConfigurationListeners() + Fake().RoomStatusListeners() + Fake().ProcessListeners(), 0U);
    EXPECT_EQ(Sdl().LiveWindows() + Sdl().LiveRenderers(), 0U);
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 0U);

    Fake().OnCall("Host_OnPushToTalkConfigured", {});
    Start();
    EXPECT_EQ(Enter(), 1);
    EXPECT_TRUE(HasView());
    EXPECT_TRUE(roomActive.load());
    EXPECT_EQ(SDL_GetCurrentConnectionIndex(), 1);
    EXPECT_EQ(Calls().Count("Host_OnPushToTalkConfigured"), 1U);
    SDL_WPFVideoRoomCheckInputAndRender();
    EXPECT_EQ(Calls().Count("SDL_RenderPresent"), 1U);
}

TEST_F(RoomEntryTest, WaitsWithTheOldRenderersEndWhenARoomIsEnteredFromInsideATick) {
    Enter();
    SDL_VideoRoomCheckInputAndRender();
    Fake().OfferRemoteSource("a");
    SDLinterface_VideoRoomUpdateActiveSpeaker("a");
    size_t renderersInside = 0;
    Host::onMainVideo = [&] {
        EXPECT_EQ(Enter(), 1);
        renderersInside = Sdl().LiveRenderers();
    };
    const std::weak_ptr<Room::VideoRoomView> earlier = Interface::CurrentView();
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_EQ(renderersInside, 2U);
    EXPECT_EQ(Sdl().LiveRenderers(), 1U);
    EXPECT_TRUE(earlier.expired());
    SDL_VideoRoomCheckInputAndRender();
    EXPECT_TRUE(Interface::CurrentView()->IsInitialised());
}

}  // namespace
}  // namespace Corvanta::Testing
