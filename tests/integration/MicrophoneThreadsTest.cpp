// The controller while other threads change its key and mute it: run under the thread sanitizer.
#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

#include "tests/integration/MicrophoneRoom.h"

namespace Corvanta::UI {
namespace {

using Testing::Calls;
using Testing::Fake;
using Testing::kPushToTalkSetting;
using Testing::kSpace;

using MicrophoneThreadsTest = Testing::MicrophoneRoom;

TEST_F(MicrophoneThreadsTest, AgreesWithItsToggleWhateverOtherThreadsAskFor) {
    EnterMuted();
    Calls().SetRecording(false);
    std::atomic<bool> stop = false;
    std::vector<std::thread> others;
    others.emplace_back([&stop] {
        while (!stop) {
            Fake().FireConfigurationChanged(kPushToTalkSetting, "Tab");
            Fake().FireConfigurationChanged(kPushToTalkSetting, "Space");
        }
    });
    others.emplace_back([&stop] {
        while (!stop) {
            Fake().FireMutedRemotely();
            std::this_thread::yield();
        }
    });
    others.emplace_back([this, &stop] {
        bool seen = false;
        while (!stop) seen = seen != microphone->IsMicEnabled();
    });
    for (int tick = 0; tick < 2000; ++tick) {
        microphone->OnKeyDown(kSpace);
        microphone->Update();
        if (tick % 3 == 0) toggle->OnClick();
        microphone->OnKeyUp(kSpace);
        microphone->Update();
    }
    stop = true;
    for (std::thread& other : others) other.join();
    microphone->Update();
    // What is seen on the bar is what is heard.
    EXPECT_EQ(toggle->IsToggled(), !TrackIsOn());
    EXPECT_EQ(microphone->IsMicEnabled(), TrackIsOn());
}

TEST_F(MicrophoneThreadsTest, IsShutDownWhileItIsMuted) {
    for (int round = 0; round < 50; ++round) {
        EnterOpen();
        std::atomic<bool> stop = false;
        std::thread other([&stop] {
            while (!stop) {
                Fake().FireMutedRemotely();
                Fake().FireConfigurationChanged(kPushToTalkSetting, "Tab");
            }
        });
        microphone->Update();
        microphone->Shutdown();
        microphone = std::make_unique<MicrophoneController>();
        stop = true;
        other.join();
    }
    EXPECT_EQ(Fake().RoomStatusListeners(), 0U);
}

}  // namespace
}  // namespace Corvanta::UI
