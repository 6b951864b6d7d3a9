#include "room/VideoRoomView.h"

#include <algorithm>
#include <exception>
#include <iterator>
#include <utility>

#include "drawing/DrawingCanvas.h"
#include "platform/Configuration.h"
#include "platform/Logger.h"
#include "platform/MediaManager.h"
#include "platform/WebRTC.h"
#include "room/MainVideoRect.h"
#include "ui/Clock.h"
#include "ui/RoomActive.h"
#include "ui/TextureCache.h"

namespace Corvanta::Room {
namespace {

constexpr const char* kNoScalingKey = "DebugDisableVideoRenderScaling";
constexpr int kOverlayLayer = 0;
constexpr int kTileLayer = 1;
constexpr int kNoMainVideo = -1;

}  // namespace

VideoRoomView::VideoRoomView(int id, const HostCallbacks& callbacks)
    : AbstractView(id),
      hostCallbacks_(callbacks),
      drawings_(Drawing::DrawingCanvasManager::SetView(this)),
      thumbnails_(std::make_shared<Video::VideoThumbnails>(*this)),
      toolbar_(*this, hostCallbacks_) {
    roomActive.store(true);
    ScaleWall();
}

VideoRoomView::~VideoRoomView() {
    Abandon();
    TakeAllTiles().clear();
    drawings_->LeaveView();
}

void VideoRoomView::Configure(const RoomIdentity& identity) {
    const std::scoped_lock lock(remoteLock_);
    identity_ = identity;
    toolbar_.SetTitle(identity.roomName);
}

void VideoRoomView::Tick() {
    if (!roomActive.load()) return;
    const std::unique_lock remote(remoteLock_, std::try_to_lock);
    if (!remote.owns_lock()) return;
    const std::scoped_lock local(localLock_);
    if (!roomActive.load() || closing_.load() || !IsInitialised()) return;
    // Ahead of the check: what other threads asked for is no disagreement.
    microphone_.Update();
    if (trackCheckDue_.exchange(false)) CheckTrackState();
    ProcessInput();
    if (MayDraw()) Render();
}

void VideoRoomView::ProcessInput() {
    SDL_Point pointer{0, 0};
    SDL_Point wheel{0, 0};
    SDL_Event event;
    while (!closing_.load() && SDL_PollEvent(&event) != 0) HandleEvent(event, pointer, wheel);
    if (closing_.load()) return;
    if (pointer.x == 0 && pointer.y == 0) pointer = lastPointer_;
    if (HasWall()) {
        thumbnails_->Update(pointer, wheel);
    } else {
        SetCursor(0, kTileLayer);
    }
    UpdatePointer(pointer);
    if (hostCallbacks_.SetCursor != nullptr) hostCallbacks_.SetCursor(GetCursor());
}

void VideoRoomView::HandleEvent(const SDL_Event& event, SDL_Point& pointer, SDL_Point& wheel) {
    if (event.type == SDL_RENDER_TARGETS_RESET || event.type == SDL_RENDER_DEVICE_RESET) {
        // It tells no window.
        DrawMarksAgain();
        return;
    }
    const int window = static_cast<int>(event.window.windowID);
    if (window == GetSdlWindowId()) {
        if (HasWall()) thumbnails_->HandleEvent(event, pointer, lastPointer_, wheel);
        HandleViewEvent(event, pointer);
    } else if (detachedView_ != nullptr && window == detachedView_->GetSdlWindowId()) {
        detachedView_->QueueEvent(event);
    }
}

void VideoRoomView::HandleViewEvent(const SDL_Event& event, SDL_Point& pointer) {
    // A press that closes a menu is for that alone. A release ends what began before the menu came.
    const bool isRelease = event.type == SDL_MOUSEBUTTONUP;
    const bool menuWasOpen = toolbar_.HasOpenMenu();
    switch (event.type) {
        case SDL_KEYDOWN:
            // What is typed into a text is no key to talk with.
            if (!drawings_->IsTextOpen()) microphone_.OnKeyDown(event.key.keysym.sym);
            break;
        case SDL_KEYUP: microphone_.OnKeyUp(event.key.keysym.sym); break;
        case SDL_MOUSEMOTION:
            // (-1, -1) says that the pointer left the window.
            if (event.motion.x == -1 && event.motion.y == -1) break;
            lastPointer_ = {event.motion.x, event.motion.y};
            pointer = lastPointer_;
            break;
        case SDL_MOUSEBUTTONDOWN: toolbar_.OnPress(); break;
        case kRenderColorSpaceChangedEvent: UpdateHdrOptions(); break;
        default: break;
    }
    if (closing_.load()) return;
    if (isRelease || !(menuWasOpen || toolbar_.HasOpenMenu())) Draw(event);
}

void VideoRoomView::Draw(const SDL_Event& event) {
    try {
        drawings_->Input().Dispatch(event);
    } catch (const std::exception& error) {
        // A text whose family the host wrote in no UTF-8 cannot be sent; the room goes on without it.
        LOG(3, "A mark could not be shared: %s", error.what());
    }
}

void VideoRoomView::DrawMarksAgain() {
    const auto drawAgain = [](Video::VideoFrame* tile) {
        Drawing::DrawingCanvas* const canvas = tile != nullptr ? tile->GetCanvas() : nullptr;
        if (canvas != nullptr) canvas->DrawAgain();
    };
    for (const TileMap* map : {&remoteTiles_, &localTiles_}) {
        for (const auto& [id, tile] : *map) drawAgain(tile.get());
    }
    drawAgain(clone_.get());
}

void VideoRoomView::UpdatePointer(SDL_Point pointer) {
    if (pointer.x == 0 && pointer.y == 0) pointer = lastPointer_;
    toolbar_.OnHover(pointer);
    SetCursor(drawings_->CursorHint(), kOverlayLayer);
}

void VideoRoomView::SetCursor(int cursor, int layer) {
    if (layer == kOverlayLayer) overlayCursor_ = cursor;
    if (layer == kTileLayer) tileCursor_ = cursor;
}

int VideoRoomView::GetCursor() const {
    return overlayCursor_ != 0 ? overlayCursor_ : tileCursor_;
}

void VideoRoomView::Render() {
    SDL_Renderer* renderer = GetRenderer();
    if (renderer == nullptr) return;
    BuryDepartedTiles();
    stripHeight_ = HasWall() ? thumbnails_->GetStripHeight() : 0;
    SDL_RenderClear(renderer);
    const Video::VideoFrame* previousMain = mainTile_;
    if (localCameraTile_ != nullptr) localCameraTile_->muted = !microphone_.IsMicEnabled();
    ChooseMainTile();
    if (mainTile_ != nullptr) RenderMainTile(*mainTile_);
    RenderWall();
    dirty_.store(false);
    RenderControls();
    const bool mainTileLeft = std::exchange(mainTileLeft_, false);
    if (mainTileLeft || mainTile_ != previousMain) OnMainVideoChanged();
    toolbar_.RenderStreamMenus(renderer);
    static const std::string kNoStream;
    adaptation_.SetMainStream(mainTile_ != nullptr ? mainTile_->GetStreamId() : kNoStream);
    SDL_RenderPresent(renderer);
}

void VideoRoomView::ChooseMainTile() {
    Video::VideoFrame* speaker = FindSpeaker();
    if (detached_.load()) {
        ChooseDetachedMainTile(speaker);
    } else {
        mainTile_ = speaker != nullptr ? speaker : localCameraTile_;
    }
    if (spotlightTile_ != nullptr) mainTile_ = spotlightTile_;
}

void VideoRoomView::RenderWall() {
    static const std::string kNoStream;
    const std::string& mainStreamId = mainTile_ != nullptr ? mainTile_->GetStreamId() : kNoStream;
    if (detachedView_ != nullptr) detachedView_->SetMainStreamId(mainStreamId);
    if (detached_.load()) return;
    thumbnails_->SetAreaWidth(GetWidth());
    thumbnails_->SetAreaHeight(GetHeight());
    thumbnails_->Render(GetRenderer(), mainStreamId);
    if (thumbnails_->IsShown()) return;
    for (const auto& [id, tile] : remoteTiles_) {
        if (tile.get() != mainTile_) tile->Deactivate();
    }
}

void VideoRoomView::RenderControls() {
    SDL_Renderer* renderer = GetRenderer();
    toolbar_.RenderBar(renderer, GetHeight() - toolbarHeight_,
                       mainTile_ != nullptr ? mainTile_->rect.w : kNoMainVideo);
    toolbar_.RenderMenus(renderer);
}

bool VideoRoomView::IsMainVideo(const Video::VideoFrame& tile) const {
    if (&tile == localCameraTile_) return false;
    const Video::VideoFrame* main = spotlightTile_ != nullptr ? spotlightTile_ : mainTile_;
    // By id: the main video of a detached wall is a second tile of the stream.
    return main != nullptr && main->GetStreamId() == tile.GetStreamId();
}

void VideoRoomView::RenderMainTile(Video::VideoFrame& tile) {
    hdrMetadata_.Apply(GetRenderer(), tile.GetColorSpace());
    tile.inGrid = false;
    tile.onMainVideo = false;
    tile.SetRenderTime(UI::NowNs());
    tile.rect = GetMainVideoRect();
    const Video::PictureSize picture = tile.GetPictureSize();
    tile.sourceRect = {0, 0, picture.width, picture.height};
    tile.Render(GetRenderer(), {tile.rect.x, tile.rect.y});
    tile.Activate();
}

void VideoRoomView::OnMainVideoChanged() {
    toolbar_.OnMainVideoChanged();
    if (hostCallbacks_.OnMainVideoChanged != nullptr) hostCallbacks_.OnMainVideoChanged();
    drawings_->PublishHistoryState();
}

Drawing::DrawingCanvas* VideoRoomView::GetMainCanvas() {
    const std::scoped_lock remote(remoteLock_);
    return mainTile_ != nullptr ? mainTile_->GetCanvas() : nullptr;
}

void VideoRoomView::ReportHistoryState(bool canUndo, bool canRedo) {
    if (hostCallbacks_.ReportHistoryState != nullptr) hostCallbacks_.ReportHistoryState(canUndo, canRedo);
}

void VideoRoomView::OnResized(int width, int /*height*/) {
    // The picture follows the host's resize at once, not at the next tick, unless a media thread has the
    // room.
    const std::unique_lock remote(remoteLock_, std::try_to_lock);
    if (!remote.owns_lock()) return;
    const std::scoped_lock local(localLock_);
    toolbar_.SetWidth(width);
    if (MayDraw()) Render();
}

SDL_Rect VideoRoomView::GetMainVideoRect() const {
    const MainVideoSpace space{.viewWidth = GetWidth(),
                               .viewHeight = GetHeight(),
                               .reservedBelow = drawings_->IsToolEnabled() ? toolbarHeight_ : 0,
                               .stripHeight = stripHeight_};
    if (noRenderScaling_ && mainTile_ != nullptr) {
        float scale = 1.0F;
        SDL_RenderGetScale(GetRenderer(), &scale, nullptr);
        return UnscaledMainVideo(space, mainTile_->GetPictureSize(), scale);
    }
    return LetterboxedMainVideo(space,
                                mainTile_ != nullptr ? mainTile_->GetAspectRatio() : Video::kThumbnailAspect);
}

void VideoRoomView::ReadRenderScalingSetting() {
    bool value = false;
    noRenderScaling_ = Configuration_GetPropertyBoolean(kNoScalingKey, &value) && value;
}

void VideoRoomView::Shutdown() {
    adaptation_.Stop();
    StopListening();
    std::vector<std::unique_ptr<Video::VideoFrame>> tiles;
    {
        const std::scoped_lock remote(remoteLock_);
        const std::scoped_lock local(localLock_);
        closing_.store(true);
        roomActive.store(false);
        tiles = EndTiles();
    }
    // With no lock held: their workers are waited for, and a listener of the configuration may call back.
    tiles.clear();
    Configuration_SetPropertyString("room.Id", "");
    Configuration_SetPropertyString("room.Hash", "");
    CleanupWindow();
}

void VideoRoomView::Abandon() {
    if (!closing_.load()) {
        adaptation_.Stop();
        StopListening();
        // It may have been lent after a lost connection, and the camera goes on while the room does not.
        if (const auto sink = GetLocalCameraSink()) {
            MediaManager_UnregisterCallback(GetLocalStreamId(), sink.get());
        }
    }
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    closing_.store(true);
    toolbar_.Clear();
    DropClone();
    ReleaseTileGraphics();
    DestroyDetachedView();
    CleanupWindow();
}

void VideoRoomView::StopListening() {
    toolbar_.StopListening();
    microphone_.Shutdown();
}

std::vector<std::unique_ptr<Video::VideoFrame>> VideoRoomView::EndTiles() {
    ReleaseTileGraphics();
    DropClone();
    toolbar_.Clear();
    BuryDepartedTiles();
    DestroyDetachedView();
    detached_.store(false);
    auto tiles = TakeAllTiles();
    const std::scoped_lock lock(departedMutex_);
    std::move(departedTiles_.begin(), departedTiles_.end(), std::back_inserter(tiles));
    departedTiles_.clear();
    return tiles;
}

void VideoRoomView::ReleaseTileGraphics() {
    for (const auto& [id, tile] : remoteTiles_) tile->ReleaseGraphics();
    for (const auto& [id, tile] : localTiles_) tile->ReleaseGraphics();
    BuryDepartedTiles();
    thumbnails_->ReleaseTextures();
    if (GetRenderer() != nullptr) UI::ReleaseRendererTextures(GetRenderer());
}

std::vector<std::unique_ptr<Video::VideoFrame>> VideoRoomView::TakeAllTiles() {
    mainTile_ = nullptr;
    spotlightTile_ = nullptr;
    localCameraTile_ = nullptr;
    localTileOrder_.clear();
    localStreamAliases_.clear();
    localNativeSources_.clear();
    std::vector<std::unique_ptr<Video::VideoFrame>> tiles;
    for (TileMap* map : {&remoteTiles_, &localTiles_}) {
        for (auto& [id, tile] : *map) {
            thumbnails_->RemoveTile(tile.get());
            tiles.push_back(std::move(tile));
        }
        map->clear();
    }
    return tiles;
}

void VideoRoomView::BuryDepartedTiles() {
    std::vector<std::unique_ptr<Video::VideoFrame>> tiles;
    {
        const std::scoped_lock lock(departedMutex_);
        tiles.swap(departedTiles_);
    }
    for (const auto& tile : tiles) tile->ReleaseGraphics();
    const auto busy =
        std::partition(tiles.begin(), tiles.end(), [](const auto& tile) { return tile->IsAtRest(); });
    const std::scoped_lock lock(departedMutex_);
    std::move(busy, tiles.end(), std::back_inserter(departedTiles_));
}

}  // namespace Corvanta::Room
