// How a feed's pictures are encoded, and how its bit rate follows what the receivers report. Plain functions
// and values; a BitrateRule is used by one thread at a time.
#pragma once

#include <chrono>
#include <cstdint>

#include "platform/VideoFrameAdaptation.h"

namespace Corvanta::Engine {

// Range, matrix, transfer and primaries in which every feed is sent, in GStreamer's words: BT.601's matrix in
// limited range, which is what receivers of VP8 take for granted since it cannot name them.
inline constexpr const char* kSentColorimetry = "2:4:5:1";

struct PictureSize {
    // Pixels.
    int width = 0;
    int height = 0;

    bool operator==(const PictureSize&) const = default;
};

// Size in which a picture of `width` x `height` is encoded: divided by the adaptation's scaleDown, or by the
// largest number below it that leaves the picture at least minimumHeight lines; then cut to even sides, since
// the encoder halves them for colour. Sides are within what VP8 can tell.
[[nodiscard]] PictureSize EncodedSize(int width, int height, const VideoFrameAdaptation& adaptation);

// Lowers the bit rate of a sender whose packets get lost, and raises it again where they arrive.
class BitrateRule final {
public:
    using Clock = std::chrono::steady_clock;

    // Bits a second; it starts at the highest.
    BitrateRule(std::uint32_t lowest, std::uint32_t highest);

    // What a receiver lost of the last packets, 0 to 1, and when it said so. Returns the bit rate that holds
    // from then on: a fifth less after each two seconds of more than 10 % loss, a twentieth more with each
    // report, at most one a second, of less than 2 %.
    std::uint32_t Report(double lossShare, Clock::time_point now);
    // Other bounds. The bit rate is brought between them, and to the highest where no loss has lowered it.
    void SetBounds(std::uint32_t lowest, std::uint32_t highest);
    [[nodiscard]] std::uint32_t Bitrate() const { return bitrate; }

private:
    std::uint32_t lowest;
    std::uint32_t highest;
    std::uint32_t bitrate;
    bool isLossy = false;
    Clock::time_point lossySince;
    Clock::time_point lastRaise;
};

}  // namespace Corvanta::Engine
