// What the host's commands and the bar's menus do to the room as a whole.
#include <algorithm>

#include "room/VideoRoomView.h"
#include "ui/HdrSdl.h"

namespace Corvanta::Room {
namespace {

// White of SDR content in nits: the reference of HDR production, and a range that displays can show.
constexpr float kReferenceWhite = 203.0F;
constexpr float kDarkestWhite = 80.0F;
constexpr float kBrightestWhite = 480.0F;
constexpr float kWhiteStep = 20.0F;

}  // namespace

void VideoRoomView::BuildControls() {
    {
        const std::scoped_lock remote(remoteLock_);
        const std::scoped_lock local(localLock_);
        toolbar_.Build(identity_.roomName);
        SetContentScale(GetScale());
        UpdateHdrOptions();
    }
    microphone_.Init(hostCallbacks_, toolbar_.GetMicButton());
}

void VideoRoomView::UpdateHdrOptions() {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    const std::scoped_lock view(viewMutex_);
    if (!toolbar_.HasOptions()) return;
    const int colorSpace = UI::HdrSdl::ReadTraits(GetRenderer()).colorSpace;
    if (colorSpace == renderColorSpaceSeen_) return;
    renderColorSpaceSeen_ = colorSpace;
    toolbar_.SetHdrOption(colorSpace == kColorSpaceBt2020);
    SetContentScale(GetScale());
}

void VideoRoomView::SetTitle(const std::string& title) {
    const std::scoped_lock lock(remoteLock_);
    toolbar_.SetTitle(title);
}

void VideoRoomView::SetFullscreenEnabled(bool enabled) {
    const std::scoped_lock lock(remoteLock_);
    fullscreen_ = enabled;
    toolbar_.SetFullscreen(enabled);
}

void VideoRoomView::UntoggleOptionsButton(bool click) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    toolbar_.UntoggleOptionsButton(click);
}

void VideoRoomView::UntoggleAudioMixer() {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    toolbar_.UntoggleAudioMixer();
}

void VideoRoomView::SetSidebarNotification(bool shown) {
    const std::scoped_lock lock(remoteLock_);
    toolbar_.SetSidebarNotification(shown);
}

void VideoRoomView::SetDrawTool(bool on) {
    const std::scoped_lock lock(remoteLock_);
    toolbar_.SetDrawTool(on);
}

void VideoRoomView::SetDrawToolState(const DrawToolState& state) {
    SetDrawTool(state.enabled);
    // With no lock of the room's held: a listener of the configuration may call back.
    drawings_->SetDrawToolState(state);
}

void VideoRoomView::SaveStill() {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    if (mainTile_ != nullptr) ExportRemoteFrame(mainTile_->GetStreamId());
}

void VideoRoomView::RaiseSdrBrightness() {
    ChangeSdrBrightness(kWhiteStep);
}

void VideoRoomView::LowerSdrBrightness() {
    ChangeSdrBrightness(-kWhiteStep);
}

void VideoRoomView::ResetSdrBrightness() {
    SetSDRBrightness(kReferenceWhite);
}

void VideoRoomView::ChangeSdrBrightness(float step) {
    // 0 where the renderer does not know its white.
    const float present = GetSDRBrightness() > 0.0F ? GetSDRBrightness() : kReferenceWhite;
    SetSDRBrightness(std::clamp(present + step, kDarkestWhite, kBrightestWhite));
}

void VideoRoomView::ShowOwnConnection() {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    if (localCameraTile_ == nullptr) return;
    SlideThumbnails(true, true);
    localCameraTile_->GetPanel().SetVisible(true);
}

void VideoRoomView::LeaveRoom() {
    if (hostCallbacks_.LeaveRoom != nullptr) hostCallbacks_.LeaveRoom();
}

}  // namespace Corvanta::Room
