// The view of a live room, and the base of the recordings view. It owns all tiles, chooses the main video and
// draws everything in a fixed order inside the host's tick. Media threads add and remove streams; the host's
// commands come on the host thread. Locks, in order: remoteLock, localLock, the wall's, a tile's; the tick
// takes remoteLock by try alone and skips the frame when a media thread holds it. No lock is held while a
// tile's worker is waited for.
#pragma once

#include <SDL.h>

#include <atomic>
#include <map>
#include <memory>
#include <mutex>
#include <set>
#include <string>
#include <vector>

#include "integration/MicrophoneController.h"
#include "platform/Connections.h"
#include "platform/DataChannelMessage.h"
#include "platform/HostCallbacks.h"
#include "platform/VideoFrameBuffer.h"
#include "platform/VideoSourceData.h"
#include "room/VideoAdaptation.h"
#include "ui/AbstractView.h"
#include "video/HdrMetadata.h"
#include "video/TileOwner.h"
#include "video/VideoFrame.h"
#include "video/VideoThumbnails.h"

namespace Corvanta::Room {

// Facts about the room and the local user that a view is given at entry.
struct RoomIdentity {
    std::string roomName;
    bool isHost = false;
    bool flagB = false;
    bool flagC = false;
    std::string sessionName;
    std::string profileId;
};

class VideoRoomView : public UI::AbstractView, public Video::TileOwner {
public:
    // Sets roomActive. callbacks: the host's functions, copied.
    VideoRoomView(int id, const HostCallbacks& callbacks);
    // Lets go of everything that Shutdown would have let go of. roomActive keeps its value: a later room may
    // have taken this one's place. After Shutdown any thread may destroy the view.
    virtual ~VideoRoomView();

    void Render() override;
    void OnResized(int width, int height) override;

    // Ends the room: streams, tiles, renderer and window go, roomActive is cleared. Host thread, outside a
    // tick.
    virtual void Shutdown();
    // Drains SDL's queue and routes each event. Inside a tick.
    virtual void ProcessInput();
    // One pass over the input and one drawing; skipped when a media thread holds the room.
    virtual void Tick();

    // A remote stream exists. Returns the sink of its tile, the first one's for a stream that is known
    // already; null when the room has ended. Any thread.
    virtual std::shared_ptr<FrameCallback> AddRemoteVideoSource(const std::string& streamId);
    // The track of a remote stream has arrived. Any thread.
    virtual void OnRemoteTrackAdded(const std::string& streamId);
    // Layer 0 is the overlays' cursor, 1 the tiles'; other layers are ignored. 0 is none.
    virtual void SetCursor(int cursor, int layer);
    // The overlays' cursor, else the tiles'.
    [[nodiscard]] virtual int GetCursor() const;

    void Configure(const RoomIdentity& identity);
    // Host thread.
    [[nodiscard]] const RoomIdentity& GetIdentity() const { return identity_; }

    // A local stream runs under this media source id. Returns its tile's sink; null when the room has ended.
    // Any thread, as for the four below.
    std::shared_ptr<FrameCallback> AddLocalVideoSource(StreamType type, const std::string& sourceId);
    void RemoveRemoteVideoSource(const std::string& streamId);
    void RemoveLocalVideoSource(const std::string& sourceId);
    // False when the room has ended.
    bool UpdateConnectionStatus(const std::string& streamId, bool lost);
    // volume: a slider position from 0 to 1. An unknown stream changes nothing.
    void SetStreamVolume(const std::string& streamId, double volume);

    // A click on a tile makes it the main video; a second one, not from a menu, lets the speaker decide
    // again.
    void OnTileClicked(Video::VideoFrame* tile, bool fromMenu);
    void SetActiveSpeaker(const std::string& streamId);
    void SetSpeakerEnabled(bool enabled);
    void SetMicEnabled(bool enabled);
    // Any thread.
    [[nodiscard]] bool IsMicEnabled() const;
    void SetVideoEnabled(bool enabled) { videoEnabled_.store(enabled); }
    [[nodiscard]] bool IsVideoEnabled() const { return videoEnabled_.load(); }
    void SetFullscreenEnabled(bool enabled) { fullscreen_ = enabled; }
    [[nodiscard]] bool IsFullscreenEnabled() const { return fullscreen_; }

    // A message of a remote participant. Any thread, also after Shutdown.
    void OnDataChannelMessage(const DataChannelMessage& message);
    // Any thread.
    void OnVideoSourceData(const VideoSourceData& data);

