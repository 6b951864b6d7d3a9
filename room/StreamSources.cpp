// How streams come into the room and go: the room view's side of the media threads.
#include "platform/Configuration.h"
#include "platform/Logger.h"
#include "platform/WebRTC.h"
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
    tile->draggable = true;
    thumbnails_->AddTile(tile.get());
    if (Connections_IsPublisherFromExternalSource(streamId)) {
        tile->isExternalSource = true;
        spotlightTile_ = tile.get();
        ++externalPublisherCount_;
    }
    return remoteTiles_.emplace(streamId, std::move(tile)).first->second->GetFrameSink();
}

std::shared_ptr<FrameCallback> VideoRoomView::AddLocalVideoSource(StreamType type,
                                                                  const std::string& sourceId) {
    const std::string displayName = Connections_GetLocalDisplayName(type);
    const std::string userId = Connections_GetLocalUserStreamID(type);
    std::shared_ptr<FrameCallback> sink;
    {
        const std::scoped_lock remote(remoteLock_);
        const std::scoped_lock local(localLock_);
        if (!roomActive.load() || closing_.load()) return nullptr;
        const auto [entry, isNew] = localTiles_.try_emplace(sourceId);
        if (!isNew) return entry->second->GetFrameSink();
        entry->second = std::make_unique<Video::VideoFrame>(userId, identity_.sessionName,
                                                            identity_.profileId, Video::TileOrigin::Local);
        Video::VideoFrame* tile = entry->second.get();
        tile->owner = this;
        tile->SetDisplayName(displayName);
        localTileOrder_.push_back(tile);
        localStreamAliases_.emplace(userId, sourceId);
        if (type == StreamType::Camera) {
            localCameraTile_ = tile;
            localStreamId_ = sourceId;
        }
        if (IsNative(type)) localNativeSources_.insert(sourceId);
        spotlightTile_ = tile;
        thumbnails_->AddTile(tile);
        sink = tile->GetFrameSink();
    }
    if (type == StreamType::File || type == StreamType::URL) {
        WebRTC_SetLocalStreamsLocalAudioVolume(static_cast<float>(kFullVolume));
    }
    if (type == StreamType::Camera) adaptation_.Start();
    return sink;
}

void VideoRoomView::RemoveRemoteVideoSource(const std::string& streamId) {
    LOG(2, "Removing remote video source with id: %s", streamId.c_str());
    if (!roomActive.load()) return;
    std::unique_ptr<Video::VideoFrame> tile;
    {
        const std::scoped_lock lock(remoteLock_);
        if (auto node = remoteTiles_.extract(streamId)) {
            tile = std::move(node.mapped());
            thumbnails_->RemoveTile(tile.get());
            if (spotlightTile_ == tile.get()) {
                spotlightTile_ = nullptr;
                mainTile_ = nullptr;
            }
            ForgetMainTile(*tile);
            if (Connections_IsPublisherFromExternalSource(streamId)) --externalPublisherCount_;
        }
    }
    if (tile != nullptr) Depart(std::move(tile));
    adaptation_.OnRemoteStreamRemoved(streamId);
}

void VideoRoomView::RemoveLocalVideoSource(const std::string& sourceId) {
    std::unique_ptr<Video::VideoFrame> tile;
    {
        const std::scoped_lock remote(remoteLock_);
        const std::scoped_lock local(localLock_);
        auto node = localTiles_.extract(sourceId);
        if (!node) return;
        tile = std::move(node.mapped());
        if (spotlightTile_ == tile.get()) {
            spotlightTile_ = nullptr;
            mainTile_ = nullptr;
        }
        ForgetMainTile(*tile);
        if (localCameraTile_ == tile.get()) {
            localCameraTile_ = nullptr;
            localStreamId_.clear();
        }
        std::erase(localTileOrder_, tile.get());
        thumbnails_->RemoveTile(tile.get());
        localStreamAliases_.erase(tile->GetStreamId());
        localNativeSources_.erase(sourceId);
    }
    Depart(std::move(tile));
}

void VideoRoomView::Depart(std::unique_ptr<Video::VideoFrame> tile) {
    // Waiting for the worker here, and not in the tick, keeps the host's loop free of it.
    tile->Retire();
    const std::scoped_lock lock(departedMutex_);
    // Once the room has ended there is no more drawing to come, and the renderer takes the texture along.
    if (!closing_.load()) departedTiles_.push_back(std::move(tile));
}

void VideoRoomView::ForgetMainTile(const Video::VideoFrame& tile) {
    if (mainTile_ != &tile) return;
    mainTile_ = nullptr;
    mainTileLeft_ = true;
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
    const std::scoped_lock lock(remoteLock_);
    if (tile != spotlightTile_) {
        spotlightTile_ = tile;
    } else if (!fromMenu) {
        spotlightTile_ = nullptr;
        activeSpeakerId_.clear();
        mainTile_ = nullptr;
    }
}

void VideoRoomView::SetActiveSpeaker(const std::string& streamId) {
    const std::scoped_lock lock(remoteLock_);
    activeSpeakerId_ = streamId;
}

void VideoRoomView::SetSpeakerEnabled(bool enabled) {
    {
        const std::scoped_lock lock(remoteLock_);
        speakerEnabled_ = enabled;
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
    SetStreamVolume(streamId, kFullVolume);
}

void VideoRoomView::SetStreamVolume(const std::string& streamId, double volume) {
    if (!roomActive.load()) return;
    const std::scoped_lock remote(remoteLock_);
    if (FindRemoteTile(streamId) != nullptr) {
        WebRTC_SetRemoteAudioTrackVolume(streamId, volume);
        return;
    }
    const std::scoped_lock local(localLock_);
    if (FindLocalTile(streamId) != nullptr)
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
    {
        const std::scoped_lock remote(remoteLock_);
        if (Video::VideoFrame* tile = FindRemoteTile(streamId)) {
            tile->RequestStillExport(path);
            return true;
        }
    }
    const std::scoped_lock local(localLock_);
    Video::VideoFrame* tile = FindLocalTile(streamId);
    if (tile != nullptr) tile->RequestStillExport(path);
    return tile != nullptr;
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
