// How streams come into the room and go: the room view's side of the media threads.
#include "platform/Configuration.h"
#include "platform/Logger.h"
#include "platform/WebRTC.h"
#include "room/StillFile.h"
#include "room/VideoMetadataMessage.h"
#include "room/VideoRoomView.h"
#include "ui/RoomActive.h"

namespace Corvanta::Room {
namespace {

constexpr double kFullVolume = 1.0;
// Kinds of streams that a local user publishes beside the camera and may run under a source id of their own.
constexpr StreamType kAliasedTypes[] = {StreamType::Device, StreamType::Elgato, StreamType::File,
                                        StreamType::URL,    StreamType::NDI,    StreamType::DeckLink};

[[nodiscard]] bool IsNative(StreamType type) {
    return type >= StreamType::File && type <= StreamType::Elgato;
}

[[nodiscard]] bool HasMenu(StreamType type) {
    return type == StreamType::Device || IsNative(type);
}

// A file or a URL is heard by who shares it; whoever shares a device hears it already.
void StartSound(Video::VideoFrame& tile, StreamType type) {
    if (type == StreamType::File || type == StreamType::URL) {
        WebRTC_SetLocalStreamsLocalAudioVolume(static_cast<float>(kFullVolume));
    } else {
        tile.soundToggle->OnClick();
    }
}

}  // namespace

std::shared_ptr<FrameCallback> VideoRoomView::AddRemoteVideoSource(const std::string& streamId) {
    LOG(2, "Adding remote video frame: stream ID = %s", streamId.c_str());
    const std::scoped_lock lock(remoteLock_);
    if (!roomActive.load() || closing_.load()) return nullptr;
    if (const Video::VideoFrame* known = FindRemoteTile(streamId)) {
        LOG(2, "Remote video frame already exists: stream ID = %s", streamId.c_str());
        return known->GetFrameSink();
    }
    auto tile = std::make_unique<Video::VideoFrame>(streamId, identity_.sessionName, identity_.profileId,
                                                    Video::TileOrigin::Remote);
    tile->owner = this;
    Video::VideoFrame& added = *remoteTiles_.emplace(streamId, std::move(tile)).first->second;
    // The wall may size the menu as soon as it has the tile.
    AddRemoteControls(added);
    thumbnails_->AddTile(&added, true);
    if (Connections_IsPublisherFromExternalSource(streamId)) {
        added.isExternalSource = true;
        TakeMainVideo(added);
        ++externalPublisherCount_;
    }
    return added.GetFrameSink();
}

std::shared_ptr<FrameCallback> VideoRoomView::AddLocalVideoSource(StreamType type,
                                                                  const std::string& sourceId) {
    std::shared_ptr<FrameCallback> sink;
    {
        const std::scoped_lock remote(remoteLock_);
        const std::scoped_lock local(localLock_);
        if (!roomActive.load() || closing_.load()) return nullptr;
        const auto [entry, isNew] = localTiles_.try_emplace(sourceId);
        if (!isNew) return entry->second->GetFrameSink();
        const std::string displayName = Connections_GetLocalDisplayName(type);
        const std::string userId = Connections_GetLocalUserStreamID(type);
        entry->second = std::make_unique<Video::VideoFrame>(userId, identity_.sessionName,
                                                            identity_.profileId, Video::TileOrigin::Local);
        Video::VideoFrame* tile = entry->second.get();
        tile->owner = this;
        tile->SetDisplayName(displayName);
        localTileOrder_.push_back(tile);
        localStreamAliases_.emplace(userId, sourceId);
        if (IsNative(type)) localNativeSources_.insert(sourceId);
        if (HasMenu(type)) {
            AddLocalControls(*tile, type);
            StartSound(*tile, type);
        }
        if (type == StreamType::Camera) {
            localCameraTile_ = tile;
            localStreamId_ = sourceId;
            LetSpeakerDecide();
        } else {
            TakeMainVideo(*tile);
        }
        thumbnails_->AddTile(tile, false);
        sink = tile->GetFrameSink();
    }
    if (type == StreamType::Camera) adaptation_.Start();
    return sink;
}

void VideoRoomView::RemoveRemoteVideoSource(const std::string& streamId) {
    LOG(2, "Removing remote video source with id: %s", streamId.c_str());
    if (!roomActive.load()) return;
    {
        const std::scoped_lock lock(remoteLock_);
        if (auto node = remoteTiles_.extract(streamId)) {
            Video::VideoFrame& tile = *node.mapped();
            thumbnails_->RemoveTile(&tile);
            ForgetTile(tile);
            drawings_->RemoveStream(streamId);
            Depart(std::move(node.mapped()));
            if (Connections_IsPublisherFromExternalSource(streamId)) --externalPublisherCount_;
        }
    }
    adaptation_.OnRemoteStreamRemoved(streamId);
}

void VideoRoomView::RemoveLocalVideoSource(const std::string& sourceId) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    auto node = localTiles_.extract(sourceId);
    if (!node) return;
    Video::VideoFrame& tile = *node.mapped();
    ForgetTile(tile);
    std::erase(localTileOrder_, &tile);
    drawings_->RemoveStream(tile.GetStreamId());
    thumbnails_->RemoveTile(&tile);
    localStreamAliases_.erase(tile.GetStreamId());
    localNativeSources_.erase(sourceId);
    Depart(std::move(node.mapped()));
}