    // The stream's next frame is written into the configuration's folder. False for an unknown stream. Any
    // thread.
    bool ExportRemoteFrame(const std::string& streamId);
    // Makes or frees the observer of a stream's tile. False for an unknown stream. Any thread.
    bool SetFrameObserver(const std::string& streamId, std::unique_ptr<Video::FrameObserver> observer);

    // Reads whether the main video is to be shown unscaled, for judging it pixel by pixel.
    void ReadRenderScalingSetting();

    [[nodiscard]] SDL_Rect GetMainVideoRect() const override;
    // The media source id under which a stream of the local user runs, else the id itself. Any thread.
    [[nodiscard]] std::string ResolveMediaSourceId(const std::string& streamId);
    [[nodiscard]] std::string GetLocalStreamId();
    // Sink of the local camera's tile; null without one. Any thread.
    [[nodiscard]] std::shared_ptr<FrameCallback> GetLocalCameraSink();
    [[nodiscard]] Video::VideoThumbnails& GetThumbnails() { return *thumbnails_; }

    // Frees the renderer, the window and what lives on them without ending the room's streams. Host thread;
    // for a view whose place another takes while somebody may still own it.
    void Abandon();

protected:
    using TileMap = std::map<std::string, std::unique_ptr<Video::VideoFrame>>;

    // Under remoteLock; null for an unknown stream.
    [[nodiscard]] Video::VideoFrame* FindRemoteTile(const std::string& streamId) const;
    // Under localLock; by the user's stream id.
    [[nodiscard]] Video::VideoFrame* FindLocalTile(const std::string& streamId) const;
    // Draws the tile as main video.
    void RenderMainTile(Video::VideoFrame& tile);
    // Destroys the tiles of streams that have gone; textures only die on the render thread.
    void BuryDepartedTiles();
    [[nodiscard]] bool MayDraw() const { return !closing_.load() && CanDraw(); }

    mutable std::recursive_mutex remoteLock_;
    // guards: remoteTiles_, the choice of the main video, identity_, microphone_, the speaker's switches
    TileMap remoteTiles_;
    std::string activeSpeakerId_;
    Video::VideoFrame* mainTile_ = nullptr;
    Video::VideoFrame* spotlightTile_ = nullptr;
    // The main video's stream went since the last drawing, which the next one tells the host.
    bool mainTileLeft_ = false;

    mutable std::recursive_mutex localLock_;
    // guards: localTiles_, localStreamAliases_, localTileOrder_, localCameraTile_, localStreamId_
    TileMap localTiles_;
    std::map<std::string, std::string> localStreamAliases_;
    std::vector<Video::VideoFrame*> localTileOrder_;
    std::set<std::string> localNativeSources_;
    Video::VideoFrame* localCameraTile_ = nullptr;
    std::string localStreamId_;

    std::atomic<bool> closing_{false};

private:
    void HandleViewEvent(const SDL_Event& event);
    void ChooseMainTile();
    void OnMainVideoChanged();
    void ApplySpeaker();
    void Depart(std::unique_ptr<Video::VideoFrame> tile);
    void ForgetMainTile(const Video::VideoFrame& tile);
    [[nodiscard]] bool IsSpeakerOn() const { return speakerEnabled_ && !speakerNone_; }
    void ReleaseTileGraphics();
    // Takes all tiles out of the room, to be destroyed where no lock is held.
    [[nodiscard]] std::vector<std::unique_ptr<Video::VideoFrame>> TakeAllTiles();

    const HostCallbacks hostCallbacks_;
    RoomIdentity identity_;
    std::shared_ptr<Video::VideoThumbnails> thumbnails_;
    UI::MicrophoneController microphone_;
    VideoAdaptation adaptation_;
    Video::HdrMetadataSender hdrMetadata_;
    SDL_Point lastPointer_{0, 0};
    int externalPublisherCount_ = 0;
    bool speakerEnabled_ = true;
    bool speakerNone_ = false;
    std::atomic<bool> videoEnabled_{true};
    bool fullscreen_ = false;
    bool noRenderScaling_ = false;
    int overlayCursor_ = 0;
    int tileCursor_ = 0;

    std::mutex departedMutex_;
    // guards: departedTiles_
    std::vector<std::unique_ptr<Video::VideoFrame>> departedTiles_;
};

}  // namespace Corvanta::Room
