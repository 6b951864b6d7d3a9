// The slide of the strip of tiles in and out of the room's view. Plain arithmetic of times; guarded by the
// wall that owns it.
#pragma once

#include <cstdint>

namespace Corvanta::Video {

class StripSlide final {
public:
    static constexpr int64_t kDurationMs = 300;

    struct Step {
        // Added to the strip's y.
        int yOffset = 0;
        // The strip has gone.
        bool hide = false;
    };

    void StartIn(int64_t nowNs);
    // A slide that is under way goes on.
    void StartOut(int64_t nowNs);
    void Stop();
    [[nodiscard]] bool IsSlidingOut() const { return slidingOut_; }

    // Once a drawing. Sliding out wins when both run.
    [[nodiscard]] Step Advance(int64_t nowNs, int tileHeight);

private:
    bool slidingOut_ = false;
    bool slidingIn_ = false;
    int64_t inStartNs_ = 0;
    int64_t outStartNs_ = 0;
};

}  // namespace Corvanta::Video
