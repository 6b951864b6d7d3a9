// A scrollbar in either direction, made of six pictures that stretch, and the owner of its client's scroll
// position: in each drawing the client asks it for the offset that fits the present sizes. Its rect is the
// thumb. Render thread only.
#pragma once

#include <cstdint>

#include "ui/GraphicElementInterface.h"
#include "ui/Icon.h"

namespace Corvanta::UI {

class VideoScrollbar final : public GraphicElementInterface {
public:
    VideoScrollbar();

    // Draws track and thumb where UpdateMetrics put them; the position is ignored.
    void Render(SDL_Renderer* renderer, SDL_Point position) override;
    // On the thumb: dragging starts, and true.
    bool OnClick() override;
    void OnHover(const SDL_Point& mouse) override;
    // Thickness of a vertical bar, of a horizontal one.
    void SetWidth(int value) override;
    void SetHeight(int value) override;

    // Lays the bar out for a viewport that shows part of the content (pixels along the bar) at crossPosition
    // across it. Returns what is to be added to the content's position: 0 or less while it scrolls; half of
    // the space that is left for a horizontal content that fits. A bar appears when the content overflows by
    // more than its thickness.
    [[nodiscard]] int UpdateMetrics(int viewport, int content, int crossPosition, bool vertical);

    // Relative: along by the point's component (a wheel). Else the thumb follows the pointer by differences.
    void Move(SDL_Point delta, bool relative);
    void ScrollToStart();
    void EndDrag();
    void SetDragging(bool dragging) { dragging_ = dragging; }
    [[nodiscard]] bool IsDragging() const { return dragging_; }
    // Lowest position of the thumb along the track.
    void SetTrackStart(int position);
    [[nodiscard]] int GetTrackStart() const { return trackStart_; }
    void SetOrientation(bool vertical);
    // The pictures are looked up again, on whatever renderer.
    void ResetTextures();

    // A vertical bar draws its track, and the areas that take the pointer are wider.
    void SetDrawTrack(bool draw) { drawTrack_ = draw; }
    void SetLastPointer(SDL_Point pointer) { lastPointer_ = pointer; }
    [[nodiscard]] int GetThickness() const { return thickness_; }
    [[nodiscard]] bool GetVertical() const { return vertical_; }
    [[nodiscard]] bool IsThumbHovered() const { return thumbHovered_; }
    [[nodiscard]] int GetTravel() const { return travel_; }

private:
    [[nodiscard]] int& AlongPosition() { return vertical_ ? rect.y : rect.x; }
    [[nodiscard]] int Thumb() const { return vertical_ ? rect.h : rect.w; }
    [[nodiscard]] int Along(SDL_Point point) const { return vertical_ ? point.y : point.x; }
    void SetBaseWidth(int value);
    void SetBaseHeight(int value);
    void ChangeOrientation(bool vertical);
    // Along the track, kept within it.
    void MoveTo(int64_t position);
    void RenderHorizontal(SDL_Renderer* renderer);
    void RenderVertical(SDL_Renderer* renderer);

    SDL_Point lastPointer_{0, 0};
    int travel_ = 0;
    bool dragging_ = false;
    SDL_Color trackColor_{0x42, 0x42, 0x42, 255};
    bool vertical_ = false;
    int trackStart_ = 0;
    Icon horizontalFirst_{"icons/scrollbarHorizontalFirst.png"};
    Icon horizontalMiddle_{"icons/scrollbarHorizontalMiddle.png"};
    Icon horizontalLast_{"icons/scrollbarHorizontalLast.png"};
    Icon verticalFirst_{"icons/scrollbarVerticalFirst.png"};
    Icon verticalMiddle_{"icons/scrollbarVerticalMiddle.png"};
    Icon verticalLast_{"icons/scrollbarVerticalLast.png"};
    int thickness_ = 0;
    bool drawTrack_ = false;
    bool thumbHovered_ = false;
};

}  // namespace Corvanta::UI