void VideoRoomView::Depart(std::unique_ptr<Video::VideoFrame> tile) {
    tile->Retire();
    const std::scoped_lock lock(departedMutex_);
    departedTiles_.push_back(std::move(tile));
}

void VideoRoomView::ForgetTile(const Video::VideoFrame& tile) {
    if (CloneOf(tile.GetStreamId()) != nullptr) DropClone();
    if (spotlightTile_ == &tile) {
        spotlightTile_ = nullptr;
        LeaveMainTile();
    }
    if (mainTile_ == &tile) LeaveMainTile();
    if (localCameraTile_ == &tile) {
        localCameraTile_ = nullptr;
        localStreamId_.clear();
    } else if (localCameraTile_ != nullptr && localCameraTile_->GetStreamId() == tile.GetStreamId()) {
        // It had taken the figures of the connection over.
        localCameraTile_->SubscribeConnectionStats();
    }
}

Video::VideoFrame* VideoRoomView::FindRemoteTile(const std::string& streamId) const {
    const auto found = remoteTiles_.find(streamId);
    return found == remoteTiles_.end() ? nullptr : found->second.get();
}

Video::VideoFrame* VideoRoomView::FindLocalTile(const std::string& streamId) const {
    const auto alias = localStreamAliases_.find(streamId);
    if (alias == localStreamAliases_.end()) return nullptr;
    const auto found = localTiles_.find(alias->second);
    return found == localTiles_.end() ? nullptr : found->second.get();
}

void VideoRoomView::OnTileClicked(Video::VideoFrame* tile, bool fromMenu) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    if (detached_.load()) {
        const bool spotlit =
            spotlightTile_ != nullptr && spotlightTile_->GetStreamId() == tile->GetStreamId();
        if (!spotlit) {
            SetSpotlightClone(*tile);
        } else if (!fromMenu) {
            DropClone();
        }
    } else if (tile != spotlightTile_) {
        spotlightTile_ = tile;
    } else if (!fromMenu) {
        ClearSpotlight();
    }
}

void VideoRoomView::ClearSpotlight() {
    if (detached_.load()) {
        DropClone();
        return;
    }
    spotlightTile_ = nullptr;
    SetActiveSpeaker({});
    LeaveMainTile();
}

void VideoRoomView::LeaveMainTile() {
    if (mainTile_ != nullptr) mainTileLeft_ = true;
    mainTile_ = nullptr;
}

void VideoRoomView::TakeMainVideo(Video::VideoFrame& tile) {
    if (detached_.load()) {
        OnTileClicked(&tile, false);
    } else {
        spotlightTile_ = &tile;
    }
}

void VideoRoomView::LetSpeakerDecide() {
    if (detached_.load()) {
        DropClone();
    } else {
        spotlightTile_ = nullptr;
    }
}

void VideoRoomView::SetStreamSpotlight(const std::string& streamId, bool respectToggle) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    if (respectToggle && spotlightTile_ != nullptr && spotlightTile_->GetStreamId() == streamId) {
        ClearSpotlight();
    } else if (Video::VideoFrame* tile = FindTile(streamId)) {
        OnTileClicked(tile, false);
    }
}

