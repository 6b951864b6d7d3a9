#include "video/ThumbnailsView.h"

#include <utility>

#include "ui/Arithmetic.h"
#include "ui/TextureCache.h"

namespace Corvanta::Video {
namespace {

constexpr int kNoRoomView = -1;
constexpr double kTileHeight = 160.0;

}  // namespace

ThumbnailsView::ThumbnailsView() : AbstractView(kNoRoomView) {}

ThumbnailsView::~ThumbnailsView() {
    Stop();
}

std::shared_ptr<VideoThumbnails> ThumbnailsView::GetThumbnails() const {
    const std::scoped_lock lock(viewLock_);
    return thumbnails_;
}

void ThumbnailsView::SetThumbnails(std::shared_ptr<VideoThumbnails> thumbnails) {
    const std::scoped_lock lock(viewLock_);
    thumbnails_.swap(thumbnails);
}

void ThumbnailsView::SetMainStreamId(const std::string& streamId) {
    if (&streamId != &mainStreamId_) mainStreamId_ = streamId;
}

void ThumbnailsView::QueueEvent(const SDL_Event& event) {
    const std::scoped_lock lock(viewLock_);
    eventQueue_.push_back(event);
}

bool ThumbnailsView::TakeEvent(SDL_Event& event) {
    const std::scoped_lock lock(viewLock_);
    if (eventQueue_.empty()) return false;
    event = eventQueue_.front();
    eventQueue_.pop_front();
    return true;
}

void ThumbnailsView::OnContentScaleChanged(float scale) {
    if (const auto wall = GetThumbnails()) wall->SetTileHeight(UI::Truncate(scale * kTileHeight));
}

void ThumbnailsView::HandleEvents(VideoThumbnails& wall) {
    wheel_ = {0, 0};
    SDL_Event event;
    while (TakeEvent(event)) {
        SDL_Point point = pointer_;
        wall.HandleEvent(event, point, pointer_, wheel_);
    }
}

bool ThumbnailsView::MayDraw() const {
    const std::scoped_lock lock(viewLock_);
    return GetRenderer() != nullptr && thumbnails_ != nullptr;
}

void ThumbnailsView::Render() {
    const auto wall = GetThumbnails();
    if (wall == nullptr) return;
    HandleEvents(*wall);
    wall->Update(pointer_, wheel_);
    if (!MayDraw()) return;
    if (!tilesMoved_) {
        wall->MoveAllToRenderer(GetRenderer());
        tilesMoved_ = true;
    }
    SDL_RenderClear(GetRenderer());
    wall->SetAreaWidth(GetWidth());
    wall->SetAreaHeight(GetHeight());
    wall->Render(GetRenderer(), mainStreamId_);
    if (MayDraw()) SDL_RenderPresent(GetRenderer());
}

void ThumbnailsView::Stop() {
    std::shared_ptr<VideoThumbnails> wall;
    {
        const std::scoped_lock lock(viewLock_);
        wall.swap(thumbnails_);
        eventQueue_.clear();
    }
    tilesMoved_ = false;
    if (GetRenderer() != nullptr) {
        if (wall != nullptr) wall->LeaveRenderer(GetRenderer());
        UI::ReleaseRendererTextures(GetRenderer());
    }
    CleanupWindow();
}

}  // namespace Corvanta::Video
