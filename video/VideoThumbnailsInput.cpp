// The wall's input: clicks, hover, drag, pins across the border, scrolling.
#include <algorithm>
#include <utility>

#include "ui/Clock.h"
#include "video/VideoFrame.h"
#include "video/VideoThumbnails.h"

namespace Corvanta::Video {
namespace {

constexpr int kNoCursor = 0;
constexpr int kHandCursor = 1;
constexpr int kWallLayer = 1;

}  // namespace

void VideoThumbnails::HandleEvent(const SDL_Event& event, SDL_Point& pointer, SDL_Point& lastPointer,
                                  SDL_Point& wheel) {
    const std::scoped_lock lock(gridMutex_);
    switch (event.type) {
        case SDL_MOUSEMOTION: {
            const SDL_Point point{event.motion.x, event.motion.y};
            // The pointer has left the window; a dragged tile waits where it is.
            if (draggedTile_ != nullptr && point.x == -1 && point.y == -1) return;
            pointer = point;
            lastPointer = point;
            return;
        }
        // The host's button events carry no position.
        case SDL_MOUSEBUTTONDOWN: OnPress(lastPointer); return;
        case SDL_MOUSEBUTTONUP: OnRelease(lastPointer); return;
        case SDL_MOUSEWHEEL: {
            const int delta = WheelDelta(event.wheel.x, event.wheel.y);
            wheel = {delta, delta};
            return;
        }
        default: return;
    }
}

void VideoThumbnails::OnPress(SDL_Point pointer) {
    const bool busy = scrollbar_.IsDragging();
    const bool onScrollbar = scrollbar_.visible && scrollbar_.hovered;
    for (VideoFrame* tile : tiles_.Local()) {
        if (tile->hovered && draggedTile_ == nullptr && !busy && tile->GetPanel().ScrollbarClick()) break;
    }
    for (VideoFrame* tile : tiles_.Remote()) {
        if (!tile->hovered || onScrollbar || busy) continue;
        if (tile->GetMenu().GetScrollbar().IsDragging()) continue;
        if (tile->GetPanel().ScrollbarClick()) break;
        if (!tile->draggable) continue;
        press_ = {.pending = true, .at = pointer};
        break;
    }
    if (onScrollbar) scrollbar_.OnClick();
}

void VideoThumbnails::OnRelease(SDL_Point pointer) {
    BeginPass();
    Clicks clicks = Clicks::GoOn;
    size_t index = 0;
    while (index < passLocalCount_ && clicks == Clicks::GoOn) clicks = ClickTile(index++);
    // A click with movement is no click.
    if (clicks == Clicks::GoOn && !press_.HasMoved(pointer)) {
        for (index = passLocalCount_; index < pass_.size(); ++index) {
            const VideoFrame* tile = InPass(index);
            if (tile == nullptr || !tile->hovered) continue;
            (void)ClickTile(index);
            break;
        }
    }
    EndTileScrolling();
    EndTileDrag();
    press_.pending = false;
    scrollbar_.EndDrag();
}

VideoThumbnails::Clicks VideoThumbnails::ClickTile(size_t index) {
    VideoFrame* tile = InPass(index);
    if (tile == nullptr || !tile->hovered) return Clicks::GoOn;
    if (draggedTile_ != nullptr || scrollbar_.IsDragging()) return Clicks::GoOn;
    const bool isTheTiles = tile->OnClick();
    // A button or a menu entry may have taken the tile away.
    if (InPass(index) != tile) return Clicks::End;
    if (isTheTiles) {
        view_.OnTileClicked(tile, false);
        if (InPass(index) != tile) return Clicks::End;
    }
    tile->GetPanel().GetScrollbar().EndDrag();
    return isTheTiles ? Clicks::End : Clicks::GoOn;
}

void VideoThumbnails::EndTileScrolling() {
    BeginPass();
    for (VideoFrame* tile : pass_) {
        for (UI::VideoScrollbar* bar : {&tile->GetMenu().GetScrollbar(), &tile->GetPanel().GetScrollbar()}) {
            if (!bar->IsDragging()) continue;
            bar->EndDrag();
            return;
        }
    }
}

void VideoThumbnails::EndTileDrag() {
    if (draggedTile_ == nullptr) return;
    draggedTile_->dragging = false;
    draggedTile_->dragPointer = {0, 0};
    draggedTile_ = nullptr;
    if (orderTouched_) orderChanged_ = true;
}

void VideoThumbnails::StartTileDrag() {
    const auto& remote = tiles_.Remote();
    const auto found =
        std::find_if(remote.begin(), remote.end(), [](const VideoFrame* tile) { return tile->hovered; });
    if (found == remote.end()) return;
    VideoFrame& tile = **found;
    auto& panel = tile.GetPanel();
    if (panel.GetScrollbar().IsDragging()) return;
    // The release of the drag before may have got lost outside of the window.
    EndTileDrag();
    tile.dragging = true;
    // It follows by differences, and the first one counts from where it was taken.
    tile.dragPointer = press_.at;
    draggedTile_ = &tile;
    orderTouched_ = false;
    panel.SetVisible(false);
    panel.GetScrollbar().EndDrag();
}

void VideoThumbnails::Update(SDL_Point pointer, SDL_Point wheel) {
    const std::scoped_lock lock(gridMutex_);
    const bool wasHovered = scrollbar_.hovered;
    if (!scrollbar_.IsDragging()) scrollbar_.OnHover(pointer);
    if (press_.pending && press_.HasMoved(pointer)) {
        press_.pending = false;
        StartTileDrag();
    }
    const bool menuTakesWheel = UpdateTiles(pointer, wheel);
    UpdateEdgeScroll(pointer);
    UpdateOrder();
    UpdateScrollbar(pointer, wheel, wasHovered, menuTakesWheel);
}

bool VideoThumbnails::UpdateTiles(SDL_Point pointer, SDL_Point wheel) {
    const bool wheelMoves = wheel.x != 0 || wheel.y != 0;
    bool menuScrolling = false;
    bool anyHovered = false;
    BeginPass();
    for (size_t index = 0; index < pass_.size(); ++index) {
        VideoFrame* tile = InPass(index);
        if (tile == nullptr) continue;
        if (tile->dragging && tile == draggedTile_) tile->UpdateDragPosition(pointer);
        UI::Menu& menu = tile->GetMenu();
        auto& panel = tile->GetPanel();
        const bool menuHovered = menu.visible && menu.hovered;
        menuScrolling = menuScrolling || menuHovered;
        if (wheelMoves) {
            if (menuScrolling) menu.GetScrollbar().Move(wheel, true);
            if (panel.visible && panel.hovered) panel.GetScrollbar().Move(wheel, true);
        }
        if (tile->hovered || menuHovered) {
            anyHovered = true;
        } else if (menu.visible && !menu.GetScrollbar().IsDragging()) {
            menu.SetVisible(false);
        }
        const bool underScrollbar = scrollbar_.visible && scrollbar_.hovered && draggedTile_ == nullptr;
        tile->OnPointer(pointer, underScrollbar);
    }
    view_.SetCursor(anyHovered ? kHandCursor : kNoCursor, kWallLayer);
    return menuScrolling;
}

void VideoThumbnails::UpdateEdgeScroll(SDL_Point pointer) {
    if (draggedTile_ == nullptr || !scrollbar_.visible) {
        edgeScroll_.Stop();
        return;
    }
    const bool vertical = layout_.IsVertical();
    const int amount = edgeScroll_.Step(UI::NowNs(), vertical ? pointer.y : pointer.x,
                                        vertical ? layout_.GetAreaHeight() : layout_.GetAreaWidth());
    if (amount != 0) scrollbar_.Move({amount, amount}, true);
}

void VideoThumbnails::UpdateOrder() {
    if (draggedTile_ == nullptr) return;
    const auto& remote = tiles_.Remote();
    const auto target = std::find_if(remote.begin(), remote.end(),
                                     [](const VideoFrame* tile) { return tile->hovered && !tile->dragging; });
    const int from = tiles_.IndexOfRemote(draggedTile_);
    if (target == remote.end() || from < 0) return;
    const int to = static_cast<int>(target - remote.begin());
    ChangePin(*draggedTile_, PinChangeOfMove(from, to, draggedTile_->pinned, tiles_.PinnedCount()));
    tiles_.MoveRemote(from, to);
    orderTouched_ = true;
}

void VideoThumbnails::ChangePin(VideoFrame& tile, PinChange change) {
    if (change == PinChange::None) return;
    const bool pin = change == PinChange::Pin;
    tiles_.SetPinned(tile, pin);
    if (tile.pinToggle == nullptr) return;
    // The entry's own function would move the tile a second time.
    tile.pinToggle->SetToggled(pin);
    const std::string& badge = tile.pinToggle->GetOffIconName();
    if (pin) {
        tile.AddBadge(badge);
    } else {
        tile.RemoveBadge(badge);
    }
}

void VideoThumbnails::UpdateScrollbar(SDL_Point pointer, SDL_Point wheel, bool wasHovered,
                                      bool menuTakesWheel) {
    const bool wheelMoves = (wheel.x != 0 || wheel.y != 0) && !menuTakesWheel;
    const bool wheelMovedBefore = std::exchange(wheelMoved_, wheelMoves);
    if (scrollbar_.IsDragging()) {
        scrollbar_.Move(pointer, false);
    } else if (menuTakesWheel) {
        return;
    }
    if (wheelMoves) scrollbar_.Move(wheel, true);
    const auto order = linger_.Step(UI::NowNs(), {.hovered = scrollbar_.hovered,
                                                  .wasHovered = wasHovered,
                                                  .wheelMoved = wheelMoves,
                                                  .wheelMovedBefore = wheelMovedBefore});
    if (order != ScrollbarLinger::Order::None) scrollbar_.SetVisible(order == ScrollbarLinger::Order::Show);
}

}  // namespace Corvanta::Video
