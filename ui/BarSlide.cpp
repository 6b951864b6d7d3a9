#include "ui/BarSlide.h"

#include "ui/Arithmetic.h"

namespace Corvanta::UI {
namespace {

constexpr int64_t kNsPerMs = 1'000'000;

}  // namespace

void BarSlide::StartShowing(int64_t nowNs) {
    sliding_ = true;
    slideStartNs_ = nowNs;
}

void BarSlide::StartHiding(int64_t nowNs) {
    if (hiding_) return;
    hiding_ = true;
    hideStartNs_ = nowNs;
}

void BarSlide::Stop() {
    sliding_ = false;
    hiding_ = false;
}

int BarSlide::Advance(int restY, int offset, int height, int64_t nowNs, bool& hidden) {
    const int travel = offset + height;
    int base = restY - offset;
    int y = restY;
    if (sliding_) {
        const int64_t elapsedMs = (nowNs - slideStartNs_) / kNsPerMs;
        if (elapsedMs >= times.animationMs) {
            sliding_ = false;
        } else {
            const double done = static_cast<double>(elapsedMs) / times.animationMs;
            base = Truncate((1 - done) * travel + base);
            y = offset + base;
        }
    }
    if (hiding_) {
        const int64_t elapsedMs = (nowNs - hideStartNs_) / kNsPerMs;
        if (elapsedMs > times.hideDelayMs) {
            if (elapsedMs >= static_cast<int64_t>(times.hideDelayMs) + times.animationMs) {
                hiding_ = false;
                hidden = true;
            } else {
                const double done = static_cast<double>(elapsedMs - times.hideDelayMs) / times.animationMs;
                y = offset + Truncate(done * travel + base);
            }
        }
    }
    return y;
}

}  // namespace Corvanta::UI
