// A room on a real window with its wall detached into a second one, as a host would have it, on the fake
// platform: participants with pictures of 640x360, and the first one as the main video with 1920x1080, as a
// sender with two layers would serve it. Main thread; the platform's recorder is switched off while it lives.
#pragma once

#include <cstddef>
#include <optional>
#include <vector>

#include "bench/FrameFeed.h"
#include "tests/fake_platform/XWindow.h"

namespace Corvanta::Bench {

// As SDLinterface_SetDetachedLayout numbers them.
enum class WallLayout { Strip, Column, Grid };

class BenchWall final {
public:
    static constexpr int kWidth = 1280;
    static constexpr int kHeight = 720;

    // Opens both windows of 1280x720, enters the room, and lets everything come that comes in its first
    // ticks. Throws std::runtime_error when there is no window or no room.
    BenchWall(int participants, WallLayout layout);
    ~BenchWall();
    BenchWall(const BenchWall&) = delete;
    BenchWall& operator=(const BenchWall&) = delete;

    // Has the bar back in the room's window, with the menu of its layout button open above it, until the end.
    // Throws std::runtime_error when that draws nothing more.
    void OpenMenu();

    // The two ticks that a host makes: the room's window and the wall's.
    void Tick();

    // A frame arrives in every tile that is subscribed to, and in the main video; returns when the workers
    // have made all of them ready for the next tick.
    void BringFrames();
    // Tiles of the wall that took the last frames.
    [[nodiscard]] size_t GetFedTiles() const { return fedTiles_; }
    // Whether the last participant's tile was among them.
    [[nodiscard]] bool IsLastFed() const { return isLastFed_; }

    // Frames and ticks until nothing has to be made any more; less than that when it has been so shortly
    // before, since a picture that stands for 7 seconds is dropped.
    void WarmUp();
    void Refresh();

    // From one end of the column's or the strip's content to the other in as many steps.
    void ScrollOn(int steps);

private:
    Testing::XWindow roomWindow_;
    Testing::XWindow wallWindow_;
    WallLayout layout_;
    std::vector<FrameFeed> feeds_;
    std::optional<FrameFeed> mainFeed_;
    std::vector<const FrameFeed*> taken_;
    size_t fedTiles_ = 0;
    bool isLastFed_ = false;
};

}  // namespace Corvanta::Bench