void VideoRoomView::SetStreamVideoEnabled(const std::string& streamId, bool enabled) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    if (Video::VideoFrame* tile = FindTile(streamId)) tile->SetVideoEnabled(enabled);
    if (Video::VideoFrame* clone = CloneOf(streamId)) clone->SetVideoEnabled(enabled);
}

void VideoRoomView::SetStreamSoundToggle(const std::string& streamId, bool on) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    const Video::VideoFrame* tile = FindTile(streamId);
    if (tile == nullptr || tile->soundToggle == nullptr) return;
    if (tile->soundToggle->IsToggled() == on) tile->soundToggle->OnClick();
}

Video::VideoFrame* VideoRoomView::FindTile(const std::string& streamId) const {
    Video::VideoFrame* tile = FindRemoteTile(streamId);
    return tile != nullptr ? tile : FindLocalTile(streamId);
}

void VideoRoomView::SetActiveSpeaker(const std::string& streamId) {
    const std::scoped_lock lock(speakerMutex_);
    activeSpeakerId_ = streamId;
}

Video::VideoFrame* VideoRoomView::FindSpeaker() const {
    const std::scoped_lock lock(speakerMutex_);
    return activeSpeakerId_.empty() ? nullptr : FindRemoteTile(activeSpeakerId_);
}

void VideoRoomView::SetSpeakerEnabled(bool enabled) {
    {
        const std::scoped_lock lock(remoteLock_);
        speakerEnabled_ = enabled;
        toolbar_.ShowSpeakerOff(!enabled);
    }
    ApplySpeaker();
}

void VideoRoomView::SetSpeakerNone(bool none) {
    {
        const std::scoped_lock lock(remoteLock_);
        speakerNone_ = none;
        toolbar_.SetSpeakerNone(none);
    }
    ApplySpeaker();
}

void VideoRoomView::ApplySpeaker() {
    const std::scoped_lock lock(remoteLock_);
    for (const auto& [id, tile] : remoteTiles_) {
        WebRTC_SetEnabledRemoteAudioTrack(id, IsSpeakerOn() && tile->audioEnabled);
    }
}

void VideoRoomView::OnRemoteTrackAdded(const std::string& streamId) {
    if (!roomActive.load()) return;
    bool speakerOn = true;
    {
        const std::scoped_lock lock(remoteLock_);
        speakerOn = IsSpeakerOn();
    }
    if (!speakerOn) WebRTC_SetEnabledRemoteAudioTrack(streamId, false);
    if (Connections_IsPublisherFromExternalSource(streamId)) {
        WebRTC_SetRemoteAudioTrackIsExternalSource(streamId, true);
    }
    SetStreamVolume(streamId, kFullVolume, true);
}

bool VideoRoomView::IsOwnExternalScreen(const Video::VideoFrame& tile) const {
    const StreamType type = tile.GetStreamType();
    return (type == StreamType::Screenshare || type == StreamType::ExternalScreen) &&
           localCameraTile_ != nullptr &&
           Connections_IsOwnExternalSourceStream(localCameraTile_->GetStreamId(), tile.GetStreamId());
}

void VideoRoomView::SetStreamVolume(const std::string& streamId, double volume, bool newTrack) {
    if (!roomActive.load()) return;
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    Video::VideoFrame* tile = FindRemoteTile(streamId);
    if (tile != nullptr) {
        WebRTC_SetRemoteAudioTrackVolume(streamId, volume);
        if (newTrack && IsOwnExternalScreen(*tile)) {
            if (!tile->soundToggle->IsToggled()) tile->soundToggle->OnClick();
            return;
        }
    } else {
        tile = FindLocalTile(streamId);
        if (tile == nullptr) return;
        WebRTC_SetLocalStreamsLocalAudioVolume(static_cast<float>(volume));
    }
    tile->UpdateVolumeBadge(static_cast<float>(volume));
}

void VideoRoomView::SetParticipantsVolume(double volume) {
    WebRTC_SetRemoteAudioTrackModifier(RemoteAudioGroup::Participants, volume);
}

