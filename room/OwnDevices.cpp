// The own microphone and camera and the room's sound, as the bar's buttons switch them.
#include "platform/Diagnostics.h"
#include "platform/WebRTC.h"
#include "room/VideoRoomView.h"

namespace Corvanta::Room {

void VideoRoomView::SwitchMicrophone(bool on) {
    if (on) {
        microphone_.EnableMicrophone();
    } else {
        microphone_.SetMicEnabled(false);
    }
}

void VideoRoomView::SwitchCamera(bool on) {
    const std::scoped_lock lock(localLock_);
    videoEnabled_.store(on);
    WebRTC_SetEnabledLocalVideoTrack(on, 0);
    if (localCameraTile_ != nullptr) {
        localCameraTile_->SetVideoEnabled(on);
        if (Video::VideoFrame* clone = CloneOf(localCameraTile_->GetStreamId())) clone->SetVideoEnabled(on);
    }
    if (hostCallbacks_.OnCameraToggled != nullptr) hostCallbacks_.OnCameraToggled(on);
}

void VideoRoomView::SwitchSpeaker(bool on) {
    SetSpeakerEnabled(on);
    if (hostCallbacks_.OnSpeakerToggled != nullptr) hostCallbacks_.OnSpeakerToggled(on);
}

void VideoRoomView::SetMicEnabled(bool enabled) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    // A mute from outside came before this.
    microphone_.Update();
    microphone_.SetMicState(enabled);
    UI::ToggleButton* const button = toolbar_.GetMicButton();
    if (button == nullptr) return;
    button->SetThirdState(false);
    if (!button->IsToggled() && localCameraTile_ != nullptr) localCameraTile_->muted = false;
    // Toggled means off.
    if (button->IsToggled() == enabled) button->OnClick();
}

bool VideoRoomView::IsMicEnabled() const {
    return microphone_.IsMicEnabled();
}

void VideoRoomView::SetMicNone(bool none) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    toolbar_.SetMicNone(none);
    if (localCameraTile_ != nullptr && !localCameraTile_->muted) localCameraTile_->muted = none;
}

void VideoRoomView::SetVideoEnabled(bool enabled) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    videoEnabled_.store(enabled);
    UI::ToggleButton* const button = toolbar_.GetVideoButton();
    if (button == nullptr) return;
    button->SetThirdState(false);
    if (button->IsToggled() == enabled) button->OnClick();
}

bool VideoRoomView::IsSpeakerEnabled() const {
    const std::scoped_lock lock(remoteLock_);
    return speakerEnabled_;
}

void VideoRoomView::CheckTrackState() {
    const UI::ToggleButton* const mic = toolbar_.GetMicButton();
    const UI::ToggleButton* const video = toolbar_.GetVideoButton();
    if (mic == nullptr || video == nullptr) return;
    // Toggled means off, so they disagree when both say the same.
    if (mic->IsToggled() == WebRTC_IsLocalAudioTrackEnabled(0)) {
        Diagnostics_Report(static_cast<int32_t>(DiagnosticsReport::MicrophoneOutOfStep));
    }
    if (video->IsToggled() == WebRTC_IsLocalVideoTrackEnabled(0)) {
        Diagnostics_Report(static_cast<int32_t>(DiagnosticsReport::VideoOutOfStep));
    }
}

}  // namespace Corvanta::Room
