#include "video/StripSlide.h"

#include "ui/Arithmetic.h"

namespace Corvanta::Video {
namespace {

constexpr int64_t kNsPerMs = 1'000'000;
constexpr auto kWholeMs = static_cast<double>(StripSlide::kDurationMs);

}  // namespace

void StripSlide::StartIn(int64_t nowNs) {
    slidingIn_ = true;
    inStartNs_ = nowNs;
}

void StripSlide::StartOut(int64_t nowNs) {
    if (slidingOut_) return;
    slidingOut_ = true;
    outStartNs_ = nowNs;
}

void StripSlide::Stop() {
    slidingIn_ = false;
    slidingOut_ = false;
}

StripSlide::Step StripSlide::Advance(int64_t nowNs, int tileHeight) {
    Step step;
    if (slidingIn_) {
        const int64_t elapsedMs = (nowNs - inStartNs_) / kNsPerMs;
        slidingIn_ = elapsedMs < kDurationMs;
        if (slidingIn_)
            step.yOffset = UI::Truncate(-tileHeight * (1.0 - static_cast<double>(elapsedMs) / kWholeMs));
    }
    if (slidingOut_) {
        const int64_t elapsedMs = (nowNs - outStartNs_) / kNsPerMs;
        slidingOut_ = elapsedMs < kDurationMs;
        const double covered = -tileHeight * static_cast<double>(elapsedMs) / kWholeMs;
        step.yOffset = slidingOut_ ? UI::Truncate(covered) : -tileHeight;
        step.hide = !slidingOut_ && !slidingIn_;
    }
    return step;
}

}  // namespace Corvanta::Video
