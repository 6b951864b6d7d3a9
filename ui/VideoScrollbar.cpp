#include "ui/VideoScrollbar.h"

#include <algorithm>
#include <limits>

#include "ui/Arithmetic.h"
#include "ui/ControlColors.h"

namespace Corvanta::UI {
namespace {

constexpr int kThickness = 8;

// The nearest int. Hosts' pointers, sizes and wheel steps reach to the limits of an int, so sums are made of
// wider numbers.
[[nodiscard]] int Narrow(int64_t value) {
    return static_cast<int>(
        std::clamp<int64_t>(value, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
}

[[nodiscard]] int Sum(int first, int second) {
    return Narrow(static_cast<int64_t>(first) + second);
}

// Across, a bar with a track takes twice its thickness.
[[nodiscard]] int Twice(int thickness) {
    return Narrow(static_cast<int64_t>(thickness) * 2);
}

// What the caps leave of the thumb; not above 0 when they are longer.
[[nodiscard]] int Middle(int thumb, int firstCap, int lastCap) {
    return Narrow(static_cast<int64_t>(thumb) - firstCap - lastCap);
}

[[nodiscard]] bool Contains(const SDL_Rect& area, const SDL_Point& point) {
    const int64_t right = static_cast<int64_t>(area.x) + area.w;
    const int64_t bottom = static_cast<int64_t>(area.y) + area.h;
    return point.x >= area.x && point.x < right && point.y >= area.y && point.y < bottom;
}

}  // namespace

VideoScrollbar::VideoScrollbar() {
    visible = false;
    for (Icon* piece : {&horizontalFirst_, &horizontalMiddle_, &horizontalLast_, &verticalFirst_,
                        &verticalMiddle_, &verticalLast_}) {
        piece->SetVisible(false);
    }
    SetHeight(kThickness);
}

void VideoScrollbar::SetBaseWidth(int value) {
    width = value;
    rect.w = value;
}

void VideoScrollbar::SetBaseHeight(int value) {
    height = value;
    rect.h = value;
}

void VideoScrollbar::SetWidth(int value) {
    SetBaseWidth(value);
    thickness_ = value;
    for (Icon* piece : {&verticalFirst_, &verticalMiddle_, &verticalLast_}) piece->SetWidth(value);
    for (Icon* cap : {&verticalFirst_, &verticalLast_}) cap->SetHeight(value / 2);
}

void VideoScrollbar::SetHeight(int value) {
    SetBaseHeight(value);
    thickness_ = value;
    for (Icon* piece : {&horizontalFirst_, &horizontalMiddle_, &horizontalLast_}) piece->SetHeight(value);
    for (Icon* cap : {&horizontalFirst_, &horizontalLast_}) cap->SetWidth(value / 2);
}

void VideoScrollbar::SetOrientation(bool vertical) {
    if (vertical) {
        SetWidth(thickness_);
    } else {
        SetHeight(thickness_);
    }
    vertical_ = vertical;
    ScrollToStart();
}

void VideoScrollbar::ChangeOrientation(bool vertical) {
    if (vertical == vertical_) return;
    if (vertical_) {
        SetBaseHeight(width);
        rect.x = 0;
    } else {
        SetBaseWidth(height);
        rect.y = 0;
    }
    vertical_ = vertical;
}

int VideoScrollbar::UpdateMetrics(int viewport, int content, int crossPosition, bool vertical) {
    ChangeOrientation(vertical);
    const int thumbAcross = vertical_ ? width : height;
    const int64_t room = static_cast<int64_t>(viewport) - content;
    if (viewport <= 0 || content <= 0 || room + thumbAcross >= 0) {
        SetVisible(false);
        return vertical_ || viewport <= 0 ? 0 : Narrow(room / 2);
    }
    SetVisible(true);
    const auto shown = static_cast<float>(viewport);
    const int thumb = Truncate(shown / static_cast<float>(content) * shown);
    if (vertical_) {
        SetBaseHeight(thumb);
    } else {
        SetBaseWidth(thumb);
    }
    travel_ = Narrow(static_cast<int64_t>(viewport) - thumb);
    const int64_t relative = static_cast<int64_t>(AlongPosition()) - trackStart_;
    (vertical_ ? rect.x : rect.y) = crossPosition;
    if (travel_ <= 0) {
        SetVisible(false);
        return 0;
    }
    return Truncate(static_cast<float>(room) * (static_cast<float>(relative) / static_cast<float>(travel_)));
}

void VideoScrollbar::Move(SDL_Point delta, bool relative) {
    const int64_t component = Along(delta);
    const int64_t way = relative ? component : component - Along(lastPointer_);
    lastPointer_ = delta;
    MoveTo(AlongPosition() + way);
}

void VideoScrollbar::MoveTo(int64_t position) {
    const int64_t start = trackStart_;
    AlongPosition() = Narrow(std::clamp(position, start, start + std::max(travel_, 0)));
}

void VideoScrollbar::ScrollToStart() {
    AlongPosition() = trackStart_;
}

void VideoScrollbar::EndDrag() {
    if (!dragging_) return;
    dragging_ = false;
    lastPointer_ = {0, 0};
}

void VideoScrollbar::SetTrackStart(int position) {
    if (position == trackStart_) return;
    AlongPosition() = Narrow(static_cast<int64_t>(position) - trackStart_);
    trackStart_ = position;
}

void VideoScrollbar::ResetTextures() {
    for (Icon* piece : {&horizontalFirst_, &horizontalMiddle_, &horizontalLast_, &verticalFirst_,
                        &verticalMiddle_, &verticalLast_}) {
        piece->SetTexture(nullptr);
    }
}

bool VideoScrollbar::OnClick() {
    if (!thumbHovered_) return false;
    dragging_ = true;
    return true;
}

void VideoScrollbar::OnHover(const SDL_Point& mouse) {
    SDL_Rect thumb = rect;
    int& across = vertical_ ? thumb.w : thumb.h;
    if (drawTrack_) across = Twice(across);
    thumbHovered_ = Contains(thumb, mouse);
    hovered = thumbHovered_;
    if (thumbHovered_) lastPointer_ = mouse;
    if (thumbHovered_ || !drawTrack_) return;
    const int length = Sum(Thumb(), travel_);
    const int wide = Twice(thickness_);
    const SDL_Rect track = vertical_ ? SDL_Rect{rect.x, 0, wide, length} : SDL_Rect{0, rect.y, length, wide};
    hovered = Contains(track, mouse);
}

void VideoScrollbar::Render(SDL_Renderer* renderer, SDL_Point /*position*/) {
    if (!visible) return;
    if (vertical_) {
        RenderVertical(renderer);
    } else {
        RenderHorizontal(renderer);
    }
    ClearDrawColor(renderer);
}

void VideoScrollbar::RenderHorizontal(SDL_Renderer* renderer) {
    FillRect(renderer, {0, rect.y, Sum(travel_, rect.w), Twice(rect.h)}, trackColor_);
    horizontalMiddle_.SetWidth(Middle(rect.w, horizontalFirst_.width, horizontalLast_.width));
    SDL_Point place{rect.x, Sum(rect.y, thickness_ / 2)};
    for (Icon* piece : {&horizontalFirst_, &horizontalMiddle_, &horizontalLast_}) {
        piece->Render(renderer, place);
        place.x = Sum(place.x, piece->width);
    }
}

void VideoScrollbar::RenderVertical(SDL_Renderer* renderer) {
    MoveTo(AlongPosition());
    if (drawTrack_) FillRect(renderer, {rect.x, 0, Twice(rect.w), Sum(travel_, rect.h)}, trackColor_);
    verticalMiddle_.SetHeight(Middle(rect.h, verticalFirst_.height, verticalLast_.height));
    SDL_Point place{Sum(rect.x, drawTrack_ ? thickness_ / 2 : 0), rect.y};
    for (Icon* piece : {&verticalFirst_, &verticalMiddle_, &verticalLast_}) {
        piece->Render(renderer, place);
        place.y = Sum(place.y, piece->height);
    }
}

}  // namespace Corvanta::UI
