#include "integration/MicrophoneController.h"

#include <functional>
#include <initializer_list>
#include <utility>

#include "tests/fake_platform/AllocationCounter.h"
#include "tests/integration/MicrophoneRoom.h"

namespace Corvanta::UI {
namespace {

using Testing::AllocationCounter;
using Testing::Call;
using Testing::Calls;
using ::testing::ElementsAre;
using Testing::Fake;
using ::testing::IsEmpty;
using Testing::kPushToTalkSetting;
using Testing::kSpace;

class MicrophoneControllerTest : public Testing::MicrophoneRoom {
protected:
    // As a bar does: without a device the toggle is in its third state, in which a click does nothing.
    void GiveDeviceState() {
        const auto nothing = [] {};
        toggle->ConfigureThirdState(nullptr, "", "No microphone", nothing, nothing);
    }
};

TEST_F(MicrophoneControllerTest, ReadsItsKeyTellsTheHostAndSubscribesInThisOrder) {
    SetKey("Space");
    microphone->Init(Host(), toggle.get());
    EXPECT_THAT(Calls().Names(), ElementsAre("Configuration_GetPropertyString", "OnPushToTalkConfigured",
                                             "Configuration_Subscribe", "Connections_AddRoomStatusListener"));
    EXPECT_THAT(Calls().All().at(0).arguments, ElementsAre(kPushToTalkSetting, "256"));
    EXPECT_EQ(Fake().ConfigurationListeners(), 1U);
    EXPECT_EQ(Fake().RoomStatusListeners(), 1U);
}

TEST_F(MicrophoneControllerTest, TellsTheHostOfNoKeyThatItDoesNotKnow) {
    microphone->Init(Host(), toggle.get());
    for (const char* name : {"", "F5", "Nonsense"}) {
        SetKey(name);
        microphone->Init(Host(), toggle.get());
    }
    EXPECT_EQ(Calls().Count("OnPushToTalkConfigured"), 0U);
}

TEST_F(MicrophoneControllerTest, LivesWithAHostAndARoomThatHaveNothing) {
    SetKey("Space");
    microphone->Init(HostCallbacks{}, nullptr);
    microphone->OnKeyDown(kSpace);
    microphone->OnKeyUp(kSpace);
    Fake().FireConfigurationChanged(kPushToTalkSetting, "Tab");
    Fake().FireRoomStatus(3);
    Fake().FireMutedRemotely();
    microphone->Update();
    microphone->SetMicEnabled(true);
    EXPECT_THAT(TrackSwitches(), ElementsAre("false", "true"));
}

TEST_F(MicrophoneControllerTest, EndsItsSubscriptionsOnce) {
    EnterMuted();
    microphone->Shutdown();
    EXPECT_THAT(Calls().Names(),
                ElementsAre("Configuration_Unsubscribe", "Connections_RemoveRoomStatusListener"));
    microphone->Shutdown();
    microphone.reset();
    EXPECT_EQ(Calls().All().size(), 2U);
    EXPECT_EQ(Fake().ConfigurationListeners() + Fake().RoomStatusListeners(), 0U);
}

TEST_F(MicrophoneControllerTest, EndsItsSubscriptionsWhenItIsDestroyedWithoutAShutdown) {
    EnterMuted();
    microphone.reset();
    EXPECT_EQ(Fake().ConfigurationListeners() + Fake().RoomStatusListeners(), 0U);
}

TEST_F(MicrophoneControllerTest, AsksNothingOfAnyoneWhenItWasNeverInitialised) {
    microphone->Shutdown();
    microphone.reset();
    EXPECT_THAT(Calls().Names(), IsEmpty());
}

TEST_F(MicrophoneControllerTest, LetsGoOfTheToggleWhenItIsShutDown) {
    EnterMuted();
    microphone->Shutdown();
    toggle.reset();
    microphone->OnKeyDown(kSpace);
    microphone->OnMutedRemotely();
    microphone->Update();
    EXPECT_FALSE(microphone->IsMicEnabled());
}

TEST_F(MicrophoneControllerTest, SubscribesOnceHoweverOftenItIsInitialised) {
    EnterMuted();
    microphone->Init(Host(), toggle.get());
    EXPECT_EQ(Fake().ConfigurationListeners(), 1U);
    EXPECT_EQ(Fake().RoomStatusListeners(), 1U);
}

TEST_F(MicrophoneControllerTest, LeavesNoOpenMicrophoneBehindAHeldKey) {
    EnterMuted();
    microphone->OnKeyDown(kSpace);
    ASSERT_TRUE(TrackIsOn());
    microphone->Shutdown();
    EXPECT_FALSE(TrackIsOn());
    EXPECT_FALSE(microphone->IsMicEnabled());
    EXPECT_FALSE(microphone->IsPushToTalkActive());
    EXPECT_EQ(mutings, 0);
}

TEST_F(MicrophoneControllerTest, OpensWhileTheKeyIsHeldAndMutesAtItsRelease) {
    EnterMuted();
    microphone->OnKeyDown(kSpace);
    EXPECT_FALSE(toggle->IsToggled());
    EXPECT_TRUE(microphone->IsPushToTalkActive());
    EXPECT_TRUE(microphone->IsMicEnabled());
    microphone->OnKeyUp(kSpace);
    EXPECT_TRUE(toggle->IsToggled());
    EXPECT_FALSE(microphone->IsPushToTalkActive());
    EXPECT_FALSE(microphone->IsMicEnabled());
    EXPECT_THAT(TrackSwitches(), ElementsAre("true", "false"));
}

TEST_F(MicrophoneControllerTest, TellsTheHostNothingOfAHeldKey) {
    EnterMuted();
    microphone->OnKeyDown(kSpace);
    microphone->OnKeyUp(kSpace);
    EXPECT_EQ(Calls().Count("OnMicrophoneChanged"), 0U);
    toggle->OnClick();
    EXPECT_THAT(Calls().Of("OnMicrophoneChanged"), ElementsAre(Call{"OnMicrophoneChanged", {"true"}}));
}

TEST_F(MicrophoneControllerTest, TakesTheRepeatsOfAHeldKeyForOnePress) {
    EnterMuted();
    for (int i = 0; i < 5; ++i) microphone->OnKeyDown(kSpace);
    EXPECT_EQ(openings, 1);
    EXPECT_EQ(mutings, 0);
}

TEST_F(MicrophoneControllerTest, LeavesAnOpenMicrophoneAlone) {
    EnterOpen();
    microphone->OnKeyDown(kSpace);
    EXPECT_FALSE(microphone->IsPushToTalkActive());
    microphone->OnKeyUp(kSpace);
    EXPECT_FALSE(toggle->IsToggled());
    EXPECT_THAT(Calls().Names(), IsEmpty());
}

TEST_F(MicrophoneControllerTest, LeavesAMicrophoneAloneThatWasOpenedAndMutedBetweenPressAndRelease) {
    EnterOpen();
    microphone->OnKeyDown(kSpace);
    toggle->OnClick();
    Calls().Clear();
    microphone->OnKeyUp(kSpace);
    EXPECT_TRUE(toggle->IsToggled());
    EXPECT_THAT(Calls().Names(), IsEmpty());
}

TEST_F(MicrophoneControllerTest, IgnoresAnotherKey) {
    EnterMuted("LeftShift");
    // The other side of a modifier has a code of its own.
    for (const int code : std::initializer_list<int>{SDLK_TAB, SDLK_RSHIFT, 0}) {
        microphone->OnKeyDown(code);
        EXPECT_FALSE(microphone->IsPushToTalkActive());
    }
    microphone->OnKeyDown(SDLK_LSHIFT);
    microphone->OnKeyUp(SDLK_TAB);
    EXPECT_TRUE(microphone->IsPushToTalkActive());
}

TEST_F(MicrophoneControllerTest, IgnoresTheKeyOfNoCodeWhenNoneIsSet) {
    EnterMuted("");
    microphone->OnKeyDown(0);
    microphone->OnKeyDown(kSpace);
    EXPECT_TRUE(toggle->IsToggled());
}

TEST_F(MicrophoneControllerTest, MatchesTheLowerCaseOfASingleCharacter) {
    EnterMuted("Z");
    microphone->OnKeyDown(SDLK_z);
    EXPECT_TRUE(microphone->IsPushToTalkActive());
}

TEST_F(MicrophoneControllerTest, ClicksNothingAtTheReleaseWhenTheUserHasMutedMeanwhile) {
    EnterMuted();
    microphone->OnKeyDown(kSpace);
    toggle->OnClick();
    EXPECT_EQ(mutings, 1);
    microphone->OnKeyUp(kSpace);
    EXPECT_EQ(mutings, 1);
    EXPECT_EQ(openings, 1);
    EXPECT_TRUE(toggle->IsToggled());
    EXPECT_FALSE(microphone->IsPushToTalkActive());
}

TEST_F(MicrophoneControllerTest, MutesAtTheReleaseThoughTheDeviceHasGoneMeanwhile) {
    EnterMuted();
    GiveDeviceState();
    microphone->OnKeyDown(kSpace);
    ASSERT_TRUE(TrackIsOn());
    toggle->SetThirdState(true);
    microphone->OnKeyUp(kSpace);
    EXPECT_TRUE(toggle->IsToggled());
    EXPECT_FALSE(TrackIsOn());
    EXPECT_FALSE(microphone->IsMicEnabled());
    EXPECT_FALSE(microphone->IsPushToTalkActive());
    EXPECT_EQ(Calls().Count("OnMicrophoneChanged"), 0U);
    // Nobody is heard when it is back.
    toggle->SetThirdState(false);
    microphone->Update();
    EXPECT_TRUE(toggle->IsToggled());
    EXPECT_FALSE(TrackIsOn());
    microphone->OnKeyDown(kSpace);
    EXPECT_TRUE(TrackIsOn());
}

TEST_F(MicrophoneControllerTest, MutesWhenTheKeyChangesThoughTheDeviceHasGoneMeanwhile) {
    EnterMuted();
    GiveDeviceState();
    microphone->OnKeyDown(kSpace);
    toggle->SetThirdState(true);
    Fake().FireConfigurationChanged(kPushToTalkSetting, "Tab");
    EXPECT_FALSE(TrackIsOn());
    microphone->Update();
    EXPECT_TRUE(toggle->IsToggled());
    EXPECT_FALSE(TrackIsOn());
    EXPECT_FALSE(microphone->IsMicEnabled());
    EXPECT_FALSE(microphone->IsPushToTalkActive());
    EXPECT_EQ(Calls().Count("OnMicrophoneChanged"), 0U);
    Calls().Clear();
    microphone->OnKeyUp(kSpace);
    EXPECT_THAT(Calls().Names(), IsEmpty());
    toggle->SetThirdState(false);
    EXPECT_TRUE(toggle->IsToggled());
}

TEST_F(MicrophoneControllerTest, MutesAtOnceWhenTheKeyChangesWhileItIsHeld) {
    EnterMuted();
    microphone->OnKeyDown(kSpace);
    Fake().FireConfigurationChanged(kPushToTalkSetting, "Tab");
    EXPECT_FALSE(TrackIsOn());
    EXPECT_FALSE(microphone->IsMicEnabled());
    microphone->Update();
    EXPECT_TRUE(toggle->IsToggled());
    EXPECT_FALSE(microphone->IsPushToTalkActive());
    EXPECT_FALSE(TrackIsOn());
    EXPECT_EQ(Calls().Count("OnMicrophoneChanged"), 0U);
    Calls().Clear();
    microphone->OnKeyUp(kSpace);
    microphone->Update();
    EXPECT_THAT(Calls().Names(), IsEmpty());
    microphone->OnKeyDown(SDLK_TAB);
    EXPECT_TRUE(microphone->IsPushToTalkActive());
}

TEST_F(MicrophoneControllerTest, CarriesAChangedKeyOutBeforeTheNextKeyEvent) {
    EnterMuted();
    microphone->OnKeyDown(kSpace);
    Fake().FireConfigurationChanged(kPushToTalkSetting, "Tab");
    microphone->OnKeyDown(SDLK_TAB);
    EXPECT_EQ(mutings, 1);
    EXPECT_EQ(openings, 2);
    EXPECT_TRUE(microphone->IsPushToTalkActive());
    EXPECT_TRUE(TrackIsOn());
}

TEST_F(MicrophoneControllerTest, LosesItsKeyToAnEmptyOrUnknownName) {
    for (const char* name : {"", "F5"}) {
        EnterMuted();
        Fake().FireConfigurationChanged(kPushToTalkSetting, name);
        microphone->OnKeyDown(kSpace);
        EXPECT_TRUE(toggle->IsToggled()) << name;
    }
}

TEST_F(MicrophoneControllerTest, ListensToItsOwnSettingAlone) {
    EnterMuted();
    Fake().FireConfigurationChanged("Device.PushToTalkKeyX", "Tab");
    Fake().FireConfigurationChanged("device.PushToTalkKey", "Tab");
    microphone->OnKeyDown(kSpace);
    EXPECT_TRUE(microphone->IsPushToTalkActive());
}

TEST_F(MicrophoneControllerTest, SwitchesTheTrackBeforeItTellsTheHost) {
    EnterMuted();
    bool stateAtCall = true;
    Fake().OnCall("WebRTC_SetEnabledLocalAudioTrack",
                  [&](const Call&) { stateAtCall = microphone->IsMicEnabled(); });
    bool stateAtHost = false;
    Fake().OnCall("OnMicrophoneChanged", [&](const Call&) { stateAtHost = microphone->IsMicEnabled(); });
    microphone->SetMicEnabled(true);
    EXPECT_THAT(Calls().Names(), ElementsAre("WebRTC_SetEnabledLocalAudioTrack", "OnMicrophoneChanged"));
    EXPECT_FALSE(stateAtCall);
    EXPECT_TRUE(stateAtHost);
}

TEST_F(MicrophoneControllerTest, StoresAStateWithoutTouchingAnything) {
    EnterMuted();
    microphone->SetMicState(true);
    EXPECT_TRUE(microphone->IsMicEnabled());
    EXPECT_TRUE(toggle->IsToggled());
    EXPECT_THAT(Calls().Names(), IsEmpty());
}

TEST_F(MicrophoneControllerTest, LetsTheStreamCarrySoundBeforeItSwitchesTheTrackOn) {
    EnterMuted();
    microphone->EnableMicrophone();
    EXPECT_THAT(Calls().All(), ElementsAre(Call{"Connections_GetLocalUserStreamID", {"0"}},
                                           Call{"Connections_ConfigureStream", {"me", "0=true"}},
                                           Call{"WebRTC_SetEnabledLocalAudioTrack", {"true", "0"}},
                                           Call{"OnMicrophoneChanged", {"true"}}));
}

TEST_F(MicrophoneControllerTest, SwitchesTheSoundOfTheLocalStream) {
    microphone->ConfigureLocalAudio(false);
    EXPECT_THAT(Calls().Of("Connections_ConfigureStream"),
                ElementsAre(Call{"Connections_ConfigureStream", {"me", "0=false"}}));
}

TEST_F(MicrophoneControllerTest, MutesRemotelyAtOnceAndTheToggleInTheNextUpdate) {
    EnterOpen();
    Fake().FireMutedRemotely();
    EXPECT_THAT(TrackSwitches(), ElementsAre("false"));
    EXPECT_FALSE(microphone->IsMicEnabled());
    EXPECT_EQ(Calls().Count("OnMicrophoneChanged"), 0U);
    microphone->Update();
    EXPECT_TRUE(toggle->IsToggled());
    EXPECT_EQ(mutings, 0);
    EXPECT_THAT(Calls().Of("OnMicrophoneChanged"), ElementsAre(Call{"OnMicrophoneChanged", {"false"}}));
    Calls().Clear();
    microphone->Update();
    EXPECT_THAT(Calls().Names(), IsEmpty());
}

TEST_F(MicrophoneControllerTest, StaysActiveButClicksNothingAfterARemoteMuteDuringTheKey) {
    EnterMuted();
    microphone->OnKeyDown(kSpace);
    Fake().FireMutedRemotely();
    microphone->Update();
    EXPECT_TRUE(microphone->IsPushToTalkActive());
    EXPECT_TRUE(toggle->IsToggled());
    microphone->OnKeyUp(kSpace);
    EXPECT_EQ(mutings, 0);
    EXPECT_FALSE(microphone->IsPushToTalkActive());
    EXPECT_EQ(Calls().Count("OnMicrophoneChanged"), 0U);
    EXPECT_FALSE(TrackIsOn());
}

TEST_F(MicrophoneControllerTest, LetsTheUserOpenItAgainAfterARemoteMuteThatNoTickHasSeen) {
    EnterMuted();
    Fake().FireMutedRemotely();
    toggle->OnClick();
    microphone->Update();
    EXPECT_FALSE(toggle->IsToggled());
    EXPECT_TRUE(microphone->IsMicEnabled());
    EXPECT_TRUE(TrackIsOn());
    EXPECT_THAT(Calls().Of("OnMicrophoneChanged"), ElementsAre(Call{"OnMicrophoneChanged", {"true"}}));
}

TEST_F(MicrophoneControllerTest, StaysMutedWhenItIsMutedRemotelyInTheMidstOfThePress) {
    EnterMuted();
    Fake().OnCall("Connections_ConfigureStream", [](const Call&) { Fake().FireMutedRemotely(); });
    microphone->OnKeyDown(kSpace);
    EXPECT_FALSE(TrackIsOn());
    EXPECT_FALSE(microphone->IsMicEnabled());
    microphone->Update();
    EXPECT_TRUE(toggle->IsToggled());
    EXPECT_FALSE(TrackIsOn());
}

TEST_F(MicrophoneControllerTest, StaysMutedWhenTheKeyChangesInTheMidstOfThePress) {
    EnterMuted();
    Fake().OnCall("Connections_ConfigureStream",
                  [](const Call&) { Fake().FireConfigurationChanged(kPushToTalkSetting, "Tab"); });
    microphone->OnKeyDown(kSpace);
    EXPECT_FALSE(TrackIsOn());
    microphone->Update();
    EXPECT_TRUE(toggle->IsToggled());
    EXPECT_FALSE(microphone->IsPushToTalkActive());
    EXPECT_FALSE(TrackIsOn());
}

TEST_F(MicrophoneControllerTest, RepeatsTheLastWishWhenTwoSwitchesOfTheTrackCross) {
    EnterMuted();
    // The mute overtakes: its call reaches the engine before this one returns.
    bool once = true;
    Fake().OnCall("WebRTC_SetEnabledLocalAudioTrack", [&](const Call&) {
        if (std::exchange(once, false)) Fake().FireMutedRemotely();
    });
    microphone->SetMicEnabled(true);
    EXPECT_THAT(TrackSwitches(), ElementsAre("true", "false", "false"));
    EXPECT_FALSE(TrackIsOn());
    EXPECT_FALSE(microphone->IsMicEnabled());
}

TEST_F(MicrophoneControllerTest, EndsPushToTalkThoughTheTogglesFunctionRaises) {
    SetKey("Space");
    ToggleButton broken(nullptr, {});
    broken.SetToggled(true);
    microphone->Init(Host(), &broken);
    EXPECT_THROW(microphone->OnKeyDown(kSpace), std::bad_function_call);
    EXPECT_THROW(microphone->OnKeyUp(kSpace), std::bad_function_call);
    EXPECT_FALSE(microphone->IsPushToTalkActive());
}

TEST_F(MicrophoneControllerTest, MayBeShutDownByTheTogglesFunction) {
    EnterMuted();
    Fake().OnCall("Connections_ConfigureStream", [this](const Call&) { microphone->Shutdown(); });
    microphone->OnKeyDown(kSpace);
    EXPECT_FALSE(microphone->IsPushToTalkActive());
    EXPECT_EQ(Fake().ConfigurationListeners(), 0U);
}

TEST_F(MicrophoneControllerTest, AllocatesNothingInAnUpdate) {
    EnterMuted();
    AllocationCounter::Start();
    for (int i = 0; i < 100; ++i) {
        microphone->Update();
        microphone->OnKeyDown(SDLK_TAB);
        microphone->OnKeyUp(SDLK_TAB);
    }
    EXPECT_EQ(AllocationCounter::Stop(), 0U);
}

}  // namespace
}  // namespace Corvanta::UI
