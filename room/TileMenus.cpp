// The controls of a tile: its menu and the buttons on it. Their functions run inside a tick, with the room's
// locks held.
#include <functional>
#include <utility>

#include "platform/Connections.h"
#include "platform/WebRTC.h"
#include "room/VideoRoomView.h"

namespace Corvanta::Room {
namespace {

constexpr float kFullVolume = 1.0F;
constexpr float kSilence = 0.0F;
// Their size comes from the tile at each drawing.
constexpr int kSizedByTile = -1;

// The picture of what is off, or pinned, stands among the tile's badges.
void ShowBadge(Video::VideoFrame& tile, const UI::ToggleButton* toggle, bool show) {
    if (toggle == nullptr) return;
    if (show) {
        tile.AddBadge(toggle->GetOffIconName());
    } else {
        tile.RemoveBadge(toggle->GetOffIconName());
    }
}

[[nodiscard]] UI::Button::Options ImageButton(const char* iconName, std::function<void()> onClick) {
    UI::Button::Options options;
    options.width = kSizedByTile;
    options.height = kSizedByTile;
    options.iconName = iconName;
    options.onClick = std::move(onClick);
    return options;
}

}  // namespace

void VideoRoomView::AddRemoteControls(Video::VideoFrame& tile) {
    const bool isCamera = tile.GetStreamType() == StreamType::Camera;
    AddMenuButton(tile);
    AddSpotlightItem(tile);
    AddSoundItem(tile, &VideoRoomView::SwitchRemoteSound);
    AddVideoItem(tile);
    if (tile.GetStreamType() != StreamType::Screenshare) AddMixItem(tile);
    AddPinItem(tile);
    tile.draggable = true;
    if (isCamera) {
        tile.SetConnectionButton(
            ImageButton("icons/connection-strength.png", [&tile] { tile.GetPanel().SetVisible(true); }));
    }
    if (identity_.isHost && isCamera) AddHostItems(tile);
}

void VideoRoomView::AddLocalControls(Video::VideoFrame& tile, StreamType type) {
    AddMenuButton(tile);
    AddSpotlightItem(tile);
    AddSoundItem(tile, &VideoRoomView::SwitchLocalSound);
    AddVideoItem(tile);
    if (type != StreamType::Device) AddMixItem(tile);
}

void VideoRoomView::AddMenuButton(Video::VideoFrame& tile) {
    UI::Menu& menu = tile.GetMenu();
    auto options = ImageButton("icons/thumbnailMenu.png", [&menu] { menu.SetVisible(!menu.visible); });
    options.style = UI::ButtonStyle::OtherIcon;
    options.hoverIconName = "icons/thumbnailMenuHover.png";
    tile.SetMenuButton(tile.AddHoverButton(std::move(options)));
}

void VideoRoomView::AddSpotlightItem(Video::VideoFrame& tile) {
    tile.GetMenu().AddButton("icons/spotlight.png", "Spotlight",
                             [this, &tile] { OnTileClicked(&tile, true); });
}

void VideoRoomView::AddSoundItem(Video::VideoFrame& tile,
                                 void (VideoRoomView::*apply)(Video::VideoFrame&, bool)) {
    tile.soundToggle = tile.GetMenu().AddToggleButton(
        {.offIconName = "icons/noaudio.png",
         .onIconName = "icons/audio-white.png",
         .offLabel = "Sound off",
         .onLabel = "Sound on",
         .onToggledOn = [this, &tile, apply] { (this->*apply)(tile, false); },
         .onToggledOff = [this, &tile, apply] { (this->*apply)(tile, true); }});
}

void VideoRoomView::AddVideoItem(Video::VideoFrame& tile) {
    tile.videoToggle =
        tile.GetMenu().AddToggleButton({.offIconName = "icons/nocam.png",
                                        .onIconName = "icons/cam-white.png",
                                        .offLabel = "Video off",
                                        .onLabel = "Video On",
                                        .onToggledOn = [this, &tile] { SwitchVideo(tile, false); },
                                        .onToggledOff = [this, &tile] { SwitchVideo(tile, true); }});
}

void VideoRoomView::AddMixItem(Video::VideoFrame& tile) {
    tile.mixSoundItem = tile.GetMenu().AddButton("icons/audiomixer-white.png", "Mix sound",
                                                 [this, &tile] { OpenAudioMixer(tile); });
}

void VideoRoomView::AddPinItem(Video::VideoFrame& tile) {
    tile.pinToggle = tile.GetMenu().AddToggleButton({.offIconName = "icons/pin.png",
                                                     .onIconName = "icons/unpin.png",
                                                     .offLabel = "Pin to left",
                                                     .onLabel = "Unpin",
                                                     .onToggledOn =
                                                         [this, &tile] {
                                                             thumbnails_->PinTile(&tile);
                                                             ShowBadge(tile, tile.pinToggle, true);
                                                         },
                                                     .onToggledOff =
                                                         [this, &tile] {
                                                             thumbnails_->UnpinTile(&tile);
                                                             ShowBadge(tile, tile.pinToggle, false);
                                                         }});
}

void VideoRoomView::AddHostItems(Video::VideoFrame& tile) {
    tile.GetMenu().AddButton("icons/info.png", "Remove from room", [this, &tile] {
        if (hostCallbacks_.RemoveParticipant == nullptr) return;
        const std::string id = tile.GetStreamId();
        const std::string name = Connections_GetPublisherDisplayName(id);
        hostCallbacks_.RemoveParticipant(id.c_str(), name.c_str());
    });
    tile.GetMenu().AddButton("icons/muteCircled.png", "Mute for all",
                             [&tile] { Connections_MuteParticipant(tile.GetStreamId()); });
}

void VideoRoomView::OpenAudioMixer(Video::VideoFrame& tile) const {
    if (hostCallbacks_.OpenAudioMixer == nullptr) return;
    const bool remote = tile.GetOrigin() == Video::TileOrigin::Remote;
    const std::string id = tile.GetStreamId();
    const std::string name = remote ? Connections_GetPublisherDisplayName(id) : tile.GetDisplayName();
    const float volume = remote ? static_cast<float>(WebRTC_GetRemoteAudioTrackVolume(id))
                                : WebRTC_GetLocalStreamsLocalAudioVolume();
    hostCallbacks_.OpenAudioMixer(id.c_str(), name.c_str(), volume, -1, -1);
}

void VideoRoomView::SwitchRemoteSound(Video::VideoFrame& tile, bool on) {
    if (IsSpeakerOn()) WebRTC_SetEnabledRemoteAudioTrack(tile.GetStreamId(), on);
    tile.audioEnabled = on;
    ShowBadge(tile, tile.soundToggle, !on);
}

void VideoRoomView::SwitchLocalSound(Video::VideoFrame& tile, bool on) {
    if (on || IsSpeakerOn()) WebRTC_SetLocalStreamsLocalAudioVolume(on ? kFullVolume : kSilence);
    tile.audioEnabled = on;
    ShowBadge(tile, tile.soundToggle, !on);
}

void VideoRoomView::SwitchVideo(Video::VideoFrame& tile, bool on) {
    tile.SetVideoEnabledWanted(on);
    if (Video::VideoFrame* clone = CloneOf(tile.GetStreamId())) clone->SetVideoEnabled(on);
    WebRTC_SetEnabledRemoteVideoTrack(tile.GetStreamId(), on);
    ShowBadge(tile, tile.videoToggle, !on);
}

}  // namespace Corvanta::Room
