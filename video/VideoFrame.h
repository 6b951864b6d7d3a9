// One video of the room: a graphic element that owns one stream's picture and takes its frames. Frames come
// in on media threads through the sink, are prepared on the tile's worker and drawn on the render thread.
// Everything else belongs to the render thread unless said otherwise.
#pragma once

#include <SDL.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>

#include "platform/Connections.h"
#include "platform/VideoSourceData.h"
#include "ui/GraphicElementInterface.h"
#include "video/FrameIntake.h"
#include "video/FrameObserver.h"
#include "video/FrameWorker.h"
#include "video/PictureGeometry.h"
#include "video/TileOwner.h"
#include "video/TilePicture.h"

namespace Corvanta::Video {

enum class TileOrigin : int { Local = 0, Remote = 1 };

class VideoFrame final : public UI::GraphicElementInterface, private FrameWorkerClient {
public:
    // Until the first drawing pictures are prepared for the most modest output. sessionName and profileId
    // name the room and the local user in what the tile reports about its connection.
    VideoFrame(std::string streamId, std::string sessionName, std::string profileId, TileOrigin origin);
    // Ends the worker. The texture is not destroyed here: ReleaseGraphics comes first, on the render thread.
    ~VideoFrame() override;

    // Draws the picture of sourceRect into rect; position is ignored.
    void Render(SDL_Renderer* renderer, SDL_Point position) override;
    bool OnClick() override { return true; }

    // Identity for the tile's whole life.
    [[nodiscard]] const std::string& GetStreamId() const { return streamId_; }
    [[nodiscard]] StreamType GetStreamType() const { return streamType_; }
    [[nodiscard]] TileOrigin GetOrigin() const { return origin_; }
    [[nodiscard]] const std::string& GetSessionName() const { return sessionName_; }
    [[nodiscard]] const std::string& GetProfileId() const { return profileId_; }

    // Takes the stream's frames; shared with whoever feeds it. Outliving the tile is harmless: frames are
    // dropped.
    [[nodiscard]] const std::shared_ptr<FrameCallback>& GetFrameSink() const { return frameSink_; }

    // Size in pixels of the newest picture; 0 by 0 before there is one. Any thread.
    [[nodiscard]] PictureSize GetPictureSize() const { return pictureSize_.load(); }
    [[nodiscard]] float GetAspectRatio() const { return AspectRatioOf(GetPictureSize()); }
    [[nodiscard]] bool HasNoFrameSize() const;
    [[nodiscard]] SDL_Rect GetCenterCrop() const { return CenterCropOf(GetPictureSize()); }
    // Colour description of the last uploaded frame.
    [[nodiscard]] ColorSpace GetColorSpace() const;
    [[nodiscard]] bool HasTexture() const;

    // The name that the room gave it, else its publisher's, asked for once.
    [[nodiscard]] const std::string& GetDisplayName();
    void SetDisplayName(const std::string& name) { displayNameOverride_ = name; }

    // Off drops incoming frames and blackens the picture. Any thread.
    void SetVideoEnabled(bool enabled);
    [[nodiscard]] bool IsVideoEnabled() const { return intake_->IsVideoEnabled(); }
    // SetVideoEnabled, kept as the user's or host's wish while the tile is deactivated.
    void SetVideoEnabledWanted(bool enabled);
    // Blackens the picture. Any thread.
    void BlankFrame();

    // Subscribes to the stream's video again, or ends the subscription while the tile is not shown.
    void Activate();
    void Deactivate();
    [[nodiscard]] bool IsActive() const { return active_.load(); }

    // Destroys the textures; the picture stays for the next drawing.
    void ReleaseGraphics();
    // Ends the worker and refuses frames from here on. Any thread but the worker; the textures stay.
    void Retire();

    // The next frame is written to the path. Any thread.
    void RequestStillExport(const std::string& path) { intake_->RequestStillExport(path); }
    void SetFrameObserver(std::unique_ptr<FrameObserver> observer);
    void ClearFrameObserver() { SetFrameObserver(nullptr); }
    // Description of the stream's source. Any thread.
    void SetSourceData(const VideoSourceData& data);
    // Nothing before a description came. Any thread.
    [[nodiscard]] std::optional<VideoSourceData> GetSourceData() const;

    // The time of this drawing, steady-clock nanoseconds.
    void SetRenderTime(int64_t ns) { renderTimeNs_ = ns; }

    TileOwner* owner = nullptr;
    // Drawn as a thumbnail: the overlays belong to thumbnails only.
    bool inGrid = false;
    bool onMainVideo = false;
    bool dragging = false;
    bool muted = false;
    bool lostConnection = false;
    bool draggable = false;
    bool audioEnabled = true;
    bool isExternalSource = false;
    // False makes Render return at once.
    bool renderable = true;

private:
    UI::DisplayTraits OnFrameTaken(const Frame& frame) override;
    std::optional<std::pair<Frame, UI::DisplayTraits>> TakeFrameToPrepareAgain() override;
    std::optional<UI::DisplayTraits> Install(PreparedFrame& prepared,
                                             const UI::DisplayTraits& display) override;
    void OnFrameGivenUp() override;

    void EndWork();
    void DrawPicture(SDL_Renderer* renderer);
    void DropStalePicture();
    void ReadDisplay(SDL_Renderer* renderer);
    [[nodiscard]] bool NeedsOtherForm() const;

    const std::string streamId_;
    const std::string sessionName_;
    const std::string profileId_;
    const TileOrigin origin_;
    const StreamType streamType_;
    std::string displayNameOverride_;
    std::atomic<bool> videoEnabledWanted_{true};
    std::atomic<bool> active_{true};
    std::atomic<PictureSize> pictureSize_{PictureSize{}};
    int64_t renderTimeNs_;
    int64_t lastUploadTimeNs_;

    mutable std::mutex tileMutex_;
    // guards: everything from here to the worker
    TilePicture picture_;
    UI::DisplayTraits display_;
    SDL_Rect mainVideoRect_{0, 0, 0, 0};
    std::unique_ptr<FrameObserver> frameObserver_;
    std::optional<VideoSourceData> sourceData_;
    // The output cannot show the picture in its present form; the worker is to prepare it again.
    bool prepareAgain_ = false;
    // The frame that the worker reads, whether it is the shown one, and whether to blacken it afterwards.
    Frame inWork_;
    bool preparingAgain_ = false;
    bool blankAfterWork_ = false;

    std::shared_ptr<FrameIntake> intake_;
    std::shared_ptr<FrameCallback> frameSink_;
    // Last, so that everything it uses is there before it starts and after it has ended.
    FrameWorker worker_;
};

}  // namespace Corvanta::Video
