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
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "drawing/DrawingCanvasManager.h"
#include "drawing/DrawingSurface.h"
#include "integration/MicrophoneController.h"
#include "platform/Connections.h"
#include "platform/DataChannelMessage.h"
#include "platform/DrawToolState.h"
#include "platform/HostCallbacks.h"
#include "platform/VideoFrameBuffer.h"
#include "platform/VideoSourceData.h"
#include "room/RoomToolbar.h"
#include "room/VideoAdaptation.h"
#include "ui/AbstractView.h"
#include "ui/LockOrder.h"
#include "video/HdrMetadata.h"
#include "video/ThumbnailsView.h"
#include "video/TileOwner.h"
#include "video/VideoFrame.h"
#include "video/VideoThumbnails.h"
#include "video/WallOwner.h"

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

class VideoRoomView : public UI::AbstractView,
                      public Video::TileOwner,
                      public Video::WallOwner,
                      private Drawing::DrawingSurface {
public:
    // Sets roomActive. callbacks: the host's functions, copied.
    VideoRoomView(int id, const HostCallbacks& callbacks);
    // Lets go of everything that Shutdown would have let go of. roomActive keeps its value: a later room may
    // have taken this one's place. After Shutdown any thread may destroy the view.
    virtual ~VideoRoomView();

    void Render() override;
    void OnResized(int width, int height) override;
    void OnContentScaleChanged(float scale) override { SetContentScale(scale); }
    void OnRenderTargetChanged() override { UpdateHdrOptions(); }

    // Sizes the room's controls; the wall's while it stands in the room.
    virtual void SetContentScale(float scale);

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
    void SetCursor(int cursor, int layer) override;
    // The overlays' cursor, else the tiles'.
    [[nodiscard]] virtual int GetCursor() const;

    void Configure(const RoomIdentity& identity);
    // Makes the bar with its menus and lets the microphone follow its button. After Init, host thread.
    void BuildControls();
    // Host thread.
    [[nodiscard]] const RoomIdentity& GetIdentity() const { return identity_; }

    // A local stream runs under this media source id. Returns its tile's sink; null when the room has ended.
    // Any thread, as for the four below.
    std::shared_ptr<FrameCallback> AddLocalVideoSource(StreamType type, const std::string& sourceId);
    void RemoveRemoteVideoSource(const std::string& streamId);
    void RemoveLocalVideoSource(const std::string& sourceId);
    // False when the room has ended.
    bool UpdateConnectionStatus(const std::string& streamId, bool lost);
    // volume: a slider position from 0 to 1. An unknown stream changes nothing. newTrack: its sound has just
    // come; the user's own external screen then starts silent, against echo.
    void SetStreamVolume(const std::string& streamId, double volume, bool newTrack);
    void SetParticipantsVolume(double volume);
    void SetStreamsVolume(double volume);
    // The picture of a stream on and off, without keeping it as a wish.
    void SetStreamVideoEnabled(const std::string& streamId, bool enabled);
    // Flips the stream's sound if its toggle stands at on.
    void SetStreamSoundToggle(const std::string& streamId, bool on);
    // The stream becomes the main video; respectToggle: or lets the speaker decide again if it is.
    void SetStreamSpotlight(const std::string& streamId, bool respectToggle);

    // A click on a tile makes it the main video; a second one, not from a menu, lets the speaker decide
    // again.
    void OnTileClicked(Video::VideoFrame* tile, bool fromMenu) override;
    [[nodiscard]] bool IsMainVideo(const Video::VideoFrame& tile) const override;
    [[nodiscard]] int GetViewWidth() const override { return GetWidth(); }
    [[nodiscard]] bool IsDetached() const override { return detached_.load(); }
    void SetActiveSpeaker(const std::string& streamId);
    void SetSpeakerEnabled(bool enabled);
    [[nodiscard]] bool IsSpeakerEnabled() const;
    // There is no device to hear the room with, or to speak with.
    void SetSpeakerNone(bool none);
    void SetMicNone(bool none);
    // The capture device is another one now; negative for none. Any thread.
    [[nodiscard]] int GetCaptureIndex();
    void OnCaptureChanged(int captureIndex);
    void SetMicEnabled(bool enabled);
    // Any thread.
    [[nodiscard]] bool IsMicEnabled() const;
    // The wish for the own picture, which the bar's button carries out.
    void SetVideoEnabled(bool enabled);
    [[nodiscard]] bool IsVideoEnabled() const { return videoEnabled_.load(); }
    void SetFullscreenEnabled(bool enabled);
    [[nodiscard]] bool IsFullscreenEnabled() const { return fullscreen_; }

    // What the bar's buttons and menus do. In a tick or on the host thread.
    void SwitchMicrophone(bool on);
    void SwitchCamera(bool on);
    void SwitchSpeaker(bool on);
    // An own stream is to end: it leaves the main video of a room whose wall is detached. except: a kind that
    // stays.
    void ForgetOwnStream(std::optional<StreamType> except = std::nullopt);
    // The next frame of the main video becomes a file.
    void SaveStill();
    void RaiseSdrBrightness();
    void LowerSdrBrightness();
    void ResetSdrBrightness();
    void ShowOwnConnection();
    void LeaveRoom();

    // The host's commands on the bar. Any thread.
    void SetTitle(const std::string& title);
    void UntoggleOptionsButton(bool click);
    void UntoggleAudioMixer();
    void SetSidebarNotification(bool shown);
    void SetDrawTool(bool on);
    // The drawing tool with its settings, which are stored; its bar comes or goes with it.
    void SetDrawToolState(const DrawToolState& state);
    // What is drawn on the room's streams.
    [[nodiscard]] Drawing::DrawingCanvasManager& GetDrawings() { return *drawings_; }
    // Once a second: the next tick files a report when a button and the track that it switches disagree.
    void RequestTrackCheck() { trackCheckDue_.store(true); }
    [[nodiscard]] int GetToolbarHeight() const { return toolbarHeight_; }
    // In a tick or on the host thread.
    [[nodiscard]] RoomToolbar& GetToolbar() { return toolbar_; }

    // A message of a remote participant. Any thread, also after Shutdown.
    void OnDataChannelMessage(const DataChannelMessage& message);
    // Any thread.
    void OnVideoSourceData(const VideoSourceData& data);

    // The wall in a window of its own. Host thread, outside a tick. CreateDetachedView replaces an earlier
    // window: 1 on success, -1 on failure, and then the wall stands in the room.
    int CreateDetachedView(void* nativeHandle, int width, int height);
    void TickDetachedView();
    // Columns follow from the number of tiles. Only while detached.
    void SetDetachedLayout(int mode);
    // The wall comes back into the room, and its layout is kept in the configuration. Only while detached.
    void LeaveDetachedLayout();
    // Null while the wall stands in the room.
    [[nodiscard]] UI::AbstractView* GetDetachedView() { return detachedView_.get(); }
    // The strip in and out of the room.
    void SlideThumbnails(bool show, bool animated);

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
    // The own camera's tile hears the connection's figures again after another tile of it has taken them
    // over.
    void RenewConnectionStats();
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
    // Destroys the tiles of streams that have gone: textures only die on the render thread. What would have
    // to be waited for stays until the next drawing.
    void BuryDepartedTiles();
    [[nodiscard]] bool MayDraw() const { return !closing_.load() && CanDraw(); }

    mutable UI::OrderedMutex<std::recursive_mutex, UI::LockRank::Remote> remoteLock_;
    // guards: remoteTiles_, the choice of the main video, identity_, toolbar_, the speaker's switches
    TileMap remoteTiles_;
    Video::VideoFrame* mainTile_ = nullptr;
    Video::VideoFrame* spotlightTile_ = nullptr;
    // The main video went since the last drawing, which the next one tells the host.
    bool mainTileLeft_ = false;

    mutable UI::OrderedMutex<std::recursive_mutex, UI::LockRank::Local> localLock_;
    // guards: localTiles_, localStreamAliases_, localTileOrder_, localCameraTile_, localStreamId_
    TileMap localTiles_;
    std::map<std::string, std::string> localStreamAliases_;
    std::vector<Video::VideoFrame*> localTileOrder_;
    std::set<std::string> localNativeSources_;
    Video::VideoFrame* localCameraTile_ = nullptr;
    std::string localStreamId_;

    std::atomic<bool> closing_{false};

private:
    void HandleEvent(const SDL_Event& event, SDL_Point& pointer, SDL_Point& wheel);
    void HandleViewEvent(const SDL_Event& event, SDL_Point& pointer);
    void Draw(const SDL_Event& event);
    // A renderer has lost what was drawn into its textures.
    void DrawMarksAgain();
    [[nodiscard]] Drawing::DrawingCanvas* GetMainCanvas() override;
    [[nodiscard]] SDL_Rect GetMainVideoArea() const override { return GetMainVideoRect(); }
    void ReportHistoryState(bool canUndo, bool canRedo) override;
    void UpdatePointer(SDL_Point pointer);
    [[nodiscard]] bool HasWall() const { return !detached_.load() && thumbnails_->IsShown(); }
    void ChooseMainTile();
    void ChooseDetachedMainTile(Video::VideoFrame* speaker);
    void RenderWall();
    void RenderControls();
    // Adds the entry for HDR output to the options, or takes it away, when the output has changed.
    void UpdateHdrOptions();
    void CheckTrackState();
    // In nits.
    void ChangeSdrBrightness(float step);
    // The tile of the active speaker; null when nobody speaks or it is no remote stream.
    [[nodiscard]] Video::VideoFrame* FindSpeaker() const;
    // Ends what comes from the configuration, the room and the programs; with no lock held, since each waits
    // for a call in progress.
    void StopListening();

    // Menus of the tiles.
    void AddRemoteControls(Video::VideoFrame& tile);
    void AddLocalControls(Video::VideoFrame& tile, StreamType type);
    void AddMenuButton(Video::VideoFrame& tile);
    void AddSpotlightItem(Video::VideoFrame& tile);
    void AddSoundItem(Video::VideoFrame& tile,
                      void (VideoRoomView::*apply)(Video::VideoFrame& tile, bool on));
    void AddVideoItem(Video::VideoFrame& tile);
    void AddMixItem(Video::VideoFrame& tile);
    void AddPinItem(Video::VideoFrame& tile);
    void AddHostItems(Video::VideoFrame& tile);
    void OpenAudioMixer(Video::VideoFrame& tile) const;
    void SwitchRemoteSound(Video::VideoFrame& tile, bool on);
    void SwitchLocalSound(Video::VideoFrame& tile, bool on);
    void SwitchVideo(Video::VideoFrame& tile, bool on);

    // The clone: a second tile of a stream, on the room's renderer, while the wall is detached.
    [[nodiscard]] std::unique_ptr<Video::VideoFrame> MakeClone(Video::VideoFrame& original);
    void SetSpotlightClone(Video::VideoFrame& original);
    void DropClone();
    [[nodiscard]] Video::VideoFrame* CloneOf(const std::string& streamId) const;
    // The tile becomes the main video by itself; nobody's does.
    void TakeMainVideo(Video::VideoFrame& tile);
    void LetSpeakerDecide();
    void ClearSpotlight();
    // Nothing is the main video until the next drawing chooses.
    void LeaveMainTile();
    [[nodiscard]] bool IsOwnExternalScreen(const Video::VideoFrame& tile) const;
    // By the stream's id, remote or local; null for an unknown one. Under both locks.
    [[nodiscard]] Video::VideoFrame* FindTile(const std::string& streamId) const;
    void BringWallBack();
    void DestroyDetachedView();
    // Gives the wall the scale of the window in which it stands.
    void ScaleWall();
    void ScaleWallTo(float scale);
    void OnMainVideoChanged();
    void ApplySpeaker();
    // Under remoteLock, so that no renderer goes between the tile's leaving and its release.
    void Depart(std::unique_ptr<Video::VideoFrame> tile);
    // No pointer to a tile that goes stays behind.
    void ForgetTile(const Video::VideoFrame& tile);
    [[nodiscard]] bool IsSpeakerOn() const { return speakerEnabled_ && !speakerNone_; }
    void ReleaseTileGraphics();
    // Both take all tiles out of the room, to be destroyed where no lock is held; the first also ends the
    // wall's own window and every texture.
    [[nodiscard]] std::vector<std::unique_ptr<Video::VideoFrame>> EndTiles();
    [[nodiscard]] std::vector<std::unique_ptr<Video::VideoFrame>> TakeAllTiles();

    const HostCallbacks hostCallbacks_;
    // Shared with the threads that are inside it. It outlives the view until another one's is made.
    const std::shared_ptr<Drawing::DrawingCanvasManager> drawings_;
    RoomIdentity identity_;
    std::shared_ptr<Video::VideoThumbnails> thumbnails_;
    UI::MicrophoneController microphone_;
    RoomToolbar toolbar_;
    VideoAdaptation adaptation_;
    Video::HdrMetadataSender hdrMetadata_;
    // Outside until the host has moved it.
    SDL_Point lastPointer_{-1, -1};
    std::unique_ptr<Video::ThumbnailsView> detachedView_;
    std::atomic<bool> detached_{false};
    // Shown as main video while detached; mainTile_ or spotlightTile_, or both, point at it.
    std::unique_ptr<Video::VideoFrame> clone_;
    int captureIndex_ = -1;
    int externalPublisherCount_ = 0;
    bool speakerEnabled_ = true;
    bool speakerNone_ = false;
    std::atomic<bool> videoEnabled_{true};
    bool fullscreen_ = false;
    bool noRenderScaling_ = false;
    // Height of the wall above the main video, as of the present drawing. Tiles ask for the main video's
    // place with their lock held, under which the wall's must not be taken.
    int stripHeight_ = 0;
    // Until the first scale is set.
    int toolbarHeight_ = 85;
    int overlayCursor_ = 0;
    int tileCursor_ = 0;
    std::atomic<bool> trackCheckDue_{false};

    UI::OrderedMutex<std::recursive_mutex, UI::LockRank::View> viewMutex_;
    // guards: renderColorSpaceSeen_
    int renderColorSpaceSeen_ = -1;

    // Of its own, since the speaker is asked for ahead of a tick, which waits for nothing.
    mutable UI::OrderedMutex<std::mutex, UI::LockRank::Leaf> speakerMutex_;
    // guards: activeSpeakerId_
    std::string activeSpeakerId_;

    UI::OrderedMutex<std::mutex, UI::LockRank::Leaf> departedMutex_;
    // guards: departedTiles_
    std::vector<std::unique_ptr<Video::VideoFrame>> departedTiles_;
};

}  // namespace Corvanta::Room
