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

#include "connectivity/ThumbnailConnectivityPanel.h"
#include "drawing/Forward.h"
#include "platform/Connections.h"
#include "platform/VideoSourceData.h"
#include "ui/Button.h"
#include "ui/GraphicElementInterface.h"
#include "ui/LockOrder.h"
#include "ui/Menu.h"
#include "ui/ToggleButton.h"
#include "video/FrameIntake.h"
#include "video/FrameObserver.h"
#include "video/FrameWorker.h"
#include "video/OverlayGradient.h"
#include "video/PictureGeometry.h"
#include "video/TileOverlays.h"
#include "video/TileOwner.h"
#include "video/TilePicture.h"

namespace Corvanta::Video {

enum class TileOrigin : int { Local = 0, Remote = 1 };

class VideoFrame final : public UI::GraphicElementInterface, private FrameWorkerClient {
public:
    // Until the first drawing pictures are prepared for the most modest output. sessionName and profileId
    // name the room and the local user in what the tile reports about its connection. Shows what is drawn on
    // its stream where there is a canvas manager.
    VideoFrame(std::string streamId, std::string sessionName, std::string profileId, TileOrigin origin);
    // Ends the worker. The texture is not destroyed here: ReleaseGraphics comes first, on the render thread.
    ~VideoFrame() override;

    // Draws the picture of sourceRect into rect; position is ignored.
    void Render(SDL_Renderer* renderer, SDL_Point position) override;
    // True when the click is the tile's own, which makes it the main video; false when a button, the menu or
    // the panel took it.
    bool OnClick() override;
    // The pointer of this tick. suppressHover: something over the tile has it.
    void OnPointer(SDL_Point point, bool suppressHover);
    // The dragged tile follows the pointer by differences.
    void UpdateDragPosition(SDL_Point point);

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
    // What is drawn over the picture; null where nothing can be drawn. A release of the graphics replaces it.
    [[nodiscard]] Drawing::DrawingCanvas* GetCanvas() { return canvas_.get(); }

    // The name that the room gave it, else its publisher's, asked for once.
    [[nodiscard]] const std::string& GetDisplayName();
    void SetDisplayName(const std::string& name) { displayNameOverride_ = name; }

    // Of a shared file: its source's name, else the display name with the sides of " | " swapped.
    [[nodiscard]] std::string GetPlaybackBarName();

    // Off drops incoming frames and blackens the picture. Any thread.
    void SetVideoEnabled(bool enabled);
    [[nodiscard]] bool IsVideoEnabled() const { return intake_->IsVideoEnabled(); }
    // As the user or the host wants it, also while the tile is deactivated. Any thread.
    [[nodiscard]] bool IsVideoWanted() const;
    // SetVideoEnabled, kept as the user's or host's wish while the tile is deactivated.
    void SetVideoEnabledWanted(bool enabled);
    // Blackens the picture. Any thread.
    void BlankFrame();

    // Subscribes to the stream's video again, or ends the subscription while the tile is not shown.
    void Activate();
    void Deactivate();
    [[nodiscard]] bool IsActive() const { return active_.load(); }

    // No picture to be had: nothing is drawn yet although the video is on (counts if noTextureCounts is set),
    // or it is off and wanted off.
    [[nodiscard]] bool HasNoVideo(bool noTextureCounts) const;
    // A frame waits for its first drawing.
    [[nodiscard]] bool HasNewPicture() const;

    // Destroys the textures; the picture stays for the next drawing.
    void ReleaseGraphics();
    // The next drawing comes from this renderer. Render thread; the old renderer must still be alive.
    void MoveToRenderer(SDL_Renderer* renderer);
    // The name is asked for and drawn again.
    void RefreshNamePlate();
    // Refuses frames from here on and lets the worker come to its end, without waiting for it; the textures
    // stay. Any thread.
    void Retire();
    // Retired, and nothing is left for which the destructor would wait.
    [[nodiscard]] bool IsAtRest() const;

    // The next frame is written to the path. Any thread.
    void RequestStillExport(const std::string& path, std::function<void()> whenWritten = {}) {
        intake_->RequestStillExport(path, std::move(whenWritten));
    }
    void SetFrameObserver(std::unique_ptr<FrameObserver> observer);
    void ClearFrameObserver() { SetFrameObserver(nullptr); }
    // Description of the stream's source. Any thread.
    void SetSourceData(const VideoSourceData& data);
    // Nothing before a description came. Any thread.
    [[nodiscard]] std::optional<VideoSourceData> GetSourceData() const;

