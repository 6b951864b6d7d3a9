#include "engine/webrtc/SoundDevices.h"

#include <string>
#include <vector>

#include "engine/EngineSettings.h"
#include "engine/webrtc/DeviceList.h"
#include "platform/Logger.h"

namespace Corvanta::Engine {

namespace {

constexpr const char* kSpeakerSetting = "Device.Speaker";
constexpr const char* kMicrophoneSetting = "Device.Microphone";
constexpr double kTestToneVolume = 0.1;

GstOwned<GstElement> MakeTestTone() {
    auto tone = MakeElement("audiotestsrc");
    if (tone) g_object_set(tone.get(), "is-live", TRUE, "volume", kTestToneVolume, nullptr);
    return tone;
}

}  // namespace

bool SpeakerIsNone() {
    return CurrentOptions().soundOutput == SoundOutput::Silent || ReadSetting(kSpeakerSetting) == kNoDevice ||
           DeviceList::Get().Names(DeviceKind::Speaker).empty();
}

bool MicrophoneIsNone() {
    return ReadSetting(kMicrophoneSetting) == kNoDevice;
}

GstOwned<GstElement> MakeSpeaker() {
    if (SpeakerIsNone()) return MakeSilentSpeaker();
    const std::string chosen = ReadSetting(kSpeakerSetting);
    if (!chosen.empty()) {
        if (auto speaker = DeviceList::Get().MakeElement(DeviceKind::Speaker, chosen)) return speaker;
        LOG(kLogWarning, "The speaker \"%s\" is not there: the default one is used", chosen.c_str());
    }
    return MakeElement("autoaudiosink");
}

GstOwned<GstElement> MakeSilentSpeaker() {
    auto speaker = MakeElement("fakesink");
    if (speaker) g_object_set(speaker.get(), "sync", TRUE, nullptr);
    return speaker;
}

GstOwned<GstElement> MakeMicrophone() {
    if (MicrophoneIsNone()) return nullptr;
    const std::string chosen = ReadSetting(kMicrophoneSetting);
    if (chosen == kTestTone) return MakeTestTone();
    DeviceList& devices = DeviceList::Get();
    if (!chosen.empty()) {
        if (auto microphone = devices.MakeElement(DeviceKind::Microphone, chosen)) return microphone;
        LOG(kLogWarning, "The microphone \"%s\" is not there: another one is used", chosen.c_str());
    }
    for (const std::string& name : devices.Names(DeviceKind::Microphone)) {
        if (auto microphone = devices.MakeElement(DeviceKind::Microphone, name)) return microphone;
    }
    return MakeTestTone();
}

}  // namespace Corvanta::Engine