void VideoRoomView::SetStreamsVolume(double volume) {
    WebRTC_SetRemoteAudioTrackModifier(RemoteAudioGroup::Streams, volume);
    WebRTC_SetLocalStreamsLocalAudioVolume(static_cast<float>(volume));
}

bool VideoRoomView::UpdateConnectionStatus(const std::string& streamId, bool lost) {
    if (!roomActive.load()) return false;
    const bool ownCamera = streamId == Connections_GetLocalUserStreamID(StreamType::Camera);
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    if (ownCamera) {
        for (const auto& [id, tile] : localTiles_) tile->lostConnection = lost;
    } else if (Video::VideoFrame* tile = FindRemoteTile(streamId)) {
        tile->lostConnection = lost;
    }
    return true;
}

std::string VideoRoomView::ResolveMediaSourceId(const std::string& streamId) {
    if (streamId == Connections_GetLocalUserStreamID(StreamType::Camera)) return GetLocalStreamId();
    for (const StreamType type : kAliasedTypes) {
        if (streamId != Connections_GetLocalUserStreamID(type)) continue;
        const std::scoped_lock lock(localLock_);
        const auto alias = localStreamAliases_.find(streamId);
        if (alias != localStreamAliases_.end()) return alias->second;
    }
    return streamId;
}

std::string VideoRoomView::GetLocalStreamId() {
    const std::scoped_lock lock(localLock_);
    return localStreamId_;
}

std::shared_ptr<FrameCallback> VideoRoomView::GetLocalCameraSink() {
    const std::scoped_lock lock(localLock_);
    return localCameraTile_ != nullptr ? localCameraTile_->GetFrameSink() : nullptr;
}

void VideoRoomView::RenewConnectionStats() {
    const std::scoped_lock lock(localLock_);
    if (localCameraTile_ != nullptr) localCameraTile_->SubscribeConnectionStats();
}

void VideoRoomView::OnDataChannelMessage(const DataChannelMessage& message) {
    LOG(1, "Received data channel message: %s", message.text.c_str());
    if (const auto data = ParseVideoMetadataMessage(message.text)) OnVideoSourceData(*data);
    adaptation_.OnDataChannelMessage(message);
}

void VideoRoomView::OnVideoSourceData(const VideoSourceData& data) {
    const std::scoped_lock remote(remoteLock_);
    if (Video::VideoFrame* tile = FindRemoteTile(data.streamId)) {
        tile->SetSourceData(data);
        return;
    }
    const std::scoped_lock local(localLock_);
    if (Video::VideoFrame* tile = FindLocalTile(data.streamId)) tile->SetSourceData(data);
}

bool VideoRoomView::ExportRemoteFrame(const std::string& streamId) {
    const std::string path = Configuration_GetLocation() + "/exportedRemoteFrame";
    // Not on the media thread that has written it: that one may be waited for with the room's locks held, for
    // which the host's function might wait in turn.
    const auto tellHost = [path, call = hostCallbacks_.OnStillExported, queue = toolbar_.GetActionThread()] {
        const auto actions = queue.lock();
        if (call == nullptr || actions == nullptr) return;
        actions->Run([path, call] { call(WrittenStill(path).c_str()); });
    };
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    Video::VideoFrame* tile = FindTile(streamId);
    if (tile != nullptr) tile->RequestStillExport(path, tellHost);
    return tile != nullptr;
}

void VideoRoomView::ForgetOwnStream(std::optional<StreamType> except) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    if (!detached_.load() || spotlightTile_ == nullptr) return;
    for (const StreamType type : kAliasedTypes) {
        if (type == except) continue;
        const std::string id = Connections_GetLocalUserStreamID(type);
        if (id.empty() || id != spotlightTile_->GetStreamId()) continue;
        DropClone();
        return;
    }
}

bool VideoRoomView::SetFrameObserver(const std::string& streamId,
                                     std::unique_ptr<Video::FrameObserver> observer) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    Video::VideoFrame* tile = FindRemoteTile(streamId);
    if (tile == nullptr) tile = FindLocalTile(streamId);
    if (tile != nullptr) tile->SetFrameObserver(std::move(observer));
    return tile != nullptr;
}

}  // namespace Corvanta::Room
