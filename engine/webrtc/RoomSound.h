// The sound of an open room: the mixer on the speaker that the settings name, and the user's microphone,
// which is captured only while its track is enabled.
#pragma once

#include <atomic>
#include <memory>

#include "engine/common/EngineLoop.h"
#include "engine/transport/LocalFeed.h"
#include "engine/webrtc/Microphone.h"
#include "engine/webrtc/SoundMixer.h"

namespace Corvanta::Engine {

class RoomSound final {
public:
    // Used on the loop's thread alone, where nothing else is said; the loop outlives it.
    explicit RoomSound(EngineLoop& engineLoop);

    // Opens the devices that the settings name, instead of those that were open.
    void Open();
    // Closes them for good.
    void Close();
    // Brings the microphone to where its track wants it.
    void FollowMicrophone();

    // Any thread.
    [[nodiscard]] const std::shared_ptr<SoundMixer>& Mixer() const { return mixer; }
    [[nodiscard]] const Microphone& OwnMicrophone() const { return microphone; }
    // Where the microphone's sound goes.
    [[nodiscard]] FeedOutlet& Outlet() { return outlet; }

private:
    const std::shared_ptr<SoundMixer> mixer;
    FeedOutlet outlet;
    Microphone microphone;
    bool isClosed = false;
};

}  // namespace Corvanta::Engine
