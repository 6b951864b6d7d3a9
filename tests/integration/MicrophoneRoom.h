// A microphone's controller with the toggle of a bar, whose functions do what a room's do, and a host that
// writes down what it is told. One thread, but for what the controller allows on others.
#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "integration/MicrophoneController.h"
#include "tests/fake_platform/FakePlatform.h"
#include "ui/ToggleButton.h"

namespace Corvanta::Testing {

inline const std::string kPushToTalkSetting = "Device.PushToTalkKey";
inline constexpr int kSpace = 32;

class MicrophoneRoom : public FakePlatformTest {
protected:
    MicrophoneRoom() {
        UI::ToggleButton::Options options;
        options.onToggledOn = [this] {
            ++mutings;
            microphone->SetMicEnabled(false);
        };
        options.onToggledOff = [this] {
            ++openings;
            microphone->EnableMicrophone();
        };
        toggle = std::make_unique<UI::ToggleButton>(nullptr, std::move(options));
    }

    static HostCallbacks Host() {
        HostCallbacks callbacks{};
        callbacks.OnMicrophoneChanged = [](bool on) { Calls().Record("OnMicrophoneChanged", on); };
        callbacks.OnPushToTalkConfigured = [] { Calls().Record("OnPushToTalkConfigured"); };
        return callbacks;
    }
    static void SetKey(const std::string& name) {
        Fake().Set([&](FakeResults& results) { results.configuration[kPushToTalkSetting] = name; });
    }
    // Muted, with nothing written down yet.
    void EnterMuted(const std::string& key = "Space") {
        SetKey(key);
        toggle->SetToggled(true);
        microphone->Init(Host(), toggle.get());
        Calls().Clear();
    }
    void EnterOpen(const std::string& key = "Space") {
        EnterMuted(key);
        toggle->OnClick();
        openings = 0;
        Calls().Clear();
    }
    // What the track was told, in order: "true" or "false".
    static std::vector<std::string> TrackSwitches() {
        std::vector<std::string> switches;
        for (const Call& call : Calls().Of("WebRTC_SetEnabledLocalAudioTrack")) {
            EXPECT_EQ(call.arguments.at(1), "0");
            switches.push_back(call.arguments.at(0));
        }
        return switches;
    }
    static bool TrackIsOn() {
        return Fake().Get([](const FakeResults& results) { return results.localAudioEnabled; });
    }

    std::unique_ptr<UI::ToggleButton> toggle;
    std::unique_ptr<UI::MicrophoneController> microphone = std::make_unique<UI::MicrophoneController>();
    int mutings = 0;
    int openings = 0;
};

}  // namespace Corvanta::Testing