    // A button of the column that a hovered tile shows at its right edge.
    UI::Button* AddHoverButton(UI::Button::Options options);
    // Kept up like the others, but drawn by nobody here.
    UI::Button* AddOtherButton(UI::Button::Options options);
    UI::ToggleButton* AddHoverToggleButton(UI::ToggleButton::Options options);
    // At the bottom left of a remote camera's tile.
    void SetConnectionButton(UI::Button::Options options);
    // The one of the hover buttons that opens the menu.
    void SetMenuButton(UI::Button* button);
    [[nodiscard]] UI::Button* GetMenuButton() const;
    [[nodiscard]] UI::Menu& GetMenu();
    [[nodiscard]] Connectivity::ThumbnailConnectivityPanel& GetPanel();
    [[nodiscard]] const Connectivity::ThumbnailConnectivityPanel& GetPanel() const;

    // Small pictures at the bottom right; the path is the key. Removing takes the first of that path.
    void AddBadge(const std::string& path);
    void RemoveBadge(const std::string& path);
    [[nodiscard]] bool HasBadge(const std::string& path) const;
    // A volume other than 1 shows the mix item's picture among the badges.
    void UpdateVolumeBadge(float volume);

    // The own camera's tile asks for the local connection's figures; the last one that asked has them.
    void SubscribeConnectionStats();

    // Borrowed from the wall; null without one.
    void SetOverlayGradient(const OverlayGradient* gradient);

    // The time of this drawing, steady-clock nanoseconds.
    void SetRenderTime(int64_t ns) { renderTimeNs_ = ns; }

    TileOwner* owner = nullptr;
    // Drawn as a thumbnail: the overlays belong to thumbnails only.
    bool inGrid = false;
    bool onMainVideo = false;
    // In front of the wall's other remote tiles.
    bool pinned = false;
    bool dragging = false;
    bool muted = false;
    bool lostConnection = false;
    bool draggable = false;
    bool audioEnabled = true;
    bool isExternalSource = false;
    // False makes Render return at once.
    bool renderable = true;
    // Where the wall placed the tile; rect may differ while it is dragged.
    SDL_Rect displayRect{0, 0, 0, 0};
    // The pointer while hovered or dragged, and the tile's top-left corner while dragged.
    SDL_Point dragPointer{0, 0};
    SDL_Point dragPosition{0, 0};
    // Entries of the menu that the room switches later; null where a tile has none.
    UI::ToggleButton* soundToggle = nullptr;
    UI::ToggleButton* videoToggle = nullptr;
    UI::Button* mixSoundItem = nullptr;
    UI::ToggleButton* pinToggle = nullptr;
    // While on, the wall's menus are wider.
    UI::ToggleButton* wideMenuToggle = nullptr;

private:
    UI::DisplayTraits OnFrameTaken(const Frame& frame) override;
    std::optional<std::pair<Frame, UI::DisplayTraits>> TakeFrameToPrepareAgain() override;
    std::optional<UI::DisplayTraits> Install(PreparedFrame& prepared,
                                             const UI::DisplayTraits& display) override;
    void OnFrameGivenUp() override;

    void EndWork();
    void KeepName();
    void DrawPicture(SDL_Renderer* renderer);
    void DrawAvatar(SDL_Renderer* renderer);
    void DrawMarks(SDL_Renderer* renderer);
    void MakeCanvas();
    // Gives the canvas the size of the picture.
    void SizeCanvas();
    void DropStalePicture();
    void ReadDisplay(SDL_Renderer* renderer);
    void DrawOverlays(SDL_Renderer* renderer);
    void ReleaseTextures();
    [[nodiscard]] bool NeedsOtherForm() const;

    const std::string streamId_;
    const std::string sessionName_;
    const std::string profileId_;
    const TileOrigin origin_;
    const StreamType streamType_;
    // Of the room for which the tile was made.
    const std::weak_ptr<Drawing::DrawingCanvasManager> drawings_;
    std::atomic<bool> retired_{false};
    std::string displayNameOverride_;
    std::atomic<bool> videoEnabledWanted_{true};
    std::atomic<bool> active_{true};
    std::atomic<PictureSize> pictureSize_{PictureSize{}};
    int64_t renderTimeNs_;
    int64_t lastUploadTimeNs_;
    // Never null.
    std::unique_ptr<Connectivity::ThumbnailConnectivityPanel> panel_;

    mutable UI::OrderedMutex<std::mutex, UI::LockRank::Tile> tileMutex_;
    // guards: everything from here to the worker
    TilePicture picture_;
    TileOverlays overlays_;
    std::unique_ptr<Drawing::DrawingCanvas> canvas_;
    // Of the last drawing.
    SDL_Renderer* renderer_ = nullptr;
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
