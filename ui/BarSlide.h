// When a bar shows and hides itself: a state of times, advanced by whole milliseconds of the steady clock.
// Render thread only.
#pragma once

#include <cstdint>

namespace Corvanta::UI {

struct BarSlideTimes {
    int animationMs = 250;
    int hideDelayMs = 4000;
};

class BarSlide final {
public:
    // Into place from below.
    void StartShowing(int64_t nowNs);
    // The countdown, and after it out of the way. A running countdown goes on.
    void StartHiding(int64_t nowNs);
    void RestartCountdown(int64_t nowNs) { hideStartNs_ = nowNs; }
    void CancelHiding() { hiding_ = false; }
    void Stop();

    [[nodiscard]] bool IsSliding() const { return sliding_; }
    [[nodiscard]] bool IsHiding() const { return hiding_; }

    // Where a bar of that rest position is to be drawn now. offset and height make the way that it travels.
    // Sets hidden when the way out is done.
    [[nodiscard]] int Advance(int restY, int offset, int height, int64_t nowNs, bool& hidden);

    BarSlideTimes times;

private:
    int64_t slideStartNs_ = 0;
    bool sliding_ = false;
    int64_t hideStartNs_ = 0;
    bool hiding_ = false;
};

}  // namespace Corvanta::UI
