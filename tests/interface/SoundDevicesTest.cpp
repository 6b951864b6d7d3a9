// Sound devices: SDL's own, and what the room does when they have changed.
#include <SDL.h>

#include <cstdlib>
#include <string>

#include "tests/interface/RoomTest.h"

namespace Corvanta::Testing {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class SoundWithoutViewTest : public StartedTest {};
class SoundDevicesTest : public RoomTest {};

TEST_F(SoundWithoutViewTest, HasNoDevicesToUpdate) {
    EXPECT_FALSE(SDLinterface_VideoRoomAudioDeviceUpdate(true));
    EXPECT_FALSE(SDLinterface_VideoRoomAudioDeviceUpdate(false));
    EXPECT_THAT(Fake().CallNames(), IsEmpty());
}

TEST_F(SoundWithoutViewTest, EndsSdlsSound) {
    SDLInterface_AudioQuit();
    EXPECT_EQ(Calls().OfThisThread(),
              (std::vector<Call>{{"SDL_AudioQuit", {}}, {"SDL_QuitSubSystem", {"16"}}}));
}

class SoundDeviceIndexTest : public StartedTest {
protected:
    SoundDeviceIndexTest() { SDL_setenv("SDL_AUDIODRIVER", "dummy", 1); }
    ~SoundDeviceIndexTest() override { SDLInterface_AudioQuit(); }

    static std::string FirstName(bool capture) {
        if (SDL_WasInit(SDL_INIT_AUDIO) == 0) SDL_InitSubSystem(SDL_INIT_AUDIO);
        EXPECT_GE(SDL_GetNumAudioDevices(capture ? 1 : 0), 1);
        const char* const name = SDL_GetAudioDeviceName(0, capture ? 1 : 0);
        return name != nullptr ? name : "";
    }
};

TEST_F(SoundDeviceIndexTest, FindsADeviceByItsWholeNameAmongItsKind) {
    const std::string speaker = FirstName(false);
    const std::string microphone = FirstName(true);
    ASSERT_NE(speaker, microphone);
    EXPECT_EQ(SDL_GetAudioDeviceIndex(speaker.c_str(), false), 0);
    EXPECT_EQ(SDL_GetAudioDeviceIndex(microphone.c_str(), true), 0);
    EXPECT_EQ(SDL_GetAudioDeviceIndex(microphone.c_str(), false), -1);
    EXPECT_EQ(SDL_GetAudioDeviceIndex(speaker.c_str(), true), -1);
    EXPECT_EQ(SDL_GetAudioDeviceIndex(speaker.substr(0, speaker.size() - 1).c_str(), false), -1);
    EXPECT_EQ(SDL_GetAudioDeviceIndex((speaker + " ").c_str(), false), -1);
    EXPECT_EQ(SDL_GetAudioDeviceIndex("", false), -1);
}

TEST_F(SoundDeviceIndexTest, StartsSdlsSoundIfNeedBe) {
    const std::string name = FirstName(false);
    SDLInterface_AudioQuit();
    ASSERT_EQ(SDL_WasInit(SDL_INIT_AUDIO), 0U);
    Calls().Clear();
    EXPECT_EQ(SDL_GetAudioDeviceIndex(name.c_str(), false), 0);
    EXPECT_EQ(SDL_GetAudioDeviceIndex(name.c_str(), false), 0);
    EXPECT_EQ(Calls().Count("SDL_InitSubSystem"), 1U);
    EXPECT_THAT(Fake().CallsOf("SDL_InitSubSystem").at(0).arguments, ElementsAre("16"));
}

TEST_F(SoundDeviceIndexTest, FindsNothingWithoutANameOrWithoutSound) {
    EXPECT_EQ(SDL_GetAudioDeviceIndex(nullptr, false), -1);
    EXPECT_EQ(SDL_GetAudioDeviceIndex(nullptr, true), -1);
    const std::string name = FirstName(false);
    SDLInterface_AudioQuit();
    Sdl().Fail("SDL_InitSubSystem");
    EXPECT_EQ(SDL_GetAudioDeviceIndex(name.c_str(), false), -1);
}

TEST_F(SoundDevicesTest, NegotiatesSoundDevicesWithTheDevicesOfTheLastChange) {
    int first = 0;
    int second = 0;
    int third = 0;
    char name[] = "Camera 2";
    std::string asked;
    Calls().OnCall("WebRTC_GetVideoCaptureIndex", [&](const Call& call) {
        const auto address = std::strtoull(call.arguments.at(0).c_str(), nullptr, 16);
        // NOLINTNEXTLINE(performance-no-int-to-ptr): calls are recorded as text.
        asked = reinterpret_cast<const char*>(address);
    });
    ASSERT_TRUE(SDLinterface_VideoRoomTriggerDeviceRenegociation(name, &first, &second, &third));
    EXPECT_EQ(asked, "Camera 2");
    // The host's text is its own again.
    name[0] = 'X';
    asked.clear();
    EXPECT_TRUE(SDLinterface_VideoRoomAudioDeviceUpdate(true));
    EXPECT_EQ(asked, "Camera 2");
    const auto calls = Fake().CallsOf("WebRTC_GetVideoCaptureIndex");
    ASSERT_EQ(calls.size(), 2U);
    for (size_t other = 1; other < 4; ++other) {
        EXPECT_EQ(calls[1].arguments[other], calls[0].arguments[other]);
    }
    EXPECT_EQ(Calls().Count("WebRTC_ADMStart"), 0U);
    EXPECT_EQ(Calls().Count("Connections_RenegotiateOutboundPeerConnection"), 2U);
}

TEST_F(SoundDevicesTest, NegotiatesWithTheConfiguredCameraAfterAChangeWithoutAName) {
    char name[] = "Camera 2";
    ASSERT_TRUE(SDLinterface_VideoRoomTriggerDeviceRenegociation(name, nullptr, nullptr, nullptr));
    ASSERT_TRUE(SDLinterface_VideoRoomTriggerDeviceRenegociation(nullptr, nullptr, nullptr, nullptr));
    Calls().Clear();
    EXPECT_TRUE(SDLinterface_VideoRoomAudioDeviceUpdate(true));
    EXPECT_THAT(Fake().CallsOf("WebRTC_GetVideoCaptureIndex").at(0).arguments,
                ElementsAre("null", "null", "null", "null"));
}

}  // namespace
}  // namespace Corvanta::Testing
