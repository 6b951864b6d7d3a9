// What moves a wall's scroll position beside the thumb itself: the wheel, a dragged tile near an edge, and
// how long the scrollbar stays after its last use. Plain arithmetic of positions and times; guarded by the
// wall.
#pragma once

#include <cstdint>

namespace Corvanta::Video {

// The component that is larger in size; y when they are equal.
[[nodiscard]] int WheelDelta(int x, int y);

// Scrolls while a dragged tile is held within a tenth of the area at either end of it: half a pixel of the
// thumb per millisecond, whatever the rate of the ticks.
class EdgeScroll final {
public:
    // position and extent: of the pointer and of the area along the bar. Returns by how much the thumb is to
    // move.
    [[nodiscard]] int Step(int64_t nowNs, int position, int extent);
    void Stop() { scrolling_ = false; }

private:
    bool scrolling_ = false;
    int64_t timeNs_ = 0;
};

class ScrollbarLinger final {
public:
    static constexpr int64_t kLingerMs = 2000;

    // What happened since the last step.
    struct Use {
        bool hovered = false;
        bool wasHovered = false;
        // Now, and in the step before.
        bool wheelMoved = false;
        bool wheelMovedBefore = false;
    };
    enum class Order { None, Show, Hide };

    [[nodiscard]] Order Step(int64_t nowNs, const Use& use);
    [[nodiscard]] bool IsLingering() const { return lingering_; }

private:
    bool lingering_ = false;
    int64_t usedNs_ = 0;
};

}  // namespace Corvanta::Video
