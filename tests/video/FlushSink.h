// Waits for the worker of a tile. Any thread, one at a time.
#pragma once

#include <algorithm>

#include "tests/fake_platform/FakePlatform.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/video/Eventually.h"

namespace Corvanta::Testing {

// Returns when the worker has done with every frame that was sent into the sink: it handles them in order,
// and leaves a line in the log about the broken one that this sends. False when that takes too long.
[[nodiscard]] inline bool FlushSink(const FrameCallback& sink) {
    const auto countLines = [] {
        const auto lines = Fake().LogsOf(3);
        return std::count(lines.begin(), lines.end(),
                          "Dropped a video frame: a stride is shorter than its row");
    };
    const auto marker = MakeFrame({.faults = {.stride = {1, {}, {}}}});
    const auto before = countLines();
    return Eventually([&] {
        // Asked before the log: the worker writes its line and then lets go.
        const bool isHeld = marker.use_count() > 1;
        const auto now = countLines();
        // It was refused if nobody holds it and no line came: the queue was full.
        if (now == before && !isHeld) sink(marker);
        return now > before;
    });
}

}  // namespace Corvanta::Testing
