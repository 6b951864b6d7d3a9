#include "engine/webrtc/RoomSound.h"

#include "engine/connections/TrackSettings.h"
#include "engine/webrtc/SoundDevices.h"

namespace Corvanta::Engine {

RoomSound::RoomSound(EngineLoop& engineLoop)
    : mixer(std::make_shared<SoundMixer>(engineLoop)),
      microphone(engineLoop,
                 [this](GstBuffer* samples, GstClockTime due) { outlet.PushSound(samples, due); }) {}

void RoomSound::Open() {
    if (isClosed) return;
    const auto playSilently = [this] { mixer->Open(MakeSilentSpeaker(), {}); };
    if (!mixer->Open(MakeSpeaker(), playSilently)) playSilently();
    microphone.Close();
    FollowMicrophone();
}

void RoomSound::Close() {
    isClosed = true;
    microphone.Close();
    mixer->Close();
}

void RoomSound::FollowMicrophone() {
    const bool isWanted = !isClosed && TrackSettings::Get().SendsAudio() && !MicrophoneIsNone();
    if (isWanted == microphone.IsOpen()) return;
    if (isWanted) {
        microphone.Open(MakeMicrophone());
    } else {
        microphone.Close();
    }
}

}  // namespace Corvanta::Engine
