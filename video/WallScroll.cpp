#include "video/WallScroll.h"

#include <cmath>
#include <cstdlib>

#include "ui/Arithmetic.h"

namespace Corvanta::Video {
namespace {

constexpr int64_t kNsPerMs = 1'000'000;
constexpr double kEdgeShare = 0.1;
constexpr double kPixelsPerMs = 0.5;

}  // namespace

int WheelDelta(int x, int y) {
    return std::abs(int64_t{x}) > std::abs(int64_t{y}) ? x : y;
}

int EdgeScroll::Step(int64_t nowNs, int position, int extent) {
    const double margin = extent * kEdgeShare;
    const bool nearEnd = position > extent - margin;
    if (!nearEnd && position >= margin) {
        Stop();
        return 0;
    }
    if (!scrolling_) {
        scrolling_ = true;
        timeNs_ = nowNs;
        return 0;
    }
    const auto elapsedMs = static_cast<double>((nowNs - timeNs_) / kNsPerMs);
    const int amount = UI::Truncate(std::round(elapsedMs * (nearEnd ? kPixelsPerMs : -kPixelsPerMs)));
    // Ticks too short to move by a pixel add up.
    if (amount != 0) timeNs_ = nowNs;
    return amount;
}

ScrollbarLinger::Order ScrollbarLinger::Step(int64_t nowNs, const Use& use) {
    Order order = Order::None;
    if (use.hovered || use.wheelMoved) lingering_ = false;
    if ((use.wasHovered && !use.hovered) || use.wheelMovedBefore) {
        usedNs_ = nowNs;
        lingering_ = true;
        order = Order::Show;
    }
    if (lingering_ && (nowNs - usedNs_) / kNsPerMs > kLingerMs) {
        lingering_ = false;
        order = Order::Hide;
    }
    return order;
}

}  // namespace Corvanta::Video
