// The wall in a window of its own. The room's window then shows the main video alone, and of the stream that
// is the main video there is a second tile, the clone, since a texture belongs to one renderer.
#include <utility>

#include "platform/Configuration.h"
#include "platform/MediaManager.h"
#include "room/VideoRoomView.h"
#include "ui/Arithmetic.h"
#include "ui/RoomActive.h"
#include "video/ThumbnailLayout.h"

namespace Corvanta::Room {
namespace {

constexpr const char* kLayoutKey = "detachedLayout";
constexpr double kTileHeight = 160.0;
constexpr double kToolbarHeight = 100.0;

}  // namespace

int VideoRoomView::CreateDetachedView(void* nativeHandle, int width, int height) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    if (!roomActive.load() || closing_.load()) return -1;
    DestroyDetachedView();
    auto view = std::make_unique<Video::ThumbnailsView>();
    if (view->Init(nativeHandle, width, height) != 1) {
        BringWallBack();
        return -1;
    }
    view->SetThumbnails(thumbnails_);
    detachedView_ = std::move(view);
    if (!detached_.exchange(true)) {
        LeaveMainTile();
        spotlightTile_ = nullptr;
    }
    thumbnails_->SlideTo(true, false);
    ScaleWall();
    toolbar_.RefreshLayoutMenu();
    return 1;
}

void VideoRoomView::TickDetachedView() {
    if (!roomActive.load()) return;
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    if (closing_.load() || detachedView_ == nullptr || !detachedView_->CanDraw()) return;
    detachedView_->Render();
}

void VideoRoomView::SetDetachedLayout(int mode) {
    const std::scoped_lock remote(remoteLock_);
    if (!detached_.load()) return;
    const auto layout = static_cast<Video::ThumbnailLayoutMode>(mode);
    thumbnails_->SetMode(layout, Video::DetachedColumns(layout, thumbnails_->GetTileCount()));
}

void VideoRoomView::LeaveDetachedLayout() {
    int mode = 0;
    {
        const std::scoped_lock remote(remoteLock_);
        const std::scoped_lock local(localLock_);
        if (!detached_.load()) return;
        mode = static_cast<int>(thumbnails_->GetMode());
        BringWallBack();
    }
    // With no lock held: a listener of the configuration may call back.
    Configuration_SetPropertyInt(kLayoutKey, mode);
}

void VideoRoomView::BringWallBack() {
    if (!detached_.load()) return;
    DropClone();
    detached_.store(false);
    thumbnails_->ClearMainTiles();
    thumbnails_->MoveAllToRenderer(GetRenderer());
    thumbnails_->SetMode(Video::ThumbnailLayoutMode::Strip, 1);
    DestroyDetachedView();
    ScaleWall();
    toolbar_.RefreshLayoutMenu();
}

void VideoRoomView::DestroyDetachedView() {
    if (detachedView_ == nullptr) return;
    // Tiles that have left the wall may still have textures there, which die with the renderer.
    BuryDepartedTiles();
    detachedView_->Stop();
    detachedView_.reset();
}

void VideoRoomView::SlideThumbnails(bool show, bool animated) {
    const std::scoped_lock lock(remoteLock_);
    if (!detached_.load()) thumbnails_->SlideTo(show, animated);
}

void VideoRoomView::SetContentScale(float scale) {
    const std::scoped_lock remote(remoteLock_);
    const std::scoped_lock local(localLock_);
    ScaleWallTo(scale);
    toolbarHeight_ = UI::Truncate(scale * kToolbarHeight);
    toolbar_.SetContentScale(scale, toolbarHeight_);
}

void VideoRoomView::ScaleWallTo(float scale) {
    if (!detached_.load()) thumbnails_->SetTileHeight(UI::Truncate(scale * kTileHeight));
}

void VideoRoomView::ScaleWall() {
    if (detachedView_ != nullptr) {
        detachedView_->OnContentScaleChanged(detachedView_->GetScale());
    } else {
        ScaleWallTo(GetScale());
    }
}

void VideoRoomView::ChooseDetachedMainTile(Video::VideoFrame* speaker) {
    if (spotlightTile_ != nullptr) return;
    Video::VideoFrame* const original = speaker != nullptr ? speaker : localCameraTile_;
    if (original == nullptr) return;
    if (mainTile_ != nullptr && mainTile_->GetStreamId() == original->GetStreamId()) return;
    DropClone();
    clone_ = MakeClone(*original);
    mainTile_ = clone_.get();
    original->Activate();
}

void VideoRoomView::SetSpotlightClone(Video::VideoFrame& original) {
    DropClone();
    clone_ = MakeClone(original);
    spotlightTile_ = clone_.get();
    original.Activate();
}

std::unique_ptr<Video::VideoFrame> VideoRoomView::MakeClone(Video::VideoFrame& original) {
    auto clone = std::make_unique<Video::VideoFrame>(original.GetStreamId(), identity_.sessionName,
                                                     identity_.profileId, original.GetOrigin());
    clone->owner = this;
    clone->SetDisplayName(original.GetDisplayName());
    if (const auto data = original.GetSourceData()) clone->SetSourceData(*data);
    clone->SetVideoEnabled(original.IsVideoWanted());
    MediaManager_RegisterCallback(ResolveMediaSourceId(original.GetStreamId()), clone->GetFrameSink().get());
    return clone;
}

void VideoRoomView::DropClone() {
    if (clone_ == nullptr) return;
    MediaManager_UnregisterCallback(ResolveMediaSourceId(clone_->GetStreamId()),
                                    clone_->GetFrameSink().get());
    mainTile_ = nullptr;
    spotlightTile_ = nullptr;
    mainTileLeft_ = true;
    const bool wasOwnCamera =
        localCameraTile_ != nullptr && clone_->GetStreamId() == localCameraTile_->GetStreamId();
    Depart(std::move(clone_));
    if (wasOwnCamera) localCameraTile_->SubscribeConnectionStats();
}

Video::VideoFrame* VideoRoomView::CloneOf(const std::string& streamId) const {
    return clone_ != nullptr && clone_->GetStreamId() == streamId ? clone_.get() : nullptr;
}

}  // namespace Corvanta::Room
