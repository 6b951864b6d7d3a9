// The part of a tile that people touch: pointer, clicks, buttons, menu, panel and badges.
#include <algorithm>
#include <cstdint>
#include <limits>
#include <utility>

#include "connectivity/ConnectionStats.h"
#include "platform/WebRTC.h"
#include "video/VideoFrame.h"

namespace Corvanta::Video {
namespace {

constexpr float kFullVolume = 1.0F;

// Of a drag: by differences, and never beyond the window's left and upper edge.
[[nodiscard]] int Follow(int edge, int oldPointer, int newPointer) {
    const int64_t moved = int64_t{edge} - oldPointer + newPointer;
    return static_cast<int>(std::clamp<int64_t>(moved, 0, std::numeric_limits<int>::max()));
}

// For every rectangle, also one whose far edge is no int.
[[nodiscard]] bool Contains(const SDL_Rect& area, SDL_Point point) {
    return point.x >= area.x && int64_t{point.x} - area.x < area.w && point.y >= area.y &&
           int64_t{point.y} - area.y < area.h;
}

}  // namespace

void VideoFrame::OnPointer(SDL_Point point, bool suppressHover) {
    const std::scoped_lock lock(tileMutex_);
    panel_->OnHover(point);
    overlays_.OnHover(point);
    if (hovered) dragPointer = point;
    // A menu that sticks out of the tile keeps it alive.
    hovered = !suppressHover && (Contains(displayRect, point) || overlays_.GetControls().IsMenuHovered());
}

void VideoFrame::UpdateDragPosition(SDL_Point point) {
    dragPosition = {Follow(rect.x, dragPointer.x, point.x), Follow(rect.y, dragPointer.y, point.y)};
    dragPointer = point;
}

bool VideoFrame::OnClick() {
    // No lock: what is clicked may call anything of the tile.
    if (panel_->visible) {
        if (!panel_->hovered) return true;
        panel_->OnClick();
        return false;
    }
    return !overlays_.GetControls().OnClick();
}

UI::Button* VideoFrame::AddHoverButton(UI::Button::Options options) {
    const std::scoped_lock lock(tileMutex_);
    return overlays_.GetControls().AddHoverButton(std::move(options));
}

UI::Button* VideoFrame::AddOtherButton(UI::Button::Options options) {
    const std::scoped_lock lock(tileMutex_);
    return overlays_.GetControls().AddOtherButton(std::move(options));
}

UI::ToggleButton* VideoFrame::AddHoverToggleButton(UI::ToggleButton::Options options) {
    const std::scoped_lock lock(tileMutex_);
    return overlays_.GetControls().AddHoverToggleButton(std::move(options));
}

void VideoFrame::SetConnectionButton(UI::Button::Options options) {
    const std::scoped_lock lock(tileMutex_);
    overlays_.GetControls().SetConnectionButton(std::move(options));
}

void VideoFrame::SetMenuButton(UI::Button* button) {
    const std::scoped_lock lock(tileMutex_);
    overlays_.GetControls().SetMenuButton(button);
}

UI::Button* VideoFrame::GetMenuButton() const {
    return overlays_.GetControls().GetMenuButton();
}

UI::Menu& VideoFrame::GetMenu() {
    return overlays_.GetControls().GetMenu();
}

Connectivity::ThumbnailConnectivityPanel& VideoFrame::GetPanel() {
    return *panel_;
}

const Connectivity::ThumbnailConnectivityPanel& VideoFrame::GetPanel() const {
    return *panel_;
}

void VideoFrame::AddBadge(const std::string& path) {
    const std::scoped_lock lock(tileMutex_);
    overlays_.GetBadges().Add(path);
}

void VideoFrame::RemoveBadge(const std::string& path) {
    const std::scoped_lock lock(tileMutex_);
    overlays_.GetBadges().Remove(path);
}

bool VideoFrame::HasBadge(const std::string& path) const {
    const std::scoped_lock lock(tileMutex_);
    return overlays_.GetBadges().Has(path);
}

void VideoFrame::UpdateVolumeBadge(float volume) {
    if (mixSoundItem == nullptr) return;
    const std::string& path = mixSoundItem->GetIconName();
    if (volume == kFullVolume) {
        RemoveBadge(path);
    } else if (!HasBadge(path)) {
        AddBadge(path);
    }
}

void VideoFrame::SubscribeConnectionStats() {
    if (origin_ != TileOrigin::Local || streamType_ != StreamType::Camera) return;
    // The figures outlive the panel as long as anybody may still report some.
    WebRTC_SetConnectionStatsCallback(
        [stats = panel_->GetConnectionStats()](int reserved0, double uploadRate, int reserved1,
                                               double downloadRate, double reserved2, double jitterMs,
                                               double roundTripMs) {
            stats->OnConnectionStats(reserved0, uploadRate, reserved1, downloadRate, reserved2, jitterMs,
                                     roundTripMs);
        });
}

void VideoFrame::SetOverlayGradient(const OverlayGradient* gradient) {
    const std::scoped_lock lock(tileMutex_);
    overlays_.SetGradient(gradient);
}

}  // namespace Corvanta::Video
