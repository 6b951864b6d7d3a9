// Keeps the local microphone, the mute toggle of the toolbar and the push-to-talk key in agreement. A press
// of the key opens a muted microphone by clicking the toggle, the release clicks it back. Owned by the room's
// view. Render thread, but for OnConfigurationChanged and OnMutedRemotely, which come on any: they mute at
// once, and what concerns the toggle waits for the next Update. SetMicState and IsMicEnabled: any thread.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>
#include <set>
#include <string>

#include "platform/Configuration.h"
#include "platform/Connections.h"
#include "platform/HostCallbacks.h"
#include "ui/LockOrder.h"
#include "ui/ToggleButton.h"

namespace Corvanta::UI {

class MicrophoneController final : public ConfigurationListener, public Connections::RoomStatusListener {
public:
    MicrophoneController() = default;
    // Ends the subscriptions if Shutdown did not.
    ~MicrophoneController();
    MicrophoneController(const MicrophoneController&) = delete;
    MicrophoneController& operator=(const MicrophoneController&) = delete;

    // Copies the table and borrows the toggle (toggled: muted) until Shutdown; either may be empty. Reads the
    // key from the configuration, tells the host when there is one, and subscribes.
    void Init(const HostCallbacks& callbacks, ToggleButton* micButton);
    // Ends the subscriptions, waiting for a call in progress on another thread, and lets go of the toggle. A
    // key that is still held leaves no open microphone behind. The second call does nothing.
    void Shutdown();

    // Carries out what other threads asked for. Once in every tick, before the drawing; allocates nothing.
    void Update();

    // SDL key codes; a repeated press does nothing.
    void OnKeyDown(int code);
    void OnKeyUp(int code);

    // Switches the local track and tells the host, unless the push-to-talk key is held: that is a passing
    // state, no change of the user's setting.
    void SetMicEnabled(bool enabled);
    // Stores the state only: no device or track is touched.
    void SetMicState(bool enabled) { isMicEnabled_ = enabled; }
    // Lets the local user's stream carry sound, then switches the microphone on.
    void EnableMicrophone();
    // Switches the sound of the local user's camera stream for all who receive it.
    void ConfigureLocalAudio(bool on);

    [[nodiscard]] bool IsMicEnabled() const { return isMicEnabled_; }
    [[nodiscard]] bool IsPushToTalkActive() const;

    // Any thread.
    void OnConfigurationChanged(const std::string& key, const std::string& value) override;
    void OnRoomStatusChanged(int32_t /*status*/) override {}
    void OnMutedRemotely() override;

private:
    class ClickScope;

    void SetPushToTalkKey(int32_t code);
    void Click();
    void Release();
    void SwitchTrack(bool enabled);
    // What another thread asks for: the track is off at once, and stays off whatever is under way.
    void DemandSilence() {
        trackWanted_ = false;
        isMicEnabled_ = false;
    }

    // Render thread.
    HostCallbacks callbacks_{};
    ToggleButton* micButton_ = nullptr;
    // The toggle when the key went down.
    bool stateAtPress_ = false;
    bool subscribed_ = false;

    // Not held during a click or a call into a sibling library.
    mutable OrderedMutex<std::mutex, LockRank::Leaf> stateMutex_;
    // Guarded by: stateMutex_, all down to isMicEnabled_.
    // One key or none.
    std::set<int32_t> pushToTalkKeys_;
    // The key is held and has clicked the toggle.
    bool isPushToTalkActive_ = false;
    // The toggle's click that runs is this controller's own.
    bool clicking_ = false;
    // What the track was last asked to be.
    bool trackWanted_ = false;
    // What other threads asked for: mute the toggle, tell the host so, end push-to-talk.
    bool muteRequested_ = false;
    bool tellHostRequested_ = false;
    bool releaseRequested_ = false;

    std::atomic<bool> isMicEnabled_ = false;
};

}  // namespace Corvanta::UI
