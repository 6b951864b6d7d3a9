#include "integration/MicrophoneController.h"

#include <array>
#include <utility>

#include "platform/WebRTC.h"
#include "ui/KeyNames.h"

namespace Corvanta::UI {
namespace {

constexpr const char* kPushToTalkKey = "Device.PushToTalkKey";
constexpr int kKeyNameSize = 256;

}  // namespace

// Marks the controller's own click, also when a function of the toggle throws.
class MicrophoneController::ClickScope final {
public:
    explicit ClickScope(MicrophoneController& controller) : controller_(controller) { Mark(true); }
    ~ClickScope() { Mark(false); }
    ClickScope(const ClickScope&) = delete;
    ClickScope& operator=(const ClickScope&) = delete;

private:
    void Mark(bool clicking) {
        const std::scoped_lock lock(controller_.stateMutex_);
        controller_.clicking_ = clicking;
    }

    MicrophoneController& controller_;
};

MicrophoneController::~MicrophoneController() {
    Shutdown();
}

void MicrophoneController::Init(const HostCallbacks& callbacks, ToggleButton* micButton) {
    Shutdown();
    callbacks_ = callbacks;
    micButton_ = micButton;
    std::array<char, kKeyNameSize> name{};
    if (Configuration_GetPropertyString(kPushToTalkKey, name.data(), kKeyNameSize)) {
        SetPushToTalkKey(GetKeyCodeFromName(name.data()));
    }
    bool hasKey = false;
    {
        const std::scoped_lock lock(stateMutex_);
        hasKey = !pushToTalkKeys_.empty();
    }
    if (hasKey && callbacks_.OnPushToTalkConfigured != nullptr) callbacks_.OnPushToTalkConfigured();
    subscribed_ = true;
    Configuration_Subscribe(this);
    Connections_AddRoomStatusListener(this);
}

void MicrophoneController::Shutdown() {
    if (std::exchange(subscribed_, false)) {
        Configuration_Unsubscribe(this);
        Connections_RemoveRoomStatusListener(this);
    }
    micButton_ = nullptr;
    bool wasTalking = false;
    {
        const std::scoped_lock lock(stateMutex_);
        pushToTalkKeys_.clear();
        wasTalking = std::exchange(isPushToTalkActive_, false);
        if (wasTalking) DemandSilence();
        muteRequested_ = false;
        tellHostRequested_ = false;
        releaseRequested_ = false;
    }
    if (wasTalking) SwitchTrack(false);
}

bool MicrophoneController::IsPushToTalkActive() const {
    const std::scoped_lock lock(stateMutex_);
    return isPushToTalkActive_;
}

void MicrophoneController::SetPushToTalkKey(int32_t code) {
    bool ends = false;
    {
        const std::scoped_lock lock(stateMutex_);
        pushToTalkKeys_.clear();
        if (code != 0) pushToTalkKeys_.insert(code);
        ends = isPushToTalkActive_;
        if (ends) {
            DemandSilence();
            releaseRequested_ = true;
        }
    }
    if (ends) SwitchTrack(false);
}

void MicrophoneController::OnConfigurationChanged(const std::string& key, const std::string& value) {
    if (key == kPushToTalkKey) SetPushToTalkKey(GetKeyCodeFromName(value.c_str()));
}

void MicrophoneController::OnMutedRemotely() {
    {
        const std::scoped_lock lock(stateMutex_);
        DemandSilence();
        muteRequested_ = true;
        if (!isPushToTalkActive_) tellHostRequested_ = true;
    }
    SwitchTrack(false);
}

void MicrophoneController::Update() {
    bool mute = false;
    bool tellHost = false;
    bool release = false;
    {
        const std::scoped_lock lock(stateMutex_);
        mute = std::exchange(muteRequested_, false);
        tellHost = std::exchange(tellHostRequested_, false);
        release = std::exchange(releaseRequested_, false);
    }
    // Without a click: the toggle's own functions are the user's.
    if (mute && micButton_ != nullptr) micButton_->SetToggled(true);
    if (release) Release();
    if (tellHost && callbacks_.OnMicrophoneChanged != nullptr) callbacks_.OnMicrophoneChanged(false);
}

void MicrophoneController::OnKeyDown(int code) {
    Update();
    if (micButton_ == nullptr || !micButton_->IsToggled()) return;
    {
        const std::scoped_lock lock(stateMutex_);
        if (isPushToTalkActive_ || !pushToTalkKeys_.contains(code)) return;
        isPushToTalkActive_ = true;
    }
    stateAtPress_ = micButton_->IsToggled();
    Click();
}

void MicrophoneController::OnKeyUp(int code) {
    Update();
    {
        const std::scoped_lock lock(stateMutex_);
        if (!isPushToTalkActive_ || !pushToTalkKeys_.contains(code)) return;
    }
    Release();
}

void MicrophoneController::Click() {
    const ClickScope scope(*this);
    micButton_->OnClick();
}

void MicrophoneController::Release() {
    // The key counts as held until the click is over, so that the host is not told of it.
    struct Ending {
        ~Ending() {
            const std::scoped_lock lock(controller.stateMutex_);
            controller.isPushToTalkActive_ = false;
            controller.releaseRequested_ = false;
        }
        MicrophoneController& controller;
    } const ending{*this};
    if (micButton_ == nullptr || micButton_->IsToggled() == stateAtPress_) return;
    Click();
    if (micButton_ == nullptr || micButton_->IsToggled() == stateAtPress_) return;
    // The device has gone meanwhile, and with it the button's click. Nobody is to be heard when it is back.
    micButton_->SetToggled(stateAtPress_);
    SetMicEnabled(false);
}

void MicrophoneController::SetMicEnabled(bool enabled) {
    bool tellHost = false;
    {
        const std::scoped_lock lock(stateMutex_);
        if (enabled && (muteRequested_ || releaseRequested_)) {
            // Asked for while the key's own click runs: it wins over that click. Asked for before the user
            // clicked: the user's click was the later one.
            if (clicking_) return;
            muteRequested_ = false;
            if (std::exchange(releaseRequested_, false)) isPushToTalkActive_ = false;
        }
        trackWanted_ = enabled;
        tellHost = !isPushToTalkActive_;
        if (tellHost) tellHostRequested_ = false;
    }
    SwitchTrack(enabled);
    if (tellHost && callbacks_.OnMicrophoneChanged != nullptr) callbacks_.OnMicrophoneChanged(enabled);
}

void MicrophoneController::SwitchTrack(bool enabled) {
    // Two threads may be here at once, and their calls may arrive in either order: whoever finds that the
    // other wanted something else meanwhile repeats the call, so that the last wish holds.
    while (true) {
        WebRTC_SetEnabledLocalAudioTrack(enabled, 0);
        const std::scoped_lock lock(stateMutex_);
        if (trackWanted_ == enabled) {
            isMicEnabled_ = enabled;
            return;
        }
        enabled = trackWanted_;
    }
}

void MicrophoneController::EnableMicrophone() {
    ConfigureLocalAudio(true);
    SetMicEnabled(true);
}

void MicrophoneController::ConfigureLocalAudio(bool on) {
    Connections_ConfigureStream(Connections_GetLocalUserStreamID(StreamType::Camera),
                                {{ConfigureStreamType::Audio, on}});
}

}  // namespace Corvanta::UI
