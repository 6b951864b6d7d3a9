// A room on a real window with one remote participant as its main video, as a host would have it, on the fake
// platform. Main thread; the platform's recorder is switched off while it lives.
#pragma once

#include <optional>

#include "bench/FrameFeed.h"
#include "tests/fake_platform/TestFrames.h"
#include "tests/fake_platform/XWindow.h"

namespace Corvanta::Bench {

// A fresh fake platform that writes nothing down, the library started, and a room entered on the window, its
// bar sent away.
// Throws std::runtime_error when there is no room.
void StartRoom(const Testing::XWindow& window, int width, int height);
// A remote participant comes. Throws std::runtime_error when the room refuses it.
[[nodiscard]] FrameCallback& OfferParticipant(const char* streamId);
// Ends the room and the library.
void EndRoom();

class BenchRoom final {
public:
    // Opens the window, starts the library and enters the room. The participant sends pictures like spec.
    // Throws std::runtime_error when there is no window or no room.
    BenchRoom(int width, int height, const Testing::FrameSpec& spec);
    ~BenchRoom();
    BenchRoom(const BenchRoom&) = delete;
    BenchRoom& operator=(const BenchRoom&) = delete;

    // A frame arrives; returns when the tile's worker has made it ready for the next tick.
    void BringFrame();

private:
    Testing::XWindow window_;
    std::optional<FrameFeed> feed_;
};

}  // namespace Corvanta::Bench
