// Which tiles there are, their layout and drawing. The wall's input is in VideoThumbnailsInput.cpp.
#include "video/VideoThumbnails.h"

#include <algorithm>
#include <cmath>

#include "ui/Arithmetic.h"
#include "ui/Clock.h"
#include "video/MenuMetrics.h"
#include "video/VideoFrame.h"

namespace Corvanta::Video {
namespace {

constexpr float kTileAspect = 1.3333334F;
constexpr double kScrollbarShare = 0.05;

}  // namespace

VideoThumbnails::VideoThumbnails(WallOwner& view) : view_(view) {
    scrollbar_.SetDrawTrack(true);
}

void VideoThumbnails::AddTile(VideoFrame* tile, bool remote) {
    const std::scoped_lock lock(gridMutex_);
    if (!tiles_.Add(tile, remote ? TileOrigin::Remote : TileOrigin::Local)) return;
    // So that no drawing has to allocate.
    pass_.reserve(tiles_.Count());
    ApplyMenuMetrics(*tile, MenuMetricsFor(layout_.GetTileHeight()));
}

void VideoThumbnails::RemoveTile(VideoFrame* tile) {
    const std::scoped_lock lock(gridMutex_);
    if (tiles_.Remove(tile)) Forget(tile);
}

void VideoThumbnails::Forget(VideoFrame* tile) {
    std::replace(pass_.begin(), pass_.end(), tile, static_cast<VideoFrame*>(nullptr));
    if (tile->hovered) press_.pending = false;
    if (draggedTile_ == tile) draggedTile_ = nullptr;
    tile->dragging = false;
    tile->hovered = false;
    tile->SetOverlayGradient(nullptr);
}

int VideoThumbnails::GetTileCount() const {
    const std::scoped_lock lock(gridMutex_);
    return static_cast<int>(tiles_.Count());
}

std::vector<VideoFrame*> VideoThumbnails::GetAllTiles() const {
    const std::scoped_lock lock(gridMutex_);
    std::vector<VideoFrame*> all;
    tiles_.CopyTo(all);
    return all;
}

void VideoThumbnails::BeginPass() {
    tiles_.CopyTo(pass_);
    passLocalCount_ = tiles_.Local().size();
}

VideoFrame* VideoThumbnails::InPass(size_t index) const {
    return index < pass_.size() ? pass_[index] : nullptr;
}

void VideoThumbnails::Render(SDL_Renderer* renderer, const std::string& mainStreamId) {
    const std::scoped_lock lock(gridMutex_);
    BeginPass();
    if (!shown_) return;
    renderer_ = renderer;
    layout_.SetTileCount(static_cast<int>(pass_.size()));
    const int64_t nowNs = UI::NowNs();
    ApplySlide(nowNs);
    const SDL_Point oldSize{layout_.GetTileWidth(), layout_.GetTileHeight()};
    layout_.Compute(kTileAspect, view_.GetViewWidth());
    const bool sizeChanged = layout_.GetTileWidth() != oldSize.x || layout_.GetTileHeight() != oldSize.y;
    if (layout_.GetMode() == ThumbnailLayoutMode::Grid && sizeChanged) {
        ApplyMenuMetricsToAll(layout_.GetTileHeight());
    }
    const Drawing drawing{renderer, mainStreamId, nowNs, LayScrollbar()};
    const SDL_Rect first = layout_.TileRect(0, drawing.scrollOffset);
    if (first.w > 0 && first.h > 0) overlayGradient_.Resize(renderer, first.w, first.h, true);
    const bool showsScrollbar = ShowsScrollbar();
    // Under the tiles of a strip, beside those of the other layouts.
    if (showsScrollbar && !layout_.IsVertical()) scrollbar_.Render(renderer, {0, 0});
    // The first ones come last and so lie on top; the dragged one, one place behind all, lies above them.
    const size_t count = pass_.size();
    for (size_t index = count; index-- > 0;) RenderTile(drawing, index);
    RenderTile(drawing, pass_.size());
    if (renderer_ != renderer) return;
    if (showsScrollbar && layout_.IsVertical()) scrollbar_.Render(renderer, {0, 0});
    UpdateMenuWidth();
}

void VideoThumbnails::ApplySlide(int64_t nowNs) {
    const StripSlide::Step step = slide_.Advance(nowNs, layout_.GetTileHeight());
    layout_.SetYOffset(step.yOffset);
    if (step.hide) shown_ = false;
}

int VideoThumbnails::LayScrollbar() {
    int cross = 0;
    const int thickness = scrollbar_.GetThickness();
    switch (layout_.GetMode()) {
        case ThumbnailLayoutMode::Column: cross = layout_.GetTileWidth() * layout_.GetColumns(); break;
        case ThumbnailLayoutMode::Grid:
            cross = layout_.GetAreaWidth();
            if (detachedBorders_)
                cross = UI::Truncate(static_cast<double>(cross) - thickness / 2 - thickness);
            break;
        default: cross = std::min(layout_.GetTileHeight(), GetStripHeight()); break;
    }
    const bool vertical = layout_.IsVertical();
    const int viewport = vertical ? layout_.GetAreaHeight() : layout_.GetAreaWidth();
    return scrollbar_.UpdateMetrics(viewport, layout_.TotalExtent(), cross, vertical);
}

bool VideoThumbnails::ShowsScrollbar() const {
    if (slide_.IsSlidingOut()) return false;
    return scrollbar_.hovered || linger_.IsLingering() || draggedTile_ != nullptr || wheelMoved_ ||
           view_.IsDetached();
}

void VideoThumbnails::RenderTile(const Drawing& drawing, size_t index) {
    const bool onTop = index >= pass_.size();
    VideoFrame* tile = onTop ? draggedTile_ : InPass(index);
    if (tile == nullptr || renderer_ != drawing.renderer) return;
    // The room's functions and the media layer's, which are called below, may remove the tile or end the
    // window.
    const auto isHere = [&] {
        return (onTop ? draggedTile_ : InPass(index)) == tile && renderer_ == drawing.renderer;
    };
    const SDL_Rect crop = tile->HasNoFrameSize() ? SDL_Rect{0, 0, 0, 0} : tile->GetCenterCrop();
    SDL_Rect place = layout_.TileRect(static_cast<int>(index), drawing.scrollOffset);
    if (tile->draggable) tile->SetOverlayGradient(&overlayGradient_);
    tile->displayRect = place;
    if (!layout_.IsNearArea(place) && tile != draggedTile_) {
        const bool isRemote = index >= passLocalCount_;
        if (isRemote && tile->GetStreamId() != drawing.mainStreamId) tile->Deactivate();
        return;
    }
    tile->inGrid = true;
    const bool onMainVideo = view_.IsMainVideo(*tile);
    if (!isHere()) return;
    tile->onMainVideo = onMainVideo;
    tile->sourceRect = crop;
    // The place that a dragged tile has left in the list stays empty.
    if (onTop || !tile->dragging) {
        if (tile->dragging) {
            place.x = tile->dragPosition.x;
            place.y = tile->dragPosition.y;
        }
        tile->rect = place;
        tile->SetRenderTime(drawing.nowNs);
        tile->Render(drawing.renderer, {place.x, place.y});
        if (!isHere()) return;
    }
    tile->Activate();
    if (!isHere()) return;
    if (tile->wideMenuToggle != nullptr && tile->wideMenuToggle->IsToggled()) widerMenusWanted_ = true;
}

void VideoThumbnails::ApplyMenuMetricsToAll(int tileHeight) {
    const MenuMetrics metrics = MenuMetricsFor(tileHeight);
    for (VideoFrame* tile : tiles_.Local()) ApplyMenuMetrics(*tile, metrics);
    for (VideoFrame* tile : tiles_.Remote()) ApplyMenuMetrics(*tile, metrics);
}

void VideoThumbnails::UpdateMenuWidth() {
    const int width = CurrentMenuWidth();
    const bool wider = widerMenusWanted_;
    widerMenusWanted_ = false;
    if (wider ? width != kMenuWidth : width == kMenuWidth) return;
    SetCurrentMenuWidth(wider ? kWideMenuWidth : kMenuWidth);
    ApplyMenuMetricsToAll(layout_.GetTileHeight());
}

void VideoThumbnails::PinTile(VideoFrame* tile) {
    const std::scoped_lock lock(gridMutex_);
    if (tiles_.Pin(tile)) orderChanged_ = true;
}

void VideoThumbnails::UnpinTile(VideoFrame* tile) {
    const std::scoped_lock lock(gridMutex_);
    if (tiles_.Unpin(tile)) orderChanged_ = true;
}

void VideoThumbnails::ReorderRemoteTiles(const std::vector<std::string>& streamIds) {
    const std::scoped_lock lock(gridMutex_);
    for (VideoFrame* tile : tiles_.Reorder(streamIds)) Forget(tile);
}

void VideoThumbnails::SetMode(ThumbnailLayoutMode mode, int columns) {
    const std::scoped_lock lock(gridMutex_);
    layout_.SetMode(mode, columns);
    scrollbar_.SetOrientation(layout_.IsVertical());
    SetTileHeight(layout_.GetBaseTileHeight());
}

ThumbnailLayoutMode VideoThumbnails::GetMode() const {
    const std::scoped_lock lock(gridMutex_);
    return layout_.GetMode();
}

void VideoThumbnails::SetTileHeight(int height) {
    if (height < 1) return;
    const std::scoped_lock lock(gridMutex_);
    const int width = UI::Truncate(static_cast<float>(height) * kTileAspect);
    if (layout_.GetMode() != ThumbnailLayoutMode::Grid) layout_.SetTileSize(width, height);
    layout_.SetBaseTileSize(width, height);
    ApplyMenuMetricsToAll(height);
    const int thickness = UI::Truncate(std::round(height * kScrollbarShare));
    if (scrollbar_.GetVertical()) {
        scrollbar_.SetWidth(thickness);
    } else {
        scrollbar_.SetHeight(thickness);
    }
}

void VideoThumbnails::SetAreaWidth(int width) {
    const std::scoped_lock lock(gridMutex_);
    layout_.SetAreaWidth(width);
}

void VideoThumbnails::SetAreaHeight(int height) {
    const std::scoped_lock lock(gridMutex_);
    layout_.SetAreaHeight(height);
}

void VideoThumbnails::SlideTo(bool show, bool animated) {
    const std::scoped_lock lock(gridMutex_);
    if (!animated) {
        shown_ = show;
        slide_.Stop();
    } else if (show) {
        shown_ = true;
        slide_.StartIn(UI::NowNs());
    } else {
        slide_.StartOut(UI::NowNs());
    }
}

void VideoThumbnails::SetShown(bool shown) {
    const std::scoped_lock lock(gridMutex_);
    shown_ = shown;
}

bool VideoThumbnails::IsShown() const {
    const std::scoped_lock lock(gridMutex_);
    return shown_;
}

bool VideoThumbnails::IsSlidingOut() const {
    const std::scoped_lock lock(gridMutex_);
    return slide_.IsSlidingOut();
}

int VideoThumbnails::GetStripHeight() const {
    const std::scoped_lock lock(gridMutex_);
    return layout_.GetTileHeight() + layout_.GetYOffset();
}

int VideoThumbnails::GetMinimumHeight() const {
    const std::scoped_lock lock(gridMutex_);
    return layout_.MinimumHeight(static_cast<int>(tiles_.Count()));
}

int VideoThumbnails::GetMinimumWidth() const {
    const std::scoped_lock lock(gridMutex_);
    return layout_.MinimumWidth(static_cast<int>(tiles_.Count()));
}

int VideoThumbnails::GetTotalWidth() const {
    const std::scoped_lock lock(gridMutex_);
    return UI::Truncate(static_cast<double>(layout_.GetTileWidth()) * static_cast<double>(tiles_.Count()));
}

void VideoThumbnails::MoveAllToRenderer(SDL_Renderer* renderer) {
    const std::scoped_lock lock(gridMutex_);
    // Moving destroys the textures, so who has a picture is asked before.
    const bool orderedByUser = orderChanged_ || (draggedTile_ != nullptr && orderTouched_);
    if (!orderedByUser && view_.IsDetached()) tiles_.SortByPicture();
    BeginPass();
    for (size_t index = 0; index < pass_.size(); ++index) {
        if (VideoFrame* tile = InPass(index)) tile->MoveToRenderer(renderer);
    }
    ReleaseTextures();
    renderer_ = renderer;
}

void VideoThumbnails::ClearMainTiles() {
    const std::scoped_lock lock(gridMutex_);
    for (VideoFrame* tile : tiles_.Local()) tile->onMainVideo = false;
    for (VideoFrame* tile : tiles_.Remote()) tile->onMainVideo = false;
}

void VideoThumbnails::ReleaseTextures() {
    const std::scoped_lock lock(gridMutex_);
    overlayGradient_.ReleaseTexture();
    scrollbar_.ResetTextures();
}

void VideoThumbnails::LeaveRenderer(const SDL_Renderer* renderer) {
    const std::scoped_lock lock(gridMutex_);
    if (renderer == nullptr || renderer_ != renderer) return;
    renderer_ = nullptr;
    for (VideoFrame* tile : tiles_.Local()) tile->MoveToRenderer(nullptr);
    for (VideoFrame* tile : tiles_.Remote()) tile->MoveToRenderer(nullptr);
    ReleaseTextures();
}

void VideoThumbnails::SetDetachedBorders(bool visible) {
    const std::scoped_lock lock(gridMutex_);
    detachedBorders_ = visible;
}

bool VideoThumbnails::HasDetachedBorders() const {
    const std::scoped_lock lock(gridMutex_);
    return detachedBorders_;
}

}  // namespace Corvanta::Video
